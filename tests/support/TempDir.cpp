#include "support/TempDir.h"

#include <cstdlib>
#include <filesystem>
#include <stdexcept>

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

}  // namespace velda::test
