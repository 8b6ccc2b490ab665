#pragma once

#include <cstdint>
#include <string_view>

namespace velda {

// The hash of every name-keyed table: h += (c + 8h) & 0x7fffffff over the
// name's bytes taken as signed characters, in 32-bit unsigned arithmetic.
inline uint32_t stringHash(std::string_view name) {
  uint32_t h = 0;
  for (char byte : name) {
    const auto c = static_cast<uint32_t>(static_cast<int32_t>(static_cast<int8_t>(byte)));
    h += (c + 8u * h) & 0x7fffffffu;
  }
  return h;
}

}  // namespace velda
