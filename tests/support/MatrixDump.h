#pragma once

#include <cstdio>
#include <string>

#include "document/project/ProjectFile.h"

namespace velda::test {

// The matrix in full, as its project file holds it: variables, modalities,
// taxonomies, rules, individuals with their cells, assertions with their
// values. What a failed or cancelled command must leave byte for byte.
// Empty when the project cannot be written.
inline std::string matrixDump(const SymbolicMatrix& matrix) {
  std::FILE* file = std::tmpfile();
  if (!file) return {};
  std::string bytes;
  if (writeProject(file, matrix) && std::fflush(file) == 0) {
    std::rewind(file);
    char buffer[65536];
    size_t count;
    while ((count = std::fread(buffer, 1, sizeof buffer, file)) > 0) bytes.append(buffer, count);
  }
  std::fclose(file);
  return bytes;
}

}  // namespace velda::test
