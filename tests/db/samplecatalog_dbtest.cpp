#include <gtest/gtest.h>

#include <cstdlib>
#include <set>
#include <string>
#include <vector>

#include "common/LastError.h"
#include "db/AggregationComparison.h"
#include "db/Connection.h"
#include "db/QueryStatement.h"
#include "db/TableCatalog.h"
#include "support/FileText.h"
#include "support/OpenConnection.h"
#include "support/SqliteDatabase.h"

namespace velda {
namespace {

// The sample database is what the demo and the README use: every table and
// view must come out with column types that extraction accepts, and its
// survey aggregates alike in the database and in the program.
TEST(SampleDatabase, EveryTableAndViewHasAcceptedColumnTypesAndTheSurveyAggregates) {
  const char* source = std::getenv("VELDA_SOURCE_DIR");
  const std::string script = ::test::readFile(std::string(source ? source : ".") + "/data/sample.sql");
  ASSERT_FALSE(script.empty());
  test::SqliteDatabase db(script);
  auto connection = test::openConnection(db.connectionString());
  ASSERT_TRUE(connection);
  // Sorted by type then name, without the index; what the list held goes.
  std::vector<CatalogEntry> entries = {{"stale", "TABLE"}};
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

  test::expectSameAsClientSide(
      *connection, "select person_id, town, sex, age, income, occupation, marital_status, weight from survey", true);
  test::expectSameAsClientSide(*connection,
                               "select person_id, region, occupation, income, sex from survey order by age;\n", false);
  // The same person in every group of her region and of her sex.
  test::expectSameAsClientSide(*connection,
                               "select person_id, region, marital_status, age from survey union all "
                               "select person_id, sex, marital_status, age from survey",
                               false);
}

}  // namespace
}  // namespace velda
