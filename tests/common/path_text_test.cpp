#include <gtest/gtest.h>

#include <string>

#include "common/PathText.h"

namespace velda {
namespace {

TEST(PathForDisplay, GivesTheLatin1FormOfUtf8NamesAndKeepsOtherBytes) {
  const struct {
    std::string path;
    std::string shown;
  } cases[] = {
      {"/tmp/plain.gaj", "/tmp/plain.gaj"},
      {"/home/u/T\xc3\xa9l\xc3\xa9"
       "chargements/\xc3\xa9t\xc3\xa9.gaj",
       "/home/u/T\xe9l\xe9"
       "chargements/\xe9t\xe9.gaj"},
      {"\xc3\xbf\xc2\xa0", "\xff\xa0"},  // the ends of Latin-1
      {"\xc5\x9c"
       "ance \xe6\x97\xa5 \xf0\x9f\x93\x8a",
       "?ance ? ?"},                         // beyond Latin-1
      {"\xe9t\xe9.gaj", "\xe9t\xe9.gaj"},    // Latin-1 bytes: not UTF-8
      {"a\xc0\xafz", "a\xc0\xafz"},          // overlong '/'
      {"a\xed\xa0\x80z", "a\xed\xa0\x80z"},  // a surrogate
      {"\xc3\xa9t\xc3", "\xc3\xa9t\xc3"},    // cut at the end
      {"\xc3\xa9\xe9", "\xc3\xa9\xe9"},      // mixed: shown as bytes
  };
  for (const auto& c : cases) EXPECT_EQ(pathForDisplay(c.path), c.shown) << c.path;
}

}  // namespace
}  // namespace velda
