#include "ops/reduction/WorkSet.h"

#include <new>

#include "common/MessageBox.h"

namespace velda {

int WorkSet::buildFromAssertions(const SymbolicMatrix& matrix) {
  records.clear();
  try {
    records.reserve(matrix.orderedAssertions.size());
    for (const Assertion* assertion : matrix.orderedAssertions) records.emplace_back(*assertion);
  } catch (const std::bad_alloc&) {
    records.clear();
    return 0;
  }
  for (const Individual& individual : matrix.individuals) {
    bool registered = true;
    individual.forEachAssertion([&](const Assertion* a) {
      const auto slot = static_cast<size_t>(a->number);
      if (!registered || a->number < 0 || slot >= records.size() || &records[slot].assertion() != a) {
        registered = false;
        return;
      }
      try {
        records[slot].addMember(individual);
      } catch (const std::bad_alloc&) {
        registered = false;
      }
    });
    if (!registered) {
      showMessage("dans le if", MessageIcon::Warning);
      records.clear();
      return 0;
    }
  }
  return 1;
}

int WorkSet::buildFromClasses(const std::vector<std::unique_ptr<Assertion>>& classes) {
  records.clear();
  try {
    records.reserve(classes.size());
    for (const auto& member : classes) {
      records.emplace_back(*member);
      for (const Individual* individual : member->members) records.back().addMember(*individual);
    }
  } catch (const std::bad_alloc&) {
    records.clear();
    return 0;
  }
  return 1;
}

}  // namespace velda
