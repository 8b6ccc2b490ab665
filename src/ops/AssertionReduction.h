#pragma once

#include <cstdint>
#include <vector>

#include "model/SymbolicMatrix.h"
#include "ops/CancelPoll.h"
#include "ops/ReductionRecord.h"
#include "ops/RemovalCandidate.h"

namespace velda {

// The most search levels one assertion may visit; past it the best
// reduction found so far is kept.
constexpr int64_t kSearchLevelCap = 1000000;

// Reduces one record: gathers its removal steps under the budget, applies
// the cheap ones greedily, searches the rest depth first for the smallest
// volume that still covers N - k individuals, and leaves the record with the
// best steps applied.
class AssertionReduction {
 public:
  AssertionReduction(const SymbolicMatrix& matrix, ReductionRecord& record, int32_t threshold, CancelPoll& cancel)
      : matrix_(matrix), record_(record), threshold_(threshold), cancel_(cancel) {}

  // 1 on success, 0 when memory runs out or the user cancelled.
  int run();

  // k = floor((100 - threshold) x N / 100), at most N - 1.
  static int32_t budget(int32_t threshold, int32_t n);

  int64_t levelsVisited() const { return levels_; }
  bool capped() const { return capped_; }

 private:
  enum class Status { Continue, Cancelled, Capped };
  // A candidate in play at one level: its live cost there and its position
  // in candidates_.
  struct Entry {
    int32_t cost;
    int32_t position;
  };

  bool gatherCandidates();
  void greedyPhase();
  void resortAfter(size_t position);
  // One level of the search over the entries source..sourceEnd of stack_.
  Status level(size_t source, size_t sourceEnd, int32_t covered);
  void applyBest();

  const SymbolicMatrix& matrix_;
  ReductionRecord& record_;
  int32_t threshold_;
  CancelPoll& cancel_;

  int32_t budget_ = 0;
  int32_t minimumKept_ = 0;
  std::vector<RemovalCandidate> candidates_;
  std::vector<int32_t> sortedCost_;  // each position's cost when last sorted (greedy phase)
  size_t searchStart_ = 0;

  // The candidates in play at each level of the current path, one segment
  // per level, each in the order the level takes them.
  std::vector<Entry> stack_;
  std::vector<int32_t> applied_;                    // positions applied on the current path
  std::vector<int32_t> best_;                       // positions applied in the best solution
  double bestVolume_ = 0.0;
  int64_t levels_ = 0;
  bool capped_ = false;
};

}  // namespace velda
