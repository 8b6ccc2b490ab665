#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include "common/LastError.h"
#include "db/Connection.h"
#include "db/OdbcListing.h"
#include "db/TableCatalog.h"
#include "support/FileText.h"
#include "support/OpenConnection.h"
#include "support/SqliteDatabase.h"
#include "support/TempDir.h"

namespace velda {
namespace {

using test::openConnection;
using test::SqliteDatabase;

TEST(DataSourceName, IsTheDsnOrNotAvailable) {
  SqliteDatabase db("create table t(a integer);");
  auto direct = openConnection(db.connectionString());
  ASSERT_TRUE(direct);
  EXPECT_EQ(dataSourceName(*direct), "not available");
  EXPECT_EQ(databaseName(*direct), db.path());

  // A data source declared in an odbc.ini file that the driver manager reads.
  // The SQLite driver keeps what it reads from that file after it is
  // unloaded, so the connection lives in a child process that ends at once.
  test::TempDir home;
  const std::string ini = home.file("odbc.ini");
  std::ofstream(ini) << "[velda_sample]\nDriver=SQLite3\nDatabase=" << db.path() << "\n";
  EXPECT_EXIT(
      {
        setenv("ODBCINI", ini.c_str(), 1);
        auto named = Connection::open("ODBC;DSN=velda_sample");
        if (!named) _exit(1);
        fprintf(stderr, "[%s]", dataSourceName(*named).c_str());
        _exit(0);
      },
      testing::ExitedWithCode(0), "\\[velda_sample\\]");
}

// The data source dialog's lists come from the driver manager: the SQLite
// driver the tests connect through, and a data source declared in the
// odbc.ini that ODBCINI names (read in a child process, so that the
// setting stays out of the other tests).
TEST(OdbcListing, ListsTheInstalledDriversAndTheDeclaredDataSources) {
  EXPECT_TRUE(test::hasLine(installedOdbcDrivers(), "SQLite3"));

  test::TempDir home;
  const std::string ini = home.file("odbc.ini");
  std::ofstream(ini) << "[velda_listed]\nDriver=SQLite3\nDatabase=" << home.file("none.db") << "\n";
  EXPECT_EXIT(
      {
        setenv("ODBCINI", ini.c_str(), 1);
        _exit(test::hasLine(configuredDataSources(), "velda_listed") ? 0 : 1);
      },
      testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace velda
