#include "ui/widgets/OdbcSources.h"

#include <unistd.h>

#include <cstdlib>

namespace velda::ui {

std::string sampleConnectionString() {
  const char* path = std::getenv("VELDA_SAMPLE_DB");
  // The SQLite driver would make an empty database of a missing file.
  if (!path || !*path || access(path, R_OK) != 0) return std::string();
  return std::string("DRIVER=SQLite3;Database=") + path + ";";
}

}  // namespace velda::ui
