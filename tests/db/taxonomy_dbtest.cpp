#include <gtest/gtest.h>

#include <string>

#include "common/LastError.h"
#include "db/Connection.h"
#include "db/QueryStatement.h"
#include "db/TaxonomyQuery.h"
#include "support/HandMatrix.h"
#include "support/OpenConnection.h"
#include "support/SqliteDatabase.h"

namespace velda {
namespace {

const char* const kTables =
    "create table tree(child varchar(10), parent varchar(10));"
    "insert into tree values('a','M'),('M','b'),('b','T'),('c','T'),('a','M');"
    "create table cycle(child varchar(10), parent varchar(10));"
    "insert into cycle values('a','b'),('b','a');"
    "create table self(child varchar(10), parent varchar(10));"
    "insert into self values('a','a');"
    "create table differs(child varchar(10), parent varchar(10));"
    "insert into differs values('a','b'),('a','c');"
    "create table nulls(child varchar(10), parent varchar(10), top varchar(10));"
    "insert into nulls values('a','M','T'),('b',NULL,'T');"
    "create table numbered(child varchar(10), parent integer);"
    "insert into numbered values('a',1);";

// kind holds a, b, c, d with weights 2, 3, 1, 4 in one assertion; age is
// quantitative.
struct TaxonomyQueryTest : ::testing::Test {
  TaxonomyQueryTest() : db(kTables), connection(test::openConnection(db.connectionString())) {
    m.categorical("kind", 1).mode = MODE_CARDINALITY;
    m.quantitative("age");
    m.holdCells();
    all = &m.group("all", {&m.person("p1", {"a", "1"}, 2), &m.person("p2", {"b", "2"}, 3),
                           &m.person("p3", {"c", "3"}, 1), &m.person("p4", {"d", "4"}, 4)});
  }

  int apply(const std::string& sql, int32_t variable = 0) {
    QueryStatement statement;
    EXPECT_EQ(statement.execute(*connection, sql), 1) << statement.errorText();
    return applyTaxonomy(*m.matrix, statement, variable);
  }

  CategoricalVariable& kind() { return static_cast<CategoricalVariable&>(m.matrix->variable(0)); }

  test::SqliteDatabase db;
  std::unique_ptr<Connection> connection;
  test::HandMatrix m;
  Assertion* all;
};

TEST_F(TaxonomyQueryTest, RefusedQueriesKeepThePreviousHierarchy) {
  ASSERT_TRUE(connection);
  struct Case {
    const char* sql;
    const char* message;
  };
  const Case cases[] = {
      {"select child, parent from cycle order by rowid",
       "Error at line 2: query generates a cycle\n'b' is on the path of 'a'"},
      {"select child, parent from self", "Error at line 1: definition of parent of 'a' is itself"},
      {"select child, parent from differs order by rowid",
       "Error at line 2: definition of parent of 'a' differs from its previous definition"},
      {"select child, parent, top from nulls order by rowid", "Error at line 2: column 1 is null"},
      {"select child, parent from numbered", "Column 1 must be of char type"},
      {"select child from tree", "No modalities of initial domain are covered by the query"},
  };
  for (const Case& c : cases) {
    ASSERT_EQ(apply("select child, parent from tree order by rowid"), 2);
    EXPECT_EQ(apply(c.sql), 0) << c.sql;
    EXPECT_EQ(lastError(), c.message);
    EXPECT_EQ(kind().taxonomyRoot->name, "root_");
    EXPECT_EQ(kind().nodeCount(), 3u);
    EXPECT_EQ(m.matrix->taxonomyCount(), 1);
    EXPECT_EQ(m.matrix->cellTaxonomyCount(), 1);
    EXPECT_EQ(m.written(*all, 0), "(1(0),2(5),3(1),4(4))");
  }

  EXPECT_EQ(apply("select child, parent from tree", 1), 0);
  EXPECT_EQ(lastError(), "Variable 'age' is not categorical");
  EXPECT_EQ(apply("select child, parent from tree", 2), 0);
  EXPECT_EQ(lastError(), "No variable selected");
}

}  // namespace
}  // namespace velda
