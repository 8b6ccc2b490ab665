#pragma once

#include "model/CellValue.h"
#include "ops/division/VariablePart.h"

namespace velda {

// A categorical variable's part: per category (modality index), the number
// of covered individuals holding it. A category whose count reaches 0 is no
// longer present. NULL and NA cells take no part.
class CategoryPart final : public VariablePart {
 public:
  // cells[m] is member m's cell. Throws std::bad_alloc.
  explicit CategoryPart(const std::vector<const CellValue*>& cells);

  void remove(size_t member) override;
  void restore(size_t member) override;
  double size() const override { return present_ > 0 ? static_cast<double>(present_) : 1.0; }
  void gather(std::vector<RemovalCandidate>& list, int32_t variable, int32_t k) const override;
  int32_t liveCost(const RemovalCandidate& candidate) const override { return counts_[candidate.category]; }
  std::span<const int32_t> membersInside(const RemovalCandidate& candidate) const override;

  // Calls visit(index) for every present category, in index order.
  template <typename Visit>
  void forEachPresent(Visit visit) const {
    for (size_t c = 0; c < counts_.size(); ++c)
      if (counts_[c] > 0) visit(static_cast<int32_t>(c));
  }

 private:
  std::vector<int32_t> category_;    // per member: its category, -1 when missing
  std::vector<int32_t> counts_;      // per category: covered members
  std::vector<int32_t> byCategory_;  // members grouped by category
  std::vector<int32_t> start_;       // per category: first slot in byCategory_, plus an end slot
  int32_t present_ = 0;
};

}  // namespace velda
