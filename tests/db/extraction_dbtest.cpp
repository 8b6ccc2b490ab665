#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "common/LastError.h"
#include "common/Progress.h"
#include "common/Random15.h"
#include "db/Connection.h"
#include "db/GroupsText.h"
#include "db/extraction/Extraction.h"
#include "model/CategoricalVariable.h"
#include "model/QuantitativeVariable.h"
#include "model/SymbolicMatrix.h"
#include "support/HandMatrix.h"
#include "support/OpenConnection.h"
#include "support/Recorders.h"
#include "support/SqliteDatabase.h"

namespace velda {
namespace {

using test::SqliteDatabase;

ExtractionResult extract(const SqliteDatabase& db, const std::string& sql, ExtractionOptions options = {}) {
  auto connection = test::openConnection(db.connectionString());
  if (!connection) return {};
  clearError();
  return extractIndividuals(*connection, sql, options);
}

// The last-error text of an extraction that must fail.
std::string failureOf(const SqliteDatabase& db, const std::string& sql, ExtractionOptions options = {}) {
  EXPECT_FALSE(extract(db, sql, options).matrix) << sql;
  return lastError();
}

TEST(ExtractionSqlite, QueriesThatDoNotFitAreRefusedWithTheirMessage) {
  SqliteDatabase db(
      "create table people(id varchar(10), grp varchar(10), colour varchar(10), height real, w integer,"
      " label text, n integer);"
      "insert into people values('i1','g1','red',1.5,1,'x',3);");
  const ExtractionOptions weighted{true, 0};
  const struct {
    const char* sql;
    ExtractionOptions options;
    const char* message;
  } cases[] = {
      {"select id, grp from people", {}, "Insufficient number of columns"},
      {"select id, grp, w from people", weighted, "Insufficient number of columns"},
      {"select id, height, colour from people", {}, "Invalid assertion column type"},
      {"select id, n, colour from people", {}, "Invalid assertion column type"},
      {"select id, grp, height, colour from people", weighted, "Invalid ponderation column type"},
      {" select id, grp, colour from people", {}, "Error: request must be a 'select'"},
      {"select id, grp, label from people", {}, "Error: unhandled column type"},
  };
  for (const auto& c : cases) EXPECT_EQ(failureOf(db, c.sql, c.options), c.message) << c.sql;
  EXPECT_NE(failureOf(db, "select id, grp, colour from nosuch").find("no such table: nosuch"), std::string::npos);
  // Without the weight option the same query is fine.
  EXPECT_TRUE(extract(db, "select id, grp, height, colour from people").matrix);
}

TEST(ExtractionSqlite, WeightsAreCheckedAndAccumulated) {
  const std::string table =
      "create table t(id varchar(5), grp varchar(5), c varchar(5), x real, w real);"
      "insert into t values('a','g','red',1,2);"
      "insert into t values('b','g','red',2,3);"
      "insert into t values('c','g','blue',3,4);"
      "insert into t values('d','g',NULL,4,1);"
      "insert into t values('a','h','red',1,2);"
      "insert into t values(NULL,'g','green',9,1), ('z',NULL,'green',9,1);";
  const std::string query = "select id, grp, c, x, w from t";
  const ExtractionOptions weighted{true, 0};
  SqliteDatabase db(table);
  ExtractionResult result = extract(db, query, weighted);
  ASSERT_TRUE(result.matrix) << lastError();
  SymbolicMatrix& m = *result.matrix;
  EXPECT_EQ((std::vector<std::string>{m.individualColumn, m.assertionColumn, m.weightColumn}),
            (std::vector<std::string>{"id", "grp", "w"}));
  EXPECT_EQ(m.rowsRead, 7);
  EXPECT_EQ(m.cellCount(), 2u);
  EXPECT_EQ(m.motherCandidateCount(), 1u);
  EXPECT_EQ(m.variable(0).multiple, 1);
  // Rows without an individual or a group are skipped before their values
  // are read: green is not a category.
  EXPECT_EQ(static_cast<CategoricalVariable&>(m.variable(0)).modalityCount(), 2u);
  EXPECT_EQ(m.findIndividual("c")->weight, 4.0);
  // Probabilist: each weight over the weight of non-NULL cells (9).
  EXPECT_EQ(test::groupsText(m), "g: a b c d = (1(0.555556),2(0.444444)) (1:4)\nh: a = (1(1)) (1:1)\n");
  static_cast<CategoricalVariable&>(m.variable(0)).mode = MODE_CARDINALITY;
  EXPECT_EQ(test::groupsText(m), "g: a b c d = (1(5),2(4)) (1:4)\nh: a = (1(2)) (1:1)\n");
  EXPECT_EQ(m.findAssertion("g")->value(0).nullWeight, 1.0);
  EXPECT_EQ(m.findAssertion("g")->value(0).totalWeight, 10.0);

  const struct {
    const char* row;
    const char* message;
  } refused[] = {
      {"('e','h','red',5,0)", "Ponderation of individual 'e' is null or negative"},
      {"('e','h','red',5,-1)", "Ponderation of individual 'e' is null or negative"},
      {"('e','h','red',5,NULL)", "Ponderation of individual 'e' is null or negative"},
      {"('e','h','red',5,1.000001e150)", "Ponderation of individual 'e' is too large"},
      {"('e','h','red',5,1e308)", "Ponderation of individual 'e' is too large"},
      // A repeat compares the cells first, then the weight (invalid before different).
      {"('b','h','red',2,7)", "Ponderation differ from previous definition of 'b'"},
      {"('b','h','red',2,0)", "Ponderation of individual 'b' is null or negative"},
      {"('b','h','blue',2,7)", "Value of column 'c' differ from previous definition of 'b'"},
      {"('a','h','red',NULL,2)", "Value of column 'x' differ from previous definition of 'a'"},
  };
  for (const auto& bad : refused) {
    SqliteDatabase other(table + "insert into t values" + bad.row + ";");
    EXPECT_EQ(failureOf(other, query, weighted), bad.message) << bad.row;
  }
  // The largest weight taken.
  SqliteDatabase largest(table + "insert into t values('e','h','red',5,1e150);");
  ExtractionResult withLargest = extract(largest, query, weighted);
  ASSERT_TRUE(withLargest.matrix) << lastError();
  EXPECT_EQ(withLargest.matrix->findIndividual("e")->weight, 1e150);
}

TEST(ExtractionSqlite, VariableNamesAvoidClashesInOnePass) {
  SqliteDatabase db(
      "create table t(id varchar(5), grp varchar(5), x real, y real, z real, v real, p real, q real);"
      "insert into t values('a','g',1,2,3,4,5,6);");
  const std::string query =
      "select id, grp, x as \"a b\", y as a_b, z as id, v as \"a b\", p as grp, q as v_1, x as v, y as v from t";
  ExtractionResult result = extract(db, query);
  ASSERT_TRUE(result.matrix) << lastError();
  // "a b" -> a_b; a_b clashes with it -> a_b_1; id clashes with the individual
  // column -> id_1; the second "a b" clashes with a_b -> "a b_1" (blanks
  // kept); grp clashes with the assertion column -> grp_1. The last v clashes
  // with v and becomes v_1, which is not compared again with the v_1 passed
  // before: the duplicate is the one-pass rule's own result.
  std::vector<std::string> names;
  for (const auto& v : result.matrix->variables()) names.push_back(v->name);
  EXPECT_EQ(names, (std::vector<std::string>{"a_b", "a_b_1", "id_1", "a b_1", "grp_1", "v_1", "v", "v_1"}));

  // A repeated individual brings the same values, NULLs included; a
  // different one is named by its column's new name.
  ASSERT_TRUE(db.run("insert into t values('b','g',NULL,2,3,4,5,6), ('b','h',NULL,2,3,4,5,6);"));
  ExtractionResult repeated = extract(db, query);
  ASSERT_TRUE(repeated.matrix) << lastError();
  EXPECT_EQ(repeated.matrix->findIndividual("b")->membershipCount(), 2u);
  ASSERT_TRUE(db.run("insert into t values('a','h',9,2,3,4,5,6);"));
  EXPECT_EQ(failureOf(db, query), "Value of column 'a_b' differ from previous definition of 'a'");
}

TEST(ExtractionSqlite, ProgressCountsEveryRowAndCancelKeepsTheRowsRead) {
  SqliteDatabase db(
      "create table t(id varchar(8), grp varchar(5), x integer);"
      "with recursive c(n) as (select 1 union all select n + 1 from c where n < 250)"
      " insert into t select 'i' || n, 'g' || (n % 3), n from c;"
      "update t set id = NULL where x = 1;");
  const std::string query = "select id, grp, x from t order by x";
  {
    test::ProgressRecorder progress;
    ScopedProgressTarget scope(&progress);
    ExtractionResult result = extract(db, query);
    ASSERT_TRUE(result.matrix) << lastError();
    EXPECT_FALSE(result.stopped);
    EXPECT_EQ(result.matrix->rowsRead, 250);
    EXPECT_EQ(result.matrix->individualCount(), 249u);
    EXPECT_EQ(progress.line1,
              (std::vector<std::string>{"Creation of variables...", "Extracting individuals...", "Updating data..."}));
    EXPECT_EQ(progress.line2, (std::vector<std::string>{"Individual 1", "Individual 100", "Individual 200", ""}));
    EXPECT_EQ(progress.polls, 251);
  }
  test::ProgressRecorder progress;
  progress.cancelAtPoll = 151;
  ScopedProgressTarget scope(&progress);
  ExtractionResult result = extract(db, query);
  ASSERT_TRUE(result.matrix) << lastError();
  EXPECT_TRUE(result.stopped);
  EXPECT_EQ(result.matrix->rowsRead, 150);
  EXPECT_EQ(result.matrix->individualCount(), 149u);
  EXPECT_EQ(test::HandMatrix::written(*result.matrix->findAssertion("g0"), 0), "(3:150)");
  EXPECT_EQ(progress.line1.back(), "Updating data...");
}

TEST(ExtractionSqlite, AnErrorWhileFetchingEndsTheExtraction) {
  // The last row makes the filter overflow while it is being fetched.
  SqliteDatabase db(
      "create table t(id varchar(8), grp varchar(5), x integer);"
      "insert into t values('a','g',1), ('b','g',2), ('c','g',-9223372036854775808);");
  EXPECT_FALSE(extract(db, "select id, grp, x from t where abs(x) > 0 order by id").matrix);
  EXPECT_EQ(lastError().substr(0, 6), "Error ");
  EXPECT_NE(lastError().find("integer overflow"), std::string::npos) << lastError();
}

TEST(ExtractionSqlite, SamplingKeepsAtMostNPerGroupChosenByTheReservoirRule) {
  SqliteDatabase db(
      "create table t(id varchar(8), grp varchar(5), x integer);"
      "insert into t values('a','g',1), ('b','g',2), ('c','g',3), ('d','g',4), ('e','g',5),"
      " ('p','h',10), ('q','h',20);");
  const std::string query = "select id, grp, x from t order by grp, id";
  // Seed 1 draws 41, 18467, 6334, 26500, 19169, ...: c replaces slot 1 (b),
  // d replaces slot 0 (a), e is refused (2/5 < 19169/32767). Values come
  // from the sample only; the variable's domain saw every row.
  seedRandom15(1);
  ExtractionResult result = extract(db, query, {false, 2});
  ASSERT_TRUE(result.matrix) << lastError();
  SymbolicMatrix& m = *result.matrix;
  EXPECT_EQ(test::groupsText(m), "g: d c = (3:4)\nh: p q = (10:20)\n");
  EXPECT_EQ(m.findAssertion("g")->memberCount, 2);
  EXPECT_EQ(m.individualCount(), 4u);
  EXPECT_EQ(m.findIndividual("a"), nullptr);
  EXPECT_EQ(static_cast<QuantitativeVariable&>(m.variable(0)).min, 1.0);
  EXPECT_EQ(m.sampleCounter(m.findAssertion("g")->number), 5);

  // A negative size keeps everyone.
  ExtractionResult all = extract(db, query, {false, -2});
  ASSERT_TRUE(all.matrix) << lastError();
  EXPECT_EQ(all.matrix->findAssertion("g")->memberCount, 5);
}

TEST(ExtractionSqlite, SampledOutIndividualsStayWhileAnotherGroupHoldsThem) {
  SqliteDatabase db(
      "create table t(id varchar(8), grp varchar(5), x integer);"
      "insert into t values('a','g',1), ('b','g',2), ('c','g',3), ('a','h',1), ('b','h',2), ('c','h',3);");
  seedRandom15(1);
  // g: a kept; b replaces a (u = 41/32767, slot 0) and a goes; c replaces b
  // (u = 6334/32767) and b goes. h: a is new again and kept; b is refused
  // (1/2 < 19169/32767) and goes; c is refused (1/3 < 15724/32767) but stays
  // as a member of g.
  ExtractionResult result = extract(db, "select id, grp, x from t order by grp, id", {false, 1});
  ASSERT_TRUE(result.matrix) << lastError();
  SymbolicMatrix& m = *result.matrix;
  EXPECT_EQ(test::groupsText(m), "g: c = (3:3)\nh: a = (1:1)\n");
  EXPECT_EQ(m.individualCount(), 2u);
  ASSERT_NE(m.findIndividual("c"), nullptr);
  EXPECT_EQ(m.findIndividual("c")->membershipCount(), 1u);
}

}  // namespace
}  // namespace velda
