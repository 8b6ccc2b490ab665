#pragma once

#include <limits>

#include "model/QuantitativeVariable.h"
#include "model/SymbolicValue.h"

namespace velda {

// An interval [min, max] (or one number for a single variable).
class QuantitativeValue final : public SymbolicValue {
 public:
  explicit QuantitativeValue(const QuantitativeVariable& variable) : SymbolicValue(variable) {}

  void reset() override;
  [[nodiscard]] bool addCell(const CellValue& cell, double weight) override;
  void writeText(std::ostream& out) const override;
  void writeValue(std::ostream& out) const override;
  double size() const override { return max > min ? max - min : 1.0; }
  double overlap(const SymbolicValue& other) const override;
  bool hasData() const override { return min <= max; }

  double min = std::numeric_limits<double>::max();
  double max = -std::numeric_limits<double>::max();
};

}  // namespace velda
