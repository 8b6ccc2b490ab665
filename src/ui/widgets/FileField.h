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
  QLineEdit* edit() const { return edit_; }
  QPushButton* selectButton() const { return select_; }

 signals:
  void fileChosen(const QString& path);

 private:
  void select();

  FileRequest request_;
  QLineEdit* edit_;
  QPushButton* select_;
};

}  // namespace velda::ui
