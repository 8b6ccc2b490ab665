#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "model/SymbolicValue.h"

namespace velda {

class Individual;

// A named group of individuals with one symbolic value per variable.
class Assertion {
 public:
  Assertion(std::string id, int32_t number) : id(std::move(id)), number(number) {}

  SymbolicValue& value(size_t variable) { return *values[variable]; }
  const SymbolicValue& value(size_t variable) const { return *values[variable]; }

  std::string id;
  int32_t number;
  int32_t memberCount = 0;           // individuals added to the values
  std::vector<Individual*> members;  // linked individuals, in link order
  std::vector<std::unique_ptr<SymbolicValue>> values;
};

}  // namespace velda
