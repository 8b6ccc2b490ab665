#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <new>
#include <utility>
#include <vector>

namespace velda {

// A chained hash table whose iteration order is part of the program's output:
// buckets are walked from 0 to n-1 and each chain from head to tail. New
// entries go to the tail of their chain. The bucket count is explicit and
// changes only through rebuild(), which re-appends every entry in iteration
// order, so the same inserts always give the same order.
//
// Values live in individually allocated nodes and never move: a pointer to a
// stored value stays valid until that value is erased.
//
// Traits provide:
//   using Key = ...;                               (a cheap key view)
//   static Key key(const Value&);
//   static uint32_t hash(Key);
//   static bool equal(Key, Key);
template <typename Value, typename Traits>
class ChainedHashTable {
  struct Node {
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
      : buckets_(std::move(other.buckets_)), count_(std::exchange(other.count_, 0)) {
    other.buckets_.assign(1, nullptr);
  }
  ChainedHashTable& operator=(ChainedHashTable&& other) noexcept {
    if (this != &other) {
      clear();
      buckets_ = std::move(other.buckets_);
      count_ = std::exchange(other.count_, 0);
      other.buckets_.assign(1, nullptr);
    }
    return *this;
  }

  size_t size() const { return count_; }
  bool empty() const { return count_ == 0; }
  size_t bucketCount() const { return buckets_.size(); }

  Value* find(Key key) {
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
    auto node = std::make_unique<Node>(std::forward<Args>(args)...);
    Node** link = &buckets_[bucketOf(Traits::key(node->value))];
    while (*link) link = &(*link)->next;
    *link = node.release();
    ++count_;
    return (*link)->value;
  }

  // Removes and destroys the entry with this key; false when there is none.
  bool erase(Key key) {
    for (Node** link = &buckets_[bucketOf(key)]; *link; link = &(*link)->next) {
      if (!Traits::equal(Traits::key((*link)->value), key)) continue;
      Node* dead = *link;
      *link = dead->next;
      delete dead;
      --count_;
      return true;
    }
    return false;
  }

  // Removes every entry for which the predicate holds, keeping the order of
  // the others.
  template <typename Predicate>
  size_t eraseIf(Predicate predicate) {
    size_t removed = 0;
    for (Node*& head : buckets_) {
      for (Node** link = &head; *link;) {
        if (!predicate((*link)->value)) {
          link = &(*link)->next;
          continue;
        }
        Node* dead = *link;
        *link = dead->next;
        delete dead;
        ++removed;
      }
    }
    count_ -= removed;
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
    count_ = 0;
  }

  // Rehashes into n buckets (0 is taken as 1). Returns false and keeps the
  // table unchanged when the new bucket array cannot be allocated.
  bool rebuild(size_t n) {
    if (n == 0) n = 1;
    std::vector<Node*> fresh;
    std::vector<Node*> tails;
    try {
      fresh.assign(n, nullptr);
      tails.assign(n, nullptr);
    } catch (const std::bad_alloc&) {
      return false;
    }
    for (Node* head : buckets_) {
      while (head) {
        Node* node = head;
        head = head->next;
        node->next = nullptr;
        const size_t b = Traits::hash(Traits::key(node->value)) % n;
        if (tails[b])
          tails[b]->next = node;
        else
          fresh[b] = node;
        tails[b] = node;
      }
    }
    buckets_ = std::move(fresh);
    return true;
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
  size_t bucketOf(Key key) const { return Traits::hash(key) % buckets_.size(); }

  std::vector<Node*> buckets_;
  size_t count_ = 0;
};

}  // namespace velda
