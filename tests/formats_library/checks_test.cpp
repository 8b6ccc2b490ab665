#include "TownsFile.h"

namespace velda::symlib::test {
namespace {

using ::testing::ExitedWithCode;

const char* const kAnnounce = "Parsing the filenom with the version 2.1 of the Ulme library\n";
const char* const kNoSyntaxError = " The parser detected no Syntatctic Errors \n";
const char* const kNoSemanticError = " The parser detected no semantic Errors \n";

class CheckDeathTest : public LibraryTest {
 protected:
  // Parses in a child process that must end with status 1; returns the
  // log the child left.
  std::string logOfRefusedParse(const std::string& text) {
    EXPECT_EXIT(
        {
          SymbolicFile model;
          ParseText(text, model);
        },
        ExitedWithCode(1), "");
    return log();
  }
};

// One edit of the sample each, and a part of what the refused parse logs.
TEST_F(CheckDeathTest, SingleEditsAreRefusedWithTheirMessage) {
  const struct {
    const char* from;
    const char* to;
    const char* logged;
  } cases[] = {
      {"RULES, HIERARCHIE", "HIERARCHIE",
       "Parsing the filenom with the version 2.1 of the Ulme library\n"
       " Le nomRULES n'a pas ete trouve dans le Contenu\nARRET PROGRAMME\n"},
      // A count too large for the integers is read as the largest one.
      {"indiv_nb = 2", "indiv_nb = 99999999999999999999",
       "ERROR the number ofindividuals declared in the header (9223372036854775807 is different of the "
       "number ofindividuals described in the file (2\n"},
      {"rules_nb = 1", "rules_nb = 0",
       " More relation than declared in the header max =0\nImpossible to parse the symbolic Matrix,1 Errors before\n"},
      {"(4 = (1,2)", "(4 = (1,9), 4 = (2), 3 = (1)",
       "Impossible to parse an Hierarchy node with Number of SubNode9 greater than4\n"
       "     Subnode:9 Not taken into account\n"
       "hierarchichal value related to the4 value alredy set\n"
       "error in the hierarchie of the variablecolour has more than one father:1\n"
       "Impossible to parse a Rule description when previous errors occurs Errors Before : PARSER STOP\n"},
      {"continue", "binary", " the variable type binary is not supported by this library\n"},
      {"HEADER = (", "FILES = (\n),\n\nHEADER = (", "the block FILES is described twice\n"},
  };
  for (const auto& c : cases)
    EXPECT_TRUE(Contains(logOfRefusedParse(Edited(TownsFile(), c.from, c.to)), c.logged)) << c.to;
}

TEST_F(CheckDeathTest, KeysOutsideTheirBlockOrOfTheWrongTypeAreErrors) {
  std::string text = Edited(TownsFile(), "base = \"\"", "base = \"\",\nfoo = \"x\",\ntitle = \"x\"");
  text = Edited(text, "title = \"Towns\"", "title = 3");
  EXPECT_EQ(logOfRefusedParse(text),
            std::string(kAnnounce) +
                "the Identifierfoo is not valid for describe anFILES file  :\n"
                "possible element of aFILES file\n"
                "procedure_name\nversion\ncreate_date\nfiliere_name\nfiliere_path\narray\nbase\n"
                " ERROR the name 'title does not fit with any possible parameter within the  blockFILES\n"
                "impossible to affect an integer to the description\n"
                "Impossible to parse an Hierarchy description when previous errors occurs Errors Before : PARSER "
                "STOP\n" +
                kNoSyntaxError + "4 semantic error were detected \n");
}

TEST_F(CheckDeathTest, OneIndividualMoreThanDeclaredIsKeptAndTheNextRefused) {
  std::string text = Edited(PlainTowns(), "indiv_nb = 2", "indiv_nb = 1");
  const std::string kept = Edited(text, "  (NU, \n   (-89.2345:1e+06), \n   NA, \n   ())", "");
  // Only the coherence check finds the second individual.
  std::string tolerated =
      Edited(Edited(kept, "   (1(0.5),3(0.5))),\n", "   (1(0.5),3(0.5)))\n"), "nb_na = 1", "nb_na = 0");
  tolerated = Edited(Edited(tolerated, "nb_nu = 1", "nb_nu = 0"), "0, 1, 12.5", "0, 0, 12.5");
  tolerated = Edited(tolerated, "\"sex\", 1, 0", "\"sex\", 0, 0");
  EXPECT_EQ(logOfRefusedParse(tolerated),
            std::string(kAnnounce) + kNoSyntaxError + kNoSemanticError +
                "ERROR the number ofindividuals declared in the header (1 is different of the number ofindividuals "
                "described in the file (2\n"
                "this Base file contain\n\t2 individuals\n\t4 variables\n\t0 rules\n\t0 hierarchies\n"
                "\t0 NA values\n\t0 NU values\n"
                " THE PROGRAM STOP\n");

  const std::string third =
      Edited(tolerated, "  (2, \"AA01\", \"south\")", "  (2, \"AA01\", \"south\"),\n  (3, \"AA02\", \"east\")");
  EXPECT_TRUE(
      Contains(logOfRefusedParse(third),
               "too much individuals described, max 1\nImpossible to parse the symbolic Matrix,1 Errors before\n"));
}

TEST_F(CheckDeathTest, ValuesOfTheWrongKindOrCategoryAreErrors) {
  std::string text = Edited(TownsFile(), "  (12.5, \n   (3:7.5), \n   2, \n   (1(0.5),3(0.5)))",
                            "  ((1:2), \n   (3:7.5), \n   3, \n   (1,3))");
  text = Edited(text, "   (-89.2345:1e+06), \n   NA, ", "   4.5, \n   (1(1)), ");
  EXPECT_EQ(logOfRefusedParse(text), std::string(kAnnounce) +
                                         "Error a interval value for the variable which is typecontinue\n"
                                         " to much categories for variablesex Max =2\n"
                                         "Error a multiple simple value for the variable:\n"
                                         "\t which is of type:mult_nominal_Modif\n"
                                         "Error a simple value for the variable which is typeinter_continue\n"
                                         "Error a multiple modal value for the variable:\n"
                                         "\t which is of type:nominal\n" +
                                         kNoSyntaxError + "5 semantic error were detected \n");
}

TEST_F(CheckDeathTest, MatrixLargerOrNarrowerThanDeclaredIsAnError) {
  std::string text = Edited(TownsFile(), "   (1(0.5),3(0.5))),", "   (1(0.5),3(0.5)), 7),");
  text = Edited(text, "   NA, \n   ())", "   NA),\n  (1, (1:2), 1, ())");
  EXPECT_TRUE(Contains(logOfRefusedParse(text),
                       " the number of column within the matrix is5 greater than the number of objects declared:4\n"
                       " the number of column within the matrix is3 smaller than the number of variables described:4\n"
                       " the number of line within the matrix is3 greater than the number of objects declared:2\n" +
                           std::string(kNoSyntaxError) + "3 semantic error were detected \n"));

  // Beyond the variables described, a column is measured against var_nb as declared.
  std::string wider =
      Edited(Edited(TownsFile(), "var_nb = 4", "var_nb = 5"), "   (1(0.5),3(0.5))),", "   (1(0.5),3(0.5)), 7),");
  EXPECT_TRUE(Contains(logOfRefusedParse(wider),
                       " the number of column within the matrix is5 greater than the number of objects declared:5\n"));
}

std::string WithDistances(const std::string& rows) {
  std::string text = Edited(TownsFile(), "RECTANGLE_MATRIX)", "RECTANGLE_MATRIX, DIST_MATRIX)");
  return Edited(text, "   ())\n)\n", "   ())\n),\nDIST_MATRIX = (\n" + rows + "\n)\n");
}

TEST_F(CheckDeathTest, DistanceMatrixMustHaveOneRowPerIndividual) {
  EXPECT_TRUE(Contains(logOfRefusedParse(WithDistances("  (0)")),
                       "the DIST_MATRIX has 1 lines with a standard matrix of2individuals\n"));
  EXPECT_TRUE(Contains(logOfRefusedParse(WithDistances("  (0),\n  (1.5)")),
                       " the line2 of the DIST_MATRIX must hold2 values and not1\n"));

  SymbolicFile model;
  ParseText(WithDistances("  (0),\n  (1.5, 0)"), model);
  EXPECT_EQ(model.distances, (SymTriangle{{0}, {1.5, 0}}));
  SymbolicFile again;
  ParseText(TextOf(model), again);
  EXPECT_EQ(again, model);
}

TEST_F(CheckDeathTest, CoherenceCheckComparesHeaderAndContent) {
  std::string text = Edited(TownsFile(), "var_nb = 4", "var_nb = 5");
  text = Edited(text, "\"sex\", 1, 0", "\"sex\", 0, 0");
  text = Edited(text, "nb_nu = 1", "nb_nu = 2");
  EXPECT_EQ(logOfRefusedParse(text),
            std::string(kAnnounce) + kNoSyntaxError + kNoSemanticError +
                "ERROR the number ofvariables declared in the header (5 is different of the number ofvariables "
                "described in the file (4\n"
                "the number of NA values within the MATRIX1 \t is different of the SUM of element0 declared within "
                "the variables\n"
                "the number of NU values within the MATRIX1 \t is different of the number declared in the header2\n"
                "this Base file contain\n\t2 individuals\n\t4 variables\n\t1 rules\n\t1 hierarchies\n"
                "\t1 NA values\n\t1 NU values\n"
                " THE PROGRAM STOP\n");
}

TEST_F(CheckDeathTest, UnsupportedBlocksAndKindsAreRefused) {
  std::string text = Edited(TownsFile(), "RECTANGLE_MATRIX)", "RECTANGLE_MATRIX, VARIABLES_SET)");
  text = Edited(text, "INDIVIDUALS = (", "VARIABLES_SET = (\n),\n\nINDIVIDUALS = (");
  EXPECT_EQ(logOfRefusedParse(text), std::string(kAnnounce) +
                                         " the block VARIABLES_SET is not supported by this library\n" +
                                         kNoSyntaxError + "1 semantic error were detected \n");
}

TEST_F(CheckDeathTest, LogThatCannotBeCreatedStopsTheProgram) {
  std::filesystem::create_directory(file("parser.dat"));
  EXPECT_EXIT(
      {
        SymbolicFile model;
        ParseText(TownsFile(), model);
      },
      ExitedWithCode(1), "impossible to open the log file \"PARSER.DAT\"\n PROGRAMM STOP");
}

class CheckTest : public LibraryTest {};

TEST_F(CheckTest, OldFashionedZeroCategoryBecomesNAWithAWarning) {
  std::string text = Edited(TownsFile(), "   2, \n   (1(0.5),3(0.5)))", "   0, \n   (0(1)))");
  text = Edited(Edited(text, "nb_na = 1", "nb_na = 3"), "\"sex\", 1, 0", "\"sex\", 2, 0");
  text = Edited(text, "proba, 0, 0", "proba, 1, 0");
  SymbolicFile model;
  ParseText(text, model);
  EXPECT_EQ(model.matrix[0][2].kind, SymValue::Kind::NA);
  EXPECT_EQ(model.matrix[0][3].kind, SymValue::Kind::NA);
  EXPECT_TRUE(Contains(log(), std::string(kAnnounce) +
                                  "Warning : old fashion NA description by '0'\n"
                                  "Warning : old fashion NA description by '0'\n" +
                                  kNoSyntaxError));
}

// A repeated category keeps its first place and its last weight.
TEST_F(CheckTest, RepeatedCategoriesAreMergedInListsOfAnyLength) {
  SymbolicFile four;
  ParseText(Edited(TownsFile(), "(1(0.5),3(0.5))", "(3(0),1(0.5),3(0.25),3(0.5))"), four);
  EXPECT_EQ(four.matrix[0][3].items, (std::vector<SymItem>{{3, 0.5}, {1, 0.5}}));
  // Sixteen items are compared pair by pair; seventeen go to the full check.
  for (const int length : {16, 17}) {
    std::string items = "(2(0.25)";
    for (int k = 2; k < length; ++k) items += ",1(0.5)";
    items += ",2(0.125))";
    SymbolicFile model;
    ParseText(Edited(TownsFile(), "(1(0.5),3(0.5))", items), model);
    EXPECT_EQ(model.matrix[0][3].items, (std::vector<SymItem>{{2, 0.125}, {1, 0.5}})) << length;
  }
}

TEST_F(CheckTest, MoreThan200CategoriesIsReportedButNotCounted) {
  std::string categories;
  for (int k = 1; k <= 201; ++k) {
    categories += (k > 1 ? ", \n      (" : "(") + std::to_string(k) + ", \"AE01\", \"c\", 1 )";
  }
  const std::string list =
      "((1, \"AE01\", \"red\", 1 ), \n      (2, \"AE02\", \"green\", 1 ), \n      (3, \"AE03\", \"blue\", 1 ))";
  std::string text = Edited(TownsFile(), list, "(" + categories + ")");
  text = Edited(text, "proba, 0, 0, 3,", "proba, 0, 0, 201,");
  SymbolicFile model;
  ::testing::internal::CaptureStderr();
  ParseText(text, model);
  const std::string err = ::testing::internal::GetCapturedStderr();
  EXPECT_TRUE(Contains(err,
                       " Impossible to create a nominal Multpile Variablewith 201different categories\n"
                       "  Maximum possible 200 \n"));
  EXPECT_EQ(model.variables[3].categories.size(), 201u);
  EXPECT_FALSE(Contains(log(), "Multpile"));
}

TEST_F(CheckTest, EmptyListsAndBlocksAreAccepted) {
  const std::string text =
      "KORVA = (\nCONTAINS = (FILES, HEADER, INDIVIDUALS, VARIABLES, RULES, HIERARCHIE, RECTANGLE_MATRIX),\n"
      "FILES = (),\n"
      "HEADER = (indiv_nb = 0, var_nb = 1, rules_nb = 1, nb_hierarchies = 1, nb_na = 0, nb_nu = 0),\n"
      "INDIVIDUALS = (),\n"
      "VARIABLES = ((1, mult_nominal, \"\", \"AB00\", \"v\", 0, 0, 0, ())),\n"
      "HIERARCHIE = ((VAR = 1, 0(), ())),\n"
      "RULES = (((1 = ())  (1 = NA))),\n"
      "RECTANGLE_MATRIX = ()\n"
      ")\nEND\n";
  SymbolicFile model;
  ParseText(text, model);
  EXPECT_TRUE(model.individuals.empty());
  EXPECT_TRUE(model.matrix.empty());
  ASSERT_EQ(model.hierarchies.size(), 1u);
  EXPECT_TRUE(model.hierarchies[0].innerNodes.empty());
  EXPECT_EQ(model.rules[0].premise.kind, SymValue::Kind::CategorySet);

  SymbolicFile fromText;
  ParseText(TextOf(model), fromText);
  EXPECT_EQ(fromText, model);

  model.file.value(kCreateDate) = KeyValue{true, "today"};
  const std::string xml = XmlOf(model);
  ::test::writeFile(file("empty.xml"), xml);
  EXPECT_TRUE(XmlLintAccepts(file("empty.xml")));
  SymbolicFile fromXml;
  ParseText(xml, fromXml);
  EXPECT_EQ(fromXml.variables, model.variables);
  EXPECT_EQ(fromXml.hierarchies, model.hierarchies);
  EXPECT_EQ(fromXml.rules, model.rules);
}

}  // namespace
}  // namespace velda::symlib::test
