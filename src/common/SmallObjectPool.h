#pragma once

#include <cstddef>
#include <new>

namespace velda {

// Memory for the many small objects of a large matrix (its values and the
// entries of its tables), cut from large slabs without the heap's header
// before each block, and kept on a list per size once given back, for the
// next block of that size. A million groups take some 130 bytes less each,
// and a block is taken or given back in a few instructions.
//
// Slabs are never given back to the system while the pool lives: a matrix
// freed leaves its blocks to the next one.
class SmallObjectPool {
 public:
  // Blocks are multiples of kGrain bytes, aligned to kGrain; larger sizes
  // are not pooled.
  static constexpr size_t kGrain = 8;
  static constexpr size_t kLargestBlock = 256;

  SmallObjectPool() = default;
  // Frees the slabs: every block must have been given back.
  ~SmallObjectPool();
  SmallObjectPool(const SmallObjectPool&) = delete;
  SmallObjectPool& operator=(const SmallObjectPool&) = delete;

  // A block of at least size bytes (1 to kLargestBlock). Throws
  // std::bad_alloc.
  void* allocate(size_t size);
  // Gives back a block that allocate() returned for the same size.
  void release(void* block, size_t size) noexcept;

 private:
  struct FreeBlock {
    FreeBlock* next;
  };
  struct Slab {
    Slab* previous;
    size_t pad;  // a header of 16 bytes, as the heap aligns its blocks
  };

  static size_t listOf(size_t size) { return (size + kGrain - 1) / kGrain - 1; }
  void addSlab();

  FreeBlock* free_[kLargestBlock / kGrain] = {};
  char* next_ = nullptr;  // the unused rest of the newest slab
  char* end_ = nullptr;
  Slab* slabs_ = nullptr;  // the newest slab, linked to the older ones
  size_t slabSize_ = 0;
};

// The calling thread's pool, made at its first use and never freed (blocks
// may outlive their thread, and a block given back on another thread goes
// to that thread's lists). Builds checked by the address sanitizer use the
// heap, so that its checks reach every object.
void* allocateSmall(size_t size);
void releaseSmall(void* block, size_t size) noexcept;

// A standard allocator over the thread's pool, for the short arrays that
// every group of a large matrix holds.
template <typename T>
struct PoolAllocator {
  using value_type = T;
  PoolAllocator() = default;
  template <typename U>
  PoolAllocator(const PoolAllocator<U>&) noexcept {}
  T* allocate(size_t n) {
    if (n > static_cast<size_t>(-1) / sizeof(T)) throw std::bad_array_new_length();
    return static_cast<T*>(allocateSmall(n * sizeof(T)));
  }
  void deallocate(T* block, size_t n) noexcept { releaseSmall(block, n * sizeof(T)); }
  friend bool operator==(const PoolAllocator&, const PoolAllocator&) { return true; }
};

// A base that gives a class (aligned to at most SmallObjectPool::kGrain)
// the thread's pool as its operator new and delete; sizes too large for the
// pool come from the heap.
struct PooledObject {
  static void* operator new(size_t size) { return allocateSmall(size); }
  static void operator delete(void* block, size_t size) noexcept { releaseSmall(block, size); }
};

}  // namespace velda
