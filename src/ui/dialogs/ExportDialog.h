#pragma once

#include <QDialog>

#include "document/CommandValues.h"

class QCheckBox;
class QComboBox;
class QLineEdit;

namespace velda::ui {

class FileField;

// "KORVA export": destination, what to write there, title, subtitle and the
// two reduced-rows boxes (disabled when there is nothing reduced).
class ExportDialog : public QDialog {
  Q_OBJECT

 public:
  explicit ExportDialog(const ExportValues& values, QWidget* parent = nullptr);

  ExportValues values() const { return values_; }
  FileField* fileField() const { return file_; }
  QComboBox* formatBox() const { return format_; }
  QLineEdit* titleEdit() const { return title_; }
  QLineEdit* subtitleEdit() const { return subtitle_; }
  QCheckBox* reducedAssertionsBox() const { return reducedAssertions_; }
  QCheckBox* reducedHordesBox() const { return reducedHordes_; }

  void accept() override;

 private:
  void onFileChosen(const QString& path);

  ExportValues values_;
  FileField* file_;
  QComboBox* format_;
  QLineEdit* title_;
  QLineEdit* subtitle_;
  QCheckBox* reducedAssertions_;
  QCheckBox* reducedHordes_;
};

}  // namespace velda::ui
