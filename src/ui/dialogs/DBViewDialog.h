#pragma once

#include <QDialog>
#include <string>

class QLabel;
class QTreeWidget;

namespace velda {
class Connection;
}

namespace velda::ui {

// "DBView": the columns of one table of the connected data source (name,
// type, precision, nullable).
class DBViewDialog : public QDialog {
  Q_OBJECT

 public:
  DBViewDialog(const Connection& connection, const std::string& table, QWidget* parent = nullptr);

  // Fills the list; shows the driver's message when the table cannot be read.
  void load();

 private:
  const Connection& connection_;
  std::string table_;
  QLabel* database_;
  QTreeWidget* columns_;
};

}  // namespace velda::ui
