#include "ui/widgets/TableListBox.h"

#include <QListWidget>
#include <QVBoxLayout>

#include "db/TableCatalog.h"
#include "ui/widgets/DataSourceLink.h"
#include "ui/widgets/Latin1.h"
#include "ui/widgets/WholeLines.h"

namespace velda::ui {

TableListBox::TableListBox(DataSourceLink& link, QWidget* parent)
    : QGroupBox(QStringLiteral("Tables and Queries"), parent), link_(link) {
  list_ = new QListWidget(this);
  showWholeLines(list_);
  list_->setSelectionMode(QAbstractItemView::SingleSelection);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(list_);
  refresh();
}

void TableListBox::refresh() {
  list_->clear();
  const Connection* connection = link_.connection();
  if (!connection) return;
  std::vector<CatalogEntry> entries;
  if (!listTablesAndViews(*connection, entries)) return;
  for (const CatalogEntry& entry : entries) list_->addItem(toQt(entry.name));
}

std::string TableListBox::selectedName() const {
  const QListWidgetItem* item = list_->currentItem();
  return item && item->isSelected() ? fromQt(item->text()) : std::string();
}

}  // namespace velda::ui
