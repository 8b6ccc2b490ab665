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

const char* const kKeptRows = "FROM q WHERE q.c1 IS NOT NULL AND q.c2 IS NOT NULL";

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

std::string AggregateSql::weightColumn() const { return "q." + numbered(columnCount_ - 1); }

std::string AggregateSql::withQuery() const {
  std::string sql = "WITH q (";
  for (size_t c = 0; c < columnCount_; ++c) sql += (c ? ", " : "") + numbered(c);
  return sql + ") AS (" + query_ + ") ";
}

std::string AggregateSql::individualsOfGroups(const std::string& columns, Rows rows) const {
  const std::string weight = weighted_ ? "CAST(" + weightColumn() + " AS DOUBLE PRECISION)" : "1";
  return std::string("(SELECT ") + (rows == Rows::Repeated ? "DISTINCT " : "") + "q.c1 AS i, q.c2 AS g, " + weight +
         " AS w" + columns + " " + kKeptRows + ") AS d";
}

std::string AggregateSql::individuals() const {
  std::string sql = withQuery() + "SELECT COUNT(*), COUNT(DISTINCT q.c1)";
  if (weighted_) {
    const std::string w = weightColumn();
    sql += ", MIN(CASE WHEN " + w + " IS NULL OR " + w + " <= 0 THEN q.c1 END)";
  }
  return sql + " " + kKeptRows;
}

std::string AggregateSql::individualCheck() const {
  std::string inner = "SELECT q.c1 AS i";
  std::string outer = "SELECT COUNT(*)";
  auto flag = [&](const std::string& name, const std::string& test) {
    inner += ", " + test + " AS " + name;
    outer += ", MIN(CASE WHEN x." + name + " = 1 THEN x.i END)";
  };
  for (size_t v = 0; v < categorical_.size(); ++v) flag("d" + std::to_string(v + 1), disagreement(column(v)));
  if (weighted_) {
    const std::string w = weightColumn();
    flag("wd", "CASE WHEN MIN(" + w + ") <> MAX(" + w + ") THEN 1 ELSE 0 END");
  }
  return withQuery() + outer + " FROM (" + inner + " " + kKeptRows + " GROUP BY q.c1) AS x";
}

// When individuals repeat, the check made sure that all rows of an
// individual agree, so one row per individual and group remains.
std::string AggregateSql::groups(Rows rows) const {
  std::string columns;
  std::string sums = "SELECT d.g, COUNT(*)";
  for (size_t v = 0; v < categorical_.size(); ++v) {
    if (categorical_[v]) continue;
    const std::string name = "v" + std::to_string(v + 1);
    const std::string e = "d." + name;
    columns += ", " + column(v) + " AS " + name;
    sums += ", MIN(" + e + "), MAX(" + e + "), SUM(CASE WHEN " + e + " IS NULL THEN 0 ELSE d.w END), SUM(CASE WHEN " +
            e + " IS NULL THEN d.w ELSE 0 END)";
  }
  return withQuery() + sums + " FROM " + individualsOfGroups(columns, rows) + " GROUP BY d.g";
}

std::string AggregateSql::categories(size_t variable, Rows rows) const {
  return withQuery() + "SELECT d.g, d.v, SUM(d.w) FROM " +
         individualsOfGroups(", " + column(variable) + " AS v", rows) + " GROUP BY d.g, d.v";
}

}  // namespace velda
