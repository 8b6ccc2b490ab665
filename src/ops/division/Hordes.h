#pragma once

#include <cstdint>
#include <vector>

#include "ops/reduction/ReductionRun.h"

namespace velda {

class ConsoleLog;
class SymbolicMatrix;

// "Reduce Hordes": reduces the classes of every horde as "Reduce assertions"
// reduces assertions, horde by horde in assertion order, filling each
// horde's reduced classes and its volume matrices before and after, whose
// entries are volume^(1/q) with q the divided assertion's individuals. The
// stored reduction threshold is reset to 0 for each horde and never set.
// Returns false at once without hordes, and on failure or cancel: the hordes
// reduced before keep their new results, the others their previous ones.
// `levelCap` bounds each class's search (see ReductionRun).
[[nodiscard]] bool ReduceHordes(SymbolicMatrix& matrix, int32_t threshold, ConsoleLog& console,
                                std::vector<SearchFigures>* figures = nullptr, int64_t levelCap = kSearchLevelCap);

}  // namespace velda
