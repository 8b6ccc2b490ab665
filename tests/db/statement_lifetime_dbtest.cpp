#include <gtest/gtest.h>

#include <string>

#include "db/Connection.h"
#include "db/QueryStatement.h"
#include "support/OpenConnection.h"
#include "support/SqliteDatabase.h"

namespace velda {
namespace {

using test::openConnection;
using test::SqliteDatabase;

// Disconnecting frees the handles of every statement of the connection: a
// statement that outlives its connection must be closed with it, not keep a
// handle into freed memory that its next fetch or its destructor would use.
TEST(QueryStatementLifetime, ClosingTheConnectionClosesItsStatements) {
  SqliteDatabase db("create table t (v integer); insert into t values (7);");
  QueryStatement open;
  QueryStatement reopened;
  {
    auto connection = openConnection(db.connectionString());
    ASSERT_TRUE(connection);
    ASSERT_EQ(open.execute(*connection, "select v from t"), 1);
    ASSERT_EQ(reopened.execute(*connection, "select v, v from t"), 1);
    // A statement run again, or closed by hand, is not closed twice.
    ASSERT_EQ(reopened.execute(*connection, "select v from t"), 1);
    QueryStatement closed;
    ASSERT_EQ(closed.execute(*connection, "select v from t"), 1);
    closed.close();
  }
  for (QueryStatement* statement : {&open, &reopened}) {
    EXPECT_EQ(statement->columnCount(), 0);
    EXPECT_EQ(statement->fetch(), 0);
    EXPECT_EQ(statement->status(), STATUS_ODBC_ERROR);
  }
  // The statement serves another connection as a new one would.
  auto other = openConnection(db.connectionString());
  ASSERT_TRUE(other);
  ASSERT_EQ(open.execute(*other, "select v + 1 from t"), 1);
  ASSERT_EQ(open.fetch(), 1);
  EXPECT_STREQ(open.text(0), "8");
}

}  // namespace
}  // namespace velda
