#include <gtest/gtest.h>

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

#include "db/OdbcListing.h"
#include "support/TempDir.h"

namespace velda {
namespace {

bool listed(const std::vector<std::string>& names, const std::string& name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

// The data source dialog's lists come from the driver manager: the SQLite
// driver the tests connect through, and a data source declared in the
// odbc.ini that ODBCINI names (read in a child process, so that the
// setting stays out of the other tests).
TEST(OdbcListing, ListsTheInstalledDriversAndTheDeclaredDataSources) {
  EXPECT_TRUE(listed(installedOdbcDrivers(), "SQLite3"));

  test::TempDir home;
  const std::string ini = home.file("odbc.ini");
  std::ofstream(ini) << "[velda_listed]\nDriver=SQLite3\nDatabase=" << home.file("none.db") << "\n";
  EXPECT_EXIT(
      {
        setenv("ODBCINI", ini.c_str(), 1);
        _exit(listed(configuredDataSources(), "velda_listed") ? 0 : 1);
      },
      testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace velda
