#include "common/Format.h"

#include <cstdio>
#include <limits>

namespace velda {

std::string formatV(size_t maxLength, const char* format, va_list args) {
  va_list measure;
  va_copy(measure, args);
  const int needed = std::vsnprintf(nullptr, 0, format, measure);
  va_end(measure);
  if (needed <= 0) return {};
  std::string text(static_cast<size_t>(needed), '\0');
  std::vsnprintf(text.data(), text.size() + 1, format, args);
  if (text.size() > maxLength) text.resize(maxLength);
  return text;
}

std::string format(const char* format, ...) {
  va_list args;
  va_start(args, format);
  std::string text = formatV(std::numeric_limits<size_t>::max(), format, args);
  va_end(args);
  return text;
}

}  // namespace velda
