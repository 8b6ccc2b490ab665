// Aggregation inside the database of rows that never repeat an individual,
// on the SQLite ODBC driver.
#include "db/OneRowPerIndividual.h"
#include "support/OpenConnection.h"
#include "support/SqliteDatabase.h"

namespace velda {
namespace {

TEST(AggregationSqlite, OneRowPerIndividualGivesTheClientSideAssertions) {
  test::SqliteDatabase db(test::generatedTableSql() + test::oneRowPerIndividualSql());
  auto connection = test::openConnection(db.connectionString());
  ASSERT_TRUE(connection);
  test::expectOneRowPerIndividualAsClientSide(*connection, [&](const std::string& sql) { return db.run(sql); });
}

}  // namespace
}  // namespace velda
