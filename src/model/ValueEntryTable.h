#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <new>
#include <type_traits>
#include <utility>
#include <vector>

namespace velda {

// The weight of one modality in a categorical value.
struct ValueEntry {
  ValueEntry(int32_t index, double weight = 0.0, double subtreeWeight = 0.0)
      : index(index), weight(weight), subtreeWeight(subtreeWeight) {}
  int32_t index;  // the modality's index

 private:
  friend class ValueEntryTable;
  // The position of the following entry of the table's chain, in the room
  // that the alignment of the weights leaves after the index.
  uint32_t next_ = UINT32_MAX;

 public:
  double weight;         // accumulated from the members' cells
  double subtreeWeight;  // set by the taxonomy, read instead when there is one
};
static_assert(sizeof(ValueEntry) == 24, "the chain link fits beside the index");

// The entries of a categorical value, keyed by modality index. It behaves as
// a ChainedHashTable hashed by the index itself: iteration walks buckets 0 to
// n-1 and each chain from head to tail, new entries go to the tail of their
// chain, and rebuild() re-appends every entry in iteration order, so the same
// inserts always give the same order.
//
// The entries are stored in one array, in insertion order, and chained by
// position (the link is kept in the entry itself): a large extraction makes about one entry per row and category
// column, and an array takes about half of what a node per entry takes, and
// keeps a value's entries together for lookups. The price is that an entry's
// address is valid only until the next insert or rebuild.
//
// A value of a group with many categories outgrows its few buckets: from
// kIndexedFrom entries on, the table keeps the tail of every chain and an
// index of the entries by modality, so that inserts and lookups stay at a
// constant cost. Without memory for them it walks the chains as before.
class ValueEntryTable {
  static constexpr uint32_t kEnd = UINT32_MAX;
  static constexpr size_t kIndexedFrom = 64;

 public:
  using Key = int32_t;

  explicit ValueEntryTable(size_t bucketCount = 1) : heads_(bucketCount == 0 ? 1 : bucketCount, kEnd) {}
  ValueEntryTable(const ValueEntryTable&) = delete;
  ValueEntryTable& operator=(const ValueEntryTable&) = delete;
  ValueEntryTable(ValueEntryTable&& other) noexcept
      : entries_(std::move(other.entries_)),
        heads_(std::move(other.heads_)),
        tails_(std::move(other.tails_)),
        slots_(std::move(other.slots_)) {
    other.reset();
  }
  ValueEntryTable& operator=(ValueEntryTable&& other) noexcept {
    if (this != &other) {
      entries_ = std::move(other.entries_);
      heads_ = std::move(other.heads_);
      tails_ = std::move(other.tails_);
      slots_ = std::move(other.slots_);
      other.reset();
    }
    return *this;
  }

  size_t size() const { return entries_.size(); }
  bool empty() const { return entries_.empty(); }
  size_t bucketCount() const { return heads_.size(); }

  ValueEntry* find(Key index) {
    if (!slots_.empty()) {
      for (size_t slot = slotOf(index);; slot = (slot + 1) & (slots_.size() - 1)) {
        const uint32_t at = slots_[slot];
        if (at == kEnd) return nullptr;
        if (entries_[at].index == index) return &entries_[at];
      }
    }
    for (uint32_t at = heads_[bucketOf(index, heads_.size())]; at != kEnd; at = entries_[at].next_)
      if (entries_[at].index == index) return &entries_[at];
    return nullptr;
  }
  const ValueEntry* find(Key index) const { return const_cast<ValueEntryTable*>(this)->find(index); }

  // Appends an entry at the tail of its chain without checking for an equal
  // index (callers look up first). Throws std::bad_alloc, leaving the table
  // as it was.
  template <typename... Args>
  ValueEntry& insert(Args&&... args) {
    entries_.emplace_back(std::forward<Args>(args)...);
    const auto added = static_cast<uint32_t>(entries_.size() - 1);
    const size_t bucket = bucketOf(entries_.back().index, heads_.size());
    if (!slots_.empty()) {
      uint32_t& tail = tails_[bucket];
      (tail == kEnd ? heads_[bucket] : entries_[tail].next_) = added;
      tail = added;
      if (2 * entries_.size() > slots_.size())
        growIndex(2 * slots_.size());  // indexes the new entry with the others
      else
        addToIndex(added);
    } else {
      uint32_t* link = &heads_[bucket];
      while (*link != kEnd) link = &entries_[*link].next_;
      *link = added;
      if (entries_.size() == kIndexedFrom) startIndex();
    }
    return entries_.back();
  }

  // Removes every entry, keeping the bucket count.
  void clear() {
    entries_.clear();
    std::fill(heads_.begin(), heads_.end(), kEnd);
    tails_.clear();
    slots_.clear();
  }

  // Rehashes into n buckets (0 is taken as 1) and gives back the storage
  // that the entries do not use. Throws std::bad_alloc, and keeps the table
  // unchanged, when the new bucket array cannot be allocated.
  void rebuild(size_t n) {
    if (n == 0) n = 1;
    // The bucket array is reused when it has the room: every value of an
    // extraction is rebuilt, most of them to fewer buckets than they had.
    std::vector<uint32_t> fresh;
    if (n > heads_.capacity()) fresh.reserve(n);
    // The chains are joined into one list in iteration order; every entry
    // is then pushed on the head of its new chain, and each chain is
    // reversed: the order of appending at the tails.
    uint32_t list = kEnd;
    uint32_t* last = &list;
    for (uint32_t head : heads_) {
      if (head == kEnd) continue;
      *last = head;
      uint32_t at = head;
      while (entries_[at].next_ != kEnd) at = entries_[at].next_;
      last = &entries_[at].next_;
    }
    if (fresh.capacity() > 0) heads_.swap(fresh);
    heads_.assign(n, kEnd);
    while (list != kEnd) {
      const uint32_t at = list;
      list = entries_[at].next_;
      uint32_t& chain = heads_[bucketOf(entries_[at].index, n)];
      entries_[at].next_ = chain;
      chain = at;
    }
    for (uint32_t& chain : heads_) {
      uint32_t reversed = kEnd;
      for (uint32_t at = chain; at != kEnd;) {
        const uint32_t following = entries_[at].next_;
        entries_[at].next_ = reversed;
        reversed = at;
        at = following;
      }
      chain = reversed;
    }
    entries_.shrink_to_fit();
    // Rebuilt to as many buckets as entries, the chains are short.
    std::vector<uint32_t>().swap(tails_);
    std::vector<uint32_t>().swap(slots_);
  }

  template <bool Const>
  class Iterator {
    using Table = std::conditional_t<Const, const ValueEntryTable, ValueEntryTable>;

   public:
    using iterator_category = std::forward_iterator_tag;
    using value_type = ValueEntry;
    using difference_type = std::ptrdiff_t;
    using pointer = std::conditional_t<Const, const ValueEntry*, ValueEntry*>;
    using reference = std::conditional_t<Const, const ValueEntry&, ValueEntry&>;

    Iterator() = default;
    explicit Iterator(Table* table) : table_(table) { settle(); }
    reference operator*() const { return table_->entries_[at_]; }
    pointer operator->() const { return &table_->entries_[at_]; }
    Iterator& operator++() {
      at_ = table_->entries_[at_].next_;
      if (at_ == kEnd) {
        ++bucket_;
        settle();
      }
      return *this;
    }
    Iterator operator++(int) {
      Iterator old = *this;
      ++*this;
      return old;
    }
    bool operator==(const Iterator& other) const { return at_ == other.at_; }

   private:
    // Moves to the head of the first non-empty bucket from bucket_ on.
    void settle() {
      while (at_ == kEnd && bucket_ < table_->heads_.size()) {
        at_ = table_->heads_[bucket_];
        if (at_ == kEnd) ++bucket_;
      }
    }
    Table* table_ = nullptr;
    size_t bucket_ = 0;
    uint32_t at_ = kEnd;
  };

  using iterator = Iterator<false>;
  using const_iterator = Iterator<true>;
  iterator begin() { return iterator(this); }
  iterator end() { return iterator(); }
  const_iterator begin() const { return const_iterator(this); }
  const_iterator end() const { return const_iterator(); }

 private:
  static size_t bucketOf(Key index, size_t n) { return static_cast<uint32_t>(index) % n; }

  // Leaves a moved-from table empty with one bucket.
  void reset() {
    entries_.clear();
    heads_.assign(1, kEnd);
    tails_.clear();
    slots_.clear();
  }

  // The modality numbers are spread before they choose a slot: a group's
  // categories are often numbered close together.
  size_t slotOf(Key index) const {
    return static_cast<size_t>((uint64_t{static_cast<uint32_t>(index)} * 0x9E3779B97F4A7C15ull) >> 40) &
           (slots_.size() - 1);
  }
  void addToIndex(uint32_t at) {
    size_t slot = slotOf(entries_[at].index);
    while (slots_[slot] != kEnd) slot = (slot + 1) & (slots_.size() - 1);
    slots_[slot] = at;
  }
  // Starts the tails and the index; without memory the chains are walked.
  void startIndex() noexcept {
    try {
      tails_.assign(heads_.size(), kEnd);
      for (size_t bucket = 0; bucket < heads_.size(); ++bucket)
        for (uint32_t at = heads_[bucket]; at != kEnd; at = entries_[at].next_) tails_[bucket] = at;
      growIndex(4 * kIndexedFrom);
    } catch (const std::bad_alloc&) {
      tails_.clear();
      slots_.clear();
    }
  }
  // Re-indexes every entry over the given number of slots (a power of two
  // at least twice the entries); without memory the index is dropped.
  void growIndex(size_t count) noexcept {
    try {
      slots_.assign(count, kEnd);
    } catch (const std::bad_alloc&) {
      tails_.clear();
      slots_.clear();
      return;
    }
    for (uint32_t at = 0; at < entries_.size(); ++at) addToIndex(at);
  }

  std::vector<ValueEntry> entries_;  // in insertion order
  std::vector<uint32_t> heads_;      // the first entry of each bucket, kEnd when empty
  std::vector<uint32_t> tails_;      // the last entry of each bucket, while indexed
  std::vector<uint32_t> slots_;      // entries by modality (open addressing), or empty
};

}  // namespace velda
