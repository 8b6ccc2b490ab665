#include "db/AddVariables.h"

#include <cmath>
#include <memory>
#include <new>

#include "common/ConsoleLog.h"
#include "common/Decimal.h"
#include "common/LastError.h"
#include "common/Progress.h"
#include "db/QueryStatement.h"
#include "db/extraction/PendingVariables.h"
#include "db/extraction/VariableNamer.h"
#include "model/CategoricalValue.h"
#include "model/CategoricalVariable.h"
#include "model/QuantitativeVariable.h"
#include "model/SymbolicMatrix.h"

namespace velda {

namespace {

constexpr size_t kModalityBuckets = 19;
constexpr int kCancelled = -1;

enum class Form { Unique, Multiple };

const char* textOrNull(const QueryStatement& statement, int i) {
  return statement.isNull(i) ? nullptr : statement.text(i);
}

[[nodiscard]] int failWithStatementError(QueryStatement& statement) {
  setError("%s", statement.errorText().c_str());
  return 0;
}

[[nodiscard]] int memoryFailure() {
  setError("Memory allocation failed");
  return 0;
}

[[nodiscard]] bool checkColumns(const QueryStatement& statement, Form form) {
  const int count = statement.columnCount();
  if (count < 2 || (form == Form::Multiple && count != 3)) {
    setError("Incorrect number of column");
    return false;
  }
  if (statement.columnKind(0) != COLUMN_CHARACTER) {
    setError("Invalid assertion column type");
    return false;
  }
  if (form == Form::Multiple && statement.columnKind(2) == COLUMN_CHARACTER) {
    setError("Invalid ponderation column type");
    return false;
  }
  return true;
}

// A query may bring any number of categories: the new variable's names are
// indexed from the start.
std::unique_ptr<CategoricalVariable> newCategoricalVariable(std::string name, int32_t multiple) {
  auto variable = std::make_unique<CategoricalVariable>(std::move(name), multiple, kModalityBuckets);
  variable->indexNames();
  return variable;
}

void createUniqueVariables(const QueryStatement& statement, const SymbolicMatrix& matrix, PendingVariables& pending) {
  VariableNamer namer(matrix);
  for (int i = 1; i < statement.columnCount(); ++i) {
    std::string name = namer.nameFor(statement.columnName(i));
    if (statement.columnKind(i) == COLUMN_CHARACTER)
      pending.add(newCategoricalVariable(std::move(name), 0));
    else
      pending.add(std::make_unique<QuantitativeVariable>(std::move(name), 0));
  }
}

// The reading loops poll for Cancel before every row and show the row
// count every hundred rows.
[[nodiscard]] int readUniqueRows(QueryStatement& statement, PendingVariables& pending) {
  int line = 0;
  for (;;) {
    if (cancelRequested()) return kCancelled;
    if (!statement.fetch()) break;
    progressRow(++line);
    const char* assertionId = textOrNull(statement, 0);
    const size_t position = assertionId ? pending.positionOf(assertionId) : PendingVariables::kNotFound;
    if (position == PendingVariables::kNotFound) continue;
    if (pending.isCovered(position)) {
      setError("Error at line %d: query generates more than one value\nfor assertion '%s'", line, assertionId);
      return 0;
    }
    pending.cover(position);
    for (size_t j = 0; j < pending.count(); ++j) {
      CellValue cell;
      if (!pending.variable(j).addCell(textOrNull(statement, static_cast<int>(j + 1)), cell)) return memoryFailure();
      // The value is fresh: a refusal can only be a failed allocation.
      if (!pending.value(position, j).addCell(cell, 1.0)) return memoryFailure();
    }
  }
  if (statement.status() != STATUS_OK) return failWithStatementError(statement);
  return 1;
}

// NULL, no number, zero, negative or infinite weights are refused.
[[nodiscard]] bool readWeight(const QueryStatement& statement, double& weight) {
  if (statement.isNull(2)) return false;
  weight = parseDecimal(statement.text(2));
  return weight > 0.0 && weight <= kLargestWeight;
}

[[nodiscard]] int readMultipleRows(QueryStatement& statement, PendingVariables& pending) {
  auto& variable = static_cast<CategoricalVariable&>(pending.variable(0));
  int line = 0;
  for (;;) {
    if (cancelRequested()) return kCancelled;
    if (!statement.fetch()) break;
    progressRow(++line);
    if (statement.isNull(1)) {
      setError("Error at line %d: modality value is null", line);
      return 0;
    }
    double weight = 0.0;
    if (!readWeight(statement, weight)) {
      setError("Error at line %d: invalid ponderation value", line);
      return 0;
    }
    const char* assertionId = textOrNull(statement, 0);
    const size_t position = assertionId ? pending.positionOf(assertionId) : PendingVariables::kNotFound;
    if (position == PendingVariables::kNotFound) continue;
    auto& value = static_cast<CategoricalValue&>(pending.value(position, 0));
    const char* modalityName = statement.text(1);
    const Modality* known = variable.modalities.find(modalityName);
    if (known && value.entries.find(known->index)) {
      setError("Error at line %d: query generates more than one value\nfor assertion '%s', modality '%s'", line,
               assertionId, modalityName);
      return 0;
    }
    CellValue cell;
    if (!variable.addCell(modalityName, cell) || !value.addCell(cell, weight)) return memoryFailure();
    pending.cover(position);
  }
  if (statement.status() != STATUS_OK) return failWithStatementError(statement);
  return 1;
}

void reportAdded(const SymbolicMatrix& matrix, const PendingVariables& pending, size_t firstAdded, Form form,
                 ConsoleLog& console) {
  for (size_t p = 0; p < pending.assertionCount(); ++p)
    if (!pending.isCovered(p))
      console.print("Warning: assertion '%s' is not covered by the query", pending.assertionAt(p).id.c_str());
  const size_t added = matrix.variableCount() - firstAdded;
  if (form == Form::Unique)
    console.print("%d unique variables added:", static_cast<int>(added));
  else
    console.print("1 multiple variable added:");
  for (size_t v = firstAdded; v < matrix.variableCount(); ++v) console.print("   %s", matrix.variable(v).name.c_str());
  console.print("Total %d variables (%d qualitatives, %d quantitatives)", static_cast<int>(matrix.variableCount()),
                static_cast<int>(matrix.categoricalCount()), static_cast<int>(matrix.quantitativeCount()));
}

[[nodiscard]] int addVariables(SymbolicMatrix& matrix, const Connection& connection, const std::string& sql, Form form,
                               ConsoleLog& console) {
  progressLine1("Adding variables...");
  QueryStatement statement;
  if (!statement.execute(connection, sql)) return failWithStatementError(statement);
  if (!checkColumns(statement, form)) return 0;

  PendingVariables pending(matrix);
  if (form == Form::Unique) {
    createUniqueVariables(statement, matrix, pending);
  } else {
    VariableNamer namer(matrix);
    pending.add(newCategoricalVariable(namer.nameFor(statement.columnName(1)), 1));
  }
  progressEnableCancel(true);
  const int read = form == Form::Unique ? readUniqueRows(statement, pending) : readMultipleRows(statement, pending);
  progressEnableCancel(false);
  if (read != 1) return read;
  statement.close();

  if (pending.coveredCount() == 0) {
    setError("No assertions covered by the query");
    return 0;
  }
  const size_t firstAdded = matrix.variableCount();
  if (!pending.commit()) return 0;
  try {
    reportAdded(matrix, pending, firstAdded, form, console);
  } catch (const std::bad_alloc&) {
    // The variables are in: only console lines are lost.
  }
  return 1;
}

[[nodiscard]] int addVariablesSafely(SymbolicMatrix& matrix, const Connection& connection, const std::string& sql,
                                     Form form, ConsoleLog& console) {
  try {
    return addVariables(matrix, connection, sql, form, console);
  } catch (const std::bad_alloc&) {
    return memoryFailure();
  }
}

}  // namespace

int addUniqueVariables(SymbolicMatrix& matrix, const Connection& connection, const std::string& sql,
                       ConsoleLog& console) {
  return addVariablesSafely(matrix, connection, sql, Form::Unique, console);
}

int addMultipleVariable(SymbolicMatrix& matrix, const Connection& connection, const std::string& sql,
                        ConsoleLog& console) {
  return addVariablesSafely(matrix, connection, sql, Form::Multiple, console);
}

}  // namespace velda
