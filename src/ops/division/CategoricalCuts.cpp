#include "ops/division/CategoricalCuts.h"

#include <algorithm>
#include <bit>
#include <cmath>

#include "ops/EndWithMessage.h"

namespace velda {

namespace {

const char kNoTable[] = "le tableau disjonctif complet ou les indiv non initialis\xe9s";

// Per subset of the cut variable's categories: the individuals, and per
// variable the non-missing count n_v and the sum of squared category counts.
class SubsetSums {
 public:
  SubsetSums(const DivisionData& data, const std::vector<char>& members, size_t u, int32_t m);

  uint32_t full() const { return (1u << m_) - 1; }
  int32_t individuals(uint32_t s) const { return individuals_[s]; }
  double inertia(uint32_t s) const {
    double total = 0.0;
    for (size_t v = 0; v < p_; ++v) {
      const int64_t n = counts_[s * p_ + v];
      if (n > 0) total += static_cast<double>(n) - static_cast<double>(squares_[s * p_ + v]) / static_cast<double>(n);
    }
    return total;
  }

 private:
  size_t p_;
  int32_t m_;
  std::vector<int32_t> individuals_;
  std::vector<int64_t> counts_;
  std::vector<int64_t> squares_;
};

SubsetSums::SubsetSums(const DivisionData& data, const std::vector<char>& members, size_t u, int32_t m)
    : p_(data.variables()), m_(m) {
  const auto categories = static_cast<size_t>(m);
  std::vector<size_t> offset(p_ + 1, 0);
  for (size_t v = 0; v < p_; ++v) offset[v + 1] = offset[v] + static_cast<size_t>(std::max(data.categoryCount(v), 0));
  const size_t columns = offset[p_];

  // Per category a of u: individuals, counts per variable and per column.
  std::vector<int32_t> perCategory(categories, 0);
  std::vector<int64_t> perVariable(categories * p_, 0);
  std::vector<int64_t> perColumn(categories * columns, 0);
  for (size_t i = 0; i < data.size(); ++i) {
    const int32_t a = members[i] ? data.category(i, u) : -1;
    if (a < 0) continue;
    ++perCategory[a];
    for (size_t v = 0; v < p_; ++v) {
      const int32_t c = data.category(i, v);
      if (c < 0) continue;
      ++perVariable[a * p_ + v];
      ++perColumn[a * columns + offset[v] + static_cast<size_t>(c)];
    }
  }
  // gram[v][a][b] = sum over the columns c of v of count(a, c) x count(b, c)
  std::vector<int64_t> gram(p_ * categories * categories, 0);
  for (size_t v = 0; v < p_; ++v)
    for (size_t a = 0; a < categories; ++a)
      for (size_t b = 0; b < categories; ++b)
        for (size_t c = offset[v]; c < offset[v + 1]; ++c)
          gram[(v * categories + a) * categories + b] += perColumn[a * columns + c] * perColumn[b * columns + c];

  // Each subset extends the one without its lowest category.
  const size_t subsets = size_t{1} << categories;
  individuals_.assign(subsets, 0);
  counts_.assign(subsets * p_, 0);
  squares_.assign(subsets * p_, 0);
  for (uint32_t s = 1; s < subsets; ++s) {
    const auto a = static_cast<size_t>(std::countr_zero(s));
    const uint32_t rest = s & (s - 1);
    individuals_[s] = individuals_[rest] + perCategory[a];
    for (size_t v = 0; v < p_; ++v) {
      const int64_t* row = &gram[(v * categories + a) * categories];
      int64_t square = squares_[rest * p_ + v] + row[a];
      for (uint32_t bits = rest; bits; bits &= bits - 1) square += 2 * row[std::countr_zero(bits)];
      counts_[s * p_ + v] = counts_[rest * p_ + v] + perVariable[a * p_ + v];
      squares_[s * p_ + v] = square;
    }
  }
}

}  // namespace

DivisionCut findCategoricalCut(const DivisionData* data, const std::vector<char>* members) {
  if (!data || !data->hasTable() || !members || members->size() != data->size()) endWithMessage(kNoTable);
  DivisionCut best;
  for (size_t u = 0; u < data->variables(); ++u) {
    const int32_t m = data->categoryCount(u);
    if (m < 2 || m > kMaxCutCategories) continue;
    const SubsetSums sums(*data, *members, u, m);
    const uint32_t full = sums.full();
    const double nodeInertia = sums.inertia(full);
    if (!(nodeInertia > 0)) continue;
    for (uint32_t s = 1; s < full; ++s) {
      const int32_t left = sums.individuals(s);
      const int32_t right = sums.individuals(full ^ s);
      if (left == 0 || right == 0) continue;
      const double quality = 1.0 - (sums.inertia(s) + sums.inertia(full ^ s)) / nodeInertia;
      if (!std::isfinite(quality)) continue;
      const int32_t smaller = std::min(left, right);
      if (!best.replacedBy(quality, smaller)) continue;
      best.variable = static_cast<int32_t>(u);
      best.subset = s;
      best.quality = quality;
      best.smallerSide = smaller;
    }
  }
  return best;
}

}  // namespace velda
