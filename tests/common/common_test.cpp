#include <gtest/gtest.h>

#include <cmath>
#include <set>
#include <string>
#include <vector>

#include "common/ChainedHashTable.h"
#include "common/ConsoleLog.h"
#include "common/Decimal.h"
#include "common/LastError.h"
#include "common/Progress.h"
#include "common/Random15.h"
#include "common/StringHash.h"

namespace velda {
namespace {

TEST(StringHash, MatchesTheProgramsVectors) {
  const std::vector<std::pair<const char*, uint32_t>> cases = {
      {"", 0u}, {"a", 97u}, {"ab", 971u}, {"abc", 8838u}, {"\xE9", 2147483625u}, {"caf\xE9", 80923u}};
  for (const auto& [text, hash] : cases) EXPECT_EQ(stringHash(text), hash) << text;
}

struct Item {
  Item(int key, std::string tag) : key(key), tag(std::move(tag)) {}
  int key;
  std::string tag;
};

struct ItemTraits {
  using Key = int;
  static Key key(const Item& item) { return item.key; }
  static uint32_t hash(Key key) { return static_cast<uint32_t>(key); }
  static bool equal(Key a, Key b) { return a == b; }
};

using Table = ChainedHashTable<Item, ItemTraits>;

template <typename AnyTable>
std::vector<int> keysInOrder(const AnyTable& table) {
  std::vector<int> keys;
  for (const Item& item : table) keys.push_back(item.key);
  return keys;
}

TEST(ChainedHashTable, IteratesBucketsThenChainsAndRebuildsInThatOrder) {
  Table table(3);
  for (int key : {4, 1, 3, 7, 2}) table.insert(key, "x");
  // Buckets: 0 -> 3; 1 -> 4, 1, 7 (appended at the tail); 2 -> 2.
  EXPECT_EQ(keysInOrder(table), (std::vector<int>{3, 4, 1, 7, 2}));

  // Rebuild walks 3, 4, 1, 7, 2 and appends into 2 buckets:
  // 0 -> 4, 2; 1 -> 3, 1, 7.
  Item* seven = table.find(7);
  table.rebuild(2);
  EXPECT_EQ(table.bucketCount(), 2u);
  EXPECT_EQ(keysInOrder(table), (std::vector<int>{4, 2, 3, 1, 7}));
  EXPECT_EQ(table.find(7), seven) << "values never move";

  EXPECT_TRUE(table.erase(1));
  EXPECT_FALSE(table.erase(1));
  EXPECT_EQ(table.eraseIf([](const Item& item) { return item.key % 2 == 0; }), 2u);
  EXPECT_EQ(keysInOrder(table), (std::vector<int>{3, 7}));
  EXPECT_EQ(table.size(), 2u);
}

TEST(ChainedHashTable, KeptTailsGiveTheSameOrderThroughErasesAndRebuilds) {
  Table table(3);
  for (int key : {4, 1}) table.insert(key, "x");
  table.trackTails(true);
  for (int key : {3, 7, 2}) table.insert(key, "x");
  EXPECT_EQ(keysInOrder(table), (std::vector<int>{3, 4, 1, 7, 2}));

  // Erasing a chain's tail, its only entry, or by predicate moves the tail
  // back: the next entries still go after the last one left.
  EXPECT_TRUE(table.erase(7));
  EXPECT_TRUE(table.erase(3));
  for (int key : {10, 6}) table.insert(key, "x");
  // Buckets: 0 -> 6; 1 -> 4, 1, 10; 2 -> 2.
  EXPECT_EQ(keysInOrder(table), (std::vector<int>{6, 4, 1, 10, 2}));
  EXPECT_EQ(table.eraseIf([](const Item& item) { return item.key == 10 || item.key == 2; }), 2u);
  for (int key : {13, 5}) table.insert(key, "x");
  EXPECT_EQ(keysInOrder(table), (std::vector<int>{6, 4, 1, 13, 5}));

  // Rebuild walks 6, 4, 1, 13, 5 into 2 buckets: 0 -> 6, 4; 1 -> 1, 13, 5;
  // then 8 and 9 are appended.
  table.rebuild(2);
  for (int key : {8, 9}) table.insert(key, "x");
  EXPECT_EQ(keysInOrder(table), (std::vector<int>{6, 4, 8, 1, 13, 5, 9}));

  table.trackTails(false);
  table.clear();
  table.trackTails(true);
  for (int key : {3, 1}) table.insert(key, "x");
  EXPECT_EQ(keysInOrder(table), (std::vector<int>{3, 1}));
}

// Keys share their hash four by four, so that the index's probe runs are
// long and erasures must close the gaps inside them.
struct CollidingTraits {
  using Key = int;
  static Key key(const Item& item) { return item.key; }
  static uint32_t hash(Key key) { return static_cast<uint32_t>(key / 4); }
  static bool equal(Key a, Key b) { return a == b; }
};

TEST(ChainedHashTable, IndexedKeysFindWhatAWalkFindsThroughEveryChange) {
  using Colliding = ChainedHashTable<Item, CollidingTraits>;
  Colliding indexed(7);
  Colliding walked(7);
  indexed.indexKeys(true);
  indexed.trackTails(true);
  std::set<int> present;
  uint32_t state = 12345;
  const auto draw = [&state] { return static_cast<int>((state = state * 1103515245u + 12345u) >> 16) % 600; };
  for (int step = 0; step < 6000; ++step) {
    const int key = draw();
    if (present.count(key)) {
      EXPECT_TRUE(indexed.erase(key));
      walked.erase(key);
      present.erase(key);
    } else {
      indexed.insert(key, "x");
      walked.insert(key, "x");
      present.insert(key);
    }
    if (step == 3000) {
      EXPECT_EQ(indexed.eraseIf([](const Item& item) { return item.key % 3 == 0; }),
                walked.eraseIf([](const Item& item) { return item.key % 3 == 0; }));
      std::erase_if(present, [](int k) { return k % 3 == 0; });
      indexed.rebuild(5);
      walked.rebuild(5);
    }
  }
  Colliding moved = std::move(indexed);
  ASSERT_TRUE(moved.keysIndexed());
  EXPECT_EQ(keysInOrder(moved), keysInOrder(walked)) << "the index does not change the order";
  for (int key = -5; key < 610; ++key) EXPECT_EQ(moved.find(key) != nullptr, present.count(key) == 1) << "key " << key;
  moved.clear();
  EXPECT_EQ(moved.find(1), nullptr);
  moved.insert(1, "one");
  ASSERT_NE(moved.find(1), nullptr);
  EXPECT_EQ(moved.find(1)->tag, "one");
}

// A table that remembers its insert order rebuilds without walking its
// chains, into the same order and tails; an erase makes it walk again.
TEST(ChainedHashTable, RememberedInsertOrderRebuildsInTheWalksOrder) {
  for (const bool erased : {false, true}) {
    Table table(3);
    table.trackTails(true);
    table.rememberInsertOrder();
    for (int key : {4, 1, 3, 7, 2, 10}) table.insert(key, "x");
    // Buckets: 0 -> 3; 1 -> 4, 1, 7, 10; 2 -> 2.
    if (erased) {
      EXPECT_TRUE(table.erase(7));
    }
    Table moved = std::move(table);
    Item* ten = moved.find(10);
    // The walk 3, 4, 1, (7,) 10, 2 into 2 buckets: 0 -> 4, 10, 2; 1 -> 3, 1,
    // (7); then 8 and 9 go to the tails. The rebuild shows every entry once,
    // from the order of the inserts or, after the erase, from the walk.
    std::multiset<int> visited;
    moved.rebuild(2, [&](Item& item) { visited.insert(item.key); });
    EXPECT_EQ(visited, erased ? (std::multiset<int>{4, 1, 3, 2, 10}) : (std::multiset<int>{4, 1, 3, 7, 2, 10}));
    for (int key : {8, 9}) moved.insert(key, "x");
    EXPECT_EQ(keysInOrder(moved),
              erased ? (std::vector<int>{4, 10, 2, 8, 3, 1, 9}) : (std::vector<int>{4, 10, 2, 8, 3, 1, 7, 9}));
    EXPECT_EQ(moved.find(10), ten);
  }

  using Colliding = ChainedHashTable<Item, CollidingTraits>;
  Colliding remembered(7);
  Colliding walked(7);
  remembered.rememberInsertOrder();
  for (int i = 0; i < 2000; ++i) {
    const int key = (i * 7919) % 2003;
    remembered.insert(key, "x");
    walked.insert(key, "x");
  }
  remembered.rebuild(500);
  walked.rebuild(500);
  EXPECT_EQ(keysInOrder(remembered), keysInOrder(walked));
}

TEST(ChainedHashTable, ZeroBucketsMeanOneAndEmptyTablesIterateNothing) {
  Table table(0);
  EXPECT_EQ(table.bucketCount(), 1u);
  EXPECT_EQ(table.begin(), table.end());
  table.rebuild(0);
  EXPECT_EQ(table.bucketCount(), 1u);
  table.insert(5, "five");
  EXPECT_EQ(table.find(6), nullptr);
  Table moved = std::move(table);
  EXPECT_EQ(moved.size(), 1u);
  EXPECT_EQ(table.size(), 0u);
  EXPECT_EQ(table.find(5), nullptr);
}

TEST(ConsoleLog, DropsTheOldestBlockWhenFullAndNotifies) {
  ConsoleLog console;
  int added = 0, cleared = 0;
  console.setListener(
      [&](ConsoleLog::Change change) { (change == ConsoleLog::Change::LineAdded ? added : cleared)++; });
  for (int i = 0; i < 4800; ++i) console.print("line %d", i);
  EXPECT_EQ(console.count(), 4800u);
  console.print("line %d", 4800);
  EXPECT_EQ(console.count(), 3601u);
  EXPECT_EQ(*console.lineAt(0), "line 1200");
  EXPECT_EQ(*console.lineAt(3600), "line 4800");
  EXPECT_EQ(console.lineAt(3601), nullptr);
  EXPECT_EQ(console.lineAt(-1), nullptr);
  EXPECT_EQ(added, 4801);
  console.clear();
  EXPECT_EQ(console.count(), 0u);
  EXPECT_EQ(cleared, 1);
}

TEST(LastError, KeepsAtMost2047Characters) {
  setError("Can not open file %s", "a.gaj");
  EXPECT_EQ(lastError(), "Can not open file a.gaj");
  const std::string longName(3000, 'x');
  setError("%s", longName.c_str());
  EXPECT_EQ(lastError().size(), 2047u);
}

struct RecordingTarget : ProgressTarget {
  void setLine1(const std::string& text) override { line1 = text; }
  void setLine2(const std::string& text) override { line2 = text; }
  void enableCancel(bool enabled) override { cancelEnabled = enabled; }
  bool cancelRequested() override { return cancel; }
  std::string line1, line2;
  bool cancelEnabled = true;
  bool cancel = false;
};

TEST(Progress, ReachesOnlyTheInstalledTarget) {
  progressLine1("nobody listens %d", 1);
  EXPECT_FALSE(cancelRequested());

  RecordingTarget target;
  {
    ScopedProgressTarget scope(&target);
    progressLine1("Extracting individuals...");
    progressLine2("Individual %d", 100);
    progressEnableCancel(false);
    target.cancel = true;
    EXPECT_TRUE(cancelRequested());
  }
  EXPECT_EQ(target.line1, "Extracting individuals...");
  EXPECT_EQ(target.line2, "Individual 100");
  EXPECT_FALSE(target.cancelEnabled);
  EXPECT_FALSE(cancelRequested()) << "the target is gone after its scope";

  ScopedProgressTarget scope(&target);
  progressLine2("%s", std::string(2000, 'y').c_str());
  EXPECT_EQ(target.line2.size(), 1023u);
}

TEST(Random15, FollowsTheClassicLinearCongruence) {
  for (int round = 0; round < 2; ++round) {
    seedRandom15(1);
    EXPECT_EQ((std::vector<int>{random15(), random15(), random15(), random15()}),
              (std::vector<int>{41, 18467, 6334, 26500}));
  }
}

TEST(Decimal, ReadsTheLeadingNumberLikeTheCLibrary) {
  const std::vector<std::pair<const char*, double>> cases = {
      {"12.5kg", 12.5}, {"  -3e2", -300.0}, {"abc", 0.0}, {"", 0.0}, {"+5", 5.0}, {"0x10", 16.0}, {"0.1", 0.1}};
  for (const auto& [text, value] : cases) EXPECT_EQ(parseDecimal(text), value) << text;
  EXPECT_TRUE(std::isinf(parseDecimal("1e400")));
}

}  // namespace
}  // namespace velda
