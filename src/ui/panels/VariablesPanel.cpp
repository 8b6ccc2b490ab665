#include "ui/panels/VariablesPanel.h"

#include <QStackedWidget>
#include <QTreeWidget>

#include "model/CategoricalVariable.h"
#include "model/SymbolicMatrix.h"
#include "ui/dialogs/VariablePropertiesDialog.h"
#include "ui/panels/EmptyPage.h"
#include "ui/widgets/Latin1.h"
#include "ui/widgets/WholeLines.h"

namespace velda::ui {

namespace {

enum Kind { CategoricalSingle, Interval, QuantitativeSingle, Multinominal };
const char* const kKindNames[] = {"Categorical Single", "Interval", "Quantitative Single", "Multinominal"};

Kind kindOf(const SymbolicVariable& variable) {
  if (variable.isCategorical()) return variable.multiple ? Multinominal : CategoricalSingle;
  return variable.multiple ? Interval : QuantitativeSingle;
}

}  // namespace

VariablesPanel::VariablesPanel(QWidget* parent) : QDockWidget(QStringLiteral("Variables display"), parent) {
  setObjectName(QStringLiteral("VariablesPanel"));
  tree_ = new QTreeWidget(this);
  tree_->setHeaderHidden(true);
  showWholeLines(tree_);
  pages_ = new QStackedWidget(this);
  pages_->addWidget(new EmptyPage(pages_));
  pages_->addWidget(tree_);
  setWidget(pages_);
}

bool VariablesPanel::isEmptyShown() const { return pages_->currentIndex() == 0; }

void VariablesPanel::clear() {
  tree_->clear();
  pages_->setCurrentIndex(0);
}

void VariablesPanel::fill(const SymbolicMatrix& matrix) {
  tree_->clear();
  auto* root = new QTreeWidgetItem(tree_, QStringList{QStringLiteral("Variables")});
  root->setToolTip(0, QStringLiteral("Stores the variables."));
  QTreeWidgetItem* kinds[4] = {};
  for (size_t i = 0; i < matrix.variableCount(); ++i) {
    const SymbolicVariable& variable = matrix.variable(i);
    const Kind kind = kindOf(variable);
    if (!kinds[kind]) kinds[kind] = new QTreeWidgetItem(root, QStringList{QString::fromLatin1(kKindNames[kind])});
    auto* item = new QTreeWidgetItem(kinds[kind], QStringList{toQt(variable.name)});
    if (kind != Multinominal) continue;
    const int32_t mode = static_cast<const CategoricalVariable&>(variable).mode;
    auto* type = new QTreeWidgetItem(
        item, QStringList{QString::fromLatin1(VariablePropertiesDialog::kViewTypes[mode >= 0 && mode < 4 ? mode : 0])});
    type->setToolTip(0, QStringLiteral("Multinomal variables view."));
  }
  tree_->expandAll();
  pages_->setCurrentIndex(1);
}

}  // namespace velda::ui
