#include "support/SqliteDatabase.h"

#include <gtest/gtest.h>

#include <cstdio>

namespace velda::test {

SqliteDatabase::SqliteDatabase(const std::string& sql) : path_(dir_.file("test.db")) {
  run(sql.empty() ? "pragma user_version = 1;" : sql);
}

bool SqliteDatabase::run(const std::string& sql) {
  const std::string command = "sqlite3 -bail '" + path_ + "'";
  FILE* pipe = popen(command.c_str(), "w");
  if (!pipe) {
    ADD_FAILURE() << "cannot start sqlite3";
    return false;
  }
  const size_t written = fwrite(sql.data(), 1, sql.size(), pipe);
  const int status = pclose(pipe);
  if (written != sql.size() || status != 0) {
    ADD_FAILURE() << "sqlite3 failed on:\n" << sql;
    return false;
  }
  return true;
}

std::string SqliteDatabase::connectionString() const { return "Driver=SQLite3;Database=" + path_ + ";StepAPI=1"; }

}  // namespace velda::test
