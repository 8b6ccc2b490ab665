#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "db/QueryStatement.h"
#include "db/extraction/ExtractionCellCache.h"
#include "db/extraction/ExtractionFilter.h"
#include "db/extraction/ExtractionIndex.h"
#include "model/SymbolicMatrix.h"

namespace velda {

// A result column as the extraction sees it.
struct ExtractionColumn {
  std::string name;
  ColumnKind kind = COLUMN_CHARACTER;
};

struct ExtractionOptions {
  // The last column is every individual's weight ("ponderation").
  bool lastColumnIsWeight = false;
  // Keep at most this many individuals per group, chosen at random; 0 keeps
  // every individual.
  int32_t sampleSize = 0;
};

// Builds a new matrix from the rows of an extraction query: column 1 names
// the individual, column 2 its group (assertion), the next columns are the
// variables and, with the weight option, the last column is the weight.
class ExtractionBuilder {
 public:
  // Checks the query's columns and creates the matrix and its variables.
  // Null, with the last-error text set, when the query does not fit.
  static std::unique_ptr<ExtractionBuilder> prepare(const std::vector<ExtractionColumn>& columns,
                                                    const ExtractionOptions& options);
  // The same checks, then an empty matrix with the query's variables. Null,
  // with the last-error text set, when the query does not fit.
  static std::unique_ptr<SymbolicMatrix> matrixFor(const std::vector<ExtractionColumn>& columns,
                                                   const ExtractionOptions& options);

  // Adds one row; texts[i] is column i's text, null when it is NULL.
  // Returns false, with the last-error text set, when the extraction must end.
  [[nodiscard]] bool processRow(const char* const* texts);

  // Compacts the matrix and hands it over (null, with the last-error text
  // set, when memory runs out).
  std::unique_ptr<SymbolicMatrix> finish(long rowsRead);

 private:
  ExtractionBuilder(std::unique_ptr<SymbolicMatrix> matrix, size_t variableCount, const ExtractionOptions& options);

  [[nodiscard]] bool addRow(const char* const* texts);
  [[nodiscard]] bool readCells(const char* const* texts);
  [[nodiscard]] bool checkRepeat(const Individual& individual, double weight) const;
  Individual& insertIndividual(const char* id, double weight);
  Assertion& assertionNamed(const char* id, uint64_t hash);
  void sample(Individual& newcomer, Assertion& assertion);
  void dropMembership(Individual& individual, Assertion& assertion);

  std::unique_ptr<SymbolicMatrix> matrix_;
  size_t variableCount_;
  bool weighted_;
  int32_t sampleSize_;
  std::unique_ptr<CellValue[]> rowCells_;  // the current row's cells
  // Per variable, the cells of the texts met, for categorical variables.
  std::vector<std::unique_ptr<ExtractionCellCache>> cellCaches_;
  ExtractionIndex assertionIndex_;
  IdentifierFilter seenIndividuals_;
};

}  // namespace velda
