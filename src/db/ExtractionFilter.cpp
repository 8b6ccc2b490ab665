#include "db/ExtractionFilter.h"

#include <new>

namespace velda {

IdentifierFilter::IdentifierFilter()
    : words_(static_cast<uint64_t*>(std::calloc((kMask + 1) / 64, sizeof(uint64_t)))) {
  if (!words_) throw std::bad_alloc();
}

}  // namespace velda
