// The table exports read by the programs they are meant for: R's
// read.table with the arguments of RSDA's read.sym.table, and pandas.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <string>

#include "TableMatrix.h"
#include "common/LastError.h"
#include "formats/RsdaTableWriter.h"
#include "formats/TidyTableWriter.h"
#include "support/FileText.h"
#include "support/TempDir.h"

namespace velda {
namespace {

constexpr const char* kRsdaCheck = R"rscript(
f <- commandArgs(trailingOnly = TRUE)[1]
d <- read.table(f, header = TRUE, sep = ";", dec = ".", row.names = 1)
stopifnot(nrow(d) == 3, ncol(d) == 13)
stopifnot(identical(rownames(d), c("A1", "Bob's \"x\"", "caf\u00e9,2")))
stopifnot(identical(colnames(d)[c(2, 4, 5, 7, 8)], c("age", "pay.range", "pay.range.1", "town", "Lyon")))
stopifnot(all(d[[1]] == "$C"), all(d[[3]] == "$I"), all(d[[6]] == "$M"), all(d[[10]] == "$M"))
stopifnot(d[1, 2] == 30, is.na(d[2, 2]), d[3, 2] == 41.5)
stopifnot(d[1, 4] == 10, d[1, 5] == 20, is.na(d[2, 4]), is.na(d[2, 5]), d[3, 4] == -0.5, d[3, 5] == 1500)
stopifnot(all(d[[7]] == 2), d[1, 8] == 1, d[1, 9] == 0, d[2, 9] == 1, is.na(d[3, 8]), is.na(d[3, 9]))
stopifnot(all(d[[11]] == 2), d[1, 12] == 0.25, d[1, 13] == 0.75, d[2, 12] == 1, d[2, 13] == 0, is.na(d[3, 12]))
)rscript";

constexpr const char* kTidyCheck = R"python(
import sys
import pandas

d = pandas.read_csv(sys.argv[1])
assert list(d.columns) == ["assertion", "variable", "kind", "state", "min", "max", "category", "weight"], d.columns
N = None
bob = "Bob's \"x\""
cafe = "caf\u00e9,2"
job = "job;main,kind"
# pandas reads the word NA as a missing value: NA states arrive missing.
expected = [
    ("A1", "age", "number", "value", 30, 30, N, N),
    ("A1", "pay range", "interval", "value", 10, 20, N, N),
    ("A1", "town", "categorical", "value", N, N, "Lyon", N),
    ("A1", job, "categorical", "value", N, N, "clerk", 1),
    ("A1", job, "categorical", "value", N, N, "a;b", 3),
    (bob, "age", "number", "NU", N, N, N, N),
    (bob, "pay range", "interval", N, N, N, N, N),
    (bob, "town", "categorical", "value", N, N, "Saint-\u00c9tienne", N),
    (bob, job, "categorical", "value", N, N, "clerk", 1),
    (cafe, "age", "number", "value", 41.5, 41.5, N, N),
    (cafe, "pay range", "interval", "value", -0.5, 1500, N, N),
    (cafe, "town", "categorical", N, N, N, N, N),
    (cafe, job, "categorical", N, N, N, N, N),
]
assert len(d) == len(expected), len(d)
for i, line in enumerate(expected):
    for column, want in zip(d.columns, line):
        got = d.at[i, column]
        assert pandas.isna(got) if want is None else got == want, (i, column, got, want)
for column in ("min", "max", "weight"):
    assert d[column].dtype.kind == "f", (column, d[column].dtype)
)python";

bool runs(const std::string& command) { return std::system((command + " >/dev/null 2>&1").c_str()) == 0; }

class TableClientTest : public ::testing::Test, protected test::TableMatrix {
 protected:
  // Writes the table and the script into the folder, runs the program on
  // them and returns what it printed; status is its exit status.
  std::string check(bool (*write)(std::ostream&, const SymbolicMatrix&, std::span<const Assertion* const>,
                                  std::span<const Assertion* const>),
                    const std::string& program, const char* script, int& status) {
    {
      std::ofstream table(dir_.file("table.csv"), std::ios::binary);
      EXPECT_TRUE(write(table, *matrix, rows, rows)) << lastError();
      std::ofstream(dir_.file("check"), std::ios::binary) << script;
    }
    const std::string output = dir_.file("output.txt");
    const int result = std::system(
        (program + " " + dir_.file("check") + " " + dir_.file("table.csv") + " >" + output + " 2>&1").c_str());
    status = WIFEXITED(result) ? WEXITSTATUS(result) : -1;
    return ::test::readFile(output);
  }

  test::TempDir dir_;
};

TEST_F(TableClientTest, RReadsTheRsdaTableWithRsdaArguments) {
  if (!runs("command -v Rscript"))
    GTEST_SKIP() << "R is not installed (Rscript not found); scripts/install-deps.sh installs r-base-core";
  int status = -1;
  // A UTF-8 locale, as R users have, so that the names compare as text.
  const std::string output = check(WriteRsdaTable, "LC_ALL=C.UTF-8 Rscript --vanilla", kRsdaCheck, status);
  EXPECT_EQ(status, 0) << output << "\n" << ::test::readFile(dir_.file("table.csv"));
}

TEST_F(TableClientTest, PandasReadsEveryValueOfTheTidyTable) {
  // python3-pandas belongs to the system's interpreter, which may not be
  // the first python3 on the path.
  std::string python;
  for (const char* candidate : {"/usr/bin/python3", "python3"}) {
    if (runs(std::string(candidate) + " -c 'import pandas'")) {
      python = candidate;
      break;
    }
  }
  if (python.empty())
    GTEST_SKIP() << "pandas is not installed for python3; scripts/install-deps.sh installs python3-pandas";
  int status = -1;
  const std::string output = check(WriteTidyTable, python, kTidyCheck, status);
  EXPECT_EQ(status, 0) << output << "\n" << ::test::readFile(dir_.file("table.csv"));
}

}  // namespace
}  // namespace velda
