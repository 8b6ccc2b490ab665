#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace velda {

// The aggregate queries that summarise an extraction query inside the
// database, in standard SQL. The user's query becomes a named derived
// table "q" whose columns are renamed c1..cn, so neither the names nor the
// expressions of the user's columns matter. Rows whose individual or group
// is NULL are left out, as the client-side extraction skips them.
//
// Every query reads the user's query once. The first one counts the rows
// and the individuals; only when some individual has several rows do the
// others need to check that its rows agree and to keep each individual once
// per group, which costs the database a grouping by individual (the
// dearest step by far on large tables).
class AggregateSql {
 public:
  // Whether an individual may have several rows, as the first query tells.
  enum class Rows { OnePerIndividual, Repeated };

  // query: the user's select; columnCount: its number of columns;
  // categorical[k]: whether variable k (column k + 3) is categorical;
  // weighted: the last column is the weight.
  AggregateSql(std::string query, size_t columnCount, std::vector<bool> categorical, bool weighted);

  // The user's query's columns without any of its rows.
  static std::string description(const std::string& query);

  // One row: the number of rows, the number of distinct individuals and,
  // with the weight, one individual with a NULL, zero or negative weight
  // (NULL when none).
  std::string individuals() const;
  // For rows that repeat individuals, one row: per variable one individual
  // whose rows disagree on it (NULL when none), then, with the weight, one
  // whose rows disagree on the weight.
  std::string individualCheck() const;
  // One row per group: its name, its number of distinct individuals, then
  // per quantitative variable the minimum, the maximum,
  // the weight of the individuals with a number and of those with NULL.
  std::string groups(Rows rows) const;
  // One row per group and category of categorical variable k (NULL for the
  // individuals without one): the group, the category and their weight.
  std::string categories(size_t variable, Rows rows) const;

 private:
  std::string column(size_t variable) const;  // "q.cN" for a variable
  std::string weightColumn() const;           // "q.cN" for the weight
  std::string withQuery() const;              // "WITH q (c1, ...) AS (...) "
  // The kept rows as a derived table "d" of columns g (the group), w (the
  // row's weight) and the given expressions, once per individual and group
  // when individuals repeat.
  std::string individualsOfGroups(const std::string& columns, Rows rows) const;

  std::string query_;
  size_t columnCount_;
  std::vector<bool> categorical_;
  bool weighted_;
};

}  // namespace velda
