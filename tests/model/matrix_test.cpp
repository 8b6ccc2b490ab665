#include <gtest/gtest.h>

#include <array>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>

#include "common/ConsoleLog.h"
#include "model/CategoricalVariable.h"
#include "model/QuantitativeVariable.h"
#include "model/SymbolicMatrix.h"
#include "model/TaxonomyBuilder.h"
#include "model/VariableRemoval.h"
#include "support/HandMatrix.h"

namespace velda {
namespace {

// A matrix with two cell-holding variables, town (set-valued) and age.
struct SmallMatrix : test::HandMatrix {
  SmallMatrix() {
    categorical("town", 1, 19);
    quantitative("age");
    holdCells();
  }
};

TEST(SymbolicMatrix, AppendedVariablesReachEveryKindOfRow) {
  SmallMatrix m;
  SymbolicMatrix& matrix = *m.matrix;
  Assertion& north = matrix.createAssertion("north");
  auto row = [&](const char* id) {
    auto made = std::make_unique<Assertion>(id, 0);
    for (const auto& variable : matrix.variables()) made->values.push_back(variable->newSymbolicValue());
    return made;
  };
  matrix.reducedAssertions.push_back(row("north"));
  matrix.hordes.resize(1);
  matrix.hordes[0].classes.push_back(row("north_1"));
  matrix.hordes[0].reducedClasses.push_back(row("north_1"));
  std::vector<Assertion*> rows = {&north, matrix.reducedAssertions[0].get(), matrix.hordes[0].classes[0].get(),
                                  matrix.hordes[0].reducedClasses[0].get()};

  matrix.appendVariable(std::make_unique<QuantitativeVariable>("income"));
  std::vector<std::unique_ptr<SymbolicVariable>> added;
  auto job = std::make_unique<CategoricalVariable>("job", 1, 19);
  job->mode = MODE_CARDINALITY;
  added.push_back(std::move(job));
  added.push_back(std::make_unique<QuantitativeVariable>("height"));
  std::vector<std::vector<std::unique_ptr<SymbolicValue>>> values(1);
  for (const auto& variable : added) values[0].push_back(variable->newSymbolicValue());
  CellValue cook;
  ASSERT_EQ(added[0]->addCell("cook", cook), 1);
  ASSERT_EQ(values[0][0]->addCell(cook, 2.0), 1);
  CellValue height;
  height.flags = CELL_NUMBER;
  height.number = 1.5;
  values[0][1]->addCell(height, 1.0);
  matrix.appendVariables(added, values);

  ASSERT_EQ(matrix.variableCount(), 5u);
  for (Assertion* r : rows) {
    ASSERT_EQ(r->values.size(), 5u) << r->id;
    for (size_t v = 2; v < 5; ++v) EXPECT_EQ(&r->value(v).variable(), &matrix.variable(v)) << r->id << v;
  }
  // The assertion takes the values given; the rows made from it copy them,
  // each into a value of its own.
  EXPECT_EQ(m.written(north, 4), "(1.5:1.5)");  // an interval variable
  for (Assertion* r : rows) {
    EXPECT_EQ(m.written(*r, 4), "(1.5:1.5)") << r->id;
    EXPECT_EQ(m.written(*r, 3), "(1(2))") << r->id;
    EXPECT_TRUE(r->value(2).isNull()) << r->id;
  }
  EXPECT_NE(&rows[1]->value(4), &north.value(4));
}

TEST(SymbolicMatrix, MembershipKeepsTheNewestDirectAndPromotesOnUnlink) {
  SmallMatrix m;
  Assertion& north = m.matrix->createAssertion("north");
  Assertion& south = m.matrix->createAssertion("south");
  Assertion& east = m.matrix->createAssertion("east");
  EXPECT_EQ(south.number, 1);
  EXPECT_EQ(south.values.size(), 2u);
  Individual& ann = m.person("ann", {"Lyon", "30"});

  m.matrix->link(ann, north);
  m.matrix->link(ann, south);
  m.matrix->link(ann, east);
  EXPECT_EQ(ann.direct, &east);
  EXPECT_EQ(ann.membershipCount(), 3u);
  std::string order;
  ann.forEachAssertion([&](Assertion* a) { order += a->id + " "; });
  EXPECT_EQ(order, "east south north ");
  EXPECT_TRUE(m.matrix->isMember(ann, north));

  m.matrix->unlink(ann, east);
  EXPECT_EQ(ann.direct, &south);
  m.matrix->unlink(ann, north);
  EXPECT_FALSE(m.matrix->isMember(ann, north));
  EXPECT_TRUE(north.members.empty());
  EXPECT_EQ(south.members.size(), 1u);
  m.matrix->removeIndividual(ann);
  EXPECT_EQ(m.matrix->findIndividual("ann"), nullptr);
  EXPECT_TRUE(south.members.empty());
}

TEST(SymbolicMatrix, AddsMembersWithWeightsAndOnlyOverCellHoldingVariables) {
  SmallMatrix m;
  Assertion& group = m.matrix->createAssertion("g");
  Individual& ann = m.person("ann", {"Lyon", "30"}, 3.0);
  Individual& bob = m.person("bob", {"Nice", nullptr}, 1.0);
  // A variable added later from a query: individuals hold no cell for it.
  m.matrix->appendVariable(std::make_unique<QuantitativeVariable>("income"));
  EXPECT_EQ(group.values.size(), 3u);
  static_cast<CategoricalVariable&>(m.matrix->variable(0)).mode = MODE_CARDINALITY;

  for (Individual* i : {&ann, &bob}) {
    m.matrix->link(*i, group);
    ASSERT_EQ(m.matrix->addMember(group, *i), 1);
  }
  EXPECT_EQ(group.memberCount, 2);
  EXPECT_EQ(m.written(group, 0), "(1(3),2(1))");
  EXPECT_EQ(m.written(group, 1), "(30:30)");
  EXPECT_EQ(group.value(1).nullWeight, 1.0);
  EXPECT_EQ(m.written(group, 2), "NU");
  EXPECT_EQ(m.matrix->categoricalCount(), 1u);
  EXPECT_EQ(m.matrix->quantitativeCount(), 2u);

  ASSERT_EQ(m.matrix->recomputeAssertion(group), 1);
  EXPECT_EQ(group.memberCount, 2);
  EXPECT_EQ(m.written(group, 0), "(1(3),2(1))");
}

// The members' cells reach the values the same, added by finish() per
// individual (with sampling) or by the caller as each member is linked.
TEST(SymbolicMatrix, FinishCompactsTablesAndAccumulatesTheMembers) {
  for (const auto cells : {SymbolicMatrix::MemberCells::ByIndividual, SymbolicMatrix::MemberCells::Added}) {
    SmallMatrix m;
    const auto link = [&](Individual& individual, Assertion& assertion) {
      m.matrix->link(individual, assertion);
      if (cells == SymbolicMatrix::MemberCells::Added) {
        ASSERT_EQ(m.matrix->addMember(assertion, individual), 1);
      }
    };
    Assertion& a = m.matrix->createAssertion("a");
    Assertion& b = m.matrix->createAssertion("b");
    for (const char* id : {"i1", "i2", "i3"}) link(m.person(id, {"Lyon", "1"}), a);
    link(*m.matrix->findIndividual("i3"), b);
    m.matrix->createAssertion("empty");

    ASSERT_EQ(m.matrix->finish(cells), 1);
    EXPECT_TRUE(m.matrix->assertionsIndexed());
    EXPECT_EQ(m.matrix->individuals.bucketCount(), 3u);
    EXPECT_EQ(m.matrix->assertions.bucketCount(), 3u);
    for (const char* id : {"i1", "i2", "i3"}) EXPECT_NE(m.matrix->findIndividual(id), nullptr);
    EXPECT_EQ(m.matrix->findAssertion("b")->memberCount, 1);
    EXPECT_EQ(m.matrix->findAssertion("a")->memberCount, 3);
    EXPECT_EQ(m.written(*m.matrix->findAssertion("a"), 0), "(1(1))");
    auto& town = static_cast<CategoricalVariable&>(m.matrix->variable(0));
    EXPECT_EQ(town.modalities.bucketCount(), 1u);
    EXPECT_EQ(m.written(*m.matrix->findAssertion("empty"), 0), "NU");
  }
}

TEST(SymbolicMatrix, EmptyTablesKeepTheirBucketsAndCountersGrowByHundred) {
  auto matrix = SymbolicMatrix::create();
  ASSERT_EQ(matrix->finish(SymbolicMatrix::MemberCells::Added), 1);
  EXPECT_EQ(matrix->individuals.bucketCount(), SymbolicMatrix::kIndividualBuckets);
  EXPECT_EQ(matrix->assertions.bucketCount(), SymbolicMatrix::kAssertionBuckets);
  EXPECT_EQ(matrix->sampleCounters.size(), 999u);
  matrix->sampleCounter(998) = 4;
  EXPECT_EQ(matrix->sampleCounters.size(), 999u);
  matrix->sampleCounter(999) = 5;
  EXPECT_EQ(matrix->sampleCounters.size(), 1099u);
  EXPECT_EQ(matrix->sampleCounters[998], 4);
  EXPECT_EQ(matrix->highestCounter, 999);
}

struct Counts {
  size_t categorical, cells, mothers;
  int32_t taxonomies, cellTaxonomies;
  std::vector<bool> daughters;
  bool operator==(const Counts&) const = default;
};

Counts counts(const SymbolicMatrix& m) {
  return {m.categoricalCount(), m.cellCount(),         m.motherCandidateCount(),
          m.taxonomyCount(),    m.cellTaxonomyCount(), test::daughterMarks(m)};
}

// A hierarchy built on the variable alone, with no call on the matrix.
void buildTaxonomy(CategoricalVariable& variable, const char* leaf) {
  TaxonomyBuilder builder(variable);
  const std::array<std::optional<std::string_view>, 2> row{leaf, "top"};
  ASSERT_EQ(builder.addRow(row), 1);
  ASSERT_GE(builder.finish(), 1);
}

// The matrix's counts follow its variables through every change, with no
// recount left to the caller: a taxonomy built on a variable, variables
// removed, the variables of two matrices taken into a third; and the cell-holding count cannot change
// under existing individuals' cells.
TEST(MatrixCounters, FollowTheVariablesThroughEveryChange) {
  test::HandMatrix m;
  CategoricalVariable& town = m.categorical("town");
  m.quantitative("age");
  CategoricalVariable& job = m.categorical("job");
  m.holdCells();
  m.categorical("added");
  Individual& i1 = m.person("i1", {"paris", "30", "cook"});
  EXPECT_EQ(counts(*m.matrix), (Counts{3, 3, 2, 0, 0, {false, false, false, false}}));
  EXPECT_FALSE(m.matrix->declareCellVariables(1, 0)) << "i1 holds three cells";
  EXPECT_EQ(m.matrix->cellCount(), 3u);

  buildTaxonomy(town, "paris");
  buildTaxonomy(job, "cook");
  m.matrix->markDaughter(2);
  EXPECT_EQ(counts(*m.matrix), (Counts{3, 3, 2, 2, 2, {false, false, true, false}}));

  ConsoleLog console;
  const int32_t townAndAge[] = {0, 1};
  ASSERT_EQ(removeVariables(*m.matrix, townAndAge, console), 1);
  EXPECT_EQ(counts(*m.matrix), (Counts{2, 1, 1, 1, 1, {true, false}}));
  EXPECT_EQ(i1.cells[0].modality->name, "cook");

  test::HandMatrix other;
  other.categorical("sex");
  other.holdCells();
  auto joined = SymbolicMatrix::create(1, 1);
  joined->takeVariables(*m.matrix, *other.matrix);
  EXPECT_EQ(counts(*joined), (Counts{3, 2, 2, 1, 1, {true, false, false}}));
  EXPECT_EQ(counts(*other.matrix), (Counts{0, 0, 0, 0, 0, {}})) << "the sources keep nothing";

  // A stored mother count already below the columns never wraps around.
  test::HandMatrix low;
  low.categorical("b");
  low.quantitative("x");
  ASSERT_TRUE(low.matrix->declareCellVariables(2, 0));
  low.person("i1", {"q", "1"});
  const int32_t b[] = {0};
  ASSERT_EQ(removeVariables(*low.matrix, b, console), 1);
  EXPECT_EQ(low.matrix->motherCandidateCount(), 0u);
}

}  // namespace
}  // namespace velda
