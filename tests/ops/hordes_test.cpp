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

}  // namespace
}  // namespace velda
