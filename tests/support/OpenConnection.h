#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "common/LastError.h"
#include "db/Connection.h"

namespace velda::test {

// Opens a connection for a test; a failure is a test failure with the
// driver's message.
inline std::unique_ptr<Connection> openConnection(const std::string& connectionString) {
  std::unique_ptr<Connection> connection = Connection::open(connectionString);
  if (!connection) ADD_FAILURE() << "cannot connect to " << connectionString << ": " << lastError();
  return connection;
}

}  // namespace velda::test
