// velda-cli: every command of the document, without a display.
//   velda-cli [--seed N] COMMAND [ARGS...] [then COMMAND [ARGS...]]...
#include <sys/resource.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <optional>
#include <string>
#include <vector>

#include "app/cli/CliCommands.h"
#include "app/cli/CliUserInterface.h"
#include "app/cli/HugePageHeap.h"
#include "app/cli/LocaleCharset.h"
#include "app/cli/TerminalProgress.h"
#include "common/ExitCleanup.h"
#include "common/FreedMemory.h"
#include "common/MessageBox.h"
#include "common/Random15.h"
#include "document/Document.h"
#include "formats/library/SymbolicLibrary.h"

using namespace velda;
using namespace velda::cli;

namespace {

constexpr int kExitFailure = 1;
constexpr int kExitUsage = 2;

void printUsage(std::FILE* out) {
  std::fprintf(out,
               "usage: velda-cli [--seed N] [--times] COMMAND [ARGS...] [then COMMAND [ARGS...]]...\n"
               "\n"
               "The commands of one call run in order on one document, as the menu\n"
               "commands would. Reductions, divisions and hordes are not kept in project\n"
               "files, so chain them with their export in one call. Console lines go to\n"
               "standard output, messages to standard error. The first failing command\n"
               "stops the chain (exit status 1); a usage error exits with 2 before\n"
               "anything runs.\n"
               "\n"
               "Arguments are read in the locale's character set (LC_ALL, LC_CTYPE,\n"
               "LANG) and converted to Latin-1, the character set of VELDA's names and\n"
               "files; what is printed is converted back. File names pass unchanged, as\n"
               "the system holds them. In the C locale bytes pass unchanged.\n"
               "\n"
               "Questions are answered without asking: \"save current data?\" is No, so a\n"
               "command that replaces changed data without an explicit save discards the\n"
               "changes; the dependence confirmation is No unless --yes; replacing an\n"
               "existing taxonomy is Yes.\n"
               "\n"
               "  --seed N    seed the sampling's random generator (default: the time)\n"
               "  --times     after each command, its time and the peak memory so far\n"
               "              on standard error\n"
               "  --help      this text\n"
               "\n"
               "Commands:\n");
  for (const CommandSpec& spec : commandSpecs()) {
    std::string head = std::string(spec.name) + (*spec.synopsis ? " " : "") + spec.synopsis;
    std::fprintf(out, "  %s\n      %s\n", head.c_str(), spec.summary);
  }
}

int usageError(const std::string& text) {
  std::fprintf(stderr, "velda-cli: %s\n\n", text.c_str());
  printUsage(stderr);
  return kExitUsage;
}

void printTime(const std::string& command, std::chrono::steady_clock::duration elapsed) {
  struct rusage usage = {};
  getrusage(RUSAGE_SELF, &usage);
  std::fflush(stdout);
  std::fprintf(stderr, "velda-cli: time %s %.3f s, peak memory %ld kB\n", command.c_str(),
               std::chrono::duration<double>(elapsed).count(), usage.ru_maxrss);
}

// The chain's commands, each parsed; a usage error stops before any runs.
struct ParsedChain {
  std::vector<std::string> names;
  std::vector<Action> actions;
};

// A usage error; `asTyped` when it quotes an argument that the locale's
// text cannot carry into Latin-1, to be printed before output is converted.
struct UsageError {
  std::string text;
  bool asTyped = false;
};

// Parses one command's words.
std::optional<UsageError> parseCommand(std::vector<Word> words, const LocaleCharset& charset, ParsedChain& chain) {
  if (words.empty()) return UsageError{"a command is missing (around \"then\")"};
  const std::string name = words[0].bytes;
  const CommandSpec* spec = findCommandSpec(name);
  if (!spec) return UsageError{"unknown command '" + name + "'", true};
  words.erase(words.begin());
  Arguments arguments(std::move(words), charset);
  Action action = spec->parse(arguments);
  if (!arguments.charsetError().empty()) return UsageError{arguments.charsetError(), true};
  if (arguments.failed() || !action) return UsageError{name + ": " + arguments.error()};
  chain.names.push_back(name);
  chain.actions.push_back(std::move(action));
  return std::nullopt;
}

}  // namespace

int main(int argc, char** argv) {
  restartWithHugePageHeap(argv);
  keepFreedMemoryForReuse();
  std::vector<std::string> args(argv + 1, argv + argc);
  const LocaleCharset charset = LocaleCharset::fromEnvironment();
  size_t first = 0;
  bool seeded = false;
  bool showTimes = false;
  for (; first < args.size(); ++first) {
    if (args[first] == "--help" || args[first] == "-h") {
      printUsage(stdout);
      return 0;
    }
    if (args[first] == "--times") {
      showTimes = true;
      continue;
    }
    if (args[first] != "--seed") break;
    if (first + 1 >= args.size()) return usageError("--seed needs a value");
    const std::optional<int32_t> seed = parseInteger(args[++first]);
    if (!seed || *seed < 0) return usageError("--seed needs a non-negative integer");
    seedRandom15(static_cast<uint32_t>(*seed));
    seeded = true;
  }
  if (first >= args.size()) return usageError("no command given");
  if (!seeded) seedRandom15(static_cast<uint32_t>(std::time(nullptr)));

  ParsedChain chain;
  std::vector<Word> words;
  for (size_t i = first; i <= args.size(); ++i) {
    if (i < args.size() && args[i] != "then") {
      words.push_back({args[i], i + 1});
      continue;
    }
    const std::optional<UsageError> error = parseCommand(std::move(words), charset, chain);
    if (error) {
      // Printed as given when it quotes an argument, so that it reads as typed.
      if (!error->asTyped) convertStandardStreams(charset);
      return usageError(error->text);
    }
    words.clear();
  }
  convertStandardStreams(charset);

  symlib::SetSymbolicPauseEnabled(true);
  symlib::SetSymbolicMessageBoxHandler([](const std::string& text) { showMessage(text, MessageIcon::Warning); });
  CliUserInterface ui;
  Document document(ui);
  ui.attach(document);
  document.console().setListener([&document](ConsoleLog::Change change) {
    if (change != ConsoleLog::Change::LineAdded) return;
    const ConsoleLog& console = document.console();
    std::fwrite(console.lines().back().data(), 1, console.lines().back().size(), stdout);
    std::fputc('\n', stdout);
  });

  Session session{document, ui};
  int status = 0;
  catchInterrupt();
  for (size_t i = 0; i < chain.actions.size(); ++i) {
    if (interruptRequested()) {
      std::fflush(stdout);
      std::fprintf(stderr, "velda-cli: interrupted before %s\n", chain.names[i].c_str());
      status = kExitFailure;
      break;
    }
    ui.resetScript();
    const auto start = std::chrono::steady_clock::now();
    const bool succeeded = document.guardMemory([&] { return chain.actions[i](session); });
    if (showTimes) printTime(chain.names[i], std::chrono::steady_clock::now() - start);
    if (succeeded) continue;
    std::fflush(stdout);
    std::fprintf(stderr, "velda-cli: %s failed\n", chain.names[i].c_str());
    status = kExitFailure;
    break;
  }
  std::fflush(stdout);
#if !defined(__SANITIZE_ADDRESS__) && !defined(VELDA_COVERAGE)
  // Destroying a large matrix node by node takes seconds that nobody waits
  // for: the process ends without it, its files being written and closed.
  // The sanitizer build destroys everything, so that its leak check still
  // accounts for every allocation, and so does the coverage build, whose
  // counters are written at a normal exit.
  exitWithoutDestructors(status);
#endif
  return status;
}
