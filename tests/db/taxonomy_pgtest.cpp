#include <gtest/gtest.h>

#include <string>

#include "common/LastError.h"
#include "db/Connection.h"
#include "db/QueryStatement.h"
#include "db/TaxonomyQuery.h"
#include "support/HandMatrix.h"
#include "support/OpenConnection.h"
#include "support/PgDatabase.h"

namespace velda {
namespace {

TEST(TaxonomyQueryPostgres, VarcharPathsBuildTheHierarchy) {
  test::PgDatabase db;
  ASSERT_TRUE(db.available());
  ASSERT_TRUE(
      db.run("create table tree(n integer, child varchar(10), parent varchar(10));"
             "insert into tree values(1,'a','X'),(2,'b','X'),(3,'X','Y'),(4,'a','X');"));
  auto connection = test::openConnection(db.connectionString());
  ASSERT_TRUE(connection);

  test::HandMatrix m;
  m.categorical("kind", 1).mode = MODE_CARDINALITY;
  m.holdCells();
  Assertion& all = m.group("all", {&m.person("p1", {"a"}, 2), &m.person("p2", {"b"}, 3), &m.person("p3", {"c"})});
  auto& kind = static_cast<CategoricalVariable&>(m.matrix->variable(0));

  QueryStatement statement;
  ASSERT_EQ(statement.execute(*connection, "select child, parent from tree order by n"), 1) << statement.errorText();
  ASSERT_EQ(applyTaxonomy(*m.matrix, statement, 0), 2) << lastError();
  EXPECT_EQ(kind.taxonomyRoot->name, "root_");
  EXPECT_EQ(m.written(all, 0), "(1(2),2(3),3(1))");
  EXPECT_EQ(m.matrix->taxonomyCount(), 1);
}

}  // namespace
}  // namespace velda
