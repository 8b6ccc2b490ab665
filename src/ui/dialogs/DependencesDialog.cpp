#include "ui/dialogs/DependencesDialog.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <sstream>
#include <unordered_set>

#include "model/Dependence.h"
#include "model/SymbolicMatrix.h"
#include "ui/widgets/Latin1.h"
#include "ui/widgets/WholeLines.h"

namespace velda::ui {

DependencesDialog::DependencesDialog(const SymbolicMatrix& matrix, QWidget* parent) : QDialog(parent), matrix_(matrix) {
  setWindowTitle(QStringLiteral("View dependences"));
  definitions_ = new QTreeWidget(this);
  definitions_->setHeaderLabel(QStringLiteral("Dependences definition"));
  definitions_->setMinimumSize(360, 280);
  hierarchy_ = new QTreeWidget(this);
  hierarchy_->setHeaderHidden(true);
  hierarchy_->setMinimumWidth(200);
  showWholeLines(definitions_);
  showWholeLines(hierarchy_);

  // The matrix lists every rule; a group is shown once, from its first rule
  // (the one that no other rule names as its next), with its rules below.
  std::unordered_set<const DependenceRule*> followers;
  for (const auto& rule : matrix.rules)
    if (rule->next) followers.insert(rule->next);
  for (size_t g = 0; g < matrix.rules.size(); ++g) {
    const DependenceRule* group = matrix.rules[g].get();
    if (followers.count(group)) continue;
    auto* top =
        new QTreeWidgetItem(definitions_, QStringList{toQt(matrix.variable(static_cast<size_t>(group->mother)).name)});
    top->setData(0, Qt::UserRole, static_cast<int>(g));
    for (const DependenceRule* rule = group; rule; rule = rule->next) {
      std::ostringstream text;
      describeRule(matrix, *rule, text);
      auto* item = new QTreeWidgetItem(top, QStringList{toQt(text.str())});
      item->setData(0, Qt::UserRole, static_cast<int>(g));
    }
  }
  definitions_->expandAll();
  connect(definitions_, &QTreeWidget::currentItemChanged, this, &DependencesDialog::showChosen);
  if (definitions_->topLevelItemCount() > 0) definitions_->setCurrentItem(definitions_->topLevelItem(0));

  auto* close = new QPushButton(QStringLiteral("&Close"), this);
  close->setDefault(true);
  connect(close, &QPushButton::clicked, this, &QDialog::accept);
  auto* row = new QHBoxLayout;
  row->addWidget(definitions_, 2);
  row->addWidget(hierarchy_, 1);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(row);
  layout->addWidget(close, 0, Qt::AlignRight);
}

void DependencesDialog::showChosen() {
  hierarchy_->clear();
  const QTreeWidgetItem* item = definitions_->currentItem();
  if (!item) return;
  const DependenceRule* group = matrix_.rules[static_cast<size_t>(item->data(0, Qt::UserRole).toInt())].get();
  auto* mother =
      new QTreeWidgetItem(hierarchy_, QStringList{toQt(matrix_.variable(static_cast<size_t>(group->mother)).name)});
  for (const DependenceRule* rule = group; rule; rule = rule->next) {
    new QTreeWidgetItem(mother, QStringList{toQt(matrix_.variable(static_cast<size_t>(rule->daughter)).name)});
  }
  hierarchy_->expandAll();
}

}  // namespace velda::ui
