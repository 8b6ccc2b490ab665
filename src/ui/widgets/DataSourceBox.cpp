#include "ui/widgets/DataSourceBox.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

#include "db/Connection.h"
#include "ui/dialogs/DataSourceDialog.h"
#include "ui/widgets/DataSourceLink.h"
#include "ui/widgets/Latin1.h"
#include "ui/widgets/OdbcSources.h"
#include "ui/widgets/SideButton.h"

namespace velda::ui {

DataSourceBox::DataSourceBox(DataSourceLink& link, QWidget* parent)
    : QGroupBox(QStringLiteral("Base"), parent), link_(link) {
  name_ = new QLabel(this);
  name_->setMinimumWidth(200);
  modify_ = makeSideButton(QStringLiteral("&Modify..."), this);
  connect(modify_, &QPushButton::clicked, this, &DataSourceBox::modify);
  auto* layout = new QHBoxLayout(this);
  layout->addWidget(name_, 1);
  layout->addWidget(modify_);
  // With the sample database installed and nothing open yet, the dialog
  // starts on the sample, so that its tables are there to choose from.
  const std::string sample = sampleConnectionString();
  if (!link_.connection() && !sample.empty()) link_.connect(sample);
  refresh();
}

void DataSourceBox::refresh() {
  const Connection* connection = link_.connection();
  name_->setText(connection ? toQt(dataSourceName(*connection)) : QString());
}

void DataSourceBox::modify() {
  const Connection* connection = link_.connection();
  DataSourceDialog dialog(connection ? connection->connectionString() : sampleConnectionString(), this);
  if (dialog.exec() != QDialog::Accepted) return;
  if (!link_.connect(dialog.connectionString())) return;
  refresh();
  emit connectionChanged();
}

}  // namespace velda::ui
