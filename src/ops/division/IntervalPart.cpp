#include "ops/division/IntervalPart.h"

#include <algorithm>

namespace velda {

IntervalPart::IntervalPart(const std::vector<const CellValue*>& cells) : position_(cells.size(), -1) {
  for (size_t m = 0; m < cells.size(); ++m)
    if (cells[m]->hasNumber()) byValue_.push_back(static_cast<int32_t>(m));
  std::stable_sort(byValue_.begin(), byValue_.end(),
                   [&](int32_t x, int32_t y) { return cells[x]->number < cells[y]->number; });
  std::vector<int32_t> perValue;
  for (size_t slot = 0; slot < byValue_.size(); ++slot) {
    const double x = cells[byValue_[slot]]->number;
    if (values_.empty() || values_.back() != x) {
      values_.push_back(x);
      perValue.push_back(0);
      start_.push_back(static_cast<int32_t>(slot));
    }
    ++perValue.back();
    position_[byValue_[slot]] = static_cast<int32_t>(values_.size()) - 1;
  }
  start_.push_back(static_cast<int32_t>(byValue_.size()));
  counts_.emplace(perValue);
}

void IntervalPart::remove(size_t member) {
  if (position_[member] >= 0) counts_->add(position_[member], -1);
}

void IntervalPart::restore(size_t member) {
  if (position_[member] >= 0) counts_->add(position_[member], 1);
}

double IntervalPart::size() const {
  const int32_t covered = counts_->total();
  if (covered == 0) return 1.0;
  const double low = values_[counts_->reach(1)];
  const double high = values_[counts_->reach(covered)];
  return high > low ? high - low : 1.0;
}

void IntervalPart::gather(std::vector<RemovalCandidate>& list, int32_t variable, int32_t k) const {
  // The distinct values that covered individuals still hold.
  std::vector<int32_t> present;
  for (int32_t p = 0; p < static_cast<int32_t>(values_.size()); ++p)
    if (counts_->range(p, p) > 0) present.push_back(p);
  if (present.empty()) return;
  auto step = [&](int32_t low, int32_t high, int32_t cost) {
    RemovalCandidate candidate;
    candidate.variable = variable;
    candidate.a = values_[low];
    candidate.b = values_[high];
    candidate.low = low;
    candidate.high = high;
    candidate.cost = cost;
    list.push_back(candidate);
  };
  const auto last = static_cast<int32_t>(present.size()) - 1;
  int32_t lowEnds = 0;
  int32_t cumulative = 0;
  for (int32_t i = 0; i <= last; ++i) {
    cumulative += counts_->range(present[i], present[i]);
    if (cumulative > k) break;
    step(present[0], present[i], cumulative);
    ++lowEnds;
  }
  cumulative = 0;
  for (int32_t j = last; j > lowEnds; --j) {
    cumulative += counts_->range(present[j], present[j]);
    if (cumulative > k) break;
    step(present[j], present[last], cumulative);
  }
}

int32_t IntervalPart::liveCost(const RemovalCandidate& candidate) const {
  return counts_->range(candidate.low, candidate.high);
}

std::span<const int32_t> IntervalPart::membersInside(const RemovalCandidate& candidate) const {
  const int32_t first = start_[candidate.low];
  const int32_t end = start_[candidate.high + 1];
  return std::span<const int32_t>(byValue_).subspan(first, end - first);
}

}  // namespace velda
