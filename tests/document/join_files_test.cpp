#include <gtest/gtest.h>

#include <unistd.h>

#include <array>
#include <cstdio>
#include <string>

#include "common/LastError.h"
#include "document/ProjectFileSamples.h"
#include "document/project/JoinFiles.h"
#include "support/HandMatrix.h"

namespace velda {
namespace {

// A stream that holds the bytes: a temporary file, or the read end of a
// pipe, which cannot seek. Closed with the object.
struct Held {
  explicit Held(const std::string& bytes, bool piped = false) {
    int ends[2];
    if (piped && pipe(ends) == 0) {
      EXPECT_EQ(write(ends[1], bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
      close(ends[1]);
      file = fdopen(ends[0], "rb");
    } else if (!piped && (file = std::tmpfile())) {
      std::fwrite(bytes.data(), 1, bytes.size(), file);
      std::rewind(file);
    }
    EXPECT_TRUE(file);
  }
  ~Held() {
    if (file) std::fclose(file);
  }
  std::FILE* file = nullptr;
};

// The bytes of a project with an interval variable and one individual per
// assertion.
std::string towns(const char* variable, std::initializer_list<const char*> towns) {
  test::HandMatrix data;
  data.matrix->individualColumn = "id";
  data.matrix->assertionColumn = "town";
  data.quantitative(variable);
  data.holdCells();
  for (const char* town : towns) data.group(town, {&data.person((std::string("p_") + town).c_str(), {"3"})});
  return test::projectBytes(*data.matrix);
}

TEST(JoinFiles, JoinsTwoProjectsOnTheirCommonAssertions) {
  Held first(towns("age", {"Paris", "Lyon", "Nice"}));
  Held second(towns("age", {"Nice", "Paris"}));
  auto joined = JoinFiles(first.file, second.file);
  ASSERT_TRUE(joined) << lastError();
  EXPECT_EQ(joined->variableCount(), 2u);
  EXPECT_EQ(joined->variable(1).name, "age");  // placed right after the other "age"
  EXPECT_EQ(joined->assertionCount(), 2u);
  EXPECT_EQ(joined->assertions.bucketCount(), 2u);
  ASSERT_EQ(joined->orderedAssertions.size(), 2u);
  EXPECT_TRUE(joined->findAssertion("Paris") && joined->findAssertion("Nice"));
  EXPECT_EQ(joined->individualCount(), 0u);

  // Streams that cannot seek.
  Held a(towns("age", {"Paris", "Lyon"}), true);
  Held b(towns("w", {"Lyon"}), true);
  ASSERT_NE(std::fseek(a.file, 0, SEEK_SET), 0) << "a pipe cannot seek";
  joined = JoinFiles(a.file, b.file);
  ASSERT_TRUE(joined) << lastError();
  EXPECT_EQ(joined->variableCount(), 2u);
  EXPECT_EQ(joined->assertionCount(), 1u);
  EXPECT_TRUE(joined->findAssertion("Lyon"));
}

TEST(JoinFiles, AJoinedProjectWithMovedRulesAndTaxonomiesReopens) {
  std::string firstBytes, secondBytes;
  {
    // age holds cells; region was added later from a query.
    test::HandMatrix data;
    data.quantitative("age");
    data.holdCells();
    data.categorical("region").addModality("north");
    data.group("Paris", {&data.person("p1", {"30"})});
    firstBytes = test::projectBytes(*data.matrix);
  }
  {
    // job and firm hold cells; firm has a taxonomy and depends on job.
    test::HandMatrix data;
    data.categorical("job");
    data.categorical("firm");
    data.holdCells();
    data.group("Paris", {&data.person("q1", {"worker", "acme"})});
    TaxonomyBuilder builder(static_cast<CategoricalVariable&>(data.matrix->variable(1)));
    ASSERT_EQ(builder.addRow(std::array<std::optional<std::string_view>, 2>{"acme", "corp"}), 1);
    ASSERT_EQ(builder.finish(), 1);
    settleTaxonomy(*data.matrix, 1);
    const std::array<int32_t, 1> workers{0};
    const std::array<int32_t, 1> firm{1};
    RuleGroup group;
    ASSERT_EQ(makeRuleGroup(*data.matrix, 0, workers, firm, group), 1);
    ASSERT_EQ(applyRule(*data.matrix, std::move(group)), 1);
    secondBytes = test::projectBytes(*data.matrix);
  }
  Held first(firstBytes), second(secondBytes);
  auto joined = JoinFiles(first.file, second.file);
  ASSERT_TRUE(joined) << lastError();
  // [age, region, job, firm] with P = 1 + 2: the rule and the taxonomy now
  // sit on variables 2 and 3, firm past P.
  ASSERT_EQ(joined->cellCount(), 3u);
  ASSERT_EQ(joined->rules.size(), 1u);
  EXPECT_EQ(joined->rules[0]->daughter, 3);

  const auto reopened = test::projectFromBytes(test::projectBytes(*joined));
  ASSERT_TRUE(reopened) << lastError();
  ASSERT_EQ(reopened->variableCount(), 4u);
  ASSERT_EQ(reopened->rules.size(), 1u);
  EXPECT_EQ(reopened->rules[0]->mother, 2);
  EXPECT_EQ(reopened->rules[0]->daughter, 3);
  EXPECT_EQ(reopened->variable(3).motherIndex, 2);
  EXPECT_TRUE(static_cast<const CategoricalVariable&>(reopened->variable(3)).hasTaxonomy());
  EXPECT_EQ(reopened->taxonomyCount(), 1);
  EXPECT_EQ(reopened->cellTaxonomyCount(), 0) << "firm is not among the first P";
  EXPECT_EQ(reopened->motherCandidateCount(), 2u) << "0 + 2, as the join summed them";
  EXPECT_TRUE(reopened->findAssertion("Paris"));
}

TEST(JoinFiles, ReportsEachFailure) {
  {
    Held first("not a project"), second(towns("w", {"Paris"}));
    EXPECT_FALSE(JoinFiles(first.file, second.file));
    EXPECT_EQ(lastError(), "Incorrect file type");
    EXPECT_EQ(std::ftell(second.file), 0) << "the second file is not read";
  }
  Held first(towns("age", {"Paris"})), second(towns("w", {"Rome"}));
  EXPECT_FALSE(JoinFiles(first.file, second.file));
  EXPECT_EQ(lastError(), "Join failed: assertions have no intersection");
  // The magic and both counts, then nothing.
  Held again(towns("age", {"Paris"})), truncated(towns("w", {"Paris"}).substr(0, 18));
  EXPECT_FALSE(JoinFiles(again.file, truncated.file));
  EXPECT_EQ(lastError(), "Load failed");
}

}  // namespace
}  // namespace velda
