#pragma once

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>

#include <cstdlib>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "support/FileText.h"

extern char** environ;

namespace velda::test {

// What one run of velda-cli gave.
struct CliResult {
  int status = -1;
  std::string out;
  std::string err;
};

// Starts build/bin/velda-cli with the arguments in the folder `dir`,
// standard input from /dev/null, both outputs captured in files of that
// folder. The locale is C unless given, so bytes pass unchanged. Returns the
// child's process id, or -1 when it could not be started.
inline pid_t startCli(const std::vector<std::string>& args, const std::string& dir, const std::string& locale = "C") {
  const char* binaryDir = std::getenv("VELDA_BINARY_DIR");
  const std::string program = std::string(binaryDir ? binaryDir : ".") + "/bin/velda-cli";
  const std::string outPath = dir + "/cli.out";
  const std::string errPath = dir + "/cli.err";
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addchdir_np(&actions, dir.c_str());
  posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_addopen(&actions, 1, outPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
  posix_spawn_file_actions_addopen(&actions, 2, errPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
  std::vector<char*> argv;
  argv.push_back(const_cast<char*>(program.c_str()));
  for (const std::string& arg : args) argv.push_back(const_cast<char*>(arg.c_str()));
  argv.push_back(nullptr);
  // The environment with LC_ALL set to `locale`.
  std::string localeVariable = "LC_ALL=" + locale;
  std::vector<char*> envp;
  for (char** variable = environ; *variable; ++variable)
    if (std::string_view(*variable).rfind("LC_ALL=", 0) != 0) envp.push_back(*variable);
  envp.push_back(localeVariable.data());
  envp.push_back(nullptr);
  pid_t pid;
  if (posix_spawn(&pid, program.c_str(), &actions, nullptr, argv.data(), envp.data()) != 0) pid = -1;
  posix_spawn_file_actions_destroy(&actions);
  return pid;
}

// Waits for a run started by startCli in `dir` and collects what it gave;
// the status is -1 when the program did not exit by itself.
inline CliResult finishCli(pid_t pid, const std::string& dir) {
  CliResult result;
  if (pid > 0) {
    int status = 0;
    waitpid(pid, &status, 0);
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }
  result.out = readFile(dir + "/cli.out");
  result.err = readFile(dir + "/cli.err");
  return result;
}

inline CliResult runCli(const std::vector<std::string>& args, const std::string& dir, const std::string& locale = "C") {
  return finishCli(startCli(args, dir, locale), dir);
}

// The arguments of a chain of commands, one command a row, joined by "then".
inline std::vector<std::string> chain(const std::vector<std::vector<std::string>>& commands) {
  std::vector<std::string> args;
  for (const auto& command : commands) {
    if (!args.empty()) args.push_back("then");
    args.insert(args.end(), command.begin(), command.end());
  }
  return args;
}

// The words of a text, split at spaces.
inline std::vector<std::string> words(const std::string& text) {
  std::vector<std::string> split;
  std::istringstream in(text);
  for (std::string word; in >> word;) split.push_back(word);
  return split;
}

// The lines of a text, without the symbolic-file library's trace lines.
inline std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);)
    if (line.rfind("CHaine Korva", 0) != 0) lines.push_back(line);
  return lines;
}

}  // namespace velda::test
