#pragma once

#include <cstdint>

namespace velda {

class SymbolicMatrix;

// "Divide assertions": splits every assertion into `classes` classes (2 to
// 100) of its individuals, all variables quantitative or all categorical
// ("PAS ENCORE DE MELANGE!" otherwise). Frees the previous hordes first; on
// success fills matrix.hordes (slot = assertion number) and stores the class
// number. An assertion that gives fewer classes shows "Division stopped...
// Bad Class Number, try to choose lower number" and the run returns 0,
// keeping no horde and the previous class number; so does a cancel.
int Divide(SymbolicMatrix& matrix, int32_t classes);

}  // namespace velda
