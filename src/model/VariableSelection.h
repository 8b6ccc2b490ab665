#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace velda {

// A choice of variables from a dialog or the command line, put in variable
// order without repeats. Returns false with "Variable %d does not exist" in the
// last-error text when an index is outside 0..variableCount-1, and with
// "Memory allocation failed" when memory runs out.
[[nodiscard]] bool sortedSelection(std::span<const int32_t> chosen, size_t variableCount, std::vector<int32_t>& sorted);

}  // namespace velda
