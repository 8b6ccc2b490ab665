#pragma once

#include <fstream>
#include <sstream>
#include <string>

namespace test {

// The whole content of a file as bytes; empty when it cannot be read.
inline std::string readFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream content;
  content << in.rdbuf();
  return content.str();
}

}  // namespace test
