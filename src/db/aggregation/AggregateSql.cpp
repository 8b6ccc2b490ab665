#include "db/aggregation/AggregateSql.h"

#include <cctype>

namespace velda {

namespace {

// A query ends at its last significant character: a final ";" would close
// the statement inside the parentheses that enclose it.
std::string withoutTerminator(std::string query) {
  while (!query.empty() && (std::isspace(static_cast<unsigned char>(query.back())) || query.back() == ';'))
    query.pop_back();
  return query;
}

std::string numbered(size_t column) { return "c" + std::to_string(column + 1); }

// 1 when the rows of one individual disagree on the expression: two
// different values, or a value in some rows and NULL in others.
std::string disagreement(const std::string& e) {
  return "CASE WHEN MIN(" + e + ") <> MAX(" + e + ") OR (COUNT(" + e + ") > 0 AND COUNT(" + e +
         ") < COUNT(*)) THEN 1 ELSE 0 END";
}

}  // namespace

AggregateSql::AggregateSql(std::string query, size_t columnCount, std::vector<bool> categorical, bool weighted)
    : query_(withoutTerminator(std::move(query))),
      columnCount_(columnCount),
      categorical_(std::move(categorical)),
      weighted_(weighted) {}

std::string AggregateSql::description(const std::string& query) {
  return "SELECT * FROM (" + withoutTerminator(query) + ") AS q WHERE 1 = 0";
}

std::string AggregateSql::column(size_t variable) const { return "q." + numbered(variable + 2); }

std::string AggregateSql::weight() const {
  return weighted_ ? "CAST(q." + numbered(columnCount_ - 1) + " AS DOUBLE PRECISION)" : "1";
}

std::string AggregateSql::withQuery() const {
  std::string sql = "WITH q (";
  for (size_t c = 0; c < columnCount_; ++c) sql += (c ? ", " : "") + numbered(c);
  return sql + ") AS (" + query_ + ") ";
}

std::string AggregateSql::keptRows() const { return "FROM q WHERE q.c1 IS NOT NULL AND q.c2 IS NOT NULL"; }

std::string AggregateSql::individualCheck() const {
  std::string inner = "SELECT q.c1 AS i";
  std::string outer = "SELECT COUNT(*)";
  auto flag = [&](const std::string& name, const std::string& test) {
    inner += ", " + test + " AS " + name;
    outer += ", MIN(CASE WHEN x." + name + " = 1 THEN x.i END)";
  };
  for (size_t v = 0; v < categorical_.size(); ++v) flag("d" + std::to_string(v + 1), disagreement(column(v)));
  if (weighted_) {
    const std::string w = "q." + numbered(columnCount_ - 1);
    flag("wn", "CASE WHEN COUNT(" + w + ") < COUNT(*) OR MIN(" + w + ") <= 0 THEN 1 ELSE 0 END");
    flag("wd", "CASE WHEN MIN(" + w + ") <> MAX(" + w + ") THEN 1 ELSE 0 END");
  }
  return withQuery() + outer + " FROM (" + inner + " " + keptRows() + " GROUP BY q.c1) AS x";
}

// The individuals of each group once: the checks made sure that all rows of
// an individual agree, so one row per individual and group remains.
std::string AggregateSql::groups() const {
  std::string distinct = "SELECT DISTINCT q.c1 AS i, q.c2 AS g, " + weight() + " AS w";
  std::string sums = "SELECT d.g, COUNT(*)";
  for (size_t v = 0; v < categorical_.size(); ++v) {
    if (categorical_[v]) continue;
    const std::string name = "v" + std::to_string(v + 1);
    const std::string e = "d." + name;
    distinct += ", " + column(v) + " AS " + name;
    sums += ", MIN(" + e + "), MAX(" + e + "), SUM(CASE WHEN " + e + " IS NULL THEN 0 ELSE d.w END), SUM(CASE WHEN " +
            e + " IS NULL THEN d.w ELSE 0 END)";
  }
  return withQuery() + sums + " FROM (" + distinct + " " + keptRows() + ") AS d GROUP BY d.g";
}

std::string AggregateSql::categories(size_t variable) const {
  return withQuery() + "SELECT d.g, d.v, SUM(d.w) FROM (SELECT DISTINCT q.c1 AS i, q.c2 AS g, " + column(variable) +
         " AS v, " + weight() + " AS w " + keptRows() + ") AS d GROUP BY d.g, d.v";
}

}  // namespace velda
