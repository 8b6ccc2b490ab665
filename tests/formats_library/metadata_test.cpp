#include "TownsFile.h"
#include "formats/library/XmlEscape.h"

namespace velda::symlib::test {
namespace {

using ::testing::ExitedWithCode;

MetaData SmallMetadata() {
  MetaData m;
  m.origInfo.nbOrigVar = 1;
  m.origInfo.nbOrigMat = 1;
  m.origInfo.surveyDesc = "Native Data";
  m.origInfo.origVars = {MetaOrigVar{1, "AB00", "\xe9ge", "none", 1, "no", "continue"}};
  m.origInfo.origTabs = {MetaOrigTab{"towns", "R&D", "none", "sample.db"}};
  m.metaMat.sqlQuery = "select * from t where a < 3";
  m.metaMat.odbcSource = "SQLite3";
  m.metaMat.nbMetaVar = 1;
  m.metaMat.nbMetaInd = 1;
  m.metaMat.match.vars = {1};
  m.metaMat.inds = {MetaInd{1, "AA00", 12, 12, "aggregated"}};
  m.metaMat.vars = {MetaVar{1, "AB00", 1, {}, "age", "unknown", "none", "native"}};
  return m;
}

// What the library writes for SmallMetadata.
std::string SmallMetadataText() { return Fixture("towns_meta.xml"); }

std::string MetadataText(const MetaData& metadata) {
  std::ostringstream out;
  EXPECT_TRUE(WriteMetadataFile(metadata, out));
  return out.str();
}

void ParseMetadataText(const std::string& text, MetaData& metadata) {
  std::istringstream in(text);
  ParseMetadataFile(in, "meta", metadata);
}

class MetadataTest : public LibraryTest {};

TEST_F(MetadataTest, WritesTheDocumentAndReadsItBack) {
  const MetaData written = SmallMetadata();
  const std::string text = MetadataText(written);
  EXPECT_EQ(text, SmallMetadataText());
  ::test::writeFile(file("out_meta.xml"), text);
  EXPECT_TRUE(XmlLintAccepts(file("out_meta.xml")));

  MetaData read;
  ParseMetadataText(text, read);
  EXPECT_EQ(read, written);
  EXPECT_EQ(log(),
            "Parsing the filemeta with the version 2.1 of the Ulme library\n"
            "XML MetaUlme\n"
            " The parser detected no Syntaxic Errors \n"
            " Parsing OK \n");
}

TEST_F(MetadataTest, ReadsEmptyLeavesAndAnAbsentOriginalList) {
  std::string text = Edited(SmallMetadataText(), "<Author>unknown</Author>", "<Author/>");
  text = Edited(text, "\t\t\t\t<VarOrigLis>\n\t\t\t\t</VarOrigLis>\n", "");
  text = Edited(text, "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n", "");
  MetaData read;
  ParseMetadataText(text, read);
  MetaData expected = SmallMetadata();
  expected.metaMat.author.clear();
  EXPECT_EQ(read, expected);
}

TEST_F(MetadataTest, OutOfRangeNumbersAreLoggedAndReplaced) {
  MetaData m = SmallMetadata();
  m.metaMat.vars[0].num = 5;
  m.metaMat.vars[0].varOrigList = {7};
  m.metaMat.inds[0].num = -1;
  m.origInfo.origVars[0].source = 3;
  // The messages go to the log of the last parse, as in an export.
  SymbolicFile model;
  ParseText(TownsFile(), model);
  const std::string before = log();
  const std::string text = MetadataText(m);
  EXPECT_TRUE(Contains(text, "\t\t\t\t<Source>3</Source>\n"));
  EXPECT_TRUE(Contains(text, "\t\t\t<MetaInd>\n\t\t\t\t<Num>1</Num>\n"));
  EXPECT_TRUE(Contains(text, "\t\t\t<MetaVar>\n\t\t\t\t<Num>1</Num>\n"));
  EXPECT_TRUE(Contains(text, "\t\t\t\t\t<Vo>7</Vo>\n"));
  EXPECT_EQ(log(), before +
                       "Bad Source Numlber\n"
                       " the MetaInd Number must be between 0 and 1 and not-1 val 1 assumed\n\n"
                       " the Metavar Number must be between 0 and 1 and not5 val 1 assumed\n\n"
                       " the Original Variable number must be between 0 and 1 not: 7\n");
}

TEST_F(MetadataTest, MetadataNameGoesBeforeTheLastDotOfTheFileName) {
  EXPECT_EQ(MetadataFileName("result.xml"), "result_meta.xml");
  EXPECT_EQ(MetadataFileName("out.v2.xml"), "out.v2_meta.xml");
  EXPECT_EQ(MetadataFileName("/a.b/out"), "/a.b/out_meta");
  EXPECT_EQ(MetadataFileName("out"), "out_meta");
}

void ShowOnStandardError(const std::string& text) { std::fprintf(stderr, "BOX[%s]\n", text.c_str()); }

class MetadataDeathTest : public LibraryTest {};

TEST_F(MetadataDeathTest, SyntaxErrorsAreShownInABoxAndStopTheProgram) {
  const std::string broken = Edited(SmallMetadataText(), "<NbOrigMat>1</NbOrigMat>", "");
  EXPECT_EXIT(
      {
        SetSymbolicMessageBoxHandler(ShowOnStandardError);
        MetaData m;
        ParseMetadataText(broken, m);
      },
      ExitedWithCode(1), "THE PROGRAM STOP\nBOX\\[Fatal parsing error:\nsyntaxic errors in metadata file\\]");
  EXPECT_TRUE(Contains(log(), "1 syntaxic errors reading the input file\n THE PROGRAM STOP\n"));
}

TEST_F(MetadataDeathTest, SymbolicReaderRefusesTheCoherenceCheckOfMetadata) {
  EXPECT_EXIT(
      {
        SymbolicFile model;
        ParseText(SmallMetadataText(), model);
      },
      ExitedWithCode(1), "");
  EXPECT_EQ(log(),
            "Parsing the filenom with the version 2.1 of the Ulme library\n"
            "XML MetaUlme\n"
            " The parser detected no Syntatctic Errors \n"
            " The parser detected no semantic Errors \n"
            "Impossible to make a \"verifcoher\" for MetaData\n"
            " THE PROGRAM STOP\n");
}

TEST(XmlTextTest, EscapeTableKeepsItsSwappedEntries) {
  std::string out;
  AppendXmlEscaped(out, "R&D <x>");
  EXPECT_EQ(out, "R&#38;D &#60;x&#62;");
  out.clear();
  AppendXmlEscaped(out, "<x>");
  EXPECT_EQ(out, "&#60;x&#62;");
  out.clear();
  AppendXmlEscaped(out, "\xe9\xe0\xe8\xea\xb0");
  EXPECT_EQ(out, "&#232;&#225;&#233;&#234;\xb0");

  EXPECT_EQ(DecodeXmlText("&#232;&#225;&#233;&#234;&#38;&#60;&#62;"), "\xe9\xe0\xe8\xea&<>");
  EXPECT_EQ(DecodeXmlText("&amp;&lt;&gt;&quot;&apos;&#65;&#x42;&#300;"), "&<>\"'AB?");
  EXPECT_EQ(DecodeXmlText("a & b &bogus; &#;"), "a & b &bogus; &#;");
}

}  // namespace
}  // namespace velda::symlib::test
