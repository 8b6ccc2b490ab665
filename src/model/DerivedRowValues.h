#pragma once

#include <memory>
#include <span>
#include <vector>

#include "model/SymbolicValue.h"
#include "model/SymbolicVariable.h"

namespace velda {

class SymbolicMatrix;

// The values of variables being appended, for the rows made from the
// assertions (the reduced assertions, and the classes and reduced classes
// of every horde), so that those rows keep one value per variable: a row
// describes the same object as its assertion on every variable that is not
// built from the individuals' cells, so it gets a copy of its assertion's
// value. Made before the matrix changes, handed over once nothing else can
// fail.
class DerivedRowValues {
 public:
  // The new values of the assertion numbered n, in the variables' order.
  using AssertionValues = std::vector<std::unique_ptr<SymbolicValue>>;

  // One value per row and variable, and room for them in each row: a copy
  // of bySource[n]'s value for a row made from assertion n, an empty value
  // where bySource holds none. Throws std::bad_alloc, leaving the rows'
  // values as they were.
  DerivedRowValues(SymbolicMatrix& matrix, std::span<const std::unique_ptr<SymbolicVariable>> added,
                   std::span<const AssertionValues* const> bySource = {});

  // Appends the values to their rows, in the variables' order. Does not
  // allocate.
  void handOver() noexcept;

 private:
  SymbolicMatrix& matrix_;
  size_t perRow_;
  std::vector<std::unique_ptr<SymbolicValue>> values_;
};

}  // namespace velda
