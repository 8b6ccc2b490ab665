#pragma once

#include <memory>
#include <vector>

#include "model/SymbolicMatrix.h"
#include "ops/reduction/ReductionRecord.h"

namespace velda {

// The records that a reduction or a division works on, one per assertion.
class WorkSet {
 public:
  // One record per assertion of the matrix, at the slot of its number
  // (orderedAssertions must be built), then every individual of the
  // individual table registered with the records of the assertions it
  // belongs to. An individual that cannot be registered shows "dans le if";
  // every failure returns 0.
  int buildFromAssertions(const SymbolicMatrix& matrix);
  // One record per class, each registering the class's own members.
  // Returns 0 when memory runs out.
  int buildFromClasses(const std::vector<std::unique_ptr<Assertion>>& classes);

  std::vector<ReductionRecord> records;
};

}  // namespace velda
