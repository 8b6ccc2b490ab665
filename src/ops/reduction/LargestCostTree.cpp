#include "ops/reduction/LargestCostTree.h"

#include <algorithm>

namespace velda {

LargestCostTree::LargestCostTree(size_t n) {
  while (base_ < n) base_ *= 2;
  nodes_.assign(2 * base_, 0);
}

void LargestCostTree::set(int32_t position, int32_t cost) {
  size_t node = base_ + static_cast<size_t>(position);
  nodes_[node] = key(cost, position);
  // A summary that stays the same leaves every summary above it as it was.
  for (node /= 2; node >= 1; node /= 2) {
    const uint64_t merged = std::max(nodes_[2 * node], nodes_[2 * node + 1]);
    if (nodes_[node] == merged) break;
    nodes_[node] = merged;
  }
}

LargestCostTree::Largest LargestCostTree::largestUpTo(int32_t last) const {
  uint64_t best = 0;
  size_t low = base_;
  size_t high = base_ + static_cast<size_t>(last) + 1;
  while (low < high) {
    if (low & 1) best = std::max(best, nodes_[low++]);
    if (high & 1) best = std::max(best, nodes_[--high]);
    low /= 2;
    high /= 2;
  }
  return {costOf(best), positionOf(best)};
}

}  // namespace velda
