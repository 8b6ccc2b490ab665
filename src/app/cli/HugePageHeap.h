#pragma once

namespace velda::cli {

// A large matrix is a great many small blocks spread over the heap: backed
// by huge pages, the heap costs the processor far fewer address-translation
// misses and the kernel far fewer page faults. The C library reads this
// choice only when a program starts, so when it is not yet made, the
// program starts itself again once with it. Returns only when the heap
// already has huge pages or the restart failed (the program then runs as
// usual).
void restartWithHugePageHeap(char** argv);

}  // namespace velda::cli
