// velda-cli end to end on the SQLite ODBC driver.
#include <signal.h>

#include "app/CliChain.h"
#include "support/SqliteDatabase.h"
#include "support/TempDir.h"

namespace velda::test {
namespace {

class CliChainSqlite : public ::testing::Test {
 protected:
  // The arguments after connecting to the database.
  CliResult connectThen(const std::string& args) {
    return runCli(words("connect " + database_.connectionString() + " then " + args), dir_.path());
  }
  SqliteDatabase database_{chainDatabaseSql()};
  TempDir dir_;
};

TEST_F(CliChainSqlite, FromConnectToExport) { checkChain(database_.connectionString(), dir_.path()); }

TEST_F(CliChainSqlite, TablesColumnsAndTheDialogsChecks) {
  CliResult result =
      runCli(words("connect ODBC;" + database_.connectionString() + " then tables then columns facts then disconnect"),
             dir_.path());
  ASSERT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(linesOf(result.out), (std::vector<std::string>{"facts\tTABLE", "jobs\tTABLE", "people\tTABLE",
                                                           "Column name\tType\tPrecision\tNullable",
                                                           "town\tSQL_VARCHAR\t20\tYes", "sea\tSQL_VARCHAR\t3\tYes"}));

  for (const auto& [options, message] : {std::pair{"--sample 9", "Number of individuals must be between 100 and 10000"},
                                         std::pair{"--min 0", "Minimum of individuals must be more than 0"}}) {
    result = connectThen(std::string("new --table people ") + options);
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(linesOf(result.err)[0], message);
  }

  // Without --yes the dependence is only previewed: No brings the dialog
  // back once, and the second time it is cancelled with the reason.
  result = connectThen("new --table people then dependence --mother job --applicable clerk --daughters income");
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(linesOf(result.err),
            (std::vector<std::string>{"Dependence not added: some values would be replaced by NA (confirm with --yes)",
                                      "velda-cli: dependence failed"}));
  EXPECT_EQ(result.out.find("rules added"), std::string::npos);
}

TEST_F(CliChainSqlite, CtrlCStopsTheChainBetweenCommandsAndNeverCutsASave) {
  // Far more saves than can run before the interrupt arrives.
  std::vector<std::string> args = words("connect " + database_.connectionString() + " then new --table people");
  for (int i = 0; i < 3000; ++i) args.insert(args.end(), {"then", "save", "people.gaj"});
  const pid_t pid = startCli(args, dir_.path());
  ASSERT_GT(pid, 0);
  // The first save has ended: the chain is running and catches Ctrl-C.
  const std::string project = dir_.file("people.gaj");
  for (int waited = 0; waited < 60000 && access(project.c_str(), F_OK) != 0; ++waited) usleep(1000);
  kill(pid, SIGINT);
  const CliResult result = finishCli(pid, dir_.path());

  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(linesOf(result.err), std::vector<std::string>{"velda-cli: interrupted before save"});
  EXPECT_EQ(folderNames(dir_.path()), (std::vector<std::string>{"cli.err", "cli.out", "people.gaj", "people.gaj.xml"}));
  const CliResult reopened = runCli({"open", "people.gaj"}, dir_.path());
  EXPECT_EQ(reopened.status, 0) << reopened.err;
}

}  // namespace
}  // namespace velda::test
