#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

namespace velda {

// Costs at positions 0..n-1 (0 until set) that answer "the largest cost
// among positions 0..i, and the lowest position holding it" in O(log n).
class LargestCostTree {
 public:
  struct Largest {
    int32_t cost;
    int32_t position;
  };

  // Throws std::bad_alloc.
  explicit LargestCostTree(size_t n);

  // Sets the costs of positions 0..last (cost(p) for each p) and the
  // summaries over them; a query over 0..i then only reads what was set for
  // positions 0..i.
  template <typename Cost>
  void refreshPrefix(int32_t last, Cost cost) {
    for (int32_t p = 0; p <= last; ++p) nodes_[base_ + static_cast<size_t>(p)] = key(cost(p), p);
    size_t low = base_;
    size_t high = base_ + static_cast<size_t>(last);
    while (low > 1) {
      low /= 2;
      high /= 2;
      for (size_t node = low; node <= high; ++node) nodes_[node] = std::max(nodes_[2 * node], nodes_[2 * node + 1]);
    }
  }
  void set(int32_t position, int32_t cost);
  int32_t cost(int32_t position) const { return costOf(nodes_[base_ + static_cast<size_t>(position)]); }
  // Over positions 0..last (last >= 0).
  Largest largestUpTo(int32_t last) const;

 private:
  // Larger keys hold larger costs, and among equal costs lower positions.
  static uint64_t key(int32_t cost, int32_t position) {
    return (static_cast<uint64_t>(static_cast<uint32_t>(cost)) << 32) | (0xffffffffu - static_cast<uint32_t>(position));
  }
  static int32_t costOf(uint64_t key) { return static_cast<int32_t>(key >> 32); }
  static int32_t positionOf(uint64_t key) { return static_cast<int32_t>(0xffffffffu - static_cast<uint32_t>(key)); }

  size_t base_ = 1;
  std::vector<uint64_t> nodes_;
};

}  // namespace velda
