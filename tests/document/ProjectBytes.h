#pragma once

#include <bit>
#include <cstdint>
#include <string>
#include <string_view>

namespace velda::test {

// Builds the bytes of a project file by hand, field by field.
class ProjectBytes {
 public:
  ProjectBytes& u8(uint8_t value) { return put(value, 1); }
  ProjectBytes& u16(uint16_t value) { return put(value, 2); }
  ProjectBytes& u32(uint32_t value) { return put(value, 4); }
  ProjectBytes& f64(double value) { return put(std::bit_cast<uint64_t>(value), 8); }
  // Length counting the zero, the text, the zero; "" is length 0 alone.
  ProjectBytes& str(std::string_view text) {
    if (text.empty()) return u16(0);
    u16(static_cast<uint16_t>(text.size() + 1));
    bytes_.append(text);
    bytes_.push_back('\0');
    return *this;
  }
  ProjectBytes& raw(std::string_view bytes) {
    bytes_.append(bytes);
    return *this;
  }
  ProjectBytes& zeros(size_t n) {
    bytes_.append(n, '\0');
    return *this;
  }
  const std::string& bytes() const { return bytes_; }

 private:
  ProjectBytes& put(uint64_t value, size_t n) {
    for (size_t i = 0; i < n; ++i) bytes_.push_back(static_cast<char>(value >> (8 * i)));
    return *this;
  }

  std::string bytes_;
};

}  // namespace velda::test
