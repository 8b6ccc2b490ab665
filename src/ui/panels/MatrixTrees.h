#pragma once

class QTreeWidget;
class QTreeWidgetItem;

namespace velda {
class CategoricalVariable;
class SymbolicMatrix;
}  // namespace velda

namespace velda::ui {

// The variables by dependence: every variable without a mother at the top,
// its daughters under it (first-daughter / next-sibling order), recursively,
// every item expanded.
void fillDependenceTree(QTreeWidget* tree, const SymbolicMatrix& matrix);

// A categorical variable's taxonomy from its root, every item expanded.
void fillTaxonomyTree(QTreeWidget* tree, const CategoricalVariable& variable);

}  // namespace velda::ui
