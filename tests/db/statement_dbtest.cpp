#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "common/LastError.h"
#include "db/Connection.h"
#include "db/QueryStatement.h"
#include "db/StatementColumn.h"
#include "support/OpenConnection.h"
#include "support/SqliteDatabase.h"

namespace velda {
namespace {

using test::openConnection;
using test::SqliteDatabase;

// Executes a request that must fail and returns its status and text.
std::pair<int, std::string> failure(const Connection& connection, const std::string& sql) {
  QueryStatement statement;
  EXPECT_EQ(statement.execute(connection, sql), 0) << sql;
  EXPECT_EQ(statement.columnCount(), 0) << sql;
  const int status = statement.status();
  std::string text = statement.errorText();
  EXPECT_EQ(statement.status(), STATUS_OK);
  statement.close();
  return {status, text};
}

// Every accepted type gets its kind and its value; the others are refused
// before a row is read.
TEST(QueryStatementSqlite, ColumnTypesGetTheirKindsOrAreRefused) {
  SqliteDatabase db(
      "create table t(v varchar(10), c char(3), d date, tm time, ts timestamp, dt datetime,"
      " i integer, s smallint, b bit, bo boolean, r real, f float, db double, n numeric(10,2),"
      " tx text, bi bigint, ti tinyint, bl blob, vb varbinary(8), lv longvarchar, wide varchar(256));"
      "insert into t values('x', 'y', '2020-01-02', '10:11:12', '2020-01-02 10:11:12',"
      " '2021-03-04 05:06:07', 42, -3, 1, 0, 4.5, -0.25, 1e3, 7.25, 'a', 2, 3, x'00', x'01', 'b', 'c');");
  auto connection = openConnection(db.connectionString());
  ASSERT_TRUE(connection);
  const std::vector<std::string> names = {"v", "c", "d", "tm", "ts", "dt", "i", "s", "b", "bo", "r", "f", "db", "n"};
  const std::vector<ColumnKind> kinds = {COLUMN_CHARACTER, COLUMN_CHARACTER, COLUMN_CHARACTER, COLUMN_CHARACTER,
                                         COLUMN_CHARACTER, COLUMN_CHARACTER, COLUMN_INTEGER,   COLUMN_INTEGER,
                                         COLUMN_INTEGER,   COLUMN_INTEGER,   COLUMN_REAL,      COLUMN_REAL,
                                         COLUMN_REAL,      COLUMN_REAL};
  const std::vector<std::string> values = {
      "x",   "y",     "2020-01-02", "10:11:12", "2020-01-02 10:11:12", "2021-03-04 05:06:07", "42", "-3", "1", "0",
      "4.5", "-0.25", "1000",       "7.25"};
  QueryStatement statement;
  ASSERT_EQ(statement.execute(*connection, "select v, c, d, tm, ts, dt, i, s, b, bo, r, f, db, n from t"), 1)
      << statement.errorText();
  ASSERT_EQ(statement.columnCount(), 14);
  ASSERT_EQ(statement.fetch(), 1);
  for (int i = 0; i < 14; ++i) {
    const auto column = static_cast<size_t>(i);
    EXPECT_EQ(statement.columnName(i), names[column]);
    EXPECT_EQ(statement.columnKind(i), kinds[column]) << names[column];
    std::ostringstream value;
    if (kinds[column] == COLUMN_CHARACTER)
      value << statement.text(i);
    else
      value << statement.number(i);
    EXPECT_EQ(value.str(), values[column]) << names[column];
  }
  EXPECT_EQ(statement.fetch(), 0);
  EXPECT_EQ(statement.status(), STATUS_OK);
  EXPECT_EQ(statement.errorText(), "");

  for (const char* column : {"tx", "bi", "ti", "bl", "vb", "lv", "wide"}) {
    const auto [status, text] = failure(*connection, std::string("select v, ") + column + " from t");
    EXPECT_EQ(status, STATUS_UNHANDLED_TYPE) << column;
    EXPECT_EQ(text, "Error: unhandled column type") << column;
  }
  // The SQLite driver reports every expression, casts included, as varchar:
  // the way round, but the column is then character whatever the cast says.
  ASSERT_EQ(statement.execute(*connection, "select cast(bi as integer) as bi, tx || '' as tx from t"), 1);
  EXPECT_EQ(statement.columnKind(0), COLUMN_CHARACTER);
  EXPECT_EQ(statement.columnKind(1), COLUMN_CHARACTER);
  ASSERT_EQ(statement.fetch(), 1);
  EXPECT_STREQ(statement.text(0), "2");
}

TEST(QueryStatementSqlite, OnlyRequestsStartingWithSelectAreRun) {
  SqliteDatabase db("create table t(a integer); insert into t values(5);");
  auto connection = openConnection(db.connectionString());
  ASSERT_TRUE(connection);
  for (const char* sql : {"SELECT a FROM t", "sElEcT a from t", "select\ta from t", "select*from t"}) {
    QueryStatement statement;
    EXPECT_EQ(statement.execute(*connection, sql), 1) << sql;
    ASSERT_EQ(statement.fetch(), 1) << sql;
    EXPECT_STREQ(statement.text(0), "5") << sql;
  }
  for (const char* sql : {" select a from t", "\nselect a from t", "with x as (select 1) select * from x", "selec", "",
                          "update t set a = 1", "(select a from t)"}) {
    const auto [status, text] = failure(*connection, sql);
    EXPECT_EQ(status, STATUS_NOT_SELECT) << sql;
    EXPECT_EQ(text, "Error: request must be a 'select'") << sql;
  }
  // Six bytes pass the check; the driver then refuses the request.
  EXPECT_EQ(failure(*connection, "select").first, STATUS_ODBC_ERROR);
  // The check does not stop a statement that merely starts with the word.
  EXPECT_EQ(failure(*connection, "selectx a from t").first, STATUS_ODBC_ERROR);
}

TEST(QueryStatementSqlite, TextsAreTrimmedCutDecodedAndNullsTold) {
  std::string pattern;
  while (pattern.size() < 300) pattern += "0123456789";
  std::string accents;
  for (int i = 0; i < 200; ++i) accents += "\xC3\xA9";
  SqliteDatabase db(
      "create table t(id integer, \"r\xC3\xA9gion\" varchar(255));"
      "insert into t values(1, '  abc  '), (2, ''), (3, NULL), (4, '   '), (5, '" +
      pattern + "'), (6, '" + std::string(254, 'y') + "'), (7, '" + std::string(250, 'z') + std::string(10, ' ') +
      "q'), (8, 'caf\xC3\xA9'), (9, cast(x'636166E9' as text)), (10, '" + std::string(253, 'a') + "\xC3\xA9'), (11, '" +
      accents + "');");
  auto connection = openConnection(db.connectionString());
  ASSERT_TRUE(connection);
  QueryStatement statement;
  ASSERT_EQ(statement.execute(*connection, "select * from t order by id"), 1) << statement.errorText();
  ASSERT_EQ(statement.columnKind(1), COLUMN_CHARACTER);
  EXPECT_EQ(statement.columnName(1), "r\xE9gion");
  // An empty string is a value, not NULL; 300 characters arrive as the
  // first 254; a cut inside the blanks is trimmed. Bytes that are not UTF-8
  // stay as they are; a cut inside the last character drops it; 254
  // fetched bytes hold 127 characters.
  EXPECT_EQ(test::fetchColumn(statement, 1),
            (std::vector<std::string>{"abc", "", "<NULL>", "", pattern.substr(0, 254), std::string(254, 'y'),
                                      std::string(250, 'z'), "caf\xE9", "caf\xE9", std::string(253, 'a'),
                                      std::string(127, '\xE9')}));
}

TEST(QueryStatementSqlite, ConnectionsAcceptTheOdbcPrefixAndReportFailures) {
  SqliteDatabase db("create table t(a integer); insert into t values(1);");
  auto connection = openConnection("ODBC;" + db.connectionString());
  ASSERT_TRUE(connection);
  EXPECT_EQ(connection->connectionString(), db.connectionString());
  QueryStatement statement;
  ASSERT_EQ(statement.execute(*connection, "select a from t"), 1);
  ASSERT_EQ(statement.fetch(), 1);
  // A second execute on the same statement starts afresh.
  ASSERT_EQ(statement.execute(*connection, "select a, a + 1 as b from t"), 1);
  EXPECT_EQ(statement.columnCount(), 2);
  ASSERT_EQ(statement.fetch(), 1);
  EXPECT_STREQ(statement.text(1), "2");
  statement.close();
  EXPECT_EQ(statement.columnCount(), 0);
  // Fetching from a closed statement is an error, not a crash.
  EXPECT_EQ(statement.fetch(), 0);
  EXPECT_EQ(statement.status(), STATUS_ODBC_ERROR);

  clearError();
  EXPECT_EQ(Connection::open("Driver=No Such Driver;Database=x"), nullptr);
  EXPECT_NE(lastError(), "");
}

}  // namespace
}  // namespace velda
