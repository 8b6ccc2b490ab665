#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <span>
#include <string>
#include <string_view>

namespace velda {

// Writes little-endian fields to a C stream through a buffer. The first
// write that does not complete marks the writer failed; later writes do
// nothing.
class ByteWriter {
 public:
  static constexpr size_t kBufferSize = 1 << 16;
  // The longest text a string field holds: its u16 length counts the zero.
  static constexpr size_t kMaxStringLength = 0xFFFE;

  explicit ByteWriter(std::FILE* file) : file_(file) { buffer_.reserve(kBufferSize); }

  void u8(uint8_t value) { put(&value, 1); }
  void u16(uint16_t value);
  void u32(uint32_t value);
  void f64(double value);
  // u16 length counting the final zero, the bytes, the zero: an empty text
  // is the length 1 and the zero. A longer text than kMaxStringLength fails.
  void string(std::string_view text);
  // The same for a text that may be absent: an empty one is stored as
  // length 0 alone.
  void optionalString(std::string_view text);
  void bytes(std::span<const unsigned char> data) { put(data.data(), data.size()); }
  // Marks the writer failed (a value that the format cannot hold).
  void fail() { failed_ = true; }

  // Writes what is buffered; false when any write failed.
  bool finish();
  bool failed() const { return failed_; }

 private:
  void put(const void* data, size_t n);
  void putLittleEndian(uint64_t value, size_t n);
  void flush();

  std::FILE* file_;
  std::string buffer_;
  bool failed_ = false;
};

}  // namespace velda
