#pragma once

#include <ostream>

#include "common/SmallObjectPool.h"
#include "model/CellValue.h"

namespace velda {

class SymbolicVariable;

// The value of one assertion for one variable, accumulated from the
// weighted cells of its members. A large matrix holds millions of them:
// they come from the thread's pool of small objects.
class SymbolicValue : public PooledObject {
 public:
  explicit SymbolicValue(const SymbolicVariable& variable) : variable_(&variable) {}
  virtual ~SymbolicValue() = default;
  SymbolicValue(const SymbolicValue&) = delete;
  SymbolicValue& operator=(const SymbolicValue&) = delete;

  // No number or modality, some NA weight and no NULL weight.
  virtual bool isNA() const { return !hasData() && naWeight != 0.0 && nullWeight == 0.0; }
  // No number or modality and no NA weight.
  virtual bool isNull() const { return !hasData() && naWeight == 0.0; }
  virtual void reset() = 0;
  // Adds one member's cell with its weight. A single-valued variable takes
  // one contribution only: a second one is refused with false. Throws
  // std::bad_alloc when memory runs out.
  [[nodiscard]] virtual bool addCell(const CellValue& cell, double weight) = 0;
  // The bracketed form of the assertion display.
  virtual void writeText(std::ostream& out) const = 0;
  // The form of the symbolic text file.
  virtual void writeValue(std::ostream& out) const = 0;
  virtual double size() const = 0;
  // Common extent with another value of the same variable.
  virtual double overlap(const SymbolicValue& other) const = 0;

  // Whether any number or modality was added.
  virtual bool hasData() const = 0;
  // A value without data is written "NA" when isNA(), else "NU" (so a
  // value with both NA and NULL weight is "NU").
  bool writesNU() const { return !hasData() && !isNA(); }

  const SymbolicVariable& variable() const { return *variable_; }

  double nullWeight = 0.0;
  double naWeight = 0.0;
  double totalWeight = 0.0;

 protected:
  // Steps shared by both kinds: the single-valued refusal and the weights.
  // Returns false when the call is finished (refused, missing or cleared
  // cell) and sets result.
  [[nodiscard]] bool acceptCell(const CellValue& cell, double weight, bool& result);

 private:
  const SymbolicVariable* variable_;
};
static_assert(alignof(SymbolicValue) <= SmallObjectPool::kGrain, "the pool's blocks hold every value");

}  // namespace velda
