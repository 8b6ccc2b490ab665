#include <gtest/gtest.h>

#include "common/ConsoleLog.h"
#include "common/Progress.h"
#include "model/CategoricalValue.h"
#include "model/QuantitativeValue.h"
#include "model/QuantitativeVariable.h"
#include "ops/division/Division.h"
#include "ops/division/Hordes.h"
#include "ops/reduction/Reduction.h"
#include "support/HandMatrix.h"
#include "support/Recorders.h"
#include "support/TempDir.h"

namespace velda {
namespace {

// x = 1, 3, 10, 14 in one assertion: K = 2 cuts at 6.5 into [1,3] and
// [10,14]. The hordes' matrices use q = 4 individuals: entries 2^(1/4),
// 0 (no overlap) and 4^(1/4).
TEST(Hordes, TwoClassesGiveThreeEntriesPerMatrixOnTheIndividualScale) {
  test::InTempDir folder;

  test::HandMatrix data;
  data.quantitative("x");
  data.holdCells();
  ConsoleLog console;
  EXPECT_EQ(ReduceHordes(*data.matrix, 80, console), 0) << "nothing to reduce before a division";
  data.group(
      "G", {&data.person("a", {"1"}), &data.person("b", {"3"}), &data.person("c", {"10"}), &data.person("d", {"14"})});
  ASSERT_EQ(Divide(*data.matrix, 2), 1);
  data.matrix->reductionThreshold = 80;
  ASSERT_EQ(ReduceHordes(*data.matrix, 100, console), 1);
  const Horde& horde = data.matrix->hordes[0];
  ASSERT_EQ(horde.volumesBefore.entries.size(), 3u);
  EXPECT_NEAR(horde.volumesBefore.at(0, 0), 1.1892071150, 1e-9);
  EXPECT_EQ(horde.volumesBefore.at(1, 0), 0.0);
  EXPECT_NEAR(horde.volumesBefore.at(1, 1), 1.4142135624, 1e-9);
  EXPECT_EQ(horde.volumesAfter.entries, horde.volumesBefore.entries) << "threshold 100 keeps everyone";
  ASSERT_EQ(horde.reducedClasses.size(), 2u);
  EXPECT_EQ(horde.reducedClasses[1]->id, "G3");
  EXPECT_EQ(static_cast<const QuantitativeValue&>(horde.reducedClasses[1]->value(0)).max, 14.0);
  EXPECT_EQ(data.matrix->reductionThreshold, 0) << "the horde reduction never stores its threshold";
  EXPECT_TRUE(data.matrix->reducedAssertions.empty());
}

// A has 2 individuals, so its classes have one each and nothing to remove:
// its reduction never polls. B's classes have two each and a threshold of 50
// lets one go: its search polls and meets the cancel.
TEST(Hordes, ACancelKeepsTheHordesReducedBeforeAndLeavesTheOthersAsTheyWere) {
  test::InTempDir folder;

  test::HandMatrix data;
  data.quantitative("x");
  data.holdCells();
  data.group("A", {&data.person("a1", {"1"}), &data.person("a2", {"5"})});
  data.group("B", {&data.person("b1", {"1"}), &data.person("b2", {"3"}), &data.person("b3", {"10"}),
                   &data.person("b4", {"14"})});
  ASSERT_EQ(Divide(*data.matrix, 2), 1);
  ConsoleLog console;
  ASSERT_EQ(ReduceHordes(*data.matrix, 100, console), 1);
  const Horde& a = data.matrix->hordes[0];
  const Horde& b = data.matrix->hordes[1];
  const Assertion* firstOfA = a.reducedClasses[0].get();
  const Assertion* firstOfB = b.reducedClasses[0].get();
  const std::vector<double> bAfter = b.volumesAfter.entries;

  test::ProgressRecorder cancelling;
  cancelling.cancel = true;
  ScopedProgressTarget scope(&cancelling);
  EXPECT_EQ(ReduceHordes(*data.matrix, 50, console), 0);
  ASSERT_EQ(a.reducedClasses.size(), 2u);
  EXPECT_NE(a.reducedClasses[0].get(), firstOfA) << "A was reduced again";
  EXPECT_EQ(a.volumesAfter.entries.size(), 3u);
  ASSERT_EQ(b.reducedClasses.size(), 2u);
  EXPECT_EQ(b.reducedClasses[0].get(), firstOfB) << "B keeps the earlier results";
  EXPECT_EQ(b.volumesAfter.entries, bAfter);
  EXPECT_EQ(b.volumesBefore.entries.size(), 3u);
}

// Variables added after a reduction, a division and a horde reduction:
// every row made from an assertion describes it with the assertion's own
// value, and a row of an assertion the query left out stays empty.
TEST(DerivedRows, AddedVariablesCopyTheirAssertionsValues) {
  test::InTempDir folder;

  test::HandMatrix data;
  data.quantitative("x");
  data.holdCells();
  Individual& a1 = data.person("a1", {"1"});
  Individual& a2 = data.person("a2", {"2"});
  Individual& a3 = data.person("a3", {"10"});
  Individual& a4 = data.person("a4", {"11"});
  Individual& b1 = data.person("b1", {"5"});
  Individual& b2 = data.person("b2", {"50"});
  data.group("A", {&a1, &a2, &a3, &a4});
  data.group("B", {&b1, &b2});
  ConsoleLog console;
  test::MessageRecorder boxes;
  ASSERT_EQ(Reduce(*data.matrix, 50, console), 1);
  ASSERT_EQ(Divide(*data.matrix, 2), 1);
  ASSERT_EQ(ReduceHordes(*data.matrix, 50, console), 1);

  // population: A = 7000, B not covered; region: A = {north: 2}.
  std::vector<std::unique_ptr<SymbolicVariable>> added;
  added.push_back(std::make_unique<QuantitativeVariable>("population"));
  added.push_back(std::make_unique<CategoricalVariable>("region", 1, 4));
  std::vector<std::vector<std::unique_ptr<SymbolicValue>>> values(2);
  for (auto& row : values)
    for (const auto& variable : added) row.push_back(variable->newSymbolicValue());
  CellValue population;
  ASSERT_EQ(added[0]->addCell("7000", population), 1);
  ASSERT_EQ(values[0][0]->addCell(population, 1.0), 1);
  CellValue north;
  ASSERT_EQ(added[1]->addCell("north", north), 1);
  ASSERT_EQ(values[0][1]->addCell(north, 2.0), 1);
  data.matrix->appendVariables(added, values);

  SymbolicMatrix& matrix = *data.matrix;
  std::vector<std::pair<const Assertion*, const char*>> rows;
  for (size_t i = 0; i < 2; ++i) {
    const char* source = i == 0 ? "A" : "B";
    rows.emplace_back(matrix.reducedAssertions[i].get(), source);
    for (const auto& member : matrix.hordes[i].classes) rows.emplace_back(member.get(), source);
    for (const auto& member : matrix.hordes[i].reducedClasses) rows.emplace_back(member.get(), source);
  }
  ASSERT_EQ(rows.size(), 10u);
  for (const auto& [row, source] : rows) {
    ASSERT_EQ(row->values.size(), 3u) << row->id;
    const auto& people = static_cast<const QuantitativeValue&>(row->value(1));
    const auto& region = static_cast<const CategoricalValue&>(row->value(2));
    if (source[0] == 'A') {
      EXPECT_EQ(people.min, 7000.0) << row->id;
      EXPECT_EQ(people.max, 7000.0) << row->id;
      EXPECT_EQ(people.totalWeight, 1.0) << row->id;
      EXPECT_EQ(region.totalWeight, 2.0) << row->id;
      EXPECT_EQ(test::HandMatrix::written(*row, 2), test::HandMatrix::written(*matrix.findAssertion("A"), 2));
    } else {
      EXPECT_EQ(people.totalWeight, 0.0) << row->id;
      EXPECT_EQ(region.totalWeight, 0.0) << row->id;
    }
    EXPECT_NE(&row->value(1), &matrix.findAssertion(source)->value(1)) << "each row owns its value";
  }
}

}  // namespace
}  // namespace velda
