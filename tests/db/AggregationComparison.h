#pragma once

// Compares a matrix that the database aggregated with the client-side
// extraction of the same query, and the generated table both are run on.

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "common/LastError.h"
#include "db/Connection.h"
#include "db/aggregation/DatabaseAggregation.h"
#include "db/extraction/Extraction.h"
#include "model/CategoricalValue.h"
#include "model/CategoricalVariable.h"
#include "model/SymbolicMatrix.h"

namespace velda::test {

// A categorical value as "name(weight);" items in name order, weights to
// six significant digits: category numbers differ between the two ways.
inline std::string categoriesByName(const CategoricalVariable& variable, const CategoricalValue& value) {
  std::vector<std::string> named;
  for (const ValueEntry& entry : value.entries) {
    const Modality* modality = variable.byIndex(entry.index);
    std::ostringstream item;
    item << (modality ? modality->name : "?") << '(' << entry.weight << ");";
    named.push_back(item.str());
  }
  std::sort(named.begin(), named.end());
  std::string text;
  for (const std::string& item : named) text += item;
  return text;
}

// Per assertion name: its number of individuals and, per variable, the value
// as the export writes it (categories by name with their weights) with its
// NULL, NA and total weights, printed to six significant digits as the files
// carry them.
inline std::map<std::string, std::string> exportsByName(const SymbolicMatrix& matrix) {
  std::map<std::string, std::string> rows;
  for (const Assertion& assertion : matrix.assertions) {
    std::ostringstream row;
    row << assertion.memberCount << " individuals";
    for (size_t v = 0; v < matrix.variableCount(); ++v) {
      const SymbolicValue& value = assertion.value(v);
      std::ostringstream written;
      value.writeValue(written);
      row << " | " << matrix.variable(v).name << ' ';
      if (matrix.variable(v).isCategorical() && value.hasData())
        row << categoriesByName(static_cast<const CategoricalVariable&>(matrix.variable(v)),
                                static_cast<const CategoricalValue&>(value));
      else
        row << written.str();
      row << " nu " << value.nullWeight << " na " << value.naWeight << " of " << value.totalWeight;
    }
    rows[assertion.id] = row.str();
  }
  return rows;
}

// The variables' descriptions, categorical ones with their categories as a
// sorted list (their numbering differs between the two ways).
inline std::vector<std::string> variablesByName(const SymbolicMatrix& matrix) {
  std::vector<std::string> described;
  for (const auto& variable : matrix.variables()) {
    std::ostringstream out;
    if (!variable->isCategorical()) {
      variable->writeDescription(out);
    } else {
      const auto& categorical = static_cast<const CategoricalVariable&>(*variable);
      std::vector<std::string> names;
      for (const Modality& modality : categorical.modalities) names.push_back(modality.name);
      std::sort(names.begin(), names.end());
      out << categorical.name << ':';
      for (const std::string& name : names) out << ' ' << name;
    }
    described.push_back(out.str());
  }
  return described;
}

// Whether each categorical variable numbers its categories in ascending
// byte order of their names (std::string compares bytes as unsigned).
inline bool categoriesInByteOrder(const SymbolicMatrix& matrix) {
  for (const auto& variable : matrix.variables()) {
    if (!variable->isCategorical()) continue;
    const auto& categorical = static_cast<const CategoricalVariable&>(*variable);
    for (size_t i = 1; i < categorical.modalityCount(); ++i)
      if (categorical.byIndex(int32_t(i))->name < categorical.byIndex(int32_t(i - 1))->name) return false;
  }
  return true;
}

// Runs the query both ways and expects the same assertions, values and
// variables, and the database's count of distinct individuals to be the
// client-side individual count.
inline void expectSameAsClientSide(const Connection& connection, const std::string& sql, bool weighted) {
  SCOPED_TRACE(sql);
  ExtractionOptions options;
  options.lastColumnIsWeight = weighted;
  ExtractionResult client = extractIndividuals(connection, sql, options);
  ASSERT_TRUE(client.matrix) << lastError();
  ExtractionResult aggregated = aggregateInDatabase(connection, sql, weighted);
  ASSERT_TRUE(aggregated.matrix) << lastError();
  EXPECT_EQ(aggregated.matrix->individualCount(), 0u);
  EXPECT_EQ(aggregated.aggregatedIndividuals, static_cast<long>(client.matrix->individualCount()));
  EXPECT_EQ(exportsByName(*aggregated.matrix), exportsByName(*client.matrix));
  EXPECT_EQ(variablesByName(*aggregated.matrix), variablesByName(*client.matrix));
  EXPECT_TRUE(categoriesInByteOrder(*aggregated.matrix));
  EXPECT_TRUE(aggregated.matrix->assertionsIndexed());
}

// A table with NULLs in every variable, weights, individuals repeated in
// one group and spread over several, and rows without an individual or a
// group; categories and groups arrive out of byte order. Every row of an
// individual carries the same values and weight.
inline std::string generatedTableSql() {
  static const char* const kColours[] = {"zeta", "Alpha", "beta", "Mu", "alpha", "b"};
  std::ostringstream sql;
  sql << "begin; create table gen(ind varchar(12), grp varchar(12), colour varchar(12), size real, n integer,"
         " shape varchar(12), w real);";
  auto row = [&](const std::string& ind, const std::string& grp, int p) {
    sql << "insert into gen values(" << ind << ", " << grp << ", ";
    if (p % 11 == 0)
      sql << "NULL";
    else
      sql << '\'' << kColours[(p * 5 + p / 7) % 6] << '\'';
    sql << ", ";
    if (p % 9 == 4)
      sql << "NULL";
    else
      sql << (p % 13) * 0.25;
    sql << ", ";
    if (p % 10 == 3)
      sql << "NULL";
    else
      sql << (p % 17) - 5;
    sql << ", "
        << (p / 2 % 3 == 0   ? "'round'"
            : p / 2 % 3 == 1 ? "'square'"
                             : "NULL")
        << ", " << 0.5 + (p % 4) * 0.25 << ");";
  };
  for (int r = 0; r < 400; ++r) {
    const int p = r % 120;
    const std::string ind = "'p" + std::to_string(p) + "'";
    const std::string grp = "'g" + std::to_string((p * p * 13 + r * 5) % 9) + "'";
    row(ind, grp, p);
    if (r % 50 == 0) row(ind, grp, p);  // the same row again
  }
  row("NULL", "'g1'", 5);
  row("'p5'", "NULL", 5);
  // A group whose only individual has no colour.
  row("'p0'", "'G-empty'", 0);
  sql << "commit;";
  return sql.str();
}

}  // namespace velda::test
