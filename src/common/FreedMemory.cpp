#include "common/FreedMemory.h"

#include <malloc.h>

namespace velda {

namespace {

constexpr int kKeptAtTop = 256 * 1024 * 1024;

}  // namespace

void keepFreedMemoryForReuse() { mallopt(M_TRIM_THRESHOLD, kKeptAtTop); }

}  // namespace velda
