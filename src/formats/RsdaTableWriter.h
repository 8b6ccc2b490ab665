#pragma once

#include <ostream>
#include <span>

namespace velda {

class Assertion;
class SymbolicMatrix;

// Writes rows (named by labels, see ExportRows.h) as the symbolic table
// that R's RSDA package reads with read.sym.table(file, header = TRUE,
// sep = ";", dec = ".", row.names = 1). Each active variable gives a type
// marker and its columns: "$C" and the number of a single real, "$I" and the
// two bounds of an interval, "$M", the size of the domain and one
// probability per category of a categorical variable (its leaf categories
// in the order of their numbers). The header line names the columns and so
// has one field fewer than the rows, whose first field is the row's name.
// A value that is NA or NU gives "NA" in each of its number fields.
//
// False with nothing written and the last-error text set when no variable
// is active, the rows do not fit or memory runs out. Write errors are left
// in the stream's state.
[[nodiscard]] bool WriteRsdaTable(std::ostream& out, const SymbolicMatrix& matrix,
                                  std::span<const Assertion* const> labels, std::span<const Assertion* const> rows);

}  // namespace velda
