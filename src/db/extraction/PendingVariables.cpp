#include "db/extraction/PendingVariables.h"

#include <algorithm>
#include <new>

#include "common/LastError.h"
#include "model/CategoricalValue.h"

namespace velda {

PendingVariables::PendingVariables(SymbolicMatrix& matrix)
    : matrix_(matrix), covered_(matrix.assertionCount(), 0), values_(matrix.assertionCount()) {
  assertions_.reserve(matrix.assertionCount());
  positions_.reserve(matrix.assertionCount());
  for (const Assertion& a : matrix.assertions) {
    positions_.emplace(&a, assertions_.size());
    assertions_.push_back(&a);
  }
}

SymbolicVariable& PendingVariables::add(std::unique_ptr<SymbolicVariable> variable) {
  variables_.reserve(variables_.size() + 1);
  for (auto& row : values_) row.reserve(variables_.size() + 1);
  std::vector<std::unique_ptr<SymbolicValue>> fresh;
  fresh.reserve(values_.size());
  for (size_t i = 0; i < values_.size(); ++i) fresh.push_back(variable->newSymbolicValue());
  // Nothing below allocates.
  for (size_t i = 0; i < values_.size(); ++i) values_[i].push_back(std::move(fresh[i]));
  variables_.push_back(std::move(variable));
  return *variables_.back();
}

size_t PendingVariables::positionOf(const char* assertionId) const {
  const Assertion* assertion = matrix_.findAssertion(assertionId);
  if (!assertion) return kNotFound;
  const auto found = positions_.find(assertion);
  return found == positions_.end() ? kNotFound : found->second;
}

size_t PendingVariables::coveredCount() const {
  return static_cast<size_t>(std::count(covered_.begin(), covered_.end(), 1));
}

bool PendingVariables::commit() {
  try {
    // The new values in the order that a saved and reopened project has,
    // before anything is appended.
    for (auto& row : values_) {
      for (auto& value : row) {
        if (!value->variable().isCategorical()) continue;
        auto& categorical = static_cast<CategoricalValue&>(*value);
        if (!categorical.entries.empty()) categorical.rebuild();
      }
    }
    matrix_.appendVariables(variables_, values_);
  } catch (const std::bad_alloc&) {
    setError("Memory allocation failed");
    return false;
  }
  return true;
}

}  // namespace velda
