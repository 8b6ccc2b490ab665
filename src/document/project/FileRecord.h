#pragma once

#include <string>

#include "document/CommandValues.h"

namespace velda {

// Where the document was last saved or loaded from.
struct FileRecord {
  bool valid = false;                                  // false: never saved nor loaded
  std::string path;                                    // full path
  std::string fileName;                                // name with extension
  std::string fileTitle;                               // name without extension
  std::string exportName;                              // the path with its extension replaced by "kvf"
  ExportFormat exportFormat = ExportFormat::Symbolic;  // what the last export wrote there

  // The record of a chosen path.
  static FileRecord fromPath(const std::string& path);
};

}  // namespace velda
