#include "db/extraction/FetchedText.h"

#include <cstring>

namespace velda {

namespace {

// The length of the UTF-8 sequence that a lead byte opens, 0 for a byte
// that cannot open one.
size_t sequenceLength(unsigned char lead) {
  if (lead < 0x80) return 1;
  if (lead >= 0xC2 && lead <= 0xDF) return 2;
  if (lead >= 0xE0 && lead <= 0xEF) return 3;
  if (lead >= 0xF0 && lead <= 0xF4) return 4;
  return 0;
}

// The allowed range of the byte after a lead byte; it excludes overlong
// forms, surrogates and code points past U+10FFFF.
bool validSecondByte(unsigned char lead, unsigned char second) {
  unsigned char low = 0x80;
  unsigned char high = 0xBF;
  if (lead == 0xE0) low = 0xA0;
  if (lead == 0xED) high = 0x9F;
  if (lead == 0xF0) low = 0x90;
  if (lead == 0xF4) high = 0x8F;
  return second >= low && second <= high;
}

bool isContinuation(unsigned char byte) { return (byte & 0xC0) == 0x80; }

// The number of leading bytes that form complete valid UTF-8 sequences, when
// the whole text is valid UTF-8 (allowing an incomplete last sequence when
// the text was cut); -1 otherwise.
long validUtf8Length(const unsigned char* text, size_t length, bool cut) {
  size_t i = 0;
  while (i < length) {
    const size_t size = sequenceLength(text[i]);
    if (size == 0) return -1;
    for (size_t k = 1; k < size; ++k) {
      if (i + k == length) return cut ? static_cast<long>(i) : -1;
      const bool valid = k == 1 ? validSecondByte(text[i], text[i + 1]) : isContinuation(text[i + k]);
      if (!valid) return -1;
    }
    i += size;
  }
  return static_cast<long>(length);
}

bool isTrimmed(char c) { return c == ' ' || c == '\n' || c == '\t' || c == '\f' || c == '\b'; }

bool isAscii(const unsigned char* bytes, size_t length) {
  unsigned char any = 0;
  for (size_t i = 0; i < length; ++i) any |= bytes[i];
  return any < 0x80;
}

}  // namespace

size_t decodeFetchedText(char* text, size_t length, bool cut) {
  unsigned char* bytes = reinterpret_cast<unsigned char*>(text);
  // Most values are plain ASCII, which reads the same in both encodings.
  if (isAscii(bytes, length)) {
    text[length] = '\0';
    return length;
  }
  const long valid = validUtf8Length(bytes, length, cut);
  if (valid < 0) {
    text[length] = '\0';
    return length;
  }
  size_t out = 0;
  size_t i = 0;
  const size_t end = static_cast<size_t>(valid);
  while (i < end) {
    const size_t size = sequenceLength(bytes[i]);
    unsigned long codePoint = size == 1 ? bytes[i] : bytes[i] & (0x7F >> size);
    for (size_t k = 1; k < size; ++k) codePoint = (codePoint << 6) | (bytes[i + k] & 0x3F);
    bytes[out++] = codePoint <= 0xFF ? static_cast<unsigned char>(codePoint) : '?';
    i += size;
  }
  text[out] = '\0';
  return out;
}

size_t trimFetchedText(char* text, size_t length) {
  size_t begin = 0;
  while (begin < length && isTrimmed(text[begin])) ++begin;
  size_t end = length;
  while (end > begin && isTrimmed(text[end - 1])) --end;
  const size_t size = end - begin;
  if (begin > 0)
    for (size_t i = 0; i < size; ++i) text[i] = text[begin + i];
  text[size] = '\0';
  return size;
}

size_t cleanBoundText(char* text, size_t capacity, long reported) {
  const size_t length = strnlen(text, capacity);
  const bool cut = reported < 0 || static_cast<size_t>(reported) > length;
  return trimFetchedText(text, decodeFetchedText(text, length, cut));
}

}  // namespace velda
