#include "db/extraction/ExtractionFilter.h"

#include <algorithm>
#include <new>

namespace velda {

namespace {

constexpr size_t kInitialWords = size_t{1} << 12;
constexpr size_t kIdentifiersPerWord = 2;

}  // namespace

IdentifierFilter::Words IdentifierFilter::zeroedWords(size_t count) {
  Words words(static_cast<uint64_t*>(std::calloc(count, sizeof(uint64_t))));
  if (!words) throw std::bad_alloc();
  return words;
}

IdentifierFilter::IdentifierFilter() : wordCount_(kInitialWords), words_(zeroedWords(kInitialWords)) {}

void IdentifierFilter::add(uint64_t hash) {
  if (count_ >= kIdentifiersPerWord * wordCount_) grow();
  word(hash) |= bitsOf(hash);
  ++count_;
}

void IdentifierFilter::grow() {
  Words doubled = zeroedWords(2 * wordCount_);
  std::copy(words_.get(), words_.get() + wordCount_, doubled.get());
  std::copy(words_.get(), words_.get() + wordCount_, doubled.get() + wordCount_);
  words_ = std::move(doubled);
  wordCount_ *= 2;
}

}  // namespace velda
