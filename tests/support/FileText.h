#pragma once

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace test {

// The whole content of a file as bytes; empty when it cannot be read.
inline std::string readFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream content;
  content << in.rdbuf();
  return content.str();
}

// A file of tests/fixtures, by its path below that folder: samples and
// expected outputs written by hand.
inline std::string fixture(const std::string& relativePath) {
  const char* source = std::getenv("VELDA_SOURCE_DIR");
  return readFile(std::string(source ? source : ".") + "/tests/fixtures/" + relativePath);
}

inline void writeFile(const std::string& path, const std::string& content) {
  std::ofstream(path, std::ios::binary | std::ios::trunc) << content;
}

// The names in a folder, sorted; empty when it cannot be read.
inline std::vector<std::string> folderNames(const std::string& path) {
  std::vector<std::string> names;
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator(path, error))
    names.push_back(entry.path().filename().string());
  std::sort(names.begin(), names.end());
  return names;
}

// Whether a list of lines holds this exact line.
template <typename Lines>
bool hasLine(const Lines& lines, const std::string& line) {
  return std::find(lines.begin(), lines.end(), line) != lines.end();
}

}  // namespace test

// The same helpers for code inside velda, where `test` names velda::test.
namespace velda::test {
using ::test::fixture;
using ::test::folderNames;
using ::test::hasLine;
using ::test::readFile;
using ::test::writeFile;
}  // namespace velda::test
