#pragma once

#include <cstdlib>
#include <string>

#include "LibraryTestSupport.h"

namespace velda::symlib::test {

// The hand-written sample file of the tests, in the layout of the
// program's symbolic text writer.
inline std::string TownsFile() {
  const char* source = std::getenv("VELDA_SOURCE_DIR");
  return ReadFile(std::string(source ? source : ".") + "/tests/fixtures/symlib/towns.kvf");
}

// The text with its first occurrence of `from` replaced.
inline std::string Edited(std::string text, const std::string& from, const std::string& to) {
  const size_t at = text.find(from);
  EXPECT_NE(at, std::string::npos) << from;
  if (at != std::string::npos) text.replace(at, from.size(), to);
  return text;
}

inline bool Contains(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

}  // namespace velda::symlib::test
