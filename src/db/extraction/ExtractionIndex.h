#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "common/ZeroedArray.h"
#include "model/Assertion.h"

namespace velda {

// The extraction's assertions by identifier: an open-addressing table that
// finds a group with one or two probes of one array, where the matrix's
// assertion table (whose bucket count is fixed until the matrix is finished)
// walks long chains. Keys are the identifiers held by the assertions.
//
// The table doubles a little at a time: the new array takes the new groups
// while each add also moves a few entries of the previous one, which lookups
// still read until it is empty. A million groups never stop the extraction
// while a large array is cleared and refilled, and the rows read meanwhile
// do not pile up.
class ExtractionIndex {
 public:
  static uint64_t hashOf(std::string_view id);

  Assertion* find(std::string_view id, uint64_t hash) const;
  // Adds an assertion that find() does not know. Throws std::bad_alloc,
  // leaving the index as it was.
  void add(Assertion& assertion, uint64_t hash);
  // Starts loading the first slots of this hash, for a find soon after.
  void prefetch(uint64_t hash) const {
    if (!slots_.empty()) __builtin_prefetch(&slots_[firstSlot(slots_, hash)]);
    if (!moving_.empty()) __builtin_prefetch(&moving_[firstSlot(moving_, hash)]);
  }

 private:
  struct Slot {
    uint64_t hash;
    Assertion* assertion;  // null: free
  };
  using Slots = ZeroedArray<Slot>;  // a power of two of slots

  static size_t firstSlot(const Slots& slots, uint64_t hash) { return static_cast<size_t>(hash) & (slots.size() - 1); }
  static Assertion* findIn(const Slots& slots, std::string_view id, uint64_t hash);
  static void put(Slots& slots, const Slot& slot);
  void grow();
  // Moves up to this many slots of moving_ to slots_, and frees moving_
  // once it is all moved.
  void moveSome(size_t count);

  Slots slots_;   // at most half full
  Slots moving_;  // the array before the last doubling, until moved
  size_t moved_ = 0;
  size_t count_ = 0;
};

}  // namespace velda
