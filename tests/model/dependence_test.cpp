#include <gtest/gtest.h>

#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "common/ConsoleLog.h"
#include "common/Format.h"
#include "common/LastError.h"
#include "model/Dependence.h"
#include "model/Taxonomy.h"
#include "model/TaxonomyBuilder.h"
#include "support/HandMatrix.h"

namespace velda {
namespace {

using Lines = std::deque<std::string>;

std::string described(const SymbolicMatrix& matrix, const DependenceRule& rule) {
  std::ostringstream out;
  describeRule(matrix, rule, out);
  return out.str();
}

std::string fileForm(const SymbolicMatrix& matrix, const DependenceRule& rule, int mother, int daughter) {
  std::ostringstream out;
  writeRule(matrix, rule, out, mother, daughter);
  return out.str();
}

// job (mother), salary and firm (daughters), note (added, holds no cells).
struct JobMatrix : test::HandMatrix {
  JobMatrix() {
    categorical("job", 1);
    quantitative("salary");
    categorical("firm", 1);
    holdCells();
    categorical("note");
    i1 = &person("i1", {"worker", "100", "acme"});
    i2 = &person("i2", {"student", nullptr, "uni"});
    i3 = &person("i3", {nullptr, "50", "bar"});
    i4 = &person("i4", {"retired", "20", nullptr});
    g1 = &group("g1", {i1, i2});
    g2 = &group("g2", {i3, i4});
  }
  RuleGroup workersOnly() {
    RuleGroup rules;
    const int32_t applicable[] = {0};  // worker
    const int32_t daughters[] = {1, 2};
    EXPECT_EQ(makeRuleGroup(*matrix, 0, applicable, daughters, rules), 1) << lastError();
    return rules;
  }
  Individual *i1, *i2, *i3, *i4;
  Assertion *g1, *g2;
};

TEST(Dependence, PreviewCountsOnlyValuesThatChange) {
  JobMatrix m;
  const RuleGroup rules = m.workersOnly();
  ConsoleLog console;
  EXPECT_EQ(previewRule(*m.matrix, console, rules), 0);
  // i2's salary and i4's firm are NULL already: not counted.
  EXPECT_EQ(console.lines(), (Lines{"i2: variable 'firm': value 'uni' will be replaced by NA",
                                    "i3: variable 'salary': value '50.00' will be replaced by NA",
                                    "i3: variable 'firm': value 'bar' will be replaced by NA",
                                    "i4: variable 'salary': value '20.00' will be replaced by NA",
                                    "   4 values will be replaced by NA"}));
  // The preview changes nothing.
  EXPECT_EQ(m.i3->cells[1].flags, CELL_NUMBER);
  EXPECT_TRUE(m.matrix->rules.empty());
}

TEST(Dependence, ApplyingMarksNAKeepsPayloadsAndRecomputesDaughters) {
  JobMatrix m;
  auto& firm = static_cast<CategoricalVariable&>(m.matrix->variable(2));
  {
    const std::vector<std::optional<std::string_view>> row = {"acme", "business"};
    TaxonomyBuilder builder(firm);
    ASSERT_EQ(builder.addRow(row), 1);
    ASSERT_EQ(builder.finish(), 3);
    settleTaxonomy(*m.matrix, 2);
  }
  EXPECT_EQ(m.written(*m.g1, 2), "(1(0.5),2(0.5))");
  EXPECT_EQ(m.written(*m.g2, 1), "(20:50)");

  RuleGroup rules = m.workersOnly();
  const DependenceRule* salaryRule = rules[0].get();
  const DependenceRule* firmRule = rules[1].get();
  ASSERT_EQ(applyRule(*m.matrix, std::move(rules)), 1);

  // NULL gives way to NA; the kind bit and the payload stay.
  EXPECT_EQ(m.i2->cells[1].flags, CELL_NUMBER | CELL_NA);
  EXPECT_EQ(m.i2->cells[2].flags, CELL_MODALITY | CELL_NA);
  EXPECT_EQ(m.i2->cells[2].modality->name, "uni");
  EXPECT_EQ(m.i3->cells[1].flags, CELL_NUMBER | CELL_NA);
  EXPECT_EQ(static_cast<double>(m.i3->cells[1].number), 50.0);
  EXPECT_EQ(m.i4->cells[2].flags, CELL_MODALITY | CELL_NA);
  EXPECT_TRUE(m.i4->cells[2].isNA());
  EXPECT_EQ(cellText(m.i4->cells[2]), "NA");
  // The worker and every mother cell are left alone.
  EXPECT_EQ(m.i1->cells[1].flags, CELL_NUMBER);
  EXPECT_EQ(m.i1->cells[2].flags, CELL_MODALITY);
  EXPECT_EQ(m.i3->cells[0].flags, CELL_MODALITY | CELL_NULL);

  // Daughters' values now read the NA cells (subtree weights included).
  EXPECT_EQ(m.written(*m.g1, 1), "(100:100)");
  EXPECT_EQ(m.written(*m.g2, 1), "NA");
  EXPECT_EQ(m.written(*m.g1, 2), "(1(1))");
  EXPECT_EQ(m.written(*m.g2, 2), "NA");
  EXPECT_EQ(m.written(*m.g2, 0), "(3(1))");
  EXPECT_EQ(m.g1->memberCount, 2);

  // Rules, daughters' list (newest first) and marks.
  ASSERT_EQ(m.matrix->rules.size(), 2u);
  EXPECT_EQ(m.matrix->rules[0].get(), salaryRule);
  EXPECT_EQ(salaryRule->next, firmRule);
  EXPECT_EQ(m.matrix->variable(0).firstDaughter, 2);
  EXPECT_EQ(m.matrix->variable(2).nextDaughter, 1);
  EXPECT_EQ(m.matrix->variable(1).nextDaughter, -1);
  EXPECT_EQ(m.matrix->variable(1).motherIndex, 0);
  EXPECT_EQ(m.matrix->variable(2).rule, firmRule);
  EXPECT_EQ(test::daughterMarks(*m.matrix), (std::vector<bool>{false, true, true, false}));
  EXPECT_EQ(described(*m.matrix, *firmRule), "firm is applicable if job in {\"worker\"}");
  EXPECT_EQ(m.matrix->taxonomyCount(), 1);
}

TEST(Dependence, ChoicesAreChecked) {
  JobMatrix m;
  struct Case {
    int32_t mother;
    std::vector<int32_t> applicable, daughters;
    const char* message;
  };
  const Case cases[] = {
      {-1, {0}, {1}, "No mother variable selected"},
      {0, {}, {1}, "No modalities selected"},
      {0, {0}, {}, "No daughter variables selected"},
      {1, {0}, {2}, "Variable 'salary' can not be a mother"},
      {3, {0}, {2}, "Variable 'note' can not be a mother"},
      {0, {7}, {1}, "Modality 7 of 'job' does not exist"},
      {0, {0}, {0}, "Variable 'job' can not be a daughter of 'job'"},
      {0, {0}, {1, 3}, "Variable 'note' can not be a daughter of 'job'"},
      {0, {0}, {9}, "Variable 9 does not exist"},
  };
  for (const Case& c : cases) {
    RuleGroup rules;
    EXPECT_EQ(makeRuleGroup(*m.matrix, c.mother, c.applicable, c.daughters, rules), 0) << c.message;
    EXPECT_EQ(lastError(), c.message);
    EXPECT_TRUE(rules.empty());
  }

  // Repeated choices count once.
  RuleGroup rules;
  const int32_t applicable[] = {0, 1, 0};
  const int32_t daughters[] = {2, 2};
  ASSERT_EQ(makeRuleGroup(*m.matrix, 0, applicable, daughters, rules), 1);
  ASSERT_EQ(rules.size(), 1u);
  EXPECT_EQ(rules[0]->applicable.size(), 2u);
  ASSERT_EQ(applyRule(*m.matrix, std::move(rules)), 1);

  // firm is now a daughter of job: not a daughter again, and job, its
  // ancestor, cannot become firm's daughter.
  EXPECT_FALSE(canBeDaughter(*m.matrix, 0, 2));
  EXPECT_FALSE(canBeDaughter(*m.matrix, 2, 0));
  EXPECT_TRUE(canBeDaughter(*m.matrix, 2, 1));
  EXPECT_EQ(m.matrix->motherCandidateCount(), 2u);

  // A group made by hand that names the added variable is refused whole.
  RuleGroup handMade;
  handMade.push_back(std::make_unique<DependenceRule>(0, 3, 1));
  handMade.front()->applicable.insert(0);
  ConsoleLog console;
  EXPECT_EQ(previewRule(*m.matrix, console, handMade), 1);
  EXPECT_EQ(applyRule(*m.matrix, std::move(handMade)), 0);
  EXPECT_EQ(lastError(), "Invalid dependence rule");
  EXPECT_EQ(m.matrix->rules.size(), 1u);
  EXPECT_EQ(m.matrix->variable(3).motherIndex, -1);
}

// n individuals whose mother is NULL and whose daughter holds a value, plus
// three that change nothing: one applicable, one whose daughter is NULL and
// one whose daughter is NA already.
std::deque<std::string> previewOf(int n, int expected = 0) {
  test::HandMatrix m;
  m.categorical("m", 1);
  m.categorical("d", 1);
  m.holdCells();
  m.person("in", {"yes", "kept"});
  for (int i = 1; i <= n; ++i) {
    const std::string id = format("p%02d", i);
    const std::string value = format("v%02d", i);
    m.person(id.c_str(), {nullptr, value.c_str()});
    if (i == 15) m.person("null", {"no", nullptr});
  }
  m.person("na", {nullptr, "w"}).cells[1].flags |= CELL_NA;
  RuleGroup rules;
  const int32_t applicable[] = {0};
  const int32_t daughters[] = {1};
  EXPECT_EQ(makeRuleGroup(*m.matrix, 0, applicable, daughters, rules), 1);
  ConsoleLog console;
  EXPECT_EQ(previewRule(*m.matrix, console, rules), expected);
  return console.lines();
}

TEST(Dependence, PreviewListsThirtyValuesAtMost) {
  const Lines thirty = previewOf(30);
  ASSERT_EQ(thirty.size(), 31u);
  EXPECT_EQ(thirty[0], "p01: variable 'd': value 'v01' will be replaced by NA");
  EXPECT_EQ(thirty[29], "p30: variable 'd': value 'v30' will be replaced by NA");
  EXPECT_EQ(thirty[30], "   30 values will be replaced by NA");

  const Lines more = previewOf(31);
  ASSERT_EQ(more.size(), 32u);
  EXPECT_EQ(more[29], "p30: variable 'd': value 'v30' will be replaced by NA");
  EXPECT_EQ(more[30], "...");
  EXPECT_EQ(more[31], "   31 values will be replaced by NA");

  // Nothing to change: no line, and 1.
  EXPECT_TRUE(previewOf(0, 1).empty());
}

TEST(Dependence, FileFormListsNonApplicableModalitiesInTableOrderUpToTheSetSize) {
  test::HandMatrix m;
  // Two buckets: the table walks b, d (even codes), then a, c, e.
  CategoricalVariable& letters = m.categorical("letters", 0, 2);
  for (const char* name : {"a", "b", "c", "d", "e"}) letters.addModality(name);
  m.categorical("d");
  m.holdCells();
  const int32_t daughters[] = {1};
  auto rule = [&](std::vector<int32_t> applicable) {
    RuleGroup rules;
    EXPECT_EQ(makeRuleGroup(*m.matrix, 0, applicable, daughters, rules), 1);
    return std::move(rules.front());
  };
  EXPECT_EQ(fileForm(*m.matrix, *rule({1}), 4, 7), "  ((4 = (4))  (7 = NA))");
  EXPECT_EQ(fileForm(*m.matrix, *rule({0, 4}), 4, 7), "  ((4 = (2,4))  (7 = NA))");
  EXPECT_EQ(fileForm(*m.matrix, *rule({0, 1, 2, 3, 4}), 1, 2), "  ((1 = ())  (2 = NA))");
  EXPECT_EQ(described(*m.matrix, *rule({4, 0})), "d is applicable if letters in {\"a\", \"e\"}");
}

}  // namespace
}  // namespace velda
