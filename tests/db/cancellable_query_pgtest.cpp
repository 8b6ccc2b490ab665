#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include "common/LastError.h"
#include "common/Progress.h"
#include "db/CancellableQuery.h"
#include "db/Connection.h"
#include "support/OpenConnection.h"
#include "support/PgDatabase.h"
#include "support/Recorders.h"

namespace velda {
namespace {

using test::openConnection;
using test::PgDatabase;

// Cancels land on a statement that the server still executes (the sleep)
// and on one whose many rows are being read; neither may harm the
// connection's later statements.
TEST(CancellableQueryPostgres, CancelsWhileExecutingOrReadingLeaveTheConnectionUsable) {
  PgDatabase db;
  ASSERT_TRUE(db.available());
  auto connection = openConnection(db.connectionString());
  ASSERT_TRUE(connection);
  const auto start = std::chrono::steady_clock::now();
  {
    test::ProgressRecorder cancel;
    cancel.cancel = true;
    ScopedProgressTarget scope(&cancel);
    for (int round = 0; round < 8; ++round) {
      for (const char* sql : {"select pg_sleep(60)", "select g, repeat('x', 200) from generate_series(1, 5000000) g"}) {
        EXPECT_EQ(runCancellableQuery(*connection, sql, [](const TextRow&) { return true; }), 0) << sql;
        EXPECT_EQ(lastError(), "Aggregation cancelled") << sql;
      }
    }
  }
  // Not one of the cancelled statements ran to its end.
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(50));
  std::string sum;
  ASSERT_EQ(runCancellableQuery(*connection, "select sum(g) from generate_series(1, 100) g",
                                [&](const TextRow& row) {
                                  sum = row.at(0).value_or("NULL");
                                  return true;
                                }),
            1)
      << lastError();
  EXPECT_EQ(sum, "5050");
}

}  // namespace
}  // namespace velda
