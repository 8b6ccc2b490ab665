#include "formats/SymbolicTextWriter.h"

#include <algorithm>
#include <new>
#include <sstream>
#include <string>
#include <vector>

#include "common/ConsoleLog.h"
#include "common/LastError.h"
#include "formats/Codes.h"
#include "formats/ExportRows.h"
#include "formats/SymbolicTextStyle.h"
#include "model/CategoricalVariable.h"
#include "model/Dependence.h"
#include "model/SymbolicMatrix.h"

namespace velda {

namespace {

// The reader refuses lines over 3000 characters: lists that could grow
// without bound are broken before that.
constexpr size_t kMaxListLine = 2500;
constexpr size_t kMaxHeaderText = 127;
constexpr const char* kChildIndent = "       ";
constexpr const char* kRuleIndent = "  ";

// Writes a one-line list, starting at the given column; where the line would
// pass kMaxListLine it is broken after a comma and goes on at the indent.
void writeWrapped(std::ostream& out, std::string_view text, size_t column, std::string_view indent) {
  while (!text.empty()) {
    const size_t comma = text.find(',');
    const size_t cut = comma == std::string_view::npos ? text.size() : comma + 1;
    const std::string_view chunk = text.substr(0, cut);
    if (column + chunk.size() > kMaxListLine && column > indent.size()) {
      out << '\n' << indent;
      column = indent.size();
    }
    out << chunk;
    column += chunk.size();
    text.remove_prefix(cut);
  }
}

// Writes the items of a block, separated by a comma and a line break.
class ItemSeparator {
 public:
  explicit ItemSeparator(std::ostream& out) : out_(out) {}
  void next() {
    if (count_++) out_ << ",\n";
  }
  // The line break after the last item, when there is one.
  void end() {
    if (count_) out_ << '\n';
  }

 private:
  std::ostream& out_;
  size_t count_ = 0;
};

class SymbolicTextWriter {
 public:
  SymbolicTextWriter(std::ostream& out, const SymbolicMatrix& matrix, std::span<const Assertion* const> labels,
                     std::span<const Assertion* const> rows)
      : out_(out), matrix_(matrix), labels_(labels), rows_(rows) {}

  // Numbers the active variables and counts what the header declares.
  // False when no variable is active.
  [[nodiscard]] bool prepare();
  void write();

 private:
  bool written(int32_t variable) const {
    return variable >= 0 && static_cast<size_t>(variable) < numbers_.size() && numbers_[static_cast<size_t>(variable)];
  }
  bool ruleWritten(const DependenceRule& rule) const { return written(rule.mother) && written(rule.daughter); }

  void writeContents();
  void writeFiles();
  void writeHeader();
  void writeIndividuals();
  void writeVariables();
  void writeHierarchies();
  void writeHierarchy(const CategoricalVariable& variable, int32_t number);
  void writeRules();
  void writeMatrix();
  void writeRow(const Assertion& row);

  std::ostream& out_;
  const SymbolicMatrix& matrix_;
  std::span<const Assertion* const> labels_;
  std::span<const Assertion* const> rows_;
  SymbolicTextStyle style_;

  std::vector<int32_t> numbers_;  // per variable: its number in the file, 0 when not written
  std::vector<double> naCounts_;
  std::vector<double> nuCounts_;
  int32_t activeCount_ = 0;
  int32_t quantitativeCount_ = 0;
  int32_t nominalCount_ = 0;
  int32_t multipleCount_ = 0;
  int32_t hierarchyCount_ = 0;
  int32_t ruleCount_ = 0;
  double totalNA_ = 0.0;
  double totalNU_ = 0.0;
};

bool SymbolicTextWriter::prepare() {
  const size_t count = matrix_.variableCount();
  numbers_.assign(count, 0);
  naCounts_.assign(count, 0.0);
  nuCounts_.assign(count, 0.0);
  for (size_t v = 0; v < count; ++v) {
    const SymbolicVariable& variable = matrix_.variable(v);
    if (!variable.active) continue;
    numbers_[v] = ++activeCount_;
    for (const Assertion* row : rows_) {
      const SymbolicValue& value = row->value(v);
      if (value.isNA())
        naCounts_[v] += 1.0;
      else if (value.writesNU())
        nuCounts_[v] += 1.0;
    }
    totalNA_ += naCounts_[v];
    totalNU_ += nuCounts_[v];
    if (!variable.isCategorical()) {
      ++quantitativeCount_;
      continue;
    }
    ++(variable.multiple ? multipleCount_ : nominalCount_);
    if (static_cast<const CategoricalVariable&>(variable).hasTaxonomy()) ++hierarchyCount_;
  }
  if (!activeCount_) return false;
  for (const auto& rule : matrix_.rules)
    if (ruleWritten(*rule)) ++ruleCount_;
  return true;
}

void SymbolicTextWriter::write() {
  out_ << "KORVA = (\n\n";
  writeContents();
  writeFiles();
  writeHeader();
  writeIndividuals();
  writeVariables();
  if (hierarchyCount_) writeHierarchies();
  if (ruleCount_) writeRules();
  writeMatrix();
  out_ << "\n)\nEND\n\n";
}

void SymbolicTextWriter::writeContents() {
  out_ << "CONTAINS = (FILES, HEADER, INDIVIDUALS, VARIABLES,";
  if (ruleCount_) out_ << " RULES,";
  if (hierarchyCount_) out_ << " HIERARCHIE,";
  out_ << " RECTANGLE_MATRIX),\n\n";
}

void SymbolicTextWriter::writeFiles() {
  out_ << "FILES = (\n"
          "procedure_name = \"velda\",\n"
          "version = \"sans\",\n"
          "create_date = \"\",\n"
          "filiere_name = \"\",\n"
          "filiere_path = \"\",\n"
          "base = \"\"\n"
          "),\n\n";
}

void SymbolicTextWriter::writeHeader() {
  out_ << "HEADER = (\n"
       << "title = \"" << SymbolicTextStyle::fileText(matrix_.title, kMaxHeaderText) << "\",\n"
       << "sub_title = \"" << SymbolicTextStyle::fileText(matrix_.subtitle, kMaxHeaderText) << "\",\n"
       << "indiv_nb = " << labels_.size() << ",\n"
       << "var_nb = " << activeCount_ << ",\n"
       << "rules_nb = " << ruleCount_ << ",\n"
       << "nb_var_set = 0,\n"
       << "nb_indiv_set = 0,\n"
       << "nb_var_nom = 0,\n"
       << "nb_var_cont = 0,\n"
       << "nb_var_text = 0,\n"
       << "nb_var_cont_symb = " << quantitativeCount_ << ",\n"
       << "nb_var_nom_symb = " << nominalCount_ << ",\n"
       << "nb_var_nom_mod = " << multipleCount_ << ",\n"
       << "nb_na = " << totalNA_ << ",\n"
       << "nb_nu = " << totalNU_ << ",\n"
       << "nb_hierarchies = " << hierarchyCount_ << '\n'
       << "),\n\n";
}

void SymbolicTextWriter::writeIndividuals() {
  out_ << "INDIVIDUALS = (\n";
  ItemSeparator items(out_);
  for (size_t i = 0; i < labels_.size(); ++i) {
    items.next();
    out_ << "  (" << i + 1 << ", ";
    style_.writeQuoted(out_, itemCode(0, static_cast<uint32_t>(i)));
    out_ << ", ";
    style_.writeQuoted(out_, labels_[i]->id);
    out_ << ')';
  }
  items.end();
  out_ << "),\n\n";
}

void SymbolicTextWriter::writeVariables() {
  out_ << "VARIABLES = (\n";
  ItemSeparator items(out_);
  for (size_t v = 0; v < numbers_.size(); ++v) {
    if (!numbers_[v]) continue;
    items.next();
    matrix_.variable(v).writeDeclaration(out_, numbers_[v], naCounts_[v], nuCounts_[v], style_);
  }
  items.end();
  out_ << "),\n\n";
}

void SymbolicTextWriter::writeHierarchies() {
  out_ << "HIERARCHIE = (\n";
  ItemSeparator items(out_);
  for (size_t v = 0; v < numbers_.size(); ++v) {
    if (!numbers_[v] || !matrix_.variable(v).isCategorical()) continue;
    const auto& variable = static_cast<const CategoricalVariable&>(matrix_.variable(v));
    if (!variable.hasTaxonomy()) continue;
    items.next();
    writeHierarchy(variable, numbers_[v]);
  }
  items.end();
  out_ << "),\n\n";
}

// Nodes are numbered in the file as leaves 1..m by index, then the inner
// nodes m+1..m+n in the order of their indexes, whatever these are.
void SymbolicTextWriter::writeHierarchy(const CategoricalVariable& variable, int32_t number) {
  const auto letters = static_cast<uint32_t>(number);
  const size_t m = variable.modalityCount();
  std::vector<const Modality*> order;  // every node, in file order
  order.reserve(m + variable.nodeCount());
  for (size_t k = 0; k < m; ++k) order.push_back(variable.byIndex(static_cast<int32_t>(k)));
  for (const Modality& node : variable.nodes) order.push_back(&node);
  std::sort(order.begin() + static_cast<std::ptrdiff_t>(m), order.end(),
            [](const Modality* a, const Modality* b) { return a->index < b->index; });

  size_t indexEnd = 0;
  for (const Modality* node : order)
    if (node) indexEnd = std::max(indexEnd, static_cast<size_t>(node->index) + 1);
  std::vector<size_t> fileNumber(indexEnd, 0);
  for (size_t position = 0; position < order.size(); ++position)
    if (order[position]) fileNumber[static_cast<size_t>(order[position]->index)] = position + 1;

  out_ << "  (VAR = " << number << ", " << variable.nodeCount() << '(';
  for (size_t position = m; position < order.size(); ++position) {
    out_ << (position == m ? "\n      " : ", \n      ") << '(' << position + 1 << ", ";
    style_.writeQuoted(out_, itemCode(letters, static_cast<uint32_t>(position + 1)));
    out_ << ", ";
    style_.writeQuoted(out_, order[position]->name);
    out_ << ", 0)";
  }
  out_ << "),\n      (";

  bool first = true;
  for (size_t position = 0; position < order.size(); ++position) {
    const Modality* node = order[position];
    if (!node || !node->firstChild) continue;
    std::string line = std::to_string(position + 1) + " = (";
    for (const Modality* child = node->firstChild; child; child = child->nextSibling) {
      if (child != node->firstChild) line += ',';
      const auto index = static_cast<size_t>(child->index);
      line += std::to_string(index < fileNumber.size() ? fileNumber[index] : 0);
    }
    line += ')';
    if (!first) out_ << ", \n" << kChildIndent;
    first = false;
    writeWrapped(out_, line, std::string_view(kChildIndent).size(), kChildIndent);
  }
  out_ << "\n)  )";
}

void SymbolicTextWriter::writeRules() {
  out_ << "RULES = (\n";
  ItemSeparator items(out_);
  for (const auto& rule : matrix_.rules) {
    if (!ruleWritten(*rule)) continue;
    items.next();
    std::ostringstream line;
    writeRule(matrix_, *rule, line, numbers_[static_cast<size_t>(rule->mother)],
              numbers_[static_cast<size_t>(rule->daughter)]);
    writeWrapped(out_, line.str(), 0, kRuleIndent);
  }
  items.end();
  out_ << "),\n\n";
}

void SymbolicTextWriter::writeMatrix() {
  out_ << "RECTANGLE_MATRIX = (\n";
  ItemSeparator items(out_);
  for (const Assertion* row : rows_) {
    items.next();
    writeRow(*row);
  }
  items.end();
  out_ << ")\n";
}

void SymbolicTextWriter::writeRow(const Assertion& row) {
  out_ << "  (";
  bool first = true;
  for (size_t v = 0; v < numbers_.size(); ++v) {
    if (!numbers_[v]) continue;
    if (!first) out_ << ", \n   ";
    first = false;
    row.value(v).writeValue(out_);
  }
  out_ << ')';
}

[[nodiscard]] bool writeOrdered(std::ostream& out, SymbolicMatrix& matrix, bool reducedRows, ConsoleLog* console) {
  std::vector<const Assertion*> labels;
  std::vector<const Assertion*> rows;
  return OrderedRows(matrix, reducedRows, labels, rows) && WriteSymbolicRows(out, matrix, labels, rows, console);
}

}  // namespace

bool IndexAndWriteSymbolicText(std::ostream& out, SymbolicMatrix& matrix, bool reducedRows, ConsoleLog* console) {
  return writeOrdered(out, matrix, reducedRows, console);
}

bool WriteSymbolicText(std::ostream& out, SymbolicMatrix& matrix, bool reducedRows, ConsoleLog* console) {
  return writeOrdered(out, matrix, reducedRows, console);
}

bool WriteSymbolicRows(std::ostream& out, const SymbolicMatrix& matrix, std::span<const Assertion* const> labels,
                       std::span<const Assertion* const> rows, ConsoleLog* console) {
  if (!RowsFit(matrix, labels, rows)) return false;
  try {
    SymbolicTextWriter writer(out, matrix, labels, rows);
    if (!writer.prepare()) {
      setError("No active variable");
      if (console) console->add("No active variable");
      return false;
    }
    writer.write();
    return true;
  } catch (const std::bad_alloc&) {
    setError("Memory allocation failed");
    return false;
  }
}

}  // namespace velda
