#include "ui/dialogs/DBViewDialog.h"

#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "db/ColumnView.h"
#include "db/Connection.h"
#include "ui/widgets/Latin1.h"
#include "ui/widgets/MessageBoxes.h"

namespace velda::ui {

DBViewDialog::DBViewDialog(const Connection& connection, const std::string& table, QWidget* parent)
    : QDialog(parent), connection_(connection), table_(table) {
  setWindowTitle(QStringLiteral("DBView"));
  database_ = new QLabel(QStringLiteral("Please wait"), this);
  columns_ = new QTreeWidget(this);
  columns_->setRootIsDecorated(false);
  QStringList headings;
  for (const char* heading : kColumnViewHeadings) headings << QString::fromLatin1(heading);
  columns_->setHeaderLabels(headings);
  columns_->setMinimumSize(460, 240);

  auto* form = new QFormLayout;
  form->addRow(QStringLiteral("DataBase"), database_);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(form);
  layout->addWidget(new QLabel(QStringLiteral("[NOT IMPLEMENTED]"), this));
  layout->addWidget(columns_);
  layout->addWidget(buttons);
}

void DBViewDialog::load() {
  const ColumnView view = describeTableColumns(connection_, table_);
  if (!view.ok) {
    const MessageIcon icon = view.errorCaption == "Error" ? MessageIcon::Error : MessageIcon::Warning;
    showMessageBox(this, toQt(view.errorText), icon, toQt(view.errorCaption));
  } else {
    for (const ColumnDescription& column : view.columns) {
      columns_->addTopLevelItem(new QTreeWidgetItem(
          QStringList{toQt(column.name), toQt(column.typeName), toQt(column.precision), toQt(column.nullable)}));
    }
  }
  database_->setText(toQt(dataSourceName(connection_)));
}

}  // namespace velda::ui
