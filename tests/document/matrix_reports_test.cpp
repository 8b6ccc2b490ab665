#include <gtest/gtest.h>

#include <sstream>

#include "common/ConsoleLog.h"
#include "document/view/MatrixReports.h"
#include "ops/division/Division.h"
#include "ops/division/Hordes.h"
#include "support/HandMatrix.h"
#include "support/TempDir.h"

namespace velda {
namespace {

// Paris with x = 1, 2, 4, 20 cut at 12 into [1:4] and [20:20]; the tables
// show each class's node label after its name. At threshold 50 the left
// class may lose one individual: dropping 4 leaves the narrowest interval.
TEST(HordesTable, EveryClassShowsItsLabel) {
  test::InTempDir folder;

  test::HandMatrix data;
  data.quantitative("x");
  data.holdCells();
  Individual& a = data.person("a", {"1"});
  Individual& b = data.person("b", {"2"});
  Individual& c = data.person("c", {"4"});
  data.group("Paris", {&a, &b, &c, &data.person("d", {"20"})});
  ASSERT_EQ(Divide(*data.matrix, 2), 1);

  std::ostringstream hordes;
  writeHordesTable(*data.matrix, false, hordes);
  EXPECT_EQ(hordes.str(),
            "Assertion\tClass\tLabel\tIndividuals\tx\n"
            "Paris\tParis2\t Classe 1 (Ng=3)\t3\t[x in [1:4]]\n"
            "Paris\tParis3\t Classe 1 (Nd=1)\t1\t[x in [20:20]]\n");

  ConsoleLog console;
  ASSERT_EQ(ReduceHordes(*data.matrix, 50, console), 1);
  std::ostringstream reduced;
  writeHordesTable(*data.matrix, true, reduced);
  EXPECT_EQ(reduced.str(),
            "Assertion\tClass\tLabel\tIndividuals\tx\n"
            "Paris\tParis2\t Classe 1 (Ng=3)\t2\t[x in [1:2]]\n"
            "Paris\tParis3\t Classe 1 (Nd=1)\t1\t[x in [20:20]]\n");
}

}  // namespace
}  // namespace velda
