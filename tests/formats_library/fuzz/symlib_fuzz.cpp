// Fuzz target of the symbolic-file library: any input is read as a
// symbolic file and as a metadata file; whatever is read is written again.
// The library's process exits are turned into an escape back here.

#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>

#include "formats/library/SymbolicLibrary.h"

namespace {

struct LibraryExited {};

[[noreturn]] void escape(int) { throw LibraryExited{}; }

void ignoreMessageBox(const std::string&) {}

void readSymbolic(const std::string& text) {
  using namespace velda::symlib;
  try {
    std::istringstream in(text);
    SymbolicFile model;
    ParseSymbolicFile(in, "fuzz", model);
    std::ostringstream out;
    if (!WriteSymbolicFileText(model, out)) return;
    if (!WriteXmlSymbolicFile(model, out)) return;
  } catch (const LibraryExited&) {
  }
}

void readMetadata(const std::string& text) {
  using namespace velda::symlib;
  try {
    std::istringstream in(text);
    MetaData metadata;
    ParseMetadataFile(in, "fuzz", metadata);
    std::ostringstream out;
    if (!WriteMetadataFile(metadata, out)) return;
  } catch (const LibraryExited&) {
  }
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  velda::symlib::SetSymbolicExitHandler(escape);
  velda::symlib::SetSymbolicMessageBoxHandler(ignoreMessageBox);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  readSymbolic(text);
  readMetadata(text);
  return 0;
}
