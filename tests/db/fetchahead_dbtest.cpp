#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "db/Connection.h"
#include "db/FetchAhead.h"
#include "db/QueryStatement.h"
#include "support/OpenConnection.h"
#include "support/SqliteDatabase.h"

namespace velda {
namespace {

using test::openConnection;
using test::SqliteDatabase;

constexpr int kRows = 5000;

// Row i's value: NULL, blanks and a tab around "x<i>", 300 letters, a UTF-8
// accented letter, or "v<i>".
const char* const kTable =
    "create table t(id integer, v varchar(250));"
    "with recursive n(i) as (select 1 union all select i + 1 from n where i < 5000)"
    " insert into t select i, case when i % 7 = 0 then null"
    " when i % 11 = 0 then '  x' || i || char(9)"
    " when i % 13 = 0 then substr(replace(hex(zeroblob(300)), '0', 'w'), 1, 300)"
    " when i % 17 = 0 then '\xC3\xA9' || i"
    " else 'v' || i end from n;";

// The same value as the extraction must see it: trimmed, cut to 254 bytes,
// in Latin-1.
const char* expectedValue(int i, std::string& text) {
  if (i % 7 == 0) return nullptr;
  if (i % 11 == 0)
    text = "x" + std::to_string(i);
  else if (i % 13 == 0)
    text = std::string(254, 'w');
  else if (i % 17 == 0)
    text = "\xE9" + std::to_string(i);
  else
    text = "v" + std::to_string(i);
  return text.c_str();
}

// Rows span several blocks, the ring of blocks is reused, and every value is
// cleaned as a direct fetch cleans it; a row too wide for many per block
// comes whole.
TEST(FetchAheadSqlite, RowsComeInOrderWithTheirTextsCleaned) {
  SqliteDatabase db(kTable);
  auto connection = openConnection(db.connectionString());
  ASSERT_TRUE(connection);
  QueryStatement statement;
  ASSERT_TRUE(statement.execute(*connection, "select id, v from t order by id")) << statement.errorText();
  {
    FetchAhead rows(statement);
    const char* texts[2] = {};
    std::string expected;
    int count = 0;
    while (rows.next(texts)) {
      ++count;
      ASSERT_STREQ(texts[0], std::to_string(count).c_str());
      const char* value = expectedValue(count, expected);
      if (!value) {
        ASSERT_EQ(texts[1], nullptr) << count;
      } else {
        ASSERT_NE(texts[1], nullptr) << count;
        ASSERT_EQ(std::string(texts[1]), expected) << count;
      }
    }
    EXPECT_EQ(count, kRows);
    EXPECT_FALSE(rows.next(texts));
  }
  EXPECT_EQ(statement.status(), STATUS_OK);

  // 120 columns of 254 letters: a block holds only a few such rows.
  std::string wide = "select id";
  for (int c = 0; c < 120; ++c)
    wide += ", substr(replace(hex(zeroblob(254)), '0', char(65 + (id + " + std::to_string(c) + ") % 26)), 1, 254)";
  wide += " from t where id <= 40 order by id";
  ASSERT_TRUE(statement.execute(*connection, wide)) << statement.errorText();
  FetchAhead rows(statement);
  std::vector<const char*> texts(121);
  int count = 0;
  while (rows.next(texts.data())) {
    ++count;
    for (int c = 0; c < 120; ++c)
      ASSERT_EQ(std::string(texts[static_cast<size_t>(c + 1)]),
                std::string(254, static_cast<char>('A' + (count + c) % 26)))
          << count << " " << c;
  }
  EXPECT_EQ(count, 40);
}

// A driver error ends the rows after those before it, with the driver's
// message; a reader left after a few rows stops its thread.
TEST(FetchAheadSqlite, AnErrorEndsTheRowsAndAnEarlyStopDoesNotWait) {
  SqliteDatabase db(kTable);
  auto connection = openConnection(db.connectionString());
  ASSERT_TRUE(connection);
  QueryStatement statement;
  ASSERT_TRUE(statement.execute(
      *connection, "select id, case when id = 3000 then abs(id - 9223372036854775807 - 3001) else v end from t"))
      << statement.errorText();
  int count = 0;
  {
    FetchAhead rows(statement);
    const char* texts[2] = {};
    while (rows.next(texts)) ++count;
  }
  EXPECT_EQ(count, 2999);
  EXPECT_EQ(statement.status(), STATUS_ODBC_ERROR);
  EXPECT_NE(statement.errorText().find("integer overflow"), std::string::npos);

  ASSERT_TRUE(statement.execute(*connection, "select a.id, b.id from t a, t b")) << statement.errorText();
  FetchAhead rows(statement);
  const char* texts[2] = {};
  for (int i = 0; i < 10; ++i) ASSERT_TRUE(rows.next(texts));
  EXPECT_STREQ(texts[0], "1");
}

}  // namespace
}  // namespace velda
