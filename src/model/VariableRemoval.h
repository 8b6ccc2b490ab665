#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace velda {

class ConsoleLog;
class SymbolicMatrix;

// Whether a rule names the variable as its mother or its daughter.
bool isUsedByRule(const SymbolicMatrix& matrix, size_t variableIndex);

// The variables that the "Remove variables" dialog offers, in variable
// order: those after the cell-holding ones (the added variables) that no
// rule uses. The command is enabled only while the matrix has more variables
// than cell-holding ones, which is exactly when this range is not empty.
// Returns true with the list, or false with "No variable can be deleted. All are
// used by rules." in the last-error text when nothing can be offered.
[[nodiscard]] bool removableVariables(const SymbolicMatrix& matrix, std::vector<int32_t>& offered);

// The command's work: prints "%d variables removed:" and "   %s" per
// variable (in variable order), then removes the variables, their values in
// every row (assertions, reduced assertions, hordes' classes and reduced
// classes) and, for cell-holding variables, their cells in every
// individual (the cell-holding count goes down with them). Indexes held by
// variables and rules are moved down over the removed ones; the matrix's
// counts follow. Returns false and changes nothing when the
// choice covers every variable ("Impossible to remove all the variables"),
// names a variable used by a rule or a variable that does not exist, or
// when memory runs out. An empty choice does nothing and returns true.
[[nodiscard]] bool removeVariables(SymbolicMatrix& matrix, std::span<const int32_t> variableIndexes,
                                   ConsoleLog& console);

}  // namespace velda
