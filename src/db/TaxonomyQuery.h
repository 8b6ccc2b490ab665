#pragma once

#include <cstdint>

namespace velda {

class CategoricalVariable;
class QueryStatement;
class SymbolicMatrix;

// Reads every row of an executed taxonomy query into the variable's
// hierarchy: each row is a path from a node up through its ancestors, every
// column of character type. The rows are read inside the progress display
// ("Row %d" every 100 rows), with Cancel enabled. Returns the number of
// nodes that cover the variable's initial domain (at least 1); 0 with the
// last-error text set, or -1 when the user cancelled, both with the
// variable's previous hierarchy (or its lack of one) untouched.
[[nodiscard]] int buildTaxonomy(CategoricalVariable& variable, QueryStatement& statement);

// buildTaxonomy for the matrix's variable, then the matrix's taxonomy
// counters and the subtree weights of every assertion's value of it. On
// failure or cancel the matrix is as it was.
[[nodiscard]] int applyTaxonomy(SymbolicMatrix& matrix, QueryStatement& statement, int32_t variableIndex);

}  // namespace velda
