#include "formats/library/XmlEscape.h"

#include <charconv>
#include <string>

namespace velda::symlib {

namespace {

struct Escape {
  unsigned char character;
  const char* reference;
  int code;  // the number written in the reference
};

// The table is kept as it has always been written: e acute and e grave
// swap their references and a grave is written as a acute.
constexpr Escape kEscapes[] = {
    {'&', "&#38;", 38},    {0xE9, "&#232;", 232}, {0xE0, "&#225;", 225}, {0xE8, "&#233;", 233},
    {0xEA, "&#234;", 234}, {'<', "&#60;", 60},    {'>', "&#62;", 62},
};

struct Entity {
  std::string_view name;
  char character;
};

constexpr Entity kEntities[] = {{"amp", '&'}, {"lt", '<'}, {"gt", '>'}, {"quot", '"'}, {"apos", '\''}};

const char* escapeOf(unsigned char c) {
  for (const Escape& e : kEscapes) {
    if (e.character == c) return e.reference;
  }
  return nullptr;
}

char characterOfCode(long code) {
  for (const Escape& e : kEscapes) {
    if (e.code == code) return static_cast<char>(e.character);
  }
  if (code < 0 || code > 255) return '?';
  return static_cast<char>(code);
}

// Decodes the reference whose body (between '&' and ';') is given; false
// when it is not one.
bool decodeReference(std::string_view body, std::string& out) {
  if (body.size() > 1 && body[0] == '#') {
    long code = 0;
    const bool hex = body[1] == 'x' || body[1] == 'X';
    std::string_view digits = body.substr(hex ? 2 : 1);
    if (digits.empty()) return false;
    auto [end, ec] = std::from_chars(digits.data(), digits.data() + digits.size(), code, hex ? 16 : 10);
    if (ec != std::errc() || end != digits.data() + digits.size()) {
      if (ec != std::errc::result_out_of_range) return false;
      code = -1;
    }
    out += characterOfCode(code);
    return true;
  }
  for (const Entity& e : kEntities) {
    if (body == e.name) {
      out += e.character;
      return true;
    }
  }
  return false;
}

}  // namespace

void AppendXmlEscaped(std::string& out, std::string_view text) {
  size_t lineStart = out.size();
  size_t lastBlank = std::string::npos;
  for (char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '\n') {
      // A line break is kept: it is what a broken text reads back with.
      out += c;
      lineStart = out.size();
      lastBlank = std::string::npos;
      continue;
    }
    if (byte < 0x20 || byte == 0x7f) c = ' ';
    const char* reference = escapeOf(static_cast<unsigned char>(c));
    const size_t width = reference ? std::char_traits<char>::length(reference) : 1;
    if (out.size() - lineStart + width > kMaxXmlTextLine) {
      if (lastBlank != std::string::npos) {
        out[lastBlank] = '\n';
        lineStart = lastBlank + 1;
      } else {
        out += '\n';
        lineStart = out.size();
      }
      lastBlank = std::string::npos;
    }
    if (c == ' ') lastBlank = out.size();
    if (reference) {
      out += reference;
    } else {
      out += c;
    }
  }
}

std::string DecodeXmlText(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  size_t i = 0;
  while (i < text.size()) {
    if (text[i] == '&') {
      size_t semicolon = text.find(';', i + 1);
      if (semicolon != std::string_view::npos && semicolon - i <= 12 &&
          decodeReference(text.substr(i + 1, semicolon - i - 1), out)) {
        i = semicolon + 1;
        continue;
      }
    }
    out += text[i++];
  }
  return out;
}

}  // namespace velda::symlib
