#pragma once

#include <optional>
#include <string>
#include <vector>

namespace velda {

class Connection;

// One row of a result, every value as trimmed text; nullopt for NULL.
using TextRow = std::vector<std::optional<std::string>>;

// Runs a select whose result is small (one row per group or per category)
// and keeps all of its rows. The statement runs beside the user-interface
// thread, which keeps polling the progress target; when the user cancels,
// the running statement is cancelled with SQLCancel. Returns 1, or 0 with
// the last-error text set (the driver's message, or "Aggregation cancelled").
int runCancellableQuery(const Connection& connection, const std::string& sql, std::vector<TextRow>& rows);

}  // namespace velda
