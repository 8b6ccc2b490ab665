// Aggregation inside the database, on the SQLite ODBC driver.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "common/Progress.h"
#include "db/AggregationComparison.h"
#include "support/OpenConnection.h"
#include "support/SqliteDatabase.h"

namespace velda {
namespace {

using test::openConnection;
using test::SqliteDatabase;

std::string sampleScript() {
  const char* source = std::getenv("VELDA_SOURCE_DIR");
  std::ifstream file(std::string(source ? source : ".") + "/data/sample.sql");
  std::stringstream text;
  text << file.rdbuf();
  return text.str();
}

// Keeps the second progress lines, which name the running aggregate.
class RecordingProgress : public ProgressTarget {
 public:
  void setLine1(const std::string&) override {}
  void setLine2(const std::string& text) override { lines.push_back(text); }
  void enableCancel(bool) override {}
  bool cancelRequested() override { return false; }
  std::vector<std::string> lines;
};

TEST(AggregationSqlite, SampleSurveyGivesTheClientSideAssertions) {
  const std::string script = sampleScript();
  ASSERT_FALSE(script.empty());
  SqliteDatabase db(script);
  auto connection = openConnection(db.connectionString());
  ASSERT_TRUE(connection);
  test::expectSameAsClientSide(
      *connection, "select person_id, town, sex, age, income, occupation, marital_status, weight from survey", true);
  test::expectSameAsClientSide(*connection,
                               "select person_id, region, occupation, income, sex from survey order by age;\n", false);
  // The same person in every group of her region and of her sex.
  test::expectSameAsClientSide(*connection,
                               "select person_id, region, marital_status, age from survey union all "
                               "select person_id, sex, marital_status, age from survey",
                               false);
}

TEST(AggregationSqlite, GeneratedTableGivesTheClientSideAssertions) {
  SqliteDatabase db(test::generatedTableSql());
  auto connection = openConnection(db.connectionString());
  ASSERT_TRUE(connection);
  RecordingProgress progress;
  ScopedProgressTarget scope(&progress);
  test::expectSameAsClientSide(*connection, "select ind, grp, colour, size, n, shape, w from gen", true);
  test::expectSameAsClientSide(*connection, "select ind, grp, shape, colour, n from gen", false);
  // Names that only the renamed columns of the derived table can carry.
  test::expectSameAsClientSide(*connection, "select ind, grp, size * 2, colour as \"col our\", w as w from gen", true);

  const std::vector<std::string> expected = {
      "Checking the individuals", "Counting the individuals of each group and the bounds of the numbers",
      "Weighing the categories of 'shape'", "Weighing the categories of 'colour'"};
  progress.lines.clear();
  ASSERT_TRUE(aggregateInDatabase(*connection, "select ind, grp, shape, colour, n from gen", false).matrix);
  for (const std::string& line : expected)
    EXPECT_NE(std::find(progress.lines.begin(), progress.lines.end(), line), progress.lines.end()) << line;
}

TEST(AggregationSqlite, RowsThatBreakTheLayoutAreRefusedNamingAnIndividual) {
  SqliteDatabase db(
      "create table t(id varchar(5), grp varchar(5), colour varchar(8), height real, w real, label text);"
      "insert into t values('i1','g1','red',1.5,1,'x');"
      "insert into t values('i2','g1','blue',2.5,2,'x');"
      "insert into t values('i2','g2','blue',2.5,2,'x');");
  auto connection = openConnection(db.connectionString());
  ASSERT_TRUE(connection);
  auto failureOf = [&](const std::string& sql, bool weighted) {
    clearError();
    EXPECT_FALSE(aggregateInDatabase(*connection, sql, weighted).matrix) << sql;
    return lastError();
  };
  // The query's layout, with the client-side messages.
  EXPECT_EQ(failureOf("select id, grp from t", false), "Insufficient number of columns");
  EXPECT_EQ(failureOf("select id, height, colour from t", false), "Invalid assertion column type");
  EXPECT_EQ(failureOf("select id, grp, height, colour from t", true), "Invalid ponderation column type");
  EXPECT_EQ(failureOf(" select id, grp, colour from t", false), "Error: request must be a 'select'");
  EXPECT_EQ(failureOf("select id, grp, label from t", false), "Error: unhandled column type");
  EXPECT_NE(failureOf("select id, grp, colour from nosuch", false).find("no such table: nosuch"), std::string::npos);

  // The data: each case adds rows to a fresh copy of the table.
  auto refusal = [&](const std::string& rows, const std::string& sql, bool weighted) {
    EXPECT_TRUE(db.run("delete from t where id >= 'i3';" + rows));
    return failureOf(sql, weighted);
  };
  const std::string weighted = "select id, grp, colour, height, w from t";
  EXPECT_EQ(refusal("insert into t values('i3','g2','red',1,1,'x'); insert into t values('i3','g1','blue',1,1,'x');",
                    weighted, true),
            "Value of column 'colour' differ from previous definition of 'i3'");
  EXPECT_EQ(refusal("insert into t values('i4','g2','red',1,1,'x'); insert into t values('i4','g2','red',NULL,1,'x');",
                    weighted, true),
            "Value of column 'height' differ from previous definition of 'i4'");
  EXPECT_EQ(refusal("insert into t values('i5','g2','red',1,0,'x');", weighted, true),
            "Ponderation of individual 'i5' is null or negative");
  EXPECT_EQ(refusal("insert into t values('i6','g2','red',1,-2,'x');", weighted, true),
            "Ponderation of individual 'i6' is null or negative");
  EXPECT_EQ(refusal("insert into t values('i7','g2','red',1,NULL,'x');", weighted, true),
            "Ponderation of individual 'i7' is null or negative");
  EXPECT_EQ(refusal("insert into t values('i8','g2','red',1,1,'x'); insert into t values('i8','g1','red',1,3,'x');",
                    weighted, true),
            "Ponderation differ from previous definition of 'i8'");
  // Rows without an individual or a group are left out, as the client
  // side skips them, whatever they hold.
  ASSERT_TRUE(
      db.run("delete from t where id >= 'i3';"
             "insert into t values(NULL,'g1','green',9,-1,'x'); insert into t values('i1',NULL,'blue',9,0,'x');"));
  ExtractionResult result = aggregateInDatabase(*connection, weighted, true);
  ASSERT_TRUE(result.matrix) << lastError();
  EXPECT_EQ(result.aggregatedIndividuals, 2);
  EXPECT_EQ(result.matrix->assertionCount(), 2u);
}

}  // namespace
}  // namespace velda
