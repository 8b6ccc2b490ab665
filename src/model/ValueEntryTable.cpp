#include "model/ValueEntryTable.h"

#include <algorithm>
#include <cstring>

namespace velda {

ValueEntryTable::~ValueEntryTable() { release(); }

void ValueEntryTable::release() noexcept {
  if (capacity_ != 1) ::operator delete(many_);
  delete[] heads_;
  index_.reset();
}

void ValueEntryTable::takeFrom(ValueEntryTable& other) noexcept {
  size_ = other.size_;
  capacity_ = other.capacity_;
  bucketCount_ = other.bucketCount_;
  headsRoom_ = other.headsRoom_;
  head_ = other.head_;
  headBucket_ = other.headBucket_;
  std::memcpy(static_cast<void*>(&one_), &other.one_, sizeof one_);  // whichever member is in use
  heads_ = other.heads_;
  index_ = std::move(other.index_);

  other.size_ = 0;
  other.capacity_ = other.bucketCount_ = 1;
  other.headsRoom_ = 0;
  other.head_ = kEnd;
  other.headBucket_ = 0;
  other.many_ = nullptr;
  other.heads_ = nullptr;
}

void ValueEntryTable::clear() {
  size_ = 0;
  head_ = kEnd;
  if (heads_) std::fill_n(heads_, bucketCount_, kEnd);
  index_.reset();
}

void ValueEntryTable::spreadHeads() {
  heads_ = new uint32_t[bucketCount_];
  headsRoom_ = bucketCount_;
  std::fill_n(heads_, bucketCount_, kEnd);
  heads_[headBucket_] = head_;
}

void ValueEntryTable::grow() {
  const uint32_t room = 2 * capacity_;
  auto* grown = static_cast<ValueEntry*>(::operator new(room * sizeof(ValueEntry)));
  std::memcpy(static_cast<void*>(grown), data(), size_ * sizeof(ValueEntry));
  if (capacity_ != 1) ::operator delete(many_);
  many_ = grown;
  capacity_ = room;
}

void ValueEntryTable::shrinkToFit() noexcept {
  if (capacity_ == 1 || capacity_ == size_) return;
  ValueEntry* const old = many_;
  if (size_ <= 1) {
    if (size_ == 1) std::memcpy(static_cast<void*>(&one_), old, sizeof one_);
    capacity_ = 1;
  } else {
    auto* fitted = static_cast<ValueEntry*>(::operator new(size_ * sizeof(ValueEntry), std::nothrow));
    if (!fitted) return;
    std::memcpy(static_cast<void*>(fitted), old, size_ * sizeof(ValueEntry));
    many_ = fitted;
    capacity_ = size_;
  }
  ::operator delete(old);
}

void ValueEntryTable::rebuild(size_t n) {
  if (n == 0) n = 1;
  // Most values of a large extraction hold one category: its bucket is all
  // that changes.
  if (size_ <= 1 && !heads_) {
    bucketCount_ = static_cast<uint32_t>(n);
    headBucket_ = size_ == 0 ? 0 : static_cast<uint32_t>(bucketOf(data()[0].index, n));
    shrinkToFit();
    index_.reset();
    return;
  }
  // Several entries over several buckets need the array of the heads. It
  // is reused when it has the room: every value of an extraction is
  // rebuilt, most of them to fewer buckets than they had.
  const bool spread = n > 1 && size_ > 1;
  uint32_t* fresh = spread && n > headsRoom_ ? new uint32_t[n] : nullptr;
  ValueEntry* entries = data();
  // The chains are joined into one list in iteration order; every entry
  // is then pushed on the head of its new chain, and each chain is
  // reversed: the order of appending at the tails.
  uint32_t list = kEnd;
  uint32_t* last = &list;
  for (size_t bucket = 0; bucket < bucketCount_; ++bucket) {
    const uint32_t head = headOf(bucket);
    if (head == kEnd) continue;
    *last = head;
    uint32_t at = head;
    while (entries[at].next_ != kEnd) at = entries[at].next_;
    last = &entries[at].next_;
  }
  if (!spread || fresh) {
    delete[] heads_;
    heads_ = fresh;
    headsRoom_ = fresh ? static_cast<uint32_t>(n) : 0;
  }
  bucketCount_ = static_cast<uint32_t>(n);
  head_ = kEnd;
  headBucket_ = 0;
  if (heads_) std::fill_n(heads_, n, kEnd);
  while (list != kEnd) {
    const uint32_t at = list;
    list = entries[at].next_;
    const size_t bucket = bucketOf(entries[at].index, n);
    if (!heads_) headBucket_ = static_cast<uint32_t>(bucket);
    uint32_t& chain = heads_ ? heads_[bucket] : head_;
    entries[at].next_ = chain;
    chain = at;
  }
  const auto reverse = [entries](uint32_t& chain) {
    uint32_t reversed = kEnd;
    for (uint32_t at = chain; at != kEnd;) {
      const uint32_t following = entries[at].next_;
      entries[at].next_ = reversed;
      reversed = at;
      at = following;
    }
    chain = reversed;
  };
  if (heads_)
    for (size_t bucket = 0; bucket < n; ++bucket) reverse(heads_[bucket]);
  else
    reverse(head_);
  shrinkToFit();
  // Rebuilt to as many buckets as entries, the chains are short.
  index_.reset();
}

void ValueEntryTable::startIndex() noexcept {
  try {
    index_ = std::make_unique<Index>();
    index_->tails.assign(bucketCount_, kEnd);
    const ValueEntry* entries = data();
    for (size_t bucket = 0; bucket < bucketCount_; ++bucket)
      for (uint32_t at = headOf(bucket); at != kEnd; at = entries[at].next_) index_->tails[bucket] = at;
  } catch (const std::bad_alloc&) {
    index_.reset();
    return;
  }
  growIndex(4 * kIndexedFrom);
}

void ValueEntryTable::growIndex(size_t count) noexcept {
  try {
    index_->positions.assign(count, kEnd);
  } catch (const std::bad_alloc&) {
    index_.reset();
    return;
  }
  for (uint32_t at = 0; at < size_; ++at) addToIndex(at);
}

}  // namespace velda
