#include <ctime>
#include <new>

#include "formats/library/OutputBuffer.h"
#include "formats/library/SymbolicLibrary.h"
#include "formats/library/XmlEscape.h"

namespace velda::symlib {

namespace {

constexpr const char* kSchemaInstance = "http://www.w3.org/2000/10/XMLSchema-instance";

// Attributes never written in the header element.
bool hiddenInHeader(int key) { return key == kNbIndivSet || key == kNbVarSet || key == kNbNull; }

// The writer of each section of the document, called in document order.
class XmlWriter {
 public:
  XmlWriter(const SymbolicFile& model, std::ostream& out) : model_(model), out_(out) {}

  bool write() {
    out_ << "<?xml version=\"1.0\" encoding=\"Iso_8859-1\"?>\n"
         << "<?xml-stylesheet type=\"text/xsl\" href=\"ulme2.2.xsl\"?>\n"
         << "<ulmefile xmlns:xsi=\"" << kSchemaInstance << "\" xsi:noNamespaceSchemaLocation=\"ulme.xsd\">\n";
    writeContains();
    writeFileDescription();
    writeHeader();
    writeIndividuals();
    writeVariables();
    writeHierarchies();
    if (!writeRules() || !writeMatrix()) return false;
    writeTriangle("dist_mat", model_.distances);
    writeTriangle("match_mat", model_.matches);
    out_ << "</ulmefile>\n";
    return true;
  }

 private:
  void indent(int depth) { out_.text().append(static_cast<size_t>(depth), '\t'); }

  void leafText(int depth, const char* name, std::string_view text) {
    indent(depth);
    out_ << '<' << name << '>';
    AppendXmlEscaped(out_.text(), text);
    out_ << "</" << name << ">\n";
  }

  template <typename Number>
  void leafNumber(int depth, const char* name, Number n) {
    indent(depth);
    out_ << '<' << name << '>' << n << "</" << name << ">\n";
  }

  void open(int depth, const char* name) {
    indent(depth);
    out_ << '<' << name << ">\n";
  }

  void close(int depth, const char* name) {
    indent(depth);
    out_ << "</" << name << ">\n";
  }

  void writeContains() {
    out_ << "<contains";
    for (int b = 0; b < kSymBlockCount; ++b) {
      out_ << ' ' << SymBlockName(static_cast<SymBlock>(b)) << (model_.present[b] ? "=\"YES\"" : "=\"NO\"");
    }
    out_ << " /> \n";
  }

  void writeFileDescription() {
    leafText(0, "Procedure", model_.file.text(kProcedureName));
    leafText(0, "date_creat", model_.file.text(kCreateDate));
  }

  void writeHeader() {
    const KeyValueBlock& header = model_.header;
    out_ << "<header ";
    int written = 0;
    for (int k = 0; k < static_cast<int>(header.keys().size()); ++k) {
      const KeyValue& value = header.value(k);
      const KeyType type = header.keys()[k].type;
      if (!value.set || hiddenInHeader(k) || (type == KeyType::Text && value.text.empty())) continue;
      if (++written % 4 == 0) out_ << "\n          ";
      out_ << ' ' << header.keys()[k].name << " = \"";
      switch (type) {
        case KeyType::Text: AppendXmlEscaped(out_.text(), value.text); break;
        case KeyType::Integer: out_ << value.integer; break;
        case KeyType::Real: out_ << value.real; break;
      }
      out_ << '"';
    }
    out_ << " />\n";
  }

  void writeNumberedText(int depth, long long number, const std::string& name, const std::string& label) {
    leafNumber(depth, "num", number);
    leafText(depth, "name", name);
    leafText(depth, "label", label);
  }

  void writeIndividuals() {
    open(0, "individus");
    for (const SymIndividual& i : model_.individuals) {
      open(1, "stindiv");
      writeNumberedText(2, i.number, i.code, i.label);
      close(1, "stindiv");
    }
    close(0, "individus");
  }

  static const char* elementOf(SymVariableKind kind) {
    switch (kind) {
      case SymVariableKind::Continue: return "continue";
      case SymVariableKind::InterContinue: return "inter-cont";
      case SymVariableKind::Nominal: return "nominal";
      case SymVariableKind::MultNominal: return "mult_nominal";
      case SymVariableKind::MultNominalModif: return "mult_nominal_Modif";
    }
    return "";
  }

  void writeVariables() {
    open(0, "variables");
    for (const SymVariable& v : model_.variables) {
      open(1, "stvar");
      open(2, "ident");
      writeNumberedText(3, v.number, v.code, v.label);
      close(2, "ident");
      const char* element = elementOf(v.kind);
      open(2, element);
      if (v.isCategorical()) {
        writeCategoricalDescription(v);
      } else {
        indent(3);
        out_ << "<continue-desc min=\"" << v.min << "\" nbnu=\"" << v.nuCount << "\" nbna=\"" << v.naCount
             << "\" max=\"" << v.max << "\"/>\n";
      }
      close(2, element);
      close(1, "stvar");
    }
    close(0, "variables");
  }

  void writeCategoricalDescription(const SymVariable& v) {
    if (v.kind == SymVariableKind::MultNominalModif) {
      leafText(3, "type_modif", v.weighting == SymWeighting::Cardinal ? "cardinal" : "proba");
    }
    indent(3);
    out_ << "<nominal-desc nbna=\"" << v.naCount << "\" nbnu=\"" << v.nuCount << "\" nbmoda=\""
         << static_cast<long long>(v.categories.size()) << "\">\n";
    for (const SymCategory& c : v.categories) {
      open(4, "list-nom");
      writeNumberedText(5, c.number, c.code, c.label);
      close(4, "list-nom");
    }
    close(3, "nominal-desc");
  }

  void writeHierarchies() {
    if (model_.hierarchies.empty()) return;
    open(0, "hierarchies");
    for (const SymHierarchy& h : model_.hierarchies) {
      open(1, "hierarchie");
      leafNumber(2, "var_num_ref", h.variable);
      leafNumber(2, "nb_hier_val", static_cast<long long>(h.innerNodes.size()));
      open(2, "hier_val_list");
      for (const SymCategory& c : h.innerNodes) writeNumberedText(3, c.number, c.code, c.label);
      close(2, "hier_val_list");
      open(2, "hier_ref_list");
      for (const SymHierarchyLink& link : h.links) {
        leafNumber(3, "categ_num", link.node);
        open(3, "hval_ref_list");
        for (long long child : link.children) leafNumber(4, "hval_ref_elem", child);
        close(3, "hval_ref_list");
      }
      close(2, "hier_ref_list");
      close(1, "hierarchie");
    }
    close(0, "hierarchies");
  }

  // A value of the variable (null for rule values, which are not bound to
  // the variable's kind); false when it cannot be written.
  bool writeValue(int depth, const SymValue& value, const SymVariable* variable) {
    using Kind = SymValue::Kind;
    switch (value.kind) {
      case Kind::NA: leafText(depth, "NA", "NA"); return true;
      case Kind::NU: leafText(depth, "NU", "NU"); return true;
      case Kind::Real: leafNumber(depth, "val_conti", value.low); return true;
      case Kind::Interval:
        open(depth, "val_interv");
        leafNumber(depth + 1, "pmin", value.low);
        leafNumber(depth + 1, "pmax", value.high);
        close(depth, "val_interv");
        return true;
      case Kind::Category:
        if (variable && value.category > static_cast<long long>(variable->categories.size())) {
          LibraryLog::writeError(" for valnomin max: " + std::to_string(variable->categories.size()) +
                                 " indice too big ");
          return false;
        }
        leafNumber(depth, "val_nomina", value.category);
        return true;
      case Kind::CategorySet:
        for (const SymItem& item : value.items) leafNumber(depth, "val_modal", item.number);
        return true;
      case Kind::WeightedSet:
        open(depth, "val_list_modal");
        for (const SymItem& item : value.items) {
          leafNumber(depth + 1, "no_moda", item.number);
          leafNumber(depth + 1, "frequency", item.weight);
        }
        close(depth, "val_list_modal");
        return true;
    }
    return true;
  }

  bool writeRuleSide(const char* element, long long variable, const SymValue& value) {
    open(2, element);
    leafNumber(3, "var_num", variable);
    open(3, "val");
    if (!writeValue(4, value, nullptr)) return false;
    close(3, "val");
    close(2, element);
    return true;
  }

  bool writeRules() {
    open(0, "rules_gen");
    open(1, "rules");
    for (const SymRule& r : model_.rules) {
      if (!writeRuleSide("prem_desc", r.premiseVariable, r.premise) ||
          !writeRuleSide("conclusion", r.conclusionVariable, r.conclusion)) {
        return false;
      }
    }
    close(1, "rules");
    close(0, "rules_gen");
    return true;
  }

  bool writeMatrix() {
    open(0, "indiv_mat");
    for (const SymRow& row : model_.matrix) {
      open(1, "ligmat");
      for (size_t c = 0; c < row.size(); ++c) {
        open(2, "valmat");
        const SymVariable* variable = c < model_.variables.size() ? &model_.variables[c] : nullptr;
        if (!writeValue(3, row[c], variable)) return false;
        close(2, "valmat");
      }
      close(1, "ligmat");
    }
    close(0, "indiv_mat");
    return true;
  }

  void writeTriangle(const char* element, const SymTriangle& triangle) {
    if (triangle.empty()) return;
    open(0, element);
    for (const std::vector<double>& row : triangle) {
      open(1, "ligDmat");
      for (double x : row) leafNumber(2, "vf", x);
      close(1, "ligDmat");
    }
    close(0, element);
  }

  const SymbolicFile& model_;
  OutputBuffer out_;
};

// The current local time in the C library's 24-character form, with its
// line break.
std::string currentTimeText() {
  const std::time_t now = std::time(nullptr);
  char text[64];
  if (!ctime_r(&now, text)) return "\n";
  return text;
}

}  // namespace

bool WriteXmlSymbolicFile(SymbolicFile& model, std::ostream& out) {
  try {
    KeyValue& date = model.file.value(kCreateDate);
    if (date.text.empty()) {
      date.text = currentTimeText();
      date.set = true;
    }
    return XmlWriter(model, out).write();
  } catch (const std::bad_alloc&) {
    return false;
  }
}

}  // namespace velda::symlib
