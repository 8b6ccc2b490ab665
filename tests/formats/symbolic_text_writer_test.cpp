#include <gtest/gtest.h>

#include <array>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "WriterMatrix.h"
#include "common/ConsoleLog.h"
#include "common/LastError.h"
#include "formats/Codes.h"
#include "formats/SymbolicTextStyle.h"
#include "formats/SymbolicTextWriter.h"
#include "model/CategoricalValue.h"
#include "model/Dependence.h"
#include "support/FileText.h"

namespace velda {
namespace {
class WriterTest : public ::testing::Test, protected test::WriterMatrix {};

TEST_F(WriterTest, WritesEveryKindOfValueWithCountsAndRenumbering) {
  const size_t age = quantitative("age", 0);
  const size_t height = quantitative("height", 1);
  const size_t skipped = categorical("skipped", 0);
  const size_t color = categorical("color", 0);
  const size_t sport = categorical("sport", 1, MODE_CARDINALITY);
  matrix->variable(skipped).active = 0;
  matrix->title = "Sports \"2024\"";
  matrix->subtitle = "first\tsecond";

  // Created b, a, c: the table lists a, b, c but the file follows the numbers.
  Assertion& b = matrix->createAssertion("b");
  Assertion& a = matrix->createAssertion("a");
  Assertion& c = matrix->createAssertion("c");
  add(b, age, "30");
  add(b, height, "1.5");
  add(b, height, "1.8");
  add(b, skipped, "x");
  add(b, color, "red");
  add(b, sport, "ski");
  add(b, sport, "foot");
  add(b, sport, "ski");

  add(a, age, nullptr);
  add(a, height, "1.6", 1.0, true);
  add(a, skipped, nullptr);
  add(a, color, "red", 1.0, true);
  add(a, sport, nullptr);

  add(c, age, "12.5");
  add(c, height, "2");
  add(c, skipped, "y");
  add(c, color, "blue");
  add(c, sport, "foot", 2.0);

  // The whole file, written by hand from the layout's rules.
  EXPECT_EQ(write(), test::fixture("formats/every_kind.txt"));
  // The list of assertions by number was built on the way.
  ASSERT_EQ(matrix->orderedAssertions.size(), 3u);
  EXPECT_EQ(matrix->orderedAssertions[0], &b);
}

TEST_F(WriterTest, WritesEachSetValuedModeAndBreaksLongLists) {
  const size_t tags = categorical("tags", 1, MODE_BOOLEAN);
  const size_t share = categorical("share", 1, MODE_PROBABILIST);
  const size_t guess = categorical("guess", 1, MODE_KT_ESTIMATE);
  Assertion& row = matrix->createAssertion("only");
  for (int i = 1; i <= 25; ++i) add(row, tags, std::to_string(i).c_str());
  static_cast<CategoricalValue&>(row.value(tags)).rebuild();
  add(row, share, "p", 2.0);
  add(row, share, "q", 1.0);
  add(row, share, nullptr, 1.0);  // NULL weight stays out of the proportions
  // KT-estimate over three categories, a and c present once each: every
  // category walks the entries up to its own, with zero weights on the way.
  CellValue unused;
  ASSERT_EQ(matrix->variable(guess).addCell("a", unused), 1);
  ASSERT_EQ(matrix->variable(guess).addCell("b", unused), 1);
  add(row, guess, "c");
  add(row, guess, "a");

  const std::string text = write();
  const std::string variables =
      "VARIABLES = (\n"
      "  (1, mult_nominal, \"\", \"AB00\", \"tags\", 0, 0, 25,\n"
      "     ((1, \"AB01\", \"1\", 1 ), \n";
  EXPECT_NE(text.find(variables), std::string::npos) << text;
  EXPECT_NE(text.find("      (25, \"AB25\", \"25\", 1 ))\n  ),\n"
                      "  (2, mult_nominal_Modif, \"\", \"AC00\", \"share\", proba, 0, 0, 2,\n"),
            std::string::npos);
  EXPECT_NE(text.find("  (3, mult_nominal_Modif, \"\", \"AD00\", \"guess\", proba, 0, 0, 3,\n"), std::string::npos);
  const std::string rows =
      "RECTANGLE_MATRIX = (\n"
      "  ((1,2,3,4,5,6,7,8,9,\n"
      "    10,11,12,13,14,15,16,17,18,19,\n"
      "    20,21,22,23,24,25), \n"
      "   (1(0.666667),2(0.333333)), \n"
      "   (1(0.428571),2(0.142857),2(0.142857),3(0.142857),3(0.428571)))\n"
      ")\n";
  EXPECT_NE(text.find(rows), std::string::npos) << text;
}

TEST_F(WriterTest, WritesTaxonomiesAndRulesOfActiveVariablesOnly) {
  const size_t region = categorical("region", 0);
  const size_t hidden = categorical("hidden", 0);
  const size_t size = quantitative("size", 1);
  ASSERT_TRUE(matrix->declareCellVariables(matrix->variableCount(), matrix->categoricalCount()));
  Assertion& a = matrix->createAssertion("a");
  Assertion& b = matrix->createAssertion("b");
  add(a, region, "north");
  add(b, region, "south");
  CellValue unused;
  ASSERT_EQ(matrix->variable(region).addCell("east", unused), 1);
  ASSERT_EQ(matrix->variable(region).addCell("west", unused), 1);
  add(a, hidden, "x");
  add(b, hidden, "y");
  add(a, size, "3");
  add(a, size, "7.5");
  add(b, size, "5", 1.0, true);

  // east above north and south; coast above west; root_ above east and coast.
  taxonomy(region, {{"north", "east"}, {"south", "east"}, {"west", "coast"}});
  taxonomy(hidden, {{"x", "y"}});
  matrix->variable(hidden).active = 0;

  const std::array<int32_t, 1> applicable{0};  // north
  const std::array<int32_t, 2> daughters{static_cast<int32_t>(size), static_cast<int32_t>(hidden)};
  RuleGroup group;
  ASSERT_EQ(makeRuleGroup(*matrix, static_cast<int32_t>(region), applicable, daughters, group), 1);
  // Recorded as applying would, without recomputing the values from members
  // (these assertions have none).
  for (auto& rule : group) matrix->rules.push_back(std::move(rule));

  // coast is made before root_: they are numbered 5 and 6.
  EXPECT_EQ(write(), test::fixture("formats/taxonomy_and_rule.txt"));

  // Without its daughter the rule goes, and so do RULES and its block.
  matrix->variable(size).active = 0;
  const std::string alone = write();
  EXPECT_NE(alone.find("CONTAINS = (FILES, HEADER, INDIVIDUALS, VARIABLES, HIERARCHIE, RECTANGLE_MATRIX),\n"),
            std::string::npos);
  EXPECT_NE(alone.find("rules_nb = 0,\n"), std::string::npos);
  EXPECT_EQ(alone.find("RULES = ("), std::string::npos);
}

TEST_F(WriterTest, BreaksChildListsBeforeTheReaderLineLimit) {
  const size_t many = categorical("many", 0);
  Assertion& a = matrix->createAssertion("a");
  add(a, many, "0");
  CellValue unused;
  for (int i = 1; i < 900; ++i) ASSERT_EQ(matrix->variable(many).addCell(std::to_string(i).c_str(), unused), 1);
  taxonomy(many, {{"0", "top"}, {"1", "other"}});
  // root_ holds the 898 modalities that no row named, then other and top.
  const std::string text = write();
  size_t start = 0;
  size_t longest = 0;
  while (start < text.size()) {
    const size_t end = text.find('\n', start);
    longest = std::max(longest, end - start);
    start = end + 1;
  }
  EXPECT_LE(longest, 2500u);
  // The break comes right after a comma and goes on at the entries' indent.
  const size_t hierarchy = text.find("HIERARCHIE = (");
  const size_t broken = text.find(",\n       ", hierarchy);
  ASSERT_NE(broken, std::string::npos);
  EXPECT_LT(broken, text.find("RECTANGLE_MATRIX = ("));
}

TEST_F(WriterTest, ReducedRowsGiveTheValuesAndTheCounts) {
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

  std::ostringstream out;
  ASSERT_TRUE(IndexAndWriteSymbolicText(out, *matrix, true));
  const std::string text = out.str();
  EXPECT_NE(text.find("  (1, \"AA00\", \"a\"),\n  (2, \"AA01\", \"b\")\n"), std::string::npos);
  EXPECT_NE(text.find("nb_na = 1,\nnb_nu = 0,\n"), std::string::npos);
  EXPECT_NE(text.find("\"age\", 1, 0, 1, 9)"), std::string::npos);
  EXPECT_NE(text.find("RECTANGLE_MATRIX = (\n  ((2:2)),\n  (NA)\n)\n"), std::string::npos) << text;

  // Plain rows count the assertions' own values.
  EXPECT_NE(write(false).find("nb_na = 0,\nnb_nu = 1,\n"), std::string::npos);

  // Reduced rows that no longer match the assertions write nothing.
  matrix->reducedAssertions.pop_back();
  std::ostringstream refused;
  EXPECT_FALSE(WriteSymbolicText(refused, *matrix, true));
  EXPECT_TRUE(refused.str().empty());
}

TEST_F(WriterTest, RefusalsWriteNothingAndAnEmptyMatrixWritesEveryBlock) {
  const size_t age = quantitative("age", 0);
  const std::string text = write();
  EXPECT_NE(text.find("INDIVIDUALS = (\n),\n\nVARIABLES = (\n"), std::string::npos);
  EXPECT_NE(text.find("\"age\", 0, 0, 1.79769e+308, -1.79769e+308)\n),\n\n"), std::string::npos);
  EXPECT_NE(text.find("RECTANGLE_MATRIX = (\n)\n\n)\nEND\n\n"), std::string::npos);

  Assertion& a = matrix->createAssertion("a");
  Assertion& b = matrix->createAssertion("b");
  for (int32_t wrong : {0, 2, -1}) {
    b.number = wrong;  // the same as a's, past the count, negative
    std::ostringstream out;
    EXPECT_FALSE(IndexAndWriteSymbolicText(out, *matrix, false)) << wrong;
    EXPECT_TRUE(out.str().empty());
    EXPECT_EQ(lastError(), "Assertion numbers are not 0 to 1, each once");
  }
  b.number = 1;
  EXPECT_NE(write().find("  (1, \"AA00\", \"a\"),\n  (2, \"AA01\", \"b\")\n"), std::string::npos);
  EXPECT_EQ(matrix->orderedAssertions, (std::vector<Assertion*>{&a, &b}));

  matrix->variable(age).active = 0;
  ConsoleLog console;
  std::ostringstream out;
  clearError();
  EXPECT_FALSE(IndexAndWriteSymbolicText(out, *matrix, false, &console));
  EXPECT_TRUE(out.str().empty());
  EXPECT_EQ(lastError(), "No active variable");
  ASSERT_EQ(console.count(), 1u);
  EXPECT_EQ(*console.lineAt(0), "No active variable");
}

TEST(Codes, LetterPairsSuffixesAndItemCodes) {
  // Letter pairs wrap after 676 numbers.
  const std::pair<int, const char*> pairs[] = {{0, "AA"},  {1, "AB"},   {25, "AZ"},  {26, "BA"},
                                               {27, "BB"}, {675, "ZZ"}, {676, "AA"}, {703, "BB"}};
  for (const auto& [number, code] : pairs) EXPECT_EQ(letterPair(number), code) << number;
  // Decimals below 620 (tens past 9 as letters), then y = x - 620 written
  // as (y / 52) % 62 and y % 52 in base 62.
  const std::pair<int, const char*> suffixes[] = {{0, "00"},   {9, "09"},   {10, "10"},   {61, "61"},   {62, "62"},
                                                  {100, "A0"}, {369, "a9"}, {619, "z9"},  {620, "00"},  {621, "01"},
                                                  {671, "0p"}, {672, "10"}, {3843, "zp"}, {3844, "00"}, {3845, "01"}};
  for (const auto& [number, code] : suffixes) EXPECT_EQ(codeSuffix(number), code) << number;
  EXPECT_EQ(itemCode(0, 0), "AA00");
  EXPECT_EQ(itemCode(27, 10), "BB10");
  EXPECT_EQ(itemCode(27, 620), "BB00");
  EXPECT_EQ(itemCode(2, 3844), "AC00");
}

TEST(Codes, FileTextsLoseQuotesAndControlsAndAreCut) {
  EXPECT_EQ(SymbolicTextStyle::fileText("say \"hi\"\tnow\n"), "say 'hi' now ");
  EXPECT_EQ(SymbolicTextStyle::fileText("caf\xe9"), "caf\xe9");
  const std::string longText(300, 'x');
  EXPECT_EQ(SymbolicTextStyle::fileText(longText), std::string(255, 'x'));
  EXPECT_EQ(SymbolicTextStyle::fileText(longText, 127).size(), 127u);
  EXPECT_EQ(SymbolicTextStyle::fileText(std::string("a\x7f"
                                                    "b\0c",
                                                    5)),
            "a b c");
}

}  // namespace
}  // namespace velda
