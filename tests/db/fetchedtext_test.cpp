#include <gtest/gtest.h>

#include <string>

#include "db/extraction/FetchedText.h"

namespace velda {
namespace {

std::string decoded(std::string bytes, bool cut = false) {
  bytes.push_back('\0');
  const size_t length = decodeFetchedText(bytes.data(), bytes.size() - 1, cut);
  EXPECT_EQ(bytes[length], '\0');
  return bytes.substr(0, length);
}

std::string trimmed(std::string text) {
  text.push_back('\0');
  return text.substr(0, trimFetchedText(text.data(), text.size() - 1));
}

TEST(FetchedText, ValidUtf8BecomesLatin1) {
  EXPECT_EQ(decoded("plain ascii"), "plain ascii");
  EXPECT_EQ(decoded(""), "");
  EXPECT_EQ(decoded("caf\xC3\xA9 \xC2\xB0"), "caf\xE9 \xB0");
  EXPECT_EQ(decoded("\xC3\xBF"), "\xFF");                              // U+00FF, the last Latin-1 character
  EXPECT_EQ(decoded("\xC4\x80"), "?");                                 // U+0100, the first one beyond
  EXPECT_EQ(decoded("5\xE2\x82\xAC et \xF0\x9F\x98\x80"), "5? et ?");  // euro sign, emoji
}

TEST(FetchedText, AnythingElseStaysLatin1) {
  EXPECT_EQ(decoded("caf\xE9"), "caf\xE9");
  EXPECT_EQ(decoded("\xC3\xA9t\xE9"), "\xC3\xA9t\xE9");        // one bad byte spoils the whole value
  EXPECT_EQ(decoded("\xC0\xAF"), "\xC0\xAF");                  // overlong form of '/'
  EXPECT_EQ(decoded("\xED\xA0\x80"), "\xED\xA0\x80");          // surrogate
  EXPECT_EQ(decoded("\xF4\x90\x80\x80"), "\xF4\x90\x80\x80");  // past U+10FFFF
  EXPECT_EQ(decoded("ab\xC3"), "ab\xC3");                      // incomplete, and not cut
}

TEST(FetchedText, ACutValueDropsOnlyItsIncompleteLastCharacter) {
  EXPECT_EQ(decoded("ab\xC3", true), "ab");
  EXPECT_EQ(decoded("ab\xE2\x82", true), "ab");
  EXPECT_EQ(decoded("ab\xC3\xA9", true), "ab\xE9");
  // A lone Latin-1 letter at the very end of a cut value cannot be told from
  // the start of a UTF-8 character: it goes like one.
  EXPECT_EQ(decoded("ab\xE9", true), "ab");
  EXPECT_EQ(decoded("\xE9t\xE9", true), "\xE9t\xE9");                // Latin-1 elsewhere keeps it
  EXPECT_EQ(decoded("\xC3\xA9\xC3\xC3", true), "\xC3\xA9\xC3\xC3");  // broken before the end
}

TEST(FetchedText, TrimsOnlyBlankLineFeedTabFormFeedAndBackspace) {
  EXPECT_EQ(trimmed("  abc  "), "abc");
  EXPECT_EQ(trimmed(" \n\t\f\ba b\b\f\t\n "), "a b");
  EXPECT_EQ(trimmed("\rabc\v"), "\rabc\v");
  EXPECT_EQ(trimmed(" \r "), "\r");
  EXPECT_EQ(trimmed("    "), "");
  EXPECT_EQ(trimmed(""), "");
  EXPECT_EQ(trimmed("x"), "x");
}

}  // namespace
}  // namespace velda
