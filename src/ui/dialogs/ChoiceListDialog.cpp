#include "ui/dialogs/ChoiceListDialog.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QListWidget>
#include <QVBoxLayout>

#include "ui/widgets/Latin1.h"
#include "ui/widgets/WholeLines.h"

namespace velda::ui {

ChoiceListDialog::ChoiceListDialog(const QString& title, const QString& label, const std::vector<Item>& items,
                                   QWidget* parent)
    : QDialog(parent) {
  setWindowTitle(title);
  list_ = new QListWidget(this);
  showWholeLines(list_);
  list_->setSelectionMode(QAbstractItemView::MultiSelection);
  for (const Item& item : items) {
    auto* row = new QListWidgetItem(toQt(item.second), list_);
    row->setData(Qt::UserRole, item.first);
  }
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(new QLabel(label, this));
  layout->addWidget(list_);
  layout->addWidget(buttons);
}

std::vector<int32_t> ChoiceListDialog::chosen() const {
  std::vector<int32_t> indexes;
  for (int row = 0; row < list_->count(); ++row) {
    if (list_->item(row)->isSelected()) indexes.push_back(list_->item(row)->data(Qt::UserRole).toInt());
  }
  return indexes;
}

}  // namespace velda::ui
