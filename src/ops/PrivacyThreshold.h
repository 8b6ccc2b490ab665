#pragma once

#include <cstdint>

namespace velda {

class ConsoleLog;
class SymbolicMatrix;

// Deletes every assertion with fewer than `threshold` individuals (one with
// exactly `threshold` is kept), erases the individuals left without any
// assertion, renumbers the remaining assertions densely in their previous
// order and reports everything as console lines. Throws std::bad_alloc
// before any change; returns false (last-error text set) when the remaining
// assertions cannot be indexed, the matrix then being unusable.
[[nodiscard]] bool ApplyPrivacyThreshold(SymbolicMatrix& matrix, ConsoleLog& console, int32_t threshold);

}  // namespace velda
