#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>
#include <string>

#include "formats/library/SymbolicLibrary.h"
#include "support/FileText.h"
#include "support/TempDir.h"

namespace velda::symlib::test {

inline void ParseText(const std::string& text, SymbolicFile& model) {
  std::istringstream in(text);
  ParseSymbolicFile(in, "nom", model);
}

inline std::string TextOf(const SymbolicFile& model) {
  std::ostringstream out;
  EXPECT_TRUE(WriteSymbolicFileText(model, out));
  return out.str();
}

inline std::string XmlOf(SymbolicFile& model) {
  std::ostringstream out;
  EXPECT_TRUE(WriteXmlSymbolicFile(model, out));
  return out.str();
}

// True when xmllint reads the file as well-formed XML.
inline bool XmlLintAccepts(const std::string& path) {
  const std::string command = "xmllint --noout '" + path + "' 2>/dev/null";
  return std::system(command.c_str()) == 0;
}

// Every test runs in a folder of its own, where the library writes its
// "parser.dat"; the death tests' children write there too.
class LibraryTest : public ::testing::Test {
 protected:
  void SetUp() override {
    previous_ = std::filesystem::current_path();
    std::filesystem::current_path(dir_.path());
  }
  void TearDown() override { std::filesystem::current_path(previous_); }

  std::string log() const { return ::test::readFile(dir_.file("parser.dat")); }
  std::string file(const std::string& name) const { return dir_.file(name); }

 private:
  velda::test::TempDir dir_;
  std::filesystem::path previous_;
};

// The exit handler of the tests that check what happens before an exit
// without ending the test process.
struct LibraryExited {
  int status;
};

[[noreturn]] inline void ThrowOnExit(int status) { throw LibraryExited{status}; }

// Runs a parse whose exit is expected; returns the exit status, or -1 when
// the parse returned.
template <typename Parse>
int ExitStatusOf(Parse&& parse) {
  SetSymbolicExitHandler(ThrowOnExit);
  int status = -1;
  try {
    parse();
  } catch (const LibraryExited& exited) {
    status = exited.status;
  }
  SetSymbolicExitHandler(nullptr);
  return status;
}

}  // namespace velda::symlib::test
