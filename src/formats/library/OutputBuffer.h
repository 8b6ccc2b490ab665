#pragma once

#include <charconv>
#include <ostream>
#include <string>
#include <string_view>

#include "formats/library/LibraryLog.h"

namespace velda::symlib {

// Collects a document's text and hands it to the stream in large pieces.
class OutputBuffer {
 public:
  explicit OutputBuffer(std::ostream& out) : out_(out) { text_.reserve(kChunk * 2); }
  ~OutputBuffer() { flush(); }
  OutputBuffer(const OutputBuffer&) = delete;
  OutputBuffer& operator=(const OutputBuffer&) = delete;

  OutputBuffer& operator<<(std::string_view s) {
    text_ += s;
    if (text_.size() >= kChunk) flush();
    return *this;
  }
  OutputBuffer& operator<<(char c) {
    text_ += c;
    return *this;
  }
  OutputBuffer& operator<<(long long n) {
    char digits[24];
    const char* end = std::to_chars(digits, digits + sizeof digits, n).ptr;
    return *this << std::string_view(digits, static_cast<size_t>(end - digits));
  }
  OutputBuffer& operator<<(double x) {
    char digits[kRealTextSize];
    return *this << std::string_view(digits, FormatRealInto(digits, x));
  }
  // Direct access for appenders that build text in place.
  std::string& text() { return text_; }
  void flush() {
    out_.write(text_.data(), static_cast<std::streamsize>(text_.size()));
    text_.clear();
  }

 private:
  static constexpr size_t kChunk = 1 << 16;
  std::ostream& out_;
  std::string text_;
};

}  // namespace velda::symlib
