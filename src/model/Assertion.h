#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "common/SmallObjectPool.h"
#include "model/SymbolicValue.h"

namespace velda {

class Individual;

// A named group of individuals with one symbolic value per variable.
class Assertion {
 public:
  Assertion(std::string id, int32_t number) : id(std::move(id)), number(number) {}

  SymbolicValue& value(size_t variable) { return *values[variable]; }
  const SymbolicValue& value(size_t variable) const { return *values[variable]; }

  // Every group of a large matrix holds these two short arrays: they come
  // from the thread's pool.
  using MemberList = std::vector<Individual*, PoolAllocator<Individual*>>;
  using ValueList = std::vector<std::unique_ptr<SymbolicValue>, PoolAllocator<std::unique_ptr<SymbolicValue>>>;

  std::string id;
  int32_t number;
  int32_t memberCount = 0;  // individuals added to the values
  MemberList members;       // linked individuals, in link order
  ValueList values;
};

}  // namespace velda
