#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "model/Assertion.h"
#include "model/SymbolicMatrix.h"
#include "ops/CancelPoll.h"
#include "ops/reduction/AssertionReduction.h"
#include "ops/reduction/WorkSet.h"

namespace velda {

class ConsoleLog;

// What the search did for one assertion (benchmarks and tests read it).
struct SearchFigures {
  std::string assertion;
  int32_t individuals = 0;
  int64_t levels = 0;
  bool capped = false;
  double seconds = 0.0;
};

// Reduces every record of a work set in order, as Reduce and ReduceHordes
// both do: progress line 1 "Reduction in progress...", line 2 per
// assertion, one console line for each assertion whose search reached the
// level cap (the most levels one assertion's search may visit).
class ReductionRun {
 public:
  ReductionRun(const SymbolicMatrix& matrix, int32_t threshold, ConsoleLog& console,
               std::vector<SearchFigures>* figures = nullptr, int64_t levelCap = kSearchLevelCap)
      : matrix_(matrix), threshold_(threshold), console_(console), figures_(figures), levelCap_(levelCap) {}

  // The reduced assertions, one per record in record order. Returns false, with
  // `reduced` empty, at the first record whose reduction fails or is
  // cancelled.
  [[nodiscard]] bool reduceAll(WorkSet& workSet, std::vector<std::unique_ptr<Assertion>>& reduced);

  // Recomputes the taxonomy's subtree weights of every categorical value
  // whose variable has a taxonomy.
  static void refreshSubtreeWeights(const SymbolicMatrix& matrix, std::vector<std::unique_ptr<Assertion>>& rows);

 private:
  const SymbolicMatrix& matrix_;
  int32_t threshold_;
  ConsoleLog& console_;
  std::vector<SearchFigures>* figures_;
  int64_t levelCap_;
  CancelPoll cancel_;
};

}  // namespace velda
