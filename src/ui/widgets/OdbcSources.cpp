#include "ui/widgets/OdbcSources.h"

#include <sql.h>
#include <sqlext.h>

#include <cstdlib>

namespace velda::ui {

namespace {

// An ODBC environment for the listing calls only.
class ListingEnvironment {
 public:
  ListingEnvironment() {
    if (!SQL_SUCCEEDED(SQLAllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, &env_))) {
      env_ = SQL_NULL_HENV;
      return;
    }
    SQLSetEnvAttr(env_, SQL_ATTR_ODBC_VERSION, reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3), 0);
  }
  ~ListingEnvironment() {
    if (env_ != SQL_NULL_HENV) SQLFreeHandle(SQL_HANDLE_ENV, env_);
  }
  ListingEnvironment(const ListingEnvironment&) = delete;
  ListingEnvironment& operator=(const ListingEnvironment&) = delete;

  SQLHENV handle() const { return env_; }

 private:
  SQLHENV env_ = SQL_NULL_HENV;
};

}  // namespace

std::vector<std::string> installedOdbcDrivers() {
  std::vector<std::string> drivers;
  ListingEnvironment env;
  if (env.handle() == SQL_NULL_HENV) return drivers;
  SQLCHAR name[256];
  SQLCHAR attributes[1024];
  SQLSMALLINT nameLength = 0;
  SQLSMALLINT attributesLength = 0;
  SQLUSMALLINT direction = SQL_FETCH_FIRST;
  while (SQL_SUCCEEDED(SQLDrivers(env.handle(), direction, name, sizeof name, &nameLength, attributes,
                                  sizeof attributes, &attributesLength))) {
    drivers.emplace_back(reinterpret_cast<const char*>(name));
    direction = SQL_FETCH_NEXT;
  }
  return drivers;
}

std::vector<std::string> configuredDataSources() {
  std::vector<std::string> sources;
  ListingEnvironment env;
  if (env.handle() == SQL_NULL_HENV) return sources;
  SQLCHAR name[SQL_MAX_DSN_LENGTH + 1];
  SQLCHAR description[256];
  SQLSMALLINT nameLength = 0;
  SQLSMALLINT descriptionLength = 0;
  SQLUSMALLINT direction = SQL_FETCH_FIRST;
  while (SQL_SUCCEEDED(SQLDataSources(env.handle(), direction, name, sizeof name, &nameLength, description,
                                      sizeof description, &descriptionLength))) {
    sources.emplace_back(reinterpret_cast<const char*>(name));
    direction = SQL_FETCH_NEXT;
  }
  return sources;
}

std::string sampleConnectionString() {
  const char* path = std::getenv("VELDA_SAMPLE_DB");
  if (!path || !*path) return std::string();
  return std::string("DRIVER=SQLite3;Database=") + path + ";";
}

}  // namespace velda::ui
