#include <gtest/gtest.h>

#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "common/ConsoleLog.h"
#include "common/LastError.h"
#include "model/CategoricalValue.h"
#include "model/Taxonomy.h"
#include "model/TaxonomyBuilder.h"
#include "support/HandMatrix.h"

namespace velda {
namespace {

using Row = std::vector<std::optional<std::string_view>>;
constexpr std::nullopt_t NUL = std::nullopt;

int buildFrom(CategoricalVariable& variable, std::initializer_list<Row> rows) {
  TaxonomyBuilder builder(variable);
  for (const Row& row : rows)
    if (!builder.addRow(row)) return 0;
  return builder.finish();
}

std::string children(const Modality& node) {
  std::string names;
  for (const Modality* child = node.firstChild; child; child = child->nextSibling) names += child->name + " ";
  return names;
}

std::unique_ptr<CategoricalVariable> withLeaves(std::initializer_list<const char*> names) {
  auto variable = std::make_unique<CategoricalVariable>("kind", 0, 1);
  for (const char* name : names) variable->addModality(name);
  return variable;
}

std::string description(const CategoricalVariable& variable) {
  std::ostringstream out;
  variable.writeDescription(out);
  return out.str();
}

bool isFlat(const CategoricalVariable& variable) {
  if (variable.hasTaxonomy() || variable.nodeCount() != 0) return false;
  for (const Modality& leaf : variable.modalities)
    if (leaf.parent || leaf.firstChild || leaf.nextSibling) return false;
  return true;
}

TEST(TaxonomyBuilder, TopsAreCountedAndHungUnderRootWhenSeveralRemain) {
  auto variable = withLeaves({"a", "b", "c"});
  // c is named by no row: it is a top of its own.
  EXPECT_EQ(buildFrom(*variable, {{"a", "X"}, {"b", "Y"}}), 3);
  ASSERT_TRUE(variable->hasTaxonomy());
  EXPECT_EQ(variable->taxonomyRoot->name, "root_");
  EXPECT_EQ(variable->nodeCount(), 3u);
  EXPECT_EQ(variable->findNode("X")->index, 3);
  EXPECT_EQ(variable->findNode("Y")->index, 4);
  EXPECT_EQ(variable->byIndex(5), variable->taxonomyRoot);
  // Tops in table order (c, then the nodes X, Y), each put in front.
  EXPECT_EQ(children(*variable->taxonomyRoot), "Y X c ");
  EXPECT_EQ(variable->findNode("a")->parent->name, "X");
  EXPECT_EQ(variable->findNode("c")->parent, variable->taxonomyRoot);

  std::ostringstream description;
  variable->writeDescription(description);
  EXPECT_EQ(description.str(),
            "variable kind\n"
            "  nominale {\"X\", \"Y\", \"a\", \"b\", \"c\", \"root_\"}\n"
            "  unique;\n"
            "  taxonomy {\n"
            "    \"X\" = {\"a\"},\n"
            "    \"Y\" = {\"b\"},\n"
            "    \"root_\" = {\"Y\", \"X\", \"c\"}\n"
            "  }\n");

  // One top is the root itself; paths of several columns link upwards.
  auto single = withLeaves({"a", "b", "c"});
  EXPECT_EQ(buildFrom(*single, {{"a", "P", "T"}, {"b", "P"}, {"c", "T"}}), 1);
  EXPECT_EQ(single->taxonomyRoot->name, "T");
  EXPECT_EQ(single->nodeCount(), 2u);
  EXPECT_EQ(children(*single->findNode("P")), "b a ");
}

TEST(TaxonomyBuilder, RefusedRowsKeepThePreviousHierarchy) {
  struct Case {
    std::initializer_list<Row> rows;
    const char* message;
  };
  // The one-line refusals are checked on real queries with the database
  // tests; these are the ones that need longer or odder row sets.
  const Case cases[] = {
      {{{"a", "X"}, {"X", "Y"}, {"Y", "a"}}, "Error at line 3: query generates a cycle\n'Y' is on the path of 'a'"},
      {{{"a", "X", "Y"}, {"b", "X", "Z"}},
       "Error at line 2: definition of parent of 'X' differs from its previous definition"},
      {{{"a", "X", "Y"}, {"b", "Y", "X"}}, "Error at line 2: query generates a cycle\n'Y' is on the path of 'X'"},
      {{{NUL, "X"}}, "Error at line 1: column 0 is null"},
      {{{"X", "Y"}}, "No modalities of initial domain are covered by the query"},
      {{}, "No modalities of initial domain are covered by the query"},
  };
  for (const Case& c : cases) {
    auto variable = withLeaves({"a", "b", "c"});
    ASSERT_EQ(buildFrom(*variable, {{"a", "old"}, {"b", "old"}, {"c", "old"}}), 1);
    const std::string before = description(*variable);
    clearError();
    EXPECT_EQ(buildFrom(*variable, c.rows), 0) << c.message;
    EXPECT_EQ(lastError(), c.message);
    EXPECT_EQ(description(*variable), before) << c.message;
    EXPECT_EQ(variable->byIndex(3), variable->findNode("old"));
  }
}

TEST(TaxonomyBuilder, RepeatedRowsAreAcceptedOnceAndFailuresStick) {
  auto variable = withLeaves({"a", "b", "c"});
  EXPECT_EQ(buildFrom(*variable, {{"a", "X"}, {"a", "X"}, {"b", "X"}, {"c", "X"}}), 1);
  EXPECT_EQ(children(*variable->findNode("X")), "c b a ");

  TaxonomyBuilder builder(*variable);
  EXPECT_TRUE(isFlat(*variable));
  EXPECT_EQ(builder.addRow(Row{"a", "a"}), 0);
  EXPECT_EQ(builder.addRow(Row{"a", "X"}), 0);
  EXPECT_EQ(builder.finish(), 0);
  EXPECT_EQ(children(*variable->findNode("X")), "c b a ");

  // A builder dropped before finishing puts the previous hierarchy back too.
  {
    TaxonomyBuilder unfinished(*variable);
    ASSERT_EQ(unfinished.addRow(Row{"a", "Y"}), 1);
  }
  EXPECT_EQ(variable->findNode("Y"), nullptr);
  EXPECT_EQ(variable->taxonomyRoot, variable->findNode("X"));
}

TEST(TaxonomyBuilder, ANewTaxonomyStartsFromTheUsualNodeBuckets) {
  // As after Open, which sizes the node table to the nodes it read.
  auto variable = withLeaves({"a", "b"});
  variable->nodes.rebuild(1);
  EXPECT_EQ(buildFrom(*variable, {{"a", "X"}, {"b", "Y"}}), 2);
  EXPECT_EQ(variable->nodes.bucketCount(), CategoricalVariable::kNodeTableBuckets);
  // X, Y and root_ hash to 88, 89 and 839003: buckets 8, 9 and 3 of 10.
  std::string order;
  for (const Modality& node : variable->nodes) order += node.name + " ";
  EXPECT_EQ(order, "root_ X Y ");
}

TEST(TaxonomyBuilder, TheRootIsMadeEvenWhenTheNameIsTaken) {
  // A leaf named root_ is one of the tops under the new root of that name.
  auto named = withLeaves({"a", "root_"});
  EXPECT_EQ(buildFrom(*named, {{"a", "X"}}), 2);
  ASSERT_TRUE(named->hasTaxonomy());
  EXPECT_EQ(named->taxonomyRoot->index, 3);
  EXPECT_EQ(children(*named->taxonomyRoot), "X root_ ");
  EXPECT_EQ(named->findNode("root_")->index, 1);  // the name finds the leaf

  // An inner node named root_ by the query, with another top beside it.
  auto inner = withLeaves({"a", "b"});
  EXPECT_EQ(buildFrom(*inner, {{"a", "root_"}}), 2);
  EXPECT_EQ(inner->nodeCount(), 2u);
  EXPECT_EQ(inner->taxonomyRoot->index, 3);
  EXPECT_EQ(children(*inner->taxonomyRoot), "root_ b ");
  EXPECT_EQ(inner->findNode("root_")->index, 2);
  EXPECT_EQ(inner->findNode("a")->parent, inner->byIndex(2));
}

// kind: a, b, c, d with the hierarchy root_ -> {T -> {b -> {M -> {a}}, c}, d}.
struct WeightedMatrix : test::HandMatrix {
  WeightedMatrix() {
    CategoricalVariable& kind = categorical("kind", 1);
    kind.mode = MODE_CARDINALITY;
    holdCells();
    Individual* p1 = &person("p1", {"a"}, 2);
    Individual* p2 = &person("p2", {"b"}, 3);
    Individual* p3 = &person("p3", {"c"}, 1);
    Individual* p4 = &person("p4", {"d"}, 4);
    all = &group("all", {p1, p2, p3, p4});
    onlyA = &group("onlyA", {p1});
    bAndC = &group("bAndC", {p2, p3});
    matrix->reducedAssertions.push_back(row("reduced", {p1, p2}));
    matrix->hordes.emplace_back();
    matrix->hordes.back().classes.push_back(row("class", {p1, p4}));
    matrix->hordes.back().reducedClasses.push_back(row("reducedClass", {p2, p3}));
  }
  int buildKind() {
    auto& kind = static_cast<CategoricalVariable&>(matrix->variable(0));
    const int covering = buildFrom(kind, {{"a", "M", "b", "T"}, {"c", "T"}});
    settleTaxonomy(*matrix, 0);
    return covering;
  }
  Assertion* all;
  Assertion* onlyA;
  Assertion* bAndC;
};

TEST(Taxonomy, SubtreeWeightsFollowTheAncestorRuleAndRemovalRestoresFlatValues) {
  WeightedMatrix m;
  ASSERT_EQ(m.buildKind(), 2);
  EXPECT_EQ(m.matrix->taxonomyCount(), 1);
  EXPECT_EQ(m.matrix->cellTaxonomyCount(), 1);
  // b holds its own weight and a's (two levels down); a, under b, holds 0.
  EXPECT_EQ(m.written(*m.all, 0), "(1(0),2(5),3(1),4(4))");
  EXPECT_EQ(m.written(*m.onlyA, 0), "(1(2))");
  EXPECT_EQ(m.written(*m.bAndC, 0), "(2(3),3(1))");
  // The other rows of the matrix follow the same rule.
  Horde& horde = m.matrix->hordes.front();
  EXPECT_EQ(m.written(*m.matrix->reducedAssertions.front(), 0), "(1(0),2(5))");
  EXPECT_EQ(m.written(*horde.classes.front(), 0), "(1(2),4(4))");
  EXPECT_EQ(m.written(*horde.reducedClasses.front(), 0), "(2(3),3(1))");

  ConsoleLog console;
  const int32_t chosen[] = {0};
  ASSERT_EQ(removeTaxonomies(*m.matrix, chosen, console), 1);
  EXPECT_EQ(console.lines(), (std::deque<std::string>{"1 taxonomies removed:", "   kind"}));
  auto& kind = static_cast<CategoricalVariable&>(m.matrix->variable(0));
  EXPECT_TRUE(isFlat(kind));
  EXPECT_EQ(m.matrix->taxonomyCount(), 0);
  EXPECT_EQ(m.matrix->cellTaxonomyCount(), 0);
  EXPECT_EQ(m.written(*m.all, 0), "(1(2),2(3),3(1),4(4))");
  EXPECT_EQ(m.written(*m.matrix->reducedAssertions.front(), 0), "(1(2),2(3))");
  for (const ValueEntry& entry : static_cast<CategoricalValue&>(m.all->value(0)).entries)
    EXPECT_EQ(entry.subtreeWeight, 0.0);

  // Built again, the inner nodes take the indexes after the leaves again.
  ASSERT_EQ(m.buildKind(), 2);
  EXPECT_EQ(kind.findNode("M")->index, 4);
  EXPECT_EQ(kind.taxonomyRoot->index, 6);
  EXPECT_EQ(m.written(*m.all, 0), "(1(0),2(5),3(1),4(4))");
}

TEST(Taxonomy, CountersFollowTheVariablesThatHaveOne) {
  test::HandMatrix m;
  m.categorical("town");
  m.holdCells();
  CategoricalVariable& kind = m.categorical("kind");  // added: no cells
  CategoricalVariable& town = static_cast<CategoricalVariable&>(m.matrix->variable(0));
  for (const char* name : {"x", "y"}) {
    town.addModality(name);
    kind.addModality(name);
  }
  ASSERT_EQ(buildFrom(kind, {{"x", "K"}, {"y", "K"}}), 1);
  settleTaxonomy(*m.matrix, 1);
  EXPECT_EQ(m.matrix->taxonomyCount(), 1);
  EXPECT_EQ(m.matrix->cellTaxonomyCount(), 0);
  ASSERT_EQ(buildFrom(town, {{"x", "T"}}), 2);
  settleTaxonomy(*m.matrix, 0);
  EXPECT_EQ(m.matrix->taxonomyCount(), 2);
  EXPECT_EQ(m.matrix->cellTaxonomyCount(), 1);
  EXPECT_EQ(taxonomyVariables(*m.matrix), (std::vector<int32_t>{0, 1}));

  // A failed rebuild keeps town's hierarchy; once it is removed the
  // counters say so.
  EXPECT_EQ(buildFrom(town, {{"x", "x"}}), 0);
  EXPECT_TRUE(town.hasTaxonomy());
  removeTaxonomy(*m.matrix, 0);
  EXPECT_EQ(m.matrix->taxonomyCount(), 1);
  EXPECT_EQ(m.matrix->cellTaxonomyCount(), 0);

  ConsoleLog console;
  const int32_t chosen[] = {1, 0};
  EXPECT_EQ(removeTaxonomies(*m.matrix, chosen, console), 0);
  EXPECT_EQ(lastError(), "Variable 'town' has no taxonomy");
  EXPECT_EQ(console.count(), 0u);
  EXPECT_TRUE(kind.hasTaxonomy());

  printTaxonomyCoverage(console, kind, 3);
  EXPECT_EQ(*console.lineAt(0), "taxonomy variable 'kind': initial domain is covered by 3 nodes");
}

}  // namespace
}  // namespace velda
