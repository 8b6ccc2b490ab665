#pragma once

#include <cstdint>

namespace velda {

// One possible shrinking step of one variable of one assertion: excluding
// the individuals whose value lies in [a, b] (an interval variable, the
// positions low..high of the part's distinct values) or whose category is
// `category` (a categorical variable).
struct RemovalCandidate {
  int32_t variable = 0;
  int32_t active = 1;     // 1 while the step is not applied
  int32_t category = -1;  // categorical step
  double a = 0.0;         // interval step
  double b = 0.0;
  int32_t low = 0;
  int32_t high = 0;
  int32_t cost = 0;  // individuals removed when it was gathered
};

}  // namespace velda
