// libFuzzer target "written output reads back": the input drives the
// choices of a random matrix; every file written from it must read back
// (the library ends the process on a file it refuses, which libFuzzer
// reports), and the export must be the same after save and open.

#include <cstdint>
#include <cstdlib>
#include <string>

#include "document/WrittenOutput.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace velda;
  size_t next = 0;
  // Each choice takes the next byte (zero once the input is used up).
  const test::Choose choose = [&](uint32_t bound) {
    const uint32_t byte = next < size ? data[next++] : 0;
    return bound ? byte % bound : 0;
  };
  const auto matrix = test::randomMatrix(choose, size > 0 && data[0] == 0xff ? 2000 : 40);
  if (!matrix) return 0;
  if (!test::checkWrittenOutput(*matrix, "meta.xml").empty()) std::abort();
  return 0;
}
