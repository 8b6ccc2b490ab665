#pragma once

#include <cstdint>
#include <string>

namespace velda {

// The short fixed-width codes that the symbolic text file gives to its
// individuals, variables and categories. Both encodings wrap around on
// purpose: letter pairs repeat after 676 numbers, suffixes after 3844.

// 'A' + (x / 26) % 26, then 'A' + x % 26.
std::string letterPair(uint32_t x);

// Two symbols of the alphabet 0-9, A-Z, a-z. Below 620: x / 10 and x % 10
// (00 .. z9). From 620 on, with y = x - 620: (y / 52) % 62 and y % 52.
std::string codeSuffix(uint32_t x);

// The letter pair of one number followed by the suffix of another:
// individual i is (0, i), variable v is (v, 0), its k-th category (v, k).
std::string itemCode(uint32_t letters, uint32_t item);

}  // namespace velda
