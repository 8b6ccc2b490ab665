#include "ops/division/FenwickCounts.h"

namespace velda {

FenwickCounts::FenwickCounts(const std::vector<int32_t>& counts) : tree_(counts.size() + 1, 0) {
  const auto n = static_cast<int32_t>(counts.size());
  for (int32_t i = 1; i <= n; ++i) {
    tree_[i] += counts[i - 1];
    total_ += counts[i - 1];
    const int32_t parent = i + (i & -i);
    if (parent <= n) tree_[parent] += tree_[i];
  }
  while (highestBit_ * 2 <= n) highestBit_ *= 2;
}

void FenwickCounts::add(int32_t position, int32_t delta) {
  total_ += delta;
  const auto n = static_cast<int32_t>(tree_.size()) - 1;
  for (int32_t i = position + 1; i <= n; i += i & -i) tree_[i] += delta;
}

int32_t FenwickCounts::prefix(int32_t position) const {
  int32_t sum = 0;
  for (int32_t i = position + 1; i > 0; i -= i & -i) sum += tree_[i];
  return sum;
}

int32_t FenwickCounts::reach(int32_t target) const {
  const auto n = static_cast<int32_t>(tree_.size()) - 1;
  int32_t position = 0;  // 1-based: the largest position whose prefix is below target
  for (int32_t step = highestBit_; step > 0; step /= 2) {
    const int32_t next = position + step;
    if (next <= n && tree_[next] < target) {
      position = next;
      target -= tree_[next];
    }
  }
  return position;  // 0-based index of position + 1
}

}  // namespace velda
