#include "ops/reduction/VolumeMatrix.h"

#include <cmath>
#include <new>

#include "model/CategoricalValue.h"

namespace velda {

namespace {

const CategoricalValue& categoricalValue(const Assertion& assertion, size_t v) {
  return static_cast<const CategoricalValue&>(assertion.value(v));
}

// One assertion's values as a description.
struct OwnDescription {
  const Assertion& assertion;

  double size(size_t v) const { return assertion.value(v).size(); }

  template <typename Visit>
  void forEachPresentCategory(size_t v, Visit visit) const {
    for (const ValueEntry& entry : categoricalValue(assertion, v).entries)
      if (entry.weight > 0) visit(entry.index);
  }
};

// Two assertions' values taken together.
struct PairDescription {
  const Assertion& a;
  const Assertion& b;

  double size(size_t v) const {
    if (!a.value(v).variable().isCategorical()) return a.value(v).overlap(b.value(v));
    double common = 0.0;
    forEachPresentCategory(v, [&](int32_t) { ++common; });
    return common;
  }

  template <typename Visit>
  void forEachPresentCategory(size_t v, Visit visit) const {
    const CategoricalValue& other = categoricalValue(b, v);
    for (const ValueEntry& entry : categoricalValue(a, v).entries) {
      if (entry.weight <= 0) continue;
      const ValueEntry* match = other.entries.find(entry.index);
      if (match && match->weight > 0) visit(entry.index);
    }
  }
};

}  // namespace

double volumeEntry(double volume, double p) {
  if (volume == 0.0) return 0.0;
  if (p <= 0) return volume;
  return std::exp2(std::log2(volume) / p);
}

double assertionVolume(const SymbolicMatrix& matrix, size_t p, const Assertion& assertion) {
  return describedVolume(matrix, p, OwnDescription{assertion});
}

double pairVolume(const SymbolicMatrix& matrix, size_t p, const Assertion& a, const Assertion& b) {
  return describedVolume(matrix, p, PairDescription{a, b});
}

bool computeVolumeMatrix(const SymbolicMatrix& matrix, std::span<const Assertion* const> items, double p,
                         TriangularMatrix& out) {
  out.clear();
  const size_t n = items.size();
  const size_t cells = matrix.cellCount();
  try {
    out.entries.resize(n * (n + 1) / 2);
  } catch (const std::bad_alloc&) {
    out.clear();
    return false;
  }
  out.order = n;
  for (size_t i = 0; i < n; ++i) {
    for (size_t j = 0; j < i; ++j)
      out.entries[TriangularMatrix::slot(i, j)] = volumeEntry(pairVolume(matrix, cells, *items[i], *items[j]), p);
    out.entries[TriangularMatrix::slot(i, i)] = volumeEntry(assertionVolume(matrix, cells, *items[i]), p);
  }
  return true;
}

}  // namespace velda
