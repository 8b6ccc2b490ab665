#pragma once

#include <limits>

#include "model/SymbolicVariable.h"

namespace velda {

// A variable built from a numeric column: one number per individual, an
// interval (or a single number) per assertion.
class QuantitativeVariable final : public SymbolicVariable {
 public:
  explicit QuantitativeVariable(std::string name, int32_t interval = 1) : SymbolicVariable(std::move(name), interval) {}

  bool isCategorical() const override { return false; }
  [[nodiscard]] bool addCell(const char* text, CellValue& cell) override;
  void writeDescription(std::ostream& out) const override;
  void writeDeclaration(std::ostream& out, int32_t number, double naCount, double nuCount,
                        const DeclarationStyle& style) const override;
  std::unique_ptr<SymbolicValue> newSymbolicValue() const override;

  bool hasValues() const { return min <= max; }

  double min = std::numeric_limits<double>::max();
  double max = -std::numeric_limits<double>::max();
};

}  // namespace velda
