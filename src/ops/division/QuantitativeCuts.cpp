#include "ops/division/QuantitativeCuts.h"

#include <algorithm>
#include <cmath>

namespace velda {

namespace {

// Weighted sums of one variable's centred values over a set of individuals.
struct Sums {
  double weight = 0.0;
  double linear = 0.0;
  double square = 0.0;

  void add(double w, double d) {
    weight += w;
    linear += w * d;
    square += w * d * d;
  }
  Sums minus(const Sums& part) const { return {weight - part.weight, linear - part.linear, square - part.square}; }
  // sum of w (x - mean)^2 over the set
  double inertia() const {
    if (weight <= 0) return 0.0;
    const double value = square - linear * linear / weight;
    return value > 0 ? value : 0.0;
  }
};

double inertiaOf(const std::vector<Sums>& sums) {
  double total = 0.0;
  for (const Sums& s : sums) total += s.inertia();
  return total;
}

// Left side of the cut between successive distinct values a < b: x <= cut.
double cutValue(double a, double b) {
  const double middle = 0.5 * (a + b);
  return middle < b ? middle : a;
}

}  // namespace

DivisionCut findQuantitativeCut(const DivisionData& data, const std::vector<char>& members) {
  DivisionCut best;
  const size_t p = data.variables();
  std::vector<size_t> present;
  std::vector<double> centre(p);
  for (size_t u = 0; u < p; ++u) {
    present.clear();
    for (size_t i = 0; i < data.size(); ++i)
      if (members[i] && !data.missing(i, u)) present.push_back(i);
    if (present.size() < 2) continue;
    std::stable_sort(present.begin(), present.end(),
                     [&](size_t x, size_t y) { return data.number(x, u) < data.number(y, u); });

    // Centring on the weighted means keeps the sums of squares accurate.
    for (size_t v = 0; v < p; ++v) {
      double weight = 0.0;
      double sum = 0.0;
      for (size_t i : present) {
        if (data.missing(i, v)) continue;
        weight += data.weight(i);
        sum += data.weight(i) * data.number(i, v);
      }
      centre[v] = weight > 0 ? sum / weight : 0.0;
    }
    std::vector<Sums> total(p);
    for (size_t i : present)
      for (size_t v = 0; v < p; ++v)
        if (!data.missing(i, v)) total[v].add(data.weight(i), data.number(i, v) - centre[v]);
    const double nodeInertia = inertiaOf(total);
    if (!(nodeInertia > 0)) continue;

    std::vector<Sums> left(p);
    std::vector<Sums> right(p);
    const auto count = static_cast<int32_t>(present.size());
    for (int32_t j = 0; j + 1 < count; ++j) {
      const size_t i = present[j];
      for (size_t v = 0; v < p; ++v)
        if (!data.missing(i, v)) left[v].add(data.weight(i), data.number(i, v) - centre[v]);
      const double a = data.number(i, u);
      const double b = data.number(present[j + 1], u);
      if (!(a < b)) continue;
      for (size_t v = 0; v < p; ++v) right[v] = total[v].minus(left[v]);
      const double quality = 1.0 - (inertiaOf(left) + inertiaOf(right)) / nodeInertia;
      if (!std::isfinite(quality)) continue;
      const int32_t smaller = std::min(j + 1, count - j - 1);
      if (!best.replacedBy(quality, smaller)) continue;
      best.variable = static_cast<int32_t>(u);
      best.value = cutValue(a, b);
      best.quality = quality;
      best.smallerSide = smaller;
    }
  }
  return best;
}

}  // namespace velda
