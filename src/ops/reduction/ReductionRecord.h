#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "model/Assertion.h"
#include "model/Individual.h"
#include "model/SymbolicMatrix.h"
#include "ops/division/VariablePart.h"

namespace velda {

// What the reduction and the division know of one assertion: its
// individuals, each with an exclusion counter (0: still covered), and, once
// prepared, one part per cell-holding variable describing the covered
// individuals.
class ReductionRecord {
 public:
  explicit ReductionRecord(const Assertion& assertion) : assertion_(&assertion) {}

  const Assertion& assertion() const { return *assertion_; }
  const std::vector<const Individual*>& members() const { return members_; }
  int32_t size() const { return static_cast<int32_t>(members_.size()); }

  // Throws std::bad_alloc.
  void addMember(const Individual& individual);

  // Builds the parts of the first cellCount variables from the members, all
  // covered. Returns false when memory runs out.
  bool prepare(const SymbolicMatrix& matrix);
  void release();

  // Appends the removal steps of variable v that cost at most k. Throws
  // std::bad_alloc.
  void gather(std::vector<RemovalCandidate>& list, size_t v, int32_t k) const;
  int32_t liveCost(const RemovalCandidate& candidate) const { return parts_[candidate.variable]->liveCost(candidate); }
  // Raises the exclusion counter of every individual inside the step;
  // returns how many became excluded. Undo lowers them again and returns how
  // many became covered.
  int32_t apply(const RemovalCandidate& candidate);
  int32_t undo(const RemovalCandidate& candidate);
  int32_t covered() const { return covered_; }

  // The volume of the description that the covered individuals make.
  double volume(const SymbolicMatrix& matrix) const;

  // The reduced assertion: the same name and number, values accumulated
  // afresh from the covered individuals for the cell-holding variables and
  // copied from the assertion for the others (all copied when the record has
  // no individual). Throws std::bad_alloc.
  std::unique_ptr<Assertion> reducedAssertion(const SymbolicMatrix& matrix) const;

 private:
  friend struct PartsDescription;

  const Assertion* assertion_;
  std::vector<const Individual*> members_;
  std::vector<int32_t> exclusion_;
  std::vector<std::unique_ptr<VariablePart>> parts_;
  int32_t covered_ = 0;
};

}  // namespace velda
