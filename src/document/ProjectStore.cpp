#include "document/ProjectStore.h"

#include "common/LastError.h"
#include "model/SymbolicMatrix.h"

namespace velda {

bool writeProjectFile(std::FILE*, const SymbolicMatrix&) {
  setError("Project files are not available in this build");
  return false;
}

std::unique_ptr<SymbolicMatrix> readProjectFile(std::FILE*) {
  setError("Project files are not available in this build");
  return nullptr;
}

}  // namespace velda
