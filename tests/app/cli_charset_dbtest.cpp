// velda-cli in a UTF-8 terminal: arguments arrive in UTF-8 and become the
// program's Latin-1, what it prints goes back to UTF-8, files stay Latin-1.
// File names are the system's bytes: a name with accents, or with
// characters Latin-1 has not, names the file the shell sees.
#include <gtest/gtest.h>
#include <unistd.h>

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

TEST(CliCharset, Utf8ArgumentsAndFileNamesMatchLatin1AndTheConsoleSpeaksUtf8) {
  SqliteDatabase database(kRegionsSql);
  TempDir dir;
  ASSERT_EQ(mkdir(dir.file("donn\u00e9es").c_str(), 0700), 0);
  const std::string project = "donn\u00e9es/\u00e9t\u00e9.gaj";
  const std::string beyondLatin1 = "\xe6\x97\xa5\xe6\x9c\xac.kvf";  // two CJK characters
  const CliResult result = runCli(chain({{"connect", database.connectionString()},
                                         {"new", "--query", "select id, town, region, income from people"},
                                         {"dependence", "--mother", "region", "--applicable", "\xc3\x8ele-de-France",
                                          "--daughters", "income", "--yes"},
                                         {"save", project},
                                         {"export", "r\u00e9sum\u00e9.kvf", "--title", "R\xc3\xa9gions", "--subtitle",
                                          "Sous-titre \xc3\xa9t\xc3\xa9"},
                                         {"export", "regions.xml"},
                                         {"export", beyondLatin1},
                                         {"console-save", "console \u00e9t\u00e9.txt"}}),
                                  dir.path(), "C.UTF-8");
  ASSERT_EQ(result.status, 0) << result.err;
  for (const std::string& name :
       {project, std::string("r\u00e9sum\u00e9.kvf"), beyondLatin1, std::string("console \u00e9t\u00e9.txt")})
    EXPECT_EQ(access(dir.file(name).c_str(), R_OK), 0) << name;
  EXPECT_TRUE(contains(result.out, "  income is applicable if region in {\"\xc3\x8ele-de-France\"}\n")) << result.out;
  // A name once, not its bytes taken for Latin-1.
  EXPECT_TRUE(contains(result.out, "saving KVF file r\u00e9sum\u00e9.kvf ...")) << result.out;
  EXPECT_TRUE(contains(result.out, "saving KVF file ??.kvf ...")) << result.out;
  EXPECT_FALSE(contains(result.out, "\xce")) << "a Latin-1 byte reached the UTF-8 console";

  const std::string saved = readFile(dir.file(project));
  EXPECT_TRUE(contains(saved, std::string("\xcele-de-France") + '\0'));
  EXPECT_TRUE(contains(saved, std::string("Rh\xf4ne") + '\0'));
  EXPECT_FALSE(contains(saved, "\xc3"));
  const std::string kvf = readFile(dir.file("r\u00e9sum\u00e9.kvf"));
  EXPECT_TRUE(contains(kvf, "\"R\xe9gions\""));
  EXPECT_TRUE(contains(kvf, "\"Sous-titre \xe9t\xe9\""));
  EXPECT_FALSE(contains(kvf, "\xc3"));
  // The XML writes each Latin-1 character as one reference, never the two
  // bytes of its UTF-8 form.
  const std::string xml = readFile(dir.file("regions.xml"));
  EXPECT_TRUE(contains(xml, "sub_title = \"Sous-titre &#"));
  EXPECT_FALSE(contains(xml, "&#195;"));

  // Tables printed from Latin-1 files arrive in UTF-8 as well.
  const CliResult view = runCli(
      {"open", project, "then", "view", "assertions", "then", "check", "r\u00e9sum\u00e9.kvf"}, dir.path(), "C.UTF-8");
  ASSERT_EQ(view.status, 0) << view.err;
  EXPECT_TRUE(contains(view.out, "Cr\xc3\xa9teil\t")) << view.out;
  const CliResult absent = runCli({"open", "donn\u00e9es/absent.gaj"}, dir.path(), "C.UTF-8");
  EXPECT_EQ(absent.status, 1);
  EXPECT_TRUE(contains(absent.err, "Can not open file donn\u00e9es/absent.gaj\n")) << absent.err;

  // The C locale passes bytes unchanged, both ways.
  const CliResult c = runCli(
      chain({{"connect", database.connectionString()},
             {"new", "--query", "select id, town, region, income from people"},
             {"dependence", "--mother", "region", "--applicable", "\xcele-de-France", "--daughters", "income", "--yes"},
             {"open", "\xe9t\xe9-absent.gaj"}}),
      dir.path(), "C");
  EXPECT_EQ(c.status, 1) << c.err;
  EXPECT_TRUE(contains(c.out, "  income is applicable if region in {\"\xcele-de-France\"}\n")) << c.out;
  EXPECT_TRUE(contains(c.err, "Can not open file \xe9t\xe9-absent.gaj\n")) << c.err;
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
