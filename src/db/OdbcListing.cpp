#include "db/OdbcListing.h"

#include <sql.h>
#include <sqlext.h>

namespace velda {

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

// SQLDrivers and SQLDataSources list names the same way.
using OdbcListing = SQLRETURN (*)(SQLHENV, SQLUSMALLINT, SQLCHAR*, SQLSMALLINT, SQLSMALLINT*, SQLCHAR*, SQLSMALLINT,
                                  SQLSMALLINT*);

std::vector<std::string> listedNames(OdbcListing list) {
  std::vector<std::string> names;
  ListingEnvironment env;
  if (env.handle() == SQL_NULL_HENV) return names;
  SQLCHAR name[256];
  SQLCHAR details[1024];
  SQLSMALLINT nameLength = 0;
  SQLSMALLINT detailsLength = 0;
  SQLUSMALLINT direction = SQL_FETCH_FIRST;
  while (SQL_SUCCEEDED(
      list(env.handle(), direction, name, sizeof name, &nameLength, details, sizeof details, &detailsLength))) {
    names.emplace_back(reinterpret_cast<const char*>(name));
    direction = SQL_FETCH_NEXT;
  }
  return names;
}

}  // namespace

std::vector<std::string> installedOdbcDrivers() { return listedNames(&SQLDrivers); }

std::vector<std::string> configuredDataSources() { return listedNames(&SQLDataSources); }

}  // namespace velda
