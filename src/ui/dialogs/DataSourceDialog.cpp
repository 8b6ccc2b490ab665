#include "ui/dialogs/DataSourceDialog.h"

#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

#include "db/OdbcListing.h"
#include "ui/widgets/Latin1.h"
#include "ui/widgets/OdbcSources.h"
#include "ui/widgets/SideButton.h"

namespace velda::ui {

namespace {

QListWidget* listOf(const std::vector<std::string>& names, QWidget* parent) {
  auto* list = new QListWidget(parent);
  for (const std::string& name : names) list->addItem(toQt(name));
  return list;
}

}  // namespace

DataSourceDialog::DataSourceDialog(const std::string& connectionString, QWidget* parent) : QDialog(parent) {
  setWindowTitle(QStringLiteral("Select Data Source"));
  edit_ = new QLineEdit(toQt(connectionString), this);
  edit_->setMinimumWidth(420);
  drivers_ = listOf(installedOdbcDrivers(), this);
  sources_ = listOf(configuredDataSources(), this);
  sample_ = makeSideButton(QStringLiteral("SQLite sample database"), this);
  sample_->setEnabled(!sampleConnectionString().empty());

  connect(drivers_, &QListWidget::itemClicked, this,
          [this](QListWidgetItem* item) { edit_->setText(QStringLiteral("DRIVER={%1};").arg(item->text())); });
  connect(sources_, &QListWidget::itemClicked, this,
          [this](QListWidgetItem* item) { edit_->setText(QStringLiteral("DSN=%1;").arg(item->text())); });
  connect(sample_, &QPushButton::clicked, this, [this] { edit_->setText(toQt(sampleConnectionString())); });

  auto* grid = new QGridLayout;
  grid->addWidget(new QLabel(QStringLiteral("ODBC drivers:"), this), 0, 0);
  grid->addWidget(new QLabel(QStringLiteral("Data sources:"), this), 0, 1);
  grid->addWidget(drivers_, 1, 0);
  grid->addWidget(sources_, 1, 1);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

  auto* layout = new QVBoxLayout(this);
  layout->addWidget(new QLabel(QStringLiteral("Connection string (for instance DRIVER=SQLite3;Database=/path/file.db; "
                                              "or DSN=name;UID=user;PWD=secret;):"),
                               this));
  layout->addWidget(edit_);
  layout->addLayout(grid);
  layout->addWidget(sample_);
  layout->addWidget(buttons);
}

std::string DataSourceDialog::connectionString() const { return fromQt(edit_->text().trimmed()); }

void DataSourceDialog::accept() {
  if (edit_->text().trimmed().isEmpty()) {
    edit_->setFocus();
    return;
  }
  QDialog::accept();
}

}  // namespace velda::ui
