// velda FILE.gaj: the project named on the command line opens at start.
#include <gtest/gtest.h>

#include <QAction>
#include <QDir>
#include <QElapsedTimer>

#include "app/gui/StartupProject.h"
#include "document/CommandTable.h"
#include "document/export/DocumentMetadata.h"
#include "document/project/ProjectFile.h"
#include "gui/GuiTestSupport.h"
#include "support/FileText.h"
#include "support/HandMatrix.h"
#include "support/TempDir.h"
#include "ui/frame/CKORVAView.h"
#include "ui/frame/CMainFrame.h"

namespace velda::ui {
namespace {

// Lets the event loop run until `done` holds (or five seconds pass).
template <typename Condition>
bool waitFor(Condition done) {
  QElapsedTimer clock;
  clock.start();
  while (!done() && clock.elapsed() < 5000) QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
  return done();
}

// Two towns of people with a job, saved with its metadata beside it.
void writeProject(const std::string& path) {
  test::HandMatrix hand;
  hand.categorical("job");
  hand.holdCells();
  Individual& a = hand.person("a", {"clerk"});
  hand.group("Lyon", {&a, &hand.person("b", {"farmer"})});
  hand.group("Nice", {&hand.person("c", {"clerk"})});
  ASSERT_EQ(saveProject(path, *hand.matrix), ProjectSave::Saved);
  ASSERT_TRUE(DocumentMetadata().write(path + ".xml", *hand.matrix));
}

class StartProjectTest : public ::testing::Test {
 protected:
  void SetUp() override {
    test::guiApplication();
    frame = std::make_unique<CMainFrame>();
    frame->show();
  }
  Document& document() { return frame->view().document(); }
  std::unique_ptr<CMainFrame> frame;
  test::TempDir dir;
};

TEST_F(StartProjectTest, OpensTheNamedProjectWithItsMetadataAsOpenWould) {
  writeProject(dir.file("towns.gaj"));
  // A name relative to the folder velda was started in, as a shell gives it.
  const QString started = QDir::currentPath();
  ASSERT_TRUE(QDir::setCurrent(QString::fromStdString(dir.path())));
  app::openProjectAtStart(*frame, QStringLiteral("towns.gaj"));
  ASSERT_TRUE(QDir::setCurrent(started));

  ASSERT_TRUE(waitFor([&] { return document().matrix() != nullptr; }));
  EXPECT_EQ(document().matrix()->assertionCount(), 2u);
  EXPECT_TRUE(document().metadataLoaded());
  EXPECT_TRUE(test::hasLine(document().console().lines(), "MetaData Loaded and transfered"));
  EXPECT_TRUE(test::hasLine(document().console().lines(), "2 assertions build from 3 individuals"));
  EXPECT_FALSE(document().isModified());
  EXPECT_EQ(document().fileRecord().path, dir.file("towns.gaj"));
  EXPECT_EQ(frame->windowTitle().toStdString(), "VELDA - towns");
  EXPECT_TRUE(frame->action(ID_FILE_SAVE)->isEnabled());
}

TEST_F(StartProjectTest, AFileThatCannotBeOpenedIsToldAndTheProgramStaysEmpty) {
  test::ShownMessage shown;
  test::recordNextMessage(shown);
  app::openProjectAtStart(*frame, QString::fromStdString(dir.file("missing.gaj")));
  ASSERT_TRUE(waitFor([&] { return shown.count == 1; }));
  EXPECT_EQ(shown.text, "Can not open file " + dir.file("missing.gaj"));
  EXPECT_EQ(shown.icon, QMessageBox::Warning);
  EXPECT_EQ(document().matrix(), nullptr);
  EXPECT_TRUE(frame->isVisible());
  EXPECT_FALSE(frame->action(ID_FILE_SAVE)->isEnabled());
  EXPECT_EQ(frame->windowTitle().toStdString(), "VELDA");
}

}  // namespace
}  // namespace velda::ui
