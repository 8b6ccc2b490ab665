#pragma once

// Rows that never repeat an individual: the database aggregates them
// without checking each individual's rows, and must still give the
// client-side assertions and refuse the same weights.

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "db/AggregationComparison.h"

namespace velda::test {

// The generated table reduced to one row per individual (every row of an
// individual carries the same values), in a table of its own so that the
// ODBC drivers describe its columns as in "gen".
inline const char* oneRowPerIndividualSql() {
  return "create table once(ind varchar(12), grp varchar(12), colour varchar(12), size real, n integer,"
         " shape varchar(12), w real);"
         "insert into once select ind, min(grp), min(colour), min(size), min(n), min(shape), min(w) from gen"
         " group by ind;";
}

// run: executes a statement on the database behind the connection.
inline void expectOneRowPerIndividualAsClientSide(const Connection& connection,
                                                  const std::function<bool(const std::string&)>& run) {
  expectSameAsClientSide(connection, "select ind, grp, colour, size, n, shape, w from once", true);
  expectSameAsClientSide(connection, "select ind, grp, shape, n, colour from once", false);
  // Several rows of one individual, NULL weights among them, are refused
  // as usual; here each refused individual has a single row.
  ASSERT_TRUE(run("update once set w = 0 where ind = 'p7'; update once set w = NULL where ind = 'p31';"));
  clearError();
  EXPECT_FALSE(aggregateInDatabase(connection, "select ind, grp, colour, w from once", true).matrix);
  EXPECT_EQ(lastError(), "Ponderation of individual 'p31' is null or negative");
  ASSERT_TRUE(run("update once set w = -1 where ind = 'p31';"));
  clearError();
  EXPECT_FALSE(aggregateInDatabase(connection, "select ind, grp, colour, w from once", true).matrix);
  EXPECT_EQ(lastError(), "Ponderation of individual 'p31' is null or negative");
  // Without the weight the same rows aggregate.
  EXPECT_TRUE(aggregateInDatabase(connection, "select ind, grp, colour from once", false).matrix) << lastError();
}

}  // namespace velda::test
