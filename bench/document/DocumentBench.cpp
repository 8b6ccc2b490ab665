// velda-bench-document PROJECT.gaj OUT.kvf
// Reads a project and times the symbolic text writer alone (the first step
// of every export), so that the whole export can be compared with it.
#include <chrono>
#include <cstdio>
#include <fstream>

#include "document/project/ProjectFile.h"
#include "formats/SymbolicTextWriter.h"
#include "model/SymbolicMatrix.h"

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: %s PROJECT.gaj OUT.kvf\n", argv[0]);
    return 2;
  }
  std::FILE* file = std::fopen(argv[1], "rb");
  if (!file) return 1;
  std::unique_ptr<velda::SymbolicMatrix> matrix = velda::readProject(file);
  std::fclose(file);
  if (!matrix) return 1;
  const auto start = std::chrono::steady_clock::now();
  std::ofstream out(argv[2], std::ios::binary);
  const bool written = velda::IndexAndWriteSymbolicText(out, *matrix, false);
  out.close();
  const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  if (!written) return 1;
  std::printf("write_seconds %.3f\n", seconds);
  return 0;
}
