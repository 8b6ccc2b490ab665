#include "model/QuantitativeValue.h"

#include <algorithm>

namespace velda {

void QuantitativeValue::reset() {
  nullWeight = naWeight = totalWeight = 0.0;
  min = std::numeric_limits<double>::max();
  max = -std::numeric_limits<double>::max();
}

bool QuantitativeValue::addCell(const CellValue& cell, double weight) {
  bool result;
  if (!acceptCell(cell, weight, result)) return result;
  const double number = cell.number;  // a copy: the cell's payload is packed
  min = std::min(min, number);
  max = std::max(max, number);
  return true;
}

void QuantitativeValue::writeText(std::ostream& out) const {
  out << '[' << variable().name;
  if (!hasData()) {
    out << (isNA() ? "= NA]" : "= NULL]");
    return;
  }
  if (variable().multiple)
    out << " in [" << min << ':' << max << "]]";
  else
    out << " = " << min << ']';
}

void QuantitativeValue::writeValue(std::ostream& out) const {
  if (!hasData()) {
    out << (isNA() ? "NA" : "NU");
    return;
  }
  if (variable().multiple)
    out << '(' << min << ':' << max << ')';
  else
    out << min;
}

double QuantitativeValue::overlap(const SymbolicValue& other) const {
  const auto& o = static_cast<const QuantitativeValue&>(other);
  const double common = std::min(max, o.max) - std::max(min, o.min);
  return common > 0 ? common : 0.0;
}

}  // namespace velda
