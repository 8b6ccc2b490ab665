#pragma once

#include "model/SymbolicMatrix.h"

namespace velda {

// Calls visit(Assertion&) for every row of the matrix that holds one value
// per variable: the assertions, the reduced assertions, and the classes and
// reduced classes of every horde. What changes a column changes it in all.
template <typename Visit>
void forEachValueRow(SymbolicMatrix& matrix, Visit visit) {
  for (Assertion& assertion : matrix.assertions) visit(assertion);
  for (auto& reduced : matrix.reducedAssertions) visit(*reduced);
  for (Horde& horde : matrix.hordes) {
    for (auto& member : horde.classes) visit(*member);
    for (auto& reduced : horde.reducedClasses) visit(*reduced);
  }
}

}  // namespace velda
