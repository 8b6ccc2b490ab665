#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "model/Assertion.h"

namespace velda {

// The extraction's assertions by identifier: an open-addressing table that
// finds a group with one or two probes of one array, where the matrix's
// assertion table (whose bucket count is fixed until the matrix is finished)
// walks long chains. Keys are the identifiers held by the assertions.
class ExtractionIndex {
 public:
  static uint64_t hashOf(std::string_view id);

  Assertion* find(std::string_view id, uint64_t hash) const;
  // Adds an assertion that find() does not know. Throws std::bad_alloc,
  // leaving the index as it was.
  void add(Assertion& assertion, uint64_t hash);
  // Starts loading the first slot of this hash, for a find soon after.
  void prefetch(uint64_t hash) const {
    if (!slots_.empty()) __builtin_prefetch(&slots_[firstSlot(hash)]);
  }

 private:
  struct Slot {
    uint64_t hash = 0;
    Assertion* assertion = nullptr;  // null: free
  };
  size_t firstSlot(uint64_t hash) const { return static_cast<size_t>(hash) & (slots_.size() - 1); }
  void grow();

  std::vector<Slot> slots_;  // a power of two, at most half full
  size_t count_ = 0;
};

}  // namespace velda
