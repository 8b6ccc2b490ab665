#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "db/ExtractionFilter.h"
#include "db/ExtractionIndex.h"

namespace velda {
namespace {

TEST(ExtractionIndex, FindsEveryGroupThroughGrowthAndTellsEqualHashesApart) {
  ExtractionIndex index;
  std::vector<std::unique_ptr<Assertion>> groups;
  for (int i = 0; i < 3000; ++i) {
    groups.push_back(std::make_unique<Assertion>("g" + std::to_string(i), i));
    EXPECT_EQ(index.find(groups.back()->id, ExtractionIndex::hashOf(groups.back()->id)), nullptr);
    index.add(*groups.back(), ExtractionIndex::hashOf(groups.back()->id));
  }
  for (const auto& group : groups) EXPECT_EQ(index.find(group->id, ExtractionIndex::hashOf(group->id)), group.get());
  EXPECT_EQ(index.find("g3000", ExtractionIndex::hashOf("g3000")), nullptr);
  EXPECT_EQ(index.find("", ExtractionIndex::hashOf("")), nullptr);

  // Two identifiers given the same hash are both found, each as itself.
  Assertion first("x", 0);
  Assertion second("y", 1);
  ExtractionIndex clashing;
  clashing.add(first, 42);
  clashing.add(second, 42);
  EXPECT_EQ(clashing.find("x", 42), &first);
  EXPECT_EQ(clashing.find("y", 42), &second);
  EXPECT_EQ(clashing.find("z", 42), nullptr);
}

// 10,000 identifiers make the filter of 4,096 words double once, at 8,192.
TEST(IdentifierFilter, NeverForgetsAnAddedIdentifierThroughGrowth) {
  IdentifierFilter filter;
  EXPECT_FALSE(filter.mayContain(ExtractionIndex::hashOf("a")));
  int maybe = 0;
  for (int i = 0; i < 20000; i += 2) filter.add(ExtractionIndex::hashOf(std::to_string(i)));
  for (int i = 0; i < 20000; ++i) {
    const bool found = filter.mayContain(ExtractionIndex::hashOf(std::to_string(i)));
    if (i % 2 == 0) {
      EXPECT_TRUE(found) << i;
    } else if (found) {
      ++maybe;
    }
  }
  // The words hold about 2.2 identifiers (copies included), about 4 bits
  // of 64 set: a new identifier finds both of its bits set about 0.5% of
  // the time, some 50 of 10,000.
  EXPECT_LT(maybe, 200);
}

}  // namespace
}  // namespace velda
