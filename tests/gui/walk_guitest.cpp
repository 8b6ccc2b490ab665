#include <gtest/gtest.h>

#include <QCheckBox>
#include <QDir>
#include <QLineEdit>
#include <QListView>
#include <QListWidget>
#include <fstream>
#include <sstream>

#include "gui/GuiTestSupport.h"
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
#include "ui/widgets/TableListBox.h"

namespace velda::ui {
namespace {

std::string sampleSql() {
  const char* source = std::getenv("VELDA_SOURCE_DIR");
  std::ifstream file(std::string(source ? source : ".") + "/data/sample.sql");
  std::stringstream text;
  text << file.rdbuf();
  return text.str();
}

// Chooses an item by its text; a missing one fails the test.
bool selectText(QListWidget* list, const QString& text) {
  const QList<QListWidgetItem*> found = list->findItems(text, Qt::MatchExactly);
  EXPECT_FALSE(found.isEmpty()) << text.toStdString();
  if (found.isEmpty()) return false;
  list->setCurrentItem(found.front());
  found.front()->setSelected(true);
  return true;
}

bool consoleHas(const ConsoleLog& console, const std::string& prefix) {
  for (const std::string& line : console.lines()) {
    if (line.rfind(prefix, 0) == 0) return true;
  }
  return false;
}

// Works in a folder of its own: the export writes "tempkvf.dat" beside it.
class WalkTest : public ::testing::Test {
 protected:
  void SetUp() override {
    test::guiApplication();
    previous_ = QDir::currentPath();
    QDir::setCurrent(QString::fromStdString(work_.path()));
  }
  void TearDown() override { QDir::setCurrent(previous_); }

  test::TempDir work_;
  QString previous_;
};

TEST_F(WalkTest, NewTaxonomyDependenceReduceExportThroughTheDialogs) {
  test::SqliteDatabase database(sampleSql());
  CMainFrame frame;
  frame.show();
  Document& document = frame.view().document();
  ASSERT_TRUE(document.connect(database.connectionString()));
  EXPECT_TRUE(frame.action(ID_DISCONNECT)->isEnabled());

  // New: the survey grouped by region, last column as weight.
  test::onNextModal<ExtractionDialog>([](ExtractionDialog* dialog) {
    if (!selectText(dialog->tableList()->list(), QStringLiteral("survey"))) return dialog->reject();
    dialog->settings()->weightBox()->setChecked(true);
    dialog->accept();
  });
  frame.runCommand(ID_FILE_NEW);
  ASSERT_NE(document.matrix(), nullptr);
  EXPECT_TRUE(frame.action(ID_FILE_SAVE)->isEnabled());
  EXPECT_TRUE(frame.action(ID_CREATE_TAXONOMY)->isEnabled());
  EXPECT_FALSE(frame.variablesPanel()->isEmptyShown());
  EXPECT_FALSE(frame.individualsPanel()->isEmptyShown());
  EXPECT_EQ(frame.individualsPanel()->view()->model()->rowCount(), 6000);

  // Create a taxonomy of the towns from the towns table.
  test::onNextModal<ExtractionDialog>([](ExtractionDialog* dialog) {
    if (!selectText(dialog->variableList(), QStringLiteral("town")) ||
        !selectText(dialog->tableList()->list(), QStringLiteral("towns")))
      return dialog->reject();
    dialog->accept();
  });
  frame.runCommand(ID_CREATE_TAXONOMY);
  EXPECT_TRUE(consoleHas(document.console(), "taxonomy variable 'town': initial domain is covered by "));
  EXPECT_TRUE(frame.action(ID_VIEW_TAXONOMIES)->isEnabled());

  // A dependence: income applies to managers and professionals only.
  test::ShownMessage question;
  test::onNextModal<DependenceDialog>([&question](DependenceDialog* dialog) {
    if (!selectText(dialog->motherList(), QStringLiteral("occupation")) ||
        !selectText(dialog->modalityList(), QStringLiteral("manager")) ||
        !selectText(dialog->modalityList(), QStringLiteral("professional")) ||
        !selectText(dialog->daughterList(), QStringLiteral("income")))
      return dialog->reject();
    test::answerNextMessage(QMessageBox::Yes, &question);
    dialog->accept();
  });
  frame.runCommand(ID_ADD_DEPENDENCE);
  EXPECT_EQ(question.text, "Some values will be replaced by NA and this can not be undone.\nDo you wish to continue ?");
  EXPECT_TRUE(consoleHas(document.console(), "1 rules added:"));
  EXPECT_TRUE(frame.action(ID_VIEW_DEPENDENCES)->isEnabled());

  // Reduce at the proposed threshold.
  QString proposed;
  test::onNextModal<NumberParameterDialog>([&proposed](NumberParameterDialog* dialog) {
    proposed = dialog->field()->text();
    dialog->accept();
  });
  frame.runCommand(ID_REDUCE_ASSERTIONS);
  EXPECT_EQ(proposed.toStdString(), "80");
  EXPECT_TRUE(frame.action(ID_VIEW_VOLUME_MATRIX)->isEnabled());

  // Export the reduced rows as symbolic text.
  const std::string destination = work_.file("survey.kvf");
  bool reducedOffered = false;
  test::onNextModal<ExportDialog>([&](ExportDialog* dialog) {
    reducedOffered = dialog->reducedAssertionsBox()->isEnabled();
    dialog->fileField()->setText(QString::fromStdString(destination));
    dialog->titleEdit()->setText(QStringLiteral("Survey"));
    dialog->accept();
  });
  frame.runCommand(ID_EXPORT);
  EXPECT_TRUE(reducedOffered);
  EXPECT_TRUE(consoleHas(document.console(), "[done] - Finished"));
  std::ifstream exported(destination);
  std::string first;
  std::getline(exported, first);
  EXPECT_EQ(first.rfind("KORVA = (", 0), 0u) << first;
  EXPECT_TRUE(document.isModified());

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
