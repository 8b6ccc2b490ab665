#pragma once

#include <QDialog>

class QLineEdit;

namespace velda::ui {

// A dialog that asks one whole number within a range: "Reduction parameter"
// ("Reduction threshold", 10..100) and "Division Parameter" ("Div Class
// number", 2..100).
class NumberParameterDialog : public QDialog {
  Q_OBJECT

 public:
  NumberParameterDialog(const QString& title, const QString& label, int value, int minimum, int maximum,
                        QWidget* parent = nullptr);

  int value() const { return value_; }
  QLineEdit* field() const { return field_; }

  void accept() override;

 private:
  QLineEdit* field_;
  int value_;
  int minimum_;
  int maximum_;
};

}  // namespace velda::ui
