#include <gtest/gtest.h>

#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "common/LastError.h"
#include "common/Progress.h"
#include "common/Random15.h"
#include "db/Connection.h"
#include "db/Extraction.h"
#include "model/CategoricalVariable.h"
#include "model/QuantitativeVariable.h"
#include "model/SymbolicMatrix.h"
#include "support/OpenConnection.h"
#include "support/SqliteDatabase.h"

namespace velda {
namespace {

using test::openConnection;
using test::SqliteDatabase;

ExtractionResult extract(const SqliteDatabase& db, const std::string& sql, ExtractionOptions options = {}) {
  auto connection = openConnection(db.connectionString());
  if (!connection) return {};
  clearError();
  return extractIndividuals(*connection, sql, options);
}

// The last-error text of an extraction that must fail.
std::string failureOf(const SqliteDatabase& db, const std::string& sql, ExtractionOptions options = {}) {
  ExtractionResult result = extract(db, sql, options);
  EXPECT_FALSE(result.matrix) << sql;
  return lastError();
}

std::string valueOf(SymbolicMatrix& matrix, const char* assertion, size_t variable) {
  Assertion* a = matrix.findAssertion(assertion);
  if (!a) return "<no assertion>";
  std::ostringstream out;
  a->value(variable).writeValue(out);
  return out.str();
}

std::set<std::string> memberIds(const Assertion& assertion) {
  std::set<std::string> ids;
  for (const Individual* member : assertion.members) ids.insert(member->id);
  return ids;
}

std::vector<std::string> variableNames(const SymbolicMatrix& matrix) {
  std::vector<std::string> names;
  for (const auto& v : matrix.variables()) names.push_back(v->name);
  return names;
}

const char* kPeople =
    "create table people(id varchar(10), grp varchar(10), colour varchar(10), height real, w integer,"
    " label text, n integer);";

TEST(ExtractionSqlite, QueriesThatDoNotFitAreRefusedWithTheirMessage) {
  SqliteDatabase db(std::string(kPeople) + "insert into people values('i1','g1','red',1.5,1,'x',3);");
  EXPECT_EQ(failureOf(db, "select id, grp from people"), "Insufficient number of columns");
  EXPECT_EQ(failureOf(db, "select id, grp, w from people", {true, 0}), "Insufficient number of columns");
  EXPECT_EQ(failureOf(db, "select id, height, colour from people"), "Invalid assertion column type");
  EXPECT_EQ(failureOf(db, "select id, n, colour from people"), "Invalid assertion column type");
  EXPECT_EQ(failureOf(db, "select id, grp, height, colour from people", {true, 0}),
            "Invalid ponderation column type");
  // Without the weight option the same query is fine.
  EXPECT_TRUE(extract(db, "select id, grp, height, colour from people").matrix);

  EXPECT_EQ(failureOf(db, " select id, grp, colour from people"), "Error: request must be a 'select'");
  EXPECT_EQ(failureOf(db, "select id, grp, label from people"), "Error: unhandled column type");
  EXPECT_NE(failureOf(db, "select id, grp, colour from nosuch").find("no such table: nosuch"), std::string::npos);
}

TEST(ExtractionSqlite, RowsBecomeIndividualsGroupedIntoAssertions) {
  SqliteDatabase db(std::string(kPeople) +
                    "insert into people values('i1','g1','red',1.5,1,'',0);"
                    "insert into people values('i2','g1','blue',2.5,1,'',0);"
                    "insert into people values(NULL,'g1','green',9,1,'',0);"
                    "insert into people values('i3',NULL,'green',9,1,'',0);"
                    "insert into people values('i1','g2','red',1.5,1,'',0);"
                    "insert into people values('i1','g1','red',1.5,1,'',0);"
                    "insert into people values('i4','g2',NULL,NULL,1,'',0);");
  ExtractionResult result = extract(db, "select id, grp, colour, height, w from people");
  ASSERT_TRUE(result.matrix) << lastError();
  SymbolicMatrix& m = *result.matrix;
  EXPECT_FALSE(result.stopped);

  EXPECT_EQ(m.individualColumn, "id");
  EXPECT_EQ(m.assertionColumn, "grp");
  EXPECT_EQ(m.weightColumn, "");
  EXPECT_EQ(m.cellCount(), 3u);
  EXPECT_EQ(m.rowsRead, 7);
  ASSERT_EQ(m.variableCount(), 3u);
  EXPECT_EQ(m.categoricalCount(), 1u);
  EXPECT_EQ(m.motherCandidateCount(), 1u);
  EXPECT_EQ(m.quantitativeCount(), 2u);
  EXPECT_EQ(m.variable(0).multiple, 1);
  EXPECT_EQ(m.variable(1).multiple, 1);
  EXPECT_EQ(static_cast<CategoricalVariable&>(m.variable(0)).mode, MODE_PROBABILIST);
  // Rows with a NULL identifier are skipped before their values are read.
  EXPECT_EQ(static_cast<CategoricalVariable&>(m.variable(0)).modalityCount(), 2u);
  EXPECT_EQ(static_cast<QuantitativeVariable&>(m.variable(1)).max, 2.5);

  // i1 is in both groups, once, and the duplicate row adds nothing.
  EXPECT_EQ(m.individualCount(), 3u);
  EXPECT_EQ(m.findIndividual("i3"), nullptr);
  ASSERT_EQ(m.assertionCount(), 2u);
  Assertion& g1 = *m.findAssertion("g1");
  Assertion& g2 = *m.findAssertion("g2");
  EXPECT_EQ(g1.number, 0);
  EXPECT_EQ(g2.number, 1);
  EXPECT_EQ(memberIds(g1), (std::set<std::string>{"i1", "i2"}));
  EXPECT_EQ(memberIds(g2), (std::set<std::string>{"i1", "i4"}));
  EXPECT_EQ(g1.memberCount, 2);
  EXPECT_EQ(g2.memberCount, 2);
  EXPECT_EQ(m.findIndividual("i1")->membershipCount(), 2u);

  EXPECT_EQ(valueOf(m, "g1", 0), "(1(0.5),2(0.5))");
  EXPECT_EQ(valueOf(m, "g2", 0), "(1(1))");
  EXPECT_EQ(valueOf(m, "g1", 1), "(1.5:2.5)");
  EXPECT_EQ(valueOf(m, "g2", 1), "(1.5:1.5)");
  EXPECT_EQ(valueOf(m, "g2", 2), "(1:1)");

  // The tables were compacted and the assertions listed by number.
  EXPECT_EQ(m.individuals.bucketCount(), 3u);
  EXPECT_EQ(m.assertions.bucketCount(), 2u);
  ASSERT_EQ(m.orderedAssertions.size(), 2u);
  EXPECT_EQ(m.orderedAssertions[1], &g2);
}

TEST(ExtractionSqlite, RepeatedIndividualsMustKeepTheirValues) {
  SqliteDatabase db(
      "create table t(id varchar(5), grp varchar(5), x real, c varchar(5));"
      "insert into t values('a','g1',1,'u');"
      "insert into t values('a','g2',1,'u');"
      "insert into t values('b','g1',NULL,NULL);"
      "insert into t values('b','g2',NULL,NULL);");
  ExtractionResult ok = extract(db, "select id, grp, x as \"a b\", c from t");
  ASSERT_TRUE(ok.matrix) << lastError();
  EXPECT_EQ(ok.matrix->individualCount(), 2u);
  EXPECT_EQ(ok.matrix->findIndividual("b")->membershipCount(), 2u);

  db.run("insert into t values('a','g3',2,'u');");
  EXPECT_EQ(failureOf(db, "select id, grp, x as \"a b\", c from t"),
            "Value of column 'a_b' differ from previous definition of 'a'");
  db.run("delete from t where grp = 'g3'; insert into t values('b','g3',NULL,'v');");
  EXPECT_EQ(failureOf(db, "select id, grp, x, c from t"), "Value of column 'c' differ from previous definition of 'b'");
  // A NULL after a value differs as well.
  db.run("delete from t where grp = 'g3'; insert into t values('a','g3',NULL,'u');");
  EXPECT_EQ(failureOf(db, "select id, grp, x, c from t"), "Value of column 'x' differ from previous definition of 'a'");
}

TEST(ExtractionSqlite, WeightsAreCheckedAndAccumulated) {
  const std::string table =
      "create table t(id varchar(5), grp varchar(5), c varchar(5), x real, w real);"
      "insert into t values('a','g','red',1,2);"
      "insert into t values('b','g','red',2,3);"
      "insert into t values('c','g','blue',3,4);"
      "insert into t values('d','g',NULL,4,1);"
      "insert into t values('a','h','red',1,2);";
  SqliteDatabase db(table);
  const ExtractionOptions weighted{true, 0};
  ExtractionResult result = extract(db, "select id, grp, c, x, w from t", weighted);
  ASSERT_TRUE(result.matrix) << lastError();
  SymbolicMatrix& m = *result.matrix;
  EXPECT_EQ(m.weightColumn, "w");
  EXPECT_EQ(m.cellCount(), 2u);
  EXPECT_EQ(m.findIndividual("c")->weight, 4.0);
  // Probabilist: each weight over the weight of non-NULL cells (9).
  EXPECT_EQ(valueOf(m, "g", 0), "(1(0.555556),2(0.444444))");
  static_cast<CategoricalVariable&>(m.variable(0)).mode = MODE_CARDINALITY;
  EXPECT_EQ(valueOf(m, "g", 0), "(1(5),2(4))");
  EXPECT_EQ(valueOf(m, "h", 0), "(1(2))");
  EXPECT_EQ(m.findAssertion("g")->value(0).nullWeight, 1.0);
  EXPECT_EQ(m.findAssertion("g")->value(0).totalWeight, 10.0);

  const std::string query = "select id, grp, c, x, w from t";
  const struct {
    const char* weight;
    const char* message;
  } refused[] = {
      {"0", "Ponderation of individual 'e' is null or negative"},
      {"-1", "Ponderation of individual 'e' is null or negative"},
      {"NULL", "Ponderation of individual 'e' is null or negative"},
      {"1.000001e150", "Ponderation of individual 'e' is too large"},
      {"1e308", "Ponderation of individual 'e' is too large"},
  };
  for (const auto& bad : refused) {
    SqliteDatabase other(table + "insert into t values('e','h','red',5," + bad.weight + ");");
    EXPECT_EQ(failureOf(other, query, weighted), bad.message) << bad.weight;
  }
  // The largest weight taken.
  SqliteDatabase largest(table + "insert into t values('e','h','red',5,1e150);");
  ExtractionResult withLargest = extract(largest, query, weighted);
  ASSERT_TRUE(withLargest.matrix) << lastError();
  EXPECT_EQ(withLargest.matrix->findIndividual("e")->weight, 1e150);
  // A repeat compares the cells first, then the weight (invalid before different).
  SqliteDatabase differ(table + "insert into t values('b','h','red',2,7);");
  EXPECT_EQ(failureOf(differ, query, weighted), "Ponderation differ from previous definition of 'b'");
  SqliteDatabase invalidRepeat(table + "insert into t values('b','h','red',2,0);");
  EXPECT_EQ(failureOf(invalidRepeat, query, weighted), "Ponderation of individual 'b' is null or negative");
  SqliteDatabase cellsFirst(table + "insert into t values('b','h','blue',2,7);");
  EXPECT_EQ(failureOf(cellsFirst, query, weighted), "Value of column 'c' differ from previous definition of 'b'");
}

TEST(ExtractionSqlite, VariableNamesAvoidClashesInOnePass) {
  SqliteDatabase db(
      "create table t(id varchar(5), grp varchar(5), x real, y real, z real, v real, p real, q real);"
      "insert into t values('a','g',1,2,3,4,5,6);");
  ExtractionResult result = extract(db,
                                     "select id, grp, x as \"a b\", y as a_b, z as id, v as \"a b\", p as grp,"
                                     " q as v_1, x as v, y as v from t");
  ASSERT_TRUE(result.matrix) << lastError();
  // "a b" -> a_b; a_b clashes with it -> a_b_1; id clashes with the individual
  // column -> id_1; the second "a b" clashes with a_b -> "a b_1" (blanks
  // kept); grp clashes with the assertion column -> grp_1. The last v clashes
  // with v and becomes v_1, which is not compared again with the v_1 passed
  // before: the duplicate is the one-pass rule's own result.
  EXPECT_EQ(variableNames(*result.matrix),
            (std::vector<std::string>{"a_b", "a_b_1", "id_1", "a b_1", "grp_1", "v_1", "v", "v_1"}));
}

// Records the progress lines and asks to cancel at the given poll.
class RecordingProgress : public ProgressTarget {
 public:
  explicit RecordingProgress(int cancelAtPoll = -1) : cancelAtPoll_(cancelAtPoll) {}
  void setLine1(const std::string& text) override { line1.push_back(text); }
  void setLine2(const std::string& text) override { line2.push_back(text); }
  void enableCancel(bool enabled) override { cancelEnabled.push_back(enabled); }
  bool cancelRequested() override { return ++polls == cancelAtPoll_; }

  std::vector<std::string> line1;
  std::vector<std::string> line2;
  std::vector<bool> cancelEnabled;
  int polls = 0;

 private:
  int cancelAtPoll_;
};

TEST(ExtractionSqlite, ProgressCountsEveryRowAndCancelKeepsTheRowsRead) {
  SqliteDatabase db("create table t(id varchar(8), grp varchar(5), x integer);"
                    "with recursive c(n) as (select 1 union all select n + 1 from c where n < 250)"
                    " insert into t select 'i' || n, 'g' || (n % 3), n from c;"
                    "update t set id = NULL where x = 1;");
  {
    RecordingProgress progress;
    ScopedProgressTarget scope(&progress);
    ExtractionResult result = extract(db, "select id, grp, x from t order by x");
    ASSERT_TRUE(result.matrix) << lastError();
    EXPECT_FALSE(result.stopped);
    EXPECT_EQ(result.matrix->rowsRead, 250);
    EXPECT_EQ(result.matrix->individualCount(), 249u);
    EXPECT_EQ(progress.line1,
              (std::vector<std::string>{"Creation of variables...", "Extracting individuals...", "Updating data..."}));
    EXPECT_EQ(progress.line2, (std::vector<std::string>{"Individual 1", "Individual 100", "Individual 200", ""}));
    EXPECT_EQ(progress.polls, 251);
  }
  {
    RecordingProgress progress(151);
    ScopedProgressTarget scope(&progress);
    ExtractionResult result = extract(db, "select id, grp, x from t order by x");
    ASSERT_TRUE(result.matrix) << lastError();
    EXPECT_TRUE(result.stopped);
    EXPECT_EQ(result.matrix->rowsRead, 150);
    EXPECT_EQ(result.matrix->individualCount(), 149u);
    EXPECT_EQ(valueOf(*result.matrix, "g0", 0), "(3:150)");
    EXPECT_EQ(progress.line1.back(), "Updating data...");
  }
}

TEST(ExtractionSqlite, AnErrorWhileFetchingEndsTheExtraction) {
  // The last row makes the filter overflow while it is being fetched.
  SqliteDatabase db("create table t(id varchar(8), grp varchar(5), x integer);"
                    "insert into t values('a','g',1);"
                    "insert into t values('b','g',2);"
                    "insert into t values('c','g',-9223372036854775808);");
  ExtractionResult result = extract(db, "select id, grp, x from t where abs(x) > 0 order by id");
  EXPECT_FALSE(result.matrix);
  EXPECT_EQ(lastError().substr(0, 6), "Error ");
  EXPECT_NE(lastError().find("integer overflow"), std::string::npos) << lastError();
}

TEST(ExtractionSqlite, SamplingKeepsAtMostNPerGroupChosenByTheReservoirRule) {
  SqliteDatabase db("create table t(id varchar(8), grp varchar(5), x integer);"
                    "insert into t values('a','g',1);"
                    "insert into t values('b','g',2);"
                    "insert into t values('c','g',3);"
                    "insert into t values('d','g',4);"
                    "insert into t values('e','g',5);"
                    "insert into t values('p','h',10);"
                    "insert into t values('q','h',20);");
  const std::string query = "select id, grp, x from t order by grp, id";
  // Seed 1 draws 41, 18467, 6334, 26500, 19169, ...: c replaces slot 1 (b),
  // d replaces slot 0 (a), e is refused (2/5 < 19169/32767).
  seedRandom15(1);
  ExtractionResult result = extract(db, query, {false, 2});
  ASSERT_TRUE(result.matrix) << lastError();
  SymbolicMatrix& m = *result.matrix;
  const Assertion& g = *m.findAssertion("g");
  ASSERT_EQ(g.members.size(), 2u);
  EXPECT_EQ(g.members[0]->id, "d");
  EXPECT_EQ(g.members[1]->id, "c");
  EXPECT_EQ(g.memberCount, 2);
  EXPECT_EQ(memberIds(*m.findAssertion("h")), (std::set<std::string>{"p", "q"}));
  EXPECT_EQ(m.individualCount(), 4u);
  EXPECT_EQ(m.findIndividual("a"), nullptr);
  EXPECT_EQ(m.findIndividual("e"), nullptr);
  // Values come from the sample only; the variable's domain saw every row.
  EXPECT_EQ(valueOf(m, "g", 0), "(3:4)");
  EXPECT_EQ(static_cast<QuantitativeVariable&>(m.variable(0)).min, 1.0);
  EXPECT_EQ(m.sampleCounter(g.number), 5);

  // The same seed gives the same sample.
  std::set<std::string> firstRun;
  std::set<std::string> secondRun;
  for (std::set<std::string>* run : {&firstRun, &secondRun}) {
    seedRandom15(20240611);
    ExtractionResult again = extract(db, query, {false, 3});
    ASSERT_TRUE(again.matrix) << lastError();
    *run = memberIds(*again.matrix->findAssertion("g"));
  }
  EXPECT_EQ(firstRun.size(), 3u);
  EXPECT_EQ(firstRun, secondRun);

  // N = 1 keeps exactly one individual per group.
  seedRandom15(7);
  ExtractionResult one = extract(db, query, {false, 1});
  ASSERT_TRUE(one.matrix) << lastError();
  EXPECT_EQ(one.matrix->findAssertion("g")->members.size(), 1u);
  EXPECT_EQ(one.matrix->findAssertion("h")->members.size(), 1u);
  EXPECT_EQ(one.matrix->individualCount(), 2u);
}

TEST(ExtractionSqlite, SampledOutIndividualsStayWhileAnotherGroupHoldsThem) {
  SqliteDatabase db("create table t(id varchar(8), grp varchar(5), x integer);"
                    "insert into t values('a','g',1);"
                    "insert into t values('b','g',2);"
                    "insert into t values('c','g',3);"
                    "insert into t values('a','h',1);"
                    "insert into t values('b','h',2);"
                    "insert into t values('c','h',3);");
  seedRandom15(1);
  // g: a kept; b replaces a (u = 41/32767, slot 0) and a goes; c replaces b
  // (u = 6334/32767) and b goes. h: a is new again and kept; b is refused
  // (1/2 < 19169/32767) and goes; c is refused (1/3 < 15724/32767) but stays
  // as a member of g.
  ExtractionResult result = extract(db, "select id, grp, x from t order by grp, id", {false, 1});
  ASSERT_TRUE(result.matrix) << lastError();
  SymbolicMatrix& m = *result.matrix;
  EXPECT_EQ(memberIds(*m.findAssertion("g")), (std::set<std::string>{"c"}));
  EXPECT_EQ(memberIds(*m.findAssertion("h")), (std::set<std::string>{"a"}));
  EXPECT_EQ(m.individualCount(), 2u);
  ASSERT_NE(m.findIndividual("c"), nullptr);
  EXPECT_EQ(m.findIndividual("c")->membershipCount(), 1u);
  EXPECT_EQ(valueOf(m, "h", 0), "(1:1)");
}

}  // namespace
}  // namespace velda
