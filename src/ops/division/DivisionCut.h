#pragma once

#include <cstdint>

namespace velda {

// The best way found to cut a node in two: on a quantitative variable the
// left side is x <= value; on a categorical one it holds the categories
// whose bit is set in subset. Quality -1.0 means the node cannot be cut.
struct DivisionCut {
  static constexpr double kTieTolerance = 1e-05;

  // Whether a cut of this quality, whose smaller side has `smallerSide`
  // individuals, replaces this one: a larger quality wins; anything beats
  // no cut; within the tolerance the cut with the larger smaller side wins
  // (the more balanced cut).
  bool replacedBy(double newQuality, int32_t newSmallerSide) const {
    if (newQuality > quality) return true;
    if (quality == -1.0) return true;
    return newQuality >= quality - kTieTolerance && newSmallerSide > smallerSide;
  }

  int32_t variable = -1;
  double value = 0.0;
  uint32_t subset = 0;
  double quality = -1.0;
  int32_t smallerSide = 0;
};

}  // namespace velda
