#pragma once

namespace velda {

class SymbolicMatrix;

// Fills the empty matrix `result` from two loaded matrices, taking over
// their variables (the first's, then the second's, renamed so that names
// stay apart) and their rules (indexes of the second's shifted past the
// first's variables). Its assertions are those whose name is in both, each
// with the first's values then the second's, made in the order of the
// table with fewer assertions (the second's when equal). The sources keep
// no variable or rule. Returns true, or false when memory runs out (the result is
// then to be destroyed).
[[nodiscard]] bool Join(SymbolicMatrix& result, SymbolicMatrix& first, SymbolicMatrix& second);

}  // namespace velda
