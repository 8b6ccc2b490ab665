#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace velda {

class CategoricalValue;
class ConsoleLog;
class SymbolicMatrix;
class SymbolicVariable;

// What the matrix does around the hierarchies of its categorical variables.
// A hierarchy is built by TaxonomyBuilder; these functions keep the matrix in
// step with it.

// Sets the second accumulator of every entry of the value from its
// variable's hierarchy: an entry none of whose ancestors has an entry holds
// the weight of its whole subtree (its own weight and that of every entry
// below it), every other entry holds 0. Without a hierarchy the second
// accumulators are set to 0.
void computeSubtreeWeights(CategoricalValue& value);

// Brings the matrix in step with a variable whose hierarchy was just built
// or discarded: the subtree weights of every value of it, in the assertions,
// the reduced assertions and the hordes' classes and reduced classes.
void settleTaxonomy(SymbolicMatrix& matrix, size_t variableIndex);

// The indexes of the variables that have a hierarchy, in variable order:
// what "Remove taxonomies" offers.
std::vector<int32_t> taxonomyVariables(const SymbolicMatrix& matrix);

// Restores the variable's flat modalities: no inner node, no parent or
// child link, second accumulators unused (0), counters updated. Does
// nothing for a variable without a hierarchy.
void removeTaxonomy(SymbolicMatrix& matrix, size_t variableIndex);

// The command's work: prints "%d taxonomies removed:" and "   %s" per
// variable (in variable order), then removes each hierarchy. Returns false and
// changes nothing when an index is not a variable with a hierarchy, or when
// memory runs out (the last-error text says why). An empty choice does
// nothing and returns true.
[[nodiscard]] bool removeTaxonomies(SymbolicMatrix& matrix, std::span<const int32_t> variableIndexes,
                                    ConsoleLog& console);

// "taxonomy variable '%s': initial domain is covered by %d nodes"
void printTaxonomyCoverage(ConsoleLog& console, const SymbolicVariable& variable, int coveringNodes);

}  // namespace velda
