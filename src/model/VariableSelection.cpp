#include "model/VariableSelection.h"

#include <algorithm>
#include <new>

#include "common/LastError.h"

namespace velda {

bool sortedSelection(std::span<const int32_t> chosen, size_t variableCount, std::vector<int32_t>& sorted) {
  for (int32_t index : chosen) {
    if (index >= 0 && static_cast<size_t>(index) < variableCount) continue;
    setError("Variable %d does not exist", index);
    return false;
  }
  try {
    sorted.assign(chosen.begin(), chosen.end());
  } catch (const std::bad_alloc&) {
    setError("Memory allocation failed");
    return false;
  }
  std::sort(sorted.begin(), sorted.end());
  sorted.erase(std::unique(sorted.begin(), sorted.end()), sorted.end());
  return true;
}

}  // namespace velda
