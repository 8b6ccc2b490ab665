#pragma once

#include <sstream>
#include <string>

#include "model/SymbolicMatrix.h"

namespace velda::test {

// One line per assertion in number order: its name, its members in link
// order and its values as the symbolic text file writes them.
inline std::string groupsText(const SymbolicMatrix& matrix) {
  std::ostringstream out;
  for (const Assertion* assertion : matrix.orderedAssertions) {
    out << assertion->id << ':';
    for (const Individual* member : assertion->members) out << ' ' << member->id;
    out << " =";
    for (size_t v = 0; v < matrix.variableCount(); ++v) {
      out << ' ';
      assertion->value(v).writeValue(out);
    }
    out << '\n';
  }
  return out.str();
}

}  // namespace velda::test
