#include "formats/library/SymbolicFile.h"

namespace velda::symlib {

const char* SymBlockName(SymBlock block) {
  static constexpr const char* kNames[kSymBlockCount] = {
      "FILES",       "HEADER",       "INDIVIDUALS",   "VARIABLES",  "RULES", "RECTANGLE_MATRIX",
      "DIST_MATRIX", "MATCH_MATRIX", "VARIABLES_SET", "HIERARCHIE",
  };
  return kNames[static_cast<int>(block)];
}

const char* SymVariableKindWord(SymVariableKind kind) {
  switch (kind) {
    case SymVariableKind::Continue: return "continue";
    case SymVariableKind::InterContinue: return "inter_continue";
    case SymVariableKind::Nominal: return "nominal";
    case SymVariableKind::MultNominal: return "mult_nominal";
    case SymVariableKind::MultNominalModif: return "mult_nominal_Modif";
  }
  return "";
}

SymbolicFile::SymbolicFile() : file(MakeFileBlock()), header(MakeHeaderBlock()) {}

void SymbolicFile::clear() { *this = SymbolicFile(); }

}  // namespace velda::symlib
