#include "ops/reduction/AssertionReduction.h"

#include <algorithm>
#include <new>

#include "common/Progress.h"

namespace velda {

int32_t AssertionReduction::budget(int32_t threshold, int32_t n) {
  const int64_t k = (100 - static_cast<int64_t>(threshold)) * n / 100;
  if (k >= n) return n - 1;
  return k < 0 ? 0 : static_cast<int32_t>(k);
}

bool AssertionReduction::run() {
  progressLine2("Assertion %s", record_.assertion().id.c_str());
  if (!record_.prepare(matrix_)) return false;
  const int32_t n = record_.size();
  if (n == 0) return true;
  budget_ = budget(threshold_, n);
  minimumKept_ = n - budget_;
  try {
    if (!gatherCandidates()) return true;
    greedyPhase();
    bestVolume_ = record_.volume(matrix_);
    prepareSearch();
    const Status status = level(static_cast<int32_t>(order_.size()) - 1, record_.covered());
    if (status == Status::Cancelled) return false;
    capped_ = status == Status::Capped;
    applyBest();
  } catch (const std::bad_alloc&) {
    return false;
  }
  return true;
}

// The list is built as a list whose new steps go in front: the last step
// made comes first. Returns false when there is no step.
bool AssertionReduction::gatherCandidates() {
  for (size_t v = 0; v < matrix_.cellCount(); ++v) record_.gather(candidates_, v, budget_);
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

// The search list is the list after the greedy phase, ascending by live
// cost, without its leading steps that cost nothing: a level takes the
// largest cost first and ends when only steps costing nothing are left
// below, so no level reaches those positions or moves a step into them.
void AssertionReduction::prepareSearch() {
  size_t first = searchStart_;
  while (first < candidates_.size() && record_.liveCost(candidates_[first]) == 0) ++first;
  order_.reserve(candidates_.size() - first);
  for (size_t p = first; p < candidates_.size(); ++p) order_.push_back(static_cast<int32_t>(p));
  known_.assign(candidates_.size(), Known{});
  positionOf_.assign(candidates_.size(), -1);
  for (size_t p = 0; p < order_.size(); ++p) {
    known_[order_[p]].cost = record_.liveCost(candidates_[order_[p]]);
    positionOf_[order_[p]] = static_cast<int32_t>(p);
  }
  costs_ = LargestCostTree(order_.size());
  costs_.refreshPrefix(static_cast<int32_t>(order_.size()) - 1, [&](int32_t p) { return known_[order_[p]].cost; });
}

// Makes the cost known at position p the live cost of the level `level`.
void AssertionReduction::settle(int32_t p, int64_t level) {
  Known& known = known_[order_[p]];
  if (known.level == level) return;
  overwritten_.push_back({order_[p], known});
  known = {record_.liveCost(candidates_[order_[p]]), level};
  costs_.set(p, known.cost);
}

// The largest live cost among positions 0..i and the lowest position
// holding it. A known cost that was not measured at this level is one that
// an enclosing level measured with fewer steps applied, so it is at least
// the live cost: only the positions that look largest need measuring.
LargestCostTree::Largest AssertionReduction::largestLiveCost(int32_t i, int64_t level) {
  for (;;) {
    const LargestCostTree::Largest largest = costs_.largestUpTo(i);
    if (largest.cost == 0 || known_[order_[largest.position]].level == level) return largest;
    settle(largest.position, level);
  }
}

// Gives back the costs known before a deeper level measured its own, at
// wherever their steps now stand.
void AssertionReduction::forgetSince(size_t mark) {
  while (overwritten_.size() > mark) {
    const Overwritten& previous = overwritten_.back();
    known_[previous.candidate] = previous.known;
    costs_.set(positionOf_[previous.candidate], previous.known.cost);
    overwritten_.pop_back();
  }
}

void AssertionReduction::swapPositions(int32_t p, int32_t q) {
  std::swap(order_[p], order_[q]);
  positionOf_[order_[p]] = p;
  positionOf_[order_[q]] = q;
  costs_.set(p, known_[order_[p]].cost);
  costs_.set(q, known_[order_[q]].cost);
}

// From the top position down: the largest live cost among the positions
// left comes to the current one; a step that the coverage allows is
// applied, the levels below search the positions under it, and it is
// undone. The level ends when the largest cost left is 0, and then measures
// the volume of the current description against the best so far.
AssertionReduction::Status AssertionReduction::level(int32_t top, int32_t covered) {
  if (levels_ >= levelCap_) return Status::Capped;
  const int64_t self = ++levels_;
  const int32_t allowance = covered - minimumKept_;
  for (int32_t i = top; i >= 0; --i) {
    if (cancel_.requested()) return Status::Cancelled;
    settle(i, self);
    const LargestCostTree::Largest largest = largestLiveCost(i, self);
    if (largest.cost == 0) break;
    if (known_[order_[i]].cost != largest.cost) swapPositions(i, largest.position);
    if (largest.cost > allowance) continue;
    RemovalCandidate& candidate = candidates_[order_[i]];
    const int32_t removed = record_.apply(candidate);
    candidate.active = 0;
    applied_.push_back(order_[i]);
    const size_t mark = overwritten_.size();
    const Status status = level(i - 1, covered - removed);
    record_.undo(candidate);
    candidate.active = 1;
    applied_.pop_back();
    forgetSince(mark);
    if (status != Status::Continue) return status;
  }

  const double volume = record_.volume(matrix_);
  if (volume < bestVolume_) {
    bestVolume_ = volume;
    best_ = applied_;
  }
  return Status::Continue;
}

void AssertionReduction::applyBest() {
  for (int32_t index : best_) {
    record_.apply(candidates_[index]);
    candidates_[index].active = 0;
  }
}

}  // namespace velda
