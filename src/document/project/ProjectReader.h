#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "document/project/ByteReader.h"
#include "document/project/ProjectFormat.h"

namespace velda {

class Assertion;
class CategoricalVariable;
class SymbolicMatrix;
class SymbolicValue;
struct CellValue;

// Rebuilds a matrix from the bytes of a project file. Nothing read is
// trusted: every count is checked against the bytes left before anything is
// made for it, every number against what it refers to, and the links read
// (taxonomies, mothers) must form trees.
class ProjectReader {
 public:
  explicit ProjectReader(std::span<const unsigned char> bytes) : in_(bytes) {}

  // The matrix, or null with "Incorrect file type" or "Load failed" in the
  // last-error text.
  std::unique_ptr<SymbolicMatrix> read();
  // The same from bytes that start after the magic and the two counts, read
  // by the caller: null with "Load failed".
  std::unique_ptr<SymbolicMatrix> readBody(uint32_t individualCount, uint32_t assertionCount);

 private:
  std::unique_ptr<SymbolicMatrix> readRest();
  bool readMagic();
  bool readHeader();
  bool readTexts();
  bool readVariable();
  bool readModalities(CategoricalVariable& variable, uint16_t leaves);
  bool readRule();
  bool mothersFormTrees() const;
  bool readAssertion();
  bool readDescription(size_t v, SymbolicValue& value);
  bool readIndividual(size_t ordinal);
  bool readCell(size_t v, CellValue& cell);

  ByteReader in_;
  std::unique_ptr<SymbolicMatrix> matrix_;
  uint32_t individualCount_ = 0;
  uint32_t assertionCount_ = 0;
  std::array<uint16_t, project::kHeaderCounters> header_{};
  std::vector<Assertion*> slots_;         // assertions by number
  std::vector<uint32_t> lastMembership_;  // per assertion: 1 + the last individual linked to it
};

}  // namespace velda
