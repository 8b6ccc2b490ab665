#pragma once

#include <cstddef>
#include <string>

namespace velda::symlib {

// The library's log: each message is cut to the 2000-character message
// buffer, written with a line break to "parser.dat" in the current folder
// (truncated by the first message of a run) and flushed, and to standard
// error.
class LibraryLog {
 public:
  // The next message starts a new "parser.dat".
  static void beginRun();
  static void write(const std::string& message);
  // Writes an error message, then pauses when the pause is enabled.
  static void writeError(const std::string& message);
};

// Ends the process through the exit handler.
[[noreturn]] void LibraryExit(int status);

void ShowLibraryMessageBox(const std::string& text);

// printf-style "%g" of a real, the default formatting of output streams.
std::string FormatReal(double value);
// The same written into a buffer of kRealTextSize characters; returns the
// number of characters written (no terminating null).
constexpr size_t kRealTextSize = 32;
size_t FormatRealInto(char* text, double value);

}  // namespace velda::symlib
