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
      EXPECT_TRUE(m.addMember(assertion, individual));
    }
  }
  EXPECT_TRUE(m.indexAssertions());
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

TEST(ExtractionEnding, SummaryThenFieldsResetWithStoppedAndThresholdAroundIt) {
  RecordingMessages messages;
  const std::vector<std::string> summary = {
      "Symbolic data matrix is composed by:", "2 variables (1 qualitatives, 1 quantitatives)",
      "2 assertions build from 4 individuals"};
  Document doc;
  ExtractionResult result = extracted(milliseconds(350));
  SymbolicMatrix* made = result.matrix.get();
  ASSERT_EQ(endExtraction(std::move(result), 0, doc.console, doc.hooks()), 1);
  EXPECT_EQ(doc.matrix.get(), made);
  std::vector<std::string> expected = {"Extraction done in 0.3 seconds."};
  expected.insert(expected.end(), summary.begin(), summary.end());
  expected.push_back("<fields reset>");
  EXPECT_EQ(doc.lines(), expected);
  EXPECT_EQ(doc.resets, 1);
  EXPECT_TRUE(messages.shown.empty());

  Document stopped;
  result = extracted(milliseconds(1000));
  result.stopped = true;
  ASSERT_EQ(endExtraction(std::move(result), 2, stopped.console, stopped.hooks()), 1);
  expected = {"*stopped*", "Extraction done in 1.0 second ."};
  expected.insert(expected.end(), summary.begin(), summary.end());
  expected.insert(expected.end(), {":Privacy operation", "::Individuals per group threshold: 2",
                                   "::1 assertion deleted, correcting indexes...",
                                   "Assertion n\xb0"
                                   "0 has 3 individual(s). Minimum: 2",
                                   ":[done]", "<fields reset>"});
  EXPECT_EQ(stopped.lines(), expected);
  ASSERT_TRUE(stopped.matrix);
  EXPECT_EQ(stopped.matrix->assertionCount(), 1u);
  EXPECT_EQ(stopped.matrix->individualCount(), 3u);
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

// A matrix that the database aggregated: groups a (5 individuals) and b
// (2), 6 distinct individuals in all, and no individual record.
ExtractionResult aggregated(long individuals) {
  ExtractionResult result;
  result.matrix = SymbolicMatrix::create(5, 3);
  result.matrix->appendVariable(std::make_unique<CategoricalVariable>("c", 1, 19));
  EXPECT_TRUE(result.matrix->declareCellVariables(1, 1));
  result.matrix->createAssertion("a").memberCount = 5;
  result.matrix->createAssertion("b").memberCount = 2;
  EXPECT_TRUE(result.matrix->indexAssertions());
  result.aggregatedIndividuals = individuals;
  return result;
}

TEST(ExtractionEnding, AnAggregatedMatrixCountsItsIndividualsInTheSummaryAndTheThreshold) {
  RecordingMessages messages;
  Document doc;
  ExtractionEndingHooks hooks = doc.hooks();
  hooks.resetDescriptiveFields = nullptr;  // no fields to reset
  ASSERT_EQ(endExtraction(aggregated(6), 3, doc.console, hooks), 1);
  const std::vector<std::string> lines = doc.lines();
  ASSERT_EQ(lines.size(), 9u);  // the time first
  EXPECT_EQ(std::vector<std::string>(lines.begin() + 1, lines.end()),
            (std::vector<std::string>{
                "Symbolic data matrix is composed by:", "1 variables (1 qualitatives, 0 quantitatives)",
                "2 assertions build from 6 individuals aggregated in the database", ":Privacy operation",
                "::Individuals per group threshold: 3", "::1 assertion deleted, correcting indexes...",
                "Assertion n\xb0"
                "0 has 5 individual(s). Minimum: 3",
                ":[done]"}));
  ASSERT_TRUE(doc.matrix);
  EXPECT_EQ(doc.matrix->assertionCount(), 1u);
  EXPECT_TRUE(messages.shown.empty());

  // No individual at all is the client side's empty result.
  Document none;
  EXPECT_EQ(endExtraction(aggregated(0), 0, none.console, none.hooks()), 0);
  EXPECT_FALSE(none.matrix);
  EXPECT_EQ(messages.shown,
            (std::vector<std::pair<std::string, MessageIcon>>{{"No individual extracted", MessageIcon::Warning}}));
}

}  // namespace
}  // namespace velda
