#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "db/extraction/ExtractionBuilder.h"
#include "model/SymbolicMatrix.h"

namespace velda {

class Connection;

struct ExtractionResult {
  // The finished matrix; null when the extraction failed, with the
  // last-error text set.
  std::unique_ptr<SymbolicMatrix> matrix;
  // The user cancelled: the matrix holds the rows read before.
  bool stopped = false;
  // When the database aggregated the rows, the number of distinct
  // individuals it counted (the matrix then holds none); -1 otherwise.
  long aggregatedIndividuals = -1;
  // From the start of the extraction to the end of finishing the matrix.
  std::chrono::steady_clock::time_point startedAt;
  std::chrono::steady_clock::time_point finishedAt;
};

// Runs the select and builds a new matrix from its rows (one individual per
// row, grouped into assertions by column 2), reporting through the progress
// target, which may cancel between rows. Nothing outside the new matrix is
// changed.
ExtractionResult extractIndividuals(const Connection& connection, const std::string& sql,
                                    const ExtractionOptions& options);

}  // namespace velda
