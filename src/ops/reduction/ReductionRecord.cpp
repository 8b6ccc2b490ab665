#include "ops/reduction/ReductionRecord.h"

#include <new>

#include "model/ValueCopy.h"
#include "ops/division/CategoryPart.h"
#include "ops/division/IntervalPart.h"
#include "ops/reduction/VolumeMatrix.h"

namespace velda {

// The covered individuals as a description for the volume.
struct PartsDescription {
  const ReductionRecord& record;

  double size(size_t v) const { return record.parts_[v]->size(); }

  template <typename Visit>
  void forEachPresentCategory(size_t v, Visit visit) const {
    static_cast<const CategoryPart&>(*record.parts_[v]).forEachPresent(visit);
  }
};

void ReductionRecord::addMember(const Individual& individual) {
  members_.push_back(&individual);
  try {
    exclusion_.push_back(0);
  } catch (const std::bad_alloc&) {
    members_.pop_back();
    throw;
  }
  ++covered_;
}

bool ReductionRecord::prepare(const SymbolicMatrix& matrix) {
  try {
    parts_.clear();
    std::vector<const CellValue*> cells(members_.size());
    for (size_t v = 0; v < matrix.cellCount(); ++v) {
      for (size_t m = 0; m < members_.size(); ++m) cells[m] = &members_[m]->cells[v];
      if (matrix.variable(v).isCategorical())
        parts_.push_back(std::make_unique<CategoryPart>(cells));
      else
        parts_.push_back(std::make_unique<IntervalPart>(cells));
    }
  } catch (const std::bad_alloc&) {
    parts_.clear();
    return false;
  }
  return true;
}

void ReductionRecord::release() { parts_.clear(); }

void ReductionRecord::gather(std::vector<RemovalCandidate>& list, size_t v, int32_t k) const {
  parts_[v]->gather(list, static_cast<int32_t>(v), k);
}

int32_t ReductionRecord::apply(const RemovalCandidate& candidate) {
  int32_t removed = 0;
  for (int32_t m : parts_[candidate.variable]->membersInside(candidate)) {
    if (exclusion_[m]++ != 0) continue;
    for (auto& part : parts_) part->remove(static_cast<size_t>(m));
    ++removed;
  }
  covered_ -= removed;
  return removed;
}

int32_t ReductionRecord::undo(const RemovalCandidate& candidate) {
  int32_t restored = 0;
  for (int32_t m : parts_[candidate.variable]->membersInside(candidate)) {
    if (--exclusion_[m] != 0) continue;
    for (auto& part : parts_) part->restore(static_cast<size_t>(m));
    ++restored;
  }
  covered_ += restored;
  return restored;
}

double ReductionRecord::volume(const SymbolicMatrix& matrix) const {
  return describedVolume(matrix, parts_.size(), PartsDescription{*this});
}

std::unique_ptr<Assertion> ReductionRecord::reducedAssertion(const SymbolicMatrix& matrix) const {
  // An assertion without registered individuals is left as it is.
  const size_t cells = members_.empty() ? 0 : matrix.cellCount();
  std::unique_ptr<Assertion> reduced = derivedAssertion(*assertion_, assertion_->id, assertion_->number, cells);
  reduced->memberCount = members_.empty() ? assertion_->memberCount : 0;
  for (size_t m = 0; m < members_.size(); ++m) {
    if (exclusion_[m] != 0) continue;
    reduced->members.push_back(const_cast<Individual*>(members_[m]));
    accumulateMember(*reduced, *members_[m], cells);
  }
  return reduced;
}

}  // namespace velda
