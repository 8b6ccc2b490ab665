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
class AggregateSql {
 public:
  // query: the user's select; columnCount: its number of columns;
  // categorical[k]: whether variable k (column k + 3) is categorical;
  // weighted: the last column is the weight.
  AggregateSql(std::string query, size_t columnCount, std::vector<bool> categorical, bool weighted);

  // The user's query's columns without any of its rows.
  static std::string description(const std::string& query);

  // One row: the number of distinct individuals, then per variable one
  // individual whose rows disagree on it (NULL when none), then, with the
  // weight, one individual with a NULL, zero or negative weight and one
  // whose rows disagree on the weight.
  std::string individualCheck() const;
  // One row per group: its name, its number of distinct individuals, then
  // per quantitative variable the minimum, the maximum,
  // the weight of the individuals with a number and of those with NULL.
  std::string groups() const;
  // One row per group and category of categorical variable k (NULL for the
  // individuals without one): the group, the category and their weight.
  std::string categories(size_t variable) const;

 private:
  std::string column(size_t variable) const;  // "q.cN" for a variable
  std::string weight() const;                 // the weight of one row
  std::string withQuery() const;              // "WITH q (c1, ...) AS (...) "
  std::string keptRows() const;               // "FROM q WHERE ..."

  std::string query_;
  size_t columnCount_;
  std::vector<bool> categorical_;
  bool weighted_;
};

}  // namespace velda
