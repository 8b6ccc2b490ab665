#pragma once

#include <string>
#include <vector>

#include "model/SymbolicMatrix.h"
#include "ops/division/DivisionData.h"

namespace velda {

// Computes the gravity centre of a node (members[i] != 0) and writes it,
// recreating "result.txt" in the working directory: per variable of the
// matrix " variable: <name> \n", then per coordinate "  gravit\xe9 de <assertion> =  <x>"
// with no line break after it. A quantitative coordinate is the weighted
// mean of the values that are neither NULL nor NA (-1 when there is none);
// a categorical one, per category, the plain mean of its disjunctive column,
// where missing (-1) entries are left out (-1 when nothing is left); the
// first missing entry of a division run shows the box "valeur manquante". Variables whose cells individuals do not
// hold get -1. When the node's individuals or the centre's storage are
// missing the program shows "le centre de gravit\xe9 ou les indiv non initialis\xe9s"
// and ends.
// Shows "valeur manquante" at the first missing entry of a division run and
// stays silent afterwards: one per run, not one per entry.
class MissingValueNotice {
 public:
  void missingEntry();

 private:
  bool shown_ = false;
};

void writeGravityCentre(const SymbolicMatrix& matrix, const DivisionData* data, const std::vector<char>* members,
                        const std::string& assertionName, MissingValueNotice& notice);

}  // namespace velda
