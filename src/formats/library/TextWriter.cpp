#include <new>
#include <vector>

#include "formats/library/OutputBuffer.h"
#include "formats/library/SymbolicLibrary.h"

namespace velda::symlib {

namespace {

// Blocks in the order of the contents list, and in the order written.
constexpr SymBlock kContentsOrder[] = {
    SymBlock::Files,      SymBlock::Header,          SymBlock::Individuals, SymBlock::Variables,   SymBlock::Rules,
    SymBlock::Hierarchie, SymBlock::RectangleMatrix, SymBlock::DistMatrix,  SymBlock::MatchMatrix,
};
constexpr SymBlock kWritingOrder[] = {
    SymBlock::Files, SymBlock::Header,          SymBlock::Individuals, SymBlock::Variables,   SymBlock::Hierarchie,
    SymBlock::Rules, SymBlock::RectangleMatrix, SymBlock::DistMatrix,  SymBlock::MatchMatrix,
};

class TextWriter {
 public:
  TextWriter(const SymbolicFile& model, std::ostream& out) : model_(model), out_(out) {}

  void write() {
    out_ << "KORVA = (\n\n";
    writeContents();
    std::vector<SymBlock> blocks;
    for (SymBlock block : kWritingOrder) {
      if (model_.isPresent(block)) blocks.push_back(block);
    }
    for (size_t i = 0; i < blocks.size(); ++i) {
      writeBlock(blocks[i]);
      out_ << (i + 1 < blocks.size() ? "),\n\n" : ")\n\n");
    }
    out_ << ")\n  END \n";
  }

 private:
  void writeContents() {
    out_ << "CONTAINS = (\n";
    const char* separator = "";
    for (SymBlock block : kContentsOrder) {
      if (!model_.isPresent(block)) continue;
      out_ << separator << SymBlockName(block);
      separator = ", ";
    }
    out_ << "\n), \n\n";
  }

  void writeBlock(SymBlock block) {
    switch (block) {
      case SymBlock::Files: return writeAssignments(model_.file);
      case SymBlock::Header: return writeAssignments(model_.header);
      case SymBlock::Individuals: return writeIndividuals();
      case SymBlock::Variables: return writeVariables();
      case SymBlock::Hierarchie: return writeHierarchies();
      case SymBlock::Rules: return writeRules();
      case SymBlock::RectangleMatrix: return writeMatrix();
      case SymBlock::DistMatrix: return writeTriangle("DIST_MATRIX= (\n", model_.distances);
      case SymBlock::MatchMatrix: return writeTriangle("MATCH_MATRIX= (\n", model_.matches);
      case SymBlock::VariablesSet: return;
    }
  }

  void writeAssignments(const KeyValueBlock& block) {
    out_ << block.name() << " = (\n";
    const char* separator = "";
    for (size_t k = 0; k < block.keys().size(); ++k) {
      const KeyValue& value = block.value(static_cast<int>(k));
      if (!value.set) continue;
      out_ << separator << block.keys()[k].name << " = ";
      separator = ",\n";
      switch (block.keys()[k].type) {
        case KeyType::Text: out_ << '"' << value.text << '"'; break;
        case KeyType::Integer: out_ << value.integer; break;
        case KeyType::Real: out_ << value.real; break;
      }
    }
    out_ << "\n";
  }

  void writeIndividuals() {
    out_ << "INDIVIDUALS = (\n";
    const char* separator = "";
    for (const SymIndividual& i : model_.individuals) {
      out_ << separator << "  (" << i.number << ", \"" << i.code << "\", \"" << i.label << "\")";
      separator = ",\n";
    }
    out_ << "\n";
  }

  void writeCategoryList(const std::vector<SymCategory>& categories, const char* indent) {
    out_ << '(';
    const char* separator = "";
    for (const SymCategory& c : categories) {
      out_ << separator << '(' << c.number << ", \"" << c.code << "\", \"" << c.label << "\", " << c.leaves << " )";
      separator = indent;
    }
    out_ << ')';
  }

  void writeVariables() {
    out_ << "VARIABLES =  (\n";
    const char* separator = "";
    for (const SymVariable& v : model_.variables) {
      out_ << separator << "  (" << v.number << ", " << SymVariableKindWord(v.kind) << ", \"" << v.comment << "\", \""
           << v.code << "\", \"" << v.label << "\", ";
      separator = ",\n";
      if (v.weighting != SymWeighting::None) out_ << (v.weighting == SymWeighting::Cardinal ? "cardinal, " : "proba, ");
      out_ << v.naCount << ", " << v.nuCount << ", ";
      if (!v.isCategorical()) {
        out_ << v.min << ", " << v.max << ')';
        continue;
      }
      out_ << static_cast<long long>(v.categories.size()) << ",\n     ";
      writeCategoryList(v.categories, ", \n      ");
      out_ << "\n  )";
    }
    out_ << "\n";
  }

  void writeHierarchies() {
    out_ << "HIERARCHIE = (\n";
    const char* separator = "";
    for (const SymHierarchy& h : model_.hierarchies) {
      out_ << separator << "  (VAR = " << h.variable << ", " << static_cast<long long>(h.innerNodes.size());
      separator = ",\n";
      out_ << '(';
      if (!h.innerNodes.empty()) out_ << "\n      ";
      for (size_t i = 0; i < h.innerNodes.size(); ++i) {
        const SymCategory& c = h.innerNodes[i];
        out_ << (i ? ", \n      " : "") << '(' << c.number << ", \"" << c.code << "\", \"" << c.label << "\", "
             << c.leaves << ')';
      }
      out_ << "),\n      (";
      for (size_t i = 0; i < h.links.size(); ++i) {
        out_ << (i ? ", \n       " : "") << h.links[i].node << " = (";
        const std::vector<long long>& children = h.links[i].children;
        for (size_t c = 0; c < children.size(); ++c) {
          if (c) out_ << ',';
          // As in the values: a line break before the 10th, 20th, ... child.
          if (c % 10 == 9) out_ << "\n          ";
          out_ << children[c];
        }
        out_ << ')';
      }
      out_ << "\n)  )";
    }
    out_ << "\n";
  }

  void writeValue(const SymValue& value) {
    using Kind = SymValue::Kind;
    switch (value.kind) {
      case Kind::NA: out_ << "NA"; return;
      case Kind::NU: out_ << "NU"; return;
      case Kind::Real: out_ << value.low; return;
      case Kind::Interval: out_ << '(' << value.low << ':' << value.high << ')'; return;
      case Kind::Category: out_ << value.category; return;
      case Kind::CategorySet:
      case Kind::WeightedSet: break;
    }
    out_ << '(';
    for (size_t i = 0; i < value.items.size(); ++i) {
      if (i) out_ << ',';
      // A line break after the comma before the 10th, 20th, ... element.
      if (i && i % 10 == 9) out_ << "\n    ";
      out_ << value.items[i].number;
      if (value.kind == Kind::WeightedSet) out_ << '(' << value.items[i].weight << ')';
    }
    out_ << ')';
  }

  void writeRules() {
    out_ << "RULES = (\n";
    const char* separator = "";
    for (const SymRule& r : model_.rules) {
      out_ << separator << "  ((" << r.premiseVariable << " = ";
      separator = ",\n";
      writeValue(r.premise);
      out_ << ")  (" << r.conclusionVariable << " = ";
      writeValue(r.conclusion);
      out_ << "))";
    }
    out_ << "\n";
  }

  void writeMatrix() {
    out_ << "RECTANGLE_MATRIX = (\n";
    const char* separator = "";
    for (const SymRow& row : model_.matrix) {
      out_ << separator << "  (";
      separator = ",\n";
      for (size_t i = 0; i < row.size(); ++i) {
        if (i) out_ << ", \n   ";
        writeValue(row[i]);
      }
      out_ << ')';
    }
    out_ << "\n";
  }

  void writeTriangle(const char* opening, const SymTriangle& triangle) {
    out_ << opening;
    const char* separator = "";
    for (const std::vector<double>& row : triangle) {
      out_ << separator << "  (";
      separator = ",\n";
      for (size_t i = 0; i < row.size(); ++i) out_ << (i ? ", " : "") << row[i];
      out_ << ')';
    }
    out_ << "\n";
  }

  const SymbolicFile& model_;
  OutputBuffer out_;
};

}  // namespace

bool WriteSymbolicFileText(const SymbolicFile& model, std::ostream& out) {
  try {
    TextWriter(model, out).write();
    return true;
  } catch (const std::bad_alloc&) {
    return false;
  }
}

}  // namespace velda::symlib
