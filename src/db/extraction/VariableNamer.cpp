#include "db/extraction/VariableNamer.h"

#include <algorithm>

#include "common/Format.h"
#include "model/SymbolicMatrix.h"

namespace velda {

VariableNamer::VariableNamer(const SymbolicMatrix& matrix) {
  taken_.reserve(matrix.variableCount() + 2);
  taken_.push_back(matrix.individualColumn);
  taken_.push_back(matrix.assertionColumn);
  for (const auto& variable : matrix.variables()) taken_.push_back(variable->name);
}

std::string VariableNamer::nameFor(const std::string& columnName) {
  std::string name = columnName;
  std::replace(name.begin(), name.end(), ' ', '_');
  int counter = 0;
  for (const std::string& taken : taken_) {
    if (taken != name) continue;
    name = format("%s_%d", columnName.c_str(), ++counter);
  }
  taken_.push_back(name);
  return name;
}

}  // namespace velda
