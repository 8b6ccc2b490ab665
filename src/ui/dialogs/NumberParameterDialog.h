#pragma once

#include <QDialog>
#include <functional>
#include <optional>

#include "document/DialogChecks.h"

class QLineEdit;

namespace velda::ui {

// A dialog that asks one whole number and refuses it with its check's
// message: "Reduction parameter" ("Reduction threshold") and "Division
// Parameter" ("Div Class number").
class NumberParameterDialog : public QDialog {
  Q_OBJECT

 public:
  using Check = std::function<std::optional<Refusal>(int32_t)>;

  NumberParameterDialog(const QString& title, const QString& label, int32_t value, Check check,
                        QWidget* parent = nullptr);

  int32_t value() const { return value_; }
  QLineEdit* field() const { return field_; }

  void accept() override;

 private:
  QLineEdit* field_;
  int32_t value_;
  Check check_;
};

}  // namespace velda::ui
