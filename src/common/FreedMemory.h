#pragma once

namespace velda {

// Lets the C library keep up to 256 MB of freed memory at the top of each of
// its heaps instead of giving it back to the system at once. A driver that
// fetches rows on a second thread allocates and frees buffers for every
// batch of rows; given back and asked for again each time, those pages are
// faulted in and zeroed by the kernel over and over. Call it once, when the
// program starts.
void keepFreedMemoryForReuse();

}  // namespace velda
