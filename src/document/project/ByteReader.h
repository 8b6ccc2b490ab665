#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace velda {

// Reads little-endian fields from a byte buffer. Every read is checked: a
// read past the end fails, leaves the output alone and marks the reader
// failed, and every later read fails too.
class ByteReader {
 public:
  explicit ByteReader(std::span<const unsigned char> bytes) : bytes_(bytes) {}

  bool u8(uint8_t& value);
  bool u16(uint16_t& value);
  bool u32(uint32_t& value);
  // A double that must be finite.
  bool f64(double& value);
  // A string: u16 length counting a stored final zero, then the bytes; a
  // length of 0 is the empty string. Fails when the last byte is not 0.
  bool string(std::string& value);
  // n bytes as they are.
  bool bytes(size_t n, std::span<const unsigned char>& value);

  size_t remaining() const { return bytes_.size() - position_; }
  // Whether at least n × size bytes are left: how counts are checked before
  // anything is allocated for them.
  bool holds(size_t n, size_t size) const { return !failed_ && n <= remaining() / size; }
  bool failed() const { return failed_; }

 private:
  // The next n bytes, or null (and failed) when fewer are left.
  const unsigned char* take(size_t n);

  std::span<const unsigned char> bytes_;
  size_t position_ = 0;
  bool failed_ = false;
};

}  // namespace velda
