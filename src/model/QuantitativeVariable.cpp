#include "model/QuantitativeVariable.h"

#include <cmath>

#include "common/Decimal.h"
#include "model/DeclarationStyle.h"
#include "model/QuantitativeValue.h"

namespace velda {

bool QuantitativeVariable::addCell(const char* text, CellValue& cell) {
  const double number = text ? parseDecimal(text) : 0.0;
  // A database value that is not a finite number counts as missing.
  if (!text || !std::isfinite(number)) {
    cell.flags = CELL_NUMBER | CELL_NULL;
    cell.number = 0.0;
    return true;
  }
  if (number < min) min = number;
  if (number > max) max = number;
  cell.flags = CELL_NUMBER;
  cell.number = number;
  return true;
}

void QuantitativeVariable::writeDescription(std::ostream& out) const {
  out << "variable " << name << '\n' << "  real ";
  if (hasValues())
    out << '[' << min << ':' << max << ']';
  else
    out << "NULL";
  out << '\n' << (multiple ? "  interval;" : "  unique;") << '\n';
}

void QuantitativeVariable::writeDeclaration(std::ostream& out, int32_t number, double naCount, double nuCount,
                                            const DeclarationStyle& style) const {
  const auto letters = static_cast<uint32_t>(number);
  out << "  (" << number << ", " << (multiple ? "inter_continue" : "continue") << ", \"\", ";
  style.writeQuoted(out, style.code(letters, 0));
  out << ", ";
  style.writeQuoted(out, name);
  out << ", " << naCount << ", " << nuCount << ", " << min << ", " << max << ')';
}

std::unique_ptr<SymbolicValue> QuantitativeVariable::newSymbolicValue() const {
  return std::make_unique<QuantitativeValue>(*this);
}

}  // namespace velda
