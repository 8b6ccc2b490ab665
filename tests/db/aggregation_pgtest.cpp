// Aggregation inside the database, on the PostgreSQL ODBC driver.
#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include "common/Progress.h"
#include "db/AggregationChecks.h"
#include "support/OpenConnection.h"
#include "support/PgDatabase.h"

namespace velda {
namespace {

using test::openConnection;
using test::PgDatabase;

TEST(AggregationPostgres, GivesTheClientSideAssertionsAndRefusesWhatBreaksTheLayout) {
  PgDatabase db;
  ASSERT_TRUE(db.available());
  test::expectAggregationOnDriver(db, "select id, grp, cast(1 as bigint) from t");
}

// Says Cancel at the second poll, as a user pressing the button would.
class CancellingProgress : public ProgressTarget {
 public:
  void setLine1(const std::string&) override {}
  void setLine2(const std::string&) override {}
  void enableCancel(bool) override {}
  bool cancelRequested() override { return ++polls == 2; }
  int polls = 0;
};

TEST(AggregationPostgres, CancelInterruptsTheRunningAggregate) {
  PgDatabase db;
  ASSERT_TRUE(db.available());
  ASSERT_TRUE(db.run(test::kAggregatedTable));
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
