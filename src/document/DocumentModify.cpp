// The document's Modify commands that edit the matrix directly.
#include <sstream>

#include "common/LastError.h"
#include "document/BusyScope.h"
#include "document/Document.h"
#include "model/CategoricalVariable.h"
#include "model/Dependence.h"
#include "model/SymbolicMatrix.h"
#include "model/Taxonomy.h"

namespace velda {

bool Document::showFailure() {
  ui_.showMessage(lastError(), MessageIcon::Warning);
  finishCommand();
  return false;
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

bool Document::addDependence() {
  if (!matrix_) return false;
  DependenceValues values;
  if (!ui_.askDependence(values)) return false;
  RuleGroup group;
  if (!makeRuleGroup(*matrix_, values.motherIndex, values.applicableModalities, values.daughterIndexes, group))
    return showFailure();
  if (!previewRule(*matrix_, console_, group)) {
    const Answer answer =
        ui_.ask("Some values will be replaced by NA and this can not be undone.\nDo you wish to continue ?",
                QuestionButtons::YesNo, MessageIcon::Question);
    if (answer != Answer::Yes) return false;
  }
  std::vector<std::string> descriptions;
  for (const auto& rule : group) {
    std::ostringstream text;
    describeRule(*matrix_, *rule, text);
    descriptions.push_back(text.str());
  }
  int applied;
  {
    BusyScope busy(ui_, "Applying rule...");
    applied = applyRule(*matrix_, std::move(group));
  }
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
  for (const auto& variable : matrix_->variables) {
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
