#pragma once

#include <QGroupBox>
#include <string>

class QListWidget;

namespace velda::ui {

class DataSourceLink;

// "Tables and Queries": the tables and views of the connected data source.
class TableListBox : public QGroupBox {
  Q_OBJECT

 public:
  TableListBox(DataSourceLink& link, QWidget* parent = nullptr);

  // Lists the catalogue of the current connection again.
  void refresh();
  // The chosen table or view, or empty.
  std::string selectedName() const;
  QListWidget* list() const { return list_; }

 private:
  DataSourceLink& link_;
  QListWidget* list_;
};

}  // namespace velda::ui
