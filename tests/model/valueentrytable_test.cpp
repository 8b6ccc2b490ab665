#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include "model/ValueEntryTable.h"

namespace velda {
namespace {

std::vector<int32_t> indexesInOrder(const ValueEntryTable& table) {
  std::vector<int32_t> indexes;
  for (const ValueEntry& entry : table) indexes.push_back(entry.index);
  return indexes;
}

// The order rules of a chained table hashed by the index: buckets in turn,
// each chain in insertion order, rebuild re-appending in iteration order.
TEST(ValueEntryTable, KeepsTheOrderOfAChainedTable) {
  ValueEntryTable table(3);
  for (int32_t index : {4, 1, 3, 7, 2}) table.insert(index, index * 10.0);
  // Buckets: 0 -> 3; 1 -> 4, 1, 7; 2 -> 2.
  EXPECT_EQ(indexesInOrder(table), (std::vector<int32_t>{3, 4, 1, 7, 2}));
  ASSERT_NE(table.find(7), nullptr);
  EXPECT_EQ(table.find(7)->weight, 70.0);
  EXPECT_EQ(table.find(5), nullptr);

  // Walks 3, 4, 1, 7, 2 into 2 buckets: 0 -> 4, 2; 1 -> 3, 1, 7.
  table.rebuild(2);
  EXPECT_EQ(table.bucketCount(), 2u);
  EXPECT_EQ(indexesInOrder(table), (std::vector<int32_t>{4, 2, 3, 1, 7}));
  // The same count again changes nothing; later entries go to the tails.
  table.rebuild(2);
  table.insert(6);
  table.insert(9);
  EXPECT_EQ(indexesInOrder(table), (std::vector<int32_t>{4, 2, 6, 3, 1, 7, 9}));
  EXPECT_EQ(table.size(), 7u);
  for (ValueEntry& entry : table) entry.subtreeWeight = entry.weight + 1.0;
  EXPECT_EQ(table.find(3)->subtreeWeight, 31.0);
  EXPECT_EQ(table.find(9)->weight, 0.0);

  // A negative index hashes as its unsigned value: 4294967295 % 7 = 3.
  ValueEntryTable signedTable(7);
  for (int32_t index : {10, -1, 2}) signedTable.insert(index);
  EXPECT_EQ(indexesInOrder(signedTable), (std::vector<int32_t>{2, 10, -1}));
}

// A value with many categories: the order is still buckets in turn, each in
// insertion order, and every index is found, through clears and rebuilds.
TEST(ValueEntryTable, ManyEntriesKeepTheOrderAndAreFound) {
  ValueEntryTable table(9);
  std::vector<int32_t> inserted;
  for (int32_t i = 0; i < 3000; ++i) inserted.push_back((i * 7919) % 5003);
  const auto expectedOrder = [](const std::vector<int32_t>& indexes, size_t buckets) {
    std::vector<int32_t> order;
    for (size_t bucket = 0; bucket < buckets; ++bucket)
      for (int32_t index : indexes)
        if (static_cast<uint32_t>(index) % buckets == bucket) order.push_back(index);
    return order;
  };
  for (int round = 0; round < 2; ++round) {
    for (int32_t index : inserted) {
      ASSERT_EQ(table.find(index), nullptr);
      table.insert(index, index + 0.5);
    }
    EXPECT_EQ(indexesInOrder(table), expectedOrder(inserted, 9));
    for (int32_t index : inserted) {
      ASSERT_NE(table.find(index), nullptr) << index;
      EXPECT_EQ(table.find(index)->weight, index + 0.5);
    }
    EXPECT_EQ(table.find(5003), nullptr);
    table.clear();
  }
  for (int32_t index : inserted) table.insert(index);
  table.rebuild(100);
  EXPECT_EQ(indexesInOrder(table), expectedOrder(expectedOrder(inserted, 9), 100));
  table.insert(5003);
  EXPECT_NE(table.find(5003), nullptr);
  EXPECT_NE(table.find(inserted.back()), nullptr);
}

TEST(ValueEntryTable, ClearMoveAndZeroBuckets) {
  ValueEntryTable table(0);
  EXPECT_EQ(table.bucketCount(), 1u);
  EXPECT_TRUE(table.empty());
  EXPECT_EQ(table.begin(), table.end());
  table.insert(5, 1.5, 2.5);
  table.insert(1);

  ValueEntryTable moved = std::move(table);
  EXPECT_EQ(indexesInOrder(moved), (std::vector<int32_t>{5, 1}));
  EXPECT_EQ(moved.find(5)->subtreeWeight, 2.5);
  EXPECT_TRUE(table.empty());
  EXPECT_EQ(table.bucketCount(), 1u);
  EXPECT_EQ(table.find(5), nullptr);

  moved.rebuild(4);
  moved.clear();
  EXPECT_TRUE(moved.empty());
  EXPECT_EQ(moved.bucketCount(), 4u) << "clear keeps the bucket count";
  EXPECT_EQ(moved.find(1), nullptr);
  moved.insert(8);
  moved.insert(3);
  EXPECT_EQ(indexesInOrder(moved), (std::vector<int32_t>{8, 3}));
  moved.rebuild(0);
  EXPECT_EQ(moved.bucketCount(), 1u);
  EXPECT_EQ(indexesInOrder(moved), (std::vector<int32_t>{8, 3}));

  // A single entry in a single bucket is held in the table itself: the
  // entry moves in and out of it with its weights through shrinking,
  // growing again and moving the table.
  moved.clear();
  moved.insert(2, 0.25, 0.75);
  moved.rebuild(1);
  ValueEntryTable single = std::move(moved);
  EXPECT_EQ(indexesInOrder(single), (std::vector<int32_t>{2}));
  EXPECT_EQ(single.find(2)->subtreeWeight, 0.75);
  EXPECT_TRUE(moved.empty());
  single.insert(4, 4.0);
  single.insert(1, 1.0);
  // Walks 2, 4, 1 into 3 buckets: 1 -> 4, 1; 2 -> 2.
  single.rebuild(3);
  EXPECT_EQ(indexesInOrder(single), (std::vector<int32_t>{4, 1, 2}));
  EXPECT_EQ(single.find(2)->weight, 0.25);
  EXPECT_EQ(single.find(1)->weight, 1.0);
  moved = std::move(single);
  EXPECT_EQ(indexesInOrder(moved), (std::vector<int32_t>{4, 1, 2}));
  EXPECT_EQ(single.find(4), nullptr);

  // One entry of many buckets, as most values of an extraction: rebuilt to
  // 1 and then 5 buckets it stays found, in bucket 7 % 5 = 2, and later
  // entries follow their buckets: 2 -> 7, 2; 4 -> 4.
  ValueEntryTable one(9);
  one.insert(7, 7.0);
  one.rebuild(1);
  EXPECT_EQ(one.bucketCount(), 1u);
  ASSERT_NE(one.find(7), nullptr);
  one.rebuild(5);
  ASSERT_NE(one.find(7), nullptr);
  EXPECT_EQ(one.find(7)->weight, 7.0);
  one.insert(4);
  one.insert(2);
  EXPECT_EQ(indexesInOrder(one), (std::vector<int32_t>{7, 2, 4}));
  EXPECT_EQ(one.find(3), nullptr);
}

}  // namespace
}  // namespace velda
