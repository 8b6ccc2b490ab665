#pragma once

#include <string>

namespace velda::test {

// A fresh PostgreSQL database on the server named by the environment
// variable VELDA_PG_CONN (set by scripts/with-postgres.sh), dropped with the
// object. Without the variable, or when the server cannot be reached, the
// object is not available() and a test failure is recorded.
class PgDatabase {
 public:
  PgDatabase();
  ~PgDatabase();
  PgDatabase(const PgDatabase&) = delete;
  PgDatabase& operator=(const PgDatabase&) = delete;

  bool available() const { return available_; }
  // VELDA_PG_CONN with Database= naming this object's database.
  const std::string& connectionString() const { return connectionString_; }

  // Runs SQL (one or more statements) in this database; false (and a test
  // failure with the server's message) when it fails.
  bool run(const std::string& sql);

 private:
  std::string serverConnection_;
  std::string connectionString_;
  std::string name_;
  bool available_ = false;
};

}  // namespace velda::test
