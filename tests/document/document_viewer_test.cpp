// Viewer start and the view files' temporary names.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

#include "document/view/ViewFiles.h"
#include "document/view/ViewerLauncher.h"
#include "support/FileText.h"
#include "support/ScopedEnv.h"
#include "support/TempDir.h"

namespace velda {
namespace {

using test::ScopedEnv;

TEST(DocumentViewer, TheChosenViewerIsTheOnlyOneTried) {
  {
    ScopedEnv viewer("VELDA_VIEWER", "velda-no-such-viewer");
    EXPECT_EQ(viewerPrograms(ViewerKind::Text), std::vector<std::string>{"velda-no-such-viewer"});
    EXPECT_FALSE(launchViewer("file.txt", ViewerKind::Text));
  }
  {
    ScopedEnv viewer("VELDA_VIEWER", "true");
    EXPECT_TRUE(launchViewer("file.txt", ViewerKind::Xml));
  }
  ScopedEnv none("VELDA_VIEWER", "");
  EXPECT_EQ(viewerPrograms(ViewerKind::Text).front(), "xdg-open");
  EXPECT_EQ(viewerPrograms(ViewerKind::Xml).front(), "xdg-open");

  // XML: file browsers, then the same text viewers as text, in their order.
  const std::vector<std::string> text = viewerPrograms(ViewerKind::Text);
  const std::vector<std::string> xml = viewerPrograms(ViewerKind::Xml);
  ASSERT_GT(xml.size(), text.size());
  EXPECT_TRUE(std::equal(text.begin() + 1, text.end(), xml.end() - static_cast<long>(text.size() - 1)));
  EXPECT_EQ(xml[1], "nautilus");
}

// Makes an executable script that does nothing.
void fakeProgram(const test::TempDir& bin, const std::string& name) {
  test::writeFile(bin.file(name), "#!/bin/sh\nexit 0\n");
  ASSERT_EQ(chmod(bin.file(name).c_str(), 0755), 0);
}

TEST(DocumentViewer, ProgramsThatNeedATerminalDoNotCountAsViewers) {
  ScopedEnv none("VELDA_VIEWER", "");
  test::TempDir bin;
  // A machine without a desktop: only the terminal programs are there.
  for (const char* name : {"sensible-editor", "sensible-browser", "editor", "vi", "w3m"}) fakeProgram(bin, name);
  {
    ScopedEnv path("PATH", bin.path());
    EXPECT_FALSE(launchViewer("file.txt", ViewerKind::Text));
    EXPECT_FALSE(launchViewer("file.xml", ViewerKind::Xml));
  }

  // A windowed editor is found and started.
  fakeProgram(bin, "mousepad");
  ScopedEnv path("PATH", bin.path());
  EXPECT_TRUE(launchViewer("file.txt", ViewerKind::Text));
  EXPECT_TRUE(launchViewer("file.xml", ViewerKind::Xml));
}

// The document's own tests see the individuals' and groups' files; the
// reduced assertions' goes beside them, under its own prefix.
TEST(DocumentViewer, TheReducedAssertionsFileIsMadeInTmpdirOnDemand) {
  test::TempDir dir;
  ScopedEnv tmpdir("TMPDIR", dir.path());
  ViewFiles files;
  EXPECT_TRUE(files.keptName(ViewFiles::Reduced).empty());
  const std::string reduced = files.nameFor(ViewFiles::Reduced);
  EXPECT_EQ(reduced.rfind(dir.path() + "/dbred", 0), 0u) << reduced;
  EXPECT_EQ(reduced.size(), dir.path().size() + 1 + 5 + 6 + 4);  // prefix, 6 random characters, ".txt"
  EXPECT_NE(files.nameFor(ViewFiles::Groups), reduced);
}

}  // namespace
}  // namespace velda
