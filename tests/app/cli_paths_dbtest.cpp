// File names on the command line are the system's bytes: in a UTF-8
// terminal a name with accents, or with characters Latin-1 has not, names
// the file the shell sees, and messages show it in the terminal's text.
#include <gtest/gtest.h>

#include <unistd.h>

#include "app/CliRun.h"
#include "support/SqliteDatabase.h"
#include "support/TempDir.h"

namespace velda::test {
namespace {

const char* kPeopleSql =
    "CREATE TABLE people (id integer, town varchar(20), income real);"
    "INSERT INTO people VALUES (1, 'Paris', 1000), (2, 'Lyon', 900), (3, 'Lyon', 800);";

bool contains(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

TEST(CliPaths, Utf8FileNamesReachTheFileSystemUnchangedAndReadBackInMessages) {
  SqliteDatabase database(kPeopleSql);
  TempDir dir;
  ASSERT_EQ(mkdir(dir.file("donn\u00e9es").c_str(), 0700), 0);
  const std::string project = "donn\u00e9es/\u00e9t\u00e9.gaj";
  const std::string beyondLatin1 = "\xe6\x97\xa5\xe6\x9c\xac.kvf";  // two CJK characters
  CliResult result = runCli(chain({{"connect", database.connectionString()},
                                   {"new", "--query", "select id, town, income from people"},
                                   {"save", project},
                                   {"export", "r\u00e9sum\u00e9.kvf"},
                                   {"export", beyondLatin1},
                                   {"console-save", "console \u00e9t\u00e9.txt"}}),
                            dir.path(), "C.UTF-8");
  ASSERT_EQ(result.status, 0) << result.err;
  for (const std::string& name :
       {project, std::string("r\u00e9sum\u00e9.kvf"), beyondLatin1, std::string("console \u00e9t\u00e9.txt")})
    EXPECT_EQ(access(dir.file(name).c_str(), R_OK), 0) << name;
  // The console speaks UTF-8: the name once, not its bytes taken for Latin-1.
  EXPECT_TRUE(contains(result.out, "saving KVF file r\u00e9sum\u00e9.kvf ...")) << result.out;
  EXPECT_TRUE(contains(result.out, "saving KVF file ??.kvf ...")) << result.out;

  result = runCli({"open", project, "then", "check", "r\u00e9sum\u00e9.kvf"}, dir.path(), "C.UTF-8");
  EXPECT_EQ(result.status, 0) << result.err;

  result = runCli({"open", "donn\u00e9es/absent.gaj"}, dir.path(), "C.UTF-8");
  EXPECT_EQ(result.status, 1);
  EXPECT_TRUE(contains(result.err, "Can not open file donn\u00e9es/absent.gaj\n")) << result.err;

  // In the C locale a name's bytes pass as they are, both ways.
  result = runCli({"open", "\xe9t\xe9-absent.gaj"}, dir.path(), "C");
  EXPECT_TRUE(contains(result.err, "Can not open file \xe9t\xe9-absent.gaj\n")) << result.err;
}

}  // namespace
}  // namespace velda::test
