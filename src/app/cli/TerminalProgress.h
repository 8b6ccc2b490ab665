#pragma once

#include <string>

#include "common/Progress.h"

namespace velda::cli {

// Ctrl-C (SIGINT) never ends the program in the middle of a command (a
// save is never cut short): once caught, it is the Cancel button of the
// running long operation, and the chain of commands stops after the
// current command.
void catchInterrupt();
bool interruptRequested();

// The progress dialog of the command-line program: while it lives, Ctrl-C
// is the Cancel button, and the two progress lines are shown on one line
// of standard error when standard error is a terminal.
class TerminalProgress final : public ProgressTarget {
 public:
  TerminalProgress();
  ~TerminalProgress() override;
  TerminalProgress(const TerminalProgress&) = delete;
  TerminalProgress& operator=(const TerminalProgress&) = delete;

  void setLine1(const std::string& text) override;
  void setLine2(const std::string& text) override;
  void enableCancel(bool enabled) override { cancelEnabled_ = enabled; }
  bool cancelRequested() override;

  // Whether Cancel was asked for, also after the operation's last poll.
  bool cancelled() { return cancelRequested(); }

 private:
  void show();

  bool terminal_;
  bool shown_ = false;
  bool cancelEnabled_ = true;
  bool cancelled_ = false;
  std::string line1_;
  std::string line2_;
};

}  // namespace velda::cli
