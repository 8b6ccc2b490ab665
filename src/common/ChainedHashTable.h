#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <new>
#include <utility>
#include <vector>

#include "common/SmallObjectPool.h"

namespace velda {

// A chained hash table whose iteration order is part of the program's output:
// buckets are walked from 0 to n-1 and each chain from head to tail. New
// entries go to the tail of their chain. The bucket count is explicit and
// changes only through rebuild(), which re-appends every entry in iteration
// order, so the same inserts always give the same order.
//
// Values live in individually allocated nodes (from the thread's pool of
// small objects) and never move: a pointer to a stored value stays valid
// until that value is erased.
//
// A table filled in bulk can keep the tail of every chain (trackTails), so
// that an insert does not walk its chain, an index of its keys (indexKeys),
// so that a lookup does not walk it either, and the order of its inserts
// (rememberInsertOrder), so that rebuild() does not walk the chains: the
// bucket counts are fixed by the output and chains grow long in large tables.
// The order is the same either way.
//
// Traits provide:
//   using Key = ...;                               (a cheap key view)
//   static Key key(const Value&);
//   static uint32_t hash(Key);
//   static bool equal(Key, Key);
template <typename Value, typename Traits>
class ChainedHashTable {
  struct Node : PooledObject {
    template <typename... Args>
    explicit Node(Args&&... args) : value(std::forward<Args>(args)...) {}
    Node* next = nullptr;
    Value value;
  };

 public:
  using Key = typename Traits::Key;

  explicit ChainedHashTable(size_t bucketCount = 1) : buckets_(bucketCount == 0 ? 1 : bucketCount, nullptr) {}
  ~ChainedHashTable() { clear(); }
  ChainedHashTable(const ChainedHashTable&) = delete;
  ChainedHashTable& operator=(const ChainedHashTable&) = delete;
  ChainedHashTable(ChainedHashTable&& other) noexcept
      : buckets_(std::move(other.buckets_)),
        tails_(std::move(other.tails_)),
        index_(std::move(other.index_)),
        inserted_(std::move(other.inserted_)),
        count_(std::exchange(other.count_, 0)),
        ordered_(std::exchange(other.ordered_, false)) {
    other.buckets_.assign(1, nullptr);
    other.tails_.clear();
    other.index_.clear();
    other.inserted_.clear();
  }
  // Exchanges two tables' contents without allocating.
  void swap(ChainedHashTable& other) noexcept {
    buckets_.swap(other.buckets_);
    tails_.swap(other.tails_);
    index_.swap(other.index_);
    inserted_.swap(other.inserted_);
    std::swap(count_, other.count_);
    std::swap(ordered_, other.ordered_);
  }
  ChainedHashTable& operator=(ChainedHashTable&& other) noexcept {
    if (this != &other) {
      clear();
      buckets_ = std::move(other.buckets_);
      tails_ = std::move(other.tails_);
      index_ = std::move(other.index_);
      inserted_ = std::move(other.inserted_);
      count_ = std::exchange(other.count_, 0);
      ordered_ = std::exchange(other.ordered_, false);
      other.buckets_.assign(1, nullptr);
      other.tails_.clear();
      other.index_.clear();
      other.inserted_.clear();
    }
    return *this;
  }

  size_t size() const { return count_; }
  bool empty() const { return count_ == 0; }
  size_t bucketCount() const { return buckets_.size(); }

  Value* find(Key key) {
    if (!index_.empty()) {
      const uint32_t hash = Traits::hash(key);
      for (size_t at = slotOf(hash);; at = (at + 1) & (index_.size() - 1)) {
        const IndexSlot& slot = index_[at];
        if (!slot.node) return nullptr;
        if (slot.hash == hash && Traits::equal(Traits::key(slot.node->value), key)) return &slot.node->value;
      }
    }
    for (Node* n = buckets_[bucketOf(key)]; n; n = n->next)
      if (Traits::equal(Traits::key(n->value), key)) return &n->value;
    return nullptr;
  }
  const Value* find(Key key) const { return const_cast<ChainedHashTable*>(this)->find(key); }

  // Appends a value at the tail of its chain without checking for an equal
  // key (callers look up first). Throws std::bad_alloc, leaving the table as
  // it was.
  template <typename... Args>
  Value& insert(Args&&... args) {
    static_assert(alignof(Node) <= SmallObjectPool::kGrain, "the pool's blocks hold the node");
    auto node = std::make_unique<Node>(std::forward<Args>(args)...);
    const uint32_t hash = Traits::hash(Traits::key(node->value));
    if (!index_.empty() && 2 * (count_ + 1) > index_.size()) growIndex(2 * index_.size());
    if (ordered_) inserted_.push_back(node.get());
    const size_t bucket = hash % buckets_.size();
    Node** link = &buckets_[bucket];
    if (!tails_.empty()) {
      if (tails_[bucket]) link = &tails_[bucket]->next;
      tails_[bucket] = node.get();
    } else {
      while (*link) link = &(*link)->next;
    }
    *link = node.release();
    if (!index_.empty()) addToIndex(*link, hash);
    ++count_;
    return (*link)->value;
  }

  // Removes and destroys the entry with this key; false when there is none.
  bool erase(Key key) {
    const size_t bucket = bucketOf(key);
    Node* previous = nullptr;
    for (Node** link = &buckets_[bucket]; *link; previous = *link, link = &(*link)->next) {
      if (!Traits::equal(Traits::key((*link)->value), key)) continue;
      Node* dead = *link;
      *link = dead->next;
      if (!tails_.empty() && tails_[bucket] == dead) tails_[bucket] = previous;
      if (!index_.empty()) removeFromIndex(dead);
      delete dead;
      --count_;
      forgetInsertOrder();
      return true;
    }
    return false;
  }

  // Removes every entry for which the predicate holds, keeping the order of
  // the others.
  template <typename Predicate>
  size_t eraseIf(Predicate predicate) {
    size_t removed = 0;
    for (size_t bucket = 0; bucket < buckets_.size(); ++bucket) {
      Node* kept = nullptr;
      for (Node** link = &buckets_[bucket]; *link;) {
        if (!predicate((*link)->value)) {
          kept = *link;
          link = &(*link)->next;
          continue;
        }
        Node* dead = *link;
        *link = dead->next;
        delete dead;
        ++removed;
      }
      if (!tails_.empty()) tails_[bucket] = kept;
    }
    count_ -= removed;
    if (removed && !index_.empty()) reindex();
    if (removed) forgetInsertOrder();
    return removed;
  }

  void clear() {
    for (Node*& head : buckets_) {
      while (head) {
        Node* dead = head;
        head = head->next;
        delete dead;
      }
    }
    if (!tails_.empty()) tails_.assign(tails_.size(), nullptr);
    if (!index_.empty()) index_.assign(index_.size(), IndexSlot{});
    count_ = 0;
    forgetInsertOrder();
  }

  // Starts or stops keeping the chains' tails. Throws std::bad_alloc, leaving
  // the table as it was, when the tail array cannot be allocated.
  void trackTails(bool on) {
    if (!on) {
      std::vector<Node*>().swap(tails_);
      return;
    }
    std::vector<Node*> tails(buckets_.size(), nullptr);
    for (size_t bucket = 0; bucket < buckets_.size(); ++bucket)
      for (Node* n = buckets_[bucket]; n; n = n->next) tails[bucket] = n;
    tails_.swap(tails);
  }

  // Starts or stops keeping the index of the keys. Throws std::bad_alloc,
  // leaving the table as it was, when the index cannot be allocated.
  void indexKeys(bool on) {
    if (!on) {
      std::vector<IndexSlot>().swap(index_);
      return;
    }
    growIndex(std::max<size_t>(kFirstIndexSlots, index_.size()));
  }
  bool keysIndexed() const { return !index_.empty(); }

  // Keeps, until the next rebuild, the order of the inserts into this empty
  // table (nothing on a table that holds entries). Every chain then holds
  // its entries in that order, so rebuild() can sort them into their new
  // chains instead of walking the old chains from node to node, a cache
  // miss each. Costs a pointer per insert; erasing an entry forgets it all.
  void rememberInsertOrder() {
    if (count_ == 0) ordered_ = true;
  }

  // Rehashes into n buckets (0 is taken as 1). Throws std::bad_alloc, and
  // keeps the table unchanged, when the new bucket arrays cannot be allocated.
  void rebuild(size_t n) {
    rebuild(n, [](Value&) {});
  }
  // The same, calling visit(value) once for every entry, in no particular
  // order, as the rebuild reads it anyway.
  template <typename Visit>
  void rebuild(size_t n, Visit visit) {
    if (n == 0) n = 1;
    std::vector<Node*> fresh(n, nullptr);
    std::vector<Node*> tails(tails_.empty() ? 0 : n, nullptr);
    if (!(ordered_ && chainInInsertOrder(fresh, tails, visit))) chainInWalkOrder(fresh, tails, visit);
    forgetInsertOrder();
    buckets_ = std::move(fresh);
    tails_ = std::move(tails);
  }

  template <bool Const>
  class Iterator {
    using Table = std::conditional_t<Const, const ChainedHashTable, ChainedHashTable>;

   public:
    using iterator_category = std::forward_iterator_tag;
    using value_type = Value;
    using difference_type = std::ptrdiff_t;
    using pointer = std::conditional_t<Const, const Value*, Value*>;
    using reference = std::conditional_t<Const, const Value&, Value&>;

    Iterator() = default;
    Iterator(Table* table, size_t bucket, Node* node) : table_(table), bucket_(bucket), node_(node) { settle(); }
    reference operator*() const { return node_->value; }
    pointer operator->() const { return &node_->value; }
    Iterator& operator++() {
      node_ = node_->next;
      if (!node_) {
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
    bool operator==(const Iterator& other) const { return node_ == other.node_; }

   private:
    void settle() {
      while (!node_ && table_ && bucket_ < table_->buckets_.size()) {
        node_ = table_->buckets_[bucket_];
        if (!node_) ++bucket_;
      }
    }
    Table* table_ = nullptr;
    size_t bucket_ = 0;
    Node* node_ = nullptr;
  };

  using iterator = Iterator<false>;
  using const_iterator = Iterator<true>;
  iterator begin() { return iterator(this, 0, nullptr); }
  iterator end() { return iterator(); }
  const_iterator begin() const { return const_iterator(this, 0, nullptr); }
  const_iterator end() const { return const_iterator(); }

 private:
  static constexpr size_t kFirstIndexSlots = 64;
  // How far ahead of the node being chained the next ones are fetched.
  static constexpr size_t kPrefetchAhead = 8;

  // The index is open-addressed with linear probing over a power of two of
  // slots, at most half full; the node's hash is kept to spare comparisons.
  struct IndexSlot {
    Node* node = nullptr;
    uint32_t hash = 0;
  };

  size_t bucketOf(Key key) const { return Traits::hash(key) % buckets_.size(); }
  // The hash's bits are spread before they choose a slot: the program's
  // string hash differs little between similar names.
  size_t slotOf(uint32_t hash) const {
    return static_cast<size_t>((uint64_t{hash} * 0x9E3779B97F4A7C15ull) >> 32) & (index_.size() - 1);
  }
  void addToIndex(Node* node, uint32_t hash) {
    size_t at = slotOf(hash);
    while (index_[at].node) at = (at + 1) & (index_.size() - 1);
    index_[at] = {node, hash};
  }
  // Empties the node's slot and moves back the entries of the probe run
  // behind it that would no longer be reached.
  void removeFromIndex(const Node* node) {
    const size_t mask = index_.size() - 1;
    size_t hole = slotOf(Traits::hash(Traits::key(node->value)));
    while (index_[hole].node != node) hole = (hole + 1) & mask;
    for (size_t at = (hole + 1) & mask; index_[at].node; at = (at + 1) & mask) {
      const size_t home = slotOf(index_[at].hash);
      // The entry may fill the hole when its home is not in (hole, at].
      if (((at - home) & mask) < ((at - hole) & mask)) continue;
      index_[hole] = index_[at];
      hole = at;
    }
    index_[hole] = IndexSlot{};
  }
  // Rebuilds the index over at least the given number of slots (a power of
  // two), enough for the table to stay at most half full. Throws
  // std::bad_alloc leaving the index as it was.
  void growIndex(size_t slotCount) {
    while (slotCount < 2 * (count_ + 1)) slotCount *= 2;
    std::vector<IndexSlot> old(slotCount);
    index_.swap(old);
    if (old.empty()) {
      reindex();
      return;
    }
    // The old slots hold every node with its hash: they are moved over
    // without reading the nodes, scattered in memory, again.
    for (const IndexSlot& slot : old)
      if (slot.node) addToIndex(slot.node, slot.hash);
  }
  void reindex() {
    std::fill(index_.begin(), index_.end(), IndexSlot{});
    for (Node* head : buckets_)
      for (Node* n = head; n; n = n->next) addToIndex(n, Traits::hash(Traits::key(n->value)));
  }

  void forgetInsertOrder() {
    ordered_ = false;
    std::vector<Node*>().swap(inserted_);
  }

  // Puts every entry into the new chains (and their tails, when kept) in
  // iteration order: each one is pushed on the head of its new chain, in
  // iteration order, and each chain is then reversed. Walks the old chains.
  template <typename Visit>
  void chainInWalkOrder(std::vector<Node*>& fresh, std::vector<Node*>& tails, Visit& visit) {
    const size_t n = fresh.size();
    for (Node* head : buckets_) {
      while (head) {
        Node* node = head;
        head = head->next;
        visit(node->value);
        Node*& chain = fresh[Traits::hash(Traits::key(node->value)) % n];
        node->next = chain;
        chain = node;
      }
    }
    for (size_t bucket = 0; bucket < n; ++bucket) {
      Node* reversed = nullptr;
      if (!tails.empty()) tails[bucket] = fresh[bucket];
      for (Node* node = fresh[bucket]; node;) {
        Node* following = node->next;
        node->next = reversed;
        reversed = node;
        node = following;
      }
      fresh[bucket] = reversed;
    }
  }

  // The same chains from the order of the inserts: sorted by old bucket
  // (stably, so each old chain keeps its order) they are the iteration
  // order, and pushing them, from the last, on the heads of their new chains
  // leaves each chain in that order. The nodes are read in insert order,
  // mostly the order of their addresses, and written independently of one
  // another. False, with nothing changed, when the sort's arrays cannot be
  // allocated.
  template <typename Visit>
  bool chainInInsertOrder(std::vector<Node*>& fresh, std::vector<Node*>& tails, Visit& visit) {
    const size_t oldCount = buckets_.size();
    std::vector<uint32_t> hashes;
    std::vector<uint32_t> walk;
    std::vector<uint32_t> starts;
    try {
      if (inserted_.size() != count_ || count_ > UINT32_MAX) return false;
      hashes.resize(count_);
      walk.resize(count_);
      starts.assign(oldCount + 1, 0);
    } catch (const std::bad_alloc&) {
      return false;
    }
    for (size_t i = 0; i < count_; ++i) {
      visit(inserted_[i]->value);
      hashes[i] = Traits::hash(Traits::key(inserted_[i]->value));
      ++starts[hashes[i] % oldCount + 1];
    }
    for (size_t bucket = 1; bucket <= oldCount; ++bucket) starts[bucket] += starts[bucket - 1];
    for (size_t i = 0; i < count_; ++i) walk[starts[hashes[i] % oldCount]++] = static_cast<uint32_t>(i);
    const size_t n = fresh.size();
    for (size_t k = count_; k-- > 0;) {
      if (k >= kPrefetchAhead) __builtin_prefetch(inserted_[walk[k - kPrefetchAhead]], 1);
      const uint32_t i = walk[k];
      const size_t bucket = hashes[i] % n;
      Node* node = inserted_[i];
      if (!fresh[bucket] && !tails.empty()) tails[bucket] = node;
      node->next = fresh[bucket];
      fresh[bucket] = node;
    }
    return true;
  }

  std::vector<Node*> buckets_;
  std::vector<Node*> tails_;      // the last node of every chain, or empty
  std::vector<IndexSlot> index_;  // every node by its key's hash, or empty
  std::vector<Node*> inserted_;   // every node in insert order, while ordered_
  size_t count_ = 0;
  bool ordered_ = false;  // remembering the insert order
};

}  // namespace velda
