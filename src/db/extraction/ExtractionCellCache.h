#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "model/CellValue.h"
#include "model/SymbolicVariable.h"

namespace velda {

// The cells that one categorical variable gave for the texts met so far, so
// that a text met again costs one pass over its bytes and one probe instead
// of a walk along a chain of the variable's modality table (whose bucket
// count is fixed until the matrix is finished). A text's cell is a modality
// of the variable, and modalities are never removed during an extraction, so
// a text always gives the same cell. At most kMaxTexts texts are kept.
class ExtractionCellCache {
 public:
  static constexpr size_t kMaxTexts = 4096;

  // Sets cell as variable.addCell(text, cell) does. Returns 0 when memory
  // runs out; throws std::bad_alloc when the cache cannot grow.
  int addCell(SymbolicVariable& variable, const char* text, CellValue& cell);

 private:
  struct Slot {
    CellValue cell;  // cell.modality null: free
    uint32_t hash = 0;
  };
  size_t firstSlot(uint32_t hash) const { return hash & (slots_.size() - 1); }
  void remember(uint32_t hash, const CellValue& cell);
  void grow();

  std::vector<Slot> slots_;  // a power of two, at most half full
  size_t count_ = 0;
};

}  // namespace velda
