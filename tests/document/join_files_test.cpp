#include <gtest/gtest.h>

#include <cstdio>

#include "common/LastError.h"
#include "document/JoinFiles.h"
#include "document/ProjectFile.h"
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
