#pragma once

#include <QDialog>
#include <string>

class QLineEdit;
class QListWidget;
class QPushButton;

namespace velda::ui {

// The data-source chooser behind "&Modify...": an editor of the ODBC
// connection string that lists the installed drivers and configured data
// sources and offers the SQLite sample database.
class DataSourceDialog : public QDialog {
  Q_OBJECT

 public:
  explicit DataSourceDialog(const std::string& connectionString, QWidget* parent = nullptr);

  std::string connectionString() const;

  void accept() override;

 private:
  QLineEdit* edit_;
  QListWidget* drivers_;
  QListWidget* sources_;
  QPushButton* sample_;
};

}  // namespace velda::ui
