// The document's New and save question on data that was never saved.
#include <gtest/gtest.h>
#include <unistd.h>

#include "document/DocumentHarness.h"
#include "support/SqliteDatabase.h"

namespace velda {
namespace {

class DocumentNew : public test::DocumentHarness {
 protected:
  void SetUp() override {
    ui_.onNew = [](NewValues& values) {
      values.tableName = "people";
      return true;
    };
  }

  test::SqliteDatabase database_{
      "CREATE TABLE people (id integer, town varchar(20), age integer);"
      "INSERT INTO people VALUES (1, 'Lyon', 30), (2, 'Lyon', 40), (3, 'Nice', 50);"
      "CREATE TABLE empty_people (id integer, town varchar(20), age integer);"
      "CREATE TABLE sizes (town varchar(20), area real);"
      "INSERT INTO sizes VALUES ('Lyon', 48), ('Nice', 72);"};
};

TEST_F(DocumentNew, NewDataIsModifiedAndItsFirstSaveAsksForAName) {
  ASSERT_FALSE(document_.isEnabled(ID_DISCONNECT));
  ASSERT_TRUE(document_.connect(database_.connectionString()));
  EXPECT_TRUE(document_.isEnabled(ID_DISCONNECT));
  ASSERT_TRUE(document_.newFromDatabase());
  ASSERT_EQ(ui_.progressTitles.size(), 1u);
  EXPECT_TRUE(document_.isModified());
  EXPECT_FALSE(document_.fileRecord().valid);
  EXPECT_EQ(ui_.title, "VELDA");
  EXPECT_EQ(document_.console().lines().back(), "2 assertions build from 3 individuals");

  // Yes, then Cancel in the save dialog: everything stays.
  ui_.onAsk = [](const std::string&) { return Answer::Yes; };
  SymbolicMatrix* before = document_.matrix();
  EXPECT_FALSE(document_.closeData());
  ASSERT_EQ(requests_.size(), 1u);
  EXPECT_EQ(requests_[0].mode, FileRequest::Mode::Save);
  EXPECT_EQ(requests_[0].filter, "VELDA file (*.gaj)");
  EXPECT_EQ(document_.matrix(), before);
  EXPECT_TRUE(document_.isModified());

  // Save on never-saved data shows the dialog, then records the file.
  nextFile_ = dir_.file("people.gaj");
  EXPECT_TRUE(document_.save());
  EXPECT_EQ(requests_.size(), 2u);
  EXPECT_FALSE(document_.isModified());
  EXPECT_EQ(ui_.title, "VELDA - people");
  EXPECT_EQ(document_.metadataFileName(), nextFile_ + ".xml");
  EXPECT_EQ(access((nextFile_ + ".xml").c_str(), F_OK), 0);

  // Save as always asks; an unwritable name changes nothing.
  nextFile_ = "/nonexistent-velda-dir/p.gaj";
  static_cast<void>(document_.editVariableProperties());
  EXPECT_FALSE(document_.saveAs());
  EXPECT_EQ(ui_.lastMessage(), "Can not open file /nonexistent-velda-dir/p.gaj");
  EXPECT_TRUE(document_.isModified());
  EXPECT_EQ(document_.fileRecord().path, dir_.file("people.gaj"));
}

TEST_F(DocumentNew, NewClosesTheDataBeforeItsDialogSoAFailureLeavesNothing) {
  ASSERT_TRUE(document_.connect(database_.connectionString()));
  ASSERT_TRUE(document_.newFromDatabase());
  SymbolicMatrix* before = document_.matrix();

  // Cancel at the save question: the dialog never shows, the data stays.
  int dialogs = 0;
  ui_.onAsk = [](const std::string&) { return Answer::Cancel; };
  ui_.onNew = [&](NewValues& values) {
    ++dialogs;
    values.tableName = "empty_people";
    return true;
  };
  EXPECT_FALSE(document_.newFromDatabase());
  EXPECT_EQ(ui_.questions, std::vector<std::string>{"Do you want to save current data ?"});
  EXPECT_EQ(dialogs, 0);
  EXPECT_EQ(document_.matrix(), before);

  // No: the data goes before the dialog, and an empty result leaves nothing.
  ui_.onAsk = [](const std::string&) { return Answer::No; };
  EXPECT_FALSE(document_.newFromDatabase());
  EXPECT_EQ(dialogs, 1);
  EXPECT_EQ(ui_.lastMessage(), "No individual extracted");
  EXPECT_EQ(document_.matrix(), nullptr);
  EXPECT_FALSE(document_.isModified());

  ui_.onNew = [](NewValues& values) {
    values.query = "select id, age from people";
    return true;
  };
  EXPECT_FALSE(document_.newFromDatabase());
  EXPECT_EQ(ui_.lastMessage(), "Insufficient number of columns");
  EXPECT_EQ(document_.matrix(), nullptr);

  ASSERT_TRUE(document_.disconnect());
  ui_.onNew = [](NewValues& values) {
    values.tableName = "people";
    return true;
  };
  EXPECT_FALSE(document_.newFromDatabase());
  EXPECT_EQ(document_.matrix(), nullptr);
  EXPECT_EQ(ui_.questions.size(), 2u);  // Cancel, then No: with no data nothing more is asked
}

TEST_F(DocumentNew, VariablesAddedAfterAReductionAreExportedWithTheReducedRows) {
  ASSERT_TRUE(document_.connect(database_.connectionString()));
  ASSERT_TRUE(document_.newFromDatabase());
  ui_.onReduction = [](ReductionValues& values) {
    values.threshold = 50;
    return true;
  };
  ASSERT_TRUE(document_.reduceAssertions());
  ASSERT_EQ(document_.matrix()->reducedAssertions.size(), 2u);
  ui_.onAddVariables = [](AddVariablesValues& values) {
    values.query = "select town, area from sizes";
    return true;
  };
  ASSERT_TRUE(document_.addSingleValuedVariables());

  // The reduced rows describe their town with the town's own area.
  const SymbolicMatrix& matrix = *document_.matrix();
  const size_t area = matrix.variableCount() - 1;
  for (const auto& reduced : matrix.reducedAssertions) {
    const std::string own = test::HandMatrix::written(*reduced, area);
    EXPECT_EQ(own, test::HandMatrix::written(*matrix.orderedAssertions[static_cast<size_t>(reduced->number)], area));
    EXPECT_NE(own, "NU") << reduced->id;
  }
  const std::string destination = dir_.file("reduced.kvf");
  ui_.onExport = [&](ExportValues& values) {
    values.file = destination;
    return values.exportReducedAssertions;
  };
  EXPECT_TRUE(document_.exportMatrix()) << ui_.lastMessage();
  EXPECT_EQ(test::readFile(destination).find("NU"), std::string::npos);
}

}  // namespace
}  // namespace velda
