#pragma once

#include <vector>

#include "ops/division/DivisionCut.h"
#include "ops/division/DivisionData.h"

namespace velda {

// Categorical variables with more categories than this are never cut.
constexpr int32_t kMaxCutCategories = 12;

// The best cut of the node (members[i] != 0) over its categorical variables
// of at most 12 categories: every subset s = 1 .. 2^m - 2 (category c on the
// left when bit c is set), of the individuals not missing on the variable.
// The quality is 1 - (I(left) + I(right)) / I(both) on the complete
// disjunctive table, unweighted, missing rows left out:
//   I(S) = sum over v of (n_v - sum over c of n_vc^2 / n_v).
// When the table or the node's individuals are missing the program shows
// "le tableau disjonctif complet ou les indiv non initialis\xe9s" and ends.
DivisionCut findCategoricalCut(const DivisionData* data, const std::vector<char>* members);

}  // namespace velda
