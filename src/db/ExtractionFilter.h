#pragma once

#include <cstdint>
#include <cstdlib>
#include <memory>

namespace velda {

// The identifiers of the individuals extracted so far, as a Bloom filter: it
// tells at once that most new identifiers are new, where the matrix's
// individual table (whose bucket count is fixed until the matrix is
// finished) walks a long chain to find out. A "maybe" is settled by the
// table. Hashes are ExtractionIndex::hashOf.
//
// An identifier sets two bits of one 64-bit word, so that a test or an add
// reaches memory once (the filter is far larger than the processor's
// caches). It has a fixed size, 4 MB: at a million individuals, fewer than 1
// new identifier in 200 is answered "maybe"; far beyond, more of them are,
// and only the speed suffers.
class IdentifierFilter {
 public:
  // Throws std::bad_alloc.
  IdentifierFilter();

  bool mayContain(uint64_t hash) const {
    const uint64_t bits = bitsOf(hash);
    return (word(hash) & bits) == bits;
  }
  void add(uint64_t hash) { word(hash) |= bitsOf(hash); }
  // Starts loading the word of this hash, for a test or add soon after.
  void prefetch(uint64_t hash) const { __builtin_prefetch(&word(hash)); }

 private:
  static constexpr unsigned kWordsLog2 = 19;
  static constexpr uint64_t kWordMask = (uint64_t{1} << kWordsLog2) - 1;

  // The word from the low bits of the hash, the two bits from the high ones.
  uint64_t& word(uint64_t hash) const { return words_[hash & kWordMask]; }
  static uint64_t bitsOf(uint64_t hash) { return uint64_t{1} << (hash >> 52 & 63) | uint64_t{1} << (hash >> 58); }

  struct Free {
    void operator()(uint64_t* words) const { std::free(words); }
  };
  // Zeroed by calloc, so that pages are only touched as bits are set.
  std::unique_ptr<uint64_t[], Free> words_;
};

}  // namespace velda
