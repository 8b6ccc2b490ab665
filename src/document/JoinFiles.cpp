#include "document/JoinFiles.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "common/LastError.h"
#include "document/ProjectFile.h"
#include "document/ProjectFormat.h"
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

uint32_t littleEndian32(const unsigned char* bytes) {
  return static_cast<uint32_t>(bytes[0]) | static_cast<uint32_t>(bytes[1]) << 8 |
         static_cast<uint32_t>(bytes[2]) << 16 | static_cast<uint32_t>(bytes[3]) << 24;
}

// The leading string must be the magic (length 8 with its zero), followed by
// the individual and assertion counts in one 8-byte read.
bool readMagicAndCounts(std::FILE* file, uint32_t& individuals, uint32_t& assertions) {
  const size_t magicLength = std::strlen(project::kMagic) + 1;
  unsigned char length[2];
  unsigned char magic[16];
  unsigned char counts[8];
  if (std::fread(length, 1, sizeof length, file) != sizeof length) return false;
  if ((length[0] | length[1] << 8) != static_cast<int>(magicLength)) return false;
  if (std::fread(magic, 1, magicLength, file) != magicLength) return false;
  if (std::memcmp(magic, project::kMagic, magicLength) != 0) return false;
  if (std::fread(counts, 1, sizeof counts, file) != sizeof counts) return false;
  individuals = littleEndian32(counts);
  assertions = littleEndian32(counts + 4);
  return true;
}

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
