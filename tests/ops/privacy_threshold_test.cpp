#include <gtest/gtest.h>

#include <deque>
#include <string>
#include <utility>
#include <vector>

#include "common/ConsoleLog.h"
#include "model/SymbolicMatrix.h"
#include "ops/PrivacyThreshold.h"

namespace velda {
namespace {

// Assertions a..e numbered 0..4 with 5, 1, 4, 2 and 3 individuals. With two
// buckets the table lists b, d (even hashes) before a, c, e. The individual
// "s" belongs to a and b; every other one to a single assertion.
std::unique_ptr<SymbolicMatrix> fiveGroups() {
  auto matrix = SymbolicMatrix::create(7, 2);
  const std::vector<std::pair<std::string, int>> groups = {{"a", 4}, {"b", 0}, {"c", 4}, {"d", 2}, {"e", 3}};
  for (const auto& [id, own] : groups) {
    Assertion& assertion = matrix->createAssertion(id);
    for (int k = 0; k < own; ++k) {
      Individual& individual = matrix->insertIndividual(Individual(id + std::to_string(k), 0));
      matrix->link(individual, assertion);
      EXPECT_TRUE(matrix->addMember(assertion, individual));
    }
  }
  Individual& shared = matrix->insertIndividual(Individual("s", 0));
  for (const char* id : {"a", "b"}) {
    matrix->link(shared, *matrix->findAssertion(id));
    EXPECT_TRUE(matrix->addMember(*matrix->findAssertion(id), shared));
  }
  return matrix;
}

// The console lines of each threshold: a group at the threshold stays, one
// deletion is singular, nothing below lists nothing, everything below
// empties the matrix and a second run finds nothing to handle.
TEST(PrivacyThreshold, DeletesSmallGroupsRenumbersAndListsTheRest) {
  const std::string n = "Assertion n\xb0";
  const struct {
    int threshold;
    std::deque<std::string> lines;
    size_t assertions;
    size_t individuals;
  } cases[] = {
      {3,
       {":Privacy operation", "::Individuals per group threshold: 3", "::2 assertions deleted, correcting indexes...",
        n + "0 has 5 individual(s). Minimum: 3", n + "1 has 4 individual(s). Minimum: 3",
        n + "2 has 3 individual(s). Minimum: 3", ":[done]"},
       3,
       12},
      {2,
       {":Privacy operation", "::Individuals per group threshold: 2", "::1 assertion deleted, correcting indexes...",
        n + "0 has 5 individual(s). Minimum: 2", n + "1 has 4 individual(s). Minimum: 2",
        n + "2 has 2 individual(s). Minimum: 2", n + "3 has 3 individual(s). Minimum: 2", ":[done]"},
       4,
       14},
      {1, {":Privacy operation", "::Individuals per group threshold: 1", ":[done]"}, 5, 14},
      {6,
       {":Privacy operation", "::Individuals per group threshold: 6", "::5 assertions deleted, correcting indexes...",
        ":[done]"},
       0,
       0},
  };
  for (const auto& c : cases) {
    auto matrix = fiveGroups();
    ConsoleLog console;
    EXPECT_TRUE(ApplyPrivacyThreshold(*matrix, console, c.threshold));
    EXPECT_EQ(console.lines(), c.lines);
    EXPECT_EQ(matrix->assertionCount(), c.assertions) << c.threshold;
    EXPECT_EQ(matrix->individualCount(), c.individuals) << c.threshold;
    if (c.threshold == 3) {
      // b and d went and the rest is renumbered; d's own individuals went,
      // s lost b but stays with a.
      EXPECT_EQ(matrix->findAssertion("b"), nullptr);
      EXPECT_EQ((std::vector<int32_t>{matrix->findAssertion("a")->number, matrix->findAssertion("c")->number,
                                      matrix->findAssertion("e")->number}),
                (std::vector<int32_t>{0, 1, 2}));
      ASSERT_EQ(matrix->orderedAssertions.size(), 3u);
      EXPECT_EQ(matrix->orderedAssertions[2], matrix->findAssertion("e"));
      EXPECT_EQ(matrix->findIndividual("d0"), nullptr);
      ASSERT_NE(matrix->findIndividual("s"), nullptr);
      EXPECT_EQ(matrix->findIndividual("s")->membershipCount(), 1u);
      EXPECT_TRUE(matrix->findIndividual("s")->belongsTo(matrix->findAssertion("a")));
      for (const Individual& individual : matrix->individuals) EXPECT_TRUE(individual.hasMembership()) << individual.id;
    }
    if (c.threshold != 6) continue;
    ConsoleLog again;
    EXPECT_TRUE(ApplyPrivacyThreshold(*matrix, again, 6));
    EXPECT_EQ(again.lines(), (std::deque<std::string>{":Privacy operation", "::Individuals per group threshold: 6",
                                                      ": no assertion to handle"}));
  }
}

}  // namespace
}  // namespace velda
