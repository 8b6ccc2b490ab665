#include "ops/division/Hordes.h"

#include <new>

#include "model/SymbolicMatrix.h"
#include "ops/reduction/VolumeMatrix.h"
#include "ops/reduction/WorkSet.h"

namespace velda {

namespace {

// Reduces one horde's classes. Its reduced classes and both volume
// matrices are replaced together once all three are made: a failure leaves
// the horde's previous results as they were.
int reduceHorde(const SymbolicMatrix& matrix, Horde& horde, ReductionRun& run) {
  WorkSet workSet;
  if (!workSet.buildFromClasses(horde.classes)) return 0;
  const auto q = static_cast<double>(horde.individualCount);
  std::vector<const Assertion*> rows;
  try {
    rows.reserve(horde.classes.size());
  } catch (const std::bad_alloc&) {
    return 0;
  }
  for (const auto& member : horde.classes) rows.push_back(member.get());
  TriangularMatrix before;
  if (!computeVolumeMatrix(matrix, rows, q, before)) return 0;

  std::vector<std::unique_ptr<Assertion>> reduced;
  if (!run.reduceAll(workSet, reduced)) return 0;
  rows.clear();
  for (const auto& member : reduced) rows.push_back(member.get());
  TriangularMatrix after;
  if (!computeVolumeMatrix(matrix, rows, q, after)) return 0;
  ReductionRun::refreshSubtreeWeights(matrix, reduced);
  horde.volumesBefore = std::move(before);
  horde.volumesAfter = std::move(after);
  horde.reducedClasses = std::move(reduced);
  return 1;
}

}  // namespace

int ReduceHordes(SymbolicMatrix& matrix, int32_t threshold, ConsoleLog& console, std::vector<SearchFigures>* figures,
                 int64_t levelCap) {
  if (matrix.hordes.empty()) return 0;
  ReductionRun run(matrix, threshold, console, figures, levelCap);
  for (Horde& horde : matrix.hordes) {
    matrix.reductionThreshold = 0;
    if (!reduceHorde(matrix, horde, run)) return 0;
  }
  return 1;
}

}  // namespace velda
