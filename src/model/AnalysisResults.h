#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "model/Assertion.h"

namespace velda {

// A packed lower-triangular matrix of doubles over n items, stored row by
// row: row i holds (i,0) .. (i,i-1) and then the diagonal (i,i), so it has
// n(n+1)/2 entries.
struct TriangularMatrix {
  static size_t slot(size_t i, size_t j) { return i * (i + 1) / 2 + j; }  // j <= i

  bool empty() const { return entries.empty(); }
  void clear() {
    order = 0;
    entries.clear();
  }
  // Either triangle may be asked: (i,j) and (j,i) are the same entry.
  double at(size_t i, size_t j) const { return i >= j ? entries[slot(i, j)] : entries[slot(j, i)]; }

  size_t order = 0;  // n, the number of items
  std::vector<double> entries;
};

// The classes into which the division split one assertion, and what the
// reduction of hordes made of them.
struct Horde {
  // Individuals of the divided assertion.
  int32_t individualCount = 0;
  // One assertion per leaf of the division tree, in leaf order, named after
  // the divided assertion and the leaf's node number; members are set, and
  // the classes belong to no table and to no individual's membership.
  std::vector<std::unique_ptr<Assertion>> classes;
  // Per class: the leaf's label (" Classe %d (Ng=%d)" or " Classe %d (Nd=%d)")
  // and the numbers of the cuts on its path to the root, ascending.
  std::vector<std::string> labels;
  std::vector<std::vector<int32_t>> cutPaths;

  // Set by "Reduce Hordes": one reduced class per class (empty before), and
  // the volume matrices over the classes and over the reduced classes.
  std::vector<std::unique_ptr<Assertion>> reducedClasses;
  TriangularMatrix volumesBefore;
  TriangularMatrix volumesAfter;
};

// Whether any horde holds reduced classes ("at least one reduced horde").
inline bool hasReducedHordes(const std::vector<Horde>& hordes) {
  for (const Horde& horde : hordes)
    if (!horde.reducedClasses.empty()) return true;
  return false;
}

}  // namespace velda
