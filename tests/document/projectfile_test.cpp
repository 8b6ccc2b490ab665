#include <gtest/gtest.h>

#include <sstream>

#include "common/LastError.h"
#include "document/ProjectBytes.h"
#include "document/ProjectFileSamples.h"
#include "formats/SymbolicTextWriter.h"
#include "model/Dependence.h"
#include "support/FileText.h"
#include "support/HandMatrix.h"
#include "support/TempDir.h"

namespace velda {
namespace {

using test::ProjectBytes;
using test::projectBytes;
using test::projectFromBytes;

// The small project written out by hand from the layout.
std::string smallProjectBytes() {
  ProjectBytes b;
  b.str("$KORVA$").u32(1).u32(1);
  // variables, quantitative, qualitative, taxonomies, P, taxonomies below P,
  // possible mothers, reduction threshold, rules, division classes
  for (uint16_t counter : {2, 1, 1, 0, 2, 0, 1, 0, 0, 0}) b.u16(counter);
  b.str("id").str("grp").str("");
  b.raw("T").zeros(255);
  // x: quantitative, interval, active, min and max.
  b.u16(1).u16(1).u16(1).str("x").f64(2).f64(2);
  // c: qualitative, single, active; two leaves, no node, boolean mode, no
  // taxonomy; the table in the order of two buckets: b (98 % 2 = 0), a.
  b.u16(2).u16(0).u16(1).str("c").u16(2).u16(0).u16(0).u16(0xFFFF);
  b.str("b").u16(1).str("a").u16(0);
  // g: number 0, one member; x: NA, NULL, total, min, max; c: one entry,
  // NA, NULL, total, then modality 0 with its weight and subtree weight.
  b.str("g").u32(0).u32(1);
  b.f64(0).f64(0).f64(1).f64(2).f64(2);
  b.u16(1).f64(0).f64(0).f64(1).u16(0).f64(1).f64(0);
  // i1: weight, membership of assertion 0, end mark, a number cell, a
  // modality cell.
  b.str("i1").f64(1).u32(0).u32(0xFFFFFFFF);
  b.u8(2).f64(2).u8(1).u16(0);
  return b.bytes();
}

std::string kvf(SymbolicMatrix& matrix) {
  std::ostringstream out;
  EXPECT_TRUE(WriteSymbolicText(out, matrix, false));
  return out.str();
}

std::vector<std::string> childNames(const Modality* node) {
  std::vector<std::string> names;
  for (const Modality* child = node->firstChild; child; child = child->nextSibling) names.push_back(child->name);
  return names;
}

TEST(ProjectFile, RoundTripRebuildsEveryPartAndTheSameBytes) {
  const auto original = test::fullProject();
  const std::string first = projectBytes(*original);
  ASSERT_FALSE(first.empty());
  const auto loaded = projectFromBytes(first);
  ASSERT_TRUE(loaded) << lastError();
  EXPECT_EQ(projectBytes(*loaded), first);
  EXPECT_EQ(kvf(*loaded), kvf(*original));

  // The same bytes again hold every stored field; what follows is what the
  // reader rebuilds from them.
  ASSERT_EQ(loaded->variableCount(), 5u);

  // The taxonomy: the added root_ above an inner node also named root_
  // (above winter) and summer, summer above golf and foot.
  const auto& sports = static_cast<const CategoricalVariable&>(loaded->variable(2));
  ASSERT_TRUE(sports.hasTaxonomy());
  EXPECT_EQ(sports.taxonomyRoot->name, "root_");
  const Modality* inner = const_cast<CategoricalVariable&>(sports).findNode("winter")->parent;
  ASSERT_TRUE(inner);
  EXPECT_EQ(inner->name, "root_");
  EXPECT_EQ(inner->parent, sports.taxonomyRoot);
  EXPECT_EQ(childNames(sports.taxonomyRoot),
            childNames(static_cast<const CategoricalVariable&>(original->variable(2)).taxonomyRoot));
  EXPECT_EQ(loaded->taxonomyCount(), 1);
  EXPECT_EQ(loaded->cellTaxonomyCount(), 1);
  const auto& before = static_cast<const CategoricalVariable&>(original->variable(2));
  for (const char* name : {"root_", "winter", "summer", "ski"}) {
    const Modality* node = const_cast<CategoricalVariable&>(sports).findNode(name);
    const Modality* old = const_cast<CategoricalVariable&>(before).findNode(name);
    ASSERT_TRUE(node) << name;
    EXPECT_EQ(node->index, old->index) << name;
    EXPECT_EQ(childNames(node), childNames(old)) << name;
    EXPECT_EQ(node->parent ? node->parent->name : "", old->parent ? old->parent->name : "") << name;
  }

  // The rule (age is applicable if city in {paris}) links its variables.
  ASSERT_EQ(loaded->rules.size(), 1u);
  const DependenceRule& rule = *loaded->rules[0];
  EXPECT_EQ(loaded->variable(0).motherIndex, 1);
  EXPECT_EQ(loaded->variable(0).rule, &rule);
  EXPECT_EQ(loaded->variable(1).firstDaughter, 0);
  EXPECT_TRUE(loaded->isDaughter(0));
  EXPECT_EQ(loaded->motherCandidateCount(), 2u);

  // bob is in blue and green, green the newest.
  const Individual* bob = loaded->findIndividual("bob");
  ASSERT_TRUE(bob);
  ASSERT_TRUE(bob->direct);
  EXPECT_EQ(bob->direct->id, "green");
  ASSERT_EQ(bob->membershipCount(), 2u);
  EXPECT_EQ(bob->others.front()->id, "blue");
  const Assertion* blue = bob->others.front();
  EXPECT_EQ(blue->members, Assertion::MemberList{const_cast<Individual*>(bob)});
  EXPECT_EQ(blue->number, 1);
  EXPECT_EQ(loaded->orderedAssertions[1], blue);
}

TEST(ProjectFile, HeaderCountersAreTruncatedTo16BitsAndAnIndividualWithoutAssertionIsRefused) {
  auto matrix = test::smallProject();
  matrix->divisionClassCount = 70000;  // 70000 - 65536 = 4464
  matrix->reductionThreshold = 65536 + 90;
  const auto truncated = projectFromBytes(projectBytes(*matrix));
  ASSERT_TRUE(truncated) << lastError();
  EXPECT_EQ(truncated->divisionClassCount, 4464);
  EXPECT_EQ(truncated->reductionThreshold, 90);

  matrix->insertIndividual(Individual("alone", matrix->cellCount()));
  const std::string bytes = projectBytes(*matrix);
  // The individual's record ends with the end mark alone, then its cells.
  const std::string record = ProjectBytes().str("alone").f64(1).u32(0xFFFFFFFF).bytes();
  EXPECT_NE(bytes.find(record), std::string::npos);
  clearError();
  EXPECT_FALSE(projectFromBytes(bytes));
  EXPECT_EQ(lastError(), "Load failed");
}

TEST(ProjectFile, AFailedSaveKeepsThePreviousFile) {
  test::TempDir dir;
  const std::string path = dir.file("teams.gaj");
  const auto matrix = test::smallProject();
  ASSERT_EQ(saveProject(path, *matrix), ProjectSave::Saved);
  EXPECT_EQ(test::readFile(path), smallProjectBytes());

  auto unsavable = test::smallProject();
  unsavable->title = "changed";
  unsavable->variable(0).name.assign(70000, 'n');  // longer than a string field holds
  clearError();
  EXPECT_EQ(saveProject(path, *unsavable), ProjectSave::Failed);
  EXPECT_EQ(lastError(), "Save failed");
  EXPECT_EQ(test::readFile(path), smallProjectBytes());
  EXPECT_EQ(test::folderNames(dir.path()), std::vector<std::string>{"teams.gaj"});

  EXPECT_EQ(saveProject(dir.file("missing/teams.gaj"), *matrix), ProjectSave::CannotOpen);
  EXPECT_EQ(lastError(), "Can not open file " + dir.file("missing/teams.gaj"));
}

// A project reads back exactly as it was: what a later export or rule text
// shows does not change across save and open.
std::string ruleText(const SymbolicMatrix& matrix) {
  std::ostringstream out;
  describeRule(matrix, *matrix.rules.front(), out);
  return out.str();
}

std::string valueTexts(const SymbolicMatrix& matrix, size_t variable) {
  std::string texts;
  for (const Assertion& assertion : matrix.assertions) texts += test::HandMatrix::written(assertion, variable) + ";";
  return texts;
}

TEST(ProjectReadBack, RulesAndRecomputedDaughtersKeepTheirOrder) {
  // Mother m with five modalities; set-valued daughter d whose assertion
  // g holds modalities 2 and 5 (numbers 1 and 4): in more buckets
  // than entries they come in another order than in a compact table.
  test::HandMatrix hand;
  hand.categorical("m", 0, 5);
  hand.categorical("d", 1, 5);
  hand.holdCells();
  const char* const names[] = {"alpha", "beta", "gamma", "delta", "mu"};
  std::vector<Individual*> people;
  for (int i = 0; i < 5; ++i) people.push_back(&hand.person(std::to_string(i).c_str(), {names[i], names[i]}));
  hand.group("g", {people[1], people[4]});
  hand.group("h", {people[0], people[2], people[3]});
  ASSERT_EQ(hand.matrix->finish(SymbolicMatrix::MemberCells::Added), 1);

  RuleGroup group;
  const int32_t applicable[] = {1, 4};
  const int32_t daughters[] = {1};
  ASSERT_EQ(makeRuleGroup(*hand.matrix, 0, applicable, daughters, group), 1);
  ASSERT_EQ(applyRule(*hand.matrix, std::move(group)), 1);
  const std::string rule = ruleText(*hand.matrix);
  const std::string daughterValues = valueTexts(*hand.matrix, 1);

  const auto reopened = projectFromBytes(projectBytes(*hand.matrix));
  ASSERT_TRUE(reopened);
  EXPECT_EQ(ruleText(*reopened), rule);
  EXPECT_EQ(valueTexts(*reopened, 1), daughterValues);
}

TEST(ProjectReadBack, AnEmptyCategoryIsStoredAsPresent) {
  auto matrix = test::smallProject();
  CellValue unused;
  matrix->variable(1).addCell("", unused);
  const std::string bytes = projectBytes(*matrix);
  // c's leaves in the order of three buckets: "" (hash 0, number 2), then
  // a (97 % 3 = 1) and b (98 % 3 = 2).
  EXPECT_NE(bytes.find(ProjectBytes().u16(1).u8(0).u16(2).str("a").u16(0).str("b").u16(1).bytes()), std::string::npos);
}

TEST(ProjectReadBack, ProbabilistWeightsStayFiniteBesideAHugeNullWeight) {
  test::HandMatrix hand;
  auto& town = hand.categorical("town", 1);
  town.mode = MODE_PROBABILIST;
  hand.holdCells();
  Individual& small = hand.person("1", {"x"}, 1.0);
  Individual& huge = hand.person("2", {nullptr}, 1e17);
  Assertion& g = hand.group("g", {&small, &huge});
  EXPECT_EQ(test::HandMatrix::written(g, 0), "(1(1))");
}

}  // namespace
}  // namespace velda
