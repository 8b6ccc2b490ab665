#include "model/SymbolicValue.h"

#include "model/SymbolicVariable.h"

namespace velda {

bool SymbolicValue::acceptCell(const CellValue& cell, double weight, bool& result) {
  if (!variable_->multiple && totalWeight > 0) {
    result = false;
    return false;
  }
  totalWeight += weight;
  result = true;
  if (cell.flags & CELL_NULL) {
    nullWeight += weight;
    return false;
  }
  if (cell.flags & CELL_NA) {
    naWeight += weight;
    return false;
  }
  // A cleared cell (no bit set) holds nothing to add beyond its weight.
  const uint32_t kind = variable_->isCategorical() ? CELL_MODALITY : CELL_NUMBER;
  return (cell.flags & kind) != 0;
}

}  // namespace velda
