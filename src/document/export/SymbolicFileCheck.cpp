#include "document/export/SymbolicFileCheck.h"

#include <cstdio>
#include <sstream>

#include "common/LastError.h"
#include "common/PathText.h"
#include "common/SafeFiles.h"
#include "formats/library/SymbolicFile.h"
#include "formats/library/SymbolicLibrary.h"

namespace velda {

bool checkSymbolicFile(const std::string& path) {
  std::FILE* file = openRegularFile(path);
  std::string content;
  const bool read = file && readRestOfFile(file, content);
  if (file) std::fclose(file);
  if (!read) {
    setError("Can not open file %s", pathForDisplay(path).c_str());
    return false;
  }
  std::istringstream in(std::move(content));
  symlib::SymbolicFile model;
  symlib::ParseSymbolicFile(in, path, model);
  return true;
}

}  // namespace velda
