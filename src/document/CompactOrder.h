#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <utility>
#include <vector>

namespace velda {

// The entries of a chained hash table in the order that it has once rebuilt
// to as many buckets as entries: by bucket, and within a bucket in the
// table's own order. A project file stores its tables in this order and a
// read rebuilds them with that bucket count, so a table read back lists its
// entries exactly as it was stored. For a table that already has as many
// buckets as entries (a compacted one), this is its own order.
template <typename Table, typename Hash>
auto compactOrder(const Table& table, Hash hash) {
  using Value = std::remove_cvref_t<decltype(*table.begin())>;
  const size_t buckets = std::max<size_t>(table.size(), 1);
  std::vector<std::pair<size_t, const Value*>> keyed;
  keyed.reserve(table.size());
  for (const Value& value : table) keyed.emplace_back(static_cast<uint32_t>(hash(value)) % buckets, &value);
  std::stable_sort(keyed.begin(), keyed.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
  std::vector<const Value*> order;
  order.reserve(keyed.size());
  for (const auto& entry : keyed) order.push_back(entry.second);
  return order;
}

}  // namespace velda
