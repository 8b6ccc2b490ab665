// Aggregation inside the database, on the PostgreSQL ODBC driver.
#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include "common/Progress.h"
#include "db/AggregationChecks.h"
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

TEST(AggregationPostgres, OneRowPerIndividualGivesTheClientSideAssertions) {
  PgDatabase db;
  ASSERT_TRUE(db.available());
  ASSERT_TRUE(db.run(test::generatedTableSql()));
  ASSERT_TRUE(db.run(test::oneRowPerIndividualSql()));
  auto connection = openConnection(db.connectionString());
  ASSERT_TRUE(connection);
  test::expectOneRowPerIndividualAsClientSide(*connection, [&](const std::string& sql) { return db.run(sql); });
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
