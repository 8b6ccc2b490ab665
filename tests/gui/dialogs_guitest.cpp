#include <gtest/gtest.h>

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>

#include "document/DialogChecks.h"
#include "gui/GuiTestSupport.h"
#include "support/ScopedEnv.h"
#include "support/SqliteDatabase.h"
#include "ui/dialogs/ExportDialog.h"
#include "ui/dialogs/ExtractionDialog.h"
#include "ui/dialogs/JoinDialog.h"
#include "ui/dialogs/NumberParameterDialog.h"
#include "ui/dialogs/ProgressDialog.h"
#include "ui/frame/AboutDialog.h"
#include "ui/frame/CKORVAView.h"
#include "ui/frame/CMainFrame.h"
#include "ui/widgets/DataSourceLink.h"
#include "ui/widgets/ExtractionSettingsBox.h"
#include "ui/widgets/FileDialogs.h"
#include "ui/widgets/FileField.h"
#include "ui/widgets/MessageBoxes.h"
#include "ui/widgets/TableListBox.h"

namespace velda::ui {
namespace {

using test::recordNextMessage;
using test::refusalOf;
using test::ShownMessage;

// No database: the dialogs list nothing and refuse to reconnect.
class NoDataSource : public DataSourceLink {
 public:
  const Connection* connection() const override { return nullptr; }
  bool connect(const std::string&) override { return false; }
};

class DialogTest : public ::testing::Test {
 protected:
  void SetUp() override { test::guiApplication(); }
  NoDataSource noSource;
};

// The written form of New, with a query typed, so only the settings decide.
std::unique_ptr<ExtractionDialog> writtenNewDialog(DataSourceLink& link, const ExtractionDialog::Values& start = {}) {
  auto dialog = std::make_unique<ExtractionDialog>(QueryPurpose::NewData, true, start, link, nullptr);
  dialog->queryEdit()->setPlainText(QStringLiteral("select person_id, town from survey"));
  return dialog;
}

bool accepted(QDialog& dialog) {
  dialog.accept();
  return dialog.result() == QDialog::Accepted;
}

TEST_F(DialogTest, ExtractionSettingsEnableTheirCountsAndCheckThemOnlyWhenTicked) {
  ExtractionDialog empty(QueryPurpose::NewData, false, ExtractionDialog::Values{}, noSource, nullptr);
  EXPECT_EQ(empty.windowTitle().toStdString(), "Extraction of individuals");
  EXPECT_EQ(refusalOf(empty), "Please select a Table or a Request");
  ExtractionSettingsBox* settings = empty.settings();
  EXPECT_EQ(settings->sampleSizeEdit()->text().toStdString(), "1000");
  EXPECT_EQ(settings->minimumEdit()->text().toStdString(), "1");
  EXPECT_FALSE(settings->sampleSizeEdit()->isEnabled());
  EXPECT_FALSE(settings->minimumEdit()->isEnabled());
  settings->samplingBox()->setChecked(true);
  EXPECT_TRUE(settings->sampleSizeEdit()->isEnabled());
  EXPECT_FALSE(settings->minimumEdit()->isEnabled());
  settings->minimumBox()->setChecked(true);
  EXPECT_TRUE(settings->minimumEdit()->isEnabled());

  auto sampled = writtenNewDialog(noSource);
  sampled->settings()->samplingBox()->setChecked(true);
  sampled->settings()->sampleSizeEdit()->setText(QStringLiteral("9"));
  EXPECT_EQ(refusalOf(*sampled, QMessageBox::Information), "Number of individuals must be between 100 and 10000");
  sampled->settings()->sampleSizeEdit()->setText(QStringLiteral("10"));
  sampled->settings()->minimumBox()->setChecked(true);
  sampled->settings()->minimumEdit()->setText(QStringLiteral("2"));
  EXPECT_TRUE(accepted(*sampled));
  EXPECT_TRUE(sampled->values().query.sampling);
  EXPECT_EQ(sampled->values().query.sampleSize, 10);
  EXPECT_TRUE(sampled->values().query.minimumSet);
  EXPECT_EQ(sampled->values().query.minimum, 2);
  EXPECT_EQ(sampled->values().query.query, "select person_id, town from survey");

  auto unticked = writtenNewDialog(noSource);
  unticked->settings()->sampleSizeEdit()->setText(QStringLiteral("3"));
  unticked->settings()->minimumEdit()->setText(QStringLiteral("0"));
  unticked->settings()->weightBox()->setChecked(true);
  EXPECT_TRUE(accepted(*unticked));
  EXPECT_FALSE(unticked->values().query.sampling);
  EXPECT_FALSE(unticked->values().query.minimumSet);
  EXPECT_TRUE(unticked->values().query.lastColumnIsWeight);

  // The taxonomy query wants a variable first.
  ExtractionDialog taxonomy(QueryPurpose::Taxonomy, true, ExtractionDialog::Values{}, noSource, nullptr);
  EXPECT_EQ(taxonomy.windowTitle().toStdString(), "Taxonomy query");
  taxonomy.queryEdit()->setPlainText(QStringLiteral("select region, country from towns"));
  EXPECT_EQ(refusalOf(taxonomy), "No variable selected");
}

// Sampling needs the individuals, which the database does not send.
TEST_F(DialogTest, AggregatingInTheDatabaseTurnsSamplingOff) {
  ExtractionDialog::Values start;
  start.query.sampling = true;
  ExtractionDialog dialog(QueryPurpose::NewData, false, start, noSource, nullptr);
  ExtractionSettingsBox* settings = dialog.settings();
  QCheckBox* inDatabase = settings->inDatabaseBox();
  EXPECT_EQ(inDatabase->text().toStdString(), "Aggregate in the database (individuals are not read)");
  EXPECT_FALSE(inDatabase->isChecked());
  EXPECT_TRUE(settings->samplingBox()->isEnabled());
  inDatabase->setChecked(true);
  EXPECT_FALSE(settings->samplingBox()->isChecked());
  EXPECT_FALSE(settings->samplingBox()->isEnabled());
  EXPECT_FALSE(settings->sampleSizeEdit()->isEnabled());
  NewValues values;
  settings->store(values);
  EXPECT_TRUE(values.inDatabase);
  EXPECT_FALSE(values.sampling);
  inDatabase->setChecked(false);
  EXPECT_TRUE(settings->samplingBox()->isEnabled());
  settings->store(values);
  EXPECT_FALSE(values.inDatabase);

  // The dialog opens again with the box as it was left.
  start.query.inDatabase = true;
  ExtractionDialog again(QueryPurpose::NewData, false, start, noSource, nullptr);
  EXPECT_TRUE(again.settings()->inDatabaseBox()->isChecked());
  EXPECT_FALSE(again.settings()->samplingBox()->isEnabled());
}

TEST_F(DialogTest, JoinNeedsBothFilesCancelKeepsValuesAndBrowseProposesProjects) {
  JoinValues initial{"first.gaj", ""};
  JoinDialog dialog(initial);
  EXPECT_EQ(refusalOf(dialog), "You must select file name");

  dialog.secondField()->setText(QStringLiteral("second.gaj"));
  dialog.reject();
  EXPECT_EQ(dialog.values().firstFile, "first.gaj");
  EXPECT_EQ(dialog.values().secondFile, "");

  JoinDialog both(JoinValues{"a.gaj", "b.gaj"});
  EXPECT_TRUE(accepted(both));

  // The filter text names .kvf files but restricts nothing: the .gaj
  // projects stay visible.
  EXPECT_EQ(qtNameFilters("Korva file (*.kvf)"), QStringList{QStringLiteral("Korva file (*.kvf) (*)")});
  EXPECT_EQ(qtNameFilters("XML file (*.xml)|*.xml|Korva file (*.kvf)|*.kvf||"),
            (QStringList{QStringLiteral("XML file (*.xml) (*.xml)"), QStringLiteral("Korva file (*.kvf) (*.kvf)")}));
}

TEST_F(DialogTest, ExportRulesSubtitleDefaultAndFileTypes) {
  ExportValues initial;
  initial.title = "Survey";
  initial.reducedAssertionsAvailable = true;
  ExportDialog dialog(initial);
  EXPECT_EQ(dialog.windowTitle().toStdString(), "KORVA export");
  EXPECT_TRUE(dialog.reducedAssertionsBox()->isEnabled());
  EXPECT_TRUE(dialog.reducedAssertionsBox()->isChecked());
  EXPECT_FALSE(dialog.reducedHordesBox()->isEnabled());
  EXPECT_FALSE(dialog.reducedHordesBox()->isChecked());
  EXPECT_EQ(dialog.titleEdit()->maxLength(), 127);
  EXPECT_EQ(dialog.subtitleEdit()->maxLength(), 127);

  // "Select..." proposes XML: a name typed without extension gets ".xml".
  QString suffix;
  test::onNextModal<QFileDialog>([&suffix](QFileDialog* files) {
    suffix = files->defaultSuffix();
    files->reject();
  });
  dialog.fileField()->selectButton()->click();
  EXPECT_EQ(suffix.toStdString(), "xml");

  EXPECT_EQ(refusalOf(dialog), "You must set a file name");
  dialog.fileField()->setText(QStringLiteral("/tmp/out.kvf"));
  dialog.subtitleEdit()->clear();
  ASSERT_TRUE(accepted(dialog));
  EXPECT_EQ(dialog.values().file, "/tmp/out.kvf");
  EXPECT_EQ(dialog.values().subtitle, "Survey");
  EXPECT_TRUE(dialog.values().exportReducedAssertions);
  EXPECT_FALSE(dialog.values().exportReducedHordes);

  ExportValues rsda;
  rsda.format = ExportFormat::RsdaTable;
  ExportDialog tables(rsda);
  EXPECT_EQ(tables.formatBox()->currentIndex(), 1);

  // "Select..." offers both tables after the symbolic files; a file chosen
  // as a tidy table is exported as one.
  QStringList offered;
  test::onNextModal<QFileDialog>([&offered](QFileDialog* files) {
    offered = files->nameFilters();
    files->selectNameFilter(offered.value(3));
    files->selectFile(QDir::tempPath() + QStringLiteral("/velda-people.csv"));
    static_cast<QDialog*>(files)->accept();  // QFileDialog::accept is protected
  });
  tables.fileField()->selectButton()->click();
  ASSERT_EQ(offered.size(), 4);
  EXPECT_EQ(offered[2].toStdString(), "RSDA symbolic table (*.csv) (*.csv)");
  EXPECT_EQ(offered[3].toStdString(), "Tidy table (*.csv) (*.csv)");
  EXPECT_EQ(tables.formatBox()->currentIndex(), 2);
  EXPECT_EQ(tables.titleEdit()->text().toStdString(), "velda-people");
  tables.accept();
  ASSERT_EQ(tables.result(), QDialog::Accepted);
  EXPECT_EQ(tables.values().file, QDir::tempPath().toStdString() + "/velda-people.csv");
  EXPECT_EQ(tables.values().format, ExportFormat::TidyTable);

  // A name typed by hand keeps the format shown in the box.
  tables.fileField()->setText(QStringLiteral("/tmp/out.kvf"));
  tables.formatBox()->setCurrentIndex(0);
  tables.accept();
  EXPECT_EQ(tables.values().format, ExportFormat::Symbolic);

  // A name typed without a suffix gets the suffix of the filter chosen in
  // the file type list, as the user reads it there.
  test::TempDir dir;
  for (const auto& [downs, expected] : {std::pair{1, "out1.kvf"}, std::pair{0, "out1.xml"}}) {
    test::onNextModal<QFileDialog>([&dir, downs = downs](QFileDialog* files) {
      files->setDirectory(QString::fromStdString(dir.path()));
      auto* types = files->findChild<QComboBox*>(QStringLiteral("fileTypeCombo"));
      if (types) {
        QTest::keyClick(types, Qt::Key_Home);
        for (int i = 0; i < downs; ++i) QTest::keyClick(types, Qt::Key_Down);
      }
      files->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->setText(QStringLiteral("out1"));
      static_cast<QDialog*>(files)->accept();  // as the dialog's own Save button does
    });
    tables.fileField()->selectButton()->click();
    EXPECT_EQ(tables.fileField()->text().toStdString(), dir.file(expected));
  }
}

TEST_F(DialogTest, ParameterRangesAndCancel) {
  auto reduction = [](int32_t v) { return checkReductionValues(ReductionValues{v}); };
  NumberParameterDialog dialog(QStringLiteral("Reduction parameter"), QStringLiteral("Reduction threshold"), 80,
                               reduction);
  EXPECT_EQ(dialog.field()->text().toStdString(), "80");
  for (const char* refused : {"9", "101", "abc"}) {
    dialog.field()->setText(QString::fromLatin1(refused));
    EXPECT_EQ(refusalOf(dialog, QMessageBox::Information), "Please enter an integer between 10 and 100.") << refused;
    EXPECT_EQ(dialog.value(), 80);
  }
  dialog.field()->setText(QStringLiteral("10"));
  dialog.reject();
  EXPECT_EQ(dialog.value(), 80);
  EXPECT_TRUE(accepted(dialog));
  EXPECT_EQ(dialog.value(), 10);
}

// A recorder that stands for a long operation: reports, then polls.
TEST_F(DialogTest, ProgressDialogIsTheTargetWhileItRunsAndEscapeOrCloseActAsCancel) {
  ProgressDialog dialog(QStringLiteral("Reducing assertions"));
  EXPECT_EQ(progressTarget(), nullptr);
  ProgressTarget* during = nullptr;
  const bool result = dialog.run([&] {
    during = progressTarget();
    progressLine1("Reduction in progress...");
    progressLine2("Assertion %s", "Paris");
    progressEnableCancel(false);
    const bool disabled = !dialog.cancelButton()->isEnabled();
    progressEnableCancel(true);
    dialog.cancelButton()->click();
    return disabled && cancelRequested();
  });
  EXPECT_EQ(during, &dialog);
  EXPECT_EQ(progressTarget(), nullptr);
  EXPECT_TRUE(result) << "the operation's own result comes back";
  EXPECT_TRUE(dialog.wasCancelled());
  EXPECT_EQ(dialog.line1().toStdString(), "Reduction in progress...");
  EXPECT_EQ(dialog.line2().toStdString(), "Assertion Paris");
  EXPECT_FALSE(dialog.isVisible());

  // Escape and the close box, each in its own run: with Cancel disabled
  // nothing happens; enabled, they cancel; the dialog stays shown and modal.
  for (const bool escape : {true, false}) {
    bool cancelledWhileDisabled = true;
    bool shownAfterwards = false;
    dialog.run([&] {
      auto press = [&] { escape ? QTest::keyClick(&dialog, Qt::Key_Escape) : static_cast<void>(dialog.close()); };
      progressEnableCancel(false);
      press();
      cancelledWhileDisabled = cancelRequested();
      progressEnableCancel(true);
      press();
      shownAfterwards = dialog.isVisible() && dialog.isModal();
      return 1;
    });
    EXPECT_FALSE(cancelledWhileDisabled) << escape;
    EXPECT_TRUE(shownAfterwards) << escape;
    EXPECT_TRUE(dialog.wasCancelled()) << escape;
    EXPECT_FALSE(dialog.isVisible()) << escape;  // run() hides it at the end
  }
}

// Enter goes to OK once the fields are filled, whichever side button was
// used last; in About, Return closes the box also after More.
TEST_F(DialogTest, EnterPressesTheDefaultButtonNotTheFocusedSideButton) {
  int choosersOpened = 0;
  // Closes a file chooser that Enter might open, so the test cannot hang.
  auto watchChooser = [&choosersOpened] {
    QTimer::singleShot(300, [&choosersOpened] {
      if (auto* chooser = qobject_cast<QFileDialog*>(QApplication::activeModalWidget())) {
        ++choosersOpened;
        chooser->reject();
      }
    });
  };

  ExportValues values;
  values.file = "/tmp/survey.kvf";
  ExportDialog exportDialog(values);
  exportDialog.show();
  QPushButton* select = exportDialog.fileField()->selectButton();
  watchChooser();
  select->click();
  EXPECT_EQ(choosersOpened, 1);
  select->setFocus();
  watchChooser();
  QTest::keyClick(select, Qt::Key_Return);
  QTest::qWait(350);
  EXPECT_EQ(choosersOpened, 1);
  EXPECT_EQ(exportDialog.result(), QDialog::Accepted);

  AboutDialog about;
  about.show();
  QPushButton* more = nullptr;
  for (QPushButton* button : about.findChildren<QPushButton*>())
    if (button->text() == QStringLiteral("More")) more = button;
  ASSERT_NE(more, nullptr);
  more->click();
  EXPECT_TRUE(about.moreLabel()->isVisible());
  more->setFocus();
  QTest::keyClick(more, Qt::Key_Return);
  EXPECT_EQ(about.result(), QDialog::Accepted);
  EXPECT_FALSE(about.isVisible());
}

// A one-word message still leaves room for the caption and the title bar's
// buttons, so the window manager does not cut the caption down.
TEST_F(DialogTest, MessageBoxesAreWideEnoughForTheirCaption) {
  for (const char* text : {"Load failed", "Save failed"}) {
    int width = 0;
    int captionWidth = 0;
    test::onNextModal<QMessageBox>([&](QMessageBox* box) {
      width = box->width();
      captionWidth = box->fontMetrics().horizontalAdvance(box->windowTitle());
      box->accept();
    });
    showMessageBox(nullptr, QString::fromLatin1(text), MessageIcon::None);
    EXPECT_GT(captionWidth, 0);
    EXPECT_GE(width, captionWidth + 150) << text;
  }
}

// With the sample database installed the extraction dialog opens on it and
// lists its tables; a sample name that names no file connects to nothing.
TEST_F(DialogTest, ExtractionDialogOpensOnTheInstalledSampleDatabase) {
  test::SqliteDatabase sample("create table survey (person_id integer, town text);");
  CMainFrame frame;
  {
    test::ScopedEnv missing("VELDA_SAMPLE_DB", sample.path() + ".missing");
    ExtractionDialog dialog(QueryPurpose::NewData, false, ExtractionDialog::Values{}, frame.view(), nullptr);
    EXPECT_EQ(frame.view().connection(), nullptr);
  }
  test::ScopedEnv installed("VELDA_SAMPLE_DB", sample.path());
  ExtractionDialog dialog(QueryPurpose::NewData, false, ExtractionDialog::Values{}, frame.view(), nullptr);
  EXPECT_NE(frame.view().connection(), nullptr);
  EXPECT_FALSE(dialog.tableList()->list()->findItems(QStringLiteral("survey"), Qt::MatchExactly).isEmpty());
}

}  // namespace
}  // namespace velda::ui
