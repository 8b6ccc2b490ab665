#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "ops/reduction/RemovalCandidate.h"

namespace velda {

// One variable of a reduction record: what the individuals still covered
// (exclusion counter 0) hold for it, kept as integer counts so that
// removing and restoring individuals in any order gives back the same
// state. Individuals are named by their slot in the record.
class VariablePart {
 public:
  virtual ~VariablePart() = default;

  virtual void remove(size_t member) = 0;
  virtual void restore(size_t member) = 0;
  // The size of the value the covered individuals make: an interval's width
  // (1 when it is not wider than a point), a number of categories (1 when
  // none).
  virtual double size() const = 0;
  // Appends the removal steps of this variable that cost at most k
  // individuals, in the order they are made. Throws std::bad_alloc.
  virtual void gather(std::vector<RemovalCandidate>& list, int32_t variable, int32_t k) const = 0;
  // Covered individuals inside the step.
  virtual int32_t liveCost(const RemovalCandidate& candidate) const = 0;
  // Every individual (covered or not) inside the step.
  virtual std::span<const int32_t> membersInside(const RemovalCandidate& candidate) const = 0;
};

}  // namespace velda
