/* The floor of every extraction figure: what the ODBC driver alone needs to
 * hand over the rows of a select.
 *
 *   velda-bench-floor CONNECTION SQL
 *
 * Connects, executes the select, binds every column as SQL_C_CHAR into a
 * 256-byte buffer with its length indicator and calls SQLFetch until the
 * end; nothing else. Prints the number of rows. */
#include <sql.h>
#include <sqlext.h>
#include <stdio.h>
#include <stdlib.h>

enum { kBufferSize = 256, kMaxColumns = 1024 };

static int fail(SQLSMALLINT type, SQLHANDLE handle, const char* what) {
  SQLCHAR state[6] = {0};
  SQLCHAR text[1024] = {0};
  SQLINTEGER native = 0;
  SQLSMALLINT length = 0;
  if (handle) SQLGetDiagRec(type, handle, 1, state, &native, text, sizeof text, &length);
  fprintf(stderr, "velda-bench-floor: %s: %s %s\n", what, (const char*)state, (const char*)text);
  return 1;
}

int main(int argc, char** argv) {
  if (argc != 3) {
    fprintf(stderr, "usage: velda-bench-floor CONNECTION SQL\n");
    return 2;
  }
  SQLHENV env = SQL_NULL_HENV;
  SQLHDBC dbc = SQL_NULL_HDBC;
  SQLHSTMT stmt = SQL_NULL_HSTMT;
  SQLAllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, &env);
  SQLSetEnvAttr(env, SQL_ATTR_ODBC_VERSION, (SQLPOINTER)SQL_OV_ODBC3, 0);
  SQLAllocHandle(SQL_HANDLE_DBC, env, &dbc);
  if (!SQL_SUCCEEDED(SQLDriverConnect(dbc, NULL, (SQLCHAR*)argv[1], SQL_NTS, NULL, 0, NULL, SQL_DRIVER_NOPROMPT)))
    return fail(SQL_HANDLE_DBC, dbc, "connect");
  SQLAllocHandle(SQL_HANDLE_STMT, dbc, &stmt);
  if (!SQL_SUCCEEDED(SQLExecDirect(stmt, (SQLCHAR*)argv[2], SQL_NTS))) return fail(SQL_HANDLE_STMT, stmt, "execute");
  SQLSMALLINT columns = 0;
  SQLNumResultCols(stmt, &columns);
  if (columns > kMaxColumns) columns = kMaxColumns;
  char(*buffers)[kBufferSize] = malloc((size_t)columns * kBufferSize);
  SQLLEN* indicators = malloc((size_t)columns * sizeof(SQLLEN));
  for (SQLSMALLINT i = 0; i < columns; ++i)
    SQLBindCol(stmt, (SQLUSMALLINT)(i + 1), SQL_C_CHAR, buffers[i], kBufferSize, &indicators[i]);
  long rows = 0;
  SQLRETURN rc;
  while (SQL_SUCCEEDED(rc = SQLFetch(stmt))) ++rows;
  if (rc != SQL_NO_DATA) return fail(SQL_HANDLE_STMT, stmt, "fetch");
  printf("rows %ld\n", rows);
  SQLFreeHandle(SQL_HANDLE_STMT, stmt);
  SQLDisconnect(dbc);
  SQLFreeHandle(SQL_HANDLE_DBC, dbc);
  SQLFreeHandle(SQL_HANDLE_ENV, env);
  free(buffers);
  free(indicators);
  return 0;
}
