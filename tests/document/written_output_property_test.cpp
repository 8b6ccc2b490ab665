// Every file written from any matrix, however odd its names, weights and
// sizes, opens again and exports the same after save and open.
#include <gtest/gtest.h>

#include <random>

#include "WrittenOutput.h"
#include "support/TempDir.h"

namespace velda {
namespace {

TEST(WrittenOutputProperty, EveryWrittenFileReadsBack) {
  test::InTempDir dir;  // parser.dat lands here
  for (uint32_t seed = 1; seed <= 60; ++seed) {
    std::mt19937 random(seed);
    const test::Choose choose = [&](uint32_t bound) { return static_cast<uint32_t>(random() % bound); };
    // Every tenth matrix has thousands of categories.
    const auto matrix = test::randomMatrix(choose, seed % 10 == 0 ? 3000 : 12);
    ASSERT_TRUE(matrix) << "seed " << seed;
    EXPECT_EQ(test::checkWrittenOutput(*matrix, dir.file("meta.xml")), "") << "seed " << seed;
  }
}

}  // namespace
}  // namespace velda
