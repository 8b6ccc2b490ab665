#include "formats/TableText.h"

#include <algorithm>
#include <charconv>

namespace velda {

namespace {

bool needsQuotes(std::string_view text, std::string_view quotedWhen) {
  return std::any_of(text.begin(), text.end(), [quotedWhen](char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte < 0x20 || byte == 0x7f || quotedWhen.find(c) != std::string_view::npos;
  });
}

}  // namespace

std::string latin1ToUtf8(std::string_view latin1) {
  std::string utf8;
  utf8.reserve(latin1.size());
  for (const char c : latin1) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x80) {
      utf8 += c;
      continue;
    }
    utf8 += static_cast<char>(0xc0 | (byte >> 6));
    utf8 += static_cast<char>(0x80 | (byte & 0x3f));
  }
  return utf8;
}

void writeTextField(std::ostream& out, std::string_view latin1, std::string_view quotedWhen) {
  const std::string text = latin1ToUtf8(latin1);
  if (!needsQuotes(text, quotedWhen)) {
    out << text;
    return;
  }
  out << '"';
  for (const char c : text) {
    if (c == '"') out << '"';
    out << c;
  }
  out << '"';
}

void writeNumber(std::ostream& out, double value) {
  char digits[32];
  const std::to_chars_result written = std::to_chars(digits, digits + sizeof digits, value);
  out.write(digits, written.ptr - digits);
}

}  // namespace velda
