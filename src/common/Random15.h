#pragma once

#include <cstdint>

namespace velda {

// The 15-bit linear congruential generator that sampling relies on: its
// maximum is 32767. Seeded once at start from the time, or explicitly.
constexpr int kRandom15Max = 32767;

void seedRandom15(uint32_t seed);
int random15();

}  // namespace velda
