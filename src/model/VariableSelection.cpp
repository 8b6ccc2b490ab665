#include "model/VariableSelection.h"

#include <algorithm>
#include <new>

#include "common/LastError.h"

namespace velda {

int sortedSelection(std::span<const int32_t> chosen, size_t variableCount, std::vector<int32_t>& sorted) {
  for (int32_t index : chosen) {
    if (index >= 0 && static_cast<size_t>(index) < variableCount) continue;
    setError("Variable %d does not exist", index);
    return 0;
  }
  try {
    sorted.assign(chosen.begin(), chosen.end());
  } catch (const std::bad_alloc&) {
    setError("Memory allocation failed");
    return 0;
  }
  std::sort(sorted.begin(), sorted.end());
  sorted.erase(std::unique(sorted.begin(), sorted.end()), sorted.end());
  return 1;
}

}  // namespace velda
