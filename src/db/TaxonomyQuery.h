#pragma once

#include <cstdint>

namespace velda {

class CategoricalVariable;
class QueryStatement;
class SymbolicMatrix;

// Reads every row of an executed taxonomy query into the variable's
// hierarchy: each row is a path from a node up through its ancestors, every
// column of character type. Returns the number of nodes that cover the
// variable's initial domain (at least 1), or 0 with the last-error text set
// and the variable left without a hierarchy.
[[nodiscard]] int buildTaxonomy(CategoricalVariable& variable, QueryStatement& statement);

// buildTaxonomy for the matrix's variable, then the matrix's taxonomy
// counters and the subtree weights of every assertion's value of it. On
// failure the variable has no hierarchy and the counters say so.
[[nodiscard]] int applyTaxonomy(SymbolicMatrix& matrix, QueryStatement& statement, int32_t variableIndex);

}  // namespace velda
