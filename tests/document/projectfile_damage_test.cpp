#include <gtest/gtest.h>

#include <array>
#include <limits>

#include "common/LastError.h"
#include "document/ProjectBytes.h"
#include "document/ProjectFileSamples.h"

namespace velda {
namespace {

using test::ProjectBytes;
using test::projectBytes;
using test::projectFromBytes;

constexpr size_t kMagicAndCounts = 10 + 8;
constexpr size_t kHeaderOffset = kMagicAndCounts;

std::string refusal(std::string_view bytes) {
  setError("not read");
  const auto matrix = projectFromBytes(bytes);
  return matrix ? "read" : lastError();
}

void setU16(std::string& bytes, size_t offset, uint16_t value) {
  bytes[offset] = static_cast<char>(value & 0xFF);
  bytes[offset + 1] = static_cast<char>(value >> 8);
}

void setU32(std::string& bytes, size_t offset, uint32_t value) {
  for (size_t i = 0; i < 4; ++i) bytes[offset + i] = static_cast<char>(value >> (8 * i));
}

// Where the assertion g of the small project starts.
size_t assertionG(const std::string& bytes) {
  const size_t at = bytes.find(ProjectBytes().str("g").u32(0).u32(1).bytes());
  EXPECT_NE(at, std::string::npos);
  return at;
}

// The small project where c has a taxonomy (a under the inner node top, both
// under root_: leaves a 0, b 1, nodes top 2, root_ 3) and governs x by the
// rule "x is applicable if c in {a}".
std::unique_ptr<SymbolicMatrix> nodesAndRuleProject() {
  auto matrix = test::smallProject();
  {
    TaxonomyBuilder builder(static_cast<CategoricalVariable&>(matrix->variable(1)));
    EXPECT_EQ(builder.addRow(std::array<std::optional<std::string_view>, 2>{"a", "top"}), 1);
    EXPECT_EQ(builder.finish(), 2);
  }
  settleTaxonomy(*matrix, 1);
  const std::array<int32_t, 1> applicable{0};
  const std::array<int32_t, 1> daughters{0};
  RuleGroup group;
  EXPECT_EQ(makeRuleGroup(*matrix, 1, applicable, daughters, group), 1);
  EXPECT_EQ(applyRule(*matrix, std::move(group)), 1);
  return matrix;
}

TEST(ProjectFileDamage, EveryTruncationFailsWithItsReason) {
  for (const std::string& bytes : {projectBytes(*test::smallProject()), projectBytes(*test::fullProject())}) {
    ASSERT_GT(bytes.size(), kMagicAndCounts);
    ASSERT_EQ(refusal(bytes), "read");
    for (size_t length = 0; length < bytes.size(); ++length) {
      const char* reason = length < kMagicAndCounts ? "Incorrect file type" : "Load failed";
      ASSERT_EQ(refusal(std::string_view(bytes).substr(0, length)), reason) << "cut at " << length;
    }
  }
}

TEST(ProjectFileDamage, OnlyTheExactMagicIsAccepted) {
  const std::string body = projectBytes(*test::smallProject()).substr(10);
  // Empty, without its zero, a wrong last byte, short, lower case, long,
  // and a length far beyond the file, which is never read past the end.
  for (const std::string& magic : {ProjectBytes().u16(0).bytes(), ProjectBytes().u16(7).raw("$KORVA$").bytes(),
                                   ProjectBytes().u16(8).raw("$KORVA$!").bytes(), ProjectBytes().str("$KORVA").bytes(),
                                   ProjectBytes().str("$korva$").bytes(), ProjectBytes().str("$KORVA$$").bytes()})
    EXPECT_EQ(refusal(magic + body), "Incorrect file type") << magic;
  EXPECT_EQ(refusal(ProjectBytes().u16(0xFFFF).raw("$KORVA$").bytes()), "Incorrect file type");
}

TEST(ProjectFileDamage, CountsThatDoNotAddUpAreRefused) {
  const std::string valid = projectBytes(*test::smallProject());
  auto withCounter = [&](size_t counter, uint16_t value) {
    std::string bytes = valid;
    setU16(bytes, kHeaderOffset + 2 * counter, value);
    return bytes;
  };
  EXPECT_EQ(refusal(withCounter(1, 2)), "Load failed");  // 2 + 1 quantitative and qualitative for 2 variables
  EXPECT_EQ(refusal(withCounter(4, 3)), "Load failed");  // P above the variable count
  EXPECT_EQ(refusal(withCounter(3, 2)), "Load failed");  // 2 taxonomies for 1 qualitative variable
  EXPECT_EQ(refusal(withCounter(8, 1)), "Load failed");  // a rule record that is not there

  // Counts far above what the bytes could hold fail before anything is made
  // for them.
  for (size_t offset : {size_t{10}, size_t{14}}) {
    std::string bytes = valid;
    setU32(bytes, offset, 0xFFFFFFFF);
    EXPECT_EQ(refusal(bytes), "Load failed");
  }
  EXPECT_EQ(refusal(withCounter(0, 0xFFFF)), "Load failed");
}

TEST(ProjectFileDamage, InnerNodesAreNeverCellsEntriesOrApplicableModalities) {
  const std::string valid = projectBytes(*nodesAndRuleProject());
  ASSERT_EQ(refusal(valid), "read");
  const size_t g = assertionG(valid);
  // The rule record just before g: mother 1, daughter 0, set {0}, end.
  ASSERT_EQ(valid.substr(g - 8, 8), ProjectBytes().u16(1).u16(0).u16(0).u16(0xFFFF).bytes());
  // g's value of c: after the name, number, member count, the 40 bytes of
  // x, c's entry count and three weights.
  const size_t entry = g + 4 + 4 + 4 + 40 + 2 + 24;
  ASSERT_EQ(valid.substr(entry, 2), ProjectBytes().u16(0).bytes());
  for (size_t offset : {valid.size() - 2, entry, g - 4}) {
    for (uint16_t number : {uint16_t{2}, uint16_t{3}}) {
      std::string bytes = valid;
      setU16(bytes, offset, number);
      EXPECT_EQ(refusal(bytes), "Load failed") << "node " << number << " at " << offset;
    }
  }
}

TEST(ProjectFileDamage, OnlyASetValuedVariableShowsWeights) {
  const std::string valid = projectBytes(*test::smallProject());
  // c: leaves, nodes, then the mode.
  const size_t mode = valid.find(ProjectBytes().str("c").u16(2).u16(0).u16(0).u16(0xFFFF).bytes()) + 4 + 4;
  for (uint16_t shown : {MODE_CARDINALITY, MODE_PROBABILIST, MODE_KT_ESTIMATE}) {
    std::string bytes = valid;
    setU16(bytes, mode, shown);
    EXPECT_EQ(refusal(bytes), "Load failed") << shown;
  }
}

TEST(ProjectFileDamage, ACellWithNoBitSetReadsAsClearedAndAddsNoValue) {
  // i1's two cells, number 2 then modality a, become two bare zero bytes.
  const std::string valid = projectBytes(*test::smallProject());
  const std::string cells = ProjectBytes().u8(2).f64(2).u8(1).u16(0).bytes();
  ASSERT_EQ(valid.substr(valid.size() - cells.size()), cells);
  const std::string cleared = valid.substr(0, valid.size() - cells.size()) + std::string(2, '\0');
  const auto matrix = projectFromBytes(cleared);
  ASSERT_TRUE(matrix) << lastError();
  const Individual* i1 = matrix->findIndividual("i1");
  ASSERT_TRUE(i1);
  EXPECT_EQ(i1->cells[0].flags, 0u);
  EXPECT_EQ(i1->cells[1].flags, 0u);
  EXPECT_EQ(projectBytes(*matrix), cleared);

  // Added again, the cells count their weight and add no number or modality.
  Assertion& g = *matrix->findAssertion("g");
  ASSERT_EQ(matrix->recomputeAssertion(g), 1);
  for (size_t v = 0; v < 2; ++v) {
    EXPECT_FALSE(g.value(v).hasData()) << v;
    EXPECT_EQ(g.value(v).totalWeight, 1.0) << v;
  }
}

TEST(ProjectFileDamage, NumbersThatReferToNothingAreRefused) {
  const std::string valid = projectBytes(*test::smallProject());
  const size_t leaves = valid.find(ProjectBytes().str("b").u16(1).bytes());
  ASSERT_NE(leaves, std::string::npos);
  // The last cell (modality 0 of c) naming modality 2, which does not exist;
  // two leaves of c both numbered 0.
  for (const size_t offset : {valid.size() - 2, leaves + 4}) {
    std::string bytes = valid;
    setU16(bytes, offset, offset == leaves + 4 ? 0 : 2);
    EXPECT_EQ(refusal(bytes), "Load failed") << offset;
  }
  // The membership of i1 (assertion 0) pointing at assertion 1 of 1.
  std::string badMembership = valid;
  setU32(badMembership, valid.size() - (1 + 8 + 1 + 2) - 4 - 4, 1);
  EXPECT_EQ(refusal(badMembership), "Load failed");

  // A non-finite weight.
  std::string infinite = valid;
  const size_t weight = valid.find(ProjectBytes().str("i1").bytes()) + 5;
  for (size_t i = 0; i < 8; ++i)
    infinite[weight + i] = ProjectBytes().f64(std::numeric_limits<double>::infinity()).bytes()[i];
  EXPECT_EQ(refusal(infinite), "Load failed");
}

}  // namespace
}  // namespace velda
