#pragma once

#include <string>

namespace velda {

enum class MessageIcon { None, Information, Warning, Error, Question };

// Where the operations' message boxes go: real boxes in the GUI, standard
// error in the command-line program, a recorder in tests.
class MessageBoxTarget {
 public:
  virtual ~MessageBoxTarget() = default;
  virtual void showMessage(const std::string& text, MessageIcon icon) = 0;
};

// The process-wide target; without one, messages go nowhere.
void setMessageBoxTarget(MessageBoxTarget* target);
MessageBoxTarget* messageBoxTarget();
void showMessage(const std::string& text, MessageIcon icon);

}  // namespace velda
