#include "ui/panels/MatrixTrees.h"

#include <QTreeWidget>

#include "model/CategoricalVariable.h"
#include "model/SymbolicMatrix.h"
#include "ui/widgets/Latin1.h"

namespace velda::ui {

namespace {

void addVariable(QTreeWidgetItem* item, const SymbolicMatrix& matrix, int32_t index, int depth) {
  const SymbolicVariable& variable = matrix.variable(static_cast<size_t>(index));
  item->setText(0, toQt(variable.name));
  // A daughter chain longer than the variable count can only be a broken
  // link: stop rather than loop.
  if (depth > static_cast<int>(matrix.variableCount())) return;
  for (int32_t d = variable.firstDaughter; d >= 0 && static_cast<size_t>(d) < matrix.variableCount();
       d = matrix.variable(static_cast<size_t>(d)).nextDaughter) {
    addVariable(new QTreeWidgetItem(item), matrix, d, depth + 1);
  }
}

void addNode(QTreeWidgetItem* item, const Modality& node, int depth) {
  item->setText(0, toQt(node.name));
  if (depth > 10000) return;
  for (const Modality* child = node.firstChild; child; child = child->nextSibling) {
    addNode(new QTreeWidgetItem(item), *child, depth + 1);
  }
}

}  // namespace

void fillDependenceTree(QTreeWidget* tree, const SymbolicMatrix& matrix) {
  tree->clear();
  for (size_t i = 0; i < matrix.variableCount(); ++i) {
    if (matrix.variable(i).motherIndex >= 0) continue;
    addVariable(new QTreeWidgetItem(tree), matrix, static_cast<int32_t>(i), 0);
  }
  tree->expandAll();
}

void fillTaxonomyTree(QTreeWidget* tree, const CategoricalVariable& variable) {
  tree->clear();
  if (!variable.taxonomyRoot) return;
  addNode(new QTreeWidgetItem(tree), *variable.taxonomyRoot, 0);
  tree->expandAll();
}

}  // namespace velda::ui
