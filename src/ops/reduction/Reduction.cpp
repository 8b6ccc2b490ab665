#include "ops/reduction/Reduction.h"

#include "model/SymbolicMatrix.h"
#include "ops/reduction/VolumeMatrix.h"
#include "ops/reduction/WorkSet.h"

namespace velda {

bool Reduce(SymbolicMatrix& matrix, int32_t threshold, ConsoleLog& console, std::vector<SearchFigures>* figures,
            int64_t levelCap) {
  matrix.reducedAssertions.clear();
  matrix.volumesBefore.clear();
  matrix.volumesAfter.clear();
  matrix.reductionThreshold = 0;
  if (!matrix.indexAssertions()) return false;

  WorkSet workSet;
  if (!workSet.buildFromAssertions(matrix)) return false;
  const auto p = static_cast<double>(matrix.cellCount());
  const std::vector<Assertion*>& assertions = matrix.orderedAssertions;
  if (!computeVolumeMatrix(matrix, {assertions.data(), assertions.size()}, p, matrix.volumesBefore)) return false;

  std::vector<std::unique_ptr<Assertion>> reduced;
  ReductionRun run(matrix, threshold, console, figures, levelCap);
  if (!run.reduceAll(workSet, reduced)) return false;

  std::vector<const Assertion*> rows;
  try {
    rows.reserve(reduced.size());
  } catch (const std::bad_alloc&) {
    return false;
  }
  for (const auto& row : reduced) rows.push_back(row.get());
  if (!computeVolumeMatrix(matrix, rows, p, matrix.volumesAfter)) return false;
  matrix.reducedAssertions = std::move(reduced);
  matrix.reductionThreshold = threshold;
  ReductionRun::refreshSubtreeWeights(matrix, matrix.reducedAssertions);
  return true;
}

}  // namespace velda
