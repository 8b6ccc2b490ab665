#pragma once

#include <QGroupBox>

class QLabel;
class QPushButton;

namespace velda::ui {

class DataSourceLink;

// "Base": the name of the connected data source and "&Modify...", which
// opens the data-source chooser and reconnects.
class DataSourceBox : public QGroupBox {
  Q_OBJECT

 public:
  DataSourceBox(DataSourceLink& link, QWidget* parent = nullptr);

  void refresh();

 signals:
  void connectionChanged();

 private:
  void modify();

  DataSourceLink& link_;
  QLabel* name_;
  QPushButton* modify_;
};

}  // namespace velda::ui
