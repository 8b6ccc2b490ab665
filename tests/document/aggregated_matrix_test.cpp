// A matrix that the database aggregated: assertions with their counts of
// individuals and no individual record.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "common/ConsoleLog.h"
#include "common/MessageBox.h"
#include "document/CommandTable.h"
#include "document/ExtractionEnding.h"
#include "model/CategoricalVariable.h"
#include "model/SymbolicMatrix.h"

namespace velda {
namespace {

class RecordedMessages : public MessageBoxTarget {
 public:
  RecordedMessages() { setMessageBoxTarget(this); }
  ~RecordedMessages() override { setMessageBoxTarget(nullptr); }
  void showMessage(const std::string& text, MessageIcon) override { shown.push_back(text); }
  std::vector<std::string> shown;
};

// Groups a (5 individuals) and b (2), 6 distinct individuals in all.
ExtractionResult aggregated(long individuals) {
  ExtractionResult result;
  result.matrix = SymbolicMatrix::create(5, 3);
  result.matrix->appendVariable(std::make_unique<CategoricalVariable>("c", 1, 19));
  EXPECT_TRUE(result.matrix->declareCellVariables(1, 1));
  result.matrix->createAssertion("a").memberCount = 5;
  result.matrix->createAssertion("b").memberCount = 2;
  result.matrix->indexAssertions();
  result.aggregatedIndividuals = individuals;
  return result;
}

TEST(AggregatedMatrix, SummaryCountsTheAggregatedIndividualsAndTheThresholdUsesThem) {
  RecordedMessages messages;
  ConsoleLog console;
  std::unique_ptr<SymbolicMatrix> installed;
  ExtractionEndingHooks hooks;
  hooks.install = [&](std::unique_ptr<SymbolicMatrix> m) {
    installed = std::move(m);
    return true;
  };
  ASSERT_EQ(endExtraction(aggregated(6), 3, console, hooks), 1);
  const std::vector<std::string> lines(console.lines().begin(), console.lines().end());
  ASSERT_EQ(lines.size(), 9u);
  EXPECT_EQ(std::vector<std::string>(lines.begin() + 1, lines.end()),
            (std::vector<std::string>{"Symbolic data matrix is composed by:",
                                      "1 variables (1 qualitatives, 0 quantitatives)",
                                      "2 assertions build from 6 individuals aggregated in the database",
                                      ":Privacy operation", "::Individuals per group threshold: 3",
                                      "::1 assertion deleted, correcting indexes...",
                                      "Assertion n\xb0" "0 has 5 individual(s). Minimum: 3", ":[done]"}));
  ASSERT_TRUE(installed);
  EXPECT_EQ(installed->assertionCount(), 1u);
  EXPECT_TRUE(messages.shown.empty());

  // No individual at all is the client side's empty result.
  installed.reset();
  EXPECT_EQ(endExtraction(aggregated(0), 0, console, hooks), 0);
  EXPECT_FALSE(installed);
  EXPECT_EQ(messages.shown, (std::vector<std::string>{"No individual extracted"}));
}

TEST(AggregatedMatrix, CommandsOnIndividualsAreDisabledTheOthersNot) {
  DocumentState state;
  state.hasData = true;
  state.variableCount = 2;
  state.cellCount = 1;
  state.qualitativeCount = 1;
  state.possibleMothers = 1;
  state.taxonomyCount = 1;
  for (int32_t id : {ID_ADD_DEPENDENCE, ID_REDUCE_ASSERTIONS, ID_DIVIDE_ASSERTIONS, ID_VIEW_INDIVIDUALS}) {
    EXPECT_FALSE(isCommandEnabled(id, state)) << id;
    EXPECT_TRUE(needsIndividuals(id)) << id;
  }
  for (int32_t id : {ID_FILE_SAVE, ID_EXPORT, ID_EXPORT_AND_VIEW, ID_ADD_SINGLE_VALUED_VARIABLES,
                     ID_ADD_SET_VALUED_VARIABLE, ID_REMOVE_VARIABLES, ID_CREATE_TAXONOMY, ID_REMOVE_TAXONOMIES,
                     ID_VARIABLE_PROPERTIES, ID_VIEW_ASSERTIONS, ID_VIEW_TAXONOMIES}) {
    EXPECT_TRUE(isCommandEnabled(id, state)) << id;
    EXPECT_FALSE(needsIndividuals(id)) << id;
  }
}

}  // namespace
}  // namespace velda
