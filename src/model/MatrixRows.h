#pragma once

#include "model/SymbolicMatrix.h"

namespace velda {

// Calls visit(Assertion& row, size_t source) for every row made from the
// assertions, with the number of the assertion it was made from: the
// reduced assertions, and the classes and reduced classes of every horde.
template <typename Visit>
void forEachDerivedRowWithSource(SymbolicMatrix& matrix, Visit visit) {
  for (size_t i = 0; i < matrix.reducedAssertions.size(); ++i) visit(*matrix.reducedAssertions[i], i);
  for (size_t i = 0; i < matrix.hordes.size(); ++i) {
    for (auto& member : matrix.hordes[i].classes) visit(*member, i);
    for (auto& reduced : matrix.hordes[i].reducedClasses) visit(*reduced, i);
  }
}

// Calls visit(Assertion&) for every row made from the assertions.
template <typename Visit>
void forEachDerivedRow(SymbolicMatrix& matrix, Visit visit) {
  forEachDerivedRowWithSource(matrix, [&](Assertion& row, size_t) { visit(row); });
}

// Calls visit(Assertion&) for every row of the matrix that holds one value
// per variable: the assertions, then the rows made from them. What changes
// a column changes it in all.
template <typename Visit>
void forEachValueRow(SymbolicMatrix& matrix, Visit visit) {
  for (Assertion& assertion : matrix.assertions) visit(assertion);
  forEachDerivedRow(matrix, visit);
}

}  // namespace velda
