#pragma once

#include <cstdint>
#include <memory>
#include <ostream>
#include <span>
#include <vector>

#include "model/DependenceRule.h"

namespace velda {

class ConsoleLog;
class SymbolicMatrix;

// Rules declared together: one mother, one applicable set, one daughter
// each, chained through DependenceRule::next in this order. Each rule holds
// its own copy of the set (same modalities, same buckets, same order), so a
// rule never depends on another one's lifetime.
using RuleGroup = std::vector<std::unique_ptr<DependenceRule>>;

// A mother is a categorical variable among the cell-holding ones (a rule
// changes the individuals' cells).
bool canBeMother(const SymbolicMatrix& matrix, int32_t variableIndex);
// A daughter of that mother: a cell-holding variable other than the mother,
// not yet a daughter, and not one of the mother's ancestors (which would
// close a loop of mothers).
bool canBeDaughter(const SymbolicMatrix& matrix, int32_t motherIndex, int32_t variableIndex);

// Builds a group from the choices of the dependence dialog: applicable
// modalities by index, daughters by variable index, both in the order given.
// Returns false with the last-error text set when a choice is empty ("No mother
// variable selected", "No modalities selected", "No daughter variables
// selected"), invalid, or when memory runs out.
[[nodiscard]] bool makeRuleGroup(const SymbolicMatrix& matrix, int32_t motherIndex, std::span<const int32_t> applicable,
                                 std::span<const int32_t> daughters, RuleGroup& group);

// Lists in the console the daughter values that applying the group would
// replace by NA (the first 30, "..." when there are more, then
// "   %d values will be replaced by NA"). Returns 1 when nothing would
// change (or when the group is not one that applyRule accepts), 0
// otherwise. The individuals are walked inside the progress display ("Row
// %d" every 100 individuals) with Cancel enabled; a cancelled preview
// prints nothing and returns -1.
[[nodiscard]] int previewRule(const SymbolicMatrix& matrix, ConsoleLog& console, const RuleGroup& group);

// Replaces by NA the daughter cells of every individual whose mother cell is
// NULL, NA or outside the applicable set (the kind bit and payload stay,
// NULL gives way to NA), records the rules (daughters' lists, daughter marks,
// rule list, which takes the group over) and recomputes the daughters'
// values of every assertion from its members. Returns 0 with "Invalid
// dependence rule" and changes nothing when a rule does not name a
// categorical cell-holding mother (the group's) and a cell-holding daughter.
// Returns 0 with "Memory allocation failed" when memory runs out: before any
// cell changed when the rules cannot be recorded, after the replacement when
// a value cannot be recomputed. The affected individuals are first found
// inside the progress display, as previewRule walks them; Cancel there
// returns -1 with the matrix unchanged.
[[nodiscard]] int applyRule(SymbolicMatrix& matrix, RuleGroup&& group);

// "daughter is applicable if mother in {"m1", "m2"}"
void describeRule(const SymbolicMatrix& matrix, const DependenceRule& rule, std::ostream& out);

// The rule in the symbolic text file: "  ((m = (k1,k2))  (d = NA))" with the
// 1-based numbers of the mother's modalities outside the applicable set, in
// the order of the mother's modality table. At most as many numbers are
// written as the set has modalities (none for an empty set).
void writeRule(const SymbolicMatrix& matrix, const DependenceRule& rule, std::ostream& out, int motherNumber,
               int daughterNumber);

}  // namespace velda
