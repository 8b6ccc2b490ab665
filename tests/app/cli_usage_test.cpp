// velda-cli's usage errors and failures, without a database.
#include <gtest/gtest.h>
#include <unistd.h>

#include <sstream>

#include "app/CliRun.h"
#include "support/TempDir.h"

namespace velda::test {
namespace {

class CliUsage : public ::testing::Test {
 protected:
  CliResult run(const std::vector<std::string>& args) { return runCli(args, dir_.path()); }
  TempDir dir_;
};

// The pieces of a text between semicolons.
std::vector<std::string> cases(const std::string& text) {
  std::vector<std::string> pieces;
  std::istringstream in(text);
  for (std::string piece; std::getline(in, piece, ';');) pieces.push_back(piece);
  return pieces;
}

TEST_F(CliUsage, EveryUsageErrorExitsWithTwoAndRunsNothingAndHelpListsEveryCommand) {
  // The first one has no argument; with the last one, a usage error late in
  // the chain stops it before the first command.
  const std::string wrong =
      ";--seed;--seed x tables;--seed -1 tables;frobnicate;tables then;then tables;tables extra;connect;connect a b;"
      "columns;new;new --table t --query select;new --table;new --table t --sample ten;new --table t --min;"
      "new --table t --bogus;open;open a.gaj --ignore-metadata --ignore-metadata;save a.gaj b.gaj;join a.gaj;"
      "add-variables;add-set-variable --query;remove-variables;taxonomy --table towns;taxonomy town;"
      "remove-taxonomies;dependence --mother m --applicable a;dependence --mother m --applicable a --daughters d extra;"
      "properties;properties v --active --inactive;properties v --mode fancy;reduce --threshold;"
      "reduce --threshold 8.5;divide --classes three;reduce-hordes 5;export;export out.kvf --reduced-hordes;"
      "export-hordes out.kvf --title;export out.csv --format excel;export-hordes out.csv --format;view;"
      "view everything;taxonomies x;volume-matrix --after;console-save;check;console-save early.txt then view nothing";
  for (const std::string& args : cases(wrong)) {
    const CliResult result = run(words(args));
    EXPECT_EQ(result.status, 2) << args;
    EXPECT_NE(result.err.find("usage: velda-cli"), std::string::npos) << args;
    EXPECT_TRUE(result.out.empty()) << args;
  }
  EXPECT_NE(access(dir_.file("early.txt").c_str(), F_OK), 0);

  const CliResult help = run({"--help"});
  EXPECT_EQ(help.status, 0);
  const std::string commands =
      "connect CONN;disconnect;tables;columns TABLE;new (--table NAME;open FILE [--ignore-metadata];save [FILE];"
      "join FIRST SECOND;add-variables;add-set-variable;remove-variables NAME...;taxonomy VARIABLE;"
      "remove-taxonomies VARIABLE...;dependence --mother;properties NAME...;reduce [--threshold T];"
      "divide [--classes K];reduce-hordes;export FILE;export-hordes FILE;"
      "view individuals|assertions|hordes|reduced|reduced-hordes;taxonomies;dependences;volume-matrix [--before];"
      "console-save FILE;check FILE;discards";
  for (const std::string& command : cases(commands)) EXPECT_NE(help.out.find(command), std::string::npos) << command;
}

TEST_F(CliUsage, AFailingCommandStopsTheChainWithOne) {
  CliResult result = run({"tables"});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(linesOf(result.err),
            (std::vector<std::string>{"Not connected: use connect CONN first", "velda-cli: tables failed"}));
  const std::vector<std::pair<std::string, std::string>> failing = {
      {"open missing.gaj then console-save console.txt", "Can not open file missing.gaj"},
      {"view assertions", "No data: use new, open or join first"},
      {"join a.gaj b.gaj", "Can not open file a.gaj"},
      {"connect Driver=NoSuchDriver", ""}};
  for (const auto& [args, message] : failing) {
    result = run(words(args));
    EXPECT_EQ(result.status, 1) << args;
    ASSERT_FALSE(result.err.empty()) << args;
    if (!message.empty()) {
      EXPECT_EQ(linesOf(result.err)[0], message);
    }
  }
  EXPECT_NE(access(dir_.file("console.txt").c_str(), F_OK), 0);
}

}  // namespace
}  // namespace velda::test
