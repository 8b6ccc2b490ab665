#include "document/SymbolicFileCheck.h"

#include "common/LastError.h"

namespace velda {

bool checkSymbolicFile(const std::string&) {
  setError("Checking symbolic files is not available in this version");
  return false;
}

}  // namespace velda
