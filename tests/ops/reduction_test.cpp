#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "common/ConsoleLog.h"
#include "model/CategoricalValue.h"
#include "model/QuantitativeValue.h"
#include "ops/reduction/AssertionReduction.h"
#include "ops/reduction/Reduction.h"
#include "ops/reduction/VolumeMatrix.h"
#include "support/HandMatrix.h"
#include "support/Recorders.h"

namespace velda {
namespace {

using test::HandMatrix;

const QuantitativeValue& interval(const Assertion& a, size_t v) {
  return static_cast<const QuantitativeValue&>(a.value(v));
}
const CategoricalValue& categories(const Assertion& a, size_t v) {
  return static_cast<const CategoricalValue&>(a.value(v));
}

// Ten individuals: x = 1..9 and 100; c = "a" except individual 5 ("b").
// Threshold 80 gives k = 2: the steps are x in [1,1], [1,2], [100,100],
// [9,100] and c = "b". The smallest volume keeping 8 individuals drops 100
// and the "b": x in [1,9] with one category, volume 8 (anything else keeps
// a width of 7 or 8 with two categories, or a width of 98 or more).
struct TenPeople : HandMatrix {
  TenPeople() {
    quantitative("x");
    categorical("c", 1);
    holdCells();
    Assertion& town = matrix->createAssertion("town");
    const char* xs[] = {"1", "2", "3", "4", "5", "6", "7", "8", "9", "100"};
    for (int i = 0; i < 10; ++i) join(town, person(("p" + std::to_string(i + 1)).c_str(), {xs[i], i == 4 ? "b" : "a"}));
  }
};

TEST(ReductionBudget, NeverEmptiesAnAssertion) {
  EXPECT_EQ(AssertionReduction::budget(80, 10), 2);
  EXPECT_EQ(AssertionReduction::budget(75, 7), 1);  // 25 x 7 / 100 = 1.75
  EXPECT_EQ(AssertionReduction::budget(100, 50), 0);
  EXPECT_EQ(AssertionReduction::budget(10, 1), 0) << "one individual is kept at any threshold";
  EXPECT_EQ(AssertionReduction::budget(0, 5), 4) << "k = N becomes N - 1";
}

TEST(Reduction, FindsTheSmallestDescriptionByHand) {
  TenPeople data;
  ConsoleLog console;
  ASSERT_EQ(Reduce(*data.matrix, 80, console), 1);
  SymbolicMatrix& m = *data.matrix;
  ASSERT_EQ(m.reducedAssertions.size(), 1u);
  const Assertion& reduced = *m.reducedAssertions[0];
  EXPECT_EQ(reduced.id, "town");
  EXPECT_EQ(reduced.memberCount, 8);
  EXPECT_EQ(interval(reduced, 0).min, 1.0);
  EXPECT_EQ(interval(reduced, 0).max, 9.0);
  ASSERT_EQ(categories(reduced, 1).entries.size(), 1u);
  EXPECT_EQ(categories(reduced, 1).entries.begin()->index, 0);
  EXPECT_EQ(categories(reduced, 1).entries.begin()->weight, 8.0);
  EXPECT_EQ(m.reductionThreshold, 80);
  // p = 2: entries are square roots of the volumes 99 x 2 and 8 x 1.
  ASSERT_EQ(m.volumesBefore.entries.size(), 1u);
  EXPECT_NEAR(m.volumesBefore.at(0, 0), 14.0712472795, 1e-9);
  EXPECT_NEAR(m.volumesAfter.at(0, 0), 2.8284271247, 1e-9);
  EXPECT_EQ(console.count(), 0u) << "no search reached the level cap";
  // The assertion itself is untouched.
  EXPECT_EQ(interval(*m.findAssertion("town"), 0).max, 100.0);

  // A new run starts afresh; threshold 100 removes nothing.
  ASSERT_EQ(Reduce(m, 100, console), 1);
  ASSERT_EQ(m.reducedAssertions.size(), 1u);
  EXPECT_EQ(m.reducedAssertions[0]->memberCount, 10);
  EXPECT_EQ(interval(*m.reducedAssertions[0], 0).max, 100.0);
  EXPECT_EQ(categories(*m.reducedAssertions[0], 1).entries.size(), 2u);
  EXPECT_EQ(m.volumesAfter.entries, m.volumesBefore.entries);
  EXPECT_EQ(m.reductionThreshold, 100);
}

TEST(Reduction, AnAssertionWithoutIndividualsIsLeftAsItIs) {
  HandMatrix data;
  data.quantitative("x");
  data.holdCells();
  Assertion& empty = data.matrix->createAssertion("e");
  auto& value = static_cast<QuantitativeValue&>(empty.value(0));
  value.min = 2;
  value.max = 7;
  empty.memberCount = 4;
  ConsoleLog console;
  ASSERT_EQ(Reduce(*data.matrix, 50, console), 1);
  const Assertion& reduced = *data.matrix->reducedAssertions[0];
  EXPECT_EQ(interval(reduced, 0).min, 2.0);
  EXPECT_EQ(interval(reduced, 0).max, 7.0);
  EXPECT_EQ(reduced.memberCount, 4);
}

TEST(Reduction, CancelReturnsZeroAndKeepsNoReducedAssertion) {
  TenPeople data;
  data.matrix->reductionThreshold = 90;
  ConsoleLog console;
  test::ProgressRecorder progress;
  progress.cancel = true;
  ScopedProgressTarget scope(&progress);
  EXPECT_EQ(Reduce(*data.matrix, 80, console), 0);
  EXPECT_TRUE(data.matrix->reducedAssertions.empty());
  EXPECT_EQ(data.matrix->reductionThreshold, 0);
  EXPECT_FALSE(data.matrix->volumesBefore.empty()) << "what was made before the cancel stays";
  EXPECT_GE(progress.polls, 1);
  ASSERT_FALSE(progress.line1.empty());
  EXPECT_EQ(progress.line1.back(), "Reduction in progress...");
  EXPECT_EQ(progress.line2.back(), "Assertion town");
}

TEST(VolumeMatrix, OneVariableEntriesAreTheVolumesAndOverlaps) {
  // A = [0,4], B = [2,10], C = [20,20]: widths 4, 8 and 1 (a point), the
  // overlap of A and B is 2, of C with either 0.
  HandMatrix data;
  data.quantitative("x");
  data.holdCells();
  Individual& a1 = data.person("a1", {"0"});
  Individual& a2 = data.person("a2", {"4"});
  Individual& b1 = data.person("b1", {"2"});
  Individual& b2 = data.person("b2", {"10"});
  Individual& c1 = data.person("c1", {"20"});
  data.group("A", {&a1, &a2});
  data.group("B", {&b1, &b2});
  data.group("C", {&c1});
  ConsoleLog console;
  ASSERT_EQ(Reduce(*data.matrix, 100, console), 1);
  const std::vector<double> expected = {4, 2, 8, 0, 0, 1};
  EXPECT_EQ(data.matrix->volumesBefore.entries, expected);
  EXPECT_EQ(data.matrix->volumesBefore.order, 3u);
}

TEST(VolumeMatrix, MotherSumsTheApplicableDaughtersPerPresentCategory) {
  // m is the mother of d (applicable for x) and e (applicable for x and y);
  // w is an independent interval. Assertion P: m in {x, y}, d = [0,3],
  // e in {u, v}, w = [0,5]: x gives 3 x 2, y gives 2, so 8 x 5 = 40.
  // Assertion Q: m in {y, z}, d = [1,2], e in {v}, w = [4,6].
  // Together: only y is in both; e's common categories: 1; w overlaps by 1.
  HandMatrix data;
  data.categorical("m", 1);
  data.quantitative("d");
  data.categorical("e", 1);
  data.quantitative("w");
  data.holdCells();
  Individual& p1 = data.person("p1", {"x", "0", "u", "0"});
  Individual& p2 = data.person("p2", {"y", "3", "v", "5"});
  Individual& q1 = data.person("q1", {"y", "1", "v", "4"});
  Individual& q2 = data.person("q2", {"z", "2", "v", "6"});
  Assertion& p = data.group("P", {&p1, &p2});
  Assertion& q = data.group("Q", {&q1, &q2});

  SymbolicMatrix& m = *data.matrix;
  auto& mother = static_cast<CategoricalVariable&>(m.variable(0));
  const int32_t x = mother.modalities.find("x")->index;
  const int32_t y = mother.modalities.find("y")->index;
  auto& ruleD = *m.rules.emplace_back(std::make_unique<DependenceRule>(0, 1, 1));
  ruleD.applicable.insert(x);
  auto& ruleE = *m.rules.emplace_back(std::make_unique<DependenceRule>(0, 2, 1));
  ruleE.applicable.insert(x);
  ruleE.applicable.insert(y);
  ruleD.next = &ruleE;
  mother.firstDaughter = 2;
  m.variable(2).nextDaughter = 1;
  for (size_t d : {1, 2}) {
    m.variable(d).motherIndex = 0;
    m.markDaughter(d);
  }
  m.variable(1).rule = &ruleD;
  m.variable(2).rule = &ruleE;

  EXPECT_DOUBLE_EQ(assertionVolume(m, 4, p), 40.0);
  // Q: y gives e's size 1, z no daughter applies: 1; (1 + 1) x w's width 2.
  EXPECT_DOUBLE_EQ(assertionVolume(m, 4, q), 4.0);
  // Pair: y is common and only e applies, with 1 common category; w: 1.
  EXPECT_DOUBLE_EQ(pairVolume(m, 4, p, q), 1.0);
  // Only the first p variables count: without w, P's volume is 8.
  EXPECT_DOUBLE_EQ(assertionVolume(m, 3, p), 8.0);
  // The entry is the volume's p-th root: 40 at p = 4 gives 2.5148668594.
  EXPECT_NEAR(volumeEntry(40.0, 4), 2.5148668594, 1e-9);
  EXPECT_EQ(volumeEntry(0.0, 4), 0.0);
}

TEST(Reduction, AnIndividualOutsideEveryRecordShowsTheBox) {
  TenPeople data;
  // An assertion numbered beyond the table: the registration finds no record.
  Individual& stray = data.person("stray", {"1", "a"});
  Assertion orphan("orphan", 7);
  data.matrix->link(stray, orphan);
  test::MessageRecorder boxes;
  ConsoleLog console;
  EXPECT_EQ(Reduce(*data.matrix, 80, console), 0);
  ASSERT_EQ(boxes.texts.size(), 1u);
  EXPECT_EQ(boxes.texts[0], "dans le if");
  EXPECT_EQ(boxes.icons[0], MessageIcon::Warning);
  data.matrix->unlink(stray, orphan);
}

// One assertion of ten individuals whose x values 1, 2, 4, 8, ... 512 leave
// every removal step a different cost, so the search goes several levels
// deep at threshold 50 (five individuals may go).
struct Doubling : test::HandMatrix {
  Doubling() {
    quantitative("x");
    holdCells();
    Assertion& assertion = matrix->createAssertion("town");
    for (int i = 0; i < 10; ++i)
      join(assertion, person(("p" + std::to_string(i)).c_str(), {std::to_string(1 << i).c_str()}));
  }
};

// A search cut at its first level says so on the console and still keeps
// the best reduction it found; the default cap lets the same search end.
TEST(ReductionLevelCap, StoppedSearchWritesItsLineAndKeepsTheBestFound) {
  Doubling capped;
  ConsoleLog console;
  ASSERT_EQ(Reduce(*capped.matrix, 50, console, nullptr, 1), 1);
  ASSERT_EQ(console.count(), 1u);
  EXPECT_EQ(console.lines()[0], "Assertion town: search stopped after 1 levels, best reduction found is kept");
  ASSERT_EQ(capped.matrix->reducedAssertions.size(), 1u);
  EXPECT_GE(capped.matrix->reducedAssertions[0]->memberCount, 5);

  Doubling whole;
  ConsoleLog quiet;
  ASSERT_EQ(Reduce(*whole.matrix, 50, quiet), 1);
  EXPECT_EQ(quiet.count(), 0u);
}

}  // namespace
}  // namespace velda
