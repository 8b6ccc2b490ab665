#pragma once

#include <cstdint>
#include <optional>

#include "common/ChainedHashTable.h"
#include "model/CategoricalVariable.h"
#include "model/SymbolicValue.h"
#include "model/ValueEntryTable.h"

namespace velda {

// Keys a table by a modality's index: its stable number.
template <typename T>
struct ModalityIndexTraits {
  using Key = int32_t;
  static Key key(const T& value) { return value.index; }
  static uint32_t hash(Key key) { return static_cast<uint32_t>(key); }
  static bool equal(Key a, Key b) { return a == b; }
};

// A category or a weighted set of categories.
class CategoricalValue final : public SymbolicValue {
 public:
  static constexpr size_t kMultipleBuckets = 9;
  static constexpr size_t kSingleBuckets = 1;

  explicit CategoricalValue(const CategoricalVariable& variable);

  void reset() override;
  [[nodiscard]] bool addCell(const CellValue& cell, double weight) override;
  void writeText(std::ostream& out) const override;
  void writeValue(std::ostream& out) const override;
  double size() const override { return entries.empty() ? 1.0 : static_cast<double>(entries.size()); }
  // The number of modalities present in both values.
  double overlap(const SymbolicValue& other) const override;
  bool hasData() const override { return !entries.empty(); }
  // Rehashes the entries to as many buckets as entries; throws
  // std::bad_alloc, with the entries as they were, when memory runs out.
  void rebuild() { entries.rebuild(entries.size()); }

  const CategoricalVariable& categoricalVariable() const { return static_cast<const CategoricalVariable&>(variable()); }
  // The weight that renderings read: the subtree weight under a taxonomy.
  double shownWeight(const ValueEntry& entry) const {
    return categoricalVariable().hasTaxonomy() ? entry.subtreeWeight : entry.weight;
  }

  double shownWeightSum() const;
  // The share of the members' weight that went to a modality of shown
  // weight w: w over the weight that is neither NULL nor NA.
  double probability(double w) const { return w / describedWeight(); }
  // The weight that the variable's display mode shows for a modality of
  // shown weight w (sum: shownWeightSum(), used by the KT-estimate); none
  // for a single-valued variable or the boolean mode.
  std::optional<double> modeWeight(double w, double sum) const;

  ValueEntryTable entries;

 private:
  // Writes "(w)" for a modality of a set-valued variable, as the mode says.
  void writeWeight(std::ostream& out, double w, double sum) const;
  // The weight of the individuals that the entries describe (the total
  // less NULL and NA), the denominator of the probabilist weights.
  double describedWeight() const;
};

}  // namespace velda
