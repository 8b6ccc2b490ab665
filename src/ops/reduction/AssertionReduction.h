#pragma once

#include <cstdint>
#include <vector>

#include "model/SymbolicMatrix.h"
#include "ops/CancelPoll.h"
#include "ops/reduction/LargestCostTree.h"
#include "ops/reduction/ReductionRecord.h"
#include "ops/reduction/RemovalCandidate.h"

namespace velda {

// The most search levels one assertion may visit; past it the best
// reduction found so far is kept.
constexpr int64_t kSearchLevelCap = 1000000;

// Reduces one record: gathers its removal steps under the budget, applies
// the cheap ones greedily, searches the rest depth first for the smallest
// volume that still covers N - k individuals, and leaves the record with the
// best steps applied.
//
// The search keeps the steps in one list that every level rearranges: a
// level walks its part of the list from the top down, and at each position
// first swaps the step with the largest live cost among the positions not
// yet walked into that position (the step already there keeps it on a tie,
// otherwise the lowest position wins). The steps a level moves stay where it
// put them for the levels below and for the rest of the levels above, so
// the order in which equal costs are tried depends on every level before.
class AssertionReduction {
 public:
  AssertionReduction(const SymbolicMatrix& matrix, ReductionRecord& record, int32_t threshold, CancelPoll& cancel,
                     int64_t levelCap = kSearchLevelCap)
      : matrix_(matrix), record_(record), threshold_(threshold), cancel_(cancel), levelCap_(levelCap) {}

  // 1 on success, 0 when memory runs out or the user cancelled.
  int run();

  // k = floor((100 - threshold) x N / 100), at most N - 1.
  static int32_t budget(int32_t threshold, int32_t n);

  int64_t levelsVisited() const { return levels_; }
  bool capped() const { return capped_; }

 private:
  enum class Status { Continue, Cancelled, Capped };
  // A candidate's live cost and its position in candidates_.
  struct Entry {
    int32_t cost;
    int32_t position;
  };

  bool gatherCandidates();
  void greedyPhase();
  void resortAfter(size_t position);
  void prepareSearch();
  // One level over the search positions 0..top, `covered` individuals
  // still in the record.
  Status level(int32_t top, int32_t covered);
  void settle(int32_t position, int64_t level);
  LargestCostTree::Largest largestLiveCost(int32_t last, int64_t level);
  void forgetSince(size_t mark);
  void swapPositions(int32_t p, int32_t q);
  void applyBest();

  const SymbolicMatrix& matrix_;
  ReductionRecord& record_;
  int32_t threshold_;
  CancelPoll& cancel_;
  int64_t levelCap_;

  int32_t budget_ = 0;
  int32_t minimumKept_ = 0;
  std::vector<RemovalCandidate> candidates_;
  std::vector<int32_t> sortedCost_;  // each position's cost when last sorted (greedy phase)
  size_t searchStart_ = 0;

  // The search list: candidates_ indexes by search position, and back.
  std::vector<int32_t> order_;
  std::vector<int32_t> positionOf_;
  // Per candidate, the cost last measured and the level (numbered in the
  // order visited, 0 before the search) whose state it was measured in.
  struct Known {
    int32_t cost = 0;
    int64_t level = 0;
  };
  std::vector<Known> known_;
  // What deeper levels replaced, to be given back when they end.
  struct Overwritten {
    int32_t candidate;
    Known known;
  };
  std::vector<Overwritten> overwritten_;
  LargestCostTree costs_{0};
  std::vector<int32_t> applied_;  // candidates applied on the current path
  std::vector<int32_t> best_;     // candidates applied in the best solution
  double bestVolume_ = 0.0;
  int64_t levels_ = 0;
  bool capped_ = false;
};

}  // namespace velda
