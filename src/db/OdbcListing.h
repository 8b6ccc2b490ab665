#pragma once

#include <string>
#include <vector>

namespace velda {

// The ODBC drivers and data sources configured on this machine, as the
// driver manager lists them; empty when it cannot be asked.
std::vector<std::string> installedOdbcDrivers();
std::vector<std::string> configuredDataSources();

}  // namespace velda
