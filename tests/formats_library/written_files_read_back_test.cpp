// What the library writes stays within what its own reader accepts: long
// texts, texts that look like markup or hold control characters, counts
// printed with six digits, long lists of children.
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "formats/library/Coherence.h"
#include "formats/library/KeyValueBlock.h"
#include "formats/library/SymbolicLibrary.h"
#include "formats/library/XmlEscape.h"
#include "formats_library/TownsFile.h"

namespace velda::symlib::test {
namespace {

constexpr size_t kReaderLineLimit = 3000;

size_t longestLine(const std::string& text) {
  size_t longest = 0;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) longest = std::max(longest, line.size());
  return longest;
}

std::string metadataText(const MetaData& meta) {
  std::ostringstream out;
  EXPECT_TRUE(WriteMetadataFile(meta, out));
  return out.str();
}

TEST(WrittenFilesReadBack, LongAndMarkupTextsInMetadataReadBack) {
  // A one-line query of 6,050 characters, heavy in characters that grow
  // five times when escaped.
  std::string query = "select id, grp";
  while (query.size() < 6040) query += ", case when a<>b and c>1 then 'x&y' end";
  query.resize(6049);
  query += ')';
  MetaData meta;
  meta.metaMat.sqlQuery = query;
  meta.metaMat.odbcSource = std::string(5000, 'q');  // no blank to break at
  MetaVar markup = MakeMetaVar();
  markup.num = 1;
  markup.name = "AB00";
  markup.label = "<x>";
  MetaVar control = markup;
  control.label =
      "a\x01"
      "b\tc";
  meta.metaMat.vars = {markup, control};
  meta.metaMat.nbMetaVar = 2;

  const std::string written = metadataText(meta);
  EXPECT_LE(longestLine(written), kReaderLineLimit);
  EXPECT_EQ(written.find("<x>"), std::string::npos);

  MetaData read;
  std::istringstream in(written);
  ASSERT_TRUE(TryParseMetadataFile(in, "meta.xml", read));
  // The query comes back with line breaks in place of some of its blanks.
  std::string unbroken = read.metaMat.sqlQuery;
  EXPECT_NE(unbroken.find('\n'), std::string::npos);
  std::replace(unbroken.begin(), unbroken.end(), '\n', ' ');
  EXPECT_EQ(unbroken, query);
  // Without a blank the text is cut at 2,500 characters.
  EXPECT_EQ(read.metaMat.odbcSource, std::string(2500, 'q') + "\n" + std::string(2500, 'q'));
  ASSERT_EQ(read.metaMat.vars.size(), 2u);
  EXPECT_EQ(read.metaMat.vars[0].label, "<x>");
  EXPECT_EQ(read.metaMat.vars[1].label, "a b c");
}

TEST(WrittenFilesReadBack, RefusedMetadataReturnsInsteadOfEndingTheProgram) {
  std::istringstream in("<MetaUlme><OrigInfo><Nonsense/></MetaUlme>");
  MetaData read;
  read.metaMat.sqlQuery = "kept?";
  EXPECT_FALSE(TryParseMetadataFile(in, "bad.xml", read));
  EXPECT_EQ(read.metaMat.sqlQuery, MetaData().metaMat.sqlQuery);
  // The fuzz-found documents of the fixtures (see their README) are refused
  // the same way.
  for (const char* name :
       {"meta_high_byte_between_tags.xml", "meta_elements_inside_a_leaf.xml", "meta_broken_names.xml"}) {
    std::istringstream found(Fixture(name));
    EXPECT_FALSE(TryParseMetadataFile(found, name, read)) << name;
  }
}

// Two variables NA in 1,234,567 rows each: each prints as 1.23457e+06.
SymbolicFile missingValues(double firstDeclared, double secondDeclared, size_t found) {
  SymbolicFile model;
  for (double declared : {firstDeclared, secondDeclared}) {
    SymVariable variable;
    variable.naCount = declared;
    model.variables.push_back(variable);
  }
  SymValue na;
  na.kind = SymValue::Kind::NA;
  model.matrix.emplace_back(found, na);
  model.header.value(kVarNb).integer = 2;
  return model;
}

TEST(WrittenFilesReadBack, MissingCountsAgreeWithinTheirPrintedRounding) {
  Diagnostics printedAsWritten;
  VerifyCoherence(missingValues(1.23457e6, 1.23457e6, 2469134), printedAsWritten);
  EXPECT_EQ(printedAsWritten.coherenceErrors(), 0);

  Diagnostics reallyWrong;
  VerifyCoherence(missingValues(1.23457e6, 1.23458e6, 2469134), reallyWrong);
  EXPECT_EQ(reallyWrong.coherenceErrors(), 1);

  Diagnostics smallAndOff;
  VerifyCoherence(missingValues(3, 4, 8), smallAndOff);
  EXPECT_EQ(smallAndOff.coherenceErrors(), 1);
}

TEST(WrittenFilesReadBack, LongListsOfChildrenAreWrapped) {
  SymbolicFile model;
  SymHierarchy hierarchy;
  hierarchy.variable = 1;
  SymHierarchyLink node;
  node.node = 2001;
  for (long long child = 1; child <= 2000; ++child) node.children.push_back(child);
  hierarchy.links.push_back(node);
  model.hierarchies.push_back(hierarchy);
  model.present[static_cast<int>(SymBlock::Hierarchie)] = true;
  model.declared[static_cast<int>(SymBlock::Hierarchie)] = true;
  std::ostringstream out;
  ASSERT_TRUE(WriteSymbolicFileText(model, out));
  EXPECT_NE(out.str().find("2001 = (1,2,3,4,5,6,7,8,9,\n"), std::string::npos);
  EXPECT_LE(longestLine(out.str()), kReaderLineLimit);
}

}  // namespace
}  // namespace velda::symlib::test
