#include "document/project/ByteWriter.h"

#include <bit>

namespace velda {

void ByteWriter::u16(uint16_t value) { putLittleEndian(value, 2); }

void ByteWriter::u32(uint32_t value) { putLittleEndian(value, 4); }

void ByteWriter::f64(double value) { putLittleEndian(std::bit_cast<uint64_t>(value), 8); }

void ByteWriter::optionalString(std::string_view text) {
  if (text.empty()) {
    u16(0);
    return;
  }
  string(text);
}

void ByteWriter::string(std::string_view text) {
  if (text.size() > kMaxStringLength) {
    fail();
    return;
  }
  u16(static_cast<uint16_t>(text.size() + 1));
  put(text.data(), text.size());
  u8(0);
}

void ByteWriter::putLittleEndian(uint64_t value, size_t n) {
  unsigned char bytes[8];
  for (size_t i = 0; i < n; ++i) bytes[i] = static_cast<unsigned char>(value >> (8 * i));
  put(bytes, n);
}

void ByteWriter::put(const void* data, size_t n) {
  if (failed_) return;
  buffer_.append(static_cast<const char*>(data), n);
  if (buffer_.size() >= kBufferSize) flush();
}

void ByteWriter::flush() {
  if (failed_ || buffer_.empty()) return;
  if (std::fwrite(buffer_.data(), 1, buffer_.size(), file_) != buffer_.size()) failed_ = true;
  buffer_.clear();
}

bool ByteWriter::finish() {
  flush();
  if (!failed_ && std::fflush(file_) != 0) failed_ = true;
  return !failed_;
}

}  // namespace velda
