#include "model/Taxonomy.h"

#include <new>

#include "common/ConsoleLog.h"
#include "common/LastError.h"
#include "model/CategoricalValue.h"
#include "model/CategoricalVariable.h"
#include "model/MatrixRows.h"
#include "model/SymbolicMatrix.h"
#include "model/VariableSelection.h"

namespace velda {

namespace {

CategoricalVariable* categoricalAt(SymbolicMatrix& matrix, size_t index) {
  if (index >= matrix.variableCount() || !matrix.variable(index).isCategorical()) return nullptr;
  return &static_cast<CategoricalVariable&>(matrix.variable(index));
}

bool hasTaxonomy(const SymbolicVariable& variable) {
  return variable.isCategorical() && static_cast<const CategoricalVariable&>(variable).hasTaxonomy();
}

// The entry of the highest node, among the entry's own node and its
// ancestors, that has an entry in the value.
ValueEntry& topmostEntry(CategoricalValue& value, ValueEntry& entry) {
  ValueEntry* topmost = &entry;
  const Modality* node = value.categoricalVariable().byIndex(entry.index);
  for (const Modality* above = node ? node->parent : nullptr; above; above = above->parent)
    if (ValueEntry* held = value.entries.find(above->index)) topmost = held;
  return *topmost;
}

}  // namespace

// The subtree weight is defined by a walk from the root that adds up the
// children's subtree weights and keeps a node's sum only when no ancestor had
// an entry. Every entry below such a top entry adds its weight to that top
// entry's sum and nothing else, so each entry climbs to its topmost ancestor
// with an entry instead: the same sums without recursion (hierarchies from a
// query may be deep) and without visiting the nodes that have no entry.
void computeSubtreeWeights(CategoricalValue& value) {
  for (ValueEntry& entry : value.entries) entry.subtreeWeight = 0.0;
  if (!value.categoricalVariable().hasTaxonomy()) return;
  for (ValueEntry& entry : value.entries) topmostEntry(value, entry).subtreeWeight += entry.weight;
}

void settleTaxonomy(SymbolicMatrix& matrix, size_t variableIndex) {
  if (!categoricalAt(matrix, variableIndex)) return;
  forEachValueRow(matrix, [variableIndex](Assertion& row) {
    if (variableIndex >= row.values.size()) return;
    computeSubtreeWeights(static_cast<CategoricalValue&>(row.value(variableIndex)));
  });
}

std::vector<int32_t> taxonomyVariables(const SymbolicMatrix& matrix) {
  std::vector<int32_t> indexes;
  for (size_t v = 0; v < matrix.variableCount(); ++v)
    if (hasTaxonomy(matrix.variable(v))) indexes.push_back(static_cast<int32_t>(v));
  return indexes;
}

void removeTaxonomy(SymbolicMatrix& matrix, size_t variableIndex) {
  CategoricalVariable* variable = categoricalAt(matrix, variableIndex);
  if (!variable || !variable->hasTaxonomy()) return;
  variable->clearTaxonomy();
  settleTaxonomy(matrix, variableIndex);
}

bool removeTaxonomies(SymbolicMatrix& matrix, std::span<const int32_t> variableIndexes, ConsoleLog& console) {
  std::vector<int32_t> chosen;
  if (!sortedSelection(variableIndexes, matrix.variableCount(), chosen)) return false;
  for (int32_t index : chosen) {
    if (hasTaxonomy(matrix.variable(static_cast<size_t>(index)))) continue;
    setError("Variable '%s' has no taxonomy", matrix.variable(static_cast<size_t>(index)).name.c_str());
    return false;
  }
  if (chosen.empty()) return true;
  try {
    console.print("%d taxonomies removed:", static_cast<int>(chosen.size()));
    for (int32_t index : chosen) console.print("   %s", matrix.variable(static_cast<size_t>(index)).name.c_str());
  } catch (const std::bad_alloc&) {
    setError("Memory allocation failed");
    return false;
  }
  for (int32_t index : chosen) removeTaxonomy(matrix, static_cast<size_t>(index));
  return true;
}

void printTaxonomyCoverage(ConsoleLog& console, const SymbolicVariable& variable, int coveringNodes) {
  console.print("taxonomy variable '%s': initial domain is covered by %d nodes", variable.name.c_str(), coveringNodes);
}

}  // namespace velda
