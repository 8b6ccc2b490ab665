#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include "common/MessageBox.h"
#include "common/Progress.h"

namespace velda::test {

// Records the message boxes shown while it is installed.
class MessageRecorder : public MessageBoxTarget {
 public:
  MessageRecorder() : previous_(messageBoxTarget()) { setMessageBoxTarget(this); }
  ~MessageRecorder() override { setMessageBoxTarget(previous_); }
  MessageRecorder(const MessageRecorder&) = delete;
  MessageRecorder& operator=(const MessageRecorder&) = delete;

  void showMessage(const std::string& text, MessageIcon icon) override {
    texts.push_back(text);
    icons.push_back(icon);
  }

  std::vector<std::string> texts;
  std::vector<MessageIcon> icons;

 private:
  MessageBoxTarget* previous_;
};

// Prints message boxes on standard error: what a death test can see.
class StderrMessages : public MessageBoxTarget {
 public:
  void showMessage(const std::string& text, MessageIcon) override { std::fprintf(stderr, "%s\n", text.c_str()); }
};

// Records the progress lines; its user presses Cancel from the start
// (cancel) or at one given poll, as someone pressing the button would.
class ProgressRecorder : public ProgressTarget {
 public:
  void setLine1(const std::string& text) override { line1.push_back(text); }
  void setLine2(const std::string& text) override { line2.push_back(text); }
  void enableCancel(bool enabled) override { cancelEnabled = cancelEnabled || enabled; }
  bool cancelRequested() override { return ++polls == cancelAtPoll || cancel; }

  bool cancel = false;
  bool cancelEnabled = false;
  int cancelAtPoll = -1;
  int polls = 0;
  std::vector<std::string> line1;
  std::vector<std::string> line2;
};

}  // namespace velda::test
