#include "model/Dependence.h"

#include <algorithm>
#include <array>
#include <new>
#include <vector>

#include "common/ConsoleLog.h"
#include "common/LastError.h"
#include "common/Progress.h"
#include "model/CategoricalValue.h"
#include "model/CategoricalVariable.h"
#include "model/SymbolicMatrix.h"
#include "model/Taxonomy.h"

namespace velda {

namespace {

constexpr long kListedValues = 30;
constexpr int kCancelled = -1;

bool isVariable(const SymbolicMatrix& matrix, int32_t index) {
  return index >= 0 && static_cast<size_t>(index) < matrix.variableCount();
}

// The rule's mother, or null when the rule does not name a categorical
// variable (a damaged rule from a file).
const CategoricalVariable* motherOf(const SymbolicMatrix& matrix, const DependenceRule& rule) {
  if (!isVariable(matrix, rule.mother) || !matrix.variable(static_cast<size_t>(rule.mother)).isCategorical())
    return nullptr;
  return &static_cast<const CategoricalVariable&>(matrix.variable(static_cast<size_t>(rule.mother)));
}

const std::string& nameOf(const SymbolicMatrix& matrix, int32_t index) {
  static const std::string none;
  return isVariable(matrix, index) ? matrix.variable(static_cast<size_t>(index)).name : none;
}

bool isLeafModality(const CategoricalVariable& variable, int32_t index) {
  const Modality* modality = variable.byIndex(index);
  return modality && variable.modalities.find(modality->name) == modality;
}

// Whether the rule makes the individual's daughter cell NA: its mother cell
// is NULL or NA, or holds a modality outside the applicable set.
bool isAffected(const Individual& individual, const DependenceRule& rule) {
  const CellValue& mother = individual.cells[static_cast<size_t>(rule.mother)];
  if (!mother.hasModality()) return true;
  return rule.applicable.find(mother.modality->index) == nullptr;
}

// Whether every rule of the group names cell-holding variables, the mother a
// categorical one: what previewing and applying read.
bool fitsCells(const SymbolicMatrix& matrix, const RuleGroup& group) {
  for (const auto& rule : group) {
    if (!canBeMother(matrix, rule->mother) || rule->mother != group.front()->mother) return false;
    if (!isVariable(matrix, rule->daughter) || static_cast<size_t>(rule->daughter) >= matrix.cellCount()) return false;
  }
  return true;
}

[[nodiscard]] bool chooseMother(const SymbolicMatrix& matrix, int32_t motherIndex) {
  if (motherIndex < 0) {
    setError("No mother variable selected");
    return false;
  }
  if (!isVariable(matrix, motherIndex)) {
    setError("Variable %d does not exist", motherIndex);
    return false;
  }
  if (canBeMother(matrix, motherIndex)) return true;
  setError("Variable '%s' can not be a mother", matrix.variable(static_cast<size_t>(motherIndex)).name.c_str());
  return false;
}

[[nodiscard]] bool checkApplicable(const CategoricalVariable& mother, std::span<const int32_t> applicable) {
  if (applicable.empty()) {
    setError("No modalities selected");
    return false;
  }
  for (int32_t index : applicable) {
    if (isLeafModality(mother, index)) continue;
    setError("Modality %d of '%s' does not exist", index, mother.name.c_str());
    return false;
  }
  return true;
}

[[nodiscard]] bool checkDaughters(const SymbolicMatrix& matrix, int32_t motherIndex,
                                  std::span<const int32_t> daughters) {
  if (daughters.empty()) {
    setError("No daughter variables selected");
    return false;
  }
  for (int32_t index : daughters) {
    if (canBeDaughter(matrix, motherIndex, index)) continue;
    if (!isVariable(matrix, index)) {
      setError("Variable %d does not exist", index);
    } else {
      setError("Variable '%s' can not be a daughter of '%s'", matrix.variable(static_cast<size_t>(index)).name.c_str(),
               matrix.variable(static_cast<size_t>(motherIndex)).name.c_str());
    }
    return false;
  }
  return true;
}

// Refills one value from the assertion's members, as the extraction added
// them: a single-valued variable keeps the first contribution only.
[[nodiscard]] bool refillValue(Assertion& assertion, size_t variableIndex) {
  SymbolicValue& value = assertion.value(variableIndex);
  value.reset();
  const bool single = !value.variable().multiple;
  for (const Individual* member : assertion.members) {
    if (single && value.totalWeight > 0.0) break;
    if (!value.addCell(member->cells[variableIndex], member->weight)) return false;
  }
  if (value.variable().isCategorical()) computeSubtreeWeights(static_cast<CategoricalValue&>(value));
  return true;
}

// The numbers of the mother's modalities outside the set, in table order,
// no more of them than the set has modalities.
void writeNonApplicable(const CategoricalVariable& mother, const DependenceRule& rule, std::ostream& out) {
  const size_t bound = rule.applicable.size();
  size_t written = 0;
  for (const Modality& modality : mother.modalities) {
    if (written >= bound) return;
    if (rule.applicable.find(modality.index)) continue;
    out << (written ? "," : "") << modality.index + 1;
    ++written;
  }
}

// Cancel is enabled for the lifetime of a scope, however the scope ends.
class CancelEnabled {
 public:
  CancelEnabled() { progressEnableCancel(true); }
  ~CancelEnabled() { progressEnableCancel(false); }
  CancelEnabled(const CancelEnabled&) = delete;
  CancelEnabled& operator=(const CancelEnabled&) = delete;
};

// Calls visit on every individual the first rule of the group makes NA,
// showing the individual's row every hundred rows and polling for Cancel
// before each one. False when the user cancelled.
template <typename Individuals, typename Visit>
bool visitAffected(Individuals& individuals, const DependenceRule& rule, Visit&& visit) {
  CancelEnabled cancelEnabled;
  int row = 0;
  for (auto& individual : individuals) {
    if (cancelRequested()) return false;
    progressRow(++row);
    if (isAffected(individual, rule)) visit(individual);
  }
  return true;
}

void replaceByNA(CellValue& cell) { cell.flags = (cell.flags & ~static_cast<uint32_t>(CELL_NULL)) | CELL_NA; }

void recordRule(SymbolicMatrix& matrix, const DependenceRule& rule) {
  SymbolicVariable& mother = matrix.variable(static_cast<size_t>(rule.mother));
  SymbolicVariable& daughter = matrix.variable(static_cast<size_t>(rule.daughter));
  daughter.rule = &rule;
  daughter.motherIndex = rule.mother;
  daughter.nextDaughter = mother.firstDaughter;
  mother.firstDaughter = rule.daughter;
  matrix.markDaughter(static_cast<size_t>(rule.daughter));
}

}  // namespace

bool canBeMother(const SymbolicMatrix& matrix, int32_t variableIndex) {
  if (!isVariable(matrix, variableIndex) || static_cast<size_t>(variableIndex) >= matrix.cellCount()) return false;
  return matrix.variable(static_cast<size_t>(variableIndex)).isCategorical();
}

bool canBeDaughter(const SymbolicMatrix& matrix, int32_t motherIndex, int32_t variableIndex) {
  if (!canBeMother(matrix, motherIndex) || variableIndex == motherIndex) return false;
  if (!isVariable(matrix, variableIndex) || static_cast<size_t>(variableIndex) >= matrix.cellCount()) return false;
  const auto daughter = static_cast<size_t>(variableIndex);
  if (matrix.isDaughter(daughter)) return false;
  // The walk is bounded so that damaged links cannot keep it going.
  int32_t ancestor = matrix.variable(static_cast<size_t>(motherIndex)).motherIndex;
  for (size_t steps = 0; isVariable(matrix, ancestor) && steps < matrix.variableCount(); ++steps) {
    if (ancestor == variableIndex) return false;
    ancestor = matrix.variable(static_cast<size_t>(ancestor)).motherIndex;
  }
  return true;
}

bool makeRuleGroup(const SymbolicMatrix& matrix, int32_t motherIndex, std::span<const int32_t> applicable,
                   std::span<const int32_t> daughters, RuleGroup& group) {
  if (!chooseMother(matrix, motherIndex)) return false;
  const auto& mother = static_cast<const CategoricalVariable&>(matrix.variable(static_cast<size_t>(motherIndex)));
  if (!checkApplicable(mother, applicable) || !checkDaughters(matrix, motherIndex, daughters)) return false;
  const size_t buckets = mother.modalityCount() ? mother.modalityCount() : 1;
  RuleGroup made;
  try {
    for (int32_t daughter : daughters) {
      bool repeated = false;
      for (const auto& rule : made) repeated = repeated || rule->daughter == daughter;
      if (repeated) continue;
      auto rule = std::make_unique<DependenceRule>(motherIndex, daughter, buckets);
      for (int32_t index : applicable)
        if (!rule->applicable.find(index)) rule->applicable.insert(index);
      // As compact as a reopened project has it, so the rule reads the same.
      rule->applicable.rebuild(rule->applicable.size());
      made.push_back(std::move(rule));
    }
  } catch (const std::bad_alloc&) {
    setError("Memory allocation failed");
    return false;
  }
  for (size_t i = 1; i < made.size(); ++i) made[i - 1]->next = made[i].get();
  group = std::move(made);
  return true;
}

int previewRule(const SymbolicMatrix& matrix, ConsoleLog& console, const RuleGroup& group) {
  if (group.empty() || !fitsCells(matrix, group)) return 1;
  // The values are listed once the walk is complete, so that a cancelled
  // preview prints nothing.
  struct Listed {
    const Individual* individual;
    const DependenceRule* rule;
  };
  std::array<Listed, kListedValues> listed;
  long counted = 0;
  const bool complete = visitAffected(matrix.individuals, *group.front(), [&](const Individual& individual) {
    for (const auto& rule : group) {
      if (individual.cells[static_cast<size_t>(rule->daughter)].isMissing()) continue;
      if (counted < kListedValues) listed[static_cast<size_t>(counted)] = {&individual, rule.get()};
      ++counted;
    }
  });
  if (!complete) return kCancelled;
  for (long i = 0; i < std::min(counted, kListedValues); ++i) {
    const Listed& value = listed[static_cast<size_t>(i)];
    const auto daughter = static_cast<size_t>(value.rule->daughter);
    console.print("%s: variable '%s': value '%s' will be replaced by NA", value.individual->id.c_str(),
                  matrix.variable(daughter).name.c_str(), cellText(value.individual->cells[daughter]).c_str());
  }
  if (counted == 0) return 1;
  if (counted > kListedValues) console.print("...");
  console.print("   %ld values will be replaced by NA", counted);
  return 0;
}

int applyRule(SymbolicMatrix& matrix, RuleGroup&& group) {
  if (group.empty()) return 1;
  if (!fitsCells(matrix, group)) {
    setError("Invalid dependence rule");
    return 0;
  }
  // The affected individuals are found first, while Cancel can still leave
  // the matrix as it was; then the rules are recorded without a pause.
  std::vector<Individual*> affected;
  try {
    if (!visitAffected(matrix.individuals, *group.front(),
                       [&affected](Individual& individual) { affected.push_back(&individual); }))
      return kCancelled;
    matrix.rules.reserve(matrix.rules.size() + group.size());
  } catch (const std::bad_alloc&) {
    setError("Memory allocation failed");
    return 0;
  }
  for (Individual* individual : affected)
    for (const auto& rule : group) replaceByNA(individual->cells[static_cast<size_t>(rule->daughter)]);
  for (auto& rule : group) {
    recordRule(matrix, *rule);
    matrix.rules.push_back(std::move(rule));
  }
  const size_t firstOfGroup = matrix.rules.size() - group.size();
  group.clear();
  for (size_t r = firstOfGroup; r < matrix.rules.size(); ++r) {
    const auto daughter = static_cast<size_t>(matrix.rules[r]->daughter);
    for (Assertion& assertion : matrix.assertions) {
      if (refillValue(assertion, daughter)) continue;
      setError("Memory allocation failed");
      return 0;
    }
    try {
      matrix.compactValues(daughter);
    } catch (const std::bad_alloc&) {
      setError("Memory allocation failed");
      return 0;
    }
  }
  return 1;
}

void describeRule(const SymbolicMatrix& matrix, const DependenceRule& rule, std::ostream& out) {
  const CategoricalVariable* mother = motherOf(matrix, rule);
  out << nameOf(matrix, rule.daughter) << " is applicable if " << nameOf(matrix, rule.mother) << " in {";
  bool firstName = true;
  for (const ApplicableModality& applicable : rule.applicable) {
    const Modality* modality = mother ? mother->byIndex(applicable.index) : nullptr;
    out << (firstName ? "" : ", ") << '"' << (modality ? modality->name : std::string()) << '"';
    firstName = false;
  }
  out << '}';
}

void writeRule(const SymbolicMatrix& matrix, const DependenceRule& rule, std::ostream& out, int motherNumber,
               int daughterNumber) {
  out << "  ((" << motherNumber << " = (";
  if (const CategoricalVariable* mother = motherOf(matrix, rule)) writeNonApplicable(*mother, rule, out);
  out << "))  (" << daughterNumber << " = NA))";
}

}  // namespace velda
