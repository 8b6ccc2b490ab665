#include "db/extraction/ExtractionFilter.h"

#include <algorithm>

namespace velda {

namespace {

constexpr size_t kInitialWords = size_t{1} << 12;
constexpr size_t kIdentifiersPerWord = 2;

}  // namespace

IdentifierFilter::IdentifierFilter() : words_(kInitialWords) {}

void IdentifierFilter::add(uint64_t hash) {
  if (count_ >= kIdentifiersPerWord * words_.size()) grow();
  word(hash) |= bitsOf(hash);
  ++count_;
}

void IdentifierFilter::grow() {
  const size_t count = words_.size();
  ZeroedArray<uint64_t> doubled(2 * count);
  std::copy(words_.data(), words_.data() + count, doubled.data());
  std::copy(words_.data(), words_.data() + count, doubled.data() + count);
  words_ = std::move(doubled);
}

}  // namespace velda
