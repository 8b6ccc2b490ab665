// The console as the X server shows it. The main window runs on the real X
// platform (the test is started by scripts/with-xvfb.sh when there is no
// display), the commands are driven through their dialogs, and the screen's
// pixels are read back with ImageMagick's `import`, so that what is checked
// is what a user sees, not a fresh rendering of the widget.
#include <gtest/gtest.h>

#include <QCheckBox>
#include <QDir>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QLineEdit>
#include <QListWidget>
#include <QPainter>
#include <QProcess>
#include <QScrollBar>
#include <QThread>
#include <algorithm>

#include "gui/GuiTestSupport.h"
#include "model/SymbolicMatrix.h"
#include "support/FileText.h"
#include "support/SqliteDatabase.h"
#include "ui/dialogs/DependenceDialog.h"
#include "ui/dialogs/ExportDialog.h"
#include "ui/dialogs/ExtractionDialog.h"
#include "ui/dialogs/NumberParameterDialog.h"
#include "ui/frame/CKORVAView.h"
#include "ui/frame/CMainFrame.h"
#include "ui/panels/IndividualsPanel.h"
#include "ui/panels/VariablesPanel.h"
#include "ui/widgets/ExtractionSettingsBox.h"
#include "ui/widgets/FileField.h"
#include "ui/widgets/Latin1.h"
#include "ui/widgets/TableListBox.h"

namespace velda::ui {
namespace {

std::string sampleSql() {
  const char* source = std::getenv("VELDA_SOURCE_DIR");
  return test::readFile(std::string(source ? source : ".") + "/data/sample.sql");
}

bool consoleHasPrefix(const ConsoleLog& console, const std::string& prefix) {
  return std::any_of(console.lines().begin(), console.lines().end(),
                     [&](const std::string& line) { return line.rfind(prefix, 0) == 0; });
}

void choose(QListWidget* list, const char* text) {
  const QList<QListWidgetItem*> found = list->findItems(QString::fromLatin1(text), Qt::MatchExactly);
  ASSERT_FALSE(found.isEmpty()) << text;
  list->setCurrentItem(found.front());
  found.front()->setSelected(true);
}

QImage screenPixels() {
  QProcess import;
  import.start(QStringLiteral("import"),
               {QStringLiteral("-window"), QStringLiteral("root"), QStringLiteral("-silent"), QStringLiteral("png:-")});
  if (!import.waitForFinished(10000)) return QImage();
  return QImage::fromData(import.readAllStandardOutput(), "PNG").convertToFormat(QImage::Format_RGB32);
}

// The columns of a line band that hold ink: a pixel far from the background.
std::vector<bool> inkColumns(const QImage& image, const QRect& band, QRgb background) {
  std::vector<bool> ink(static_cast<size_t>(band.width()), false);
  for (int y = band.top(); y <= band.bottom(); ++y) {
    for (int x = 0; x < band.width(); ++x) {
      const QRgb pixel = image.pixel(band.left() + x, y);
      const int distance =
          std::max({std::abs(qRed(pixel) - qRed(background)), std::abs(qGreen(pixel) - qGreen(background)),
                    std::abs(qBlue(pixel) - qBlue(background))});
      if (distance > 80) ink[static_cast<size_t>(x)] = true;
    }
  }
  return ink;
}

// The first fully visible console line whose band on the screen does not
// look like the line drawn alone, or -1 when every one does.
long firstWrongLine(const QImage& screen, const CKORVAView& view, const ConsoleLog& console) {
  const QWidget* viewport = view.viewport();
  const QRect area(viewport->mapToGlobal(QPoint(0, 0)), viewport->size());
  if (screen.isNull() || !screen.rect().contains(area)) return -2;
  const QRgb background = viewport->palette().color(QPalette::Base).rgb();
  const int lineHeight = view.lineHeight();
  const int scrollX = view.horizontalScrollBar()->value();
  const int scrollY = view.verticalScrollBar()->value();
  const int ascent = QFontMetrics(view.font()).ascent();
  for (long i = scrollY / lineHeight; i < static_cast<long>(console.count()); ++i) {
    const int top = static_cast<int>(i) * lineHeight - scrollY;
    if (top < 0) continue;
    if (top + lineHeight > area.height()) break;
    QImage alone(area.width(), lineHeight, QImage::Format_RGB32);
    alone.fill(background);
    {
      QPainter painter(&alone);
      painter.setFont(view.font());
      painter.setPen(viewport->palette().color(QPalette::Text));
      painter.drawText(-scrollX, ascent, toQt(*console.lineAt(i)));
    }
    const std::vector<bool> expected = inkColumns(alone, alone.rect(), background);
    const std::vector<bool> shown =
        inkColumns(screen, QRect(area.left(), area.top() + top, area.width(), lineHeight), background);
    long inked = 0;
    long differing = 0;
    for (size_t x = 0; x < expected.size(); ++x) {
      inked += expected[x];
      differing += expected[x] != shown[x];
    }
    if (differing > std::max(2L, inked / 10)) return i;
  }
  return -1;
}

class ConsoleScreenTest : public ::testing::Test {
 protected:
  void SetUp() override {
    if (qEnvironmentVariableIsEmpty("DISPLAY")) GTEST_FAIL() << "no X display: run under scripts/with-xvfb.sh";
    test::guiApplication("xcb");
    previous_ = QDir::currentPath();
    QDir::setCurrent(QString::fromStdString(work_.path()));
  }
  void TearDown() override { QDir::setCurrent(previous_); }

  // Waits, without a fixed sleep, until the screen shows every console line
  // that fits in the window; keeps the last picture when it never does.
  void expectConsoleOnScreen(CMainFrame& frame, const char* step) {
    CKORVAView& view = frame.view();
    const ConsoleLog& console = view.document().console();
    ASSERT_GT(console.count(), 0u) << step;
    QElapsedTimer clock;
    clock.start();
    QImage screen;
    long wrong = -2;
    while (clock.elapsed() < 4000) {
      QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
      screen = screenPixels();
      wrong = firstWrongLine(screen, view, console);
      if (wrong == -1) return;
      QThread::msleep(20);
    }
    const QString picture =
        QDir(QString::fromStdString(outputDir())).filePath(QStringLiteral("console-%1.png").arg(step));
    screen.save(picture);
    ADD_FAILURE() << step << ": console line " << wrong << " ("
                  << (wrong >= 0 ? *console.lineAt(wrong) : std::string("no picture")) << ") is not on the screen; see "
                  << picture.toStdString();
  }

  static std::string outputDir() {
    const char* binary = std::getenv("VELDA_BINARY_DIR");
    return binary ? std::string(binary) + "/tests" : std::string(".");
  }

  test::TempDir work_;
  QString previous_;
};

// The commands are driven through their own dialogs, from New to closing
// the window, and each one's effect on the document and the menus is
// checked on the way.
TEST_F(ConsoleScreenTest, EveryConsoleLineIsOnTheScreenAfterEachCommand) {
  test::SqliteDatabase database(sampleSql());
  CMainFrame frame;
  frame.show();
  Document& document = frame.view().document();
  ASSERT_TRUE(document.connect(database.connectionString()));
  EXPECT_TRUE(frame.action(ID_DISCONNECT)->isEnabled());

  // New: the survey, 50 individuals per group at most, groups of 3 at least.
  test::onNextModal<ExtractionDialog>([](ExtractionDialog* dialog) {
    choose(dialog->tableList()->list(), "survey");
    dialog->settings()->samplingBox()->setChecked(true);
    dialog->settings()->sampleSizeEdit()->setText(QStringLiteral("50"));
    dialog->settings()->minimumBox()->setChecked(true);
    dialog->settings()->minimumEdit()->setText(QStringLiteral("3"));
    dialog->accept();
  });
  frame.runCommand(ID_FILE_NEW);
  ASSERT_NE(document.matrix(), nullptr);
  EXPECT_TRUE(frame.action(ID_FILE_SAVE)->isEnabled());
  EXPECT_FALSE(frame.variablesPanel()->isEmptyShown());
  EXPECT_EQ(static_cast<size_t>(frame.individualsPanel()->view()->model()->rowCount()),
            document.matrix()->individualCount());
  expectConsoleOnScreen(frame, "new");

  // Save, then Open what was saved.
  const QString project = QString::fromStdString(work_.file("survey.gaj"));
  for (const int32_t command : {ID_FILE_SAVE, ID_FILE_OPEN}) {
    test::onNextModal<QFileDialog>([project](QFileDialog* dialog) {
      dialog->selectFile(project);
      static_cast<QDialog*>(dialog)->accept();
    });
    frame.runCommand(command);
    ASSERT_FALSE(document.isModified());
  }
  ASSERT_NE(document.matrix(), nullptr);
  expectConsoleOnScreen(frame, "open");

  test::onNextModal<ExtractionDialog>([](ExtractionDialog* dialog) {
    choose(dialog->variableList(), "town");
    choose(dialog->tableList()->list(), "towns");
    dialog->accept();
  });
  frame.runCommand(ID_CREATE_TAXONOMY);
  EXPECT_TRUE(consoleHasPrefix(document.console(), "taxonomy variable 'town': initial domain is covered by "));
  EXPECT_TRUE(frame.action(ID_VIEW_TAXONOMIES)->isEnabled());
  expectConsoleOnScreen(frame, "taxonomy");

  // The preview twice (No brings the dialog back with the same choice, Yes
  // applies): the console grows past the window and scrolls.
  test::ShownMessage question;
  test::onNextModal<DependenceDialog>([&question](DependenceDialog* dialog) {
    choose(dialog->motherList(), "occupation");
    choose(dialog->modalityList(), "manager");
    choose(dialog->daughterList(), "income");
    test::answerNextMessage(QMessageBox::No, &question);
    test::onNextModal<DependenceDialog>([](DependenceDialog* again) {
      test::answerNextMessage(QMessageBox::Yes);
      again->accept();
    });
    dialog->accept();
  });
  frame.runCommand(ID_ADD_DEPENDENCE);
  EXPECT_EQ(question.count, 1);
  EXPECT_TRUE(consoleHasPrefix(document.console(), "1 rules added:"));
  EXPECT_TRUE(frame.action(ID_VIEW_DEPENDENCES)->isEnabled());
  ASSERT_GT(document.console().count() * static_cast<size_t>(frame.view().lineHeight()),
            static_cast<size_t>(frame.view().viewport()->height()));
  expectConsoleOnScreen(frame, "dependence");

  // Reduce at the proposed threshold, then export the reduced rows.
  QString proposed;
  test::onNextModal<NumberParameterDialog>([&proposed](NumberParameterDialog* dialog) {
    proposed = dialog->field()->text();
    dialog->accept();
  });
  frame.runCommand(ID_REDUCE_ASSERTIONS);
  EXPECT_EQ(proposed.toStdString(), "80");
  EXPECT_TRUE(frame.action(ID_VIEW_VOLUME_MATRIX)->isEnabled());
  const std::string destination = work_.file("survey.kvf");
  bool reducedOffered = false;
  test::onNextModal<ExportDialog>([&](ExportDialog* dialog) {
    reducedOffered = dialog->reducedAssertionsBox()->isEnabled();
    dialog->fileField()->setText(QString::fromStdString(destination));
    dialog->accept();
  });
  frame.runCommand(ID_EXPORT);
  EXPECT_TRUE(reducedOffered);
  EXPECT_EQ(test::readFile(destination).rfind("KORVA = (", 0), 0u);
  expectConsoleOnScreen(frame, "export");

  // Past the cut at 4800 lines every line moves.
  ConsoleLog& console = document.console();
  while (console.count() < 4800) console.print("filler line %d", static_cast<int>(console.count()));
  console.print("after the cut");
  ASSERT_EQ(console.count(), 3601u);
  expectConsoleOnScreen(frame, "cut");

  // Closing modified data asks first; No closes without saving.
  test::ShownMessage saveQuestion;
  test::answerNextMessage(QMessageBox::No, &saveQuestion);
  EXPECT_TRUE(frame.close());
  EXPECT_EQ(saveQuestion.text, "Do you want to save current data ?");
  EXPECT_EQ(document.matrix(), nullptr);
  EXPECT_EQ(frame.windowTitle().toStdString(), "VELDA");
  EXPECT_TRUE(frame.variablesPanel()->isEmptyShown());
}

}  // namespace
}  // namespace velda::ui
