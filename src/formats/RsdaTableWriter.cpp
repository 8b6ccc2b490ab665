#include "formats/RsdaTableWriter.h"

#include <new>
#include <string_view>
#include <vector>

#include "common/LastError.h"
#include "formats/ExportRows.h"
#include "formats/TableText.h"
#include "model/CategoricalValue.h"
#include "model/QuantitativeValue.h"
#include "model/SymbolicMatrix.h"

namespace velda {

namespace {

// read.table splits at the separator, takes both quote characters, ends a
// line at "#" and would keep a blank only inside quotes.
constexpr std::string_view kQuotedWhen = ";\"'# ";

void writeName(std::ostream& out, std::string_view name) { writeTextField(out, name, kQuotedWhen); }

void writeHeader(std::ostream& out, const SymbolicMatrix& matrix, const std::vector<size_t>& active) {
  bool first = true;
  for (const size_t v : active) {
    if (!first) out << ';';
    first = false;
    const SymbolicVariable& variable = matrix.variable(v);
    if (variable.isCategorical()) {
      const auto& categorical = static_cast<const CategoricalVariable&>(variable);
      out << "$M;";
      writeName(out, variable.name);
      for (size_t k = 0; k < categorical.modalityCount(); ++k) {
        const Modality* category = categorical.byIndex(static_cast<int32_t>(k));
        out << ';';
        writeName(out, category ? std::string_view(category->name) : std::string_view());
      }
    } else {
      out << (variable.multiple ? "$I;" : "$C;");
      writeName(out, variable.name);
      if (variable.multiple) {
        out << ';';
        writeName(out, variable.name);
      }
    }
  }
  out << '\n';
}

void writeQuantitative(std::ostream& out, const QuantitativeValue& value) {
  const bool interval = value.variable().multiple;
  out << (interval ? "$I;" : "$C;");
  if (!value.hasData()) {
    out << (interval ? "NA;NA" : "NA");
    return;
  }
  writeNumber(out, value.min);
  if (!interval) return;
  out << ';';
  writeNumber(out, value.max);
}

// The probability of every leaf category, 0 for an absent one: the shown
// weight's share for a set, 1 for the category of a single value.
void writeCategorical(std::ostream& out, const CategoricalValue& value) {
  const CategoricalVariable& variable = value.categoricalVariable();
  const size_t count = variable.modalityCount();
  out << "$M;" << count;
  if (!value.hasData()) {
    for (size_t k = 0; k < count; ++k) out << ";NA";
    return;
  }
  std::vector<double> probabilities(count, 0.0);
  for (const ValueEntry& entry : value.entries) {
    const auto k = static_cast<size_t>(entry.index);
    if (entry.index < 0 || k >= count) continue;
    probabilities[k] = variable.multiple ? value.probability(value.shownWeight(entry)) : 1.0;
  }
  for (const double p : probabilities) {
    out << ';';
    writeNumber(out, p);
  }
}

void writeRow(std::ostream& out, const Assertion& label, const Assertion& row, const std::vector<size_t>& active) {
  writeName(out, label.id);
  for (const size_t v : active) {
    out << ';';
    const SymbolicValue& value = row.value(v);
    if (value.variable().isCategorical())
      writeCategorical(out, static_cast<const CategoricalValue&>(value));
    else
      writeQuantitative(out, static_cast<const QuantitativeValue&>(value));
  }
  out << '\n';
}

}  // namespace

bool WriteRsdaTable(std::ostream& out, const SymbolicMatrix& matrix, std::span<const Assertion* const> labels,
                    std::span<const Assertion* const> rows) {
  try {
    std::vector<size_t> active;
    if (!ActiveVariables(matrix, labels, rows, active)) return false;
    writeHeader(out, matrix, active);
    for (size_t i = 0; i < rows.size(); ++i) writeRow(out, *labels[i], *rows[i], active);
    return true;
  } catch (const std::bad_alloc&) {
    setError("Memory allocation failed");
    return false;
  }
}

}  // namespace velda
