#include <gtest/gtest.h>

#include <array>
#include <optional>
#include <string_view>

#include "common/ConsoleLog.h"
#include "model/TaxonomyBuilder.h"
#include "model/VariableRemoval.h"
#include "support/HandMatrix.h"

namespace velda {
namespace {

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
}

}  // namespace
}  // namespace velda
