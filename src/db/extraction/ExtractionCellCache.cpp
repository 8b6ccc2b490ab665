#include "db/extraction/ExtractionCellCache.h"

#include <cstring>
#include <utility>

#include "model/Modality.h"

namespace velda {

namespace {

constexpr size_t kInitialSlots = 64;

// FNV-1a over the text's bytes, measuring its length on the way.
uint32_t hashText(const char* text, size_t& length) {
  uint32_t hash = 2166136261u;
  const char* at = text;
  for (; *at; ++at) hash = (hash ^ static_cast<unsigned char>(*at)) * 16777619u;
  length = static_cast<size_t>(at - text);
  return hash;
}

}  // namespace

int ExtractionCellCache::addCell(SymbolicVariable& variable, const char* text, CellValue& cell) {
  if (!text) return variable.addCell(text, cell);
  size_t length = 0;
  const uint32_t hash = hashText(text, length);
  if (!slots_.empty()) {
    for (size_t at = firstSlot(hash);; at = (at + 1) & (slots_.size() - 1)) {
      const Slot& slot = slots_[at];
      const Modality* modality = slot.cell.modality;
      if (!modality) break;
      if (slot.hash != hash || modality->name.size() != length || std::memcmp(modality->name.data(), text, length))
        continue;
      cell = slot.cell;
      return 1;
    }
  }
  if (!variable.addCell(text, cell)) return 0;
  if (cell.flags == CELL_MODALITY && cell.modality && count_ < kMaxTexts) remember(hash, cell);
  return 1;
}

void ExtractionCellCache::remember(uint32_t hash, const CellValue& cell) {
  if (2 * (count_ + 1) > slots_.size()) grow();
  size_t at = firstSlot(hash);
  while (slots_[at].cell.modality) at = (at + 1) & (slots_.size() - 1);
  slots_[at].cell = cell;
  slots_[at].hash = hash;
  ++count_;
}

void ExtractionCellCache::grow() {
  std::vector<Slot> old(slots_.empty() ? kInitialSlots : 2 * slots_.size());
  for (Slot& slot : old) slot.cell.modality = nullptr;
  std::swap(old, slots_);
  for (const Slot& slot : old) {
    if (!slot.cell.modality) continue;
    size_t at = firstSlot(slot.hash);
    while (slots_[at].cell.modality) at = (at + 1) & (slots_.size() - 1);
    slots_[at] = slot;
  }
}

}  // namespace velda
