#include "formats/library/LibraryLog.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <charconv>
#include <cstdio>
#include <cstdlib>

#include "formats/library/SymbolicLibrary.h"

namespace velda::symlib {

namespace {

constexpr size_t kMessageBuffer = 2000;

SymbolicExitHandler exitHandler = nullptr;
SymbolicMessageHandler messageBoxHandler = nullptr;
bool pauseEnabled = false;

std::FILE* logFile = nullptr;
bool newRun = true;

void openLog() {
  if (logFile) std::fclose(logFile);
  logFile = nullptr;
  // Never through a symbolic link planted at the log's name.
  const int descriptor = ::open("parser.dat", O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0666);
  struct stat status;
  if (descriptor >= 0 && fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode)) {
    fcntl(descriptor, F_SETFL, O_WRONLY);
    logFile = fdopen(descriptor, "w");
  }
  if (logFile) return;
  if (descriptor >= 0) close(descriptor);
  std::fputs("impossible to open the log file \"PARSER.DAT\"", stderr);
  std::fputs("\n PROGRAMM STOP", stderr);
  LibraryExit(1);
}

}  // namespace

void SetSymbolicExitHandler(SymbolicExitHandler handler) { exitHandler = handler; }

void SetSymbolicPauseEnabled(bool enabled) { pauseEnabled = enabled; }

void SetSymbolicMessageBoxHandler(SymbolicMessageHandler handler) { messageBoxHandler = handler; }

void LibraryExit(int status) {
  std::fflush(stdout);
  std::fflush(stderr);
  if (exitHandler) exitHandler(status);
  std::exit(status);
}

void ShowLibraryMessageBox(const std::string& text) {
  if (messageBoxHandler) {
    messageBoxHandler(text);
    return;
  }
  std::fprintf(stderr, "%s\n", text.c_str());
}

void LibraryLog::beginRun() { newRun = true; }

void LibraryLog::write(const std::string& message) {
  if (newRun || !logFile) {
    newRun = false;
    openLog();
  }
  const size_t length = message.size() < kMessageBuffer ? message.size() : kMessageBuffer - 1;
  std::fwrite(message.data(), 1, length, logFile);
  std::fputc('\n', logFile);
  std::fflush(logFile);
  std::fwrite(message.data(), 1, length, stderr);
  std::fputc('\n', stderr);
}

void LibraryLog::writeError(const std::string& message) {
  write(message);
  if (pauseEnabled && isatty(STDIN_FILENO)) std::getchar();
}

size_t FormatRealInto(char* text, double value) {
  // Six significant digits in the general style: exactly what "%g" prints,
  // without going through the locale-aware printf machinery.
  const auto written = std::to_chars(text, text + kRealTextSize, value, std::chars_format::general, 6);
  return static_cast<size_t>(written.ptr - text);
}

std::string FormatReal(double value) {
  char text[kRealTextSize];
  return std::string(text, FormatRealInto(text, value));
}

}  // namespace velda::symlib
