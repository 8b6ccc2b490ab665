#pragma once

#include <string>
#include <vector>

namespace velda::ui {

// The ODBC drivers and data sources configured on this machine, as the
// driver manager lists them.
std::vector<std::string> installedOdbcDrivers();
std::vector<std::string> configuredDataSources();

// The connection string of the SQLite sample database named by the
// environment variable VELDA_SAMPLE_DB, or empty when it is not set or
// names no readable file.
std::string sampleConnectionString();

}  // namespace velda::ui
