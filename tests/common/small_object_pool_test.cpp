#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <set>
#include <vector>

#include "common/SmallObjectPool.h"

namespace velda {
namespace {

char* bytes(void* block) { return static_cast<char*>(block); }

TEST(SmallObjectPool, CutsBlocksOneAfterAnotherAndReusesGivenBackOnesBySize) {
  SmallObjectPool pool;
  char* first = bytes(pool.allocate(56));
  EXPECT_EQ(reinterpret_cast<uintptr_t>(first) % SmallObjectPool::kGrain, 0u);
  // Sizes round up to the grain, with no header between blocks.
  char* second = bytes(pool.allocate(57));
  EXPECT_EQ(second, first + 56);
  char* third = bytes(pool.allocate(1));
  EXPECT_EQ(third, second + 64);
  EXPECT_EQ(bytes(pool.allocate(8)), third + 8);

  // A block given back goes to the next request of its rounded size only,
  // the last given back first.
  pool.release(first, 56);
  pool.release(second, 57);
  EXPECT_EQ(bytes(pool.allocate(49)), first);
  EXPECT_EQ(bytes(pool.allocate(64)), second);
  char* fresh = bytes(pool.allocate(56));
  EXPECT_NE(fresh, first);
  EXPECT_NE(fresh, second);
  pool.release(fresh, 56);
  pool.release(third, 1);
}

// 100,000 blocks of 104 bytes fill several slabs; each block keeps what was
// written into it, and a second round reuses exactly the blocks given back.
TEST(SmallObjectPool, BlocksOverManySlabsKeepTheirBytesAndAreReused) {
  SmallObjectPool pool;
  constexpr size_t kSize = 104;
  std::vector<char*> blocks;
  for (size_t i = 0; i < 100000; ++i) {
    blocks.push_back(bytes(pool.allocate(kSize)));
    std::memset(blocks.back(), static_cast<int>(i % 251), kSize);
  }
  bool intact = true;
  for (size_t i = 0; i < blocks.size(); ++i)
    for (size_t b = 0; b < kSize; ++b) intact = intact && blocks[i][b] == static_cast<char>(i % 251);
  EXPECT_TRUE(intact);
  EXPECT_EQ(std::set<char*>(blocks.begin(), blocks.end()).size(), blocks.size());

  for (char* block : blocks) pool.release(block, kSize);
  std::set<char*> reused;
  for (size_t i = 0; i < blocks.size(); ++i) reused.insert(bytes(pool.allocate(kSize)));
  EXPECT_EQ(reused, std::set<char*>(blocks.begin(), blocks.end()));
  for (char* block : reused) pool.release(block, kSize);
}

// Objects of a pooled class, smaller and larger than the pool's blocks, keep
// their fields side by side and are destroyed through a pointer to their base.
TEST(SmallObjectPool, PooledObjectsOfEverySizeLiveSideBySide) {
  struct Base : PooledObject {
    virtual ~Base() = default;
    int64_t a = 1;
  };
  struct Small : Base {
    int64_t b[3] = {2, 3, 4};
  };
  struct Large : Base {
    char c[SmallObjectPool::kLargestBlock] = {};
  };
  std::vector<Base*> made;
  for (int i = 0; i < 1000; ++i) made.push_back(i % 3 ? static_cast<Base*>(new Small) : new Large);
  int64_t sum = 0;
  for (Base* object : made) {
    if (auto* small = dynamic_cast<Small*>(object)) sum += small->b[2];
    sum += object->a;
  }
  EXPECT_EQ(sum, 666 * 4 + 1000);
  for (Base* object : made) delete object;
}

}  // namespace
}  // namespace velda
