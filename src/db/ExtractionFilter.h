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
// It has a fixed size, 4 MB: at a million individuals, about 1 new identifier
// in 300 is answered "maybe"; far beyond, more of them are, and only the
// speed suffers.
class IdentifierFilter {
 public:
  // Throws std::bad_alloc.
  IdentifierFilter();

  bool mayContain(uint64_t hash) const { return test(hash) && test(hash >> 32); }
  void add(uint64_t hash) {
    set(hash);
    set(hash >> 32);
  }

 private:
  static constexpr unsigned kBitsLog2 = 25;
  static constexpr uint64_t kMask = (uint64_t{1} << kBitsLog2) - 1;

  bool test(uint64_t h) const { return words_[(h & kMask) >> 6] >> (h & 63) & 1; }
  void set(uint64_t h) { words_[(h & kMask) >> 6] |= uint64_t{1} << (h & 63); }

  struct Free {
    void operator()(uint64_t* words) const { std::free(words); }
  };
  // Zeroed by calloc, so that pages are only touched as bits are set.
  std::unique_ptr<uint64_t[], Free> words_;
};

}  // namespace velda
