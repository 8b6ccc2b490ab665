#include "formats/TidyTableWriter.h"

#include <algorithm>
#include <new>
#include <optional>
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

constexpr std::string_view kQuotedWhen = ",\"";

void writeName(std::ostream& out, std::string_view name) { writeTextField(out, name, kQuotedWhen); }

const char* kindOf(const SymbolicVariable& variable) {
  if (variable.isCategorical()) return "categorical";
  return variable.multiple ? "interval" : "number";
}

class TidyTableWriter {
 public:
  TidyTableWriter(std::ostream& out, const SymbolicMatrix& matrix) : out_(out), matrix_(matrix) {}

  void writeRow(const Assertion& label, const Assertion& row, const std::vector<size_t>& active) {
    for (const size_t v : active) {
      const SymbolicValue& value = row.value(v);
      if (!value.hasData()) {
        writeStart(label, v, value.isNA() ? "NA" : "NU");
        out_ << ",,,,\n";
      } else if (value.variable().isCategorical())
        writeCategories(label, v, static_cast<const CategoricalValue&>(value));
      else
        writeBounds(label, v, static_cast<const QuantitativeValue&>(value));
    }
  }

 private:
  // The line's first four fields, up to its state.
  void writeStart(const Assertion& label, size_t v, const char* state) {
    const SymbolicVariable& variable = matrix_.variable(v);
    writeName(out_, label.id);
    out_ << ',';
    writeName(out_, variable.name);
    out_ << ',' << kindOf(variable) << ',' << state;
  }

  void writeBounds(const Assertion& label, size_t v, const QuantitativeValue& value) {
    writeStart(label, v, "value");
    out_ << ',';
    writeNumber(out_, value.min);
    out_ << ',';
    writeNumber(out_, value.max);
    out_ << ",,\n";
  }

  void writeCategories(const Assertion& label, size_t v, const CategoricalValue& value) {
    const CategoricalVariable& variable = value.categoricalVariable();
    const double sum = value.shownWeightSum();
    std::vector<const ValueEntry*> entries;
    entries.reserve(value.entries.size());
    for (const ValueEntry& entry : value.entries) entries.push_back(&entry);
    std::sort(entries.begin(), entries.end(),
              [](const ValueEntry* a, const ValueEntry* b) { return a->index < b->index; });
    for (const ValueEntry* entry : entries) {
      writeStart(label, v, "value");
      out_ << ",,,";
      const Modality* category = variable.byIndex(entry->index);
      writeName(out_, category ? std::string_view(category->name) : std::string_view());
      out_ << ',';
      if (const std::optional<double> weight = value.modeWeight(value.shownWeight(*entry), sum))
        writeNumber(out_, *weight);
      out_ << '\n';
    }
  }

  std::ostream& out_;
  const SymbolicMatrix& matrix_;
};

}  // namespace

bool WriteTidyTable(std::ostream& out, const SymbolicMatrix& matrix, std::span<const Assertion* const> labels,
                    std::span<const Assertion* const> rows) {
  try {
    std::vector<size_t> active;
    if (!ActiveVariables(matrix, labels, rows, active)) return false;
    out << "assertion,variable,kind,state,min,max,category,weight\n";
    TidyTableWriter writer(out, matrix);
    for (size_t i = 0; i < rows.size(); ++i) writer.writeRow(*labels[i], *rows[i], active);
    return true;
  } catch (const std::bad_alloc&) {
    setError("Memory allocation failed");
    return false;
  }
}

}  // namespace velda
