#pragma once

#include <string>

namespace velda {

class ConsoleLog;
class Connection;
class SymbolicMatrix;

// Adding variables to the assertions of a matrix from a query at the level
// of the assertions. Both forms return 1 on success, with the added
// variables listed on the console, or 0 with the last-error text set and
// the matrix exactly as before (variables, counts, values). They read the
// rows inside the progress display ("Row %d" every 100 rows) and stop at
// Cancel, returning -1 with the matrix as before and no error text.
//
// Choices where the query leaves things open:
// - rows that name no existing assertion (or a NULL one) add nothing, not
//   even a category to the new variable;
// - new variables are named with the extraction's renaming rule against
//   the individual and assertion column names and every variable;
// - in the set-valued form a weight that is NULL, not a number, zero,
//   negative or infinite is invalid.

// Single-valued form: column 1 names an assertion, every further column is
// a new single-valued variable (categorical for a character column,
// quantitative otherwise). One row per assertion at most.
[[nodiscard]] int addUniqueVariables(SymbolicMatrix& matrix, const Connection& connection, const std::string& sql,
                                     ConsoleLog& console);

// Set-valued form: exactly three columns, the assertion, a category of the
// new set-valued variable (named after column 2) and its weight for that
// assertion. One row per assertion and category at most.
[[nodiscard]] int addMultipleVariable(SymbolicMatrix& matrix, const Connection& connection, const std::string& sql,
                                      ConsoleLog& console);

}  // namespace velda
