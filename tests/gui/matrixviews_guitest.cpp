#include <gtest/gtest.h>

#include <QComboBox>
#include <QHelpEvent>
#include <QListWidget>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <QToolTip>
#include <QTreeWidget>

#include "gui/GuiTestSupport.h"
#include "model/CategoricalVariable.h"
#include "model/Dependence.h"
#include "model/QuantitativeVariable.h"
#include "model/SymbolicMatrix.h"
#include "ui/dialogs/DependenceDialog.h"
#include "ui/dialogs/DependencesDialog.h"
#include "ui/dialogs/VariablePropertiesDialog.h"
#include "ui/panels/DependencesPanel.h"
#include "ui/panels/VariablesPanel.h"
#include "ui/widgets/VolumeMatrixView.h"

namespace velda::ui {
namespace {

TriangularMatrix triangle(size_t order, std::vector<double> entries) {
  TriangularMatrix matrix;
  matrix.order = order;
  matrix.entries = std::move(entries);
  return matrix;
}

// Four variables: sex (nominal), jobs (multinominal, probabilist view),
// age (interval), income (single number); the first three hold cells.
std::unique_ptr<SymbolicMatrix> smallMatrix() {
  auto matrix = SymbolicMatrix::create(11, 7);
  auto sex = std::make_unique<CategoricalVariable>("sex", 0, 5);
  sex->mode = MODE_BOOLEAN;
  sex->addModality("F");
  sex->addModality("M");
  auto jobs = std::make_unique<CategoricalVariable>("jobs", 1, 5);
  jobs->mode = MODE_PROBABILIST;
  jobs->addModality("clerk");
  jobs->addModality("farmer");
  jobs->addModality("manager");
  matrix->appendVariable(std::move(sex));
  matrix->appendVariable(std::move(jobs));
  matrix->appendVariable(std::make_unique<QuantitativeVariable>("age", 1));
  matrix->appendVariable(std::make_unique<QuantitativeVariable>("income", 0));
  EXPECT_TRUE(matrix->declareCellVariables(3, 0));
  return matrix;
}

// The texts of an item's children, or of a tree's top items.
std::vector<std::string> texts(const QTreeWidgetItem* item) {
  std::vector<std::string> shown;
  for (int i = 0; i < item->childCount(); ++i) shown.push_back(item->child(i)->text(0).toStdString());
  return shown;
}
std::vector<std::string> texts(QTreeWidget* tree) { return texts(tree->invisibleRootItem()); }
std::vector<std::string> texts(const QListWidget* list) {
  std::vector<std::string> shown;
  for (int i = 0; i < list->count(); ++i) shown.push_back(list->item(i)->text().toStdString());
  return shown;
}
using Texts = std::vector<std::string>;

class MatrixViewTest : public ::testing::Test {
 protected:
  void SetUp() override { test::guiApplication(); }
};

TEST_F(MatrixViewTest, VolumeScaleZoomAndChoiceOfMatrix) {
  // Diagonals before: 1, 2, 3 (largest pair 2 + 3); after: 4, 0.5, 0.25
  // (largest pair 4 + 0.5). Off-diagonal entries do not count.
  const TriangularMatrix before = triangle(3, {1, 90, 2, 90, 90, 3});
  const TriangularMatrix after = triangle(3, {4, 90, 0.5, 90, 90, 0.25});
  EXPECT_DOUBLE_EQ(VolumeMatrixView::colourScale(before, after), 5.0);
  EXPECT_DOUBLE_EQ(VolumeMatrixView::colourScale(after, before), 5.0);

  // One assertion has no pair of diagonal entries: the scale is 0 and the
  // drawing still works.
  const TriangularMatrix single = triangle(1, {7});
  VolumeMatrixView lone({"Paris"}, single, single);
  EXPECT_DOUBLE_EQ(lone.scale(), 0.0);
  EXPECT_FALSE(lone.grab().isNull());
  EXPECT_EQ(lone.label(0).toStdString(), "1: Paris");

  // The zoom steps by ten between its limits.
  VolumeMatrixView view({"Lyon", "Nice", "Rome"}, before, after);
  EXPECT_EQ(view.cellSize(), 50);
  EXPECT_TRUE(view.showsBefore());
  view.zoomIn();
  EXPECT_EQ(view.cellSize(), 60);
  const int widthAt60 = view.width();
  view.zoomOut();
  view.zoomOut();
  EXPECT_EQ(view.cellSize(), 40);
  EXPECT_EQ(widthAt60 - view.width(), 3 * 20);  // three cells across, 20 pixels each
  for (int i = 0; i < 10; ++i) view.zoomOut();
  EXPECT_EQ(view.cellSize(), 10);
  for (int i = 0; i < 30; ++i) view.zoomIn();
  EXPECT_EQ(view.cellSize(), 200);
  view.setShowBefore(false);
  EXPECT_FALSE(view.showsBefore());
  EXPECT_EQ(view.label(1).toStdString(), "2: Nice");
}

TEST_F(MatrixViewTest, VariablesPanelGroupsByKindAndShowsViewTypes) {
  auto matrix = smallMatrix();
  VariablesPanel panel;
  EXPECT_TRUE(panel.isEmptyShown());
  panel.fill(*matrix);
  EXPECT_FALSE(panel.isEmptyShown());
  ASSERT_EQ(texts(panel.tree()), Texts{"Variables"});
  // Kinds appear in the order of their first variable.
  QTreeWidgetItem* root = panel.tree()->topLevelItem(0);
  ASSERT_EQ(texts(root), (Texts{"Categorical Single", "Multinominal", "Interval", "Quantitative Single"}));
  EXPECT_EQ(texts(root->child(1)), Texts{"jobs"});
  EXPECT_EQ(texts(root->child(1)->child(0)), Texts{"Probabilist view"});
  EXPECT_EQ(texts(root->child(0)->child(0)), Texts{});  // a nominal variable has no view type
  panel.clear();
  EXPECT_TRUE(panel.isEmptyShown());
}

TEST_F(MatrixViewTest, DependencesPanelNestsDaughtersUnderMothers) {
  auto matrix = smallMatrix();
  DependencesPanel panel;
  EXPECT_EQ(texts(panel.tree()), Texts{"No dependence set"});

  // jobs is the mother of age and income (newest daughter first: income).
  matrix->variable(1).firstDaughter = 3;
  matrix->variable(3).nextDaughter = 2;
  matrix->variable(3).motherIndex = 1;
  matrix->variable(2).motherIndex = 1;
  panel.fill(*matrix);
  ASSERT_EQ(texts(panel.tree()), (Texts{"sex", "jobs"}));
  EXPECT_EQ(texts(panel.tree()->topLevelItem(1)), (Texts{"income", "age"}));
  EXPECT_TRUE(panel.tree()->topLevelItem(1)->isExpanded());
  panel.clear();
  EXPECT_EQ(texts(panel.tree()), Texts{"No dependence set"});
}

TEST_F(MatrixViewTest, DependencesDialogShowsEachRuleGroupOnce) {
  auto matrix = smallMatrix();
  // Two groups: jobs -> sex, age (two rules chained) and sex -> income.
  auto rule = [&](int32_t mother, int32_t daughter, int32_t modality) {
    matrix->rules.push_back(std::make_unique<DependenceRule>(mother, daughter, 1));
    matrix->rules.back()->applicable.insert(modality);
    return matrix->rules.back().get();
  };
  DependenceRule* first = rule(1, 0, 0);
  first->next = rule(1, 2, 0);
  rule(0, 3, 1);

  DependencesDialog dialog(*matrix);
  QTreeWidget* definitions = dialog.definitions();
  ASSERT_EQ(texts(definitions), (Texts{"jobs", "sex"}));
  EXPECT_EQ(texts(definitions->topLevelItem(0)),
            (Texts{"sex is applicable if jobs in {\"clerk\"}", "age is applicable if jobs in {\"clerk\"}"}));
  EXPECT_EQ(texts(definitions->topLevelItem(1)), Texts{"income is applicable if sex in {\"M\"}"});

  // The chosen group's mother with its daughters.
  definitions->setCurrentItem(definitions->topLevelItem(1)->child(0));
  ASSERT_EQ(texts(dialog.hierarchy()), Texts{"sex"});
  EXPECT_EQ(texts(dialog.hierarchy()->topLevelItem(0)), Texts{"income"});
}

TEST_F(MatrixViewTest, PropertiesSetAllTypesReachesOnlyMultinominalVariables) {
  auto matrix = smallMatrix();
  VariablePropertiesValues initial;
  initial.variables = {{true, MODE_BOOLEAN}, {true, MODE_PROBABILIST}, {false, 0}, {true, 0}};
  VariablePropertiesDialog dialog(*matrix, initial);
  EXPECT_EQ(dialog.typeEditor(0), nullptr);
  ASSERT_NE(dialog.typeEditor(1), nullptr);
  EXPECT_EQ(dialog.typeEditor(1)->currentText().toStdString(), "Probabilist view");
  EXPECT_EQ(dialog.stateEditor(2)->currentText().toStdString(), "Inactive");
  // The state's list offers the changes, not the states.
  auto* choices = qobject_cast<QStyledItemDelegate*>(dialog.stateEditor(2)->itemDelegate());
  ASSERT_NE(choices, nullptr);
  EXPECT_EQ(choices->displayText(dialog.stateEditor(2)->itemText(0), QLocale()).toStdString(), "Set to Active");
  EXPECT_EQ(choices->displayText(dialog.stateEditor(2)->itemText(1), QLocale()).toStdString(), "Set to Inactive");

  dialog.allTypesEditor()->setCurrentIndex(MODE_KT_ESTIMATE);
  emit dialog.allTypesEditor()->activated(MODE_KT_ESTIMATE);
  dialog.stateEditor(0)->setCurrentIndex(1);
  const VariablePropertiesValues chosen = dialog.values();
  ASSERT_EQ(chosen.variables.size(), 4u);
  EXPECT_EQ(chosen.variables[1].mode, MODE_KT_ESTIMATE);
  EXPECT_EQ(chosen.variables[0].mode, MODE_BOOLEAN);  // nominal: untouched
  EXPECT_FALSE(chosen.variables[0].active);
  EXPECT_FALSE(chosen.variables[2].active);
  EXPECT_TRUE(chosen.variables[3].active);
}

TEST_F(MatrixViewTest, DependenceDialogListsAndChecksInOrder) {
  auto matrix = smallMatrix();
  DependenceDialog dialog(*matrix, DependenceValues{});
  // Mothers: the categorical cell variables.
  ASSERT_EQ(texts(dialog.motherList()), (Texts{"sex", "jobs"}));
  EXPECT_EQ(test::refusalOf(dialog), "No mother variable selected");

  dialog.motherList()->item(1)->setSelected(true);
  ASSERT_EQ(texts(dialog.modalityList()), (Texts{"clerk", "farmer", "manager"}));
  // Daughters: the other cell variables, never the mother nor income
  // (which holds no cells).
  ASSERT_EQ(texts(dialog.daughterList()), (Texts{"sex", "age"}));
  EXPECT_EQ(test::refusalOf(dialog), "No modalities selected");

  dialog.modalityList()->item(2)->setSelected(true);
  EXPECT_EQ(test::refusalOf(dialog), "No daughter variables selected");

  dialog.daughterList()->item(1)->setSelected(true);
  dialog.accept();
  ASSERT_EQ(dialog.result(), QDialog::Accepted);
  EXPECT_EQ(dialog.values().motherIndex, 1);
  EXPECT_EQ(dialog.values().applicableModalities, std::vector<int32_t>{2});
  EXPECT_EQ(dialog.values().daughterIndexes, std::vector<int32_t>{2});

  // Shown again with that choice (after No to the NA question), the dialog
  // starts from it.
  DependenceDialog again(*matrix, dialog.values());
  ASSERT_EQ(again.modalityList()->count(), 3);
  EXPECT_TRUE(again.motherList()->item(1)->isSelected());
  EXPECT_TRUE(again.modalityList()->item(2)->isSelected());
  EXPECT_FALSE(again.modalityList()->item(0)->isSelected());
  EXPECT_TRUE(again.daughterList()->item(1)->isSelected());
  EXPECT_FALSE(again.daughterList()->item(0)->isSelected());
  again.accept();
  ASSERT_EQ(again.result(), QDialog::Accepted);
  EXPECT_EQ(again.values().daughterIndexes, dialog.values().daughterIndexes);
}

TEST_F(MatrixViewTest, DependenceDialogOffersOnlyDaughtersTheMotherCanHave) {
  // sex -> jobs: jobs may not then be the mother of sex, its own mother.
  auto matrix = smallMatrix();
  RuleGroup group;
  const std::vector<int32_t> female{0};
  const std::vector<int32_t> jobs{1};
  ASSERT_EQ(makeRuleGroup(*matrix, 0, female, jobs, group), 1);
  ASSERT_EQ(applyRule(*matrix, std::move(group)), 1);

  DependenceDialog dialog(*matrix, DependenceValues{});
  ASSERT_EQ(dialog.motherList()->count(), 2);
  dialog.motherList()->item(1)->setSelected(true);
  EXPECT_EQ(texts(dialog.daughterList()), Texts{"age"});

  // sex is a mother already; jobs, its daughter, is not offered again.
  dialog.motherList()->item(1)->setSelected(false);
  dialog.motherList()->item(0)->setSelected(true);
  ASSERT_EQ(texts(dialog.daughterList()), Texts{"age"});

  // A refusal leaves every choice made so far in place.
  dialog.modalityList()->item(1)->setSelected(true);
  EXPECT_EQ(test::refusalOf(dialog), "No daughter variables selected");
  EXPECT_TRUE(dialog.motherList()->item(0)->isSelected());
  EXPECT_TRUE(dialog.modalityList()->item(1)->isSelected());
}

// A rule whose applicable set is long: its whole text can be scrolled to
// and read in a tooltip.
TEST_F(MatrixViewTest, ViewDependencesShowsLongRulesWhole) {
  auto matrix = SymbolicMatrix::create(11, 7);
  auto region = std::make_unique<CategoricalVariable>("region", 0, 5);
  std::vector<int32_t> applicable;
  for (int i = 0; i < 12; ++i) {
    region->addModality("a region with a rather long name number " + std::to_string(i));
    applicable.push_back(i);
  }
  matrix->appendVariable(std::move(region));
  matrix->appendVariable(std::make_unique<QuantitativeVariable>("income", 0));
  EXPECT_TRUE(matrix->declareCellVariables(2, 0));
  RuleGroup group;
  const std::vector<int32_t> income{1};
  ASSERT_EQ(makeRuleGroup(*matrix, 0, applicable, income, group), 1);
  ASSERT_EQ(applyRule(*matrix, std::move(group)), 1);

  DependencesDialog dialog(*matrix);
  dialog.show();
  QTreeWidget* tree = dialog.definitions();
  ASSERT_EQ(tree->topLevelItemCount(), 1);
  QTreeWidgetItem* rule = tree->topLevelItem(0)->child(0);
  ASSERT_NE(rule, nullptr);
  const QString text = rule->text(0);
  ASSERT_GT(text.size(), 500);
  EXPECT_GE(tree->columnWidth(0), tree->fontMetrics().horizontalAdvance(text));
  EXPECT_TRUE(tree->horizontalScrollBar()->maximum() > 0);

  const QRect place = tree->visualItemRect(rule);
  QHelpEvent help(QEvent::ToolTip, place.center(), tree->viewport()->mapToGlobal(place.center()));
  QApplication::sendEvent(tree->viewport(), &help);
  EXPECT_EQ(QToolTip::text(), text);
  QToolTip::hideText();
}

}  // namespace
}  // namespace velda::ui
