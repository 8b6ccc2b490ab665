#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "model/Assertion.h"
#include "model/SymbolicMatrix.h"
#include "model/SymbolicVariable.h"

namespace velda {

// The volume of a description over the first p variables of a matrix: the
// product of the variables' sizes, where
//   - a daughter of a dependence contributes nothing by itself;
//   - a mother contributes the sum, over its categories present in the
//     description, of the product of the sizes of its daughters (among the
//     first p) whose rule makes them applicable for that category (1 when
//     none is);
//   - any other variable contributes its own size.
// A Description tells, per variable index, size(v), and calls
// forEachPresentCategory(v, visit) with each present category's index.
template <typename Description>
double describedVolume(const SymbolicMatrix& matrix, size_t p, const Description& description) {
  double volume = 1.0;
  for (size_t v = 0; v < p; ++v) {
    const SymbolicVariable& variable = matrix.variable(v);
    const bool daughter = variable.motherIndex >= 0 || matrix.isDaughter(v);
    if (daughter) continue;
    if (variable.firstDaughter < 0 || !variable.isCategorical()) {
      volume *= description.size(v);
      continue;
    }
    double sum = 0.0;
    description.forEachPresentCategory(v, [&](int32_t category) {
      double product = 1.0;
      for (int32_t d = variable.firstDaughter; d >= 0; d = matrix.variable(static_cast<size_t>(d)).nextDaughter) {
        const auto index = static_cast<size_t>(d);
        if (index >= matrix.variableCount()) break;
        const SymbolicVariable& child = matrix.variable(index);
        if (index < p && child.rule && child.rule->applicable.find(category)) product *= description.size(index);
      }
      sum += product;
    });
    volume *= sum;
  }
  return volume;
}

// A volume put on a per-variable scale: volume^(1/p), computed as
// 2^(log2(volume)/p); a volume of 0 gives 0, and p <= 0 leaves it as it is.
double volumeEntry(double volume, double p);

// The volume of one assertion's values, and of two assertions' values taken
// together (each variable's overlap; for a mother the categories present
// in both). Categories are present when their own weight (not the
// taxonomy's subtree weight) is above 0.
double assertionVolume(const SymbolicMatrix& matrix, size_t p, const Assertion& assertion);
double pairVolume(const SymbolicMatrix& matrix, size_t p, const Assertion& a, const Assertion& b);

// Fills `out` with the packed lower-triangular matrix over the items:
// (i,i) = volumeEntry(assertionVolume(i)), (i,j) = volumeEntry(pairVolume(i,j)).
// The volumes use the first cellCount variables of the matrix. Returns
// false, leaving `out` empty, when memory runs out.
[[nodiscard]] bool computeVolumeMatrix(const SymbolicMatrix& matrix, std::span<const Assertion* const> items, double p,
                                       TriangularMatrix& out);

}  // namespace velda
