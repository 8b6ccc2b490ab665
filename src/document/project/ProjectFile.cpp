#include "document/project/ProjectFile.h"

#include <cstring>
#include <new>
#include <vector>

#include "common/AtomicFile.h"
#include "common/LastError.h"
#include "common/SafeFiles.h"
#include "document/project/ByteWriter.h"
#include "document/project/ProjectFormat.h"
#include "document/project/ProjectReader.h"
#include "document/project/ProjectWriter.h"
#include "model/SymbolicMatrix.h"

namespace velda {

bool writeProject(std::FILE* file, const SymbolicMatrix& matrix) {
  try {
    ByteWriter out(file);
    ProjectWriter writer(out, matrix);
    if (writer.write() && out.finish()) return true;
  } catch (const std::bad_alloc&) {
    setError("Memory allocation failed");
    return false;
  }
  setError("Save failed");
  return false;
}

std::unique_ptr<SymbolicMatrix> readProject(std::span<const unsigned char> bytes) {
  return ProjectReader(bytes).read();
}

namespace {

uint32_t littleEndian32(const unsigned char* bytes) {
  return static_cast<uint32_t>(bytes[0]) | static_cast<uint32_t>(bytes[1]) << 8 |
         static_cast<uint32_t>(bytes[2]) << 16 | static_cast<uint32_t>(bytes[3]) << 24;
}

}  // namespace

bool readMagicAndCounts(std::FILE* file, uint32_t& individualCount, uint32_t& assertionCount) {
  const size_t magicLength = std::strlen(project::kMagic) + 1;
  unsigned char length[2];
  unsigned char magic[16];
  unsigned char counts[8];
  if (std::fread(length, 1, sizeof length, file) != sizeof length) return false;
  if ((length[0] | length[1] << 8) != static_cast<int>(magicLength)) return false;
  if (std::fread(magic, 1, magicLength, file) != magicLength) return false;
  if (std::memcmp(magic, project::kMagic, magicLength) != 0) return false;
  if (std::fread(counts, 1, sizeof counts, file) != sizeof counts) return false;
  individualCount = littleEndian32(counts);
  assertionCount = littleEndian32(counts + 4);
  return true;
}

std::unique_ptr<SymbolicMatrix> readProject(std::FILE* file) {
  uint32_t individualCount = 0;
  uint32_t assertionCount = 0;
  if (!readMagicAndCounts(file, individualCount, assertionCount)) {
    setError("Incorrect file type");
    return nullptr;
  }
  return readProjectBody(file, individualCount, assertionCount);
}

std::unique_ptr<SymbolicMatrix> readProjectBody(std::FILE* file, uint32_t individualCount, uint32_t assertionCount) {
  std::vector<unsigned char> bytes;
  if (!readRestOfFile(file, bytes)) {
    setError("Load failed");
    return nullptr;
  }
  return ProjectReader(bytes).readBody(individualCount, assertionCount);
}

ProjectSave saveProject(const std::string& path, const SymbolicMatrix& matrix) {
  AtomicFile file;
  if (!file.open(path)) return ProjectSave::CannotOpen;
  if (!writeProject(file.file(), matrix)) return ProjectSave::Failed;
  if (file.commit()) return ProjectSave::Saved;
  setError("Save failed");
  return ProjectSave::Failed;
}

}  // namespace velda
