#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "common/ConsoleLog.h"
#include "ops/reduction/Reduction.h"
#include "support/HandMatrix.h"

namespace velda {
namespace {

// One assertion of ten individuals whose x values 1, 2, 4, 8, ... 512 leave
// every removal step a different cost, so the search goes several levels
// deep at threshold 50 (five individuals may go).
struct Doubling : test::HandMatrix {
  Doubling() {
    quantitative("x");
    holdCells();
    Assertion& assertion = matrix->createAssertion("town");
    for (int i = 0; i < 10; ++i)
      join(assertion, person(("p" + std::to_string(i)).c_str(), {std::to_string(1 << i).c_str()}));
  }
};

// A search cut at its first level says so on the console and still keeps
// the best reduction it found; the default cap lets the same search end.
TEST(ReductionLevelCap, StoppedSearchWritesItsLineAndKeepsTheBestFound) {
  Doubling capped;
  ConsoleLog console;
  ASSERT_EQ(Reduce(*capped.matrix, 50, console, nullptr, 1), 1);
  ASSERT_EQ(console.count(), 1u);
  EXPECT_EQ(console.lines()[0], "Assertion town: search stopped after 1 levels, best reduction found is kept");
  ASSERT_EQ(capped.matrix->reducedAssertions.size(), 1u);
  EXPECT_GE(capped.matrix->reducedAssertions[0]->memberCount, 5);

  Doubling whole;
  ConsoleLog quiet;
  ASSERT_EQ(Reduce(*whole.matrix, 50, quiet), 1);
  EXPECT_EQ(quiet.count(), 0u);
}

}  // namespace
}  // namespace velda
