// Faults while writing or reading files: a full disk, private, read-only
// and linked destinations, links planted at fixed names, FIFOs, devices and
// directories where files are expected. Nothing written before is lost or
// exposed, and no temporary file stays behind.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <sstream>

#include "common/LastError.h"
#include "document/DocumentHarness.h"
#include "document/export/DocumentMetadata.h"
#include "document/export/SymbolicFileCheck.h"
#include "formats/library/SymbolicLibrary.h"
#include "support/ScopedEnv.h"

namespace velda {
namespace {

mode_t modeOf(const std::string& path) {
  struct stat status {};
  stat(path.c_str(), &status);
  return status.st_mode & 07777;
}

using test::towns;

class FileFaults : public test::DocumentHarness {
 protected:
  void SetUp() override {
    ui_.onStartViewer = [this](const std::string&, ViewerKind) { return ++viewersStarted_ > 0; };
  }
  void TearDown() override {
    if (!disk_.empty()) umount(disk_.c_str());
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

  void openProject(const std::string& path) { ASSERT_TRUE(openFile(path)); }

  std::string disk_;
  int viewersStarted_ = 0;
};

TEST_F(FileFaults, FullDiskLeavesEveryPreviousFileAsItWas) {
  if (!mountSmallDisk()) GTEST_SKIP() << "mounting a small file system needs root";
  const std::string project = disk_ + "/towns.gaj";
  const std::string metadata = project + ".xml";
  ASSERT_EQ(saveProject(project, *towns()), ProjectSave::Saved);
  DocumentMetadata meta;
  ASSERT_TRUE(meta.write(metadata, *towns()));
  test::writeFile(disk_ + "/out.xml", "previous export");
  test::writeFile(disk_ + "/out_meta.xml", "previous metadata");
  const std::string savedProject = test::readFile(project);
  const std::string savedMetadata = test::readFile(metadata);
  const std::vector<std::string> before = test::folderNames(disk_);

  saveTowns("large.gaj", 3000);
  openProject(dir_.file("large.gaj"));
  fillDisk();

  EXPECT_EQ(saveProject(project, *towns(3000)), ProjectSave::Failed);
  EXPECT_EQ(lastError(), "Save failed");
  EXPECT_FALSE(meta.write(metadata, *towns(3000)));
  EXPECT_EQ(lastError(), "Can not write file " + metadata);
  EXPECT_FALSE(exportTo(disk_ + "/out.xml"));
  EXPECT_EQ(ui_.lastMessage(), "Can not write file " + disk_ + "/out.xml");

  EXPECT_EQ(test::readFile(project), savedProject);
  EXPECT_EQ(test::readFile(metadata), savedMetadata);
  EXPECT_EQ(test::readFile(disk_ + "/out.xml"), "previous export");
  EXPECT_EQ(test::readFile(disk_ + "/out_meta.xml"), "previous metadata");
  std::vector<std::string> after = test::folderNames(disk_);
  after.erase(std::find(after.begin(), after.end(), "filler"));
  EXPECT_EQ(after, before);

  // The console text too.
  nextFile_ = disk_ + "/out.xml";
  EXPECT_FALSE(document_.saveConsole());
  EXPECT_EQ(ui_.lastMessage(), "Can not write file " + disk_ + "/out.xml");
  EXPECT_EQ(test::readFile(disk_ + "/out.xml"), "previous export");
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
  const auto reread = readProject(target);  // the reader that takes a stream
  std::fclose(target);
  ASSERT_TRUE(reread);
  EXPECT_EQ(reread->individualCount(), 8u);
  EXPECT_EQ(modeOf(project), 0600u);

  const std::string frozen = dir_.file("frozen.gaj");
  test::writeFile(frozen, "frozen");
  ASSERT_EQ(chmod(frozen.c_str(), 0444), 0);
  EXPECT_EQ(saveProject(frozen, *towns()), ProjectSave::CannotOpen);
  EXPECT_EQ(lastError(), "Can not open file " + frozen);
  EXPECT_EQ(test::readFile(frozen), "frozen");
  EXPECT_EQ(test::folderNames(dir_.path()), (std::vector<std::string>{"frozen.gaj", "link.gaj", "private.gaj"}));
}

TEST_F(FileFaults, LinksPlantedAtFixedNamesAreNeverFollowed) {
  const std::string victim = dir_.file("victim");
  test::writeFile(victim, "victim");
  saveTowns("towns.gaj");
  openProject(dir_.file("towns.gaj"));
  ASSERT_TRUE(exportTo(dir_.file("out.kvf")));

  ASSERT_EQ(unlink("tempkvf.dat"), 0);
  ASSERT_EQ(symlink("victim", "tempkvf.dat"), 0);
  EXPECT_FALSE(exportTo(dir_.file("again.kvf")));
  EXPECT_EQ(ui_.lastMessage(), "Can not open temporary file.");

  ASSERT_EQ(unlink("parser.dat"), 0);
  ASSERT_EQ(symlink("victim", "parser.dat"), 0);
  EXPECT_EXIT(static_cast<void>(checkSymbolicFile(dir_.file("out.kvf"))), ::testing::ExitedWithCode(1),
              "impossible to open the log file");
  EXPECT_EQ(test::readFile(victim), "victim");
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
  saveTowns("towns.gaj");
  ASSERT_EQ(mkdir((project + ".xml").c_str(), 0700), 0);
  nextFile_ = project;
  EXPECT_TRUE(document_.open());
  EXPECT_TRUE(consoleHas("MetaData not found or ignored"));
  ASSERT_EQ(rmdir((project + ".xml").c_str()), 0);
  test::writeFile(project + ".xml", "<MetaUlme><Nonsense/></MetaUlme>");
  EXPECT_TRUE(document_.open());
  EXPECT_TRUE(consoleHas("MetaData not found or ignored"));
  EXPECT_EQ(document_.matrix()->assertionCount(), 2u);

  // Saving over it again: a metadata file that cannot be written leaves the
  // previous one and says so, the project itself is saved.
  ASSERT_EQ(chmod((project + ".xml").c_str(), 0444), 0);
  EXPECT_TRUE(document_.save());
  EXPECT_EQ(ui_.lastMessage(), "Can not write file " + project + ".xml");
  EXPECT_EQ(test::readFile(project + ".xml"), "<MetaUlme><Nonsense/></MetaUlme>");
}

TEST_F(FileFaults, ViewAndConsoleFilesThatCannotBeWrittenAreReported) {
  saveTowns("towns.gaj");
  openProject(dir_.file("towns.gaj"));
  {
    test::ScopedEnv tmpdir("TMPDIR", dir_.file("missing"));
    EXPECT_FALSE(document_.viewTable(Document::Table::Individuals));
    EXPECT_EQ(ui_.lastMessage(), "Creation of temporary file failed");
  }
  if (mountSmallDisk()) {
    saveTowns("large.gaj", 3000);
    openProject(dir_.file("large.gaj"));
    fillDisk();
    test::ScopedEnv tmpdir("TMPDIR", disk_);
    EXPECT_FALSE(document_.viewTable(Document::Table::Individuals));
    EXPECT_EQ(ui_.lastMessage().rfind("Can not write file " + disk_ + "/dbind", 0), 0u) << ui_.lastMessage();
  }
  EXPECT_EQ(viewersStarted_, 0);

  nextFile_ = dir_.file("missing/console.txt");
  EXPECT_FALSE(document_.saveConsole());
  EXPECT_EQ(ui_.lastMessage(), "Can not open file " + dir_.file("missing/console.txt"));
}

using FileFaultsDeathTest = FileFaults;

TEST_F(FileFaultsDeathTest, ViewFilesGoWhenTheLibraryEndsTheProcess) {
  saveTowns("towns.gaj");
  openProject(dir_.file("towns.gaj"));
  const std::string folder = dir_.file("views");
  ASSERT_EQ(mkdir(folder.c_str(), 0700), 0);
  test::ScopedEnv tmpdir("TMPDIR", folder);
  EXPECT_EXIT(
      {
        static_cast<void>(document_.viewTable(Document::Table::Individuals));
        symlib::SetSymbolicExitHandler(nullptr);
        std::istringstream broken("KORVA = (");
        symlib::SymbolicFile model;
        symlib::ParseSymbolicFile(broken, "broken", model);
      },
      ::testing::ExitedWithCode(1), "");
  EXPECT_TRUE(test::folderNames(folder).empty());
}

}  // namespace
}  // namespace velda
