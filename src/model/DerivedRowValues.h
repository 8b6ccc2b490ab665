#pragma once

#include <memory>
#include <span>
#include <vector>

#include "model/SymbolicValue.h"
#include "model/SymbolicVariable.h"

namespace velda {

class SymbolicMatrix;

// Empty values of variables being appended, for the rows made from the
// assertions (the reduced assertions, and the classes and reduced classes
// of every horde), so that those rows keep one value per variable. Made
// before the matrix changes, handed over once nothing else can fail.
class DerivedRowValues {
 public:
  // One empty value per row and variable, and room for them in each row.
  // Throws std::bad_alloc, leaving the rows' values as they were.
  DerivedRowValues(SymbolicMatrix& matrix, std::span<const std::unique_ptr<SymbolicVariable>> added);

  // Appends the values to their rows, in the variables' order. Does not
  // allocate.
  void handOver() noexcept;

 private:
  SymbolicMatrix& matrix_;
  size_t perRow_;
  std::vector<std::unique_ptr<SymbolicValue>> values_;
};

}  // namespace velda
