#pragma once

#include <QWidget>

#include "document/CommandValues.h"

class QLineEdit;
class QPushButton;

namespace velda::ui {

// A file name field with its "Select..." button, which opens the standard
// file dialog described by the request and puts the chosen path in the field.
class FileField : public QWidget {
  Q_OBJECT

 public:
  FileField(const FileRequest& request, QWidget* parent = nullptr);

  QString text() const;
  void setText(const QString& text);
  QPushButton* selectButton() const { return select_; }
  // The file type of the last file chosen with "Select...", by its place
  // among the request's filters; -1 before any.
  int32_t chosenFilter() const { return chosenFilter_; }

 signals:
  void fileChosen(const QString& path);

 private:
  void select();

  FileRequest request_;
  QLineEdit* edit_;
  QPushButton* select_;
  int32_t chosenFilter_ = -1;
};

}  // namespace velda::ui
