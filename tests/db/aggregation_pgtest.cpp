// Aggregation inside the database, on the PostgreSQL ODBC driver.
#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include "common/Progress.h"
#include "db/AggregationChecks.h"
#include "db/GroupsText.h"
#include "support/OpenConnection.h"
#include "support/PgDatabase.h"
#include "support/Recorders.h"

namespace velda {
namespace {

using test::openConnection;
using test::PgDatabase;

TEST(AggregationPostgres, GivesTheClientSideAssertionsAndRefusesWhatBreaksTheLayout) {
  PgDatabase db;
  ASSERT_TRUE(db.available());
  test::expectAggregationOnDriver(db, "select id, grp, cast(1 as bigint) from t");
}

// PostgreSQL sends the rows of a grouping in the order of its hash table,
// unrelated to the names. Every group g100..g399 holds categories 1 and 19
// (c10 and c28; group a holds those between), which share a bucket of the
// value both before and after the extraction compacts it, where they stay
// in the order they were added: they must come in the order of their
// numbers in every group, as they do on a driver that sorts. The rows are
// more than one block of a fetch.
TEST(AggregationPostgres, WritesEachGroupsCategoriesInTheOrderOfTheirNumbers) {
  PgDatabase db;
  ASSERT_TRUE(db.available());
  ASSERT_TRUE(
      db.run("create table o as select cast(n as varchar(8)) as id, cast('g' || n / 2 as varchar(8)) as grp,"
             " cast(case when n % 2 = 0 then 'c28' else 'c10' end as varchar(3)) as c"
             " from generate_series(200, 799) as n union all"
             " select cast('x' || k as varchar(8)), 'a', cast('c' || 10 + k as varchar(3))"
             " from generate_series(1, 17) as k;"));
  auto connection = openConnection(db.connectionString());
  ASSERT_TRUE(connection);
  ExtractionResult result = aggregateInDatabase(*connection, "select id, grp, c from o", false);
  ASSERT_TRUE(result.matrix) << lastError();
  std::string expected;
  for (int group = 100; group < 400; ++group) expected += "g" + std::to_string(group) + ": = (1(0.5),19(0.5))\n";
  const std::string written = test::groupsText(*result.matrix);
  const size_t groups = written.find("\ng100: ");
  ASSERT_TRUE(written.rfind("a: = ", 0) == 0 && groups != std::string::npos) << written;
  EXPECT_EQ(written.substr(groups + 1), expected);
}

TEST(AggregationPostgres, CancelInterruptsTheRunningAggregate) {
  PgDatabase db;
  ASSERT_TRUE(db.available());
  ASSERT_TRUE(db.run(test::kAggregatedTable));
  auto connection = openConnection(db.connectionString());
  ASSERT_TRUE(connection);
  test::ProgressRecorder progress;
  progress.cancelAtPoll = 2;
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
