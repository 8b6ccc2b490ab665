#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "common/LastError.h"
#include "db/Connection.h"
#include "db/QueryStatement.h"
#include "db/TableCatalog.h"
#include "support/OpenConnection.h"
#include "support/SqliteDatabase.h"

namespace velda {
namespace {

std::string sampleScript() {
  const char* source = std::getenv("VELDA_SOURCE_DIR");
  std::ifstream file(std::string(source ? source : ".") + "/data/sample.sql");
  std::stringstream text;
  text << file.rdbuf();
  return text.str();
}

// The sample database is what the demo and the README use: every table and
// view must come out with column types that extraction accepts.
TEST(SampleDatabase, EveryTableAndViewHasAcceptedColumnTypes) {
  const std::string script = sampleScript();
  ASSERT_FALSE(script.empty());
  test::SqliteDatabase db(script);
  auto connection = test::openConnection(db.connectionString());
  ASSERT_TRUE(connection);
  std::vector<CatalogEntry> entries;
  ASSERT_EQ(listTablesAndViews(*connection, entries), 1) << lastError();
  std::vector<std::string> names;
  for (const CatalogEntry& entry : entries) names.push_back(entry.type + " " + entry.name);
  EXPECT_EQ(names, (std::vector<std::string>{"TABLE survey", "TABLE town_facts", "TABLE town_industries", "TABLE towns",
                                             "VIEW survey_by_town"}));
  for (const CatalogEntry& entry : entries) {
    QueryStatement statement;
    EXPECT_EQ(statement.execute(*connection, "select * from " + entry.name), 1)
        << entry.name << ": " << statement.errorText();
  }

  QueryStatement survey;
  ASSERT_EQ(survey.execute(*connection, "select person_id, town, age, income, weight from survey_by_town"), 1);
  EXPECT_EQ(survey.columnKind(0), COLUMN_INTEGER);
  EXPECT_EQ(survey.columnKind(1), COLUMN_CHARACTER);
  EXPECT_EQ(survey.columnKind(3), COLUMN_REAL);
  int rows = 0;
  int missingIncomes = 0;
  std::set<std::string> towns;
  while (survey.fetch()) {
    ++rows;
    if (survey.isNull(3)) ++missingIncomes;
    towns.insert(survey.text(1));
    EXPECT_GE(survey.number(2), 16.0);
    EXPECT_LE(survey.number(4), 2.5);
  }
  EXPECT_EQ(survey.status(), STATUS_OK);
  EXPECT_EQ(rows, 6000);
  EXPECT_GT(missingIncomes, 0);
  EXPECT_EQ(towns.size(), 18u);
  // Town names are stored as UTF-8 and read as Latin-1.
  EXPECT_EQ(towns.count("Li\xE8ge"), 1u);
  EXPECT_EQ(towns.count("Saint-\xC9tienne"), 1u);
}

}  // namespace
}  // namespace velda
