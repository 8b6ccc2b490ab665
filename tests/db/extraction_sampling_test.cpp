#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "common/LastError.h"
#include "common/Random15.h"
#include "db/extraction/ExtractionBuilder.h"

namespace velda {
namespace {

// Every individual of a group must be kept with the same frequency N / k:
// a sampler that favours early or late rows, or some slots, fails this.
TEST(ExtractionSampling, EveryIndividualIsKeptWithEqualFrequency) {
  const std::vector<ExtractionColumn> columns = {
      {"id", COLUMN_CHARACTER}, {"grp", COLUMN_CHARACTER}, {"x", COLUMN_INTEGER}};
  const int kIndividuals = 10;  // per group, arriving in this order
  const int kGroups = 10;       // rows of the groups interleaved
  const int kSample = 3;
  const int kRuns = 400;
  std::vector<int> keptByArrival(kIndividuals, 0);
  for (int run = 0; run < kRuns; ++run) {
    // Spread the seeds: consecutive seeds give close first draws.
    seedRandom15(static_cast<uint32_t>(run) * 2654435761u + 12345u);
    auto builder = ExtractionBuilder::prepare(columns, {false, kSample});
    ASSERT_TRUE(builder) << lastError();
    for (int i = 0; i < kIndividuals; ++i) {
      for (int g = 0; g < kGroups; ++g) {
        const std::string id = std::to_string(i) + "/" + std::to_string(g);
        const std::string group = "g" + std::to_string(g);
        const char* texts[] = {id.c_str(), group.c_str(), "1"};
        ASSERT_EQ(builder->processRow(texts), 1) << lastError();
      }
    }
    auto matrix = builder->finish(kIndividuals * kGroups);
    ASSERT_TRUE(matrix) << lastError();
    ASSERT_EQ(matrix->individualCount(), static_cast<size_t>(kSample * kGroups));
    for (const Assertion& group : matrix->assertions) {
      ASSERT_EQ(group.members.size(), static_cast<size_t>(kSample));
      for (const Individual* member : group.members) ++keptByArrival[std::stoi(member->id)];
    }
  }
  // Expected 400 * 10 * 3 / 10 = 1200 each, standard deviation about 29.
  for (int i = 0; i < kIndividuals; ++i) {
    EXPECT_GT(keptByArrival[i], 1080) << "individual arriving " << i;
    EXPECT_LT(keptByArrival[i], 1320) << "individual arriving " << i;
  }
}

TEST(ExtractionSampling, NegativeSampleSizeKeepsEveryone) {
  auto builder = ExtractionBuilder::prepare(
      {{"id", COLUMN_INTEGER}, {"grp", COLUMN_CHARACTER}, {"c", COLUMN_CHARACTER}}, {false, -2});
  ASSERT_TRUE(builder);
  for (const char* id : {"1", "2", "3"}) {
    const char* texts[] = {id, "g", "v"};
    ASSERT_EQ(builder->processRow(texts), 1);
  }
  auto matrix = builder->finish(3);
  ASSERT_TRUE(matrix);
  EXPECT_EQ(matrix->findAssertion("g")->memberCount, 3);
}

}  // namespace
}  // namespace velda
