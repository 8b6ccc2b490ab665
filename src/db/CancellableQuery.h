#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace velda {

class Connection;

// One row of a result, every value as trimmed text; nullopt for NULL.
using TextRow = std::vector<std::optional<std::string>>;

// Called for each row, in the order the database sends them; returns false,
// with the last-error text set, to stop.
using RowSink = std::function<bool(const TextRow&)>;

// Runs a select and hands its rows to the sink one at a time. The statement
// runs beside the user-interface thread, which keeps polling the progress
// target; when the user cancels, a statement that the server still executes
// is cancelled with SQLCancel, one whose rows are being read stops at the
// next row. The sink runs on the statement's thread: it must only touch
// what nothing else reads until the call returns. Returns true, or false with the
// last-error text set (the sink's, the driver's message, or "Aggregation
// cancelled").
[[nodiscard]] bool runCancellableQuery(const Connection& connection, const std::string& sql, const RowSink& sink);

}  // namespace velda
