#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "common/ConsoleLog.h"
#include "common/LastError.h"
#include "model/Dependence.h"
#include "model/Taxonomy.h"
#include "model/TaxonomyBuilder.h"
#include "model/VariableRemoval.h"
#include "support/HandMatrix.h"

namespace velda {
namespace {

using Lines = std::deque<std::string>;

void giveTaxonomy(SymbolicMatrix& matrix, size_t index, std::string_view leaf) {
  auto& variable = static_cast<CategoricalVariable&>(matrix.variable(index));
  const std::vector<std::optional<std::string_view>> row = {leaf, "top"};
  TaxonomyBuilder builder(variable);
  ASSERT_EQ(builder.addRow(row), 1);
  ASSERT_GE(builder.finish(), 1);
  settleTaxonomy(matrix, index);
}

std::vector<std::string> names(const SymbolicMatrix& matrix) {
  std::vector<std::string> all;
  for (const auto& variable : matrix.variables()) all.push_back(variable->name);
  return all;
}

// Cell-holding job, salary, firm, city; added region, score, memo. The rule
// job -> {city, firm} applies to workers; firm and memo have taxonomies.
struct RuledMatrix : test::HandMatrix {
  RuledMatrix() {
    categorical("job", 1);
    quantitative("salary");
    categorical("firm", 1);
    categorical("city", 1);
    holdCells();
    categorical("region").addModality("north");
    quantitative("score");
    categorical("memo").addModality("text");
    i1 = &person("i1", {"worker", "100", "acme", "paris"});
    i2 = &person("i2", {"student", "20", "uni", "rome"});
    g = &group("g", {i1, i2});
    matrix->reducedAssertions.push_back(row("reduced", {i1}));
    matrix->hordes.emplace_back();
    matrix->hordes.back().classes.push_back(row("class", {i2}));
    matrix->hordes.back().reducedClasses.push_back(row("reducedClass", {i2}));
    RuleGroup rules;
    const int32_t applicable[] = {0};
    const int32_t daughters[] = {3, 2};
    EXPECT_EQ(makeRuleGroup(*matrix, 0, applicable, daughters, rules), 1);
    EXPECT_EQ(applyRule(*matrix, std::move(rules)), 1);
    giveTaxonomy(*matrix, 2, "acme");
    giveTaxonomy(*matrix, 6, "text");
  }
  Individual *i1, *i2;
  Assertion* g;
};

TEST(VariableRemoval, RemovedColumnsGoAndIndexesMoveDown) {
  RuledMatrix m;
  ASSERT_EQ(m.matrix->cellTaxonomyCount(), 1);
  std::vector<int32_t> offered;
  ASSERT_EQ(removableVariables(*m.matrix, offered), 1);
  EXPECT_EQ(offered, (std::vector<int32_t>{4, 5, 6}));

  ConsoleLog console;
  const int32_t chosen[] = {4, 1, 4};
  ASSERT_EQ(removeVariables(*m.matrix, chosen, console), 1);
  EXPECT_EQ(console.lines(), (Lines{"2 variables removed:", "   salary", "   region"}));
  EXPECT_EQ(names(*m.matrix), (std::vector<std::string>{"job", "firm", "city", "score", "memo"}));
  EXPECT_EQ(m.matrix->cellCount(), 3u);
  EXPECT_EQ(m.matrix->categoricalCount(), 4u);
  EXPECT_EQ(m.matrix->quantitativeCount(), 1u);
  EXPECT_EQ(m.matrix->taxonomyCount(), 2);
  EXPECT_EQ(m.matrix->cellTaxonomyCount(), 1);

  // Cells keep their flags and payloads in the remaining columns.
  EXPECT_EQ(m.i1->cells[0].modality->name, "worker");
  EXPECT_EQ(m.i1->cells[1].flags, CELL_MODALITY);
  EXPECT_EQ(m.i2->cells[1].flags, CELL_MODALITY | CELL_NA);
  EXPECT_EQ(m.i2->cells[1].modality->name, "uni");
  EXPECT_EQ(m.i2->cells[2].modality->name, "rome");
  // Every row lost the same columns.
  const Horde& horde = m.matrix->hordes.front();
  for (const Assertion* row : {m.g, m.matrix->reducedAssertions.front().get(), horde.classes.front().get(),
                               horde.reducedClasses.front().get()}) {
    ASSERT_EQ(row->values.size(), 5u) << row->id;
    for (size_t v = 0; v < 5; ++v) EXPECT_EQ(&row->value(v).variable(), &m.matrix->variable(v)) << row->id;
  }
  EXPECT_EQ(m.written(*horde.classes.front(), 2), "(2(1))");
  EXPECT_EQ(m.written(*m.g, 1), "(1(1))");

  // Rules, mothers and daughters name the moved variables.
  ASSERT_EQ(m.matrix->rules.size(), 2u);
  EXPECT_EQ(m.matrix->rules[0]->mother, 0);
  EXPECT_EQ(m.matrix->rules[0]->daughter, 2);
  EXPECT_EQ(m.matrix->rules[1]->daughter, 1);
  EXPECT_EQ(m.matrix->variable(0).firstDaughter, 1);
  EXPECT_EQ(m.matrix->variable(1).nextDaughter, 2);
  EXPECT_EQ(m.matrix->variable(2).nextDaughter, -1);
  EXPECT_EQ(m.matrix->variable(2).motherIndex, 0);
  EXPECT_EQ(m.matrix->variable(1).rule, m.matrix->rules[1].get());
  EXPECT_EQ(test::daughterMarks(*m.matrix), (std::vector<bool>{false, true, true, false, false}));

  const int32_t memo[] = {4};
  ASSERT_EQ(removeVariables(*m.matrix, memo, console), 1);
  EXPECT_EQ(m.matrix->taxonomyCount(), 1);
  EXPECT_EQ(m.matrix->cellTaxonomyCount(), 1);
}

TEST(VariableRemoval, RefusedChoicesChangeNothing) {
  RuledMatrix m;
  struct Case {
    std::vector<int32_t> chosen;
    const char* message;
  };
  const Case cases[] = {
      {{0, 1, 2, 3, 4, 5, 6}, "Impossible to remove all the variables"},
      {{4, 2}, "Variable 'firm' is used by a rule"},
      {{0}, "Variable 'job' is used by a rule"},
      {{1, 7}, "Variable 7 does not exist"},
      {{-1}, "Variable -1 does not exist"},
  };
  ConsoleLog console;
  for (const Case& c : cases) {
    EXPECT_EQ(removeVariables(*m.matrix, c.chosen, console), 0) << c.message;
    EXPECT_EQ(lastError(), c.message);
  }
  EXPECT_EQ(removeVariables(*m.matrix, std::vector<int32_t>{}, console), 1);
  EXPECT_EQ(console.count(), 0u);
  EXPECT_EQ(m.matrix->variableCount(), 7u);
  EXPECT_EQ(m.matrix->cellCount(), 4u);
  EXPECT_EQ(m.matrix->rules[1]->daughter, 2);
  EXPECT_EQ(static_cast<double>(m.i1->cells[1].number), 100.0);
}

TEST(VariableRemoval, NothingIsOfferedWhenEveryAddedVariableIsRuled) {
  test::HandMatrix m;
  m.categorical("a");
  m.categorical("b");
  std::vector<int32_t> offered;
  // As in a joined matrix, a rule may name variables after the cell-holding
  // ones.
  m.matrix->rules.push_back(std::make_unique<DependenceRule>(0, 1, 1));
  EXPECT_EQ(removableVariables(*m.matrix, offered), 0);
  EXPECT_EQ(lastError(), "No variable can be deleted. All are used by rules.");
  EXPECT_TRUE(offered.empty());
}

}  // namespace
}  // namespace velda
