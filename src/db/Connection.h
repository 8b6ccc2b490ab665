#pragma once

#include <memory>
#include <string>
#include <vector>

namespace velda {

class QueryStatement;

// An open ODBC connection made from the user's connection string (a leading
// "ODBC;" is accepted). The environment runs in ODBC 2 behaviour so that
// date and time columns report the types 9, 10 and 11.
class Connection {
 public:
  ~Connection();
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  // Null on failure, with the driver's message in the last-error text.
  static std::unique_ptr<Connection> open(const std::string& connectionString);

  // The handle for ODBC calls (an SQLHDBC).
  void* handle() const { return dbc_; }
  const std::string& connectionString() const { return connectionString_; }

  // A statement open on this connection registers while it holds a handle:
  // disconnecting frees every statement handle of the connection, so the
  // connection closes its statements first rather than leave them with
  // handles that point into freed memory.
  void attach(QueryStatement& statement) const;
  void detach(QueryStatement& statement) const;

 private:
  Connection() = default;
  void* env_ = nullptr;
  void* dbc_ = nullptr;
  std::string connectionString_;
  mutable std::vector<QueryStatement*> statements_;
};

// The data source's name as the driver reports it, or "not available".
std::string dataSourceName(const Connection& connection);

// The database's name as the driver reports it (what the dialogs' labels
// show after opening), empty when the driver does not say.
std::string databaseName(const Connection& connection);

}  // namespace velda
