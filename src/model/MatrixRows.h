#pragma once

#include "model/SymbolicMatrix.h"

namespace velda {

// Calls visit(Assertion&) for every row made from the assertions: the
// reduced assertions, and the classes and reduced classes of every horde.
template <typename Visit>
void forEachDerivedRow(SymbolicMatrix& matrix, Visit visit) {
  for (auto& reduced : matrix.reducedAssertions) visit(*reduced);
  for (Horde& horde : matrix.hordes) {
    for (auto& member : horde.classes) visit(*member);
    for (auto& reduced : horde.reducedClasses) visit(*reduced);
  }
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
