#include <gtest/gtest.h>

#include "formats/Codes.h"
#include "formats/SymbolicTextStyle.h"

namespace velda {
namespace {

TEST(Codes, LetterPairsWrapAfter676Numbers) {
  EXPECT_EQ(letterPair(0), "AA");
  EXPECT_EQ(letterPair(1), "AB");
  EXPECT_EQ(letterPair(25), "AZ");
  EXPECT_EQ(letterPair(26), "BA");
  EXPECT_EQ(letterPair(27), "BB");
  EXPECT_EQ(letterPair(675), "ZZ");
  EXPECT_EQ(letterPair(676), "AA");
  EXPECT_EQ(letterPair(703), "BB");
}

TEST(Codes, SuffixesUseDecimalsBelow620ThenBase62By52) {
  EXPECT_EQ(codeSuffix(0), "00");
  EXPECT_EQ(codeSuffix(9), "09");
  EXPECT_EQ(codeSuffix(10), "10");
  EXPECT_EQ(codeSuffix(61), "61");
  EXPECT_EQ(codeSuffix(62), "62");
  EXPECT_EQ(codeSuffix(100), "A0");
  EXPECT_EQ(codeSuffix(369), "a9");
  EXPECT_EQ(codeSuffix(619), "z9");
  // Second range: y = x - 620, (y / 52) % 62 then y % 52.
  EXPECT_EQ(codeSuffix(620), "00");
  EXPECT_EQ(codeSuffix(621), "01");
  EXPECT_EQ(codeSuffix(671), "0p");
  EXPECT_EQ(codeSuffix(672), "10");
  EXPECT_EQ(codeSuffix(3843), "zp");
  EXPECT_EQ(codeSuffix(3844), "00");
  EXPECT_EQ(codeSuffix(3845), "01");
}

TEST(Codes, ItemCodesJoinLettersAndSuffix) {
  EXPECT_EQ(itemCode(0, 0), "AA00");
  EXPECT_EQ(itemCode(27, 0), "BB00");
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
