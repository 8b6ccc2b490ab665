#include "ui/dialogs/DependenceDialog.h"

#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QListWidget>
#include <QVBoxLayout>
#include <algorithm>

#include "common/LastError.h"
#include "model/CategoricalVariable.h"
#include "model/Dependence.h"
#include "model/SymbolicMatrix.h"
#include "ui/widgets/Latin1.h"
#include "ui/widgets/MessageBoxes.h"
#include "ui/widgets/WholeLines.h"

namespace velda::ui {

namespace {

std::vector<int32_t> chosenData(const QListWidget* list) {
  std::vector<int32_t> chosen;
  for (int row = 0; row < list->count(); ++row) {
    if (list->item(row)->isSelected()) chosen.push_back(list->item(row)->data(Qt::UserRole).toInt());
  }
  return chosen;
}

void addItem(QListWidget* list, const std::string& text, int32_t data) {
  auto* item = new QListWidgetItem(toQt(text), list);
  item->setData(Qt::UserRole, data);
}

// Selects the items that carry one of the given numbers.
void selectData(QListWidget* list, const std::vector<int32_t>& chosen) {
  for (int row = 0; row < list->count(); ++row) {
    const int32_t data = list->item(row)->data(Qt::UserRole).toInt();
    if (std::find(chosen.begin(), chosen.end(), data) != chosen.end()) list->item(row)->setSelected(true);
  }
}

}  // namespace

DependenceDialog::DependenceDialog(const SymbolicMatrix& matrix, const DependenceValues& values, QWidget* parent)
    : QDialog(parent), matrix_(matrix), values_(values) {
  setWindowTitle(QStringLiteral("Add a dependence"));
  mothers_ = new QListWidget(this);
  modalities_ = new QListWidget(this);
  daughters_ = new QListWidget(this);
  for (QListWidget* list : {mothers_, modalities_, daughters_}) showWholeLines(list);
  modalities_->setSelectionMode(QAbstractItemView::MultiSelection);
  daughters_->setSelectionMode(QAbstractItemView::MultiSelection);

  for (size_t i = 0; i < matrix.variableCount(); ++i) {
    if (canBeMother(matrix, static_cast<int32_t>(i)))
      addItem(mothers_, matrix.variable(i).name, static_cast<int32_t>(i));
  }
  connect(mothers_, &QListWidget::itemSelectionChanged, this, &DependenceDialog::onMotherChosen);
  // The dialog comes back with the previous choice after No to the NA
  // question.
  selectData(mothers_, {values.motherIndex});
  selectData(modalities_, values.applicableModalities);
  selectData(daughters_, values.daughterIndexes);

  auto* grid = new QGridLayout;
  grid->addWidget(new QLabel(QStringLiteral("Select mother variable"), this), 0, 0);
  grid->addWidget(new QLabel(QStringLiteral("Select applicable set"), this), 0, 1);
  grid->addWidget(new QLabel(QStringLiteral("Select daughter variables"), this), 0, 2);
  grid->addWidget(mothers_, 1, 0);
  grid->addWidget(modalities_, 1, 1);
  grid->addWidget(daughters_, 1, 2);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(grid);
  layout->addWidget(buttons);
}

// The applicable set lists the chosen mother's modalities; the daughters
// are the variables that the model accepts as daughters of that mother.
void DependenceDialog::onMotherChosen() {
  modalities_->clear();
  daughters_->clear();
  const std::vector<int32_t> mother = chosenData(mothers_);
  if (mother.empty()) return;
  const auto* variable = dynamic_cast<const CategoricalVariable*>(&matrix_.variable(mother.front()));
  if (!variable) return;
  for (size_t m = 0; m < variable->modalityCount(); ++m) {
    if (const Modality* modality = variable->byIndex(static_cast<int32_t>(m)))
      addItem(modalities_, modality->name, modality->index);
  }
  for (size_t i = 0; i < matrix_.variableCount(); ++i) {
    if (canBeDaughter(matrix_, mother.front(), static_cast<int32_t>(i)))
      addItem(daughters_, matrix_.variable(i).name, static_cast<int32_t>(i));
  }
}

// The model's own checks decide; a refusal keeps the dialog and every
// choice in it.
void DependenceDialog::accept() {
  const std::vector<int32_t> mother = chosenData(mothers_);
  const std::vector<int32_t> modalities = chosenData(modalities_);
  const std::vector<int32_t> daughters = chosenData(daughters_);
  const int32_t motherIndex = mother.empty() ? -1 : mother.front();
  RuleGroup group;
  if (!makeRuleGroup(matrix_, motherIndex, modalities, daughters, group)) {
    showMessageBox(this, toQt(lastError()), MessageIcon::Warning);
    return;
  }
  values_.motherIndex = motherIndex;
  values_.applicableModalities = modalities;
  values_.daughterIndexes = daughters;
  QDialog::accept();
}

}  // namespace velda::ui
