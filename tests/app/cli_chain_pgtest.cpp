// velda-cli end to end on PostgreSQL.
#include "app/CliChain.h"
#include "support/PgDatabase.h"
#include "support/TempDir.h"

namespace velda::test {
namespace {

TEST(CliChainPostgres, FromConnectToExport) {
  PgDatabase database;
  ASSERT_TRUE(database.available());
  ASSERT_TRUE(database.run(chainDatabaseSql()));
  TempDir dir;
  checkChain(database.connectionString(), dir.path());
}

}  // namespace
}  // namespace velda::test
