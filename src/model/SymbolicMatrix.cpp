#include "model/SymbolicMatrix.h"

#include <algorithm>
#include <new>

#include "common/LastError.h"
#include "model/CategoricalValue.h"
#include "model/CategoricalVariable.h"
#include "model/DerivedRowValues.h"
#include "model/MatrixRows.h"

namespace velda {

SymbolicMatrix::SymbolicMatrix(size_t individualBuckets, size_t assertionBuckets)
    : individuals(individualBuckets), assertions(assertionBuckets), sampleCounters(kInitialCounters, 0) {}

std::unique_ptr<SymbolicMatrix> SymbolicMatrix::create(size_t individualBuckets, size_t assertionBuckets) {
  return std::unique_ptr<SymbolicMatrix>(new SymbolicMatrix(individualBuckets, assertionBuckets));
}

void SymbolicMatrix::appendVariable(std::unique_ptr<SymbolicVariable> variable) {
  std::vector<std::unique_ptr<SymbolicValue>> fresh;
  fresh.reserve(assertions.size());
  for (size_t i = 0; i < assertions.size(); ++i) fresh.push_back(variable->newSymbolicValue());
  for (Assertion& a : assertions) a.values.reserve(variables_.size() + 1);
  DerivedRowValues derived(*this, std::span(&variable, 1));
  variables_.reserve(variables_.size() + 1);
  isDaughter_.reserve(variables_.size() + 1);
  // Nothing below allocates.
  size_t next = 0;
  for (Assertion& a : assertions) a.values.push_back(std::move(fresh[next++]));
  derived.handOver();
  if (variable->isCategorical()) ++categoricalCount_;
  variables_.push_back(std::move(variable));
  isDaughter_.push_back(0);
}

void SymbolicMatrix::appendVariables(std::vector<std::unique_ptr<SymbolicVariable>>& added,
                                     std::vector<std::vector<std::unique_ptr<SymbolicValue>>>& values) {
  const size_t total = variables_.size() + added.size();
  for (Assertion& a : assertions) a.values.reserve(total);
  // values follows the table's walk order; the derived rows know their
  // assertion by number.
  std::vector<const DerivedRowValues::AssertionValues*> byNumber(assertions.size(), nullptr);
  size_t walked = 0;
  for (const Assertion& a : assertions) {
    const auto number = static_cast<size_t>(a.number);
    if (a.number >= 0 && number < byNumber.size()) byNumber[number] = &values[walked];
    ++walked;
  }
  DerivedRowValues derived(*this, added, byNumber);
  variables_.reserve(total);
  isDaughter_.reserve(total);
  // Nothing below allocates.
  size_t row = 0;
  for (Assertion& a : assertions)
    for (auto& value : values[row++]) a.values.push_back(std::move(value));
  derived.handOver();
  for (auto& variable : added) {
    if (variable->isCategorical()) ++categoricalCount_;
    variables_.push_back(std::move(variable));
    isDaughter_.push_back(0);
  }
}

void SymbolicMatrix::recountKinds() {
  categoricalCount_ = static_cast<size_t>(
      std::count_if(variables_.begin(), variables_.end(), [](const auto& v) { return v->isCategorical(); }));
}

namespace {

bool hasTaxonomy(const SymbolicVariable& variable) {
  return variable.isCategorical() && static_cast<const CategoricalVariable&>(variable).hasTaxonomy();
}

template <typename T, typename A>
void eraseChosen(std::vector<T, A>& items, std::span<const int32_t> chosen) {
  for (auto it = chosen.rbegin(); it != chosen.rend(); ++it)
    if (static_cast<size_t>(*it) < items.size()) items.erase(items.begin() + *it);
}

}  // namespace

void SymbolicMatrix::eraseVariables(std::span<const int32_t> chosen,
                                    std::vector<std::unique_ptr<CellValue[]>> keptCells) {
  size_t removedCells = 0;
  size_t removedMothers = 0;
  for (int32_t index : chosen) {
    if (index < 0 || static_cast<size_t>(index) >= cellCount_) continue;
    ++removedCells;
    if (variables_[static_cast<size_t>(index)]->isCategorical()) ++removedMothers;
  }
  if (removedCells) {
    size_t next = 0;
    for (Individual& individual : individuals) individual.cells = std::move(keptCells[next++]);
    cellCount_ -= removedCells;
  }
  motherCandidates_ -= std::min(removedMothers, motherCandidates_);
  forEachValueRow(*this, [&chosen](Assertion& row) { eraseChosen(row.values, chosen); });
  eraseChosen(variables_, chosen);
  eraseChosen(isDaughter_, chosen);
  recountKinds();
}

void SymbolicMatrix::takeVariables(SymbolicMatrix& first, SymbolicMatrix& second) {
  const size_t total = first.variableCount() + second.variableCount();
  variables_.reserve(total);
  isDaughter_.reserve(total);
  rules.reserve(first.rules.size() + second.rules.size());
  // Nothing below allocates.
  for (SymbolicMatrix* source : {&first, &second}) {
    for (size_t v = 0; v < source->variableCount(); ++v) {
      isDaughter_.push_back(source->isDaughter(v) ? 1 : 0);
      variables_.push_back(std::move(source->variables_[v]));
    }
    for (auto& rule : source->rules) rules.push_back(std::move(rule));
    cellCount_ += source->cellCount_;
    motherCandidates_ += source->motherCandidates_;
    source->variables_.clear();
    source->isDaughter_.clear();
    source->rules.clear();
    source->recountKinds();
    source->cellCount_ = 0;
    source->motherCandidates_ = 0;
  }
  recountKinds();
}

bool SymbolicMatrix::declareCellVariables(size_t count, size_t motherCandidates) {
  if (!individuals.empty() || count > variables_.size()) return false;
  cellCount_ = count;
  motherCandidates_ = motherCandidates;
  return true;
}

int32_t SymbolicMatrix::taxonomyCount() const {
  int32_t count = 0;
  for (const auto& variable : variables_)
    if (hasTaxonomy(*variable)) ++count;
  return count;
}

int32_t SymbolicMatrix::cellTaxonomyCount() const {
  int32_t count = 0;
  for (size_t v = 0; v < cellCount_ && v < variables_.size(); ++v)
    if (hasTaxonomy(*variables_[v])) ++count;
  return count;
}

Assertion& SymbolicMatrix::createAssertion(std::string id) {
  Assertion fresh(std::move(id), static_cast<int32_t>(assertions.size()));
  fresh.values.reserve(variables_.size());
  for (const auto& variable : variables_) fresh.values.push_back(variable->newSymbolicValue());
  return assertions.insert(std::move(fresh));
}

void SymbolicMatrix::link(Individual& individual, Assertion& assertion) {
  assertion.members.push_back(&individual);
  if (individual.direct) {
    try {
      individual.others.push_front(individual.direct);
    } catch (...) {
      assertion.members.pop_back();
      throw;
    }
  }
  individual.direct = &assertion;
}

void SymbolicMatrix::unlink(Individual& individual, Assertion& assertion) {
  // Members are searched from the end: the one unlinked is usually the
  // newest (a sampled-out row).
  auto& members = assertion.members;
  for (auto it = members.rbegin(); it != members.rend(); ++it) {
    if (*it != &individual) continue;
    members.erase(std::next(it).base());
    break;
  }
  if (individual.direct == &assertion) {
    if (individual.others.empty()) {
      individual.direct = nullptr;
    } else {
      individual.direct = individual.others.front();
      individual.others.pop_front();
    }
    return;
  }
  individual.others.remove(&assertion);
}

void SymbolicMatrix::removeIndividual(Individual& individual) {
  while (individual.direct) unlink(individual, *individual.direct);
  const std::string id = individual.id;
  individuals.erase(id);
}

bool SymbolicMatrix::addMember(Assertion& assertion, const Individual& individual) {
  ++assertion.memberCount;
  for (size_t v = 0; v < cellCount_; ++v)
    if (!assertion.values[v]->addCell(individual.cells[v], individual.weight)) return false;
  return true;
}

bool SymbolicMatrix::recomputeAssertion(Assertion& assertion) {
  for (size_t v = 0; v < cellCount_; ++v) assertion.values[v]->reset();
  assertion.memberCount = 0;
  for (const Individual* member : assertion.members)
    if (!addMember(assertion, *member)) return false;
  return true;
}

bool SymbolicMatrix::finish(MemberCells cells) {
  if (!individuals.empty()) individuals.rebuild(individuals.size());
  // The assertions are listed by number as their rebuild reads them.
  bool indexed = clearAssertionIndex();
  if (!assertions.empty())
    assertions.rebuild(assertions.size(), [&](Assertion& a) { indexed = indexed && placeInIndex(a); });

  std::vector<size_t> categorical;
  for (size_t v = 0; v < variables_.size(); ++v) {
    if (!variables_[v]->isCategorical()) continue;
    auto& variable = static_cast<CategoricalVariable&>(*variables_[v]);
    if (variable.modalityCount() > 0) variable.compact();
    categorical.push_back(v);
  }

  if (cells == MemberCells::ByIndividual) {
    for (const Individual& individual : individuals) {
      bool ok = true;
      individual.forEachAssertion([&](Assertion* a) { ok = ok && addMember(*a, individual); });
      if (!ok) {
        setError("Memory allocation failed");
        return false;
      }
    }
  }
  if (!indexed) {
    setError("Memory allocation failed");
    return false;
  }
  // The assertions and their values were made one after the other in
  // number order: compacted in that order, memory is read straight through.
  for (Assertion* a : orderedAssertions)
    for (size_t v : categorical) compactValue(*a, v);
  return true;
}

void SymbolicMatrix::compactValues(size_t v) {
  if (!variables_[v]->isCategorical()) return;
  for (Assertion& a : assertions) compactValue(a, v);
}

void SymbolicMatrix::compactValue(Assertion& a, size_t v) {
  auto& value = static_cast<CategoricalValue&>(*a.values[v]);
  if (!value.entries.empty()) value.entries.rebuild(value.entries.size());
}

int32_t& SymbolicMatrix::sampleCounter(int32_t assertionNumber) {
  const auto needed = static_cast<size_t>(assertionNumber);
  if (needed >= sampleCounters.size()) sampleCounters.resize(needed + kCounterGrowth, 0);
  highestCounter = std::max(highestCounter, assertionNumber);
  return sampleCounters[needed];
}

bool SymbolicMatrix::indexAssertions() {
  bool indexed = clearAssertionIndex();
  for (Assertion& a : assertions) indexed = indexed && placeInIndex(a);
  return indexed;
}

bool SymbolicMatrix::clearAssertionIndex() {
  orderedAssertions.clear();
  try {
    orderedAssertions.assign(assertions.size(), nullptr);
  } catch (const std::bad_alloc&) {
    return false;
  }
  return true;
}

bool SymbolicMatrix::placeInIndex(Assertion& a) {
  const auto slot = static_cast<size_t>(a.number);
  if (a.number < 0 || slot >= orderedAssertions.size() || orderedAssertions[slot]) {
    orderedAssertions.clear();
    return false;
  }
  orderedAssertions[slot] = &a;
  return true;
}

bool SymbolicMatrix::assertionsIndexed() const {
  if (orderedAssertions.size() != assertions.size()) return false;
  for (const Assertion& a : assertions) {
    const auto slot = static_cast<size_t>(a.number);
    if (a.number < 0 || slot >= orderedAssertions.size() || orderedAssertions[slot] != &a) return false;
  }
  return true;
}

}  // namespace velda
