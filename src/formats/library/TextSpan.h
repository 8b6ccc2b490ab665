#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace velda::symlib {

// A text read by the scanner: a piece of the input, or a decoded copy kept
// by the parse context. It is a plain pair so that the parser's stack copies
// it without constructors or destructors; it stays valid for the whole parse.
struct TextSpan {
  const char* data;
  size_t size;

  std::string_view view() const { return {data, size}; }
  std::string str() const { return std::string(data, size); }
};

inline TextSpan SpanOf(std::string_view text) { return TextSpan{text.data(), text.size()}; }

}  // namespace velda::symlib
