#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "common/LastError.h"
#include "db/ColumnView.h"
#include "db/Connection.h"
#include "db/QueryStatement.h"
#include "db/StatementColumn.h"
#include "db/TableCatalog.h"
#include "support/OpenConnection.h"
#include "support/PgDatabase.h"

namespace velda {
namespace {

using test::openConnection;
using test::PgDatabase;

TEST(QueryStatementPostgres, CastsGiveEveryAcceptedKind) {
  PgDatabase db;
  ASSERT_TRUE(db.available());
  auto connection = openConnection(db.connectionString());
  ASSERT_TRUE(connection);
  QueryStatement statement;
  ASSERT_EQ(statement.execute(*connection,
                              "select 1::smallint as s, 2::integer as i, 4.5::real as r, 5.5::double precision as d,"
                              " 6.25::numeric(10,2) as n, 'x'::varchar(10) as v, 'y'::char(3) as c,"
                              " date '2020-01-02' as dt, time '10:11:12' as tm,"
                              " timestamp '2020-01-02 10:11:12' as ts, true as yes, false as no"),
            1)
      << statement.errorText();
  // The driver hands booleans over as varchar "1"/"0" unless the connection
  // string says BoolsAsChar=0 (then SQL_BIT, an integer column).
  const std::vector<ColumnKind> kinds = {COLUMN_INTEGER,   COLUMN_INTEGER,   COLUMN_REAL,      COLUMN_REAL,
                                         COLUMN_REAL,      COLUMN_CHARACTER, COLUMN_CHARACTER, COLUMN_CHARACTER,
                                         COLUMN_CHARACTER, COLUMN_CHARACTER, COLUMN_CHARACTER, COLUMN_CHARACTER};
  const std::vector<std::string> texts = {
      "1", "2", "4.5", "5.5", "6.25", "x", "y", "2020-01-02", "10:11:12", "2020-01-02 10:11:12", "1", "0"};
  ASSERT_EQ(statement.columnCount(), 12);
  ASSERT_EQ(statement.fetch(), 1);
  for (int i = 0; i < 12; ++i) {
    EXPECT_EQ(statement.columnKind(i), kinds[static_cast<size_t>(i)]) << statement.columnName(i);
    EXPECT_EQ(statement.text(i), texts[static_cast<size_t>(i)]) << statement.columnName(i);
  }
  EXPECT_EQ(statement.columnName(11), "no");
  EXPECT_EQ(statement.fetch(), 0);
  EXPECT_EQ(statement.status(), STATUS_OK);
  statement.close();

  auto bitBooleans = openConnection(db.connectionString() + ";BoolsAsChar=0");
  ASSERT_TRUE(bitBooleans);
  ASSERT_EQ(statement.execute(*bitBooleans, "select true as yes"), 1);
  EXPECT_EQ(statement.columnKind(0), COLUMN_INTEGER);
  ASSERT_EQ(statement.fetch(), 1);
  EXPECT_EQ(statement.number(0), 1.0);
}

// The driver reports varchar longer than 255 as SQL_LONGVARCHAR; varchar
// without a length is 255.
TEST(QueryStatementPostgres, BigintTextLongVarcharUuidAndBinaryAreRefused) {
  PgDatabase db;
  ASSERT_TRUE(db.available());
  auto connection = openConnection(db.connectionString());
  ASSERT_TRUE(connection);
  for (const char* sql : {"select 1::integer, 3::bigint", "select 't'::text", "select 'x'::varchar(256)",
                          "select gen_random_uuid()", "select 'abc'::bytea"}) {
    QueryStatement statement;
    EXPECT_EQ(statement.execute(*connection, sql), 0) << sql;
    EXPECT_EQ(statement.status(), STATUS_UNHANDLED_TYPE) << sql;
    EXPECT_EQ(statement.columnCount(), 0) << sql;
    EXPECT_EQ(statement.errorText(), "Error: unhandled column type") << sql;
  }
  // The casts that make them usable.
  QueryStatement statement;
  ASSERT_EQ(statement.execute(*connection, "select 3::bigint::integer, 't'::text::varchar(20)"), 1);
  EXPECT_EQ(statement.columnKind(0), COLUMN_INTEGER);
  EXPECT_EQ(statement.columnKind(1), COLUMN_CHARACTER);
}

TEST(QueryStatementPostgres, ValuesAreCutTrimmedAndNullsTold) {
  PgDatabase db;
  ASSERT_TRUE(db.available());
  ASSERT_TRUE(
      db.run("create table t(id integer, v varchar);"
             "insert into t values (1, '  abc  '), (2, NULL), (3, ''), (4, repeat('0123456789', 30)),"
             " (5, E'\\t\\n\\f\\b caf\\u00e9 \\b\\f\\n\\t'), (6, E'\\rx\\r');"));
  auto connection = openConnection(db.connectionString());
  ASSERT_TRUE(connection);
  QueryStatement statement;
  ASSERT_EQ(statement.execute(*connection, "select id, v from t order by id"), 1) << statement.errorText();
  std::string first254;
  while (first254.size() < 254) first254 += "0123456789";
  first254.resize(254);
  EXPECT_EQ(test::fetchColumn(statement, 1),
            (std::vector<std::string>{"abc", "<NULL>", "", first254, "caf\xE9", "\rx\r"}));
}

TEST(QueryStatementPostgres, ErrorsCarryStateMessageAndTheNumberHint) {
  PgDatabase db;
  ASSERT_TRUE(db.available());
  ASSERT_TRUE(
      db.run("create function bad_number() returns integer as $$ begin"
             " raise exception 'bad number' using errcode = '22005'; end $$ language plpgsql;"));
  auto connection = openConnection(db.connectionString());
  ASSERT_TRUE(connection);
  QueryStatement statement;
  EXPECT_EQ(statement.execute(*connection, "select 1 frm x"), 0);
  EXPECT_EQ(statement.status(), STATUS_ODBC_ERROR);
  EXPECT_EQ(statement.errorText(),
            "Error 42601: ERROR: syntax error at or near \"x\";\nError while executing the query");
  statement.close();

  EXPECT_EQ(statement.execute(*connection, "select bad_number()"), 0);
  EXPECT_EQ(statement.errorText(),
            "Error 22005: ERROR: bad number;\nError while executing the query\n"
            "If you are connected to an Oracle database,\n"
            "this error is due to varaibles of type 'number(p,s)'.\n"
            "Try to use 'to_char()' or 'to_number()'.");
  EXPECT_EQ(statement.errorText(), "");
}

TEST(ColumnViewPostgres, DescribesTypesNullabilityAndUnknownTypes) {
  PgDatabase db;
  ASSERT_TRUE(db.available());
  ASSERT_TRUE(
      db.run("create table towns(town varchar(40) not null, people integer, area real, code char(3),"
             " founded date, tag uuid, share numeric(5,2), big bigint);"
             "create table \"town list\"(a integer);"));
  auto connection = openConnection(db.connectionString());
  ASSERT_TRUE(connection);
  const ColumnView view = describeTableColumns(*connection, "towns");
  ASSERT_TRUE(view.ok) << view.errorText;
  const std::vector<std::vector<std::string>> expected = {
      {"town", "SQL_VARCHAR", "40", "No"},  {"people", "SQL_INTEGER", "10", "Yes"},   {"area", "SQL_REAL", "9", "Yes"},
      {"code", "SQL_CHAR", "3", "Yes"},     {"founded", "SQL_DATETIME", "10", "Yes"}, {"tag", "?", "?", "?"},
      {"share", "SQL_NUMERIC", "5", "Yes"}, {"big", "SQL_BIGINT", "19", "Yes"},
  };
  ASSERT_EQ(view.columns.size(), expected.size());
  for (size_t i = 0; i < expected.size(); ++i) {
    const ColumnDescription& column = view.columns[i];
    EXPECT_EQ((std::vector<std::string>{column.name, column.typeName, column.precision, column.nullable}), expected[i]);
  }
  // PostgreSQL does not read the square brackets that a blank calls for.
  const ColumnView quoted = describeTableColumns(*connection, "town list");
  EXPECT_FALSE(quoted.ok);
  EXPECT_EQ(quoted.errorCaption, "Warning");
  EXPECT_NE(quoted.errorText.find("syntax error"), std::string::npos) << quoted.errorText;
}

TEST(TableCatalogPostgres, ListsTheTablesAndViewsOfTheDatabase) {
  PgDatabase db;
  ASSERT_TRUE(db.available());
  ASSERT_TRUE(
      db.run("create table zebra(a integer); create table apple(a integer);"
             "create index apple_a on apple(a); create view middle as select a from apple;"));
  auto connection = openConnection(db.connectionString());
  ASSERT_TRUE(connection);
  std::vector<CatalogEntry> entries;
  ASSERT_EQ(listTablesAndViews(*connection, entries), 1) << lastError();
  std::vector<std::string> lines;
  for (const CatalogEntry& entry : entries) lines.push_back(entry.type + " " + entry.name);
  EXPECT_EQ(lines, (std::vector<std::string>{"TABLE apple", "TABLE zebra", "VIEW middle"}));
  EXPECT_EQ(dataSourceName(*connection), "not available");
}

}  // namespace
}  // namespace velda
