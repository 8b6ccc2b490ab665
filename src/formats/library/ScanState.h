#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velda::symlib {

// Which of the three forms the scanner is reading.
enum class DocumentMode { Text, UlmeXml, MetaXml };

using XmlAttributes = std::vector<std::pair<std::string, std::string>>;

// Where the scanner stands in the input, and what it keeps between two
// tokens. The input is one buffer in memory.
struct ScanState {
  static constexpr size_t kMaxLine = 3000;
  static constexpr size_t kMaxString = 255;

  ScanState(const char* begin, size_t size) : begin(begin), size(size) {}

  // Copies the next piece of input into the scanner's buffer.
  size_t read(char* buffer, size_t capacity);
  // Refuses the current line when it is too long (ends the process).
  void checkLineLength() const;
  // Called for every token matched: records it and follows the lines.
  // Tokens are short: a plain loop, inlined into the scanner, beats a
  // library call here.
  void advance(const char* text, size_t length) {
    tokenStart = offset;
    tokenLength = length;
    tokenLine = line;
    tokenLineStart = lineStart;
    tokenIsChar = false;
    offset += length;
    for (size_t i = 0; i < length; ++i) {
      if (text[i] != '\n') continue;
      ++line;
      lineStart = tokenStart + i + 1;
      checkLineLength();
    }
  }
  void markEndOfInput();
  // The text of the last token matched, in the input itself.
  std::string_view token() const { return {begin + tokenStart, tokenLength}; }
  // The layout of a syntax error at the last token.
  std::string errorLayout(const std::string& message) const;

  const char* begin;
  size_t size;
  DocumentMode mode = DocumentMode::Text;
  long line = 1;
  size_t lineStart = 0;
  size_t offset = 0;
  size_t readPosition = 0;

  size_t tokenStart = 0;
  size_t tokenLength = 0;
  long tokenLine = 1;
  size_t tokenLineStart = 0;
  bool tokenIsChar = false;

  // XML: the start tag being read and the closing token owed by "/>".
  size_t tagStart = 0;
  long tagLine = 1;
  size_t tagLineStart = 0;
  int openToken = 0;
  int closeToken = 0;
  bool tagCarriesAttributes = false;
  XmlAttributes attributes;
  int pendingClose = 0;
  // Start condition to go back to after a comment or processing instruction.
  int resumeCondition = 0;
  // Old-style spellings already warned about in this parse.
  std::vector<const char*> warnedOldStyle;
};

}  // namespace velda::symlib
