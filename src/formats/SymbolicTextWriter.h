#pragma once

#include <ostream>
#include <span>

namespace velda {

class Assertion;
class ConsoleLog;
class SymbolicMatrix;

// Writes the matrix as a symbolic text file (.kvf): the assertions, in the
// order of their numbers, as the file's individuals; the active variables
// renumbered 1, 2, ... with their NA and NU counts over the rows written;
// the taxonomies of active variables; the rules whose mother and daughter
// are both active; and the rectangle matrix. With reducedRows the values of
// row i come from the matrix's reduced assertion i (the individuals stay the
// assertions).
//
// Returns false with nothing written and the last-error text set when no
// variable is active ("No active variable", also printed to the console
// when one is given), when the reduced rows do not match the assertions, or
// when memory runs out. Write errors are left in the stream's state.
//
// Both make sure that the matrix's ordered assertion list is up to date
// first; IndexAndWriteSymbolicText serves the exports that read the file
// back, WriteSymbolicText the plain export.
[[nodiscard]] bool IndexAndWriteSymbolicText(std::ostream& out, SymbolicMatrix& matrix, bool reducedRows,
                                             ConsoleLog* console = nullptr);
[[nodiscard]] bool WriteSymbolicText(std::ostream& out, SymbolicMatrix& matrix, bool reducedRows,
                                     ConsoleLog* console = nullptr);

// The same file for any rows that carry one value per variable of the
// matrix: individual i is named by labels[i] and valued by rows[i] (both
// lists of the same length).
[[nodiscard]] bool WriteSymbolicRows(std::ostream& out, const SymbolicMatrix& matrix,
                                     std::span<const Assertion* const> labels, std::span<const Assertion* const> rows,
                                     ConsoleLog* console = nullptr);

}  // namespace velda
