#pragma once

#include <string>

#include "db/extraction/Extraction.h"

namespace velda {

class Connection;

// Builds a new matrix from an extraction query without reading its rows:
// the database groups them with aggregate queries and sends back one row
// per group and per category. The query keeps the extraction's layout and
// is checked the same way; the matrix holds the assertions and no
// individual, and the result gives the number of distinct individuals.
// Categories are numbered in ascending byte order of their names, and so
// are the groups. Sampling does not apply (it needs the individuals).
ExtractionResult aggregateInDatabase(const Connection& connection, const std::string& sql, bool lastColumnIsWeight);

}  // namespace velda
