#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "db/QueryStatement.h"

namespace velda::test {

// The texts of one column over every remaining row of an executed
// statement, "<NULL>" for a NULL; the fetching must end without an error.
inline std::vector<std::string> fetchColumn(QueryStatement& statement, int column) {
  std::vector<std::string> texts;
  while (statement.fetch() == 1) texts.push_back(statement.isNull(column) ? "<NULL>" : statement.text(column));
  EXPECT_EQ(statement.status(), STATUS_OK) << statement.errorText();
  return texts;
}

}  // namespace velda::test
