#include "document/ProjectFile.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <new>
#include <vector>

#include "common/LastError.h"
#include "document/ByteWriter.h"
#include "document/ProjectReader.h"
#include "document/ProjectWriter.h"
#include "model/SymbolicMatrix.h"

namespace velda {

bool writeProject(std::FILE* file, const SymbolicMatrix& matrix) {
  try {
    ByteWriter out(file);
    ProjectWriter writer(out, matrix);
    if (writer.write() && out.finish()) return true;
  } catch (const std::bad_alloc&) {
  }
  setError("Save failed");
  return false;
}

std::unique_ptr<SymbolicMatrix> readProject(std::span<const unsigned char> bytes) {
  return ProjectReader(bytes).read();
}

namespace {

// Everything left in the stream; false (with "Load failed") on a read error
// or when memory runs out.
bool readRest(std::FILE* file, std::vector<unsigned char>& bytes) {
  try {
    unsigned char chunk[1 << 16];
    size_t n;
    while ((n = std::fread(chunk, 1, sizeof chunk, file)) > 0) bytes.insert(bytes.end(), chunk, chunk + n);
  } catch (const std::bad_alloc&) {
    setError("Load failed");
    return false;
  }
  if (!std::ferror(file)) return true;
  setError("Load failed");
  return false;
}

}  // namespace

std::unique_ptr<SymbolicMatrix> readProject(std::FILE* file) {
  std::vector<unsigned char> bytes;
  if (!readRest(file, bytes)) return nullptr;
  return readProject(bytes);
}

std::unique_ptr<SymbolicMatrix> readProjectBody(std::FILE* file, uint32_t individualCount, uint32_t assertionCount) {
  std::vector<unsigned char> bytes;
  if (!readRest(file, bytes)) return nullptr;
  return ProjectReader(bytes).readBody(individualCount, assertionCount);
}

ProjectSave saveProject(const std::string& path, const SymbolicMatrix& matrix) {
  std::string temporary = path + ".XXXXXX";
  const int descriptor = mkstemp(temporary.data());
  if (descriptor < 0) {
    setError("Can not open file %s", path.c_str());
    return ProjectSave::CannotOpen;
  }
  // mkstemp makes the file private; give it the permissions of a new file.
  const mode_t mask = umask(0);
  umask(mask);
  fchmod(descriptor, 0666 & ~mask);
  std::FILE* file = fdopen(descriptor, "wb");
  if (!file) {
    close(descriptor);
    unlink(temporary.c_str());
    setError("Can not open file %s", path.c_str());
    return ProjectSave::CannotOpen;
  }
  bool saved = writeProject(file, matrix) && fsync(fileno(file)) == 0;
  saved = std::fclose(file) == 0 && saved;
  saved = saved && std::rename(temporary.c_str(), path.c_str()) == 0;
  if (saved) return ProjectSave::Saved;
  unlink(temporary.c_str());
  setError("Save failed");
  return ProjectSave::Failed;
}

}  // namespace velda
