#include "document/project/JoinFiles.h"

#include <algorithm>
#include <cstdint>

#include "common/LastError.h"
#include "document/project/ProjectFile.h"
#include "model/SymbolicMatrix.h"
#include "ops/Join.h"

namespace velda {

namespace {

struct LoadedProject {
  bool projectFile = false;
  uint32_t individuals = 0;
  uint32_t assertions = 0;
  std::unique_ptr<SymbolicMatrix> matrix;
};

LoadedProject load(std::FILE* file) {
  LoadedProject loaded;
  if (!readMagicAndCounts(file, loaded.individuals, loaded.assertions)) {
    setError("Incorrect file type");
    return loaded;
  }
  loaded.projectFile = true;
  loaded.matrix = readProjectBody(file, loaded.individuals, loaded.assertions);
  if (!loaded.matrix) setError("Load failed");
  return loaded;
}

}  // namespace

std::unique_ptr<SymbolicMatrix> JoinFiles(std::FILE* first, std::FILE* second) {
  LoadedProject a = load(first);
  if (!a.projectFile) return nullptr;
  LoadedProject b = load(second);
  if (!b.projectFile || !a.matrix || !b.matrix) return nullptr;

  const uint32_t buckets = std::max<uint32_t>(1, std::min(a.individuals, b.individuals));
  std::unique_ptr<SymbolicMatrix> result = SymbolicMatrix::create(1, buckets);
  if (!result || !Join(*result, *a.matrix, *b.matrix)) {
    setError("Join failed");
    return nullptr;
  }
  if (result->assertionCount() == 0) {
    setError("Join failed: assertions have no intersection");
    return nullptr;
  }
  result->assertions.rebuild(result->assertionCount());
  if (!result->indexAssertions()) {
    setError("Join failed");
    return nullptr;
  }
  return result;
}

}  // namespace velda
