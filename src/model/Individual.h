#pragma once

#include <cstdint>
#include <forward_list>
#include <memory>
#include <string>

#include "model/CellValue.h"

namespace velda {

class Assertion;

// The largest weight an individual may carry, so that the sums of weights
// that the exported files show stay finite.
constexpr double kLargestWeight = 1e150;

// One database row's subject: its identifier, weight and cells, and the
// assertions that it belongs to.
class Individual {
 public:
  Individual(std::string id, size_t cellCount, double weight = 1.0)
      : id(std::move(id)), weight(weight), cells(new CellValue[cellCount]) {}

  // The assertions of the membership: the newest first, then the list.
  template <typename Visit>
  void forEachAssertion(Visit visit) const {
    if (!direct) return;
    visit(direct);
    for (Assertion* a : others) visit(a);
  }
  bool belongsTo(const Assertion* assertion) const;
  bool hasMembership() const { return direct != nullptr; }
  size_t membershipCount() const;

  std::string id;
  double weight;
  std::unique_ptr<CellValue[]> cells;
  Assertion* direct = nullptr;           // the newest assertion linked
  std::forward_list<Assertion*> others;  // the earlier ones, newest first
};

}  // namespace velda
