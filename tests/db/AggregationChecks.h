#pragma once

// The checks of the aggregation inside the database that every driver must
// pass, run by the SQLite and the PostgreSQL tests on their own database.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "common/Progress.h"
#include "db/AggregationComparison.h"
#include "db/GroupsText.h"
#include "support/FileText.h"
#include "support/OpenConnection.h"
#include "support/Recorders.h"

namespace velda::test {

// A table of individuals repeated in one group and spread over two, with
// NULLs, weights and rows without an individual or a group.
constexpr const char* kAggregatedTable =
    "create table t(id varchar(5), grp varchar(5), c varchar(8), x double precision, n numeric(6,2), w real);"
    "insert into t values('1','g','red',1.5,1.25,2);"
    "insert into t values('2','g','blue',2.5,NULL,3);"
    "insert into t values('3','g','red',0.5,2,4);"
    "insert into t values('1','h','red',1.5,1.25,2);"
    "insert into t values(NULL,'h','blue',9,9,1);"
    "insert into t values('4',NULL,'blue',9,9,1);"
    "insert into t values('3','g','red',0.5,2,4);";

// Db runs SQL on the driver's database (SqliteDatabase, PgDatabase);
// unhandledQuery selects an individual, a group and a column of a type the
// program does not take on that driver.
template <typename Db>
void expectAggregationOnDriver(Db& db, const std::string& unhandledQuery) {
  ASSERT_TRUE(db.run(kAggregatedTable));
  ASSERT_TRUE(db.run(generatedTableSql()));
  auto connection = openConnection(db.connectionString());
  ASSERT_TRUE(connection);
  for (const auto& [sql, weighted] : std::vector<std::pair<std::string, bool>>{
           {"select id, grp, c, x, n, w from t", true},
           {"select id, grp, c, x, n from t", false},
           {"select ind, grp, colour, size, n, shape, w from gen", true},
           {"select ind, grp, shape, colour, n from gen order by n;\n", false},
           // Names that only the renamed columns of the derived table can carry.
           {"select ind, grp, size * 2, colour as \"col our\", w as w from gen", true}})
    expectSameAsClientSide(*connection, sql, weighted);
  // The weighted table by hand: in g red weighs 2 + 4 of 9; n is NULL for 2.
  ExtractionOptions byWeight;
  byWeight.lastColumnIsWeight = true;
  ExtractionResult client = extractIndividuals(*connection, "select id, grp, c, x, n, w from t", byWeight);
  ASSERT_TRUE(client.matrix) << lastError();
  EXPECT_EQ(client.matrix->rowsRead, 7);
  EXPECT_EQ(groupsText(*client.matrix),
            "g: 1 2 3 = (1(0.666667),2(0.333333)) (0.5:2.5) (1.25:2)\n"
            "h: 1 = (1(1)) (1.5:1.5) (1.25:1.25)\n");
  EXPECT_EQ(client.matrix->findIndividual("3")->weight, 4.0);

  ProgressRecorder progress;
  {
    ScopedProgressTarget scope(&progress);
    ASSERT_TRUE(aggregateInDatabase(*connection, "select ind, grp, shape, colour, n from gen", false).matrix);
  }
  for (const char* line :
       {"Checking the individuals", "Counting the individuals of each group and the bounds of the numbers",
        "Weighing the categories of 'shape'", "Weighing the categories of 'colour'"})
    EXPECT_TRUE(hasLine(progress.line2, line)) << line;

  auto failureOf = [&](const std::string& sql, bool weighted) {
    clearError();
    EXPECT_FALSE(aggregateInDatabase(*connection, sql, weighted).matrix) << sql;
    return lastError();
  };
  // The query's layout, with the client-side messages.
  EXPECT_EQ(failureOf("select id, grp from t", false), "Insufficient number of columns");
  EXPECT_EQ(failureOf("select id, x, c from t", false), "Invalid assertion column type");
  EXPECT_EQ(failureOf("select id, grp, x, c from t", true), "Invalid ponderation column type");
  EXPECT_EQ(failureOf(" select id, grp, c from t", false), "Error: request must be a 'select'");
  EXPECT_EQ(failureOf(unhandledQuery, false), "Error: unhandled column type");
  EXPECT_EQ(failureOf("select id, grp, c from nosuch", false).rfind("Error ", 0), 0u);

  // The data: each case adds rows to two rows that agree.
  const struct {
    const char* rows;
    const char* message;
  } refused[] = {
      {"('5','h','red',1,1), ('5','g','blue',1,1)", "Value of column 'c' differ from previous definition of '5'"},
      {"('6','h','red',1,1), ('6','h','red',NULL,1)", "Value of column 'x' differ from previous definition of '6'"},
      {"('7','h','red',1,0)", "Ponderation of individual '7' is null or negative"},
      {"('7','h','red',1,-2)", "Ponderation of individual '7' is null or negative"},
      {"('7','h','red',1,NULL)", "Ponderation of individual '7' is null or negative"},
      {"('8','h','red',1,1), ('8','g','red',1,3)", "Ponderation differ from previous definition of '8'"},
  };
  const std::string table =
      "drop table if exists r; create table r(id varchar(5), grp varchar(5), c varchar(8), x real, w real);"
      "insert into r values('1','g','red',1.5,2), ('1','h','red',1.5,2), ";
  for (const auto& bad : refused) {
    ASSERT_TRUE(db.run(table + bad.rows + ";"));
    EXPECT_EQ(failureOf("select id, grp, c, x, w from r", true), bad.message) << bad.rows;
  }
  // Rows without an individual or a group are left out, as the client
  // side skips them, whatever they hold.
  ASSERT_TRUE(db.run(table + "(NULL,'g','green',9,-1), ('2',NULL,'blue',9,0);"));
  ExtractionResult result = aggregateInDatabase(*connection, "select id, grp, c, x, w from r", true);
  ASSERT_TRUE(result.matrix) << lastError();
  EXPECT_EQ(result.aggregatedIndividuals, 1);
  EXPECT_EQ(result.matrix->assertionCount(), 2u);
}

}  // namespace velda::test
