#include "ops/division/DivisionData.h"

#include <new>

#include "model/CategoricalVariable.h"
#include "model/Modality.h"

namespace velda {

DivisionData::DivisionData(const SymbolicMatrix& matrix, const ReductionRecord& record)
    : variables_(matrix.cellCount()) {
  const auto& members = record.members();
  const size_t n = members.size();
  try {
    weights_.resize(n);
    numbers_.assign(n * variables_, 0.0);
    categories_.assign(n * variables_, -1);
    categoryCounts_.assign(variables_, 0);
  } catch (const std::bad_alloc&) {
    weights_.clear();
    numbers_.clear();
    categories_.clear();
    return;
  }
  for (size_t v = 0; v < variables_; ++v) {
    const SymbolicVariable& variable = matrix.variable(v);
    if (variable.isCategorical())
      categoryCounts_[v] = static_cast<int32_t>(static_cast<const CategoricalVariable&>(variable).modalityCount());
  }
  for (size_t i = 0; i < n; ++i) {
    weights_[i] = members[i]->weight;
    for (size_t v = 0; v < variables_; ++v) {
      const CellValue& cell = members[i]->cells[v];
      const size_t slot = i * variables_ + v;
      if (cell.hasNumber()) {
        numbers_[slot] = cell.number;
        categories_[slot] = 0;
      } else if (cell.hasModality() && cell.modality && cell.modality->index >= 0 &&
                 cell.modality->index < categoryCounts_[v]) {
        categories_[slot] = cell.modality->index;
      }
    }
  }
  tableBuilt_ = true;
}

}  // namespace velda
