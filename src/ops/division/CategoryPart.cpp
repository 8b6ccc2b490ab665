#include "ops/division/CategoryPart.h"

#include "model/Modality.h"

namespace velda {

CategoryPart::CategoryPart(const std::vector<const CellValue*>& cells) : category_(cells.size(), -1) {
  for (size_t m = 0; m < cells.size(); ++m) {
    if (!cells[m]->hasModality() || !cells[m]->modality || cells[m]->modality->index < 0) continue;
    const int32_t c = cells[m]->modality->index;
    category_[m] = c;
    if (static_cast<size_t>(c) >= counts_.size()) counts_.resize(static_cast<size_t>(c) + 1, 0);
    if (counts_[c]++ == 0) ++present_;
  }
  start_.assign(counts_.size() + 1, 0);
  for (size_t c = 0; c < counts_.size(); ++c) start_[c + 1] = start_[c] + counts_[c];
  byCategory_.resize(static_cast<size_t>(start_.back()));
  std::vector<int32_t> next(start_.begin(), start_.end() - 1);
  for (size_t m = 0; m < category_.size(); ++m)
    if (category_[m] >= 0) byCategory_[next[category_[m]]++] = static_cast<int32_t>(m);
}

void CategoryPart::remove(size_t member) {
  const int32_t c = category_[member];
  if (c >= 0 && --counts_[c] == 0) --present_;
}

void CategoryPart::restore(size_t member) {
  const int32_t c = category_[member];
  if (c >= 0 && counts_[c]++ == 0) ++present_;
}

void CategoryPart::gather(std::vector<RemovalCandidate>& list, int32_t variable, int32_t k) const {
  for (size_t c = 0; c < counts_.size(); ++c) {
    if (counts_[c] == 0 || counts_[c] > k) continue;
    RemovalCandidate candidate;
    candidate.variable = variable;
    candidate.category = static_cast<int32_t>(c);
    candidate.cost = counts_[c];
    list.push_back(candidate);
  }
}

std::span<const int32_t> CategoryPart::membersInside(const RemovalCandidate& candidate) const {
  const auto c = static_cast<size_t>(candidate.category);
  return std::span<const int32_t>(byCategory_).subspan(start_[c], start_[c + 1] - start_[c]);
}

}  // namespace velda
