// Aggregation inside the database of rows that never repeat an individual,
// on the PostgreSQL ODBC driver.
#include "db/OneRowPerIndividual.h"
#include "support/OpenConnection.h"
#include "support/PgDatabase.h"

namespace velda {
namespace {

TEST(AggregationPostgres, OneRowPerIndividualGivesTheClientSideAssertions) {
  test::PgDatabase db;
  ASSERT_TRUE(db.available());
  ASSERT_TRUE(db.run(test::generatedTableSql()));
  ASSERT_TRUE(db.run(test::oneRowPerIndividualSql()));
  auto connection = test::openConnection(db.connectionString());
  ASSERT_TRUE(connection);
  test::expectOneRowPerIndividualAsClientSide(*connection, [&](const std::string& sql) { return db.run(sql); });
}

}  // namespace
}  // namespace velda
