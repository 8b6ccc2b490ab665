#include "model/SymbolicMatrix.h"

#include <algorithm>
#include <new>

#include "common/LastError.h"
#include "model/CategoricalValue.h"
#include "model/CategoricalVariable.h"
#include "model/DerivedRowValues.h"

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
  for (Assertion& a : assertions) a.values.reserve(variables.size() + 1);
  DerivedRowValues derived(*this, std::span(&variable, 1));
  variables.reserve(variables.size() + 1);
  isDaughter.reserve(variables.size() + 1);
  // Nothing below allocates.
  size_t next = 0;
  for (Assertion& a : assertions) a.values.push_back(std::move(fresh[next++]));
  derived.handOver();
  if (variable->isCategorical()) ++categoricalCount_;
  variables.push_back(std::move(variable));
  isDaughter.push_back(0);
}

void SymbolicMatrix::appendVariables(std::vector<std::unique_ptr<SymbolicVariable>>& added,
                                     std::vector<std::vector<std::unique_ptr<SymbolicValue>>>& values) {
  const size_t total = variables.size() + added.size();
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
  variables.reserve(total);
  isDaughter.reserve(total);
  // Nothing below allocates.
  size_t row = 0;
  for (Assertion& a : assertions)
    for (auto& value : values[row++]) a.values.push_back(std::move(value));
  derived.handOver();
  for (auto& variable : added) {
    if (variable->isCategorical()) ++categoricalCount_;
    variables.push_back(std::move(variable));
    isDaughter.push_back(0);
  }
}

void SymbolicMatrix::recountKinds() {
  categoricalCount_ = static_cast<size_t>(
      std::count_if(variables.begin(), variables.end(), [](const auto& v) { return v->isCategorical(); }));
}

Assertion& SymbolicMatrix::createAssertion(std::string id) {
  Assertion fresh(std::move(id), static_cast<int32_t>(assertions.size()));
  fresh.values.reserve(variables.size());
  for (const auto& variable : variables) fresh.values.push_back(variable->newSymbolicValue());
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
  for (size_t v = 0; v < cellCount; ++v)
    if (!assertion.values[v]->addCell(individual.cells[v], individual.weight)) return false;
  return true;
}

bool SymbolicMatrix::recomputeAssertion(Assertion& assertion) {
  for (size_t v = 0; v < cellCount; ++v) assertion.values[v]->reset();
  assertion.memberCount = 0;
  for (const Individual* member : assertion.members)
    if (!addMember(assertion, *member)) return false;
  return true;
}

bool SymbolicMatrix::finish(bool sampled) {
  if (!individuals.empty()) individuals.rebuild(individuals.size());
  if (!assertions.empty()) assertions.rebuild(assertions.size());

  if (sampled) {
    for (const Individual& individual : individuals) {
      bool ok = true;
      individual.forEachAssertion([&](Assertion* a) { ok = ok && addMember(*a, individual); });
      if (!ok) {
        setError("Memory allocation failed");
        return false;
      }
    }
  }

  for (size_t v = 0; v < variables.size(); ++v) {
    if (!variables[v]->isCategorical()) continue;
    auto& variable = static_cast<CategoricalVariable&>(*variables[v]);
    if (variable.modalityCount() > 0) variable.compact();
    compactValues(v);
  }
  return true;
}

void SymbolicMatrix::compactValues(size_t v) {
  if (!variables[v]->isCategorical()) return;
  for (Assertion& a : assertions) {
    auto& value = static_cast<CategoricalValue&>(*a.values[v]);
    if (!value.entries.empty()) value.entries.rebuild(value.entries.size());
  }
}

int32_t& SymbolicMatrix::sampleCounter(int32_t assertionNumber) {
  const auto needed = static_cast<size_t>(assertionNumber);
  if (needed >= sampleCounters.size()) sampleCounters.resize(needed + kCounterGrowth, 0);
  highestCounter = std::max(highestCounter, assertionNumber);
  return sampleCounters[needed];
}

bool SymbolicMatrix::indexAssertions() {
  orderedAssertions.clear();
  try {
    orderedAssertions.assign(assertions.size(), nullptr);
  } catch (const std::bad_alloc&) {
    return false;
  }
  for (Assertion& a : assertions) {
    const auto slot = static_cast<size_t>(a.number);
    if (a.number < 0 || slot >= orderedAssertions.size() || orderedAssertions[slot]) {
      orderedAssertions.clear();
      return false;
    }
    orderedAssertions[slot] = &a;
  }
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
