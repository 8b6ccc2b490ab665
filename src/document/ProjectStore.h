#pragma once

#include <cstdio>
#include <memory>

namespace velda {

class SymbolicMatrix;

// The document's access to project files, on files it opened itself in
// binary mode. Failures leave their reason in the last-error text.
bool writeProjectFile(std::FILE* file, const SymbolicMatrix& matrix);
std::unique_ptr<SymbolicMatrix> readProjectFile(std::FILE* file);

}  // namespace velda
