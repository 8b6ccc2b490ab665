#include "db/ExtractionFilter.h"

#include <new>

namespace velda {

IdentifierFilter::IdentifierFilter()
    : words_(static_cast<uint64_t*>(std::calloc(kWordMask + 1, sizeof(uint64_t)))) {
  if (!words_) throw std::bad_alloc();
}

}  // namespace velda
