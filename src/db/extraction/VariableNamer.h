#pragma once

#include <string>
#include <vector>

namespace velda {

class SymbolicMatrix;

// Names new variables made from database columns so that they differ from
// the names already in the matrix. The column's name has every blank turned
// into '_'; then, in one pass over the taken names in order (individual
// column, assertion column, every variable, then the names given by this
// namer), each clash increments a counter starting at 0 and rebuilds the
// name as "<column>_<counter>" from the column's name as the database gives
// it (blanks kept). A name already passed is not looked at again.
class VariableNamer {
 public:
  // Takes the matrix's individual and assertion column names and the names
  // of its variables. Throws std::bad_alloc.
  explicit VariableNamer(const SymbolicMatrix& matrix);

  // The name for a new variable from this column; it counts as taken for
  // the next calls. Throws std::bad_alloc.
  std::string nameFor(const std::string& columnName);

 private:
  std::vector<std::string> taken_;
};

}  // namespace velda
