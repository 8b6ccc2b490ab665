// Aggregation inside the database, on the PostgreSQL ODBC driver.
#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include "common/Progress.h"
#include "db/AggregationComparison.h"
#include "support/OpenConnection.h"
#include "support/PgDatabase.h"

namespace velda {
namespace {

using test::openConnection;
using test::PgDatabase;

// The table of the client-side extraction's tests on this driver, with
// numeric and double precision columns.
const char* kTable =
    "create table t(id integer, grp varchar(5), c varchar(8), x double precision, n numeric(6,2), w real);"
    "insert into t values(1,'g','red',1.5,1.25,2);"
    "insert into t values(2,'g','blue',2.5,NULL,3);"
    "insert into t values(3,'g','red',0.5,2,4);"
    "insert into t values(1,'h','red',1.5,1.25,2);"
    "insert into t values(NULL,'h','blue',9,9,1);"
    "insert into t values(4,NULL,'blue',9,9,1);"
    "insert into t values(3,'g','red',0.5,2,4);";

TEST(AggregationPostgres, TablesGiveTheClientSideAssertions) {
  PgDatabase db;
  ASSERT_TRUE(db.available());
  ASSERT_TRUE(db.run(kTable));
  ASSERT_TRUE(db.run(test::generatedTableSql()));
  auto connection = openConnection(db.connectionString());
  ASSERT_TRUE(connection);
  test::expectSameAsClientSide(*connection, "select id, grp, c, x, n, w from t", true);
  test::expectSameAsClientSide(*connection, "select id, grp, c, x, n from t", false);
  test::expectSameAsClientSide(*connection, "select ind, grp, colour, size, n, shape, w from gen", true);
  test::expectSameAsClientSide(*connection, "select ind, grp, shape, colour, n from gen order by n;", false);
  test::expectSameAsClientSide(*connection, "select ind, grp, size * 2, colour as \"col our\", w as w from gen", true);
}

TEST(AggregationPostgres, RowsThatBreakTheLayoutAreRefusedNamingAnIndividual) {
  PgDatabase db;
  ASSERT_TRUE(db.available());
  ASSERT_TRUE(db.run(kTable));
  auto connection = openConnection(db.connectionString());
  ASSERT_TRUE(connection);
  auto failureOf = [&](const std::string& sql, bool weighted) {
    clearError();
    EXPECT_FALSE(aggregateInDatabase(*connection, sql, weighted).matrix) << sql;
    return lastError();
  };
  EXPECT_EQ(failureOf("select id, x, c from t", false), "Invalid assertion column type");
  EXPECT_EQ(failureOf("select id, grp, cast(id as bigint) from t", false), "Error: unhandled column type");
  ASSERT_TRUE(db.run("insert into t values(5,'h','red',1,1,1); insert into t values(5,'g','blue',1,1,1);"));
  EXPECT_EQ(failureOf("select id, grp, c, x from t", false),
            "Value of column 'c' differ from previous definition of '5'");
  // Individual 2 has no n in group g and one in group h.
  ASSERT_TRUE(db.run("insert into t values(2,'h','blue',2.5,7,3);"));
  EXPECT_EQ(failureOf("select id, grp, x, n from t where id <> 5", false),
            "Value of column 'n' differ from previous definition of '2'");
  ASSERT_TRUE(
      db.run("update t set w = 7 where id = 3 and grp = 'g' and ctid = (select min(ctid) from t where id = 3);"));
  EXPECT_EQ(failureOf("select id, grp, x, w from t where id <> 2 and id <> 5", true),
            "Ponderation differ from previous definition of '3'");
  ASSERT_TRUE(db.run("update t set w = 0 where id = 1;"));
  EXPECT_EQ(failureOf("select id, grp, x, w from t where id = 1", true),
            "Ponderation of individual '1' is null or negative");
}

// Says Cancel at the second poll, as a user pressing the button would.
class CancellingProgress : public ProgressTarget {
 public:
  void setLine1(const std::string&) override {}
  void setLine2(const std::string&) override {}
  void enableCancel(bool) override {}
  bool cancelRequested() override { return ++polls > 1; }
  int polls = 0;
};

TEST(AggregationPostgres, CancelInterruptsTheRunningAggregate) {
  PgDatabase db;
  ASSERT_TRUE(db.available());
  ASSERT_TRUE(db.run(kTable));
  auto connection = openConnection(db.connectionString());
  ASSERT_TRUE(connection);
  CancellingProgress progress;
  ScopedProgressTarget scope(&progress);
  const auto start = std::chrono::steady_clock::now();
  ExtractionResult result =
      aggregateInDatabase(*connection, "select id, grp, c from t, (select pg_sleep(120)) as s", false);
  EXPECT_FALSE(result.matrix);
  EXPECT_EQ(lastError(), "Aggregation cancelled");
  // Not waiting for the two minutes of the query shows that the server
  // stopped the statement.
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(60));
  // The connection stays usable.
  EXPECT_TRUE(aggregateInDatabase(*connection, "select id, grp, c from t", false).matrix) << lastError();
}

}  // namespace
}  // namespace velda
