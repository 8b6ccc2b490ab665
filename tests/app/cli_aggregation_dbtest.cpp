// velda-cli with the extraction aggregated in the database (SQLite ODBC).
#include <string>
#include <vector>

#include "app/CliChain.h"
#include "support/SqliteDatabase.h"
#include "support/TempDir.h"

namespace velda::test {
namespace {

// Rows ordered so that the client side meets the jobs in byte order and
// the groups kept by the threshold (Lyon, Nice) in that order too: both
// ways then write the same file.
const char* kQuery = "select id, town, job, income, w from people order by job, town";

TEST(CliAggregationSqlite, MatrixWithoutIndividualsExportsSavesAndOpens) {
  SqliteDatabase database(chainDatabaseSql());
  TempDir dir;
  // One command of the chain per line.
  // clang-format off
  CliResult result = runCli(
      {"connect", database.connectionString(),
       "then", "new", "--query", kQuery, "--weight", "--min", "2", "--in-database",
       "then", "taxonomy", "job", "--table", "jobs",
       "then", "add-variables", "--table", "facts",
       "then", "export", "aggregated.kvf",
       "then", "save", "aggregated.gaj"},
      dir.path());
  // clang-format on
  ASSERT_EQ(result.status, 0) << result.err;
  for (const char* line :
       {"3 assertions build from 6 individuals aggregated in the database", "::Individuals per group threshold: 2",
        "::1 assertion deleted, correcting indexes...", "taxonomy variable 'job': initial domain is covered by 2 nodes",
        "1 unique variables added:"})
    EXPECT_TRUE(hasLine(linesOf(result.out), line)) << line;

  // One command of the chain per line.
  // clang-format off
  result = runCli(
      {"connect", database.connectionString(),
       "then", "new", "--query", kQuery, "--weight", "--min", "2",
       "then", "taxonomy", "job", "--table", "jobs",
       "then", "add-variables", "--table", "facts",
       "then", "export", "client.kvf"},
      dir.path());
  // clang-format on
  ASSERT_EQ(result.status, 0) << result.err;
  const std::string exported = readFile(dir.file("aggregated.kvf"));
  EXPECT_EQ(exported.rfind("KORVA = (", 0), 0u);
  EXPECT_EQ(exported, readFile(dir.file("client.kvf")));

  // The project keeps the assertions without any individual record.
  result =
      runCli({"open", "aggregated.gaj", "then", "export", "reopened.kvf", "then", "view", "assertions"}, dir.path());
  ASSERT_EQ(result.status, 0) << result.err;
  EXPECT_TRUE(hasLine(linesOf(result.out), "2 assertions build from 0 individuals")) << result.out;
  EXPECT_EQ(readFile(dir.file("reopened.kvf")), exported);
}

TEST(CliAggregationSqlite, CommandsThatNeedIndividualsAreRefused) {
  SqliteDatabase database(chainDatabaseSql());
  TempDir dir;
  // One command of the chain per line.
  // clang-format off
  CliResult result = runCli(
      {"connect", database.connectionString(),
       "then", "new", "--query", kQuery, "--weight", "--in-database", "--sample", "100"},
      dir.path());
  // clang-format on
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(linesOf(result.err)[0],
            "Sampling needs the individuals: it cannot be used when the database aggregates them");

  // One command of the chain per line.
  // clang-format off
  result = runCli(
      {"connect", database.connectionString(),
       "then", "new", "--query", kQuery, "--weight", "--in-database",
       "then", "save", "aggregated.gaj"},
      dir.path());
  // clang-format on
  ASSERT_EQ(result.status, 0) << result.err;
  const std::vector<std::pair<std::vector<std::string>, std::string>> refused = {
      {{"reduce"}, "Reducing assertions"},
      {{"divide"}, "Dividing assertions"},
      {{"reduce-hordes"}, "Reducing hordes"},
      {{"dependence", "--mother", "job", "--applicable", "clerk", "--daughters", "income", "--yes"},
       "Adding a dependence"},
      {{"view", "individuals"}, "Viewing individuals"},
  };
  for (const auto& [command, what] : refused) {
    std::vector<std::string> args = {"open", "aggregated.gaj", "--ignore-metadata", "then"};
    args.insert(args.end(), command.begin(), command.end());
    result = runCli(args, dir.path());
    EXPECT_EQ(result.status, 1) << command[0];
    ASSERT_FALSE(linesOf(result.err).empty()) << command[0];
    EXPECT_EQ(linesOf(result.err)[0],
              what + " is not possible: the matrix holds no individuals (the database aggregated them)");
  }
  // The commands on the assertions and variables still run.
  result = runCli(
      {"open", "aggregated.gaj", "then", "properties", "job", "--mode", "cardinality", "then", "view", "assertions"},
      dir.path());
  EXPECT_EQ(result.status, 0) << result.err;
}

}  // namespace
}  // namespace velda::test
