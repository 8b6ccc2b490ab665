// Aggregation inside the database, on the SQLite ODBC driver.
#include <gtest/gtest.h>

#include "db/AggregationChecks.h"
#include "support/OpenConnection.h"
#include "support/SqliteDatabase.h"

namespace velda {
namespace {

TEST(AggregationSqlite, GivesTheClientSideAssertionsAndRefusesWhatBreaksTheLayout) {
  test::SqliteDatabase db("create table u(id varchar(5), grp varchar(5), label text);");
  test::expectAggregationOnDriver(db, "select id, grp, label from u");
}

// Rows that never repeat an individual (the generated table reduced to one
// row per individual, in a table that the driver describes as "gen"): the
// database aggregates them without checking each individual's rows, and
// must still give the client-side assertions and refuse the same weights.
TEST(AggregationSqlite, OneRowPerIndividualGivesTheClientSideAssertions) {
  test::SqliteDatabase db(test::generatedTableSql() +
                          "create table once(ind varchar(12), grp varchar(12), colour varchar(12), size real,"
                          " n integer, shape varchar(12), w real);"
                          "insert into once select ind, min(grp), min(colour), min(size), min(n), min(shape), min(w)"
                          " from gen group by ind;");
  auto connection = test::openConnection(db.connectionString());
  ASSERT_TRUE(connection);
  test::expectSameAsClientSide(*connection, "select ind, grp, colour, size, n, shape, w from once", true);
  test::expectSameAsClientSide(*connection, "select ind, grp, shape, n, colour from once", false);
  // NULL or negative weights are refused as usual, here on single rows.
  for (const char* weights : {"update once set w = 0 where ind = 'p7'; update once set w = NULL where ind = 'p31';",
                              "update once set w = -1 where ind = 'p31';"}) {
    ASSERT_TRUE(db.run(weights));
    clearError();
    EXPECT_FALSE(aggregateInDatabase(*connection, "select ind, grp, colour, w from once", true).matrix);
    EXPECT_EQ(lastError(), "Ponderation of individual 'p31' is null or negative");
  }
  // Without the weight the same rows aggregate.
  EXPECT_TRUE(aggregateInDatabase(*connection, "select ind, grp, colour from once", false).matrix) << lastError();
}

}  // namespace
}  // namespace velda
