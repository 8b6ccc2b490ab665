#pragma once

#include <array>

#include "formats/library/KeyValueBlock.h"
#include "formats/library/SymbolicModel.h"

namespace velda::symlib {

// Blocks of a symbolic file, in the order of the current name table (the
// order of the XML contents attributes).
enum class SymBlock {
  Files,
  Header,
  Individuals,
  Variables,
  Rules,
  RectangleMatrix,
  DistMatrix,
  MatchMatrix,
  VariablesSet,
  Hierarchie,
};
constexpr int kSymBlockCount = 10;

// Current name of a block ("FILES", "RECTANGLE_MATRIX", ...).
const char* SymBlockName(SymBlock block);

// A whole symbolic file as the library reads and writes it.
struct SymbolicFile {
  SymbolicFile();
  void clear();

  bool isPresent(SymBlock block) const { return present[static_cast<int>(block)]; }

  KeyValueBlock file;
  KeyValueBlock header;
  std::vector<SymIndividual> individuals;
  std::vector<SymVariable> variables;
  std::vector<SymHierarchy> hierarchies;
  std::vector<SymRule> rules;
  std::vector<SymRow> matrix;
  SymTriangle distances;
  SymTriangle matches;
  // Blocks named by the contents declaration, and blocks actually read.
  std::array<bool, kSymBlockCount> declared{};
  std::array<bool, kSymBlockCount> present{};

  bool operator==(const SymbolicFile&) const = default;
};

}  // namespace velda::symlib
