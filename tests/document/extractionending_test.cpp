#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "common/ConsoleLog.h"
#include "common/LastError.h"
#include "common/MessageBox.h"
#include "document/ExtractionEnding.h"
#include "model/CategoricalVariable.h"
#include "model/QuantitativeVariable.h"
#include "model/SymbolicMatrix.h"

namespace velda {
namespace {

using std::chrono::milliseconds;

class RecordingMessages : public MessageBoxTarget {
 public:
  RecordingMessages() { setMessageBoxTarget(this); }
  ~RecordingMessages() override { setMessageBoxTarget(nullptr); }
  void showMessage(const std::string& text, MessageIcon icon) override { shown.emplace_back(text, icon); }
  std::vector<std::pair<std::string, MessageIcon>> shown;
};

// Two variables (one categorical), groups g0 with 3 individuals and g1 with
// one, finished in the given time.
ExtractionResult extracted(milliseconds elapsed, size_t smallGroup = 1) {
  ExtractionResult result;
  result.matrix = SymbolicMatrix::create(5, 3);
  SymbolicMatrix& m = *result.matrix;
  m.appendVariable(std::make_unique<CategoricalVariable>("c", 1, 19));
  m.appendVariable(std::make_unique<QuantitativeVariable>("x", 1));
  EXPECT_TRUE(m.declareCellVariables(2, 1));
  const std::vector<std::pair<std::string, size_t>> groups = {{"g0", 3}, {"g1", smallGroup}};
  for (const auto& [id, size] : groups) {
    Assertion& assertion = m.createAssertion(id);
    for (size_t k = 0; k < size; ++k) {
      Individual& individual = m.insertIndividual(Individual(id + "-" + std::to_string(k), 2));
      individual.cells[0].flags = CELL_MODALITY | CELL_NULL;
      individual.cells[1].flags = CELL_NUMBER | CELL_NULL;
      m.link(individual, assertion);
      m.addMember(assertion, individual);
    }
  }
  m.indexAssertions();
  result.startedAt = std::chrono::steady_clock::time_point(std::chrono::seconds(50));
  result.finishedAt = result.startedAt + elapsed;
  return result;
}

struct Document {
  std::unique_ptr<SymbolicMatrix> matrix;
  ConsoleLog console;
  int resets = 0;
  bool refuse = false;
  ExtractionEndingHooks hooks() {
    return {[this](std::unique_ptr<SymbolicMatrix> m) {
              if (refuse) return false;
              matrix = std::move(m);
              return true;
            },
            [this] {
              ++resets;
              console.print("<fields reset>");
            }};
  }
  std::vector<std::string> lines() const {
    return std::vector<std::string>(console.lines().begin(), console.lines().end());
  }
};

TEST(ExtractionEnding, TimeIsInWholeTenthsWithTheSingularAtExactlyOneSecond) {
  const auto t0 = std::chrono::steady_clock::time_point(std::chrono::seconds(50));
  EXPECT_EQ(elapsedTicks(t0, t0 + milliseconds(999)), 9);
  EXPECT_EQ(elapsedTicks(t0, t0 - milliseconds(300)), 0);
  const std::vector<std::pair<int, std::string>> cases = {
      {0, "Extraction done in 0.0 seconds."},    {99, "Extraction done in 0.0 seconds."},
      {999, "Extraction done in 0.9 seconds."},  {1000, "Extraction done in 1.0 second ."},
      {1099, "Extraction done in 1.0 second ."}, {1100, "Extraction done in 1.1 seconds."},
      {2000, "Extraction done in 2.0 seconds."},
  };
  for (const auto& [ms, line] : cases) {
    Document doc;
    ASSERT_EQ(endExtraction(extracted(milliseconds(ms)), 0, doc.console, doc.hooks()), 1);
    ASSERT_FALSE(doc.console.lines().empty());
    EXPECT_EQ(doc.console.lines().front(), line) << ms;
  }
}

TEST(ExtractionEnding, SummaryThenFieldsReset) {
  RecordingMessages messages;
  Document doc;
  ExtractionResult result = extracted(milliseconds(350));
  SymbolicMatrix* made = result.matrix.get();
  ASSERT_EQ(endExtraction(std::move(result), 0, doc.console, doc.hooks()), 1);
  EXPECT_EQ(doc.matrix.get(), made);
  EXPECT_EQ(doc.lines(), (std::vector<std::string>{
                             "Extraction done in 0.3 seconds.",
                             "Symbolic data matrix is composed by:",
                             "2 variables (1 qualitatives, 1 quantitatives)",
                             "2 assertions build from 4 individuals",
                             "<fields reset>",
                         }));
  EXPECT_EQ(doc.resets, 1);
  EXPECT_TRUE(messages.shown.empty());
}

TEST(ExtractionEnding, StoppedAndThresholdComeAroundTheSummary) {
  Document doc;
  ExtractionResult result = extracted(milliseconds(1000));
  result.stopped = true;
  ASSERT_EQ(endExtraction(std::move(result), 2, doc.console, doc.hooks()), 1);
  EXPECT_EQ(doc.lines(), (std::vector<std::string>{
                             "*stopped*",
                             "Extraction done in 1.0 second .",
                             "Symbolic data matrix is composed by:",
                             "2 variables (1 qualitatives, 1 quantitatives)",
                             "2 assertions build from 4 individuals",
                             ":Privacy operation",
                             "::Individuals per group threshold: 2",
                             "::1 assertion deleted, correcting indexes...",
                             "Assertion n\xb0" "0 has 3 individual(s). Minimum: 2",
                             ":[done]",
                             "<fields reset>",
                         }));
  ASSERT_TRUE(doc.matrix);
  EXPECT_EQ(doc.matrix->assertionCount(), 1u);
  EXPECT_EQ(doc.matrix->individualCount(), 3u);
}

TEST(ExtractionEnding, FailuresShowAMessageAndInstallNothing) {
  RecordingMessages messages;
  {
    Document doc;
    ExtractionResult failed;
    setError("Ponderation of individual '%s' is null or negative", "x");
    EXPECT_EQ(endExtraction(std::move(failed), 3, doc.console, doc.hooks()), 0);
    EXPECT_TRUE(doc.lines().empty());
    EXPECT_FALSE(doc.matrix);
    EXPECT_EQ(doc.resets, 0);
  }
  {
    Document doc;
    ExtractionResult empty = extracted(milliseconds(100));
    empty.matrix = SymbolicMatrix::create();
    empty.stopped = true;
    EXPECT_EQ(endExtraction(std::move(empty), 3, doc.console, doc.hooks()), 0);
    EXPECT_TRUE(doc.lines().empty());
    EXPECT_FALSE(doc.matrix);
  }
  {
    Document doc;
    doc.refuse = true;
    EXPECT_EQ(endExtraction(extracted(milliseconds(100)), 3, doc.console, doc.hooks()), 0);
    EXPECT_TRUE(doc.lines().empty());
    EXPECT_EQ(doc.resets, 0);
  }
  EXPECT_EQ(messages.shown, (std::vector<std::pair<std::string, MessageIcon>>{
                                {"Ponderation of individual 'x' is null or negative", MessageIcon::Warning},
                                {"No individual extracted", MessageIcon::Warning},
                                {"Internal error: cannot assert", MessageIcon::Warning},
                            }));
}

}  // namespace
}  // namespace velda
