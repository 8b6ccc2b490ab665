#pragma once

#include <cstdarg>
#include <string>

namespace velda {

// printf-style formatting into a std::string, cut to at most maxLength bytes
// (the fixed buffers of the program's messages).
std::string formatV(size_t maxLength, const char* format, va_list args);
std::string format(const char* format, ...) __attribute__((format(printf, 1, 2)));

}  // namespace velda
