#include "formats/library/ScanState.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "formats/library/LibraryLog.h"

namespace velda::symlib {

size_t ScanState::read(char* buffer, size_t capacity) {
  const size_t count = std::min(capacity, size - readPosition);
  std::memcpy(buffer, begin + readPosition, count);
  readPosition += count;
  return count;
}

void ScanState::checkLineLength() const {
  const char* start = begin + lineStart;
  const void* newline = std::memchr(start, '\n', size - lineStart);
  const size_t length = newline ? static_cast<const char*>(newline) - start : size - lineStart;
  if (length <= kMaxLine) return;
  std::printf(" ERROR Line in the input file must not be longer than %d \n", static_cast<int>(kMaxLine));
  std::printf("found %d for line %d. STOP PROGRAMM \n", static_cast<int>(length), static_cast<int>(line));
  LibraryExit(1);
}

void ScanState::markEndOfInput() {
  tokenStart = offset;
  tokenLength = 0;
  tokenLine = line;
  tokenLineStart = lineStart;
  tokenIsChar = false;
}

std::string ScanState::errorLayout(const std::string& message) const {
  const size_t column = tokenStart - tokenLineStart + 1;
  std::string out = message + " line " + std::to_string(tokenLine) + " column " + std::to_string(column);
  if (tokenIsChar) {
    const unsigned char c = static_cast<unsigned char>(begin[tokenStart]);
    out += " reading character \"";
    out += static_cast<char>(c);
    out += "\" (ascii: " + std::to_string(c) + " )";
  } else {
    out.append(" reading ").append(begin + tokenStart, tokenLength);
  }
  out += '\n';
  const char* lineText = begin + tokenLineStart;
  const void* newline = std::memchr(lineText, '\n', size - tokenLineStart);
  const size_t lineLength = newline ? static_cast<const char*>(newline) - lineText : size - tokenLineStart;
  for (size_t i = 0; i < lineLength; ++i) out += lineText[i] == '\t' ? ' ' : lineText[i];
  out += '\n';
  out.append(column - 1, ' ');
  out.append(tokenLength, '_');
  return out;
}

}  // namespace velda::symlib
