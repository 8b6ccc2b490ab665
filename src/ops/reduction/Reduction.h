#pragma once

#include <cstdint>
#include <vector>

#include "ops/reduction/ReductionRun.h"

namespace velda {

class ConsoleLog;
class SymbolicMatrix;

// "Reduce assertions": for every assertion, the reduced assertion that
// still covers `threshold` percent of its individuals with the smallest
// volume the search finds. Frees the previous reduction first (stored
// threshold 0), then fills matrix.reducedAssertions (slot = assertion
// number), matrix.volumesBefore / volumesAfter (entries volume^(1/P)) and
// stores the threshold. Returns true on success; false on failure or cancel, with
// the "before" matrix kept and no reduced assertion. `levelCap` bounds each
// assertion's search (see ReductionRun).
[[nodiscard]] bool Reduce(SymbolicMatrix& matrix, int32_t threshold, ConsoleLog& console,
                          std::vector<SearchFigures>* figures = nullptr, int64_t levelCap = kSearchLevelCap);

}  // namespace velda
