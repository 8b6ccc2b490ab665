#include "model/VariableRemoval.h"

#include <algorithm>
#include <new>

#include "common/ConsoleLog.h"
#include "common/LastError.h"
#include "model/SymbolicMatrix.h"
#include "model/VariableSelection.h"

namespace velda {

namespace {

constexpr int32_t kRemoved = -1;

[[nodiscard]] bool checkRemovable(const SymbolicMatrix& matrix, const std::vector<int32_t>& chosen) {
  if (chosen.size() == matrix.variableCount()) {
    setError("Impossible to remove all the variables");
    return false;
  }
  for (int32_t index : chosen) {
    if (!isUsedByRule(matrix, static_cast<size_t>(index))) continue;
    setError("Variable '%s' is used by a rule", matrix.variable(static_cast<size_t>(index)).name.c_str());
    return false;
  }
  return true;
}

// Old variable index -> new one, kRemoved for the chosen variables.
std::vector<int32_t> newIndexes(size_t variableCount, const std::vector<int32_t>& chosen) {
  std::vector<int32_t> moved(variableCount, 0);
  for (int32_t index : chosen) moved[static_cast<size_t>(index)] = kRemoved;
  int32_t next = 0;
  for (int32_t& slot : moved)
    if (slot != kRemoved) slot = next++;
  return moved;
}

// The individuals' cells without the removed columns, in table order.
std::vector<std::unique_ptr<CellValue[]>> keptCells(const SymbolicMatrix& matrix, const std::vector<int32_t>& moved,
                                                    size_t keptCellCount) {
  std::vector<std::unique_ptr<CellValue[]>> kept;
  kept.reserve(matrix.individualCount());
  for (const Individual& individual : matrix.individuals) {
    auto cells = std::make_unique<CellValue[]>(keptCellCount);
    for (size_t v = 0; v < matrix.cellCount(); ++v)
      if (moved[v] != kRemoved) cells[static_cast<size_t>(moved[v])] = individual.cells[v];
    kept.push_back(std::move(cells));
  }
  return kept;
}

int32_t movedIndex(const std::vector<int32_t>& moved, int32_t index) {
  if (index < 0 || static_cast<size_t>(index) >= moved.size()) return index;
  return moved[static_cast<size_t>(index)];
}

}  // namespace

bool isUsedByRule(const SymbolicMatrix& matrix, size_t variableIndex) {
  const auto index = static_cast<int32_t>(variableIndex);
  for (const auto& rule : matrix.rules)
    if (rule->mother == index || rule->daughter == index) return true;
  return false;
}

bool removableVariables(const SymbolicMatrix& matrix, std::vector<int32_t>& offered) {
  offered.clear();
  try {
    for (size_t v = matrix.cellCount(); v < matrix.variableCount(); ++v)
      if (!isUsedByRule(matrix, v)) offered.push_back(static_cast<int32_t>(v));
  } catch (const std::bad_alloc&) {
    setError("Memory allocation failed");
    return false;
  }
  if (!offered.empty()) return true;
  setError("No variable can be deleted. All are used by rules.");
  return false;
}

bool removeVariables(SymbolicMatrix& matrix, std::span<const int32_t> variableIndexes, ConsoleLog& console) {
  std::vector<int32_t> chosen;
  if (!sortedSelection(variableIndexes, matrix.variableCount(), chosen)) return false;
  if (chosen.empty()) return true;
  if (!checkRemovable(matrix, chosen)) return false;

  size_t removedCells = 0;
  for (int32_t index : chosen)
    if (static_cast<size_t>(index) < matrix.cellCount()) ++removedCells;
  std::vector<int32_t> moved;
  std::vector<std::unique_ptr<CellValue[]>> cells;
  try {
    moved = newIndexes(matrix.variableCount(), chosen);
    if (removedCells) cells = keptCells(matrix, moved, matrix.cellCount() - removedCells);
    console.print("%d variables removed:", static_cast<int>(chosen.size()));
    for (int32_t index : chosen) console.print("   %s", matrix.variable(static_cast<size_t>(index)).name.c_str());
  } catch (const std::bad_alloc&) {
    setError("Memory allocation failed");
    return false;
  }

  // Nothing below allocates.
  matrix.eraseVariables(chosen, std::move(cells));
  for (size_t v = 0; v < matrix.variableCount(); ++v) {
    SymbolicVariable& variable = matrix.variable(v);
    variable.motherIndex = movedIndex(moved, variable.motherIndex);
    variable.firstDaughter = movedIndex(moved, variable.firstDaughter);
    variable.nextDaughter = movedIndex(moved, variable.nextDaughter);
  }
  for (auto& rule : matrix.rules) {
    rule->mother = movedIndex(moved, rule->mother);
    rule->daughter = movedIndex(moved, rule->daughter);
  }
  return true;
}

}  // namespace velda
