#include "db/extraction/ExtractionIndex.h"

#include <functional>
#include <utility>

namespace velda {

namespace {

constexpr size_t kInitialSlots = 1024;

}  // namespace

uint64_t ExtractionIndex::hashOf(std::string_view id) { return std::hash<std::string_view>()(id); }

Assertion* ExtractionIndex::find(std::string_view id, uint64_t hash) const {
  if (slots_.empty()) return nullptr;
  for (size_t at = firstSlot(hash);; at = (at + 1) & (slots_.size() - 1)) {
    const Slot& slot = slots_[at];
    if (!slot.assertion) return nullptr;
    if (slot.hash == hash && slot.assertion->id == id) return slot.assertion;
  }
}

void ExtractionIndex::add(Assertion& assertion, uint64_t hash) {
  if (2 * (count_ + 1) > slots_.size()) grow();
  size_t at = firstSlot(hash);
  while (slots_[at].assertion) at = (at + 1) & (slots_.size() - 1);
  slots_[at] = {hash, &assertion};
  ++count_;
}

void ExtractionIndex::grow() {
  std::vector<Slot> old(slots_.empty() ? kInitialSlots : 2 * slots_.size());
  std::swap(old, slots_);
  for (const Slot& slot : old) {
    if (!slot.assertion) continue;
    size_t at = firstSlot(slot.hash);
    while (slots_[at].assertion) at = (at + 1) & (slots_.size() - 1);
    slots_[at] = slot;
  }
}

}  // namespace velda
