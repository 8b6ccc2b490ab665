#include "document/SymbolicFileCheck.h"

#include <fstream>

#include "common/LastError.h"
#include "formats/library/SymbolicFile.h"
#include "formats/library/SymbolicLibrary.h"

namespace velda {

bool checkSymbolicFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) {
    setError("Can not open file %s", path.c_str());
    return false;
  }
  symlib::SymbolicFile model;
  symlib::ParseSymbolicFile(in, path, model);
  return true;
}

}  // namespace velda
