#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <sstream>
#include <string>
#include <vector>

#include "WriterMatrix.h"
#include "formats/SymbolicTextWriter.h"
#include "formats_library/LibraryTestSupport.h"
#include "model/Dependence.h"

// Every symbolic text file the writer makes must read back through the
// symbolic-file library: a reader error there ends the export's process.
// Each test writes a matrix, parses it in a folder of its own (the library
// logs to "parser.dat" in the current folder) and compares the library's
// model with the matrix.

namespace velda {
namespace {

using symlib::SymbolicFile;
using symlib::SymValue;
using symlib::SymVariableKind;

class ReadBackTest : public symlib::test::LibraryTest, protected test::WriterMatrix {
 protected:
  // Writes the matrix (reduced rows when asked) and reads the text back.
  // False when the library ended the parse instead of returning.
  bool readBack(SymbolicFile& model, bool reduced = false) {
    std::ostringstream out;
    EXPECT_TRUE(IndexAndWriteSymbolicText(out, *matrix, reduced));
    const std::string text = out.str();
    const int status = symlib::test::ExitStatusOf([&] { symlib::test::ParseText(text, model); });
    EXPECT_EQ(status, -1) << text << "\n" << log();
    return status == -1;
  }

  // What holds for every file: one individual per assertion, named and
  // ordered by number; one variable per active variable, in order, with its
  // name; one row per individual with one value per variable.
  void expectSameShape(const SymbolicFile& model) {
    ASSERT_EQ(model.individuals.size(), matrix->assertionCount());
    for (size_t i = 0; i < model.individuals.size(); ++i)
      EXPECT_EQ(model.individuals[i].label, matrix->orderedAssertions[i]->id);
    std::vector<std::string> active;
    for (const auto& variable : matrix->variables())
      if (variable->active) active.push_back(variable->name);
    ASSERT_EQ(model.variables.size(), active.size());
    for (size_t v = 0; v < active.size(); ++v) EXPECT_EQ(model.variables[v].label, active[v]);
    ASSERT_EQ(model.matrix.size(), model.individuals.size());
    for (const auto& row : model.matrix) EXPECT_EQ(row.size(), active.size());
  }
};

std::vector<long long> numbersOf(const std::vector<symlib::SymItem>& items) {
  std::vector<long long> numbers;
  for (const auto& item : items) numbers.push_back(item.number);
  return numbers;
}

TEST_F(ReadBackTest, PlainMatrixOfEveryKind) {
  const size_t age = quantitative("age", 0);
  const size_t height = quantitative("height", 1);
  const size_t color = categorical("color", 0);
  const size_t tags = categorical("tags", 1, MODE_BOOLEAN);
  const size_t sport = categorical("sport", 1, MODE_CARDINALITY);
  matrix->title = "Clubs \"2024\"";
  Assertion& north = matrix->createAssertion("north");
  Assertion& south = matrix->createAssertion("south");
  add(north, age, "30");
  add(north, height, "1.5");
  add(north, height, "1.8");
  add(north, color, "red");
  add(north, tags, "x");
  add(north, tags, "y");
  add(north, sport, "ski");
  add(north, sport, "foot");
  add(south, age, "12.5");
  add(south, height, "2");
  add(south, color, "blue");
  add(south, tags, "y");
  add(south, sport, "foot", 2.0);

  SymbolicFile model;
  ASSERT_TRUE(readBack(model));
  expectSameShape(model);
  EXPECT_EQ(model.variables[0].kind, SymVariableKind::Continue);
  EXPECT_EQ(model.variables[1].kind, SymVariableKind::InterContinue);
  EXPECT_EQ(model.variables[2].kind, SymVariableKind::Nominal);
  EXPECT_EQ(model.variables[3].kind, SymVariableKind::MultNominal);
  EXPECT_EQ(model.variables[4].kind, SymVariableKind::MultNominalModif);
  EXPECT_EQ(model.variables[4].weighting, symlib::SymWeighting::Cardinal);
  ASSERT_EQ(model.variables[2].categories.size(), 2u);
  EXPECT_EQ(model.variables[2].categories[1].label, "blue");

  const auto& first = model.matrix[0];
  EXPECT_EQ(first[0].kind, SymValue::Kind::Real);
  EXPECT_EQ(first[0].low, 30);
  EXPECT_EQ(first[1].kind, SymValue::Kind::Interval);
  EXPECT_EQ(first[1].low, 1.5);
  EXPECT_EQ(first[1].high, 1.8);
  EXPECT_EQ(first[2].kind, SymValue::Kind::Category);
  EXPECT_EQ(first[2].category, 1);
  EXPECT_EQ(numbersOf(first[3].items), (std::vector<long long>{1, 2}));
  const auto& second = model.matrix[1];
  EXPECT_EQ(second[0].low, 12.5);
  EXPECT_EQ(second[2].category, 2);
  EXPECT_EQ(numbersOf(second[3].items), (std::vector<long long>{2}));
  ASSERT_EQ(second[4].kind, SymValue::Kind::WeightedSet);
  ASSERT_EQ(second[4].items.size(), 1u);
  EXPECT_EQ(second[4].items[0].number, 2);
  EXPECT_EQ(second[4].items[0].weight, 2);
}

TEST_F(ReadBackTest, TaxonomyWithInnerNodes) {
  const size_t region = categorical("region", 0);
  ASSERT_TRUE(matrix->declareCellVariables(matrix->variableCount(), matrix->categoricalCount()));
  Assertion& a = matrix->createAssertion("a");
  Assertion& b = matrix->createAssertion("b");
  add(a, region, "north");
  add(b, region, "south");
  CellValue unused;
  ASSERT_EQ(matrix->variable(region).addCell("west", unused), 1);
  taxonomy(region, {{"north", "east"}, {"south", "east"}, {"west", "coast"}});

  SymbolicFile model;
  ASSERT_TRUE(readBack(model));
  expectSameShape(model);
  ASSERT_EQ(model.hierarchies.size(), 1u);
  const auto& hierarchy = model.hierarchies[0];
  EXPECT_EQ(hierarchy.variable, 1);
  // Inner nodes follow the three leaves; east holds north (1) and south (2).
  const auto east = std::find_if(hierarchy.innerNodes.begin(), hierarchy.innerNodes.end(),
                                 [](const symlib::SymCategory& node) { return node.label == "east"; });
  ASSERT_NE(east, hierarchy.innerNodes.end());
  EXPECT_GT(east->number, 3);
  const auto link = std::find_if(hierarchy.links.begin(), hierarchy.links.end(),
                                 [&](const symlib::SymHierarchyLink& l) { return l.node == east->number; });
  ASSERT_NE(link, hierarchy.links.end());
  std::vector<long long> children = link->children;
  std::sort(children.begin(), children.end());
  EXPECT_EQ(children, (std::vector<long long>{1, 2}));
  EXPECT_EQ(model.matrix[1][0].category, 2);
}

TEST_F(ReadBackTest, DependenceRuleBetweenActiveVariables) {
  const size_t region = categorical("region", 0);
  const size_t size = quantitative("size", 1);
  ASSERT_TRUE(matrix->declareCellVariables(matrix->variableCount(), matrix->categoricalCount()));
  Assertion& a = matrix->createAssertion("a");
  Assertion& b = matrix->createAssertion("b");
  add(a, region, "north");
  add(b, region, "south");
  add(a, size, "3");
  add(a, size, "7.5");
  add(b, size, "5", 1.0, true);  // south is outside the set: size not applicable

  const std::array<int32_t, 1> applicable{0};  // north
  const std::array<int32_t, 1> daughters{static_cast<int32_t>(size)};
  RuleGroup group;
  ASSERT_EQ(makeRuleGroup(*matrix, static_cast<int32_t>(region), applicable, daughters, group), 1);
  for (auto& rule : group) matrix->rules.push_back(std::move(rule));

  SymbolicFile model;
  ASSERT_TRUE(readBack(model));
  expectSameShape(model);
  ASSERT_EQ(model.rules.size(), 1u);
  const auto& rule = model.rules[0];
  EXPECT_EQ(rule.premiseVariable, 1);
  EXPECT_EQ(numbersOf(rule.premise.items), (std::vector<long long>{2}));
  EXPECT_EQ(rule.conclusionVariable, 2);
  EXPECT_EQ(rule.conclusion.kind, SymValue::Kind::NA);
  EXPECT_EQ(model.matrix[0][1].high, 7.5);
  EXPECT_EQ(model.matrix[1][1].kind, SymValue::Kind::NA);
}

TEST_F(ReadBackTest, ReducedRowsUnderTheAssertionsNames) {
  const size_t age = quantitative("age", 1);
  Assertion& a = matrix->createAssertion("a");
  Assertion& b = matrix->createAssertion("b");
  add(a, age, "1");
  add(a, age, "9");
  add(b, age, nullptr);
  for (const Assertion* row : {&a, &b}) {
    auto reduced = std::make_unique<Assertion>(row->id + "_reduced", row->number);
    reduced->values.push_back(matrix->variable(age).newSymbolicValue());
    matrix->reducedAssertions.push_back(std::move(reduced));
  }
  add(*matrix->reducedAssertions[0], age, "2");
  add(*matrix->reducedAssertions[1], age, "4", 1.0, true);

  SymbolicFile model;
  ASSERT_TRUE(readBack(model, true));
  expectSameShape(model);
  EXPECT_EQ(model.matrix[0][0].kind, SymValue::Kind::Interval);
  EXPECT_EQ(model.matrix[0][0].low, 2);
  EXPECT_EQ(model.matrix[0][0].high, 2);
  EXPECT_EQ(model.matrix[1][0].kind, SymValue::Kind::NA);
  EXPECT_EQ(model.variables[0].naCount, 1);
  EXPECT_EQ(model.variables[0].nuCount, 0);
}

TEST_F(ReadBackTest, MissingValuesAndAnInactiveVariable) {
  const size_t age = quantitative("age", 0);
  const size_t skipped = categorical("skipped", 0);
  const size_t color = categorical("color", 0);
  const size_t share = categorical("share", 1, MODE_PROBABILIST);
  matrix->variable(skipped).active = 0;
  Assertion& a = matrix->createAssertion("a");
  Assertion& b = matrix->createAssertion("b");
  add(a, age, nullptr);
  add(a, skipped, "x");
  add(a, color, "red", 1.0, true);
  add(a, share, nullptr);
  add(b, age, "40");
  add(b, skipped, "y");
  add(b, color, "blue");
  add(b, share, "p", 3.0);
  add(b, share, "q", 1.0);

  SymbolicFile model;
  ASSERT_TRUE(readBack(model));
  expectSameShape(model);
  EXPECT_EQ(model.variables[1].label, "color");
  EXPECT_EQ(model.variables[1].kind, SymVariableKind::Nominal);
  EXPECT_EQ(model.variables[2].weighting, symlib::SymWeighting::Proba);
  EXPECT_EQ(model.matrix[0][0].kind, SymValue::Kind::NU);
  EXPECT_EQ(model.matrix[0][1].kind, SymValue::Kind::NA);
  EXPECT_EQ(model.matrix[0][2].kind, SymValue::Kind::NU);
  EXPECT_EQ(model.variables[0].nuCount, 1);
  EXPECT_EQ(model.variables[1].naCount, 1);
  EXPECT_EQ(model.matrix[1][0].low, 40);
  EXPECT_EQ(model.matrix[1][1].category, 2);
  ASSERT_EQ(model.matrix[1][2].items.size(), 2u);
  EXPECT_EQ(model.matrix[1][2].items[0].weight, 0.75);
  EXPECT_EQ(model.matrix[1][2].items[1].weight, 0.25);
}

}  // namespace
}  // namespace velda
