#include "common/Random15.h"

namespace velda {

namespace {
uint32_t state = 1;
}

void seedRandom15(uint32_t seed) { state = seed; }

int random15() {
  state = state * 214013u + 2531011u;
  return static_cast<int>((state >> 16) & 0x7fffu);
}

}  // namespace velda
