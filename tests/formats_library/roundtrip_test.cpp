#include <cstdlib>
#include <sstream>

#include "LibraryTestSupport.h"

namespace velda::symlib::test {
namespace {

std::string Fixture(const std::string& name) {
  const char* source = std::getenv("VELDA_SOURCE_DIR");
  return ReadFile(std::string(source ? source : ".") + "/tests/fixtures/symlib/" + name);
}

const char* const kTownsText =
    "KORVA = (\n"
    "\n"
    "CONTAINS = (\n"
    "FILES, HEADER, INDIVIDUALS, VARIABLES, RULES, HIERARCHIE, RECTANGLE_MATRIX\n"
    "), \n"
    "\n"
    "FILES = (\n"
    "procedure_name = \"velda\",\n"
    "version = \"sans\",\n"
    "create_date = \"\",\n"
    "filiere_name = \"\",\n"
    "filiere_path = \"\",\n"
    "base = \"\"\n"
    "),\n"
    "\n"
    "HEADER = (\n"
    "title = \"Towns\",\n"
    "sub_title = \"R&D <x>\",\n"
    "indiv_nb = 2,\n"
    "var_nb = 4,\n"
    "rules_nb = 1,\n"
    "nb_var_set = 0,\n"
    "nb_indiv_set = 0,\n"
    "nb_var_nom = 0,\n"
    "nb_var_cont = 0,\n"
    "nb_var_text = 0,\n"
    "nb_var_cont_symb = 2,\n"
    "nb_var_nom_symb = 1,\n"
    "nb_var_nom_mod = 1,\n"
    "nb_na = 1,\n"
    "nb_hierarchies = 1,\n"
    "nb_nu = 1\n"
    "),\n"
    "\n"
    "INDIVIDUALS = (\n"
    "  (1, \"AA00\", \"north\"),\n"
    "  (2, \"AA01\", \"south\")\n"
    "),\n"
    "\n"
    "VARIABLES =  (\n"
    "  (1, continue, \"\", \"AB00\", \"age\", 0, 1, 12.5, 40),\n"
    "  (2, inter_continue, \"\", \"AC00\", \"income\", 0, 0, -89.2345, 1e+06),\n"
    "  (3, nominal, \"\", \"AD00\", \"sex\", 1, 0, 2,\n"
    "     ((1, \"AD01\", \"f\", 1 ), \n"
    "      (2, \"AD02\", \"m\", 1 ))\n"
    "  ),\n"
    "  (4, mult_nominal_Modif, \"\", \"AE00\", \"colour\", proba, 0, 0, 3,\n"
    "     ((1, \"AE01\", \"red\", 1 ), \n"
    "      (2, \"AE02\", \"green\", 1 ), \n"
    "      (3, \"AE03\", \"blue\", 1 ))\n"
    "  )\n"
    "),\n"
    "\n"
    "HIERARCHIE = (\n"
    "  (VAR = 4, 1(\n"
    "      (4, \"AE04\", \"warm\", 0)),\n"
    "      (4 = (1,2)\n"
    ")  )\n"
    "),\n"
    "\n"
    "RULES = (\n"
    "  ((3 = (1))  (1 = NA))\n"
    "),\n"
    "\n"
    "RECTANGLE_MATRIX = (\n"
    "  (12.5, \n"
    "   (3:7.5), \n"
    "   2, \n"
    "   (1(0.5),3(0.5))),\n"
    "  (NU, \n"
    "   (-89.2345:1e+06), \n"
    "   NA, \n"
    "   ())\n"
    ")\n"
    "\n"
    ")\n"
    "  END \n";

const char* const kTownsXml =
    "<?xml version=\"1.0\" encoding=\"Iso_8859-1\"?>\n"
    "<?xml-stylesheet type=\"text/xsl\" href=\"ulme2.2.xsl\"?>\n"
    "<ulmefile xmlns:xsi=\"http://www.w3.org/2000/10/XMLSchema-instance\" "
    "xsi:noNamespaceSchemaLocation=\"ulme.xsd\">\n"
    "<contains FILES=\"YES\" HEADER=\"YES\" INDIVIDUALS=\"YES\" VARIABLES=\"YES\" RULES=\"YES\" "
    "RECTANGLE_MATRIX=\"YES\" DIST_MATRIX=\"NO\" MATCH_MATRIX=\"NO\" VARIABLES_SET=\"NO\" HIERARCHIE=\"YES\" /> \n"
    "<Procedure>velda</Procedure>\n"
    "<date_creat>Mon Jan  1 00:00:00 2024</date_creat>\n"
    "<header  title = \"Towns\" sub_title = \"R&#38;D &#60;x&#62;\" indiv_nb = \"2\"\n"
    "           var_nb = \"4\" rules_nb = \"1\" nb_var_nom = \"0\" nb_var_cont = \"0\"\n"
    "           nb_var_text = \"0\" nb_var_cont_symb = \"2\" nb_var_nom_symb = \"1\" nb_var_nom_mod = \"1\"\n"
    "           nb_na = \"1\" nb_hierarchies = \"1\" nb_nu = \"1\" />\n"
    "<individus>\n"
    "\t<stindiv>\n\t\t<num>1</num>\n\t\t<name>AA00</name>\n\t\t<label>north</label>\n\t</stindiv>\n"
    "\t<stindiv>\n\t\t<num>2</num>\n\t\t<name>AA01</name>\n\t\t<label>south</label>\n\t</stindiv>\n"
    "</individus>\n"
    "<variables>\n"
    "\t<stvar>\n"
    "\t\t<ident>\n\t\t\t<num>1</num>\n\t\t\t<name>AB00</name>\n\t\t\t<label>age</label>\n\t\t</ident>\n"
    "\t\t<continue>\n"
    "\t\t\t<continue-desc min=\"12.5\" nbnu=\"1\" nbna=\"0\" max=\"40\"/>\n"
    "\t\t</continue>\n"
    "\t</stvar>\n"
    "\t<stvar>\n"
    "\t\t<ident>\n\t\t\t<num>2</num>\n\t\t\t<name>AC00</name>\n\t\t\t<label>income</label>\n\t\t</ident>\n"
    "\t\t<inter-cont>\n"
    "\t\t\t<continue-desc min=\"-89.2345\" nbnu=\"0\" nbna=\"0\" max=\"1e+06\"/>\n"
    "\t\t</inter-cont>\n"
    "\t</stvar>\n"
    "\t<stvar>\n"
    "\t\t<ident>\n\t\t\t<num>3</num>\n\t\t\t<name>AD00</name>\n\t\t\t<label>sex</label>\n\t\t</ident>\n"
    "\t\t<nominal>\n"
    "\t\t\t<nominal-desc nbna=\"1\" nbnu=\"0\" nbmoda=\"2\">\n"
    "\t\t\t\t<list-nom>\n\t\t\t\t\t<num>1</num>\n\t\t\t\t\t<name>AD01</name>\n\t\t\t\t\t<label>f</label>\n"
    "\t\t\t\t</list-nom>\n"
    "\t\t\t\t<list-nom>\n\t\t\t\t\t<num>2</num>\n\t\t\t\t\t<name>AD02</name>\n\t\t\t\t\t<label>m</label>\n"
    "\t\t\t\t</list-nom>\n"
    "\t\t\t</nominal-desc>\n"
    "\t\t</nominal>\n"
    "\t</stvar>\n"
    "\t<stvar>\n"
    "\t\t<ident>\n\t\t\t<num>4</num>\n\t\t\t<name>AE00</name>\n\t\t\t<label>colour</label>\n\t\t</ident>\n"
    "\t\t<mult_nominal_Modif>\n"
    "\t\t\t<type_modif>proba</type_modif>\n"
    "\t\t\t<nominal-desc nbna=\"0\" nbnu=\"0\" nbmoda=\"3\">\n"
    "\t\t\t\t<list-nom>\n\t\t\t\t\t<num>1</num>\n\t\t\t\t\t<name>AE01</name>\n\t\t\t\t\t<label>red</label>\n"
    "\t\t\t\t</list-nom>\n"
    "\t\t\t\t<list-nom>\n\t\t\t\t\t<num>2</num>\n\t\t\t\t\t<name>AE02</name>\n\t\t\t\t\t<label>green</label>\n"
    "\t\t\t\t</list-nom>\n"
    "\t\t\t\t<list-nom>\n\t\t\t\t\t<num>3</num>\n\t\t\t\t\t<name>AE03</name>\n\t\t\t\t\t<label>blue</label>\n"
    "\t\t\t\t</list-nom>\n"
    "\t\t\t</nominal-desc>\n"
    "\t\t</mult_nominal_Modif>\n"
    "\t</stvar>\n"
    "</variables>\n"
    "<hierarchies>\n"
    "\t<hierarchie>\n"
    "\t\t<var_num_ref>4</var_num_ref>\n"
    "\t\t<nb_hier_val>1</nb_hier_val>\n"
    "\t\t<hier_val_list>\n\t\t\t<num>4</num>\n\t\t\t<name>AE04</name>\n\t\t\t<label>warm</label>\n"
    "\t\t</hier_val_list>\n"
    "\t\t<hier_ref_list>\n"
    "\t\t\t<categ_num>4</categ_num>\n"
    "\t\t\t<hval_ref_list>\n\t\t\t\t<hval_ref_elem>1</hval_ref_elem>\n\t\t\t\t<hval_ref_elem>2</hval_ref_elem>\n"
    "\t\t\t</hval_ref_list>\n"
    "\t\t</hier_ref_list>\n"
    "\t</hierarchie>\n"
    "</hierarchies>\n"
    "<rules_gen>\n"
    "\t<rules>\n"
    "\t\t<prem_desc>\n\t\t\t<var_num>3</var_num>\n\t\t\t<val>\n\t\t\t\t<val_modal>1</val_modal>\n\t\t\t</val>\n"
    "\t\t</prem_desc>\n"
    "\t\t<conclusion>\n\t\t\t<var_num>1</var_num>\n\t\t\t<val>\n\t\t\t\t<NA>NA</NA>\n\t\t\t</val>\n"
    "\t\t</conclusion>\n"
    "\t</rules>\n"
    "</rules_gen>\n"
    "<indiv_mat>\n"
    "\t<ligmat>\n"
    "\t\t<valmat>\n\t\t\t<val_conti>12.5</val_conti>\n\t\t</valmat>\n"
    "\t\t<valmat>\n\t\t\t<val_interv>\n\t\t\t\t<pmin>3</pmin>\n\t\t\t\t<pmax>7.5</pmax>\n\t\t\t</val_interv>\n"
    "\t\t</valmat>\n"
    "\t\t<valmat>\n\t\t\t<val_nomina>2</val_nomina>\n\t\t</valmat>\n"
    "\t\t<valmat>\n\t\t\t<val_list_modal>\n"
    "\t\t\t\t<no_moda>1</no_moda>\n\t\t\t\t<frequency>0.5</frequency>\n"
    "\t\t\t\t<no_moda>3</no_moda>\n\t\t\t\t<frequency>0.5</frequency>\n"
    "\t\t\t</val_list_modal>\n\t\t</valmat>\n"
    "\t</ligmat>\n"
    "\t<ligmat>\n"
    "\t\t<valmat>\n\t\t\t<NU>NU</NU>\n\t\t</valmat>\n"
    "\t\t<valmat>\n\t\t\t<val_interv>\n\t\t\t\t<pmin>-89.2345</pmin>\n\t\t\t\t<pmax>1e+06</pmax>\n"
    "\t\t\t</val_interv>\n\t\t</valmat>\n"
    "\t\t<valmat>\n\t\t\t<NA>NA</NA>\n\t\t</valmat>\n"
    "\t\t<valmat>\n\t\t</valmat>\n"
    "\t</ligmat>\n"
    "</indiv_mat>\n"
    "</ulmefile>\n";

class RoundTripTest : public LibraryTest {};

TEST_F(RoundTripTest, ReadsTheWritersFileIntoTheModel) {
  SymbolicFile model;
  ParseText(Fixture("towns.kvf"), model);

  EXPECT_EQ(model.file.text(kProcedureName), "velda");
  EXPECT_EQ(model.header.text(kSubTitle), "R&D <x>");
  EXPECT_EQ(model.header.value(kNbNa).real, 1.0);
  EXPECT_TRUE(model.header.value(kNbNa).set);
  EXPECT_FALSE(model.header.value(kNbNull).set);
  ASSERT_EQ(model.individuals.size(), 2u);
  EXPECT_EQ(model.individuals[1], (SymIndividual{2, "AA01", "south"}));
  ASSERT_EQ(model.variables.size(), 4u);
  EXPECT_EQ(model.variables[1].kind, SymVariableKind::InterContinue);
  EXPECT_EQ(model.variables[1].min, -89.2345);
  EXPECT_EQ(model.variables[1].max, 1e6);
  EXPECT_EQ(model.variables[3].weighting, SymWeighting::Proba);
  EXPECT_EQ(model.variables[3].categories[2], (SymCategory{3, "AE03", "blue", 1}));
  ASSERT_EQ(model.hierarchies.size(), 1u);
  EXPECT_EQ(model.hierarchies[0].links[0], (SymHierarchyLink{4, {1, 2}}));
  ASSERT_EQ(model.rules.size(), 1u);
  EXPECT_EQ(model.rules[0].conclusion.kind, SymValue::Kind::NA);
  ASSERT_EQ(model.matrix.size(), 2u);
  // An integer under a continue variable is a real; under a nominal one a category.
  EXPECT_EQ(model.matrix[0][0].kind, SymValue::Kind::Real);
  EXPECT_EQ(model.matrix[0][2].kind, SymValue::Kind::Category);
  EXPECT_EQ(model.matrix[0][3].items, (std::vector<SymItem>{{1, 0.5}, {3, 0.5}}));
  EXPECT_EQ(model.matrix[1][0].kind, SymValue::Kind::NU);
  EXPECT_EQ(model.matrix[1][3].kind, SymValue::Kind::CategorySet);
  EXPECT_TRUE(model.isPresent(SymBlock::Hierarchie));
  EXPECT_FALSE(model.isPresent(SymBlock::DistMatrix));

  EXPECT_EQ(log(),
            "Parsing the filenom with the version 2.1 of the Ulme library\n"
            " The parser detected no Syntatctic Errors \n"
            " The parser detected no semantic Errors \n"
            "this Base file contain\n"
            "\t2 individuals\n"
            "\t4 variables\n"
            "\t1 rules\n"
            "\t1 hierarchies\n"
            "\t1 NA values\n"
            "\t1 NU values\n"
            " Parsing OK \n");
}

TEST_F(RoundTripTest, RewritesTheModelAsTextThatReadsBackAlike) {
  SymbolicFile model;
  ParseText(Fixture("towns.kvf"), model);
  const std::string text = TextOf(model);
  EXPECT_EQ(text, kTownsText);

  SymbolicFile again;
  ParseText(text, again);
  EXPECT_EQ(again, model);
}

TEST_F(RoundTripTest, WritesTheModelAsXmlThatReadsBackAlike) {
  SymbolicFile model;
  ParseText(Fixture("towns.kvf"), model);
  model.file.value(kCreateDate).text = "Mon Jan  1 00:00:00 2024";
  const std::string xml = XmlOf(model);
  EXPECT_EQ(xml, kTownsXml);
  WriteFile(file("towns.xml"), xml);
  EXPECT_TRUE(XmlLintAccepts(file("towns.xml")));

  SymbolicFile again;
  ParseText(xml, again);
  EXPECT_EQ(log().rfind("Parsing the filenom with the version 2.1 of the Ulme library\nXML Ulmefile\n", 0), 0u);
  // What the XML form does not carry: the FILE keys besides the procedure
  // and the date, and the header counts that are never attributes.
  SymbolicFile expected = model;
  for (int key : {kVersion, kFiliereName, kFilierePath, kBase}) expected.file.value(key) = KeyValue{};
  for (int key : {kNbVarSet, kNbIndivSet}) expected.header.value(key) = KeyValue{};
  expected.declared = expected.present;
  EXPECT_EQ(again.file, expected.file);
  EXPECT_EQ(again.header, expected.header);
  EXPECT_EQ(again.individuals, expected.individuals);
  EXPECT_EQ(again.variables, expected.variables);
  EXPECT_EQ(again.hierarchies, expected.hierarchies);
  EXPECT_EQ(again.rules, expected.rules);
  EXPECT_EQ(again.matrix, expected.matrix);
  EXPECT_EQ(again.declared, expected.declared);
  EXPECT_EQ(again.present, expected.present);
}

TEST_F(RoundTripTest, XmlTextsWithReferencesReadBackBesidePlainTexts) {
  SymbolicFile model;
  ParseText(Fixture("towns.kvf"), model);
  model.individuals[0].code = "R&D";
  model.individuals[0].label = "\xe9t\xe9 <x>";
  model.individuals[1].code = "AA01";
  model.individuals[1].label = "x &amp; y";
  SymbolicFile again;
  ParseText(XmlOf(model), again);
  EXPECT_EQ(again.individuals, model.individuals);
}

// A stream that cannot tell its size, as standard input from a pipe.
class UnseekableBuffer : public std::streambuf {
 public:
  explicit UnseekableBuffer(std::string text) : text_(std::move(text)) {
    setg(text_.data(), text_.data(), text_.data() + text_.size());
  }

 private:
  std::string text_;
};

TEST_F(RoundTripTest, ReadsFromTheStreamPositionWhetherItCanSeekOrNot) {
  SymbolicFile expected;
  ParseText(Fixture("towns.kvf"), expected);

  std::istringstream skipped("skip" + Fixture("towns.kvf"));
  skipped.ignore(4);
  SymbolicFile fromPosition;
  ParseSymbolicFile(skipped, "nom", fromPosition);
  EXPECT_EQ(fromPosition, expected);

  UnseekableBuffer buffer(Fixture("towns.kvf"));
  std::istream unseekable(&buffer);
  SymbolicFile fromPipe;
  ParseSymbolicFile(unseekable, "nom", fromPipe);
  EXPECT_EQ(fromPipe, expected);
}

TEST_F(RoundTripTest, FillsAnEmptyCreationDateWithTheCurrentTime) {
  SymbolicFile model;
  ParseText(Fixture("towns.kvf"), model);
  const std::string xml = XmlOf(model);
  const std::string date = model.file.text(kCreateDate);
  // The C library's 24 characters and its line break, kept inside the element.
  ASSERT_EQ(date.size(), 25u);
  EXPECT_EQ(date[24], '\n');
  EXPECT_NE(xml.find("<date_creat>" + date + "</date_creat>\n"), std::string::npos);
  WriteFile(file("dated.xml"), xml);
  EXPECT_TRUE(XmlLintAccepts(file("dated.xml")));
}

std::string TownsWithoutRulesOrHierarchies() {
  std::string text = Fixture("towns.kvf");
  text.replace(text.find("RULES, HIERARCHIE, "), 19, "");
  text.replace(text.find("rules_nb = 1"), 12, "rules_nb = 0");
  text.replace(text.find("nb_hierarchies = 1"), 18, "nb_hierarchies = 0");
  text.erase(text.find("HIERARCHIE = ("), text.find("RECTANGLE_MATRIX = (") - text.find("HIERARCHIE = ("));
  return text;
}

TEST_F(RoundTripTest, ContentsAttributesFollowTheBlocksPresent) {
  std::string text = TownsWithoutRulesOrHierarchies();
  text.replace(text.find("\"north\""), 7, "\"<x>\"");
  SymbolicFile model;
  ParseText(text, model);
  const std::string xml = XmlOf(model);
  EXPECT_NE(xml.find("<contains FILES=\"YES\" HEADER=\"YES\" INDIVIDUALS=\"YES\" VARIABLES=\"YES\" RULES=\"NO\" "
                     "RECTANGLE_MATRIX=\"YES\" DIST_MATRIX=\"NO\" MATCH_MATRIX=\"NO\" VARIABLES_SET=\"NO\" "
                     "HIERARCHIE=\"NO\" /> \n"),
            std::string::npos);
  EXPECT_EQ(xml.find("<hierarchies>"), std::string::npos);
  EXPECT_NE(xml.find("<rules_gen>\n\t<rules>\n\t</rules>\n</rules_gen>\n"), std::string::npos);
  // A label that looks like markup is escaped like any other.
  EXPECT_NE(xml.find("\t\t<label>&#60;x&#62;</label>\n"), std::string::npos);
}

TEST_F(RoundTripTest, XmlWithAnEmptyUndeclaredRulesElementReadsBack) {
  SymbolicFile model;
  ParseText(TownsWithoutRulesOrHierarchies(), model);
  const std::string xml = XmlOf(model);
  SymbolicFile again;
  EXPECT_EQ(ExitStatusOf([&] { ParseText(xml, again); }), -1);
  EXPECT_TRUE(again.rules.empty());
  EXPECT_FALSE(again.declared[static_cast<int>(SymBlock::Rules)]);
  EXPECT_FALSE(again.isPresent(SymBlock::Rules));
  EXPECT_FALSE(again.isPresent(SymBlock::Hierarchie));
  EXPECT_EQ(again.individuals, model.individuals);
  EXPECT_EQ(again.matrix, model.matrix);
  EXPECT_EQ(log().find("n'a pas ete trouve"), std::string::npos);
}

// The contents name the rules but the element holds none: the block is
// there, empty, and takes nothing from a later element of the same name.
TEST_F(RoundTripTest, XmlWithAnEmptyDeclaredRulesElementKeepsTheBlock) {
  SymbolicFile model;
  ParseText(Fixture("towns.kvf"), model);
  model.rules.clear();
  model.header.value(kRulesNb).integer = 0;
  SymbolicFile again;
  EXPECT_EQ(ExitStatusOf([&] { ParseText(XmlOf(model), again); }), -1);
  EXPECT_TRUE(again.rules.empty());
  EXPECT_TRUE(again.isPresent(SymBlock::Rules));
}

TEST_F(RoundTripTest, CategoryBeyondTheVariableMakesTheXmlWriterFail) {
  SymbolicFile model;
  ParseText(Fixture("towns.kvf"), model);
  model.matrix[0][2].category = 3;
  std::ostringstream out;
  EXPECT_FALSE(WriteXmlSymbolicFile(model, out));
  const std::string ending = " for valnomin max: 2 indice too big \n";
  const std::string log = this->log();
  ASSERT_GE(log.size(), ending.size());
  EXPECT_EQ(log.substr(log.size() - ending.size()), ending);
}

}  // namespace
}  // namespace velda::symlib::test
