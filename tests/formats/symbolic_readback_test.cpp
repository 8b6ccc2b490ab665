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

// A value as the library read it: 30, 1.5:1.8, #2, {1,2}, {2(2)}, NA, NU.
std::string shown(const SymValue& value) {
  std::ostringstream out;
  switch (value.kind) {
    case SymValue::Kind::NA: out << "NA"; break;
    case SymValue::Kind::NU: out << "NU"; break;
    case SymValue::Kind::Real: out << value.low; break;
    case SymValue::Kind::Interval: out << value.low << ':' << value.high; break;
    case SymValue::Kind::Category: out << '#' << value.category; break;
    case SymValue::Kind::CategorySet:
    case SymValue::Kind::WeightedSet:
      out << '{';
      for (size_t i = 0; i < value.items.size(); ++i) {
        out << (i ? "," : "") << value.items[i].number;
        if (value.kind == SymValue::Kind::WeightedSet) out << '(' << value.items[i].weight << ')';
      }
      out << '}';
      break;
  }
  return out.str();
}

class ReadBackTest : public symlib::test::LibraryTest, protected test::WriterMatrix {
 protected:
  // Writes the matrix, reads the text back and checks what holds for every
  // file: one individual per assertion, named and ordered by number; one
  // variable per active variable, in order, with its name. Returns the rows
  // as shown(), one line per individual; empty when the library ended the
  // parse instead of returning.
  std::string readBack(SymbolicFile& model) {
    std::ostringstream out;
    EXPECT_TRUE(IndexAndWriteSymbolicText(out, *matrix, false));
    const std::string text = out.str();
    const int status = symlib::test::ExitStatusOf([&] { symlib::test::ParseText(text, model); });
    EXPECT_EQ(status, -1) << text << "\n" << log();
    if (status != -1) return "";
    EXPECT_EQ(model.individuals.size(), matrix->assertionCount());
    for (size_t i = 0; i < model.individuals.size(); ++i)
      EXPECT_EQ(model.individuals[i].label, matrix->orderedAssertions[i]->id);
    std::vector<std::string> active;
    for (const auto& variable : matrix->variables())
      if (variable->active) active.push_back(variable->name);
    EXPECT_EQ(model.variables.size(), active.size());
    for (size_t v = 0; v < active.size() && v < model.variables.size(); ++v)
      EXPECT_EQ(model.variables[v].label, active[v]);
    std::string rows;
    for (const auto& row : model.matrix) {
      for (const SymValue& value : row) rows += shown(value) + ' ';
      rows += '\n';
    }
    return rows;
  }
};

TEST_F(ReadBackTest, EveryKindOfValueMissingValuesAndAnInactiveVariable) {
  const size_t age = quantitative("age", 0);
  const size_t height = quantitative("height", 1);
  const size_t skipped = categorical("skipped", 0);
  const size_t color = categorical("color", 0);
  const size_t tags = categorical("tags", 1, MODE_BOOLEAN);
  const size_t sport = categorical("sport", 1, MODE_CARDINALITY);
  const size_t share = categorical("share", 1, MODE_PROBABILIST);
  matrix->variable(skipped).active = 0;
  matrix->title = "Clubs \"2024\"";
  Assertion& north = matrix->createAssertion("north");
  Assertion& south = matrix->createAssertion("south");
  Assertion& east = matrix->createAssertion("east");
  add(north, age, "30");
  add(north, height, "1.5");
  add(north, height, "1.8");
  add(north, skipped, "x");
  add(north, color, "red");
  add(north, tags, "x");
  add(north, tags, "y");
  add(north, sport, "ski");
  add(north, sport, "foot");
  add(north, share, "p", 3.0);
  add(north, share, "q", 1.0);
  add(south, age, "12.5");
  add(south, height, "2");
  add(south, color, "blue");
  add(south, tags, "y");
  add(south, sport, "foot", 2.0);
  add(south, share, nullptr);
  add(east, age, nullptr);
  add(east, height, "4", 1.0, true);
  add(east, skipped, "y");
  add(east, color, "red", 1.0, true);

  SymbolicFile model;
  EXPECT_EQ(readBack(model),
            "30 1.5:1.8 #1 {1,2} {1(1),2(1)} {1(0.75),2(0.25)} \n"
            "12.5 2:2 #2 {2} {2(2)} NU \n"
            "NU NA NA NU NU NU \n");
  ASSERT_EQ(model.variables.size(), 6u);
  const SymVariableKind kinds[] = {SymVariableKind::Continue,         SymVariableKind::InterContinue,
                                   SymVariableKind::Nominal,          SymVariableKind::MultNominal,
                                   SymVariableKind::MultNominalModif, SymVariableKind::MultNominalModif};
  for (size_t v = 0; v < 6; ++v) EXPECT_EQ(model.variables[v].kind, kinds[v]) << v;
  EXPECT_EQ(model.variables[4].weighting, symlib::SymWeighting::Cardinal);
  EXPECT_EQ(model.variables[5].weighting, symlib::SymWeighting::Proba);
  ASSERT_EQ(model.variables[2].categories.size(), 2u);
  EXPECT_EQ(model.variables[2].categories[1].label, "blue");
  EXPECT_EQ(model.variables[0].nuCount, 1);
  EXPECT_EQ(model.variables[1].naCount, 1);
  EXPECT_EQ(model.variables[2].naCount, 1);
}

TEST_F(ReadBackTest, TaxonomyAndDependenceRule) {
  const size_t region = categorical("region", 0);
  const size_t size = quantitative("size", 1);
  ASSERT_TRUE(matrix->declareCellVariables(matrix->variableCount(), matrix->categoricalCount()));
  Assertion& a = matrix->createAssertion("a");
  Assertion& b = matrix->createAssertion("b");
  add(a, region, "north");
  add(b, region, "south");
  CellValue unused;
  ASSERT_EQ(matrix->variable(region).addCell("west", unused), 1);
  add(a, size, "3");
  add(a, size, "7.5");
  add(b, size, "5", 1.0, true);  // south is outside the set: size not applicable
  taxonomy(region, {{"north", "east"}, {"south", "east"}, {"west", "coast"}});
  const std::array<int32_t, 1> applicable{0};  // north
  const std::array<int32_t, 1> daughters{static_cast<int32_t>(size)};
  RuleGroup group;
  ASSERT_EQ(makeRuleGroup(*matrix, static_cast<int32_t>(region), applicable, daughters, group), 1);
  for (auto& rule : group) matrix->rules.push_back(std::move(rule));

  SymbolicFile model;
  EXPECT_EQ(readBack(model), "#1 3:7.5 \n#2 NA \n");
  // Inner nodes follow the three leaves: east (4) holds north and south,
  // coast (5) holds west, the root (6) both.
  ASSERT_EQ(model.hierarchies.size(), 1u);
  EXPECT_EQ(model.hierarchies[0].variable, 1);
  std::vector<symlib::SymHierarchyLink> links = model.hierarchies[0].links;
  for (auto& link : links) std::sort(link.children.begin(), link.children.end());
  EXPECT_EQ(links, (std::vector<symlib::SymHierarchyLink>{{4, {1, 2}}, {5, {3}}, {6, {4, 5}}}));
  ASSERT_EQ(model.rules.size(), 1u);
  const auto& rule = model.rules[0];
  EXPECT_EQ(rule.premiseVariable, 1);
  EXPECT_EQ(shown(rule.premise), "{2}");
  EXPECT_EQ(rule.conclusionVariable, 2);
  EXPECT_EQ(rule.conclusion.kind, SymValue::Kind::NA);
}

}  // namespace
}  // namespace velda
