#pragma once

#include <string>

namespace velda {

// The first diagnostic record of an ODBC handle.
struct OdbcDiagnostic {
  std::string state;    // the five-character SQLSTATE
  std::string message;  // at most 511 bytes, decoded like fetched text
};

// Reads the first record of the handle (handleType is SQL_HANDLE_ENV, _DBC or
// _STMT). False when there is none or it cannot be read.
[[nodiscard]] bool readDiagnostic(short handleType, void* handle, OdbcDiagnostic& diagnostic);

}  // namespace velda
