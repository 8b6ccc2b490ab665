#pragma once

#include <optional>

#include "model/CellValue.h"
#include "ops/division/FenwickCounts.h"
#include "ops/division/VariablePart.h"

namespace velda {

// A quantitative variable's part: the distinct values of the record's
// individuals in ascending order, each with the number of covered
// individuals holding it. NULL and NA cells take no part.
class IntervalPart final : public VariablePart {
 public:
  // cells[m] is member m's cell. Throws std::bad_alloc.
  explicit IntervalPart(const std::vector<const CellValue*>& cells);

  void remove(size_t member) override;
  void restore(size_t member) override;
  double size() const override;
  void gather(std::vector<RemovalCandidate>& list, int32_t variable, int32_t k) const override;
  int32_t liveCost(const RemovalCandidate& candidate) const override;
  std::span<const int32_t> membersInside(const RemovalCandidate& candidate) const override;

 private:
  std::vector<double> values_;     // distinct values, ascending
  std::vector<int32_t> position_;  // per member: its value's position, -1 when missing
  std::vector<int32_t> byValue_;   // members ordered by value
  std::vector<int32_t> start_;     // per position: first slot in byValue_, plus an end slot
  std::optional<FenwickCounts> counts_;
};

}  // namespace velda
