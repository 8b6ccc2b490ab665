#include "common/SmallObjectPool.h"

#include <algorithm>
#include <new>

namespace velda {

namespace {

// The first slab is small, for programs that make few objects; each new one
// doubles, up to a size that the system backs with huge pages.
constexpr size_t kFirstSlab = 64 * 1024;
constexpr size_t kLargestSlab = 32 * 1024 * 1024;

}  // namespace

SmallObjectPool::~SmallObjectPool() {
  while (slabs_) {
    Slab* previous = slabs_->previous;
    ::operator delete(slabs_);
    slabs_ = previous;
  }
}

void* SmallObjectPool::allocate(size_t size) {
  const size_t listNumber = listOf(size);
  FreeBlock*& list = free_[listNumber];
  if (list) {
    FreeBlock* block = list;
    list = block->next;
    return block;
  }
  const size_t rounded = (listNumber + 1) * kGrain;
  if (static_cast<size_t>(end_ - next_) < rounded) addSlab();
  void* block = next_;
  next_ += rounded;
  return block;
}

void SmallObjectPool::release(void* block, size_t size) noexcept {
  FreeBlock*& list = free_[listOf(size)];
  list = new (block) FreeBlock{list};
}

// The rest of the current slab, less than a block, is left unused.
void SmallObjectPool::addSlab() {
  const size_t size = slabs_ ? std::min(2 * slabSize_, kLargestSlab) : kFirstSlab;
  auto* slab = static_cast<Slab*>(::operator new(size));
  slab->previous = slabs_;
  slabs_ = slab;
  slabSize_ = size;
  next_ = reinterpret_cast<char*>(slab + 1);
  end_ = reinterpret_cast<char*>(slab) + size;
}

#ifdef __SANITIZE_ADDRESS__
void* allocateSmall(size_t size) { return ::operator new(size); }
void releaseSmall(void* block, size_t) noexcept { ::operator delete(block); }
#else
namespace {
SmallObjectPool& threadPool() {
  thread_local SmallObjectPool* pool = nullptr;
  if (!pool) pool = new SmallObjectPool;
  return *pool;
}

// Sizes 1 to kLargestBlock (size_t wraps 0 around to the largest value).
bool pooled(size_t size) { return size - 1 < SmallObjectPool::kLargestBlock; }
}  // namespace

void* allocateSmall(size_t size) { return pooled(size) ? threadPool().allocate(size) : ::operator new(size); }
void releaseSmall(void* block, size_t size) noexcept {
  if (pooled(size))
    threadPool().release(block, size);
  else
    ::operator delete(block);
}
#endif

}  // namespace velda
