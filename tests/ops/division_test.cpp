#include <gtest/gtest.h>
#include <unistd.h>

#include <fstream>
#include <tuple>

#include "model/QuantitativeValue.h"
#include "ops/division/CategoricalCuts.h"
#include "ops/division/Division.h"
#include "ops/division/GravityReport.h"
#include "ops/reduction/NodeNumber.h"
#include "support/HandMatrix.h"
#include "support/Recorders.h"
#include "support/TempDir.h"

namespace velda {
namespace {

using test::HandMatrix;
using test::InTempDir;

// "Paris" with x = 1, 2, 10, 11: the midpoints 1.5, 6 and 10.5 explain
// 1 - 48.67/82, 1 - 1/82 and 1 - 48.67/82 of the inertia 82: the cut is 6.
std::unique_ptr<SymbolicMatrix> paris(std::initializer_list<const char*> xs) {
  HandMatrix data;
  data.quantitative("x");
  data.holdCells();
  Assertion& assertion = data.matrix->createAssertion("Paris");
  int n = 0;
  for (const char* x : xs) data.join(assertion, data.person(("p" + std::to_string(++n)).c_str(), {x}));
  return std::move(data.matrix);
}

const QuantitativeValue& interval(const Assertion& a) { return static_cast<const QuantitativeValue&>(a.value(0)); }

TEST(Division, TwoQuantitativeClassesByHand) {
  InTempDir folder;
  auto matrix = paris({"1", "2", "10", "11"});
  test::ProgressRecorder progress;
  ScopedProgressTarget scope(&progress);
  ASSERT_EQ(Divide(*matrix, 2), 1);
  ASSERT_EQ(matrix->hordes.size(), 1u);
  const Horde& horde = matrix->hordes[0];
  ASSERT_EQ(horde.classes.size(), 2u);
  EXPECT_EQ(horde.classes[0]->id + horde.labels[0] + "|" + horde.classes[1]->id + horde.labels[1],
            "Paris2 Classe 1 (Ng=2)|Paris3 Classe 1 (Nd=2)");
  EXPECT_EQ(interval(*horde.classes[0]).min, 1.0);
  EXPECT_EQ(interval(*horde.classes[0]).max, 2.0);
  EXPECT_EQ(interval(*horde.classes[1]).min, 10.0);
  EXPECT_EQ(horde.classes[1]->memberCount, 2);
  EXPECT_EQ(horde.individualCount, 4);
  EXPECT_EQ(horde.cutPaths[0], std::vector<int32_t>{1});
  EXPECT_EQ(matrix->divisionClassCount, 2);
  EXPECT_EQ(matrix->assertionCount(), 1u) << "classes stay out of the assertion table";
  EXPECT_EQ(progress.line1.back(), "Division in progress...");
  EXPECT_EQ(progress.line2.back(), "Assertion Paris");
  // The last centre written is the right child's: no line break after it.
  EXPECT_EQ(folder.read("result.txt"), " variable: x \n  gravit\xe9 de Paris =  10.5");
}

TEST(Division, AReportNamePlantedAsALinkIsNotFollowed) {
  InTempDir folder;
  {
    std::ofstream victim("victim", std::ios::binary);
    victim << "private";
  }
  ASSERT_EQ(symlink("victim", "result.txt"), 0);
  auto matrix = paris({"1", "2", "10", "11"});
  // The report cannot be opened: the division still runs to its end.
  ASSERT_EQ(Divide(*matrix, 2), 1);
  ASSERT_EQ(matrix->hordes.size(), 1u);
  EXPECT_EQ(matrix->hordes[0].classes.size(), 2u);
  EXPECT_EQ(folder.read("victim"), "private");
  char target[16] = {};
  EXPECT_EQ(readlink("result.txt", target, sizeof target - 1), 6);
  EXPECT_STREQ(target, "victim");
}

TEST(Division, UnequalWeightsMoveTheCentre) {
  InTempDir folder;
  HandMatrix data;
  data.quantitative("x");
  data.holdCells();
  Individual& a = data.person("a", {"1"}, 3.0);
  Individual& b = data.person("b", {"5"}, 1.0);
  data.group("Lyon", {&a, &b});
  ASSERT_EQ(Divide(*data.matrix, 2), 1);
  EXPECT_EQ(data.matrix->hordes[0].classes[0]->id, "Lyon2");
  // The root's centre (3 x 1 + 5) / 4 = 2 was overwritten by the children's.
  EXPECT_EQ(folder.read("result.txt"), " variable: x \n  gravit\xe9 de Lyon =  5");
}

// Two categorical variables: c in {a, a, b, c}, d in {u, u, v, v}. Cutting c
// into {a} | {b, c} leaves inertia 0 + 1 of 4.5; {b,c} | {a} and d's cut
// tie with it and do not replace it (same smaller side).
TEST(Division, TwoCategoricalClassesByHand) {
  InTempDir folder;
  HandMatrix data;
  data.categorical("c");
  data.categorical("d");
  data.holdCells();
  Assertion& nice = data.matrix->createAssertion("Nice");
  const std::tuple<const char*, const char*, const char*> rows[] = {
      {"i1", "a", "u"}, {"i2", "b", "v"}, {"i3", "a", "u"}, {"i4", "c", "v"}};
  for (const auto& [id, c, d] : rows) data.matrix->link(data.person(id, {c, d}), nice);
  ASSERT_EQ(Divide(*data.matrix, 2), 1);
  const Horde& horde = data.matrix->hordes[0];
  ASSERT_EQ(horde.classes.size(), 2u);
  EXPECT_EQ(horde.classes[0]->id + horde.labels[0] + "|" + horde.classes[1]->id + horde.labels[1],
            "Nice2 Classe 1 (Ng=2)|Nice3 Classe 1 (Nd=2)");
  ASSERT_EQ(horde.classes[0]->members.size(), 2u);
  EXPECT_EQ(horde.classes[0]->members[0]->id + horde.classes[0]->members[1]->id, "i1i3");
  // Right child {b, c}: per category of c the share of its column, then d.
  EXPECT_EQ(folder.read("result.txt"),
            " variable: c \n  gravit\xe9 de Nice =  0  gravit\xe9 de Nice =  0.5  gravit\xe9 de Nice =  0.5"
            " variable: d \n  gravit\xe9 de Nice =  0  gravit\xe9 de Nice =  1");
}

TEST(Division, MissingCategoryShowsOneBoxPerRun) {
  InTempDir folder;
  HandMatrix data;
  data.categorical("c");
  data.holdCells();
  Assertion& group = data.matrix->createAssertion("G");
  Assertion& other = data.matrix->createAssertion("H");
  const std::tuple<const char*, const char*, Assertion*> rows[] = {{"i1", "a", &group},     {"i2", "b", &group},
                                                                   {"i3", nullptr, &group}, {"j1", "a", &other},
                                                                   {"j2", nullptr, &other}, {"j3", "b", &other}};
  for (const auto& [id, c, assertion] : rows) data.matrix->link(data.person(id, {c}), *assertion);
  test::MessageRecorder boxes;
  // Both assertions' root and right child hold a NULL cell: 8 missing
  // entries, one box.
  ASSERT_EQ(Divide(*data.matrix, 2), 1);
  ASSERT_EQ(boxes.texts.size(), 1u);
  EXPECT_EQ(boxes.texts[0], "valeur manquante");
  EXPECT_EQ(boxes.icons[0], MessageIcon::Warning);
  EXPECT_EQ(data.matrix->hordes[0].labels[1], " Classe 1 (Nd=2)") << "the missing individual goes right";
  EXPECT_EQ(folder.read("result.txt"), " variable: c \n  gravit\xe9 de H =  0  gravit\xe9 de H =  1");
  ASSERT_EQ(Divide(*data.matrix, 2), 1);
  EXPECT_EQ(boxes.texts.size(), 2u) << "a new run shows the box again";
}

// A singleton, or a categorical variable of 13 categories, cannot be cut:
// the division stops with both boxes and keeps the previous class number.
TEST(Division, SingletonsAndThirteenCategoriesAreNeverCut) {
  InTempDir folder;
  const std::vector<std::string> stopped = {
      "THE DIVISIONS ARE STOPED: \n 1. It is not possible to divide singletons or objects having the same "
      "descriptions \n i.e. the same median value on each criterion-variable \n 2. Each split-variable has at "
      "least a missing data\n 3.Each split-variable has at leat 12 categories",
      "Division stopped... Bad Class Number, try to choose lower number"};
  auto singleton = paris({"4"});
  singleton->divisionClassCount = 3;
  test::MessageRecorder boxes;
  EXPECT_EQ(Divide(*singleton, 2), 0);
  EXPECT_EQ(boxes.texts, stopped);
  EXPECT_TRUE(singleton->hordes.empty());
  EXPECT_EQ(singleton->divisionClassCount, 3);
  for (int categories : {12, 13}) {
    HandMatrix data;
    data.categorical("c");
    data.holdCells();
    Assertion& group = data.matrix->createAssertion("G");
    for (int i = 0; i < categories; ++i) {
      const std::string name = "k" + std::to_string(i);
      data.matrix->link(data.person(name.c_str(), {name.c_str()}), group);
    }
    boxes.texts.clear();
    EXPECT_EQ(Divide(*data.matrix, 2), categories == 12 ? 1 : 0) << categories;
    EXPECT_EQ(boxes.texts, categories == 12 ? std::vector<std::string>{} : stopped) << categories;
  }
}

TEST(Division, RefusesMixedMatricesAndCancels) {
  InTempDir folder;
  HandMatrix data;
  data.quantitative("x");
  data.categorical("c");
  data.holdCells();
  Individual& a = data.person("a", {"1", "u"});
  data.group("G", {&a});
  {
    test::MessageRecorder boxes;
    EXPECT_EQ(Divide(*data.matrix, 2), 0);
    ASSERT_EQ(boxes.texts.size(), 1u);
    EXPECT_EQ(boxes.texts[0], "PAS ENCORE DE MELANGE!");
  }
  auto matrix = paris({"1", "2", "10", "11"});
  test::ProgressRecorder progress;
  progress.cancel = true;
  ScopedProgressTarget scope(&progress);
  EXPECT_EQ(Divide(*matrix, 2), 0);
  EXPECT_TRUE(matrix->hordes.empty());
}

TEST(Division, ClassNumbersBeyondSixtyFourBits) {
  EXPECT_EQ(decimalText(1), "1");
  EXPECT_EQ(decimalText(0), "0");
  EXPECT_EQ(decimalText(NodeNumber{1} << 99), "633825300114114700748351602688");
}

TEST(DivisionDeathTest, MissingInputsEndTheProgramWithStatusZero) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  test::StderrMessages messages;
  setMessageBoxTarget(&messages);
  auto matrix = paris({"1", "2"});
  MissingValueNotice notice;
  EXPECT_EXIT(writeGravityCentre(*matrix, nullptr, nullptr, "Paris", notice), testing::ExitedWithCode(0),
              "le centre de gravit\xe9 ou les indiv non initialis\xe9s");
  EXPECT_EXIT(findCategoricalCut(nullptr, nullptr), testing::ExitedWithCode(0),
              "le tableau disjonctif complet ou les indiv non initialis\xe9s");
  setMessageBoxTarget(nullptr);
}

}  // namespace
}  // namespace velda
