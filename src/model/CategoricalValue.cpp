#include "model/CategoricalValue.h"

#include <new>

namespace velda {

namespace {

// Writes the separator before the item-th printed item (from 1): a comma
// between items and a line break before every tenth.
void writeSeparator(std::ostream& out, int item) {
  if (item > 1) out << ',';
  if (item % 10 == 0) out << "\n    ";
}

}  // namespace

CategoricalValue::CategoricalValue(const CategoricalVariable& variable)
    : SymbolicValue(variable), entries(variable.multiple ? kMultipleBuckets : kSingleBuckets) {}

void CategoricalValue::reset() {
  nullWeight = naWeight = totalWeight = 0.0;
  entries.clear();
}

int CategoricalValue::addCell(const CellValue& cell, double weight) {
  int result;
  if (!acceptCell(cell, weight, result)) return result;
  const int32_t index = cell.modality->index;
  ValueEntry* entry = entries.find(index);
  if (!entry) {
    try {
      entry = &entries.insert(index);
    } catch (const std::bad_alloc&) {
      return 0;
    }
  }
  entry->weight += weight;
  return 1;
}

double CategoricalValue::shownWeightSum() const {
  double sum = 0.0;
  for (const ValueEntry& entry : entries) sum += shownWeight(entry);
  return sum;
}

double CategoricalValue::describedWeight() const {
  const double described = totalWeight - nullWeight - naWeight;
  if (described > 0.0) return described;
  // Rounding can leave nothing when huge and small weights mix; the
  // entries' own weights make the same number in exact arithmetic.
  double sum = 0.0;
  for (const ValueEntry& entry : entries) sum += entry.weight;
  return sum;
}

std::optional<double> CategoricalValue::modeWeight(double w, double sum) const {
  const CategoricalVariable& var = categoricalVariable();
  if (!var.multiple) return std::nullopt;
  switch (var.mode) {
    case MODE_CARDINALITY: return w;
    case MODE_PROBABILIST: return probability(w);
    case MODE_KT_ESTIMATE: return (w + 0.5) / (sum + 0.5 * static_cast<double>(var.modalityCount()));
    default: return std::nullopt;
  }
}

void CategoricalValue::writeWeight(std::ostream& out, double w, double sum) const {
  if (const std::optional<double> shown = modeWeight(w, sum)) out << '(' << *shown << ')';
}

void CategoricalValue::writeValue(std::ostream& out) const {
  if (!hasData()) {
    out << (isNA() ? "NA" : "NU");
    return;
  }
  const CategoricalVariable& var = categoricalVariable();
  const double sum = shownWeightSum();
  if (var.multiple) out << '(';
  int item = 0;
  if (var.mode != MODE_KT_ESTIMATE) {
    for (const ValueEntry& entry : entries) {
      writeSeparator(out, ++item);
      out << entry.index + 1;
      writeWeight(out, shownWeight(entry), sum);
    }
  } else {
    // Each modality walks the entries up to its own: every entry walked
    // before it prints the modality's number with a zero weight.
    const auto m = static_cast<int32_t>(var.modalityCount());
    for (int32_t i = 0; i < m; ++i) {
      for (const ValueEntry& entry : entries) {
        const bool match = entry.index == i;
        writeSeparator(out, ++item);
        out << i + 1;
        writeWeight(out, match ? shownWeight(entry) : 0.0, sum);
        if (match) break;
      }
    }
  }
  if (var.multiple) out << ')';
}

void CategoricalValue::writeText(std::ostream& out) const {
  const CategoricalVariable& var = categoricalVariable();
  out << '[' << var.name << " = ";
  if (!hasData()) {
    out << (isNA() ? "NA]" : "NULL]");
    return;
  }
  const double sum = shownWeightSum();
  if (var.multiple) out << '{';
  bool first = true;
  for (const ValueEntry& entry : entries) {
    if (!first) out << ", ";
    first = false;
    const Modality* modality = var.byIndex(entry.index);
    out << '"' << (modality ? modality->name : std::string()) << '"';
    writeWeight(out, shownWeight(entry), sum);
  }
  if (var.multiple) out << '}';
  out << ']';
}

double CategoricalValue::overlap(const SymbolicValue& other) const {
  const auto& o = static_cast<const CategoricalValue&>(other);
  double common = 0.0;
  for (const ValueEntry& entry : entries)
    if (o.entries.find(entry.index)) ++common;
  return common;
}

}  // namespace velda
