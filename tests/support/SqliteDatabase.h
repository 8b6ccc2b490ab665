#pragma once

#include <string>

#include "support/TempDir.h"

namespace velda::test {

// A SQLite database file in a fresh temporary folder, built from SQL text by
// the sqlite3 program, and reached through the SQLite3 ODBC driver. The file
// goes with the object.
class SqliteDatabase {
 public:
  // Runs the SQL text on a new, empty file; a failure is a test failure.
  explicit SqliteDatabase(const std::string& sql = "");

  // Runs more SQL on the file; false (and a test failure) when sqlite3 fails.
  bool run(const std::string& sql);

  const std::string& path() const { return path_; }
  // "Driver=SQLite3;Database=<path>;StepAPI=1"
  std::string connectionString() const;

 private:
  TempDir dir_;
  std::string path_;
};

}  // namespace velda::test
