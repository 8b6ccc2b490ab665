#pragma once

#include <QDialog>

#include "document/CommandValues.h"

namespace velda::ui {

class FileField;

// "Select files to join": the two project files of New by join.
class JoinDialog : public QDialog {
  Q_OBJECT

 public:
  explicit JoinDialog(const JoinValues& values, QWidget* parent = nullptr);

  JoinValues values() const { return values_; }
  FileField* secondField() const { return second_; }

  void accept() override;

 private:
  JoinValues values_;
  FileField* first_;
  FileField* second_;
};

}  // namespace velda::ui
