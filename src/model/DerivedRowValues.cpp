#include "model/DerivedRowValues.h"

#include "model/MatrixRows.h"
#include "model/ValueCopy.h"

namespace velda {

DerivedRowValues::DerivedRowValues(SymbolicMatrix& matrix, std::span<const std::unique_ptr<SymbolicVariable>> added,
                                   std::span<const AssertionValues* const> bySource)
    : matrix_(matrix), perRow_(added.size()) {
  forEachDerivedRowWithSource(matrix, [&](Assertion& row, size_t source) {
    row.values.reserve(row.values.size() + added.size());
    const AssertionValues* known = source < bySource.size() ? bySource[source] : nullptr;
    for (size_t j = 0; j < added.size(); ++j)
      values_.push_back(known ? copyValue(*(*known)[j]) : added[j]->newSymbolicValue());
  });
}

void DerivedRowValues::handOver() noexcept {
  auto next = values_.begin();
  forEachDerivedRow(matrix_, [&](Assertion& row) {
    for (size_t j = 0; j < perRow_; ++j) row.values.push_back(std::move(*next++));
  });
  values_.clear();
}

}  // namespace velda
