#include <gtest/gtest.h>

#include "model/QuantitativeValue.h"
#include "ops/Join.h"
#include "support/HandMatrix.h"

namespace velda {
namespace {

using test::HandMatrix;

// A matrix with the given variables (quantitative) and one assertion per
// name, each holding one value [n, n] for its n-th variable... enough to see
// whose value went where.
std::unique_ptr<SymbolicMatrix> project(std::initializer_list<const char*> variables,
                                        std::initializer_list<const char*> assertions, double mark) {
  HandMatrix data;
  data.matrix->individualColumn = "id";
  data.matrix->assertionColumn = "town";
  for (const char* name : variables) data.quantitative(name);
  data.holdCells();
  for (const char* name : assertions) {
    Assertion& a = data.matrix->createAssertion(name);
    for (auto& value : a.values) static_cast<QuantitativeValue&>(*value).min = mark;
  }
  return std::move(data.matrix);
}

std::vector<std::string> namesOf(const SymbolicMatrix& m) {
  std::vector<std::string> names;
  for (size_t v = 0; v < m.variableCount(); ++v) names.push_back(m.variable(v).name);
  return names;
}

std::vector<std::string> joinedNames(std::initializer_list<const char*> first,
                                     std::initializer_list<const char*> second) {
  auto a = project(first, {"x"}, 1);
  auto b = project(second, {"x"}, 2);
  auto result = SymbolicMatrix::create(1, 1);
  EXPECT_EQ(Join(*result, *a, *b), 1);
  return namesOf(*result);
}

using Names = std::vector<std::string>;

TEST(Join, RenamesSecondFileVariablesWithItsOwnRules) {
  EXPECT_EQ(joinedNames({"age", "h"}, {"age", "w"}), (Names{"age", "h", "age_1", "w"}));
  // The variable placed just before is not compared.
  EXPECT_EQ(joinedNames({"h", "age"}, {"age", "w"}), (Names{"h", "age", "age", "w"}));
  EXPECT_EQ(joinedNames({"age"}, {"age"}), (Names{"age", "age"}));
  EXPECT_EQ(joinedNames({"a"}, {"birth place"}), (Names{"a", "birth_place"}));
  // A clash rebuilds the name from the file's name, blank included.
  EXPECT_EQ(joinedNames({"a_b", "y", "c"}, {"a b"}), (Names{"a_b", "y", "c", "a b_1"}));
  // One pass: a name made by a later clash is not compared with earlier ones.
  EXPECT_EQ(joinedNames({"k_1", "k", "z"}, {"k"}), (Names{"k_1", "k", "z", "k_1"}));
  EXPECT_EQ(joinedNames({"k", "k_1", "z"}, {"k"}), (Names{"k", "k_1", "z", "k_2"}));
  // The first file's column names.
  EXPECT_EQ(joinedNames({"a", "b"}, {"id", "town"}), (Names{"a", "b", "id_1", "town_1"}));
}

TEST(Join, KeepsCommonAssertionsInTheSmallerTablesOrderWithBothValueLists) {
  auto first = project({"p", "q"}, {"A", "B", "C"}, 1);
  auto second = project({"r"}, {"C", "D", "A"}, 2);
  first->findAssertion("B")->memberCount = 7;
  first->findAssertion("A")->memberCount = 5;
  auto result = SymbolicMatrix::create(1, 1);
  ASSERT_EQ(Join(*result, *first, *second), 1);
  ASSERT_EQ(result->assertionCount(), 2u);
  // Equal sizes: the second's table is walked, so C comes first.
  const Assertion* c = result->findAssertion("C");
  const Assertion* a = result->findAssertion("A");
  ASSERT_TRUE(c && a);
  EXPECT_EQ(c->number, 0);
  EXPECT_EQ(a->number, 1);
  EXPECT_EQ(a->memberCount, 5);
  ASSERT_EQ(a->values.size(), 3u);
  EXPECT_EQ(static_cast<const QuantitativeValue&>(a->value(0)).min, 1.0);
  EXPECT_EQ(static_cast<const QuantitativeValue&>(a->value(2)).min, 2.0);
  EXPECT_EQ(&a->value(2).variable(), &result->variable(2));
  EXPECT_EQ(result->variableCount(), 3u);
  EXPECT_EQ(result->quantitativeCount(), 3u);
  EXPECT_EQ(result->cellCount(), 3u);
  EXPECT_EQ(result->individualCount(), 0u);
  EXPECT_EQ(first->variableCount(), 0u) << "the variables were taken over";

  auto disjoint = SymbolicMatrix::create(1, 1);
  auto left = project({"p"}, {"A"}, 1);
  auto right = project({"q"}, {"Z"}, 2);
  ASSERT_EQ(Join(*disjoint, *left, *right), 1);
  EXPECT_EQ(disjoint->assertionCount(), 0u);
}

TEST(Join, ShiftsTheSecondFilesDependencesPastTheFirstsVariables) {
  auto first = project({"p", "q"}, {"A"}, 1);
  HandMatrix data;
  data.categorical("mother");
  data.categorical("daughter");
  data.holdCells();
  data.matrix->createAssertion("A");
  SymbolicMatrix& second = *data.matrix;
  auto& rule = *second.rules.emplace_back(std::make_unique<DependenceRule>(0, 1, 1));
  second.variable(0).firstDaughter = 1;
  second.variable(1).motherIndex = 0;
  second.variable(1).rule = &rule;
  second.markDaughter(1);
  // As if the first had a categorical column since removed.
  ASSERT_TRUE(first->declareCellVariables(first->cellCount(), 1));

  auto result = SymbolicMatrix::create(1, 1);
  ASSERT_EQ(Join(*result, *first, second), 1);
  EXPECT_EQ(result->variable(2).firstDaughter, 3);
  EXPECT_EQ(result->variable(2).motherIndex, -1);
  EXPECT_EQ(result->variable(3).motherIndex, 2);
  EXPECT_EQ(result->variable(3).nextDaughter, -1);
  ASSERT_EQ(result->rules.size(), 1u);
  EXPECT_EQ(result->rules[0]->mother, 2);
  EXPECT_EQ(result->rules[0]->daughter, 3);
  EXPECT_EQ(result->variable(3).rule, result->rules[0].get());
  EXPECT_EQ(test::daughterMarks(*result), (std::vector<bool>{false, false, false, true}));
  EXPECT_EQ(result->categoricalCount(), 2u);
  EXPECT_EQ(result->motherCandidateCount(), 3u) << "summed, not counted again";
}

}  // namespace
}  // namespace velda
