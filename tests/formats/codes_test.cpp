#include <gtest/gtest.h>

#include <utility>

#include "formats/Codes.h"
#include "formats/SymbolicTextStyle.h"

namespace velda {
namespace {

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
