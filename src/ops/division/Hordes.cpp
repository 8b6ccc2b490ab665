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
[[nodiscard]] bool reduceHorde(const SymbolicMatrix& matrix, Horde& horde, ReductionRun& run) {
  WorkSet workSet;
  if (!workSet.buildFromClasses(horde.classes)) return false;
  const auto q = static_cast<double>(horde.individualCount);
  std::vector<const Assertion*> rows;
  try {
    rows.reserve(horde.classes.size());
  } catch (const std::bad_alloc&) {
    return false;
  }
  for (const auto& member : horde.classes) rows.push_back(member.get());
  TriangularMatrix before;
  if (!computeVolumeMatrix(matrix, rows, q, before)) return false;

  std::vector<std::unique_ptr<Assertion>> reduced;
  if (!run.reduceAll(workSet, reduced)) return false;
  rows.clear();
  for (const auto& member : reduced) rows.push_back(member.get());
  TriangularMatrix after;
  if (!computeVolumeMatrix(matrix, rows, q, after)) return false;
  ReductionRun::refreshSubtreeWeights(matrix, reduced);
  horde.volumesBefore = std::move(before);
  horde.volumesAfter = std::move(after);
  horde.reducedClasses = std::move(reduced);
  return true;
}

}  // namespace

bool ReduceHordes(SymbolicMatrix& matrix, int32_t threshold, ConsoleLog& console, std::vector<SearchFigures>* figures,
                  int64_t levelCap) {
  if (matrix.hordes.empty()) return false;
  ReductionRun run(matrix, threshold, console, figures, levelCap);
  for (Horde& horde : matrix.hordes) {
    matrix.reductionThreshold = 0;
    if (!reduceHorde(matrix, horde, run)) return false;
  }
  return true;
}

}  // namespace velda
