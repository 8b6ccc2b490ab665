// The document's Modify commands that edit the matrix directly.
#include <algorithm>
#include <sstream>

#include "common/LastError.h"
#include "common/Progress.h"
#include "db/AddVariables.h"
#include "db/Connection.h"
#include "db/QueryStatement.h"
#include "db/TaxonomyQuery.h"
#include "document/BusyScope.h"
#include "document/DialogChecks.h"
#include "document/Document.h"
#include "model/CategoricalVariable.h"
#include "model/Dependence.h"
#include "model/SymbolicMatrix.h"
#include "model/Taxonomy.h"
#include "model/VariableRemoval.h"
#include "model/VariableSelection.h"

namespace velda {

bool Document::showFailure() {
  ui_.showMessage(lastError(), MessageIcon::Warning);
  finishCommand();
  return false;
}

bool Document::needConnection() {
  if (connection_) return true;
  ui_.showMessage("No data source: connect to a database first", MessageIcon::Warning);
  return false;
}

bool Document::addVariables(bool setValued) {
  if (!matrix_) return false;
  AddVariablesValues values;
  if (!ui_.askAddVariables(values, setValued) || refused(checkAddVariablesValues(values))) return false;
  if (!needConnection()) return false;
  const std::string sql = queryOf(values.tableName, values.query);
  // The rows are read inside the progress dialog; Cancel leaves the matrix
  // as it was, without a message.
  int added = 0;
  bool cancelled = false;
  ui_.runWithProgress(
      "Adding variables",
      [&] {
        added = setValued ? addMultipleVariable(*matrix_, *connection_, sql, console_)
                          : addUniqueVariables(*matrix_, *connection_, sql, console_);
        return added > 0;
      },
      cancelled);
  if (added < 0) return false;
  if (!added) return showFailure();
  setModified();
  ui_.refreshDisplay(Display::Variables);
  finishCommand();
  return true;
}

bool Document::addSingleValuedVariables() { return addVariables(false); }
bool Document::addSetValuedVariable() { return addVariables(true); }

bool Document::removeVariables() {
  if (!matrix_) return false;
  std::vector<int32_t> offered;
  if (!removableVariables(*matrix_, offered)) return showFailure();
  VariableSelection values;
  if (!ui_.askRemoveVariables(values) || values.variableIndexes.empty()) return false;
  // A choice from elsewhere than the dialog (the command line) is held to
  // what the dialog offers; repeats count once.
  std::vector<int32_t> chosen;
  if (!sortedSelection(values.variableIndexes, matrix_->variableCount(), chosen)) return showFailure();
  if (chosen.size() >= matrix_->variableCount()) {
    ui_.showMessage("Impossible to remove all the variables", MessageIcon::Warning);
    return false;
  }
  for (int32_t index : chosen) {
    if (std::binary_search(offered.begin(), offered.end(), index)) continue;
    setError("Variable '%s' can not be removed", matrix_->variable(static_cast<size_t>(index)).name.c_str());
    return showFailure();
  }
  BusyScope busy(ui_, "Removing variables...");
  if (!velda::removeVariables(*matrix_, chosen, console_)) return showFailure();
  setModified();
  ui_.refreshDisplay(Display::Variables);
  finishCommand();
  return true;
}

bool Document::createTaxonomy() {
  if (!matrix_) return false;
  TaxonomyValues values;
  if (!ui_.askTaxonomy(values) || refused(checkTaxonomyValues(values))) return false;
  const auto index = static_cast<size_t>(values.variableIndex);
  if (index >= matrix_->variableCount() || !matrix_->variable(index).isCategorical()) {
    ui_.showMessage("No variable selected", MessageIcon::Warning);
    return false;
  }
  if (!needConnection()) return false;
  // The rows are read inside the progress dialog; Cancel, like a failure,
  // leaves the variable's previous taxonomy in place, without a message.
  const std::string sql = queryOf(values.tableName, values.query);
  int covering = 0;
  bool cancelled = false;
  ui_.runWithProgress(
      "Taxonomizing variable",
      [&] {
        progressLine1("Taxonomizing variable...");
        QueryStatement statement;
        if (!statement.execute(*connection_, sql)) {
          setError("%s", statement.errorText().c_str());
          return false;
        }
        covering = applyTaxonomy(*matrix_, statement, values.variableIndex);
        return covering > 0;
      },
      cancelled);
  if (covering < 0) return false;
  if (!covering) return showFailure();
  printTaxonomyCoverage(console_, matrix_->variable(index), covering);
  setModified();
  ui_.refreshDisplay(Display::Variables);
  finishCommand();
  return true;
}

bool Document::removeTaxonomies() {
  if (!matrix_) return false;
  VariableSelection values;
  if (!ui_.askRemoveTaxonomies(values) || values.variableIndexes.empty()) return false;
  BusyScope busy(ui_, "Removing taxonomies...");
  if (!velda::removeTaxonomies(*matrix_, values.variableIndexes, console_)) return showFailure();
  setModified();
  ui_.refreshDisplay(Display::Variables);
  finishCommand();
  return true;
}

// Previewing and applying a rule walk every individual inside the progress
// dialog; Cancel leaves the matrix as it was, without a message.
int Document::withRuleProgress(const std::function<int()>& step) {
  int result = 0;
  bool cancelled = false;
  ui_.runWithProgress(
      "Applying rule",
      [&] {
        progressLine1("Applying rule...");
        result = step();
        return result > 0;
      },
      cancelled);
  return result;
}

bool Document::addDependence() {
  if (!matrix_) return false;
  DependenceValues values;
  RuleGroup group;
  // No to the replacement question keeps the dialog, with the same choice;
  // only Cancel in the dialog ends the command.
  for (;;) {
    if (!ui_.askDependence(values)) return false;
    if (!makeRuleGroup(*matrix_, values.motherIndex, values.applicableModalities, values.daughterIndexes, group))
      return showFailure();
    const int unchanged = withRuleProgress([&] { return previewRule(*matrix_, console_, group); });
    if (unchanged < 0) return false;
    if (unchanged) break;
    const Answer answer =
        ui_.ask("Some values will be replaced by NA and this can not be undone.\nDo you wish to continue ?",
                QuestionButtons::YesNo, MessageIcon::Question);
    if (answer == Answer::Yes) break;
  }
  std::vector<std::string> descriptions;
  for (const auto& rule : group) {
    std::ostringstream text;
    describeRule(*matrix_, *rule, text);
    descriptions.push_back(text.str());
  }
  const int applied = withRuleProgress([&] { return applyRule(*matrix_, std::move(group)); });
  if (applied < 0) return false;
  if (!applied) return showFailure();
  console_.print("%d rules added:", static_cast<int>(descriptions.size()));
  for (const std::string& description : descriptions) console_.print("  %s", description.c_str());
  setModified();
  refreshDisplays();
  finishCommand();
  return true;
}

bool Document::editVariableProperties() {
  if (!matrix_) return false;
  VariablePropertiesValues values;
  for (const auto& variable : matrix_->variables()) {
    VariableProperty property;
    property.active = variable->active != 0;
    if (variable->isCategorical()) property.mode = static_cast<const CategoricalVariable&>(*variable).mode;
    values.variables.push_back(property);
  }
  if (ui_.askVariableProperties(values) && values.variables.size() == matrix_->variableCount()) {
    for (size_t i = 0; i < values.variables.size(); ++i) {
      SymbolicVariable& variable = matrix_->variable(i);
      variable.active = values.variables[i].active ? 1 : 0;
      const int32_t mode = values.variables[i].mode;
      if (variable.isCategorical() && variable.multiple && mode >= MODE_BOOLEAN && mode <= MODE_KT_ESTIMATE)
        static_cast<CategoricalVariable&>(variable).mode = mode;
    }
  }
  setModified();
  ui_.refreshDisplay(Display::Variables);
  finishCommand();
  return true;
}

}  // namespace velda
