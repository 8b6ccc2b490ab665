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

TEST(AggregationSqlite, OneRowPerIndividualGivesTheClientSideAssertions) {
  test::SqliteDatabase db(test::generatedTableSql() + test::oneRowPerIndividualSql());
  auto connection = test::openConnection(db.connectionString());
  ASSERT_TRUE(connection);
  test::expectOneRowPerIndividualAsClientSide(*connection, [&](const std::string& sql) { return db.run(sql); });
}

}  // namespace
}  // namespace velda
