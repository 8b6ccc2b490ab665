#include "support/TempDir.h"

#include <cstdlib>
#include <filesystem>
#include <stdexcept>

#include "support/FileText.h"

namespace velda::test {

TempDir::TempDir() {
  std::string pattern = (std::filesystem::temp_directory_path() / "velda-test-XXXXXX").string();
  if (!mkdtemp(pattern.data())) throw std::runtime_error("cannot create a temporary folder");
  path_ = pattern;
}

TempDir::~TempDir() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

InTempDir::InTempDir() : previous_(std::filesystem::current_path().string()) {
  std::filesystem::current_path(dir_.path());
}

InTempDir::~InTempDir() {
  std::error_code ignored;
  std::filesystem::current_path(previous_, ignored);
}

std::string InTempDir::read(const char* name) const { return readFile(dir_.file(name)); }

}  // namespace velda::test
