#include <gtest/gtest.h>

#include <deque>
#include <string>

#include "common/ConsoleLog.h"
#include "common/LastError.h"
#include "db/AddVariables.h"
#include "db/Connection.h"
#include "db/GroupsText.h"
#include "db/extraction/Extraction.h"
#include "model/SymbolicMatrix.h"
#include "support/OpenConnection.h"
#include "support/PgDatabase.h"

namespace velda {
namespace {

using test::openConnection;
using test::PgDatabase;

TEST(AddVariablesPostgres, BothFormsOnAServer) {
  PgDatabase db;
  ASSERT_TRUE(db.available());
  ASSERT_TRUE(
      db.run("create table people(id varchar(5), grp varchar(5), x integer);"
             "insert into people values('a','g1',1), ('b','g1',2), ('c','g2',3);"
             "create table facts(grp varchar(5), region varchar(10), area numeric(8,2), w integer);"
             "insert into facts values('g1','north',10.5,3), ('g2','south',NULL,1), ('g2','north',2,1);"));
  auto connection = openConnection(db.connectionString());
  ASSERT_TRUE(connection);
  ExtractionResult result = extractIndividuals(*connection, "select id, grp, x from people", {});
  ASSERT_TRUE(result.matrix) << lastError();
  SymbolicMatrix& m = *result.matrix;

  ConsoleLog console;
  ASSERT_EQ(addUniqueVariables(m, *connection, "select grp, area as size from facts where region = 'north'", console),
            1)
      << lastError();
  ASSERT_EQ(addMultipleVariable(m, *connection, "select grp, region, w from facts", console), 1) << lastError();
  EXPECT_EQ(console.lines(), (std::deque<std::string>{
                                 "1 unique variables added:",
                                 "   size",
                                 "Total 2 variables (0 qualitatives, 2 quantitatives)",
                                 "1 multiple variable added:",
                                 "   region",
                                 "Total 3 variables (1 qualitatives, 2 quantitatives)",
                             }));
  EXPECT_EQ(test::groupsText(m), "g1: a b = (1:2) 10.5 (1(1))\ng2: c = (3:3) 2 (1(0.5),2(0.5))\n");
}

}  // namespace
}  // namespace velda
