#include "model/CellValue.h"

#include "common/Format.h"
#include "model/Modality.h"

namespace velda {

bool CellValue::sameAs(const CellValue& other) const {
  if (flags != other.flags) return false;
  if (isMissing()) return true;
  if (flags & CELL_MODALITY) return modality == other.modality;
  if (flags & CELL_NUMBER) return number == other.number;
  return true;
}

std::string cellText(const CellValue& cell) {
  if (cell.flags & CELL_NULL) return "NULL";
  if (cell.flags & CELL_NA) return "NA";
  if (cell.flags & CELL_MODALITY) return cell.modality->name;
  if (cell.flags & CELL_NUMBER) return format("%.2f", cell.number);
  return {};
}

}  // namespace velda
