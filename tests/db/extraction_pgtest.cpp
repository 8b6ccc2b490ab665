#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "common/LastError.h"
#include "db/Connection.h"
#include "db/Extraction.h"
#include "model/CategoricalVariable.h"
#include "model/SymbolicMatrix.h"
#include "support/OpenConnection.h"
#include "support/PgDatabase.h"

namespace velda {
namespace {

using test::openConnection;
using test::PgDatabase;

std::string valueOf(SymbolicMatrix& m, const char* assertion, size_t variable) {
  std::ostringstream out;
  m.findAssertion(assertion)->value(variable).writeValue(out);
  return out.str();
}

const char* kTable =
    "create table t(id integer, grp varchar(5), c varchar(8), x double precision, n numeric(6,2), w real);"
    "insert into t values(1,'g','red',1.5,1.25,2);"
    "insert into t values(2,'g','blue',2.5,NULL,3);"
    "insert into t values(3,'g','red',0.5,2,4);"
    "insert into t values(1,'h','red',1.5,1.25,2);"
    "insert into t values(NULL,'h','blue',9,9,1);"
    "insert into t values(4,NULL,'blue',9,9,1);"
    "insert into t values(3,'g','red',0.5,2,4);";

TEST(ExtractionPostgres, WeightedRowsBecomeAssertions) {
  PgDatabase db;
  ASSERT_TRUE(db.available());
  ASSERT_TRUE(db.run(kTable));
  auto connection = openConnection(db.connectionString());
  ASSERT_TRUE(connection);

  ExtractionResult result = extractIndividuals(*connection, "select id, grp, c, x, n, w from t", {true, 0});
  ASSERT_TRUE(result.matrix) << lastError();
  SymbolicMatrix& m = *result.matrix;
  EXPECT_EQ(m.rowsRead, 7);
  EXPECT_EQ(m.cellCount(), 3u);
  EXPECT_EQ(m.categoricalCount(), 1u);
  EXPECT_EQ(m.individualCount(), 3u);
  ASSERT_EQ(m.assertionCount(), 2u);
  EXPECT_EQ(m.findAssertion("g")->memberCount, 3);
  EXPECT_EQ(m.findIndividual("1")->membershipCount(), 2u);
  EXPECT_EQ(m.findIndividual("3")->weight, 4.0);
  // red: 2 + 4 of 9.
  EXPECT_EQ(valueOf(m, "g", 0), "(1(0.666667),2(0.333333))");
  static_cast<CategoricalVariable&>(m.variable(0)).mode = MODE_CARDINALITY;
  EXPECT_EQ(valueOf(m, "g", 0), "(1(6),2(3))");
  EXPECT_EQ(valueOf(m, "g", 1), "(0.5:2.5)");
  EXPECT_EQ(valueOf(m, "g", 2), "(1.25:2)");
  EXPECT_EQ(valueOf(m, "h", 1), "(1.5:1.5)");
}

}  // namespace
}  // namespace velda
