#pragma once

// A document driven through a scripted user interface, in a working folder
// of its own (tempkvf.dat and parser.dat land there), and the small project
// the document tests open.

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "document/Document.h"
#include "document/ScriptedUserInterface.h"
#include "document/project/ProjectFile.h"
#include "support/FileText.h"
#include "support/HandMatrix.h"
#include "support/TempDir.h"

namespace velda::test {

// towns (set-valued town, interval age, both held by the individuals):
// a = {1, 2}, b = {3}. `people` more individuals in b make it as large as
// wanted; the added variable income is held by no individual.
inline std::unique_ptr<SymbolicMatrix> towns(int people = 0, bool withAddedVariable = false) {
  HandMatrix hand;
  hand.categorical("town", 1);
  hand.quantitative("age");
  hand.holdCells();
  if (withAddedVariable) hand.quantitative("income");
  Individual& p1 = hand.person("1", {"x", "30"});
  hand.group("a", {&p1, &hand.person("2", {"y", "40"})});
  Assertion& b = hand.group("b", {&hand.person("3", {"x", "50"})});
  for (int i = 0; i < people; ++i) {
    Individual& p = hand.person(("a-rather-long-individual-name-" + std::to_string(i)).c_str(), {"z", "60"});
    hand.matrix->link(p, b);
    EXPECT_TRUE(hand.matrix->addMember(b, p));
  }
  return std::move(hand.matrix);
}

class DocumentHarness : public ::testing::Test {
 protected:
  using Lines = std::vector<std::string>;

  DocumentHarness() {
    ui_.onChooseFile = [this](const FileRequest& request, FileChoice& choice) {
      requests_.push_back(request);
      choice.path = nextFile_;
      choice.ignoreMetadata = ignoreMetadata_;
      return !nextFile_.empty();
    };
  }

  // Saves the towns project under the name in the folder; its path.
  std::string saveTowns(const std::string& name, int people = 0, bool withAddedVariable = false) {
    EXPECT_EQ(saveProject(dir_.file(name), *towns(people, withAddedVariable)), ProjectSave::Saved);
    return dir_.file(name);
  }

  // Open, with the file chosen in the dialog.
  bool openFile(const std::string& path, bool ignoreMetadata = true) {
    nextFile_ = path;
    ignoreMetadata_ = ignoreMetadata;
    const bool opened = document_.open();
    nextFile_.clear();
    ignoreMetadata_ = false;
    return opened;
  }

  Lines console() const { return Lines(document_.console().lines().begin(), document_.console().lines().end()); }
  bool consoleHas(const std::string& line) const { return hasLine(document_.console().lines(), line); }
  // The last lines of the console, as many as `tail` has.
  Lines consoleTail(const Lines& tail) const {
    const Lines lines = console();
    return Lines(lines.end() - static_cast<long>(std::min(tail.size(), lines.size())), lines.end());
  }

  // Exports with the dialog's initial values changed by `edit`.
  bool exportWith(const std::function<void(ExportValues&)>& edit, bool hordes = false) {
    ui_.onExport = [&](ExportValues& values) {
      edit(values);
      return true;
    };
    return hordes ? document_.exportHordes() : document_.exportMatrix();
  }
  bool exportTo(const std::string& file, bool hordes = false) {
    return exportWith([&](ExportValues& values) { values.file = file; }, hordes);
  }

  InTempDir dir_;
  ScriptedUserInterface ui_;
  Document document_{ui_};
  std::vector<FileRequest> requests_;
  std::string nextFile_;
  bool ignoreMetadata_ = false;
};

}  // namespace velda::test
