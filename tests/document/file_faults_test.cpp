// Faults while writing or reading files: a full disk, private, read-only
// and linked destinations, links planted at fixed names, FIFOs, devices and
// directories where files are expected. Nothing written before is lost or
// exposed, and no temporary file stays behind.
#include <dirent.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <new>
#include <sstream>

#include "common/LastError.h"
#include "document/Document.h"
#include "document/ScriptedUserInterface.h"
#include "document/export/DocumentMetadata.h"
#include "document/export/SymbolicFileCheck.h"
#include "document/project/ProjectFile.h"
#include "formats/library/SymbolicLibrary.h"
#include "model/QuantitativeValue.h"
#include "model/QuantitativeVariable.h"
#include "support/HandMatrix.h"
#include "support/TempDir.h"

namespace velda {
namespace {

std::string readFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

void writeFile(const std::string& path, const std::string& content) {
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out << content;
}

std::vector<std::string> namesIn(const std::string& folder) {
  std::vector<std::string> names;
  DIR* dir = opendir(folder.c_str());
  if (!dir) return names;
  while (const dirent* entry = readdir(dir)) {
    const std::string name = entry->d_name;
    if (name != "." && name != "..") names.push_back(name);
  }
  closedir(dir);
  std::sort(names.begin(), names.end());
  return names;
}

mode_t modeOf(const std::string& path) {
  struct stat status {};
  stat(path.c_str(), &status);
  return status.st_mode & 07777;
}

// towns: a = {1, 2}, b = {3}; `people` more individuals in c make it as
// large as wanted.
std::unique_ptr<SymbolicMatrix> towns(int people = 0) {
  test::HandMatrix hand;
  hand.categorical("town", 1);
  hand.quantitative("age");
  hand.holdCells();
  Individual& p1 = hand.person("1", {"x", "30"});
  Individual& p2 = hand.person("2", {"y", "40"});
  Individual& p3 = hand.person("3", {"x", "50"});
  hand.group("a", {&p1, &p2});
  Assertion& c = hand.group("b", {&p3});
  for (int i = 0; i < people; ++i) {
    const std::string id = "a-rather-long-individual-name-" + std::to_string(i);
    Individual& p = hand.person(id.c_str(), {"z", "60"});
    hand.matrix->link(p, c);
    static_cast<void>(hand.matrix->addMember(c, p));
  }
  return std::move(hand.matrix);
}

// A variable whose kind cannot be told once memory has run out: the project
// writer asks it first, after the new file is created.
class ExhaustingVariable final : public SymbolicVariable {
 public:
  ExhaustingVariable() : SymbolicVariable("spare", 1) {}
  bool isCategorical() const override {
    if (exhausted) throw std::bad_alloc();
    return false;
  }
  int addCell(const char*, CellValue&) override { return 1; }
  void writeDescription(std::ostream&) const override {}
  void writeDeclaration(std::ostream&, int32_t, double, double, const DeclarationStyle&) const override {}
  std::unique_ptr<SymbolicValue> newSymbolicValue() const override {
    return std::make_unique<QuantitativeValue>(values_);
  }

  bool exhausted = false;

 private:
  QuantitativeVariable values_{"spare", 1};
};

class FileFaults : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_NE(getcwd(previous_, sizeof previous_), nullptr);
    ASSERT_EQ(chdir(dir_.path().c_str()), 0);  // tempkvf.dat and parser.dat land here
    ui_.onChooseFile = [this](const FileRequest&, FileChoice& choice) {
      if (nextFile_.empty()) return false;
      choice.path = nextFile_;
      return true;
    };
    ui_.onStartViewer = [this](const std::string&, ViewerKind) { return ++viewersStarted_ > 0; };
  }
  void TearDown() override {
    if (!disk_.empty()) umount(disk_.c_str());
    ASSERT_EQ(chdir(previous_), 0);
  }

  // A small file system of its own, filled up by the test. Needs root.
  bool mountSmallDisk() {
    disk_ = dir_.file("disk");
    mkdir(disk_.c_str(), 0700);
    if (mount("tmpfs", disk_.c_str(), "tmpfs", 0, "size=256k") == 0) return true;
    disk_.clear();
    return false;
  }
  void fillDisk() {
    std::FILE* filler = std::fopen((disk_ + "/filler").c_str(), "wb");
    ASSERT_NE(filler, nullptr);
    const std::string block(4096, 'f');
    while (std::fwrite(block.data(), 1, block.size(), filler) == block.size() && std::fflush(filler) == 0) {
    }
    std::fclose(filler);
  }

  void openProject(const std::string& path) {
    nextFile_ = path;
    ASSERT_TRUE(document_.open());
    nextFile_.clear();
  }
  bool exportTo(const std::string& destination) {
    ui_.onExport = [destination](ExportValues& values) {
      values.file = destination;
      return true;
    };
    return document_.exportMatrix();
  }
  bool consoleHas(const std::string& line) const {
    const auto& lines = document_.console().lines();
    return std::find(lines.begin(), lines.end(), line) != lines.end();
  }

  test::TempDir dir_;
  std::string disk_;
  char previous_[4096] = {};
  ScriptedUserInterface ui_;
  Document document_{ui_};
  std::string nextFile_;
  int viewersStarted_ = 0;
};

TEST_F(FileFaults, FullDiskLeavesEveryPreviousFileAsItWas) {
  if (!mountSmallDisk()) GTEST_SKIP() << "mounting a small file system needs root";
  const std::string project = disk_ + "/towns.gaj";
  const std::string metadata = project + ".xml";
  ASSERT_EQ(saveProject(project, *towns()), ProjectSave::Saved);
  DocumentMetadata meta;
  ASSERT_TRUE(meta.write(metadata, *towns()));
  writeFile(disk_ + "/out.xml", "previous export");
  writeFile(disk_ + "/out_meta.xml", "previous metadata");
  const std::string savedProject = readFile(project);
  const std::string savedMetadata = readFile(metadata);
  const std::vector<std::string> before = namesIn(disk_);

  ASSERT_EQ(saveProject(dir_.file("large.gaj"), *towns(3000)), ProjectSave::Saved);
  openProject(dir_.file("large.gaj"));
  fillDisk();

  EXPECT_EQ(saveProject(project, *towns(3000)), ProjectSave::Failed);
  EXPECT_EQ(lastError(), "Save failed");
  EXPECT_FALSE(meta.write(metadata, *towns(3000)));
  EXPECT_EQ(lastError(), "Can not write file " + metadata);
  EXPECT_FALSE(exportTo(disk_ + "/out.xml"));
  EXPECT_EQ(ui_.lastMessage(), "Can not write file " + disk_ + "/out.xml");

  EXPECT_EQ(readFile(project), savedProject);
  EXPECT_EQ(readFile(metadata), savedMetadata);
  EXPECT_EQ(readFile(disk_ + "/out.xml"), "previous export");
  EXPECT_EQ(readFile(disk_ + "/out_meta.xml"), "previous metadata");
  std::vector<std::string> after = namesIn(disk_);
  after.erase(std::find(after.begin(), after.end(), "filler"));
  EXPECT_EQ(after, before);

  // The console text too.
  nextFile_ = disk_ + "/out.xml";
  EXPECT_FALSE(document_.saveConsole());
  EXPECT_EQ(ui_.lastMessage(), "Can not write file " + disk_ + "/out.xml");
  EXPECT_EQ(readFile(disk_ + "/out.xml"), "previous export");
}

TEST_F(FileFaults, ReplacedFilesKeepTheirModeAndLinksAndReadOnlyOnesAreRefused) {
  const std::string project = dir_.file("private.gaj");
  ASSERT_EQ(saveProject(project, *towns()), ProjectSave::Saved);
  ASSERT_EQ(chmod(project.c_str(), 0600), 0);
  ASSERT_EQ(saveProject(project, *towns(2)), ProjectSave::Saved);
  EXPECT_EQ(modeOf(project), 0600u);

  // Saving through a link replaces the link's target; the link stays.
  const std::string link = dir_.file("link.gaj");
  ASSERT_EQ(symlink("private.gaj", link.c_str()), 0);
  ASSERT_EQ(saveProject(link, *towns(5)), ProjectSave::Saved);
  struct stat status {};
  ASSERT_EQ(lstat(link.c_str(), &status), 0);
  EXPECT_TRUE(S_ISLNK(status.st_mode));
  std::FILE* target = std::fopen(project.c_str(), "rb");
  ASSERT_NE(target, nullptr);
  const auto reread = readProject(target);
  std::fclose(target);
  ASSERT_TRUE(reread);
  EXPECT_EQ(reread->individualCount(), 8u);
  EXPECT_EQ(modeOf(project), 0600u);

  const std::string frozen = dir_.file("frozen.gaj");
  writeFile(frozen, "frozen");
  ASSERT_EQ(chmod(frozen.c_str(), 0444), 0);
  EXPECT_EQ(saveProject(frozen, *towns()), ProjectSave::CannotOpen);
  EXPECT_EQ(lastError(), "Can not open file " + frozen);
  EXPECT_EQ(readFile(frozen), "frozen");
  EXPECT_EQ(namesIn(dir_.path()), (std::vector<std::string>{"frozen.gaj", "link.gaj", "private.gaj"}));
}

TEST_F(FileFaults, SavingOutOfMemoryLeavesThePreviousProject) {
  const std::string project = dir_.file("towns.gaj");
  auto matrix = towns(3);
  ASSERT_EQ(saveProject(project, *matrix), ProjectSave::Saved) << lastError();
  const std::string previous = readFile(project);

  auto spare = std::make_unique<ExhaustingVariable>();
  ExhaustingVariable& exhausting = *spare;
  matrix->appendVariable(std::move(spare));
  exhausting.exhausted = true;
  EXPECT_EQ(saveProject(project, *matrix), ProjectSave::Failed);
  EXPECT_EQ(lastError(), "Memory allocation failed");
  EXPECT_EQ(readFile(project), previous);
  EXPECT_EQ(namesIn(dir_.path()), std::vector<std::string>{"towns.gaj"});
  exhausting.exhausted = false;
}

TEST_F(FileFaults, LinksPlantedAtFixedNamesAreNeverFollowed) {
  const std::string victim = dir_.file("victim");
  writeFile(victim, "victim");
  ASSERT_EQ(saveProject(dir_.file("towns.gaj"), *towns()), ProjectSave::Saved);
  openProject(dir_.file("towns.gaj"));
  ASSERT_TRUE(exportTo(dir_.file("out.kvf")));

  ASSERT_EQ(unlink("tempkvf.dat"), 0);
  ASSERT_EQ(symlink("victim", "tempkvf.dat"), 0);
  EXPECT_FALSE(exportTo(dir_.file("again.kvf")));
  EXPECT_EQ(ui_.lastMessage(), "Can not open temporary file.");

  ASSERT_EQ(unlink("parser.dat"), 0);
  ASSERT_EQ(symlink("victim", "parser.dat"), 0);
  EXPECT_EXIT(checkSymbolicFile(dir_.file("out.kvf")), ::testing::ExitedWithCode(1), "impossible to open the log file");
  EXPECT_EQ(readFile(victim), "victim");
}

TEST_F(FileFaults, ReadersRefuseWhatIsNotARegularFile) {
  nextFile_ = "/dev/zero";
  EXPECT_FALSE(document_.open());
  EXPECT_EQ(ui_.lastMessage(), "Can not open file /dev/zero");

  const std::string fifo = dir_.file("fifo.gaj");
  ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
  nextFile_ = fifo;
  EXPECT_FALSE(document_.open());  // returns instead of waiting for a writer
  EXPECT_FALSE(checkSymbolicFile(fifo));
  EXPECT_EQ(lastError(), "Can not open file " + fifo);

  // Zeros from the first byte: refused on the magic, whatever follows.
  const std::string zeros = dir_.file("zeros.gaj");
  const int descriptor = ::open(zeros.c_str(), O_CREAT | O_WRONLY, 0600);
  ASSERT_EQ(ftruncate(descriptor, 400L << 20), 0);
  close(descriptor);
  std::FILE* file = std::fopen(zeros.c_str(), "rb");
  EXPECT_FALSE(readProject(file));
  EXPECT_EQ(lastError(), "Incorrect file type");
  EXPECT_LE(std::ftell(file), 64L);
  std::fclose(file);

  // A directory or a refused file at the metadata name: the project opens
  // without metadata.
  const std::string project = dir_.file("towns.gaj");
  ASSERT_EQ(saveProject(project, *towns()), ProjectSave::Saved);
  ASSERT_EQ(mkdir((project + ".xml").c_str(), 0700), 0);
  nextFile_ = project;
  EXPECT_TRUE(document_.open());
  EXPECT_TRUE(consoleHas("MetaData not found or ignored"));
  ASSERT_EQ(rmdir((project + ".xml").c_str()), 0);
  writeFile(project + ".xml", "<MetaUlme><Nonsense/></MetaUlme>");
  EXPECT_TRUE(document_.open());
  EXPECT_TRUE(consoleHas("MetaData not found or ignored"));
  EXPECT_EQ(document_.matrix()->assertionCount(), 2u);

  // Saving over it again: a metadata file that cannot be written leaves the
  // previous one and says so, the project itself is saved.
  ASSERT_EQ(chmod((project + ".xml").c_str(), 0444), 0);
  EXPECT_TRUE(document_.save());
  EXPECT_EQ(ui_.lastMessage(), "Can not write file " + project + ".xml");
  EXPECT_EQ(readFile(project + ".xml"), "<MetaUlme><Nonsense/></MetaUlme>");
}

TEST_F(FileFaults, ViewAndConsoleFilesThatCannotBeWrittenAreReported) {
  ASSERT_EQ(saveProject(dir_.file("towns.gaj"), *towns()), ProjectSave::Saved);
  openProject(dir_.file("towns.gaj"));
  const char* tmpdir = std::getenv("TMPDIR");
  const std::string kept = tmpdir ? tmpdir : "";
  setenv("TMPDIR", dir_.file("missing").c_str(), 1);
  EXPECT_FALSE(document_.viewTable(Document::Table::Individuals));
  EXPECT_EQ(ui_.lastMessage(), "Creation of temporary file failed");
  EXPECT_EQ(viewersStarted_, 0);

  if (mountSmallDisk()) {
    ASSERT_EQ(saveProject(dir_.file("large.gaj"), *towns(3000)), ProjectSave::Saved);
    openProject(dir_.file("large.gaj"));
    fillDisk();
    setenv("TMPDIR", disk_.c_str(), 1);
    EXPECT_FALSE(document_.viewTable(Document::Table::Individuals));
    EXPECT_EQ(ui_.lastMessage().rfind("Can not write file " + disk_ + "/dbind", 0), 0u) << ui_.lastMessage();
    EXPECT_EQ(viewersStarted_, 0);
  }
  if (tmpdir) {
    setenv("TMPDIR", kept.c_str(), 1);
  } else {
    unsetenv("TMPDIR");
  }

  nextFile_ = dir_.file("missing/console.txt");
  EXPECT_FALSE(document_.saveConsole());
  EXPECT_EQ(ui_.lastMessage(), "Can not open file " + dir_.file("missing/console.txt"));
}

using FileFaultsDeathTest = FileFaults;

TEST_F(FileFaultsDeathTest, ViewFilesGoWhenTheLibraryEndsTheProcess) {
  ASSERT_EQ(saveProject(dir_.file("towns.gaj"), *towns()), ProjectSave::Saved);
  openProject(dir_.file("towns.gaj"));
  const std::string folder = dir_.file("views");
  ASSERT_EQ(mkdir(folder.c_str(), 0700), 0);
  setenv("TMPDIR", folder.c_str(), 1);
  EXPECT_EXIT(
      {
        static_cast<void>(document_.viewTable(Document::Table::Individuals));
        symlib::SetSymbolicExitHandler(nullptr);
        std::istringstream broken("KORVA = (");
        symlib::SymbolicFile model;
        symlib::ParseSymbolicFile(broken, "broken", model);
      },
      ::testing::ExitedWithCode(1), "");
  unsetenv("TMPDIR");
  EXPECT_TRUE(namesIn(folder).empty());
}

}  // namespace
}  // namespace velda
