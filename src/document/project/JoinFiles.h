#pragma once

#include <cstdio>
#include <memory>

namespace velda {

class SymbolicMatrix;

// "New by join": reads two project files open for binary reading and joins
// them (ops/Join). Returns the new matrix, its assertion table rehashed to as
// many buckets as assertions and its assertions indexed by number, or null
// with the reason in the last-error text: "Incorrect file type" (a file that
// does not start with the magic string and the two counts; the first file
// is checked before the second is read), "Load failed" (a body that does
// not read), "Join failed", or "Join failed: assertions have no
// intersection". Both loaded matrices are destroyed in every case.
std::unique_ptr<SymbolicMatrix> JoinFiles(std::FILE* first, std::FILE* second);

}  // namespace velda
