// libFuzzer target of the project-file reader. Any input must be read or
// refused without a crash, a sanitizer report or a hang; an input that is
// read must write back, read again and write the same bytes again, and
// must export as symbolic text.

#include <cstdint>
#include <cstdlib>
#include <sstream>

#include "document/ProjectFileSamples.h"
#include "formats/SymbolicTextWriter.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace velda;
  const auto matrix = readProject(std::span<const unsigned char>(data, size));
  if (!matrix) return 0;
  const std::string first = test::projectBytes(*matrix);
  if (first.empty()) std::abort();
  const auto again = test::projectFromBytes(first);
  if (!again || test::projectBytes(*again) != first) std::abort();
  std::ostringstream text;
  static_cast<void>(WriteSymbolicText(text, *matrix, false));
  return 0;
}
