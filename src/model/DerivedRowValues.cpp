#include "model/DerivedRowValues.h"

#include "model/MatrixRows.h"

namespace velda {

DerivedRowValues::DerivedRowValues(SymbolicMatrix& matrix, std::span<const std::unique_ptr<SymbolicVariable>> added)
    : matrix_(matrix), perRow_(added.size()) {
  forEachDerivedRow(matrix, [&](Assertion& row) {
    row.values.reserve(row.values.size() + added.size());
    for (const auto& variable : added) values_.push_back(variable->newSymbolicValue());
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
