#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "db/extraction/ExtractionCellCache.h"
#include "db/extraction/ExtractionFilter.h"
#include "db/extraction/ExtractionIndex.h"
#include "model/CategoricalVariable.h"

namespace velda {
namespace {

// 3,000 groups double the 1,024 slots three times; the entries of the
// previous array move over during the next 256, 512 and 1,024 adds.
TEST(ExtractionIndex, FindsEveryGroupThroughGrowthAndTellsEqualHashesApart) {
  ExtractionIndex index;
  std::vector<std::unique_ptr<Assertion>> groups;
  const auto findsAll = [&] {
    for (const auto& group : groups)
      if (index.find(group->id, ExtractionIndex::hashOf(group->id)) != group.get()) return false;
    return true;
  };
  for (int i = 0; i < 3000; ++i) {
    groups.push_back(std::make_unique<Assertion>("g" + std::to_string(i), i));
    EXPECT_EQ(index.find(groups.back()->id, ExtractionIndex::hashOf(groups.back()->id)), nullptr);
    index.add(*groups.back(), ExtractionIndex::hashOf(groups.back()->id));
    // Just after each doubling, in the middle of each move and after it.
    if (i == 512 || i == 700 || i == 1024 || i == 1300 || i == 2048 || i == 2500 || i == 2999) {
      EXPECT_TRUE(findsAll()) << i;
    }
  }
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

TEST(ExtractionCellCache, GivesTheVariablesCellsAndAddsEachModalityOnce) {
  CategoricalVariable variable("colour", 1, 19);
  ExtractionCellCache cache;
  CellValue cell;
  const char* texts[] = {"red", "blue", "red", "re", "blue", "red"};
  const char* names[] = {"red", "blue", "red", "re", "blue", "red"};
  for (size_t i = 0; i < 6; ++i) {
    ASSERT_EQ(cache.addCell(variable, texts[i], cell), 1);
    EXPECT_EQ(cell.flags, static_cast<uint32_t>(CELL_MODALITY));
    ASSERT_NE(static_cast<const Modality*>(cell.modality), nullptr);
    EXPECT_EQ(cell.modality->name, names[i]);
  }
  EXPECT_EQ(variable.modalityCount(), 3u);
  EXPECT_EQ(variable.byIndex(0)->name, "red");
  EXPECT_EQ(variable.byIndex(2)->name, "re");

  // NULL is the variable's own NULL cell, and is not kept.
  ASSERT_EQ(cache.addCell(variable, nullptr, cell), 1);
  EXPECT_EQ(cell.flags, static_cast<uint32_t>(CELL_MODALITY | CELL_NULL));
  EXPECT_EQ(static_cast<const Modality*>(cell.modality), nullptr);
  ASSERT_EQ(cache.addCell(variable, "red", cell), 1);
  EXPECT_EQ(static_cast<const Modality*>(cell.modality), variable.byIndex(0));

  // Past the kept texts, later ones still come from the variable.
  for (size_t i = 0; i < ExtractionCellCache::kMaxTexts + 10; ++i)
    ASSERT_EQ(cache.addCell(variable, ("t" + std::to_string(i)).c_str(), cell), 1);
  ASSERT_EQ(cache.addCell(variable, "t4100", cell), 1);
  EXPECT_EQ(cell.modality->name, "t4100");
  EXPECT_EQ(variable.modalityCount(), 3u + ExtractionCellCache::kMaxTexts + 10);
}

}  // namespace
}  // namespace velda
