// velda-cli in a UTF-8 terminal: arguments arrive in UTF-8 and become the
// program's Latin-1, what it prints goes back to UTF-8, files stay Latin-1.
#include <gtest/gtest.h>

#include "app/CliRun.h"
#include "support/SqliteDatabase.h"
#include "support/TempDir.h"

namespace velda::test {
namespace {

// The database holds its texts in UTF-8, as SQLite does.
const char* kRegionsSql =
    "CREATE TABLE people (id integer, town varchar(20), region varchar(30), income real);"
    "INSERT INTO people VALUES (1, 'Paris', '\xc3\x8ele-de-France', 1000), (2, 'Cr\xc3\xa9teil', "
    "'\xc3\x8ele-de-France', 900), (3, 'Lyon', 'Rh\xc3\xb4ne', 800), (4, 'Lyon', 'Rh\xc3\xb4ne', 700);";

bool contains(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

TEST(CliCharset, Utf8ArgumentsMatchLatin1NamesAndTheConsoleSpeaksUtf8) {
  SqliteDatabase database(kRegionsSql);
  TempDir dir;
  const CliResult result = runCli(
      chain({{"connect", database.connectionString()},
             {"new", "--query", "select id, town, region, income from people"},
             {"dependence", "--mother", "region", "--applicable", "\xc3\x8ele-de-France", "--daughters", "income",
              "--yes"},
             {"save", "regions.gaj"},
             {"export", "regions.kvf", "--title", "R\xc3\xa9gions", "--subtitle", "Sous-titre \xc3\xa9t\xc3\xa9"},
             {"export", "regions.xml"}}),
      dir.path(), "C.UTF-8");
  ASSERT_EQ(result.status, 0) << result.err;
  EXPECT_TRUE(contains(result.out, "  income is applicable if region in {\"\xc3\x8ele-de-France\"}\n")) << result.out;
  EXPECT_FALSE(contains(result.out, "\xce")) << "a Latin-1 byte reached the UTF-8 console";

  const std::string project = readFile(dir.file("regions.gaj"));
  EXPECT_TRUE(contains(project, std::string("\xcele-de-France") + '\0'));
  EXPECT_TRUE(contains(project, std::string("Rh\xf4ne") + '\0'));
  EXPECT_FALSE(contains(project, "\xc3"));
  const std::string kvf = readFile(dir.file("regions.kvf"));
  EXPECT_TRUE(contains(kvf, "\"R\xe9gions\""));
  EXPECT_TRUE(contains(kvf, "\"Sous-titre \xe9t\xe9\""));
  EXPECT_FALSE(contains(kvf, "\xc3"));
  // The XML writes each Latin-1 character as one reference, never the two
  // bytes of its UTF-8 form.
  const std::string xml = readFile(dir.file("regions.xml"));
  EXPECT_TRUE(contains(xml, "sub_title = \"Sous-titre &#"));
  EXPECT_FALSE(contains(xml, "&#195;"));

  // Tables printed from Latin-1 files arrive in UTF-8 as well.
  const CliResult view = runCli({"open", "regions.gaj", "then", "view", "assertions"}, dir.path(), "C.UTF-8");
  ASSERT_EQ(view.status, 0) << view.err;
  EXPECT_TRUE(contains(view.out, "Cr\xc3\xa9teil\t")) << view.out;

  // The C locale passes bytes unchanged.
  const CliResult c = runCli(chain({{"connect", database.connectionString()},
                                    {"new", "--query", "select id, town, region, income from people"},
                                    {"dependence", "--mother", "region", "--applicable", "\xcele-de-France",
                                     "--daughters", "income", "--yes"}}),
                             dir.path(), "C");
  ASSERT_EQ(c.status, 0) << c.err;
  EXPECT_TRUE(contains(c.out, "  income is applicable if region in {\"\xcele-de-France\"}\n")) << c.out;
}

TEST(CliCharset, AnArgumentLatin1CannotHoldIsAUsageErrorThatNamesIt) {
  TempDir dir;
  // U+015C, beyond Latin-1.
  CliResult result = runCli(words("save out.gaj then export out.kvf --title \xc5\x9c"
                                  "ance"),
                            dir.path(), "C.UTF-8");
  EXPECT_EQ(result.status, 2);
  EXPECT_EQ(linesOf(result.err)[0],
            "velda-cli: argument 7 \"\xc5\x9c"
            "ance\" has a character outside Latin-1, the character set of VELDA's names and files");
  EXPECT_EQ(result.out, "");

  // A Latin-1 byte is not UTF-8 text (a file name is not text: it passes).
  result = runCli({"export", "out.kvf", "--title", "\xe9t\xe9"}, dir.path(), "C.UTF-8");
  EXPECT_EQ(result.status, 2);
  EXPECT_EQ(linesOf(result.err)[0], "velda-cli: argument 4 \"\xe9t\xe9\" is not valid UTF-8 text");
}

}  // namespace
}  // namespace velda::test
