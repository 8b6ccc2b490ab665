#include "common/LastError.h"

#include <cstdarg>

#include "common/Format.h"

namespace velda {

namespace {
std::string& buffer() {
  static std::string text;
  return text;
}
}  // namespace

void setError(const char* format, ...) {
  va_list args;
  va_start(args, format);
  buffer() = formatV(kLastErrorCapacity, format, args);
  va_end(args);
}

const std::string& lastError() { return buffer(); }

void clearError() { buffer().clear(); }

}  // namespace velda
