#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace velda {

class Assertion;
class SymbolicMatrix;

// The rows that an export writes: row i is named by labels[i] (an
// assertion, a horde's class) and valued by rows[i] (the same row or the
// reduced form that stands for it).

// The matrix's assertions in the order of their numbers, valued by
// themselves or, with reducedRows, by the matrix's reduced assertions.
// Rebuilds the matrix's ordered list when it is stale. False with the
// last-error text set when the numbers are not 0 to count - 1 or memory
// runs out.
[[nodiscard]] bool OrderedRows(SymbolicMatrix& matrix, bool reducedRows, std::vector<const Assertion*>& labels,
                               std::vector<const Assertion*>& rows);

// Whether labels and rows pair up and every row holds a value per variable;
// false with "Reduced assertions do not match the assertions" set otherwise.
bool RowsFit(const SymbolicMatrix& matrix, std::span<const Assertion* const> labels,
             std::span<const Assertion* const> rows);

// The indexes of the active variables, in variable order, for rows that
// fit. False with the last-error text set when the rows do not fit or no
// variable is active ("No active variable").
[[nodiscard]] bool ActiveVariables(const SymbolicMatrix& matrix, std::span<const Assertion* const> labels,
                                   std::span<const Assertion* const> rows, std::vector<size_t>& active);

}  // namespace velda
