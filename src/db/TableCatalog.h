#pragma once

#include <string>
#include <vector>

namespace velda {

class Connection;

// A table or view of the data source, as the query dialogs list them.
struct CatalogEntry {
  std::string name;
  std::string type;  // "TABLE" or "VIEW"
};

// The tables and views of the data source, tables first, each sorted by
// name. Returns true (entries replaced), or false with the driver's message in the
// last-error text (entries unchanged).
[[nodiscard]] bool listTablesAndViews(const Connection& connection, std::vector<CatalogEntry>& entries);

}  // namespace velda
