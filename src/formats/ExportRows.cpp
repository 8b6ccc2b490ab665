#include "formats/ExportRows.h"

#include <new>

#include "common/LastError.h"
#include "model/SymbolicMatrix.h"

namespace velda {

bool OrderedRows(SymbolicMatrix& matrix, bool reducedRows, std::vector<const Assertion*>& labels,
                 std::vector<const Assertion*>& rows) {
  try {
    if (!matrix.assertionsIndexed()) {
      // Room first: indexing then fails only on numbers that are not 0 to
      // count - 1, each once.
      matrix.orderedAssertions.reserve(matrix.assertionCount());
      if (!matrix.indexAssertions()) {
        setError("Assertion numbers are not 0 to %zu, each once", matrix.assertionCount() - 1);
        return false;
      }
    }
    labels.assign(matrix.orderedAssertions.begin(), matrix.orderedAssertions.end());
    if (!reducedRows) {
      rows = labels;
      return true;
    }
    rows.clear();
    rows.reserve(matrix.reducedAssertions.size());
    for (const auto& reduced : matrix.reducedAssertions) rows.push_back(reduced.get());
    return true;
  } catch (const std::bad_alloc&) {
    setError("Memory allocation failed");
    return false;
  }
}

bool RowsFit(const SymbolicMatrix& matrix, std::span<const Assertion* const> labels,
             std::span<const Assertion* const> rows) {
  bool fit = labels.size() == rows.size();
  for (size_t i = 0; fit && i < rows.size(); ++i)
    fit = labels[i] && rows[i] && rows[i]->values.size() >= matrix.variableCount();
  if (!fit) setError("Reduced assertions do not match the assertions");
  return fit;
}

bool ActiveVariables(const SymbolicMatrix& matrix, std::span<const Assertion* const> labels,
                     std::span<const Assertion* const> rows, std::vector<size_t>& active) {
  if (!RowsFit(matrix, labels, rows)) return false;
  active.clear();
  for (size_t v = 0; v < matrix.variableCount(); ++v)
    if (matrix.variable(v).active) active.push_back(v);
  if (!active.empty()) return true;
  setError("No active variable");
  return false;
}

}  // namespace velda
