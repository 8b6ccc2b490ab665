// Commands that promise to leave the matrix (and a saved file) unchanged when
// memory runs out, run again and again with one more allocation failing each
// time: each run either succeeds or ends with its message and nothing
// changed. The sanitizer build adds: never a crash, never a leak.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "document/Document.h"
#include "document/ScriptedUserInterface.h"
#include "document/project/ProjectFile.h"
#include "model/SymbolicMatrix.h"
#include "support/FailingAllocation.h"
#include "support/FileText.h"
#include "support/HandMatrix.h"
#include "support/MatrixDump.h"
#include "support/SqliteDatabase.h"
#include "support/TempDir.h"

namespace velda {
namespace {

using test::failEachAllocationInTurn;
using test::matrixDump;
using test::readFile;

constexpr const char* kMemoryFailed = "Memory allocation failed";

// Ten people in three groups, with a category and a number; facts adds a
// category and a number per group, towns a weighted set of towns.
const char* const kTables =
    "create table people(id varchar(5), grp varchar(5), kind varchar(5), age real);"
    "insert into people values('a','g1','x',10),('b','g1','y',20),('c','g1','x',30),('d','g2','z',40),"
    "('e','g2','x',50),('f','g2','y',NULL),('g','g3','y',70),('h','g3','z',80),('i','g3','x',90),('j','g3','y',15);"
    "create table facts(grp varchar(5), region varchar(10), area real);"
    "insert into facts values('g1','north',1.5),('g2','south',2.5),('g3','north',3.5);"
    "create table towns(grp varchar(5), town varchar(10), w real);"
    "insert into towns values('g1','Lyon',2),('g1','Nice',1),('g2','Lyon',1),('g3','Metz',3),('g3','Nice',1);";

class AllocationFailure : public ::testing::Test {
 protected:
  void SetUp() override {
    ui_.onNew = [](NewValues& values) {
      values.tableName = "people";
      return true;
    };
    ui_.onChooseFile = [this](const FileRequest&, FileChoice& choice) {
      choice.path = path_;
      return true;
    };
    ASSERT_TRUE(document_.connect(db_.connectionString()));
  }

  // Runs the command on fresh data with each allocation failing in turn. A
  // run that fails must show one of the accepted series of messages and
  // leave the matrix (none, when `fresh` leaves none) and whatever `kept`
  // reads as they were before the run.
  void expectDoneOrUnchanged(
      int32_t command, const std::function<void()>& fresh,
      const std::vector<std::vector<std::string>>& accepted = {{kMemoryFailed}},
      const std::function<std::string()>& kept = [] { return std::string(); }) {
    std::string before;
    std::string keptBefore;
    bool done = false;
    const long runs = failEachAllocationInTurn(
        [&] {
          fresh();
          ui_.messages.clear();
          before = document_.matrix() ? matrixDump(*document_.matrix()) : std::string();
          keptBefore = kept();
        },
        [&] { done = document_.execute(command); },
        [&](long n, bool) {
          if (done) return;
          std::vector<std::string> shown;
          for (const auto& message : ui_.messages) shown.push_back(message.text);
          EXPECT_NE(std::find(accepted.begin(), accepted.end(), shown), accepted.end())
              << "allocation " << n << ": " << (shown.empty() ? "no message" : shown.back());
          // Compared whole, reported by their sizes.
          const std::string after = document_.matrix() ? matrixDump(*document_.matrix()) : std::string();
          EXPECT_TRUE(after == before) << "matrix changed at allocation " << n << ": " << after.size() << " bytes";
          const std::string keptAfter = kept();
          EXPECT_TRUE(keptAfter == keptBefore) << "file changed at allocation " << n;
        });
    EXPECT_TRUE(done) << "after " << runs << " runs: " << ui_.lastMessage();
  }

  void newMatrix() {
    ASSERT_TRUE(document_.closeData());
    ASSERT_TRUE(document_.execute(ID_FILE_NEW));
  }

  test::SqliteDatabase db_{kTables};
  test::TempDir dir_;
  std::string path_ = dir_.file("people.gaj");
  ScriptedUserInterface ui_;
  Document document_{ui_};
};

TEST_F(AllocationFailure, ExtractionGivesAMatrixOrTheMessage) {
  expectDoneOrUnchanged(ID_FILE_NEW, [&] { ASSERT_TRUE(document_.closeData()); });
  EXPECT_EQ(document_.matrix()->individualCount(), 10u);
}

TEST_F(AllocationFailure, AddVariablesAndReductionLeaveTheMatrixAsItWas) {
  std::string query;
  ui_.onAddVariables = [&](AddVariablesValues& values) {
    values.query = query;
    return true;
  };
  query = "select grp, region, area from facts";
  expectDoneOrUnchanged(ID_ADD_SINGLE_VALUED_VARIABLES, [&] { newMatrix(); });
  query = "select grp, town, w from towns";
  expectDoneOrUnchanged(ID_ADD_SET_VALUED_VARIABLE, [&] { newMatrix(); });

  // The reduction reports any failure of its run as such, after its own
  // message for an individual it cannot register.
  ui_.onReduction = [](ReductionValues& values) {
    values.threshold = 60;
    return true;
  };
  expectDoneOrUnchanged(ID_REDUCE_ASSERTIONS, [&] { newMatrix(); },
                        {{kMemoryFailed}, {"Reduction failed"}, {"dans le if", "Reduction failed"}});
}

TEST_F(AllocationFailure, SaveKeepsThePreviousFile) {
  // The file holds another project before each save.
  test::HandMatrix previous;
  previous.categorical("other");
  ASSERT_EQ(saveProject(path_, *previous.matrix), ProjectSave::Saved);
  const std::string previousBytes = readFile(path_);
  expectDoneOrUnchanged(
      ID_FILE_SAVE,
      [&] {
        newMatrix();
        ASSERT_EQ(saveProject(path_, *previous.matrix), ProjectSave::Saved);
      },
      {{kMemoryFailed}},
      [&] {
        // No temporary file stays beside it either.
        std::string kept = readFile(path_);
        for (const std::string& name : test::folderNames(dir_.path())) kept += "\n" + name;
        return kept;
      });
  EXPECT_TRUE(readFile(path_) == matrixDump(*document_.matrix()));
}

}  // namespace
}  // namespace velda
