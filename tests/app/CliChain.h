#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <string>

#include "app/CliRun.h"

namespace velda::test {

// The database that the end-to-end chains run on: people of two towns with
// a weight, the towns' regions and a fact per town.
inline const char* chainDatabaseSql() {
  return "CREATE TABLE people (id integer, town varchar(20), job varchar(20), income real, w real);"
         "INSERT INTO people VALUES (1, 'Lyon', 'clerk', 1000, 1), (2, 'Lyon', 'student', 50, 2),"
         " (3, 'Lyon', 'clerk', 1500, 1), (4, 'Nice', 'farmer', 900, 1), (5, 'Nice', 'student', NULL, 1),"
         " (6, 'Rome', 'clerk', 700, 1);"
         "CREATE TABLE jobs (job varchar(20), kind varchar(20));"
         "INSERT INTO jobs VALUES ('clerk', 'employed'), ('farmer', 'employed'), ('student', 'studying');"
         "CREATE TABLE facts (town varchar(20), sea varchar(3));"
         "INSERT INTO facts VALUES ('Lyon', 'no'), ('Nice', 'yes');";
}

// Runs the whole chain from connect to export on the database and checks
// what every step printed and wrote.
inline void checkChain(const std::string& connection, const std::string& dir) {
  const CliResult result =
      runCli(chain({{"--seed", "7", "connect", connection},
                    {"new", "--query", "select id, town, job, income, w from people", "--weight", "--min", "2"},
                    {"taxonomy", "job", "--table", "jobs"},
                    {"dependence", "--mother", "job", "--applicable", "clerk,farmer", "--daughters", "income", "--yes"},
                    {"add-variables", "--table", "facts"},
                    {"save", "chain.gaj"},
                    {"export", "chain.kvf", "--title", "People"},
                    {"export", "chain.xml"},
                    {"export", "chain.csv", "--format", "rsda"},
                    {"view", "assertions"}}),
             dir);
  ASSERT_EQ(result.status, 0) << result.err;
  const std::vector<std::string> lines = linesOf(result.out);
  ASSERT_GE(lines.size(), 12u) << result.out;
  EXPECT_EQ(lines[0].rfind("Extraction done in ", 0), 0u);
  const std::vector<std::string> summary(lines.begin() + 1, lines.begin() + 4);
  EXPECT_EQ(summary, (std::vector<std::string>{
                         "Symbolic data matrix is composed by:", "2 variables (1 qualitatives, 1 quantitatives)",
                         "3 assertions build from 6 individuals"}));
  // Rome has one individual, below the minimum of 2.
  for (const char* line :
       {"::Individuals per group threshold: 2", "taxonomy variable 'job': initial domain is covered by 2 nodes",
        "2: variable 'income': value '50.00' will be replaced by NA",
        "1 rules added:", "  income is applicable if job in {\"clerk\", \"farmer\"}",
        "1 unique variables added:", "   sea", "saving KVF file chain.kvf ...", "saving XML file chain.xml ...",
        "saving RSDA table chain.csv ...", "Assertion\tIndividuals\tjob\tincome\tsea"})
    EXPECT_TRUE(hasLine(lines, line)) << line;

  EXPECT_EQ(readFile(dir + "/chain.kvf").rfind("KORVA = (", 0), 0u);
  EXPECT_NE(readFile(dir + "/chain.kvf").find("title = \"People\""), std::string::npos);
  EXPECT_EQ(readFile(dir + "/chain.xml").rfind("<?xml", 0), 0u);
  EXPECT_EQ(readFile(dir + "/chain.csv").rfind("$M;job;", 0), 0u);
  EXPECT_EQ(access((dir + "/chain_meta.xml").c_str(), F_OK), 0);
  EXPECT_EQ(access((dir + "/chain.gaj.xml").c_str(), F_OK), 0);

  // The saved project opens again with its metadata; the reader checks the
  // exported file.
  const CliResult reopened =
      runCli(words("open chain.gaj then view individuals then check chain.kvf then dependences then taxonomies"), dir);
  ASSERT_EQ(reopened.status, 0) << reopened.err;
  for (const char* line :
       {"MetaData Loaded and transfered", "2 assertions build from 5 individuals", "2\t2\tstudent\tNA\tLyon",
        "  income is applicable if job in {\"clerk\", \"farmer\"}", "Taxonomy of job:", "  root_"})
    EXPECT_TRUE(hasLine(linesOf(reopened.out), line)) << line;
}

}  // namespace velda::test
