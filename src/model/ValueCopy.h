#pragma once

#include <memory>

#include "model/Assertion.h"
#include "model/SymbolicValue.h"

namespace velda {

class Individual;

// A new value of the same variable holding the same weights, bounds and
// entries; the entries keep their table order. Throws std::bad_alloc.
std::unique_ptr<SymbolicValue> copyValue(const SymbolicValue& value);

// Adds the individual's cells of the first cellCount variables to the
// assertion's values with its weight, and counts it as a member. A
// single-valued value keeps its first contribution (a further one is
// skipped, not an error). Returns false when memory runs out.
bool accumulateMember(Assertion& assertion, const Individual& individual, size_t cellCount);

// A fresh assertion (in no table) named `id`, with an empty value for each
// of the first cellCount variables of `source` and a copy of the others.
// Throws std::bad_alloc.
std::unique_ptr<Assertion> derivedAssertion(const Assertion& source, std::string id, int32_t number, size_t cellCount);

}  // namespace velda
