#pragma once

#include <cstdint>
#include <memory>
#include <ostream>
#include <string>

#include "model/CellValue.h"

namespace velda {

class DeclarationStyle;
class SymbolicValue;
struct DependenceRule;

// A column of the symbolic data matrix.
class SymbolicVariable {
 public:
  SymbolicVariable(std::string name, int32_t multiple) : name(std::move(name)), multiple(multiple) {}
  virtual ~SymbolicVariable() = default;
  SymbolicVariable(const SymbolicVariable&) = delete;
  SymbolicVariable& operator=(const SymbolicVariable&) = delete;

  virtual bool isCategorical() const = 0;
  // Turns one row's database text (null for a NULL column) into a cell,
  // growing the variable's domain. Returns false when memory runs out.
  [[nodiscard]] virtual bool addCell(const char* text, CellValue& cell) = 0;
  virtual void writeDescription(std::ostream& out) const = 0;
  // Writes the variable's item of the symbolic text file's VARIABLES block,
  // under its number in the file, with its NA and NU counts over the rows
  // written.
  virtual void writeDeclaration(std::ostream& out, int32_t number, double naCount, double nuCount,
                                const DeclarationStyle& style) const = 0;
  virtual std::unique_ptr<SymbolicValue> newSymbolicValue() const = 0;

  std::string name;
  // Quantitative: 1 for an interval variable. Categorical: 1 for a
  // set-valued (multinominal) variable.
  int32_t multiple;
  // 1 while the variable takes part in exports, 0 once set inactive.
  int32_t active = 1;

  // Dependences: indexes into the matrix's variables, -1 for none.
  int32_t motherIndex = -1;
  const DependenceRule* rule = nullptr;  // the rule that governs a daughter
  int32_t firstDaughter = -1;
  int32_t nextDaughter = -1;
};

}  // namespace velda
