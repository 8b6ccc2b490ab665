#include <gtest/gtest.h>

#include <unistd.h>

#include <array>
#include <cstdio>
#include <string>

#include "common/LastError.h"
#include "document/JoinFiles.h"
#include "document/ProjectFileSamples.h"
#include "support/HandMatrix.h"

namespace velda {
namespace {

// A temporary file removed when closed.
struct TempFile {
  TempFile() : file(std::tmpfile()) {}
  ~TempFile() { std::fclose(file); }
  std::FILE* file;
};

// A project with an interval variable and one individual per assertion.
void writeTowns(TempFile& out, const char* variable, std::initializer_list<const char*> towns) {
  test::HandMatrix data;
  data.matrix->individualColumn = "id";
  data.matrix->assertionColumn = "town";
  data.quantitative(variable);
  data.holdCells();
  for (const char* town : towns) {
    Individual& person = data.person((std::string("p_") + town).c_str(), {"3"});
    data.group(town, {&person});
  }
  ASSERT_TRUE(writeProject(out.file, *data.matrix));
  std::rewind(out.file);
}

TEST(JoinFiles, JoinsTwoProjectsOnTheirCommonAssertions) {
  TempFile first, second;
  writeTowns(first, "age", {"Paris", "Lyon", "Nice"});
  writeTowns(second, "age", {"Nice", "Paris"});
  auto joined = JoinFiles(first.file, second.file);
  ASSERT_TRUE(joined) << lastError();
  EXPECT_EQ(joined->variableCount(), 2u);
  EXPECT_EQ(joined->variable(1).name, "age");  // placed right after the other "age"
  EXPECT_EQ(joined->assertionCount(), 2u);
  EXPECT_EQ(joined->assertions.bucketCount(), 2u);
  ASSERT_EQ(joined->orderedAssertions.size(), 2u);
  EXPECT_TRUE(joined->findAssertion("Paris") && joined->findAssertion("Nice"));
  EXPECT_EQ(joined->individualCount(), 0u);
}

// The read end of a pipe that holds the bytes: a stream that cannot seek.
std::FILE* pipeHolding(const std::string& bytes) {
  int ends[2];
  if (pipe(ends) != 0) return nullptr;
  const bool written = write(ends[1], bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size());
  close(ends[1]);
  if (written) return fdopen(ends[0], "rb");
  close(ends[0]);
  return nullptr;
}

TEST(JoinFiles, ReadsStreamsThatCannotSeek) {
  TempFile first, second;
  writeTowns(first, "age", {"Paris", "Lyon"});
  writeTowns(second, "w", {"Lyon"});
  std::string bytes[2];
  for (auto [file, out] : {std::pair{first.file, &bytes[0]}, std::pair{second.file, &bytes[1]}}) {
    char chunk[4096];
    size_t n;
    while ((n = std::fread(chunk, 1, sizeof chunk, file)) > 0) out->append(chunk, n);
  }
  std::FILE* a = pipeHolding(bytes[0]);
  std::FILE* b = pipeHolding(bytes[1]);
  ASSERT_TRUE(a && b);
  ASSERT_NE(std::fseek(a, 0, SEEK_SET), 0) << "a pipe cannot seek";
  auto joined = JoinFiles(a, b);
  std::fclose(a);
  std::fclose(b);
  ASSERT_TRUE(joined) << lastError();
  EXPECT_EQ(joined->variableCount(), 2u);
  EXPECT_EQ(joined->assertionCount(), 1u);
  EXPECT_TRUE(joined->findAssertion("Lyon"));
}

TEST(JoinFiles, AJoinedProjectWithMovedRulesAndTaxonomiesReopens) {
  TempFile first, second;
  {
    // age holds cells; region was added later from a query.
    test::HandMatrix data;
    data.quantitative("age");
    data.holdCells();
    data.categorical("region").addModality("north");
    data.group("Paris", {&data.person("p1", {"30"})});
    ASSERT_TRUE(writeProject(first.file, *data.matrix));
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
    ASSERT_TRUE(writeProject(second.file, *data.matrix));
  }
  std::rewind(first.file);
  std::rewind(second.file);
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
    TempFile first, second;
    std::fputs("not a project", first.file);
    std::rewind(first.file);
    writeTowns(second, "w", {"Paris"});
    EXPECT_FALSE(JoinFiles(first.file, second.file));
    EXPECT_EQ(lastError(), "Incorrect file type");
    EXPECT_EQ(std::ftell(second.file), 0) << "the second file is not read";
  }
  {
    TempFile first, second;
    writeTowns(first, "age", {"Paris"});
    writeTowns(second, "w", {"Rome"});
    EXPECT_FALSE(JoinFiles(first.file, second.file));
    EXPECT_EQ(lastError(), "Join failed: assertions have no intersection");
  }
  {
    TempFile first, second;
    writeTowns(first, "age", {"Paris"});
    // The magic and both counts, then nothing.
    const unsigned char truncated[] = {8, 0, '$', 'K', 'O', 'R', 'V', 'A', '$', 0, 1, 0, 0, 0, 1, 0, 0, 0};
    std::fwrite(truncated, 1, sizeof truncated, second.file);
    std::rewind(second.file);
    EXPECT_FALSE(JoinFiles(first.file, second.file));
    EXPECT_EQ(lastError(), "Load failed");
  }
}

}  // namespace
}  // namespace velda
