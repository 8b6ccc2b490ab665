#include <gtest/gtest.h>

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

TEST(QueryStatementSqlite, AcceptedColumnTypesGetTheirKinds) {
  SqliteDatabase db(
      "create table t(v varchar(10), c char(3), d date, tm time, ts timestamp, dt datetime,"
      " i integer, s smallint, b bit, bo boolean, r real, f float, db double, n numeric(10,2));"
      "insert into t values('x', 'y', '2020-01-02', '10:11:12', '2020-01-02 10:11:12',"
      " '2021-03-04 05:06:07', 42, -3, 1, 0, 4.5, -0.25, 1e3, 7.25);");
  auto connection = openConnection(db.connectionString());
  ASSERT_TRUE(connection);
  QueryStatement statement;
  ASSERT_EQ(statement.execute(*connection, "select * from t"), 1) << statement.errorText();
  const std::vector<std::string> names = {"v", "c", "d", "tm", "ts", "dt", "i", "s", "b", "bo", "r", "f", "db", "n"};
  const std::vector<ColumnKind> kinds = {COLUMN_CHARACTER, COLUMN_CHARACTER, COLUMN_CHARACTER, COLUMN_CHARACTER,
                                         COLUMN_CHARACTER, COLUMN_CHARACTER, COLUMN_INTEGER,   COLUMN_INTEGER,
                                         COLUMN_INTEGER,   COLUMN_INTEGER,   COLUMN_REAL,      COLUMN_REAL,
                                         COLUMN_REAL,      COLUMN_REAL};
  ASSERT_EQ(statement.columnCount(), 14);
  for (int i = 0; i < 14; ++i) {
    EXPECT_EQ(statement.columnName(i), names[static_cast<size_t>(i)]);
    EXPECT_EQ(statement.columnKind(i), kinds[static_cast<size_t>(i)]) << names[static_cast<size_t>(i)];
  }
  ASSERT_EQ(statement.fetch(), 1);
  EXPECT_STREQ(statement.text(0), "x");
  EXPECT_STREQ(statement.text(2), "2020-01-02");
  EXPECT_STREQ(statement.text(3), "10:11:12");
  EXPECT_STREQ(statement.text(4), "2020-01-02 10:11:12");
  EXPECT_EQ(statement.number(6), 42.0);
  EXPECT_EQ(statement.number(7), -3.0);
  EXPECT_EQ(statement.number(10), 4.5);
  EXPECT_EQ(statement.number(11), -0.25);
  EXPECT_EQ(statement.number(12), 1000.0);
  EXPECT_EQ(statement.number(13), 7.25);
  EXPECT_EQ(statement.fetch(), 0);
  EXPECT_EQ(statement.status(), STATUS_OK);
  EXPECT_EQ(statement.errorText(), "");
}

TEST(QueryStatementSqlite, UnhandledColumnTypesAreRefused) {
  SqliteDatabase db(
      "create table t(ok integer, tx text, bi bigint, ti tinyint, bl blob, vb varbinary(8), lv longvarchar, wide "
      "varchar(256));"
      "insert into t values(1, 'a', 2, 3, x'00', x'01', 'b', 'c');");
  auto connection = openConnection(db.connectionString());
  ASSERT_TRUE(connection);
  for (const char* column : {"tx", "bi", "ti", "bl", "vb", "lv", "wide"}) {
    const auto [status, text] = failure(*connection, std::string("select ok, ") + column + " from t");
    EXPECT_EQ(status, STATUS_UNHANDLED_TYPE) << column;
    EXPECT_EQ(text, "Error: unhandled column type") << column;
  }
  // The SQLite driver reports every expression, casts included, as varchar:
  // the way round, but the column is then character whatever the cast says.
  QueryStatement statement;
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

TEST(QueryStatementSqlite, DriverErrorsReadTheirStateAndMessage) {
  SqliteDatabase db("create table t(a integer);");
  auto connection = openConnection(db.connectionString());
  ASSERT_TRUE(connection);
  QueryStatement statement;
  EXPECT_EQ(statement.execute(*connection, "select a frm t"), 0);
  EXPECT_EQ(statement.status(), STATUS_ODBC_ERROR);
  const std::string text = statement.errorText();
  // "Error <SQLSTATE>: <message>"
  ASSERT_GT(text.size(), 13u);
  EXPECT_EQ(text.substr(0, 6), "Error ");
  EXPECT_EQ(text.substr(11, 2), ": ");
  EXPECT_NE(text.find("syntax error"), std::string::npos) << text;
  EXPECT_EQ(text.find('\n'), std::string::npos) << text;
  EXPECT_EQ(statement.errorText(), "");
  statement.close();

  EXPECT_EQ(statement.execute(*connection, "select * from missing_table"), 0);
  EXPECT_NE(statement.errorText().find("no such table: missing_table"), std::string::npos);
  statement.close();

  // Fetching from a closed statement is an error, not a crash.
  EXPECT_EQ(statement.fetch(), 0);
  EXPECT_EQ(statement.status(), STATUS_ODBC_ERROR);
}

TEST(QueryStatementSqlite, ValuesAreTrimmedCutAndNullsTold) {
  const std::string pattern254 = [] {
    std::string text;
    while (text.size() < 300) text += "0123456789";
    return text.substr(0, 300);
  }();
  SqliteDatabase db(
      "create table t(id integer, v varchar(255));"
      "insert into t values(1, '  abc  ');"
      "insert into t values(4, '');"
      "insert into t values(5, NULL);"
      "insert into t values(6, '   ');"
      "insert into t values(7, '" +
      pattern254 +
      "');"
      "insert into t values(8, '" +
      std::string(254, 'y') +
      "');"
      "insert into t values(9, '" +
      std::string(250, 'z') + std::string(10, ' ') + "q');");
  auto connection = openConnection(db.connectionString());
  ASSERT_TRUE(connection);
  QueryStatement statement;
  ASSERT_EQ(statement.execute(*connection, "select id, v from t order by id"), 1) << statement.errorText();
  ASSERT_EQ(statement.columnKind(1), COLUMN_CHARACTER);

  // An empty string is a value, not NULL; 300 characters arrive as the
  // first 254; a cut inside the blanks is trimmed.
  EXPECT_EQ(test::fetchColumn(statement, 1),
            (std::vector<std::string>{"abc", "", "<NULL>", "", pattern254.substr(0, 254), std::string(254, 'y'),
                                      std::string(250, 'z')}));
}

TEST(QueryStatementSqlite, TextIsDecodedFromUtf8OrTakenAsLatin1) {
  SqliteDatabase db(
      "create table t(id integer, \"r\xC3\xA9gion\" varchar(255));"
      "insert into t values(1, 'caf\xC3\xA9');"
      "insert into t values(3, cast(x'636166E9' as text));"
      "insert into t values(4, '" +
      std::string(253, 'a') +
      "\xC3\xA9');"
      "insert into t values(5, '" +
      [] {
        std::string text;
        for (int i = 0; i < 200; ++i) text += "\xC3\xA9";
        return text;
      }() +
      "');");
  auto connection = openConnection(db.connectionString());
  ASSERT_TRUE(connection);
  QueryStatement statement;
  ASSERT_EQ(statement.execute(*connection, "select * from t order by id"), 1) << statement.errorText();
  EXPECT_EQ(statement.columnName(1), "r\xE9gion");
  // Bytes that are not UTF-8 stay as they are; a cut inside the last
  // character drops it; 254 fetched bytes hold 127 characters.
  EXPECT_EQ(test::fetchColumn(statement, 1),
            (std::vector<std::string>{"caf\xE9", "caf\xE9", std::string(253, 'a'), std::string(127, '\xE9')}));
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

  clearError();
  EXPECT_EQ(Connection::open("Driver=No Such Driver;Database=x"), nullptr);
  EXPECT_NE(lastError(), "");
}

}  // namespace
}  // namespace velda
