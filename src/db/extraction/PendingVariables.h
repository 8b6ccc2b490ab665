#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "model/SymbolicMatrix.h"

namespace velda {

// Variables being added to a matrix from a query: they and every
// assertion's values for them are built beside the matrix, which changes
// only when commit() appends them all at once.
class PendingVariables {
 public:
  static constexpr size_t kNotFound = static_cast<size_t>(-1);

  // Throws std::bad_alloc.
  explicit PendingVariables(SymbolicMatrix& matrix);

  // Adds a variable with an empty value per assertion. Throws std::bad_alloc.
  SymbolicVariable& add(std::unique_ptr<SymbolicVariable> variable);
  size_t count() const { return variables_.size(); }
  SymbolicVariable& variable(size_t j) { return *variables_[j]; }
  const std::string& name(size_t j) const { return variables_[j]->name; }

  // The position of an existing assertion (table order), or kNotFound.
  size_t positionOf(const char* assertionId) const;
  const Assertion& assertionAt(size_t position) const { return *assertions_[position]; }
  size_t assertionCount() const { return assertions_.size(); }
  SymbolicValue& value(size_t position, size_t j) { return *values_[position][j]; }

  // Whether a row of the query named the assertion.
  void cover(size_t position) { covered_[position] = 1; }
  bool isCovered(size_t position) const { return covered_[position] != 0; }
  size_t coveredCount() const;

  // Appends the variables and their values, each categorical value's
  // entries rehashed to their count, to the matrix. Returns false (with
  // "Memory allocation failed" set), leaving the matrix unchanged, when
  // memory runs out.
  [[nodiscard]] bool commit();

 private:
  SymbolicMatrix& matrix_;
  std::vector<const Assertion*> assertions_;
  std::unordered_map<const Assertion*, size_t> positions_;
  std::vector<char> covered_;
  std::vector<std::unique_ptr<SymbolicVariable>> variables_;
  std::vector<std::vector<std::unique_ptr<SymbolicValue>>> values_;  // [position][variable]
};

}  // namespace velda
