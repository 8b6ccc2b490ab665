#include "db/TaxonomyQuery.h"

#include <new>
#include <optional>
#include <string_view>
#include <vector>

#include "common/LastError.h"
#include "common/Progress.h"
#include "db/QueryStatement.h"
#include "model/CategoricalVariable.h"
#include "model/SymbolicMatrix.h"
#include "model/Taxonomy.h"
#include "model/TaxonomyBuilder.h"

namespace velda {

namespace {

[[nodiscard]] bool checkCharacterColumns(const QueryStatement& statement) {
  for (int column = 0; column < statement.columnCount(); ++column) {
    if (statement.columnKind(column) == COLUMN_CHARACTER) continue;
    setError("Column %d must be of char type", column);
    return false;
  }
  return true;
}

constexpr int kCancelled = -1;

// Polls for Cancel before every row. Returns 1 after the last row, 0 on a
// failure, kCancelled when the user cancelled.
[[nodiscard]] int readRows(TaxonomyBuilder& builder, QueryStatement& statement) {
  std::vector<std::optional<std::string_view>> row(static_cast<size_t>(statement.columnCount()));
  int line = 0;
  for (;;) {
    if (cancelRequested()) return kCancelled;
    if (!statement.fetch()) break;
    progressRow(++line);
    for (int column = 0; column < statement.columnCount(); ++column) {
      auto& name = row[static_cast<size_t>(column)];
      if (statement.isNull(column))
        name.reset();
      else
        name = statement.text(column);
    }
    if (!builder.addRow(row)) return 0;
  }
  if (statement.status() == STATUS_OK) return 1;
  setError("%s", statement.errorText().c_str());
  return 0;
}

}  // namespace

int buildTaxonomy(CategoricalVariable& variable, QueryStatement& statement) {
  TaxonomyBuilder builder(variable);
  if (!checkCharacterColumns(statement)) return 0;
  int read;
  progressEnableCancel(true);
  try {
    read = readRows(builder, statement);
  } catch (const std::bad_alloc&) {
    setError("Memory allocation failed");
    read = 0;
  }
  progressEnableCancel(false);
  if (read != 1) return read;
  return builder.finish();
}

int applyTaxonomy(SymbolicMatrix& matrix, QueryStatement& statement, int32_t variableIndex) {
  if (variableIndex < 0 || static_cast<size_t>(variableIndex) >= matrix.variableCount()) {
    setError("No variable selected");
    return 0;
  }
  SymbolicVariable& variable = matrix.variable(static_cast<size_t>(variableIndex));
  if (!variable.isCategorical()) {
    setError("Variable '%s' is not categorical", variable.name.c_str());
    return 0;
  }
  const int covering = buildTaxonomy(static_cast<CategoricalVariable&>(variable), statement);
  // A failed or cancelled query left the variable as it was.
  if (covering > 0) settleTaxonomy(matrix, static_cast<size_t>(variableIndex));
  return covering;
}

}  // namespace velda
