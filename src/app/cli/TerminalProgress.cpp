#include "app/cli/TerminalProgress.h"

#include <signal.h>
#include <unistd.h>

#include <cstdio>

namespace velda::cli {

namespace {

volatile sig_atomic_t interrupted = 0;

void onInterrupt(int) { interrupted = 1; }

}  // namespace

void catchInterrupt() {
  struct sigaction action = {};
  action.sa_handler = onInterrupt;
  sigemptyset(&action.sa_mask);
  sigaction(SIGINT, &action, nullptr);
}

bool interruptRequested() { return interrupted != 0; }

TerminalProgress::TerminalProgress() : terminal_(isatty(STDERR_FILENO) != 0) {}

TerminalProgress::~TerminalProgress() {
  if (shown_) std::fputs("\r\033[K", stderr);
}

void TerminalProgress::setLine1(const std::string& text) {
  line1_ = text;
  show();
}

void TerminalProgress::setLine2(const std::string& text) {
  line2_ = text;
  show();
}

bool TerminalProgress::cancelRequested() {
  // A Ctrl-C while Cancel is disabled waits until it is enabled again.
  if (interrupted && cancelEnabled_) cancelled_ = true;
  return cancelled_;
}

void TerminalProgress::show() {
  if (!terminal_) return;
  std::fprintf(stderr, "\r\033[K%s  %s", line1_.c_str(), line2_.c_str());
  std::fflush(stderr);
  shown_ = true;
}

}  // namespace velda::cli
