#include "TownsFile.h"

namespace velda::symlib::test {
namespace {

using ::testing::ExitedWithCode;
using ::testing::internal::CaptureStdout;
using ::testing::internal::GetCapturedStdout;

class ScannerTest : public LibraryTest {};

std::string WithFirstLine(const std::string& line) { return Edited(TownsFile(), "KORVA = (\n", line + "\n"); }

TEST_F(ScannerTest, LineOf3000CharactersIsReadAnd3001StopsTheRun) {
  SymbolicFile model;
  ParseText(WithFirstLine("KORVA = (" + std::string(2991, ' ')), model);
  EXPECT_EQ(model.individuals.size(), 2u);

  const std::string tooLong = WithFirstLine("KORVA = (" + std::string(2992, ' '));
  CaptureStdout();
  EXPECT_EQ(ExitStatusOf([&] { ParseText(tooLong, model); }), 1);
  EXPECT_EQ(GetCapturedStdout(),
            " ERROR Line in the input file must not be longer than 3000 \n"
            "found 3001 for line 1. STOP PROGRAMM \n");
  EXPECT_EXIT(ParseText(tooLong, model), ExitedWithCode(1), "");

  // Further down, the report names the line after the strings read before it.
  const std::string text = Edited(TownsFile(), "base = \"\"", "base = \"\"" + std::string(2992, ' '));
  CaptureStdout();
  EXPECT_EQ(ExitStatusOf([&] { ParseText(text, model); }), 1);
  EXPECT_EQ(GetCapturedStdout(),
            "CHaine Korva: velda \n"
            "CHaine Korva: sans \n"
            "CHaine Korva:  \n"
            "CHaine Korva:  \n"
            "CHaine Korva:  \n"
            " ERROR Line in the input file must not be longer than 3000 \n"
            "found 3001 for line 11. STOP PROGRAMM \n");
}

TEST_F(ScannerTest, StringsAreCutAt255Characters) {
  const std::string kept(255, 'x');
  SymbolicFile model;
  CaptureStdout();
  ParseText(Edited(TownsFile(), "\"north\"", "\"" + kept + "\""), model);
  std::string out = GetCapturedStdout();
  EXPECT_FALSE(Contains(out, "too long"));
  EXPECT_TRUE(Contains(out, "CHaine Korva: " + kept + " \n"));
  EXPECT_EQ(model.individuals[0].label, kept);

  CaptureStdout();
  ParseText(Edited(TownsFile(), "\"north\"", "\"" + kept + "yz\""), model);
  out = GetCapturedStdout();
  EXPECT_TRUE(Contains(out, "CHaine Korva: AA00 \nthe character string at line 34 is too longit begin with " + kept +
                                " \nCHaine Korva: " + kept + " \nCHaine Korva: AA01 \n"));
  EXPECT_EQ(model.individuals[0].label, kept);
  EXPECT_EQ(model.individuals[1].label, "south");
}

TEST_F(ScannerTest, OldStyleNamesAreReadAndTwoOfThemWarnOnce) {
  std::string text = TownsFile();
  text = Edited(text, "KORVA", "UTILE");
  text = Edited(text, "CONTAINS", "CONTENU");
  text = Edited(text, "FILES, HEADER, INDIVIDUALS, VARIABLES, RULES, HIERARCHIE, RECTANGLE_MATRIX",
                "FICHIER, ENTETE, INDIVIDUS, VARIABLES, RELATIONS, HIERARCHIE, MATRICE_RECTANGLE");
  text = Edited(text, "FILES = (", "FICHIER = (");
  text = Edited(text, "HEADER = (", "ENTETE = (");
  text = Edited(text, "INDIVIDUALS = (", "INDIVIDUS = (");
  text = Edited(text, "RULES = (", "RELATIONS = (");
  text = Edited(text, "RECTANGLE_MATRIX = (", "MATRICE_RECTANGLE = (");
  SymbolicFile model;
  ParseText(text, model);
  SymbolicFile current;
  ParseText(TownsFile(), current);
  EXPECT_EQ(model, current);
  ParseText(text, model);
  const std::string expected =
      "Parsing the filenom with the version 2.1 of the Ulme library\n"
      "WARNING the term CONTENU is old styled use CONTAINS\n"
      "WARNING the term MATRICE_RECTANGLE is old styled use RECTANGLE_MATRIX\n"
      " The parser detected no Syntatctic Errors \n";
  EXPECT_EQ(log().substr(0, expected.size()), expected);
}

TEST_F(ScannerTest, SyntaxErrorsShowTheLineAndUnderlineTheToken) {
  const std::string text = Edited(TownsFile(), "  (1, \"AA00\", \"north\")", "\t(1, \"AA00\" \"north\")");
  SymbolicFile model;
  EXPECT_EQ(ExitStatusOf([&] { ParseText(text, model); }), 1);
  EXPECT_EQ(log(),
            "Parsing the filenom with the version 2.1 of the Ulme library\n"
            "parse error line 34 column 13 reading \"north\"\n"
            " (1, \"AA00\" \"north\"),\n"
            "            _______\n"
            "1 syntactic errors reading the input file\n"
            " THE PROGRAM STOP\n");
  EXPECT_EXIT(ParseText(text, model), ExitedWithCode(1), "parse error line 34 column 13");

  // A character that starts no token is shown with its code.
  EXPECT_EQ(ExitStatusOf([&] { ParseText(Edited(TownsFile(), "var_nb = 4", "var_nb # 4"), model); }), 1);
  EXPECT_TRUE(Contains(log(),
                       "parse error line 18 column 8 reading character \"#\" (ascii: 35 )\n"
                       "var_nb # 4,\n"
                       "       _\n"));
  EXPECT_EQ(ExitStatusOf([&] { ParseText(Edited(TownsFile(), "var_nb = 4", "var_nb = 4\xe9"), model); }), 1);
  EXPECT_TRUE(Contains(log(), "reading character \"\xe9\" (ascii: 233 )\n"));
}

TEST_F(ScannerTest, NumbersTakeSignsFractionsAndExponents) {
  std::string text = Edited(TownsFile(), "12.5, 40)", "+12.5, 1.79769e+308)");
  text = Edited(text, "(12.5, ", "(5e-05, ");
  SymbolicFile model;
  ParseText(text, model);
  EXPECT_EQ(model.variables[0].min, 12.5);
  EXPECT_EQ(model.variables[0].max, 1.79769e+308);
  EXPECT_EQ(model.matrix[0][0].low, 5e-05);
}

TEST_F(ScannerTest, EmptyInputIsASyntaxErrorAtItsEnd) {
  SymbolicFile model;
  EXPECT_EQ(ExitStatusOf([&] { ParseText("", model); }), 1);
  EXPECT_TRUE(Contains(log(), "parse error line 1 column 1 reading \n\n\n1 syntactic errors reading the input file\n"));
}

}  // namespace
}  // namespace velda::symlib::test
