#pragma once

#include <vector>

#include "ops/division/DivisionCut.h"
#include "ops/division/DivisionData.h"

namespace velda {

// The best cut of the node (members[i] != 0) over its quantitative
// variables. For each variable, the individuals missing on it take no part
// in the test; the cut values are the midpoints of successive distinct
// values, the quality 1 - (I(left) + I(right)) / I(both), with
//   I(S) = sum over i in S of w_i x sum over v of (x_iv - g_v)^2,
// g_v the weighted mean over S of the individuals not missing on v and the
// missing terms left out. The sums run over the values sorted once per
// variable.
DivisionCut findQuantitativeCut(const DivisionData& data, const std::vector<char>& members);

}  // namespace velda
