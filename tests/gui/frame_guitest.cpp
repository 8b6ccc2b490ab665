// The main window: menus, toolbars, panels, the console, and the project
// named on the command line opening at start.
#include <gtest/gtest.h>

#include <QAction>
#include <QContextMenuEvent>
#include <QDir>
#include <QDockWidget>
#include <QElapsedTimer>
#include <QMenu>
#include <QScrollBar>
#include <QToolBar>

#include "app/gui/StartupProject.h"
#include "document/export/DocumentMetadata.h"
#include "document/project/ProjectFile.h"
#include "gui/GuiTestSupport.h"
#include "support/FileText.h"
#include "support/HandMatrix.h"
#include "support/TempDir.h"
#include "ui/frame/CKORVAView.h"
#include "ui/frame/CMainFrame.h"
#include "ui/panels/DependencesPanel.h"
#include "ui/panels/IndividualsPanel.h"
#include "ui/panels/VariablesPanel.h"

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

class FrameTest : public ::testing::Test {
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

// velda FILE.gaj: a project that cannot be opened is told and the program
// stays empty; one that opens does so with its metadata, as Open would.
TEST_F(FrameTest, MenusFollowTheDocumentAndTheProjectNamedAtStartOpens) {
  test::ShownMessage shown;
  test::recordNextMessage(shown);
  app::openProjectAtStart(*frame, QString::fromStdString(dir.file("missing.gaj")));
  ASSERT_TRUE(waitFor([&] { return shown.count == 1; }));
  EXPECT_EQ(shown.text, "Can not open file " + dir.file("missing.gaj"));
  EXPECT_EQ(shown.icon, QMessageBox::Warning);
  EXPECT_EQ(document().matrix(), nullptr);
  EXPECT_TRUE(frame->isVisible());
  EXPECT_EQ(frame->windowTitle().toStdString(), "VELDA");
  // Menu text, shortcut and status-bar prompt as the user reads them; a
  // command outside the menus has no action.
  QAction* newData = frame->action(ID_FILE_NEW);
  EXPECT_EQ(newData->text().toStdString(), "&New...");
  EXPECT_EQ(newData->shortcut().toString().toStdString(), "Ctrl+N");
  EXPECT_EQ(newData->statusTip().toStdString(), "Create new data with a query");
  EXPECT_EQ(frame->action(ID_VIEW_REDUCED_HORDES)->text().toStdString(), "R&educed Hordes...");
  EXPECT_EQ(frame->action(ID_REDUCE_HORDES_OLD), nullptr);
  // Nothing is open: the actions follow the document's enabled states.
  EXPECT_TRUE(frame->action(ID_FILE_OPEN)->isEnabled());
  EXPECT_FALSE(frame->action(ID_FILE_SAVE)->isEnabled());
  EXPECT_TRUE(frame->action(ID_VARIABLES_DISPLAY)->isChecked());
  EXPECT_TRUE(frame->action(ID_MAIN_TOOLBAR)->isChecked());
  EXPECT_TRUE(frame->variablesPanel()->isEmptyShown());
  EXPECT_TRUE(frame->individualsPanel()->isEmptyShown());

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

TEST_F(FrameTest, ToolBarsAndPanelsHideShowTickAndRedock) {
  frame->runCommand(ID_VIEW_TOOLBAR);
  EXPECT_FALSE(frame->toolBar(ID_VIEW_TOOLBAR)->isVisible());
  EXPECT_FALSE(frame->action(ID_VIEW_TOOLBAR)->isChecked());
  frame->runCommand(ID_DEPENDENCES_DISPLAY);
  EXPECT_FALSE(frame->panel(ID_DEPENDENCES_DISPLAY)->isVisible());
  EXPECT_FALSE(frame->action(ID_DEPENDENCES_DISPLAY)->isChecked());
  frame->runCommand(ID_DEPENDENCES_DISPLAY);
  EXPECT_TRUE(frame->action(ID_DEPENDENCES_DISPLAY)->isChecked());
  EXPECT_EQ(frame->toolBar(ID_MAIN_TOOLBAR)->windowTitle().toStdString(), "Main");
  EXPECT_EQ(frame->toolBar(ID_WINDOWS_TOOLBAR)->actions().size(), 5);

  // In the menus a shown panel is ticked like a shown toolbar: its icon,
  // which would only get a frame around it, stays on the toolbar button.
  for (int32_t id : {ID_VARIABLES_DISPLAY, ID_INDIVIDUALS_DISPLAY, ID_DEPENDENCES_DISPLAY, ID_MAIN_TOOLBAR}) {
    EXPECT_FALSE(frame->action(id)->isIconVisibleInMenu()) << id;
  }
  EXPECT_FALSE(frame->action(ID_VARIABLES_DISPLAY)->icon().isNull());
  EXPECT_TRUE(frame->action(ID_FILE_NEW)->isIconVisibleInMenu());

  // Redock puts floated panels and toolbars back.
  QDockWidget* variables = frame->panel(ID_VARIABLES_DISPLAY);
  QDockWidget* dependences = frame->panel(ID_DEPENDENCES_DISPLAY);
  const Qt::DockWidgetArea variablesArea = frame->dockWidgetArea(variables);
  const Qt::DockWidgetArea dependencesArea = frame->dockWidgetArea(dependences);
  variables->setFloating(true);
  frame->addDockWidget(variablesArea == Qt::LeftDockWidgetArea ? Qt::BottomDockWidgetArea : Qt::LeftDockWidgetArea,
                       dependences);
  dependences->hide();
  QToolBar* modify = frame->toolBar(ID_MODIFY_TOOLBAR);
  frame->addToolBar(Qt::LeftToolBarArea, modify);
  modify->hide();

  frame->runCommand(ID_REDOCK_DISPLAYS);
  EXPECT_FALSE(variables->isFloating());
  EXPECT_EQ(frame->dockWidgetArea(variables), variablesArea);
  EXPECT_EQ(frame->dockWidgetArea(dependences), dependencesArea);
  EXPECT_TRUE(dependences->isVisible());

  frame->runCommand(ID_REDOCK_TOOLBARS);
  EXPECT_EQ(frame->toolBarArea(modify), Qt::TopToolBarArea);
  EXPECT_TRUE(modify->isVisible());
  EXPECT_TRUE(frame->action(ID_MODIFY_TOOLBAR)->isChecked());
}

TEST_F(FrameTest, ConsoleMenuOffersClearAndSaveAndEmptySaveAsksNothing) {
  CKORVAView& view = frame->view();
  view.document().console().print("one line");
  // The surface is as wide as the longest line may be, one line high a line.
  EXPECT_EQ(view.surfaceSize(), QSize(10000, view.lineHeight()));
  EXPECT_EQ(view.verticalScrollBar()->singleStep(), view.lineHeight());
  QStringList texts;
  QTimer::singleShot(50, [&texts] {
    if (auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget())) {
      for (QAction* action : menu->actions()) texts << QString(action->text()).remove(QLatin1Char('&'));
      menu->actions().front()->trigger();
      menu->close();
    }
  });
  QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(10, 10), view.viewport()->mapToGlobal(QPoint(10, 10)));
  QApplication::sendEvent(view.viewport(), &event);
  EXPECT_EQ(texts, (QStringList{QStringLiteral("Clear"), QStringLiteral("Save to file")}));
  // Clear was chosen.
  EXPECT_EQ(view.document().console().count(), 0u);
  EXPECT_EQ(view.verticalScrollBar()->maximum(), 0);

  // With an empty console Save to file shows no dialog: no modal may appear.
  bool dialogShown = false;
  QTimer::singleShot(0, [&dialogShown] { dialogShown = QApplication::activeModalWidget() != nullptr; });
  frame->runCommand(ID_SAVE_CONSOLE);
  QCoreApplication::processEvents();
  EXPECT_FALSE(dialogShown);
}

}  // namespace
}  // namespace velda::ui
