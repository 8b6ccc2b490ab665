#pragma once

#include <string>

#include "LibraryTestSupport.h"

namespace velda::symlib::test {

// A file of tests/fixtures/symlib: towns.kvf is the hand-written sample in
// the layout of the program's symbolic text writer, towns.xml the same
// towns as the library writes them in XML, towns_meta.xml a small metadata
// document as the library writes it.
inline std::string Fixture(const std::string& name) { return ::test::fixture("symlib/" + name); }

inline std::string TownsFile() { return Fixture("towns.kvf"); }

inline SymbolicFile ParsedTowns() {
  SymbolicFile model;
  ParseText(TownsFile(), model);
  return model;
}

// The text with its first occurrence of `from` replaced.
inline std::string Edited(std::string text, const std::string& from, const std::string& to) {
  const size_t at = text.find(from);
  EXPECT_NE(at, std::string::npos) << from;
  if (at != std::string::npos) text.replace(at, from.size(), to);
  return text;
}

// The sample without its hierarchy and its rule.
inline std::string PlainTowns() {
  std::string text = Edited(TownsFile(), "RULES, HIERARCHIE, ", "");
  text = Edited(text, "rules_nb = 1", "rules_nb = 0");
  text = Edited(text, "nb_hierarchies = 1", "nb_hierarchies = 0");
  const size_t from = text.find("HIERARCHIE = (");
  text.erase(from, text.find("RECTANGLE_MATRIX = (") - from);
  return text;
}

inline bool Contains(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

}  // namespace velda::symlib::test
