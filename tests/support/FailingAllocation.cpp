// Replaces the global operator new and delete for one test executable.
// Every form goes through malloc and free, so that the address sanitizer,
// whose own replacement of these operators is then unused, still sees every
// allocation, its release and any leak.
#include "support/FailingAllocation.h"

#include <cstdlib>
#include <new>

namespace velda::test {

namespace {

long countdown = 0;  // allocations until the armed one, 0 when disarmed
bool struck = false;

}  // namespace

void armAllocationFailure(long n) {
  countdown = n;
  struck = false;
}

bool disarmAllocationFailure() {
  countdown = 0;
  return struck;
}

}  // namespace velda::test

namespace {

void* allocate(std::size_t size) {
  using namespace velda::test;
  if (countdown > 0 && --countdown == 0) {
    struck = true;
    return nullptr;
  }
  return std::malloc(size == 0 ? 1 : size);
}

void* allocateOrThrow(std::size_t size) {
  if (void* memory = allocate(size)) return memory;
  throw std::bad_alloc();
}

}  // namespace

void* operator new(std::size_t size) { return allocateOrThrow(size); }
void* operator new[](std::size_t size) { return allocateOrThrow(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return allocate(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return allocate(size); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete(void* memory, const std::nothrow_t&) noexcept { std::free(memory); }
void operator delete[](void* memory, const std::nothrow_t&) noexcept { std::free(memory); }
