#pragma once

#include <string>

namespace velda::ui {

// The connection string of the SQLite sample database named by the
// environment variable VELDA_SAMPLE_DB, or empty when it is not set or
// names no readable file.
std::string sampleConnectionString();

}  // namespace velda::ui
