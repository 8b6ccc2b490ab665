#include "model/ValueCopy.h"

#include <new>

#include "model/CategoricalValue.h"
#include "model/Individual.h"
#include "model/QuantitativeValue.h"
#include "model/SymbolicVariable.h"

namespace velda {

namespace {

std::unique_ptr<SymbolicValue> emptyValueLike(const SymbolicValue& value) {
  return value.variable().newSymbolicValue();
}

}  // namespace

std::unique_ptr<SymbolicValue> copyValue(const SymbolicValue& value) {
  std::unique_ptr<SymbolicValue> copy = emptyValueLike(value);
  copy->nullWeight = value.nullWeight;
  copy->naWeight = value.naWeight;
  copy->totalWeight = value.totalWeight;
  if (value.variable().isCategorical()) {
    const auto& from = static_cast<const CategoricalValue&>(value);
    auto& to = static_cast<CategoricalValue&>(*copy);
    // Same bucket count and same insertion order give the same table order.
    if (!to.entries.rebuild(from.entries.bucketCount())) throw std::bad_alloc();
    for (const ValueEntry& entry : from.entries) to.entries.insert(entry.index, entry.weight, entry.subtreeWeight);
  } else {
    const auto& from = static_cast<const QuantitativeValue&>(value);
    auto& to = static_cast<QuantitativeValue&>(*copy);
    to.min = from.min;
    to.max = from.max;
  }
  return copy;
}

bool accumulateMember(Assertion& assertion, const Individual& individual, size_t cellCount) {
  ++assertion.memberCount;
  for (size_t v = 0; v < cellCount; ++v) {
    SymbolicValue& value = *assertion.values[v];
    if (!value.variable().multiple && value.totalWeight > 0) continue;
    if (!value.addCell(individual.cells[v], individual.weight)) return false;
  }
  return true;
}

std::unique_ptr<Assertion> derivedAssertion(const Assertion& source, std::string id, int32_t number, size_t cellCount) {
  auto derived = std::make_unique<Assertion>(std::move(id), number);
  derived->values.reserve(source.values.size());
  for (size_t v = 0; v < source.values.size(); ++v) {
    const SymbolicValue& value = *source.values[v];
    derived->values.push_back(v < cellCount ? emptyValueLike(value) : copyValue(value));
  }
  return derived;
}

}  // namespace velda
