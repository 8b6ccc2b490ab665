#include "document/project/ByteReader.h"

#include <bit>
#include <cmath>

namespace velda {

namespace {

uint64_t littleEndian(const unsigned char* p, size_t n) {
  uint64_t value = 0;
  for (size_t i = n; i-- > 0;) value = (value << 8) | p[i];
  return value;
}

}  // namespace

const unsigned char* ByteReader::take(size_t n) {
  if (failed_ || n > remaining()) {
    failed_ = true;
    return nullptr;
  }
  const unsigned char* p = bytes_.data() + position_;
  position_ += n;
  return p;
}

bool ByteReader::u8(uint8_t& value) {
  const unsigned char* p = take(1);
  if (!p) return false;
  value = *p;
  return true;
}

bool ByteReader::u16(uint16_t& value) {
  const unsigned char* p = take(2);
  if (!p) return false;
  value = static_cast<uint16_t>(littleEndian(p, 2));
  return true;
}

bool ByteReader::u32(uint32_t& value) {
  const unsigned char* p = take(4);
  if (!p) return false;
  value = static_cast<uint32_t>(littleEndian(p, 4));
  return true;
}

bool ByteReader::f64(double& value) {
  const unsigned char* p = take(8);
  if (!p) return false;
  const double read = std::bit_cast<double>(littleEndian(p, 8));
  if (!std::isfinite(read)) {
    failed_ = true;
    return false;
  }
  value = read;
  return true;
}

bool ByteReader::string(std::string& value) {
  uint16_t length;
  if (!u16(length)) return false;
  if (length == 0) {
    value.clear();
    return true;
  }
  const unsigned char* p = take(length);
  if (!p) return false;
  if (p[length - 1] != 0) {
    failed_ = true;
    return false;
  }
  value.assign(reinterpret_cast<const char*>(p), length - 1u);
  return true;
}

bool ByteReader::bytes(size_t n, std::span<const unsigned char>& value) {
  const unsigned char* p = take(n);
  if (!p) return false;
  value = std::span<const unsigned char>(p, n);
  return true;
}

}  // namespace velda
