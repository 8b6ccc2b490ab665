#pragma once

#include <cstdint>
#include <vector>

#include "document/project/ByteWriter.h"

namespace velda {

class Assertion;
class CategoricalVariable;
class Individual;
class Modality;
class SymbolicMatrix;
struct CellValue;
struct DependenceRule;

// Writes one matrix as a project file. Every hash table goes out in its
// compacted order (see compactOrder), and the modalities of each variable
// are numbered 0..m-1 (leaves) then m..m+n-1 (taxonomy nodes), each in the
// order of their indexes: the number is the index each gets back on reading.
class ProjectWriter {
 public:
  ProjectWriter(ByteWriter& out, const SymbolicMatrix& matrix) : out_(out), matrix_(matrix) {}

  // Writes everything; false when the matrix holds a value that the file
  // cannot (the writer is then failed too).
  bool write();

 private:
  // The numbers of one categorical variable's modalities.
  struct Numbering {
    std::vector<const Modality*> leaves;  // in the order written
    std::vector<const Modality*> nodes;
    std::vector<uint16_t> byIndex;  // modality index -> number, kNone for none
  };

  bool number();
  uint16_t numberOf(size_t variable, int32_t index) const;
  uint16_t numberOf(size_t variable, const Modality* modality) const;

  void writeHeader();
  void writeTexts();
  void writeVariable(size_t v);
  void writeModalities(size_t v, const CategoricalVariable& variable);
  void writeRule(const DependenceRule& rule);
  void writeAssertion(const Assertion& assertion);
  void writeIndividual(const Individual& individual);
  void writeCell(size_t v, const CellValue& cell);

  ByteWriter& out_;
  const SymbolicMatrix& matrix_;
  std::vector<Numbering> numbering_;  // per variable, empty for a quantitative one
};

}  // namespace velda
