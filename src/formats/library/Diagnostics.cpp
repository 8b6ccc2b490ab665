#include "formats/library/Diagnostics.h"

#include "formats/library/LibraryLog.h"

namespace velda::symlib {

void Diagnostics::syntaxError(const std::string& message) {
  ++syntaxErrors_;
  LibraryLog::writeError(message);
}

void Diagnostics::semanticError(const std::string& message) {
  ++semanticErrors_;
  LibraryLog::writeError(message);
}

void Diagnostics::coherenceError(const std::string& message) {
  ++coherenceErrors_;
  LibraryLog::writeError(message);
}

void Diagnostics::warning(const std::string& message) {
  ++warnings_;
  LibraryLog::write(message);
}

void Diagnostics::note(const std::string& message) { LibraryLog::write(message); }

}  // namespace velda::symlib
