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

const char* const kSmallMetadata =
    "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n"
    "<MetaUlme xmlns:xsi=\"http://www.w3.org/2000/10/XMLSchema-instance\" "
    "xsi:noNamespaceSchemaLocation =\"./Metulme5.xsd\">\n"
    "<!--===[ VELDA 2.x generated META File ]===-->\n"
    "\t<OrigInfo>\n"
    "\t\t<NbOrigVar>1</NbOrigVar>\n"
    "\t\t<NbOrigMat>1</NbOrigMat>\n"
    "\t\t<PopSampSize>unknown</PopSampSize>\n"
    "\t\t<SampSize>unknown</SampSize>\n"
    "\t\t<RelUnit>unknown</RelUnit>\n"
    "\t\t<SurveyDesc>Native Data</SurveyDesc>\n"
    "\t\t<LegalFrame>none</LegalFrame>\n"
    "\t\t<SurveyType>unknown</SurveyType>\n"
    "\t\t<SurveyFreq>unknown</SurveyFreq>\n"
    "\t\t<GeoCover>unknown</GeoCover>\n"
    "\t\t<InterStand>none</InterStand>\n"
    "\t\t<SpecInterStand>none</SpecInterStand>\n"
    "\t\t<ReportUnit>unknown</ReportUnit>\n"
    "\t\t<PopDesc>unknown</PopDesc>\n"
    "\t\t<SampOrig>unknown</SampOrig>\n"
    "\t\t<SampSelect>unknown</SampSelect>\n"
    "\t\t<LawBase>none</LawBase>\n"
    "\t\t<AdminQual>unknown</AdminQual>\n"
    "\t\t<StatCollect>unknown</StatCollect>\n"
    "\t\t<ValidTech>none</ValidTech>\n"
    "\t\t<NonRespMeth>none</NonRespMeth>\n"
    "\t\t<MissValReaj>none</MissValReaj>\n"
    "\t\t<AgregMeth>none</AgregMeth>\n"
    "\t\t<GrossMeth>none</GrossMeth>\n"
    "\t\t<CorrError>none</CorrError>\n"
    "\t\t<OtheCor>none</OtheCor>\n"
    "\t\t<PopSampFrac>unknown</PopSampFrac>\n"
    "\t\t<RespRate>unknown</RespRate>\n"
    "\t\t<ListeVarOrig>\n"
    "\t\t\t<OrigVar>\n"
    "\t\t\t\t<Num>1</Num>\n"
    "\t\t\t\t<Name>AB00</Name>\n"
    "\t\t\t\t<Label>&#232;ge</Label>\n"
    "\t\t\t\t<Comment>none</Comment>\n"
    "\t\t\t\t<Source>1</Source>\n"
    "\t\t\t\t<Computed>no</Computed>\n"
    "\t\t\t\t<DataType>continue</DataType>\n"
    "\t\t\t</OrigVar>\n"
    "\t\t</ListeVarOrig>\n"
    "\t\t<ListeTabOrig>\n"
    "\t\t\t<OrigTab>\n"
    "\t\t\t\t<Name>towns</Name>\n"
    "\t\t\t\t<Label>R&#38;D</Label>\n"
    "\t\t\t\t<Comment>none</Comment>\n"
    "\t\t\t\t<Source>sample.db</Source>\n"
    "\t\t\t</OrigTab>\n"
    "\t\t</ListeTabOrig>\n"
    "\t</OrigInfo>\n"
    "\t<MetaMat>\n"
    "\t\t<Author>unknown</Author>\n"
    "\t\t<MetaHistory>\n"
    "\t\t\t<SqlQuery>select * from t where a &#60; 3</SqlQuery>\n"
    "\t\t\t<OdbcSource>SQLite3</OdbcSource>\n"
    "\t\t\t<History>\n"
    "\t\t\t\t<PrevFile>none</PrevFile>\n"
    "\t\t\t\t<PrevTreatment>none</PrevTreatment>\n"
    "\t\t\t</History>\n"
    "\t\t</MetaHistory>\n"
    "\t\t<NbMetaVar>1</NbMetaVar>\n"
    "\t\t<NbMetaInd>1</NbMetaInd>\n"
    "\t\t<MetaDistance>\n"
    "\t\t\t<Measure>none</Measure>\n"
    "\t\t\t<ListVar>\n"
    "\t\t\t</ListVar>\n"
    "\t\t</MetaDistance>\n"
    "\t\t<MetaMatch>\n"
    "\t\t\t<Measure>none</Measure>\n"
    "\t\t\t<ListVar>\n"
    "\t\t\t\t<V>1</V>\n"
    "\t\t\t</ListVar>\n"
    "\t\t</MetaMatch>\n"
    "\t\t<MetaIndLis>\n"
    "\t\t\t<MetaInd>\n"
    "\t\t\t\t<Num>1</Num>\n"
    "\t\t\t\t<Name>AA00</Name>\n"
    "\t\t\t\t<NbInObj>12</NbInObj>\n"
    "\t\t\t\t<GNbInObj>12</GNbInObj>\n"
    "\t\t\t\t<Operator>aggregated</Operator>\n"
    "\t\t\t</MetaInd>\n"
    "\t\t</MetaIndLis>\n"
    "\t\t<MetaVarLis>\n"
    "\t\t\t<MetaVar>\n"
    "\t\t\t\t<Num>1</Num>\n"
    "\t\t\t\t<Name>AB00</Name>\n"
    "\t\t\t\t<VarOrig>1</VarOrig>\n"
    "\t\t\t\t<VarOrigLis>\n"
    "\t\t\t\t</VarOrigLis>\n"
    "\t\t\t\t<Label>age</Label>\n"
    "\t\t\t\t<RelUnit>unknown</RelUnit>\n"
    "\t\t\t\t<StepWidht>none</StepWidht>\n"
    "\t\t\t\t<Operator>native</Operator>\n"
    "\t\t\t</MetaVar>\n"
    "\t\t</MetaVarLis>\n"
    "\t</MetaMat>\n"
    "</MetaUlme>\n";

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
  EXPECT_EQ(text, kSmallMetadata);
  WriteFile(file("out_meta.xml"), text);
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
  std::string text = Edited(kSmallMetadata, "<Author>unknown</Author>", "<Author/>");
  text = Edited(text, "\t\t\t\t<VarOrigLis>\n\t\t\t\t</VarOrigLis>\n", "");
  text = Edited(text, "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n", "");
  MetaData read;
  ParseMetadataText(text, read);
  MetaData expected = SmallMetadata();
  expected.metaMat.author.clear();
  EXPECT_EQ(read, expected);
}

TEST_F(MetadataTest, DefaultsAreUnknownOrNone) {
  MetaData m = SmallMetadata();
  m.reset();
  EXPECT_EQ(m.origInfo.popSampSize, "unknown");
  EXPECT_EQ(m.origInfo.agregMeth, "none");
  EXPECT_TRUE(m.origInfo.origVars.empty());
  EXPECT_EQ(m.metaMat.nbMetaVar, 0);
  EXPECT_EQ(MakeMetaVar().operatorName, "unknown");
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
  const std::string broken = Edited(kSmallMetadata, "<NbOrigMat>1</NbOrigMat>", "");
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
        ParseText(kSmallMetadata, model);
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
