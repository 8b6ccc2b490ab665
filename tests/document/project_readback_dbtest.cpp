// Values added from the database read back in the order they had before
// save and open.
#include <gtest/gtest.h>

#include <sstream>

#include "common/ConsoleLog.h"
#include "common/LastError.h"
#include "db/AddVariables.h"
#include "db/Connection.h"
#include "db/extraction/Extraction.h"
#include "document/ProjectFileSamples.h"
#include "support/OpenConnection.h"
#include "support/SqliteDatabase.h"

namespace velda {
namespace {

std::string valueOf(SymbolicMatrix& matrix, const char* assertion, size_t variable) {
  std::ostringstream out;
  const Assertion* found = matrix.findAssertion(assertion);
  if (!found) return "<no assertion>";
  found->value(variable).writeValue(out);
  return out.str();
}

TEST(ProjectReadBackSqlite, SetValuedVariablesAddedLaterKeepTheirItemOrder) {
  // g1 holds the fourth and fifth categories (numbers 3 and 4): in the
  // value's first nine buckets they come as 3, 4; in two buckets, as 4, 3.
  test::SqliteDatabase db(
      "create table people(id varchar(5), grp varchar(5), x real);"
      "insert into people values('a','g1',1);"
      "insert into people values('b','g2',2);"
      "create table facts(n integer, grp varchar(5), colour varchar(10), w real);"
      "insert into facts values(1,'g2','red',1);"
      "insert into facts values(2,'g2','green',1);"
      "insert into facts values(3,'g2','blue',2);"
      "insert into facts values(4,'g1','white',2);"
      "insert into facts values(5,'g1','black',3);");
  auto connection = test::openConnection(db.connectionString());
  ASSERT_TRUE(connection);
  ExtractionResult extracted = extractIndividuals(*connection, "select id, grp, x from people", {});
  ASSERT_TRUE(extracted.matrix) << lastError();
  SymbolicMatrix& matrix = *extracted.matrix;
  ConsoleLog console;
  ASSERT_EQ(addMultipleVariable(matrix, *connection, "select grp, colour, w from facts order by n", console), 1)
      << lastError();

  const auto reopened = test::projectFromBytes(test::projectBytes(matrix));
  ASSERT_TRUE(reopened);
  for (SymbolicMatrix* read : {&matrix, reopened.get()}) {
    EXPECT_EQ(valueOf(*read, "g1", 1), "(5(0.6),4(0.4))");
    EXPECT_EQ(valueOf(*read, "g2", 1), "(1(0.25),2(0.25),3(0.5))");
  }
}

}  // namespace
}  // namespace velda
