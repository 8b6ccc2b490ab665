#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
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
static_assert(std::is_trivially_copyable_v<ValueEntry>, "entries move as bytes");

// The entries of a categorical value, keyed by modality index. It behaves as
// a ChainedHashTable hashed by the index itself: iteration walks buckets 0 to
// n-1 and each chain from head to tail, new entries go to the tail of their
// chain, and rebuild() re-appends every entry in iteration order, so the same
// inserts always give the same order.
//
// The entries are stored in one array, in insertion order, and chained by
// position (the link is kept in the entry itself). A large extraction makes
// about one value per group and variable, and most of them hold a single
// category: that entry lives inside the table itself, and the array of the
// buckets' heads is only made once a second bucket is used, so such a value
// costs no allocation at all. An entry's address is valid only until the
// next insert or rebuild.
//
// A value of a group with many categories outgrows its few buckets: from
// kIndexedFrom entries on, the table keeps the tail of every chain and an
// index of the entries by modality, so that inserts and lookups stay at a
// constant cost. Without memory for them it walks the chains as before.
class ValueEntryTable {
  static constexpr uint32_t kEnd = UINT32_MAX;
  static constexpr uint32_t kIndexedFrom = 64;

 public:
  using Key = int32_t;

  explicit ValueEntryTable(size_t bucketCount = 1)
      : bucketCount_(bucketCount == 0 ? 1 : static_cast<uint32_t>(bucketCount)) {}
  ~ValueEntryTable();
  ValueEntryTable(const ValueEntryTable&) = delete;
  ValueEntryTable& operator=(const ValueEntryTable&) = delete;
  ValueEntryTable(ValueEntryTable&& other) noexcept { takeFrom(other); }
  ValueEntryTable& operator=(ValueEntryTable&& other) noexcept {
    if (this != &other) {
      release();
      takeFrom(other);
    }
    return *this;
  }

  size_t size() const { return size_; }
  bool empty() const { return size_ == 0; }
  size_t bucketCount() const { return bucketCount_; }

  ValueEntry* find(Key index) {
    ValueEntry* entries = data();
    if (index_) {
      const std::vector<uint32_t>& positions = index_->positions;
      for (size_t slot = slotOf(index);; slot = (slot + 1) & (positions.size() - 1)) {
        const uint32_t at = positions[slot];
        if (at == kEnd) return nullptr;
        if (entries[at].index == index) return &entries[at];
      }
    }
    for (uint32_t at = headOf(bucketOf(index, bucketCount_)); at != kEnd; at = entries[at].next_)
      if (entries[at].index == index) return &entries[at];
    return nullptr;
  }
  const ValueEntry* find(Key index) const { return const_cast<ValueEntryTable*>(this)->find(index); }

  // Appends an entry at the tail of its chain without checking for an equal
  // index (callers look up first). Throws std::bad_alloc, leaving the table
  // as it was.
  template <typename... Args>
  ValueEntry& insert(Args&&... args) {
    if (size_ == capacity_) grow();
    ValueEntry* entries = data();
    ValueEntry& entry = *new (&entries[size_]) ValueEntry(std::forward<Args>(args)...);
    const size_t bucket = bucketOf(entry.index, bucketCount_);
    if (!heads_) {
      if (size_ == 0)
        headBucket_ = static_cast<uint32_t>(bucket);
      else if (bucket != headBucket_)
        spreadHeads();  // throws before the entry counts
    }
    const uint32_t added = size_++;
    uint32_t& head = heads_ ? heads_[bucket] : head_;
    if (index_) {
      uint32_t& tail = index_->tails[bucket];
      (tail == kEnd ? head : entries[tail].next_) = added;
      tail = added;
      if (2 * size_t{size_} > index_->positions.size())
        growIndex(2 * index_->positions.size());  // indexes the new entry with the others
      else
        addToIndex(added);
    } else {
      uint32_t* link = &head;
      while (*link != kEnd) link = &entries[*link].next_;
      *link = added;
      if (size_ == kIndexedFrom) startIndex();
    }
    return entry;
  }

  // Removes every entry, keeping the bucket count.
  void clear();

  // Rehashes into n buckets (0 is taken as 1) and gives back the storage
  // that the entries do not use. Throws std::bad_alloc, and keeps the table
  // unchanged, when the new bucket array cannot be allocated.
  void rebuild(size_t n);

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
    reference operator*() const { return table_->data()[at_]; }
    pointer operator->() const { return &table_->data()[at_]; }
    Iterator& operator++() {
      at_ = table_->data()[at_].next_;
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
      while (at_ == kEnd && bucket_ < table_->bucketCount_) {
        at_ = table_->headOf(bucket_);
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
  // The tails of the chains and the entries by modality (open addressing
  // over a power-of-two number of slots), kept from kIndexedFrom entries on.
  struct Index {
    std::vector<uint32_t> tails;
    std::vector<uint32_t> positions;  // the slots: an entry's position or kEnd
  };

  static size_t bucketOf(Key index, size_t n) { return static_cast<uint32_t>(index) % n; }

  ValueEntry* data() { return capacity_ == 1 ? &one_ : many_; }
  const ValueEntry* data() const { return capacity_ == 1 ? &one_ : many_; }
  uint32_t headOf(size_t bucket) const {
    if (heads_) return heads_[bucket];
    return bucket == headBucket_ ? head_ : kEnd;
  }
  // Makes the array of the heads, with head_ in its bucket; throws
  // std::bad_alloc, unchanged.
  void spreadHeads();

  // Doubles the room of the entries; throws std::bad_alloc, unchanged.
  void grow();
  // Gives back the room that the entries do not use, when memory allows.
  void shrinkToFit() noexcept;
  // Frees what the table owns, leaving the fields to be overwritten.
  void release() noexcept;
  // Takes the other table's contents, leaving it empty with one bucket.
  void takeFrom(ValueEntryTable& other) noexcept;

  // The modality numbers are spread before they choose a slot: a group's
  // categories are often numbered close together.
  size_t slotOf(Key index) const {
    return static_cast<size_t>((uint64_t{static_cast<uint32_t>(index)} * 0x9E3779B97F4A7C15ull) >> 40) &
           (index_->positions.size() - 1);
  }
  void addToIndex(uint32_t at) {
    std::vector<uint32_t>& positions = index_->positions;
    size_t slot = slotOf(data()[at].index);
    while (positions[slot] != kEnd) slot = (slot + 1) & (positions.size() - 1);
    positions[slot] = at;
  }
  // Starts the tails and the index; without memory the chains are walked.
  void startIndex() noexcept;
  // Re-indexes every entry over the given number of slots (a power of two
  // at least twice the entries); without memory the index is dropped.
  void growIndex(size_t count) noexcept;

  uint32_t size_ = 0;
  uint32_t capacity_ = 1;  // 1: the entry is one_, else the array many_
  uint32_t bucketCount_ = 1;
  uint32_t headsRoom_ = 0;  // the length of heads_
  // Without heads_, every bucket is empty but headBucket_, whose head is
  // head_: so it is with one bucket, or with at most one entry.
  uint32_t head_ = kEnd;
  uint32_t headBucket_ = 0;
  union {
    ValueEntry one_;
    ValueEntry* many_ = nullptr;
  };
  uint32_t* heads_ = nullptr;  // the chains' heads, once two buckets are used
  std::unique_ptr<Index> index_;
};

}  // namespace velda
