#include <cstdlib>
#include <sstream>

#include "TownsFile.h"

namespace velda::symlib::test {
namespace {

// The library writes the sample as the program's writer did except for
// its own layout of the contents, the order of the last two header keys,
// a doubled blank and the indented end.
std::string TownsAsTheLibraryWritesThem() {
  std::string text =
      Edited(TownsFile(), "CONTAINS = (FILES, HEADER, INDIVIDUALS, VARIABLES, RULES, HIERARCHIE, RECTANGLE_MATRIX),",
             "CONTAINS = (\nFILES, HEADER, INDIVIDUALS, VARIABLES, RULES, HIERARCHIE, RECTANGLE_MATRIX\n), ");
  text = Edited(text, "nb_nu = 1,\nnb_hierarchies = 1\n", "nb_hierarchies = 1,\nnb_nu = 1\n");
  text = Edited(text, "VARIABLES = (", "VARIABLES =  (");
  return Edited(text, ")\nEND\n\n", ")\n  END \n");
}

class RoundTripTest : public LibraryTest {};

TEST_F(RoundTripTest, RewritesTheModelAsTextThatReadsBackAlike) {
  SymbolicFile model = ParsedTowns();
  EXPECT_EQ(log(),
            "Parsing the filenom with the version 2.1 of the Ulme library\n"
            " The parser detected no Syntatctic Errors \n"
            " The parser detected no semantic Errors \n"
            "this Base file contain\n\t2 individuals\n\t4 variables\n\t1 rules\n\t1 hierarchies\n"
            "\t1 NA values\n\t1 NU values\n"
            " Parsing OK \n");
  const std::string text = TextOf(model);
  EXPECT_EQ(text, TownsAsTheLibraryWritesThem());

  SymbolicFile again;
  ParseText(text, again);
  EXPECT_EQ(again, model);
}

TEST_F(RoundTripTest, WritesTheModelAsXmlThatReadsBackAlike) {
  SymbolicFile model = ParsedTowns();
  model.file.value(kCreateDate).text = "Mon Jan  1 00:00:00 2024";
  const std::string xml = XmlOf(model);
  EXPECT_EQ(xml, Fixture("towns.xml"));
  ::test::writeFile(file("towns.xml"), xml);
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
  EXPECT_EQ(again, expected);
}

TEST_F(RoundTripTest, XmlTextsWithReferencesReadBackBesidePlainTexts) {
  SymbolicFile model = ParsedTowns();
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
  const SymbolicFile expected = ParsedTowns();

  std::istringstream skipped("skip" + TownsFile());
  skipped.ignore(4);
  SymbolicFile fromPosition;
  ParseSymbolicFile(skipped, "nom", fromPosition);
  EXPECT_EQ(fromPosition, expected);

  UnseekableBuffer buffer(TownsFile());
  std::istream unseekable(&buffer);
  SymbolicFile fromPipe;
  ParseSymbolicFile(unseekable, "nom", fromPipe);
  EXPECT_EQ(fromPipe, expected);
}

TEST_F(RoundTripTest, FillsAnEmptyCreationDateWithTheCurrentTime) {
  SymbolicFile model = ParsedTowns();
  const std::string xml = XmlOf(model);
  const std::string date = model.file.text(kCreateDate);
  // The C library's 24 characters and its line break, kept inside the element.
  ASSERT_EQ(date.size(), 25u);
  EXPECT_EQ(date[24], '\n');
  EXPECT_NE(xml.find("<date_creat>" + date + "</date_creat>\n"), std::string::npos);
  ::test::writeFile(file("dated.xml"), xml);
  EXPECT_TRUE(XmlLintAccepts(file("dated.xml")));
}

// Without rules or hierarchies the contents say NO for both; the rules
// element is written empty and read back as no block.
TEST_F(RoundTripTest, ContentsAttributesFollowTheBlocksPresent) {
  SymbolicFile model;
  ParseText(Edited(PlainTowns(), "\"north\"", "\"<x>\""), model);
  const std::string xml = XmlOf(model);
  EXPECT_NE(xml.find("<contains FILES=\"YES\" HEADER=\"YES\" INDIVIDUALS=\"YES\" VARIABLES=\"YES\" RULES=\"NO\" "
                     "RECTANGLE_MATRIX=\"YES\" DIST_MATRIX=\"NO\" MATCH_MATRIX=\"NO\" VARIABLES_SET=\"NO\" "
                     "HIERARCHIE=\"NO\" /> \n"),
            std::string::npos);
  EXPECT_EQ(xml.find("<hierarchies>"), std::string::npos);
  EXPECT_NE(xml.find("<rules_gen>\n\t<rules>\n\t</rules>\n</rules_gen>\n"), std::string::npos);
  // A label that looks like markup is escaped like any other.
  EXPECT_NE(xml.find("\t\t<label>&#60;x&#62;</label>\n"), std::string::npos);

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
  SymbolicFile model = ParsedTowns();
  model.rules.clear();
  model.header.value(kRulesNb).integer = 0;
  SymbolicFile again;
  EXPECT_EQ(ExitStatusOf([&] { ParseText(XmlOf(model), again); }), -1);
  EXPECT_TRUE(again.rules.empty());
  EXPECT_TRUE(again.isPresent(SymBlock::Rules));
}

TEST_F(RoundTripTest, CategoryBeyondTheVariableMakesTheXmlWriterFail) {
  SymbolicFile model = ParsedTowns();
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
