// A project reads back exactly as it was: what a later export or rule text
// shows does not change across save and open.
#include <gtest/gtest.h>

#include <sstream>

#include "document/ProjectBytes.h"
#include "document/ProjectFileSamples.h"
#include "model/Dependence.h"
#include "support/HandMatrix.h"

namespace velda {
namespace {

std::string ruleText(const SymbolicMatrix& matrix) {
  std::ostringstream out;
  describeRule(matrix, *matrix.rules.front(), out);
  return out.str();
}

std::string valueTexts(const SymbolicMatrix& matrix, size_t variable) {
  std::string texts;
  for (const Assertion& assertion : matrix.assertions) texts += test::HandMatrix::written(assertion, variable) + ";";
  return texts;
}

TEST(ProjectReadBack, RulesAndRecomputedDaughtersKeepTheirOrder) {
  // Mother m with five modalities; set-valued daughter d whose assertion
  // g holds modalities 2 and 5 (numbers 1 and 4): in more buckets
  // than entries they come in another order than in a compact table.
  test::HandMatrix hand;
  hand.categorical("m", 0, 5);
  hand.categorical("d", 1, 5);
  hand.holdCells();
  const char* const names[] = {"alpha", "beta", "gamma", "delta", "mu"};
  std::vector<Individual*> people;
  for (int i = 0; i < 5; ++i) people.push_back(&hand.person(std::to_string(i).c_str(), {names[i], names[i]}));
  hand.group("g", {people[1], people[4]});
  hand.group("h", {people[0], people[2], people[3]});
  ASSERT_EQ(hand.matrix->finish(false), 1);

  RuleGroup group;
  const int32_t applicable[] = {1, 4};
  const int32_t daughters[] = {1};
  ASSERT_EQ(makeRuleGroup(*hand.matrix, 0, applicable, daughters, group), 1);
  ASSERT_EQ(applyRule(*hand.matrix, std::move(group)), 1);
  const std::string rule = ruleText(*hand.matrix);
  const std::string daughterValues = valueTexts(*hand.matrix, 1);

  const auto reopened = test::projectFromBytes(test::projectBytes(*hand.matrix));
  ASSERT_TRUE(reopened);
  EXPECT_EQ(ruleText(*reopened), rule);
  EXPECT_EQ(valueTexts(*reopened, 1), daughterValues);
}

TEST(ProjectReadBack, AnEmptyCategoryIsStoredAsPresent) {
  auto matrix = test::smallProject();
  CellValue unused;
  matrix->variable(1).addCell("", unused);
  const std::string bytes = test::projectBytes(*matrix);
  // c's leaves in the order of three buckets: "" (hash 0, number 2), then
  // a (97 % 3 = 1) and b (98 % 3 = 2).
  EXPECT_NE(bytes.find(test::ProjectBytes().u16(1).u8(0).u16(2).str("a").u16(0).str("b").u16(1).bytes()),
            std::string::npos);
}

TEST(ProjectReadBack, ProbabilistWeightsStayFiniteBesideAHugeNullWeight) {
  test::HandMatrix hand;
  auto& town = hand.categorical("town", 1);
  town.mode = MODE_PROBABILIST;
  hand.holdCells();
  Individual& small = hand.person("1", {"x"}, 1.0);
  Individual& huge = hand.person("2", {nullptr}, 1e17);
  Assertion& g = hand.group("g", {&small, &huge});
  EXPECT_EQ(test::HandMatrix::written(g, 0), "(1(1))");
}

}  // namespace
}  // namespace velda
