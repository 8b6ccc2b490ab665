#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "common/ConsoleLog.h"
#include "common/LastError.h"
#include "common/Progress.h"
#include "db/AddVariables.h"
#include "db/Connection.h"
#include "db/GroupsText.h"
#include "db/extraction/Extraction.h"
#include "model/CategoricalVariable.h"
#include "model/SymbolicMatrix.h"
#include "support/HandMatrix.h"
#include "support/OpenConnection.h"
#include "support/Recorders.h"
#include "support/SqliteDatabase.h"

namespace velda {
namespace {

using test::openConnection;
using test::SqliteDatabase;

// Groups g1 (2 individuals), g2 and g3 (1 each) described by x. After
// finishing, the assertion table (3 buckets) lists g3, g1, g2.
const char* kPeople =
    "create table people(id varchar(5), grp varchar(5), x real);"
    "insert into people values('a','g1',1);"
    "insert into people values('b','g1',2);"
    "insert into people values('c','g2',3);"
    "insert into people values('d','g3',4);"
    "create table facts(n integer, grp varchar(5), region varchar(10), area real, pop integer, w real);";

// Everything a failed command must leave as it was.
std::string snapshot(const SymbolicMatrix& m) {
  std::ostringstream out;
  for (const auto& v : m.variables()) out << v->name << ' ';
  out << '|' << m.categoricalCount() << '|' << m.cellCount() << '\n' << test::groupsText(m);
  return out.str();
}

std::string valueOf(SymbolicMatrix& m, const char* assertion, size_t variable) {
  return test::HandMatrix::written(*m.findAssertion(assertion), variable);
}

class AddVariablesSqlite : public ::testing::Test {
 protected:
  void SetUp() override {
    connection = openConnection(db.connectionString());
    ASSERT_TRUE(connection);
    ExtractionResult result = extractIndividuals(*connection, "select id, grp, x from people", {});
    ASSERT_TRUE(result.matrix) << lastError();
    matrix = std::move(result.matrix);
  }

  void facts(const std::string& rows) { ASSERT_TRUE(db.run("delete from facts;" + rows)); }

  // Runs a form that must fail; the matrix and the console must not change.
  using AddForm = int (*)(SymbolicMatrix&, const Connection&, const std::string&, ConsoleLog&);

  std::string failure(AddForm form, const std::string& sql) {
    const std::string before = snapshot(*matrix);
    ConsoleLog console;
    clearError();
    EXPECT_EQ(form(*matrix, *connection, sql, console), 0) << sql;
    EXPECT_EQ(snapshot(*matrix), before) << sql;
    EXPECT_EQ(console.count(), 0u) << sql;
    return lastError();
  }

  std::vector<std::string> success(AddForm form, const std::string& sql) {
    ConsoleLog console;
    EXPECT_EQ(form(*matrix, *connection, sql, console), 1) << lastError();
    return std::vector<std::string>(console.lines().begin(), console.lines().end());
  }

  SqliteDatabase db{kPeople};
  std::unique_ptr<Connection> connection;
  std::unique_ptr<SymbolicMatrix> matrix;
};

// Each case: the rows of facts (n, grp, region, area, pop, w), the form, the
// query and the message. Line numbers count the rows of unknown and NULL
// assertions too; unknown assertions are checked as well, the modality
// before the weight; a repeated modality matters only for a known assertion.
TEST_F(AddVariablesSqlite, BothFormsCheckTheirQueryOnEveryRow) {
  const std::string unique =
      "(1,'g1','north',10,5,1), (2,'zz','north',10,5,1), (3,NULL,'north',10,5,1), (4,'g1','south',11,6,1)";
  const std::string multiple = "(1,'g1','red',0,0,2), (2,'zz','red',0,0,1), (3,'g1','blue',0,0,1)";
  const std::string repeated =
      "(1,'zz','red',0,0,1), (2,'zz','red',0,0,1), (3,'g1','red',0,0,2), (4,'g1','blue',0,0,2), (5,'g1','red',0,0,3)";
  const auto unknownWeight = [](const char* w) {
    return "(1,'g1','red',0,0,2), (2,'zz','red',0,0," + std::string(w) + ")";
  };
  const std::string refused = "Error at line 2: invalid ponderation value";
  const struct {
    std::string rows;
    AddForm form;
    const char* sql;
    std::string message;
  } cases[] = {
      {unique, addUniqueVariables, "select grp from facts", "Incorrect number of column"},
      {unique, addUniqueVariables, "select area, region from facts", "Invalid assertion column type"},
      {unique, addUniqueVariables, " select grp, area from facts", "Error: request must be a 'select'"},
      {unique, addUniqueVariables, "select grp, region, area from facts order by n",
       "Error at line 4: query generates more than one value\nfor assertion 'g1'"},
      {unique, addUniqueVariables, "select grp, region from facts where grp = 'zz'",
       "No assertions covered by the query"},
      {unique, addUniqueVariables, "select grp, region from facts where n > 10", "No assertions covered by the query"},
      {multiple, addMultipleVariable, "select grp, region, w, area from facts", "Incorrect number of column"},
      {multiple, addMultipleVariable, "select grp, region from facts", "Incorrect number of column"},
      {multiple, addMultipleVariable, "select n, region, w from facts", "Invalid assertion column type"},
      {multiple, addMultipleVariable, "select grp, region, region from facts", "Invalid ponderation column type"},
      {unknownWeight("0"), addMultipleVariable, "select grp, region, w from facts order by n", refused},
      {unknownWeight("-1.5"), addMultipleVariable, "select grp, region, w from facts order by n", refused},
      {unknownWeight("NULL"), addMultipleVariable, "select grp, region, w from facts order by n", refused},
      {unknownWeight("1.000001e150"), addMultipleVariable, "select grp, region, w from facts order by n", refused},
      {unknownWeight("1e308"), addMultipleVariable, "select grp, region, w from facts order by n", refused},
      {"(1,'g1','red',0,0,2), (2,'zz',NULL,0,0,NULL)", addMultipleVariable,
       "select grp, region, w from facts order by n", "Error at line 2: modality value is null"},
      {repeated, addMultipleVariable, "select grp, region, w from facts order by n",
       "Error at line 5: query generates more than one value\nfor assertion 'g1', modality 'red'"},
      {repeated, addMultipleVariable, "select grp, region, w from facts where grp = 'zz'",
       "No assertions covered by the query"},
  };
  for (const auto& c : cases) {
    facts("insert into facts values" + c.rows + ";");
    EXPECT_EQ(failure(c.form, c.sql), c.message) << c.rows << " / " << c.sql;
  }
}

TEST_F(AddVariablesSqlite, UniqueFormAddsOneValuePerAssertion) {
  facts(
      "insert into facts values(1,'g1','north',10.5,100,1);"
      "insert into facts values(2,'zz','south',1,1,1);"
      "insert into facts values(3,'g3',NULL,7,NULL,1);"
      "insert into facts values(4,NULL,'east',1,1,1);");
  EXPECT_EQ(success(addUniqueVariables, "select grp, region, area, pop as x from facts order by n"),
            (std::vector<std::string>{
                "Warning: assertion 'g2' is not covered by the query",
                "3 unique variables added:",
                "   region",
                "   area",
                "   x_1",
                "Total 4 variables (1 qualitatives, 3 quantitatives)",
            }));
  SymbolicMatrix& m = *matrix;
  ASSERT_EQ(m.variableCount(), 4u);
  EXPECT_EQ(m.cellCount(), 1u);
  EXPECT_EQ(m.variable(1).multiple, 0);
  EXPECT_EQ(m.variable(2).multiple, 0);
  // Rows of unknown assertions leave the new variable's domain alone.
  EXPECT_EQ(static_cast<CategoricalVariable&>(m.variable(1)).modalityCount(), 1u);
  EXPECT_EQ(valueOf(m, "g1", 1), "1");
  EXPECT_EQ(valueOf(m, "g1", 2), "10.5");
  EXPECT_EQ(valueOf(m, "g1", 3), "100");
  EXPECT_EQ(valueOf(m, "g3", 1), "NU");
  EXPECT_EQ(valueOf(m, "g3", 2), "7");
  EXPECT_EQ(valueOf(m, "g3", 3), "NU");
  EXPECT_EQ(valueOf(m, "g2", 2), "NU");
  // The individuals' values are untouched.
  EXPECT_EQ(valueOf(m, "g1", 0), "(1:2)");
}

TEST_F(AddVariablesSqlite, MultipleFormAddsWeightedCategories) {
  facts(
      "insert into facts values(1,'g1','red',0,0,2);"
      "insert into facts values(2,'zz','green',0,0,1);"
      "insert into facts values(3,'g1','blue',0,0,6);");
  EXPECT_EQ(success(addMultipleVariable, "select grp, region as x, w from facts order by n"),
            (std::vector<std::string>{
                "Warning: assertion 'g3' is not covered by the query",
                "Warning: assertion 'g2' is not covered by the query",
                "1 multiple variable added:",
                "   x_1",
                "Total 2 variables (1 qualitatives, 1 quantitatives)",
            }));
  SymbolicMatrix& m = *matrix;
  auto& variable = static_cast<CategoricalVariable&>(m.variable(1));
  EXPECT_EQ(variable.multiple, 1);
  EXPECT_EQ(variable.mode, MODE_PROBABILIST);
  EXPECT_EQ(variable.modalityCount(), 2u);
  EXPECT_EQ(valueOf(m, "g1", 1), "(1(0.25),2(0.75))");
  variable.mode = MODE_CARDINALITY;
  EXPECT_EQ(valueOf(m, "g1", 1), "(1(2),2(6))");
  EXPECT_EQ(valueOf(m, "g2", 1), "NU");
}

TEST_F(AddVariablesSqlite, CancelStopsBothFormsWithTheMatrixUnchanged) {
  std::string rows;
  for (int n = 0; n < 250; ++n)
    rows += "insert into facts values(" + std::to_string(n) + ",'g" + std::to_string(1 + n % 3) + "','r" +
            std::to_string(n) + "'," + std::to_string(n) + ",1,1);";
  facts(rows);
  const std::string before = snapshot(*matrix);
  for (auto form : {addMultipleVariable, addUniqueVariables}) {
    const std::string sql = form == addMultipleVariable ? "select grp, region, w from facts order by n"
                                                        : "select grp, region, area from facts where n < 3";
    // The set-valued form is cancelled after 150 rows, the other before its
    // last row.
    test::ProgressRecorder target;
    target.cancelAtPoll = form == addMultipleVariable ? 151 : 3;
    ScopedProgressTarget scope(&target);
    ConsoleLog console;
    clearError();
    EXPECT_EQ(form(*matrix, *connection, sql, console), -1) << sql;
    EXPECT_EQ(snapshot(*matrix), before) << sql;
    EXPECT_EQ(console.count(), 0u);
    EXPECT_EQ(lastError(), "");
    EXPECT_TRUE(target.cancelEnabled);
    EXPECT_EQ(target.line1, (std::vector<std::string>{"Adding variables..."}));
    if (form == addMultipleVariable) {
      EXPECT_EQ(target.line2.back(), "Row 100");
    }
  }
  // Without Cancel the same query adds its variable.
  EXPECT_EQ(success(addMultipleVariable, "select grp, region, w from facts order by n").size(), 3u);
  EXPECT_EQ(matrix->variableCount(), 2u);
}

}  // namespace
}  // namespace velda
