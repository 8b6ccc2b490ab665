#include "ui/dialogs/TaxonomiesDialog.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "model/CategoricalVariable.h"
#include "model/SymbolicMatrix.h"
#include "ui/panels/MatrixTrees.h"
#include "ui/widgets/Latin1.h"
#include "ui/widgets/WholeLines.h"

namespace velda::ui {

TaxonomiesDialog::TaxonomiesDialog(const SymbolicMatrix& matrix, QWidget* parent) : QDialog(parent), matrix_(matrix) {
  setWindowTitle(QStringLiteral("Taxonomies"));
  variables_ = new QListWidget(this);
  tree_ = new QTreeWidget(this);
  showWholeLines(variables_);
  showWholeLines(tree_);
  tree_->setHeaderHidden(true);
  tree_->setMinimumSize(280, 300);
  for (size_t i = 0; i < matrix.variableCount(); ++i) {
    const auto* variable = dynamic_cast<const CategoricalVariable*>(&matrix.variable(i));
    if (!variable || !variable->hasTaxonomy()) continue;
    auto* item = new QListWidgetItem(toQt(variable->name), variables_);
    item->setData(Qt::UserRole, static_cast<int>(i));
  }
  connect(variables_, &QListWidget::currentRowChanged, this, &TaxonomiesDialog::showChosen);
  if (variables_->count() > 0) variables_->setCurrentRow(0);

  auto* close = new QPushButton(QStringLiteral("&Close"), this);
  close->setDefault(true);
  connect(close, &QPushButton::clicked, this, &QDialog::accept);
  auto* left = new QVBoxLayout;
  left->addWidget(new QLabel(QStringLiteral("Variable"), this));
  left->addWidget(variables_);
  auto* row = new QHBoxLayout;
  row->addLayout(left);
  row->addWidget(tree_, 1);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(row);
  layout->addWidget(close, 0, Qt::AlignRight);
}

void TaxonomiesDialog::showChosen() {
  const QListWidgetItem* item = variables_->currentItem();
  if (!item) return;
  const auto& variable = static_cast<const CategoricalVariable&>(matrix_.variable(item->data(Qt::UserRole).toInt()));
  fillTaxonomyTree(tree_, variable);
}

}  // namespace velda::ui
