#pragma once

#include <ostream>
#include <span>

namespace velda {

class Assertion;
class SymbolicMatrix;

// Writes rows (named by labels, see ExportRows.h) as a long CSV table with
// the header "assertion,variable,kind,state,min,max,category,weight" and
// one line per row, active variable and item: a number or an interval
// gives one line with its bounds (a single number is both bounds), a
// categorical value one line per category present, in the order of their
// numbers, with the weight that the variable's display mode shows (empty
// when it shows none), an NA or NU value one line with that state and
// nothing else. The kind is "number", "interval" or "categorical"; the
// state "value", "NA" or "NU". Names are quoted as RFC 4180 says.
//
// False with nothing written and the last-error text set when no variable
// is active, the rows do not fit or memory runs out. Write errors are left
// in the stream's state.
[[nodiscard]] bool WriteTidyTable(std::ostream& out, const SymbolicMatrix& matrix,
                                  std::span<const Assertion* const> labels, std::span<const Assertion* const> rows);

}  // namespace velda
