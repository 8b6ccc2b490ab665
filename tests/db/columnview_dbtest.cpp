#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "db/ColumnView.h"
#include "db/Connection.h"
#include "support/OpenConnection.h"
#include "support/SqliteDatabase.h"

namespace velda {
namespace {

using test::openConnection;
using test::SqliteDatabase;

std::vector<std::string> line(const ColumnDescription& column) {
  return {column.name, column.typeName, column.precision, column.nullable};
}

TEST(ColumnView, TypeNamesCoverMinusSevenToTwelve) {
  EXPECT_STREQ(sqlTypeName(-7), "SQL_BIT");
  EXPECT_STREQ(sqlTypeName(-4), "SQL_LONGVARBINARY");
  EXPECT_STREQ(sqlTypeName(0), "SQL_UNKNOUN");
  EXPECT_STREQ(sqlTypeName(9), "SQL_DATETIME");
  EXPECT_STREQ(sqlTypeName(12), "SQL_VARCHAR");
  EXPECT_EQ(sqlTypeName(-8), nullptr);
  EXPECT_EQ(sqlTypeName(13), nullptr);
  EXPECT_EQ(sqlTypeName(93), nullptr);
}

TEST(ColumnView, DescribesEveryColumnOfATable) {
  SqliteDatabase db(
      "create table \"town list\"(town varchar(40) not null, people integer, area real, founded date,"
      " notes text, big bigint, a_column_name_longer_than_thirty_bytes varchar(5));"
      "create table \"a-b\"(x smallint);");
  auto connection = openConnection(db.connectionString());
  ASSERT_TRUE(connection);
  const ColumnView view = describeTableColumns(*connection, "town list");
  ASSERT_TRUE(view.ok) << view.errorText;
  const std::vector<std::vector<std::string>> expected = {
      {"town", "SQL_VARCHAR", "40", "Yes"},  // the SQLite driver calls every column nullable
      {"people", "SQL_INTEGER", "10", "Yes"},
      {"area", "SQL_DOUBLE", "54", "Yes"},
      {"founded", "SQL_DATETIME", "10", "Yes"},
      {"notes", "SQL_LONGVARCHAR", "65536", "Yes"},  // listed although extraction refuses it
      {"big", "SQL_BIGINT", "20", "Yes"},
      {"a_column_name_longer_than_thi", "SQL_VARCHAR", "5", "Yes"},
  };
  ASSERT_EQ(view.columns.size(), expected.size());
  for (size_t i = 0; i < expected.size(); ++i) EXPECT_EQ(line(view.columns[i]), expected[i]);

  const ColumnView hyphen = describeTableColumns(*connection, "a-b");
  ASSERT_TRUE(hyphen.ok) << hyphen.errorText;
  ASSERT_EQ(hyphen.columns.size(), 1u);
  EXPECT_EQ(line(hyphen.columns[0]), (std::vector<std::string>{"x", "SQL_SMALLINT", "6", "Yes"}));

  const ColumnView missing = describeTableColumns(*connection, "missing");
  EXPECT_FALSE(missing.ok);
  EXPECT_TRUE(missing.columns.empty());
  EXPECT_EQ(missing.errorCaption, "Warning");
  EXPECT_NE(missing.errorText.find("no such table: missing"), std::string::npos) << missing.errorText;
}

}  // namespace
}  // namespace velda
