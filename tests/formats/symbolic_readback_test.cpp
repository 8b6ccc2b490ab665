#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

#include "formats_library/LibraryTestSupport.h"

// The symbolic text files that the writer's tests pin byte for byte must read
// back through the symbolic-file library with the values they were written
// from: a reader error there ends the export's process.

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

class ReadBackTest : public symlib::test::LibraryTest {
 protected:
  // Parses a fixture; its rows as shown(), one line per individual, empty
  // when the library ended the parse instead of returning.
  std::string readBack(const char* fixture, SymbolicFile& model) {
    const std::string text = ::test::fixture(fixture);
    const int status = symlib::test::ExitStatusOf([&] { symlib::test::ParseText(text, model); });
    EXPECT_EQ(status, -1) << log();
    std::string rows;
    for (const auto& row : model.matrix) {
      for (const SymValue& value : row) rows += shown(value) + ' ';
      rows += '\n';
    }
    return rows;
  }
};

TEST_F(ReadBackTest, EveryKindOfValueAndMissingValues) {
  SymbolicFile model;
  EXPECT_EQ(readBack("formats/every_kind.txt", model),
            "30 1.5:1.8 #1 {1(2),2(1)} \nNU NA NA NU \n12.5 2:2 #2 {2(2)} \n");
  ASSERT_EQ(model.individuals.size(), 3u);
  EXPECT_EQ(model.individuals[1].label, "a");
  ASSERT_EQ(model.variables.size(), 4u);
  const SymVariableKind kinds[] = {SymVariableKind::Continue, SymVariableKind::InterContinue, SymVariableKind::Nominal,
                                   SymVariableKind::MultNominalModif};
  for (size_t v = 0; v < 4; ++v) EXPECT_EQ(model.variables[v].kind, kinds[v]) << v;
  EXPECT_EQ(model.variables[3].weighting, symlib::SymWeighting::Cardinal);
  ASSERT_EQ(model.variables[2].categories.size(), 2u);
  EXPECT_EQ(model.variables[2].categories[1].label, "blue");
  EXPECT_EQ(model.variables[0].nuCount, 1);
  EXPECT_EQ(model.variables[1].naCount, 1);
  EXPECT_EQ(model.variables[2].naCount, 1);
}

TEST_F(ReadBackTest, TaxonomyAndDependenceRule) {
  SymbolicFile model;
  EXPECT_EQ(readBack("formats/taxonomy_and_rule.txt", model), "#1 3:7.5 \n#2 NA \n");
  // east (3) holds north and south, coast (5) holds west, the root (6) both.
  ASSERT_EQ(model.hierarchies.size(), 1u);
  EXPECT_EQ(model.hierarchies[0].variable, 1);
  std::vector<symlib::SymHierarchyLink> links = model.hierarchies[0].links;
  for (auto& link : links) std::sort(link.children.begin(), link.children.end());
  EXPECT_EQ(links, (std::vector<symlib::SymHierarchyLink>{{3, {1, 2}}, {5, {4}}, {6, {3, 5}}}));
  ASSERT_EQ(model.rules.size(), 1u);
  const auto& rule = model.rules[0];
  EXPECT_EQ(rule.premiseVariable, 1);
  EXPECT_EQ(shown(rule.premise), "{2}");
  EXPECT_EQ(rule.conclusionVariable, 2);
  EXPECT_EQ(rule.conclusion.kind, SymValue::Kind::NA);
}

}  // namespace
}  // namespace velda
