#include "ui/frame/CKORVAView.h"

#include <QApplication>
#include <QStatusBar>

#include "db/Connection.h"
#include "document/view/ViewerLauncher.h"
#include "model/CategoricalVariable.h"
#include "model/SymbolicMatrix.h"
#include "model/VariableRemoval.h"
#include "ui/dialogs/ChoiceListDialog.h"
#include "ui/dialogs/DependenceDialog.h"
#include "ui/dialogs/DependencesDialog.h"
#include "ui/dialogs/ExportDialog.h"
#include "ui/dialogs/ExtractionDialog.h"
#include "ui/dialogs/JoinDialog.h"
#include "ui/dialogs/NumberParameterDialog.h"
#include "ui/dialogs/ProgressDialog.h"
#include "ui/dialogs/TaxonomiesDialog.h"
#include "ui/dialogs/VariablePropertiesDialog.h"
#include "ui/dialogs/VolumeMatrixDialog.h"
#include "ui/widgets/FileDialogs.h"
#include "ui/widgets/Latin1.h"
#include "ui/widgets/MessageBoxes.h"

namespace velda::ui {

namespace {

// Runs a query dialog for one purpose with the values it starts from.
bool runExtractionDialog(QueryPurpose purpose, ExtractionDialog::Values& values, DataSourceLink& link,
                         const SymbolicMatrix* matrix, QWidget* parent) {
  ExtractionDialog dialog(purpose, false, values, link, matrix, parent);
  if (dialog.exec() != QDialog::Accepted) return false;
  values = dialog.values();
  return true;
}

}  // namespace

CKORVAView::CKORVAView(QWidget* parent) : ConsoleView(parent), previousMessageTarget_(messageBoxTarget()) {
  document_ = std::make_unique<Document>(*this);
  attach(document_->console());
  setMessageBoxTarget(this);
  QObject::connect(this, &ConsoleView::commandRequested, this, [this](int id) { document_->execute(id); });
}

CKORVAView::~CKORVAView() {
  setMessageBoxTarget(previousMessageTarget_);
  detach();
  document_.reset();
}

Answer CKORVAView::ask(const std::string& question, QuestionButtons buttons, MessageIcon icon) {
  const QMessageBox::StandardButtons choices = buttons == QuestionButtons::YesNoCancel
                                                   ? QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel
                                                   : QMessageBox::Yes | QMessageBox::No;
  switch (askQuestion(this, toQt(question), choices, icon)) {
    case QMessageBox::Yes: return Answer::Yes;
    case QMessageBox::No: return Answer::No;
    default: return buttons == QuestionButtons::YesNoCancel ? Answer::Cancel : Answer::No;
  }
}

void CKORVAView::showMessage(const std::string& text, MessageIcon icon) { showMessageBox(this, toQt(text), icon); }

bool CKORVAView::chooseFile(const FileRequest& request, FileChoice& choice) {
  return ui::chooseFile(this, request, choice);
}

bool CKORVAView::askNew(NewValues& values) {
  ExtractionDialog::Values chosen{values, -1};
  if (!runExtractionDialog(QueryPurpose::NewData, chosen, *this, document_->matrix(), this)) return false;
  values = chosen.query;
  return true;
}

bool CKORVAView::askAddVariables(AddVariablesValues& values, bool) {
  ExtractionDialog::Values chosen;
  chosen.query.tableName = values.tableName;
  chosen.query.query = values.query;
  if (!runExtractionDialog(QueryPurpose::AddVariables, chosen, *this, document_->matrix(), this)) return false;
  values.tableName = chosen.query.tableName;
  values.query = chosen.query.query;
  return true;
}

bool CKORVAView::askTaxonomy(TaxonomyValues& values) {
  ExtractionDialog::Values chosen;
  chosen.query.tableName = values.tableName;
  chosen.query.query = values.query;
  chosen.variableIndex = values.variableIndex;
  if (!runExtractionDialog(QueryPurpose::Taxonomy, chosen, *this, document_->matrix(), this)) return false;
  values.tableName = chosen.query.tableName;
  values.query = chosen.query.query;
  values.variableIndex = chosen.variableIndex;
  return true;
}

bool CKORVAView::askDependence(DependenceValues& values) {
  if (!document_->matrix()) return false;
  DependenceDialog dialog(*document_->matrix(), values, this);
  if (dialog.exec() != QDialog::Accepted) return false;
  values = dialog.values();
  return true;
}

bool CKORVAView::askRemoveVariables(VariableSelection& values) {
  const SymbolicMatrix* matrix = document_->matrix();
  std::vector<int32_t> offered;
  if (!matrix || !removableVariables(*matrix, offered)) return false;
  std::vector<ChoiceListDialog::Item> items;
  for (int32_t index : offered) items.emplace_back(index, matrix->variable(static_cast<size_t>(index)).name);
  ChoiceListDialog dialog(QStringLiteral("Remove variables"), QStringLiteral("Variable"), items, this);
  if (dialog.exec() != QDialog::Accepted) return false;
  values.variableIndexes = dialog.chosen();
  return true;
}

bool CKORVAView::askRemoveTaxonomies(VariableSelection& values) {
  const SymbolicMatrix* matrix = document_->matrix();
  if (!matrix) return false;
  std::vector<ChoiceListDialog::Item> items;
  for (size_t i = 0; i < matrix->variableCount(); ++i) {
    const auto* variable = dynamic_cast<const CategoricalVariable*>(&matrix->variable(i));
    if (variable && variable->hasTaxonomy()) items.emplace_back(static_cast<int32_t>(i), variable->name);
  }
  ChoiceListDialog dialog(QStringLiteral("Remove taxonomies"), QStringLiteral("Taxonomy variable"), items, this);
  if (dialog.exec() != QDialog::Accepted) return false;
  values.variableIndexes = dialog.chosen();
  return true;
}

bool CKORVAView::askVariableProperties(VariablePropertiesValues& values) {
  if (!document_->matrix()) return false;
  VariablePropertiesDialog dialog(*document_->matrix(), values, this);
  if (dialog.exec() != QDialog::Accepted) return false;
  values = dialog.values();
  return true;
}

bool CKORVAView::askReduction(ReductionValues& values) {
  NumberParameterDialog dialog(
      QStringLiteral("Reduction parameter"), QStringLiteral("Reduction threshold"), values.threshold,
      [](int32_t value) { return checkReductionValues(ReductionValues{value}); }, this);
  if (dialog.exec() != QDialog::Accepted) return false;
  values.threshold = dialog.value();
  return true;
}

bool CKORVAView::askDivision(DivisionValues& values) {
  NumberParameterDialog dialog(
      QStringLiteral("Division Parameter"), QStringLiteral("Div Class number"), values.classes,
      [](int32_t value) { return checkDivisionValues(DivisionValues{value}); }, this);
  if (dialog.exec() != QDialog::Accepted) return false;
  values.classes = dialog.value();
  return true;
}

bool CKORVAView::askExport(ExportValues& values) {
  ExportDialog dialog(values, this);
  if (dialog.exec() != QDialog::Accepted) return false;
  values = dialog.values();
  return true;
}

bool CKORVAView::askJoin(JoinValues& values) {
  JoinDialog dialog(values, this);
  if (dialog.exec() != QDialog::Accepted) return false;
  values = dialog.values();
  return true;
}

int CKORVAView::runWithProgress(const std::string& title, const std::function<int()>& operation, bool& cancelled) {
  ProgressDialog dialog(toQt(title), this);
  const int result = dialog.run(operation);
  cancelled = dialog.wasCancelled();
  return result;
}

bool CKORVAView::startViewer(const std::string& path, ViewerKind kind) { return launchViewer(path, kind); }

void CKORVAView::showTaxonomies() {
  if (!document_->matrix()) return;
  TaxonomiesDialog dialog(*document_->matrix(), this);
  dialog.exec();
}

void CKORVAView::showDependences() {
  if (!document_->matrix()) return;
  DependencesDialog dialog(*document_->matrix(), this);
  dialog.exec();
}

void CKORVAView::showVolumeMatrix() {
  if (!document_->matrix()) return;
  VolumeMatrixDialog dialog(*document_->matrix(), this);
  dialog.exec();
}

void CKORVAView::setStatusText(const std::string& text) { emit statusTextChanged(toQt(text)); }

void CKORVAView::setWaitCursor(bool on) {
  if (on) {
    QApplication::setOverrideCursor(Qt::WaitCursor);
  } else {
    QApplication::restoreOverrideCursor();
  }
}

void CKORVAView::setTitle(const std::string& title) { emit titleChanged(toQt(title)); }
void CKORVAView::clearDisplay(Display display) { emit displayCleared(display); }
void CKORVAView::refreshDisplay(Display display) { emit displayRefreshed(display); }
void CKORVAView::documentChanged() { emit stateChanged(); }

const Connection* CKORVAView::connection() const { return document_->connection(); }

bool CKORVAView::connect(const std::string& connectionString) { return document_->connect(connectionString); }

}  // namespace velda::ui
