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

class CliAggregationSqlite : public ::testing::Test {
 protected:
  // Connects, extracts with the options given, then runs the commands.
  CliResult extractThen(const std::vector<std::string>& options, std::vector<std::vector<std::string>> commands) {
    std::vector<std::string> extract = {"new", "--query", kQuery, "--weight"};
    extract.insert(extract.end(), options.begin(), options.end());
    commands.insert(commands.begin(), {{"connect", database_.connectionString()}, extract});
    return runCli(chain(commands), dir_.path());
  }
  CliResult run(const std::string& args) { return runCli(words(args), dir_.path()); }

  SqliteDatabase database_{chainDatabaseSql()};
  TempDir dir_;
};

TEST_F(CliAggregationSqlite, MatrixWithoutIndividualsExportsSavesAndOpens) {
  const std::vector<std::vector<std::string>> taxonomyAndFacts = {{"taxonomy", "job", "--table", "jobs"},
                                                                  {"add-variables", "--table", "facts"}};
  auto commands = taxonomyAndFacts;
  commands.insert(commands.end(), {{"export", "aggregated.kvf"}, {"save", "aggregated.gaj"}});
  CliResult result = extractThen({"--min", "2", "--in-database"}, commands);
  ASSERT_EQ(result.status, 0) << result.err;
  for (const char* line :
       {"3 assertions build from 6 individuals aggregated in the database", "::Individuals per group threshold: 2",
        "::1 assertion deleted, correcting indexes...", "taxonomy variable 'job': initial domain is covered by 2 nodes",
        "1 unique variables added:"})
    EXPECT_TRUE(hasLine(linesOf(result.out), line)) << line;

  commands = taxonomyAndFacts;
  commands.push_back({"export", "client.kvf"});
  result = extractThen({"--min", "2"}, commands);
  ASSERT_EQ(result.status, 0) << result.err;
  const std::string exported = readFile(dir_.file("aggregated.kvf"));
  EXPECT_EQ(exported.rfind("KORVA = (", 0), 0u);
  EXPECT_EQ(exported, readFile(dir_.file("client.kvf")));

  // The project keeps the assertions without any individual record.
  result = run("open aggregated.gaj then export reopened.kvf then view assertions");
  ASSERT_EQ(result.status, 0) << result.err;
  EXPECT_TRUE(hasLine(linesOf(result.out), "2 assertions build from 0 individuals")) << result.out;
  EXPECT_EQ(readFile(dir_.file("reopened.kvf")), exported);
  // The table went through a temporary file, gone with the run.
  for (const std::string& name : folderNames(dir_.path())) EXPECT_NE(name.rfind("dbgrp", 0), 0u) << name;
}

TEST_F(CliAggregationSqlite, CommandsThatNeedIndividualsAreRefused) {
  CliResult result = extractThen({"--in-database", "--sample", "100"}, {});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(linesOf(result.err)[0],
            "Sampling needs the individuals: it cannot be used when the database aggregates them");

  result = extractThen({"--in-database"}, {{"save", "aggregated.gaj"}});
  ASSERT_EQ(result.status, 0) << result.err;
  const std::vector<std::pair<std::string, std::string>> refused = {
      {"reduce", "Reducing assertions"},
      {"divide", "Dividing assertions"},
      {"reduce-hordes", "Reducing hordes"},
      {"dependence --mother job --applicable clerk --daughters income --yes", "Adding a dependence"},
      {"view individuals", "Viewing individuals"}};
  for (const auto& [command, what] : refused) {
    result = run("open aggregated.gaj --ignore-metadata then " + command);
    EXPECT_EQ(result.status, 1) << command;
    ASSERT_FALSE(linesOf(result.err).empty()) << command;
    EXPECT_EQ(linesOf(result.err)[0],
              what + " is not possible: the matrix holds no individuals (the database aggregated them)");
  }
  // The commands on the assertions and variables still run.
  EXPECT_EQ(run("open aggregated.gaj then properties job --mode cardinality then view assertions").status, 0);
}

}  // namespace
}  // namespace velda::test
