#pragma once

#include <functional>
#include <string>
#include <vector>

#include "app/cli/Arguments.h"

namespace velda {
class Document;
}

namespace velda::cli {

class CliUserInterface;

// What a command of the chain runs on: the one document of the invocation
// and the interface that answers its dialogs.
struct Session {
  Document& document;
  CliUserInterface& ui;
};

// A parsed command, ready to run; true when it succeeded.
using Action = std::function<bool(Session&)>;

struct CommandSpec {
  const char* name;
  const char* synopsis;  // the arguments, as --help shows them
  const char* summary;
  // Takes the command's arguments apart; a usage error is left in them.
  Action (*parse)(Arguments& arguments);
};

const std::vector<CommandSpec>& commandSpecs();
const CommandSpec* findCommandSpec(const std::string& name);

}  // namespace velda::cli
