#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "TableMatrix.h"
#include "common/LastError.h"
#include "formats/RsdaTableWriter.h"
#include "formats/TableText.h"
#include "formats/TidyTableWriter.h"

namespace velda {
namespace {

class TableWriterTest : public ::testing::Test, protected test::TableMatrix {
 protected:
  std::string rsda() {
    std::ostringstream out;
    EXPECT_TRUE(WriteRsdaTable(out, *matrix, rows, rows)) << lastError();
    return out.str();
  }
  std::string tidy() {
    std::ostringstream out;
    EXPECT_TRUE(WriteTidyTable(out, *matrix, rows, rows)) << lastError();
    return out.str();
  }
};

TEST_F(TableWriterTest, RsdaTableHasMarkersProbabilitiesAndQuotedNames) {
  // The job variable shows cardinalities, yet the table holds probabilities;
  // Bob's NULL job weight is left out of his denominator.
  EXPECT_EQ(rsda(),
            "$C;age;$I;\"pay range\";\"pay range\";$M;town;Lyon;Saint-\xc3\x89tienne;"
            "$M;\"job;main,kind\";clerk;\"a;b\"\n"
            "A1;$C;30;$I;10;20;$M;2;1;0;$M;2;0.25;0.75\n"
            "\"Bob's \"\"x\"\"\";$C;NA;$I;NA;NA;$M;2;0;1;$M;2;1;0\n"
            "caf\xc3\xa9,2;$C;41.5;$I;-0.5;1500;$M;2;NA;NA;$M;2;NA;NA\n");
}

TEST_F(TableWriterTest, TidyTableHasOneLinePerItemWithTheShownWeights) {
  EXPECT_EQ(tidy(),
            "assertion,variable,kind,state,min,max,category,weight\n"
            "A1,age,number,value,30,30,,\n"
            "A1,pay range,interval,value,10,20,,\n"
            "A1,town,categorical,value,,,Lyon,\n"
            "A1,\"job;main,kind\",categorical,value,,,clerk,1\n"
            "A1,\"job;main,kind\",categorical,value,,,a;b,3\n"
            "\"Bob's \"\"x\"\"\",age,number,NU,,,,\n"
            "\"Bob's \"\"x\"\"\",pay range,interval,NA,,,,\n"
            "\"Bob's \"\"x\"\"\",town,categorical,value,,,Saint-\xc3\x89tienne,\n"
            "\"Bob's \"\"x\"\"\",\"job;main,kind\",categorical,value,,,clerk,1\n"
            "\"caf\xc3\xa9,2\",age,number,value,41.5,41.5,,\n"
            "\"caf\xc3\xa9,2\",pay range,interval,value,-0.5,1500,,\n"
            "\"caf\xc3\xa9,2\",town,categorical,NA,,,,\n"
            "\"caf\xc3\xa9,2\",\"job;main,kind\",categorical,NA,,,,\n");
}

// One set {clerk 1, a;b 3} of a two-category variable, under each display
// mode: the tidy weight follows the mode (none for boolean), the RSDA
// probabilities never change.
TEST_F(TableWriterTest, TidyWeightsFollowTheDisplayModeAndRsdaStaysProbabilist) {
  auto& job = category(4);
  const std::vector<const Assertion*> first = {rows[0]};
  const char* expected[] = {
      ",,clerk,\n"
      ",,a;b,\n",
      ",,clerk,1\n"
      ",,a;b,3\n",
      ",,clerk,0.25\n"
      ",,a;b,0.75\n",
      ",,clerk,0.3\n"  // (1 + 0.5) / (4 + 0.5 * 2)
      ",,a;b,0.7\n",
  };
  for (const int32_t mode : {MODE_BOOLEAN, MODE_CARDINALITY, MODE_PROBABILIST, MODE_KT_ESTIMATE}) {
    job.mode = mode;
    std::ostringstream out;
    ASSERT_TRUE(WriteTidyTable(out, *matrix, first, first));
    const std::string text = out.str();
    const std::string prefix = "A1,\"job;main,kind\",categorical,value,";
    std::string jobLines;
    for (size_t at = text.find(prefix); at != std::string::npos; at = text.find(prefix, at + 1)) {
      const size_t end = text.find('\n', at);
      jobLines += text.substr(at + prefix.size(), end + 1 - at - prefix.size());
    }
    EXPECT_EQ(jobLines, expected[mode]) << "mode " << mode;

    std::ostringstream table;
    ASSERT_TRUE(WriteRsdaTable(table, *matrix, first, first));
    EXPECT_NE(table.str().find("$M;2;0.25;0.75\n"), std::string::npos) << "mode " << mode;
  }
}

TEST_F(TableWriterTest, RefusalsWriteNothing) {
  for (size_t v = 0; v < matrix->variableCount(); ++v) matrix->variable(v).active = 0;
  std::ostringstream out;
  EXPECT_FALSE(WriteRsdaTable(out, *matrix, rows, rows));
  EXPECT_EQ(lastError(), "No active variable");
  EXPECT_FALSE(WriteTidyTable(out, *matrix, rows, rows));
  EXPECT_EQ(lastError(), "No active variable");
  matrix->variable(0).active = 1;
  const std::vector<const Assertion*> fewer = {rows[0]};
  EXPECT_FALSE(WriteTidyTable(out, *matrix, rows, fewer));
  EXPECT_EQ(lastError(), "Reduced assertions do not match the assertions");
  EXPECT_EQ(out.str(), "");
}

TEST(TableText, NamesBecomeUtf8AndControlCharactersAreQuoted) {
  EXPECT_EQ(latin1ToUtf8("a\x7f\x80\xe9\xff"), "a\x7f\xc2\x80\xc3\xa9\xc3\xbf");
  std::ostringstream out;
  writeTextField(out, "tab\there", ",");
  out << '|';
  writeTextField(out, "plain", ",");
  out << '|';
  writeTextField(out, "", ",");
  out << '|';
  writeNumber(out, 0.1);
  out << '|';
  writeNumber(out, 123456789.25);
  EXPECT_EQ(out.str(), "\"tab\there\"|plain||0.1|123456789.25");
}

}  // namespace
}  // namespace velda
