#pragma once

#include <cstdint>
#include <vector>

namespace velda {

// Counts per position 0..n-1 with prefix sums and the search for the
// position where a running count is reached, each in O(log n).
class FenwickCounts {
 public:
  // Throws std::bad_alloc.
  explicit FenwickCounts(const std::vector<int32_t>& counts);

  void add(int32_t position, int32_t delta);
  // Sum of the counts of positions 0..position (0 for a negative position).
  int32_t prefix(int32_t position) const;
  int32_t range(int32_t low, int32_t high) const { return prefix(high) - prefix(low - 1); }
  int32_t total() const { return total_; }
  // The lowest position whose prefix sum reaches target (1 <= target <= total).
  int32_t reach(int32_t target) const;

 private:
  std::vector<int32_t> tree_;  // 1-based
  int32_t total_ = 0;
  int32_t highestBit_ = 1;
};

}  // namespace velda
