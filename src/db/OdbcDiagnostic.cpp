#include "db/OdbcDiagnostic.h"

#include <sql.h>
#include <sqlext.h>

#include <cstring>

#include "db/extraction/FetchedText.h"

namespace velda {

bool readDiagnostic(short handleType, void* handle, OdbcDiagnostic& diagnostic) {
  if (!handle) return false;
  SQLCHAR state[6] = {};
  SQLCHAR message[512] = {};
  SQLINTEGER nativeCode = 0;
  SQLSMALLINT length = 0;
  const SQLRETURN rc = SQLGetDiagRec(handleType, handle, 1, state, &nativeCode, message, sizeof message, &length);
  if (!SQL_SUCCEEDED(rc)) return false;
  char* text = reinterpret_cast<char*>(message);
  text[sizeof message - 1] = '\0';
  const bool cut = length >= static_cast<SQLSMALLINT>(sizeof message);
  diagnostic.state = reinterpret_cast<const char*>(state);
  diagnostic.message.assign(text, decodeFetchedText(text, strlen(text), cut));
  return true;
}

}  // namespace velda
