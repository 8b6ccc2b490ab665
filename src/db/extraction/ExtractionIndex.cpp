#include "db/extraction/ExtractionIndex.h"

#include <algorithm>
#include <functional>
#include <utility>

namespace velda {

namespace {

constexpr size_t kInitialSlots = 1024;
// Slots of the previous array moved on each add. The doubling starts at half
// of the old slots full; moving them all takes a quarter as many adds, so the
// move ends with the new array three eighths full, before it doubles again.
constexpr size_t kMovesPerAdd = 4;

}  // namespace

uint64_t ExtractionIndex::hashOf(std::string_view id) { return std::hash<std::string_view>()(id); }

Assertion* ExtractionIndex::findIn(const Slots& slots, std::string_view id, uint64_t hash) {
  if (slots.empty()) return nullptr;
  for (size_t at = firstSlot(slots, hash);; at = (at + 1) & (slots.size() - 1)) {
    const Slot& slot = slots[at];
    if (!slot.assertion) return nullptr;
    if (slot.hash == hash && slot.assertion->id == id) return slot.assertion;
  }
}

// An entry not yet moved is still in the previous array; one already moved
// is found in the new one first.
Assertion* ExtractionIndex::find(std::string_view id, uint64_t hash) const {
  if (Assertion* found = findIn(slots_, id, hash)) return found;
  return findIn(moving_, id, hash);
}

void ExtractionIndex::put(Slots& slots, const Slot& slot) {
  size_t at = firstSlot(slots, slot.hash);
  while (slots[at].assertion) at = (at + 1) & (slots.size() - 1);
  slots[at] = slot;
}

void ExtractionIndex::add(Assertion& assertion, uint64_t hash) {
  if (2 * (count_ + 1) > slots_.size()) grow();
  put(slots_, {hash, &assertion});
  ++count_;
  moveSome(kMovesPerAdd);
}

void ExtractionIndex::grow() {
  moveSome(moving_.size());  // always ended by now (see kMovesPerAdd): nothing may be lost if not
  Slots doubled(slots_.empty() ? kInitialSlots : 2 * slots_.size());
  moving_ = std::exchange(slots_, std::move(doubled));
  moved_ = 0;
}

void ExtractionIndex::moveSome(size_t count) {
  if (moving_.empty()) return;
  for (const size_t end = std::min(moved_ + count, moving_.size()); moved_ < end; ++moved_)
    if (moving_[moved_].assertion) put(slots_, moving_[moved_]);
  if (moved_ == moving_.size()) moving_ = Slots();
}

}  // namespace velda
