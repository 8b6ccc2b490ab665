// Taxonomy queries and dependences on a matrix of 250 individuals: both run
// inside the progress dialog, and Cancel or a failing read leaves the matrix
// exactly as it was.
#include <gtest/gtest.h>

#include <string>

#include "document/Document.h"
#include "document/ScriptedUserInterface.h"
#include "model/SymbolicMatrix.h"
#include "support/MatrixDump.h"
#include "support/SqliteDatabase.h"

namespace velda {
namespace {

// Individual n is in group g(n%5), of kind k(n%4) and colour c(n%3). The
// tree has one row per individual: k0 and k2 under P0, k1 and k3 under P1.
std::string people() {
  std::string sql =
      "create table people(id integer, grp varchar(5), kind varchar(5), colour varchar(5));"
      "create table tree(child varchar(5), parent varchar(5));"
      "begin;";
  for (int n = 0; n < 250; ++n) {
    const std::string i = std::to_string(n);
    sql += "insert into people values(" + i + ",'g" + std::to_string(n % 5) + "','k" + std::to_string(n % 4) + "','c" +
           std::to_string(n % 3) + "');";
    sql += "insert into tree values('k" + std::to_string(n % 4) + "','P" + std::to_string(n % 2) + "');";
  }
  return sql + "commit;";
}

class LongCommandsCancel : public ::testing::Test {
 protected:
  void SetUp() override {
    ui_.onNew = [](NewValues& values) {
      values.tableName = "people";
      return true;
    };
    ASSERT_TRUE(document_.connect(database_.connectionString()));
    ASSERT_TRUE(document_.newFromDatabase());
    kind_ = variableNamed("kind");
    colour_ = variableNamed("colour");
    ASSERT_GE(kind_, 0);
    ASSERT_GE(colour_, 0);
    ui_.onTaxonomy = [this](TaxonomyValues& values) {
      values.variableIndex = kind_;
      values.query = taxonomyQuery_;
      return true;
    };
    // Individuals of kind k0 keep their colour, the others' become NA.
    ui_.onDependence = [this](DependenceValues& values) {
      values.motherIndex = kind_;
      values.applicableModalities = {modalityOfKind("k0")};
      values.daughterIndexes = {colour_};
      return true;
    };
    ui_.onAsk = [](const std::string&) { return Answer::Yes; };
  }

  int32_t variableNamed(const std::string& name) const {
    const SymbolicMatrix& m = *document_.matrix();
    for (size_t v = 0; v < m.variableCount(); ++v)
      if (m.variable(v).name == name) return static_cast<int32_t>(v);
    return -1;
  }

  int32_t modalityOfKind(const char* name) {
    auto& kind = static_cast<CategoricalVariable&>(document_.matrix()->variable(static_cast<size_t>(kind_)));
    return kind.findNode(name)->index;
  }

  // Cancel is answered at the given poll of the next command, counted from
  // its first poll.
  void cancelAtPoll(int poll) {
    polls_ = 0;
    ui_.onCancelPoll = [this, poll] { return ++polls_ >= poll; };
  }

  // Runs a command that must end without a change and without a message.
  void expectNoChange(bool (Document::*command)(), const char* what) {
    const std::string before = test::matrixDump(*document_.matrix());
    ASSERT_FALSE(before.empty());
    const size_t messages = ui_.messages.size();
    const size_t consoleLines = document_.console().lines().size();
    ui_.progressLines.clear();
    EXPECT_FALSE((document_.*command)()) << what;
    EXPECT_EQ(test::matrixDump(*document_.matrix()), before) << what;
    EXPECT_EQ(ui_.messages.size(), messages) << what << ": " << ui_.lastMessage();
    EXPECT_EQ(document_.console().lines().size(), consoleLines) << what;
  }

  test::SqliteDatabase database_{people()};
  ScriptedUserInterface ui_;
  Document document_{ui_};
  int32_t kind_ = -1;
  int32_t colour_ = -1;
  int polls_ = 0;
  std::string taxonomyQuery_ = "select child, parent from tree";
};

TEST_F(LongCommandsCancel, TaxonomyKeepsThePreviousHierarchyOnCancelAndOnAFailingRead) {
  ASSERT_TRUE(document_.createTaxonomy());
  EXPECT_EQ(document_.console().lines().back(), "taxonomy variable 'kind': initial domain is covered by 2 nodes");
  EXPECT_EQ(ui_.progressTitles.back(), "Taxonomizing variable");

  // Cancelled after 150 rows: the shown lines, no change.
  cancelAtPoll(151);
  expectNoChange(&Document::createTaxonomy, "cancel");
  ASSERT_FALSE(ui_.progressLines.empty());
  EXPECT_EQ(ui_.progressLines.front(), "Taxonomizing variable...");
  EXPECT_EQ(ui_.progressLines.back(), "Row 100");

  // A cycle on the last row: the message, and the previous hierarchy stays.
  ui_.onCancelPoll = nullptr;
  taxonomyQuery_ = "select child, parent from tree union all select 'P0', 'k0'";
  const std::string before = test::matrixDump(*document_.matrix());
  EXPECT_FALSE(document_.createTaxonomy());
  EXPECT_EQ(ui_.lastMessage(), "Error at line 251: query generates a cycle\n'P0' is on the path of 'k0'");
  EXPECT_EQ(test::matrixDump(*document_.matrix()), before);

  // Without Cancel the other hierarchy replaces the first one.
  taxonomyQuery_ = "select child, 'top' from tree";
  EXPECT_TRUE(document_.createTaxonomy());
  EXPECT_NE(test::matrixDump(*document_.matrix()), before);
}

TEST_F(LongCommandsCancel, DependenceCancelledInItsPreviewOrItsApplicationChangesNothing) {
  // 250 individuals: the preview polls before each one, the application too.
  cancelAtPoll(151);
  expectNoChange(&Document::addDependence, "preview");
  EXPECT_TRUE(ui_.questions.empty());
  ASSERT_FALSE(ui_.progressLines.empty());
  EXPECT_EQ(ui_.progressLines.front(), "Applying rule...");
  EXPECT_EQ(ui_.progressLines.back(), "Row 100");

  // The preview completes (and lists what would change), then the
  // application is cancelled.
  cancelAtPoll(251 + 151);
  const std::string before = test::matrixDump(*document_.matrix());
  EXPECT_FALSE(document_.addDependence());
  EXPECT_EQ(test::matrixDump(*document_.matrix()), before);
  EXPECT_EQ(ui_.questions.size(), 1u);
  EXPECT_EQ(document_.console().lines().back(), "   187 values will be replaced by NA");
  EXPECT_TRUE(ui_.messages.empty());
  EXPECT_EQ(ui_.progressTitles.back(), "Applying rule");

  ui_.onCancelPoll = nullptr;
  EXPECT_TRUE(document_.addDependence());
  EXPECT_EQ(document_.console().lines().back(), "  colour is applicable if kind in {\"k0\"}");
  EXPECT_NE(test::matrixDump(*document_.matrix()), before);
}

}  // namespace
}  // namespace velda
