#include "ops/AssertionReduction.h"

#include <algorithm>
#include <new>

#include "common/Progress.h"

namespace velda {

int32_t AssertionReduction::budget(int32_t threshold, int32_t n) {
  const int64_t k = (100 - static_cast<int64_t>(threshold)) * n / 100;
  if (k >= n) return n - 1;
  return k < 0 ? 0 : static_cast<int32_t>(k);
}

int AssertionReduction::run() {
  progressLine2("Assertion %s", record_.assertion().id.c_str());
  if (!record_.prepare(matrix_)) return 0;
  const int32_t n = record_.size();
  if (n == 0) return 1;
  budget_ = budget(threshold_, n);
  minimumKept_ = n - budget_;
  try {
    if (!gatherCandidates()) return 1;
    greedyPhase();
    bestVolume_ = record_.volume(matrix_);
    for (size_t p = searchStart_; p < candidates_.size(); ++p) stack_.push_back({0, static_cast<int32_t>(p)});
    const Status status = level(0, stack_.size(), record_.covered());
    stack_.clear();
    if (status == Status::Cancelled) return 0;
    capped_ = status == Status::Capped;
    applyBest();
  } catch (const std::bad_alloc&) {
    return 0;
  }
  return 1;
}

// The list is built as a list whose new steps go in front: the last step
// made comes first. Returns false when there is no step.
bool AssertionReduction::gatherCandidates() {
  for (size_t v = 0; v < matrix_.cellCount; ++v) record_.gather(candidates_, v, budget_);
  if (candidates_.empty()) return false;
  std::reverse(candidates_.begin(), candidates_.end());
  std::stable_sort(candidates_.begin(), candidates_.end(),
                   [](const RemovalCandidate& x, const RemovalCandidate& y) { return x.cost < y.cost; });
  sortedCost_.reserve(candidates_.size());
  for (const RemovalCandidate& c : candidates_) sortedCost_.push_back(c.cost);
  return true;
}

// Applies the cheapest steps while more than 10 remain, less than half the
// budget is spent and the current step costs less than half the budget.
// Applied steps stay applied.
void AssertionReduction::greedyPhase() {
  const int32_t half = budget_ / 2;
  const size_t n = candidates_.size();
  int32_t total = 0;
  size_t i = 0;
  while (n - i > 10 && total < half && record_.liveCost(candidates_[i]) < half) {
    RemovalCandidate& candidate = candidates_[i];
    if (candidate.active && record_.liveCost(candidate) > 0) {
      total += record_.apply(candidate);
      candidate.active = 0;
      resortAfter(i);
    }
    ++i;
  }
  searchStart_ = i;
}

// A stable sort by live cost of the steps after `position`. They were in
// stable order by their previous costs, and applying a step only lowers
// costs, so the steps whose cost did not change keep their order: sorting
// the changed ones and merging by (cost, previous position) gives exactly
// what a stable sort of the whole tail gives.
void AssertionReduction::resortAfter(size_t position) {
  std::vector<Entry> unchanged;
  std::vector<Entry> changed;
  for (size_t p = position + 1; p < candidates_.size(); ++p) {
    const Entry entry{record_.liveCost(candidates_[p]), static_cast<int32_t>(p)};
    (entry.cost == sortedCost_[p] ? unchanged : changed).push_back(entry);
  }
  if (changed.empty()) return;
  auto byCostThenPosition = [](const Entry& x, const Entry& y) {
    return x.cost != y.cost ? x.cost < y.cost : x.position < y.position;
  };
  std::sort(changed.begin(), changed.end(), byCostThenPosition);
  std::vector<Entry> merged(unchanged.size() + changed.size());
  std::merge(unchanged.begin(), unchanged.end(), changed.begin(), changed.end(), merged.begin(), byCostThenPosition);
  std::vector<RemovalCandidate> tail;
  tail.reserve(merged.size());
  for (const Entry& entry : merged) tail.push_back(candidates_[entry.position]);
  for (size_t j = 0; j < merged.size(); ++j) {
    candidates_[position + 1 + j] = tail[j];
    sortedCost_[position + 1 + j] = merged[j].cost;
  }
}

// One level: every step in play whose live cost fits in what the coverage
// allows (covered - c >= N - k) is taken, the largest cost first; each is
// applied, the levels below search the steps after it, and it is undone.
// Steps that cost more than the allowance, or nothing, cannot be applied
// here nor below (applying a step lowers the allowance by what it removes,
// and any other cost by at most that), so they leave play. Ties between equal costs go to the step that
// comes later in the sorted list. After its steps, the level measures the
// volume of the current description against the best so far.
AssertionReduction::Status AssertionReduction::level(size_t source, size_t sourceEnd, int32_t covered) {
  if (levels_ >= kSearchLevelCap) return Status::Capped;
  ++levels_;
  const int32_t allowance = covered - minimumKept_;
  const size_t begin = stack_.size();
  if (allowance > 0) {
    for (size_t s = source; s < sourceEnd; ++s) {
      const int32_t position = stack_[s].position;
      const int32_t cost = record_.liveCost(candidates_[position]);
      if (cost > 0 && cost <= allowance) stack_.push_back({cost, position});
    }
  }
  const size_t end = stack_.size();
  std::sort(stack_.begin() + static_cast<std::ptrdiff_t>(begin), stack_.end(), [](const Entry& x, const Entry& y) {
    return x.cost != y.cost ? x.cost > y.cost : x.position > y.position;
  });

  for (size_t e = begin; e < end; ++e) {
    if (cancel_.requested()) return Status::Cancelled;
    RemovalCandidate& candidate = candidates_[stack_[e].position];
    const int32_t removed = record_.apply(candidate);
    candidate.active = 0;
    applied_.push_back(stack_[e].position);
    const Status status = level(e + 1, end, covered - removed);
    record_.undo(candidate);
    candidate.active = 1;
    applied_.pop_back();
    stack_.resize(end);
    if (status != Status::Continue) return status;
  }
  stack_.resize(begin);

  const double volume = record_.volume(matrix_);
  if (volume < bestVolume_) {
    bestVolume_ = volume;
    best_ = applied_;
  }
  return Status::Continue;
}

void AssertionReduction::applyBest() {
  for (int32_t position : best_) {
    record_.apply(candidates_[position]);
    candidates_[position].active = 0;
  }
}

}  // namespace velda
