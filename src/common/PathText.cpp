#include "common/PathText.h"

#include <cstdint>

namespace velda {

namespace {

// The length of the UTF-8 sequence that starts at `at`, with its code point;
// 0 when the bytes there are not one.
size_t utf8Sequence(const std::string& text, size_t at, uint32_t& codePoint) {
  const auto lead = static_cast<unsigned char>(text[at]);
  size_t length;
  uint32_t minimum;
  if (lead >= 0xC2 && lead <= 0xDF) {
    length = 2;
    minimum = 0x80;
    codePoint = lead & 0x1Fu;
  } else if (lead >= 0xE0 && lead <= 0xEF) {
    length = 3;
    minimum = 0x800;
    codePoint = lead & 0x0Fu;
  } else if (lead >= 0xF0 && lead <= 0xF4) {
    length = 4;
    minimum = 0x10000;
    codePoint = lead & 0x07u;
  } else {
    return 0;
  }
  if (text.size() - at < length) return 0;
  for (size_t i = 1; i < length; ++i) {
    const auto next = static_cast<unsigned char>(text[at + i]);
    if ((next & 0xC0u) != 0x80u) return 0;
    codePoint = (codePoint << 6) | (next & 0x3Fu);
  }
  const bool surrogate = codePoint >= 0xD800 && codePoint <= 0xDFFF;
  return codePoint < minimum || codePoint > 0x10FFFF || surrogate ? 0 : length;
}

}  // namespace

std::string pathForDisplay(const std::string& path) {
  std::string latin1;
  latin1.reserve(path.size());
  for (size_t at = 0; at < path.size();) {
    if (static_cast<unsigned char>(path[at]) < 0x80) {
      latin1.push_back(path[at++]);
      continue;
    }
    uint32_t codePoint = 0;
    const size_t length = utf8Sequence(path, at, codePoint);
    if (length == 0) return path;  // not UTF-8: the bytes are the name
    latin1.push_back(codePoint <= 0xFF ? static_cast<char>(codePoint) : '?');
    at += length;
  }
  return latin1;
}

}  // namespace velda
