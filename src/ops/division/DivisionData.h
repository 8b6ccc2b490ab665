#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "model/SymbolicMatrix.h"
#include "ops/reduction/ReductionRecord.h"

namespace velda {

// One assertion's individuals as the division reads them, over the first P
// variables: each individual's weight and, per variable, its number or its
// category. The categories are the complete disjunctive table in compact
// form: individual i has 1 in the column of category(i, v), 0 in the other
// columns of v, and -1 in every column of v when its cell is NULL or NA.
class DivisionData {
 public:
  // When memory runs out the table stays missing (hasTable() is false).
  DivisionData(const SymbolicMatrix& matrix, const ReductionRecord& record);

  bool hasTable() const { return tableBuilt_; }
  size_t size() const { return weights_.size(); }
  size_t variables() const { return variables_; }

  double weight(size_t i) const { return weights_[i]; }
  bool missing(size_t i, size_t v) const { return categories_[i * variables_ + v] < 0; }
  double number(size_t i, size_t v) const { return numbers_[i * variables_ + v]; }
  // Quantitative variables hold 0 here for a present value.
  int32_t category(size_t i, size_t v) const { return categories_[i * variables_ + v]; }
  // A categorical variable's modality count m (its disjunctive columns).
  int32_t categoryCount(size_t v) const { return categoryCounts_[v]; }
  // The disjunctive table's entry: 1, 0, or -1 when missing.
  double entry(size_t i, size_t v, int32_t c) const {
    const int32_t own = category(i, v);
    return own < 0 ? -1.0 : (own == c ? 1.0 : 0.0);
  }

 private:
  size_t variables_ = 0;
  bool tableBuilt_ = false;
  std::vector<double> weights_;
  std::vector<double> numbers_;
  std::vector<int32_t> categories_;
  std::vector<int32_t> categoryCounts_;
};

}  // namespace velda
