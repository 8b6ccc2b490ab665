#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "model/CategoricalValue.h"
#include "model/CategoricalVariable.h"
#include "model/QuantitativeValue.h"
#include "model/QuantitativeVariable.h"

namespace velda {
namespace {

template <typename Value>
std::string valueText(const Value& value) {
  std::ostringstream out;
  value.writeValue(out);
  return out.str();
}

template <typename Value>
std::string displayText(const Value& value) {
  std::ostringstream out;
  value.writeText(out);
  return out.str();
}

std::string description(const SymbolicVariable& variable) {
  std::ostringstream out;
  variable.writeDescription(out);
  return out.str();
}

CellValue cellOf(SymbolicVariable& variable, const char* text) {
  CellValue cell;
  EXPECT_EQ(variable.addCell(text, cell), 1);
  return cell;
}

CellValue naCell(CellValue cell) {
  cell.flags = (cell.flags & ~CELL_NULL) | CELL_NA;
  return cell;
}

TEST(CellValue, FlagsAndTextsOfEachKind) {
  QuantitativeVariable age("age");
  CategoricalVariable town("town", 1, 19);
  EXPECT_EQ(cellOf(age, nullptr).flags, 6u);
  EXPECT_EQ(cellOf(town, nullptr).flags, 5u);
  EXPECT_EQ(cellOf(age, "inf").flags, 6u) << "a non-finite number is missing";
  EXPECT_EQ(cellOf(age, "nan").flags, 6u);
  EXPECT_EQ(cellText(cellOf(age, "3.14159")), "3.14");
  EXPECT_EQ(cellText(cellOf(town, "Lyon")), "Lyon");
  EXPECT_EQ(cellText(cellOf(town, nullptr)), "NULL");
  EXPECT_EQ(cellText(naCell(cellOf(age, "1"))), "NA");
  EXPECT_EQ(cellText(CellValue()), "");
  EXPECT_EQ(age.min, 1.0) << "missing values leave the domain alone";
  EXPECT_EQ(age.max, 3.14159);
  EXPECT_TRUE(cellOf(town, "Lyon").sameAs(cellOf(town, "Lyon")));
  EXPECT_FALSE(cellOf(town, "Lyon").sameAs(cellOf(town, "Nice")));
  EXPECT_TRUE(cellOf(age, nullptr).sameAs(cellOf(age, nullptr)));
  EXPECT_FALSE(cellOf(age, nullptr).sameAs(naCell(cellOf(age, "2"))));
}

TEST(CategoricalValue, WritesEveryModeWithIndexesInFirstMetOrder) {
  CategoricalVariable town("town", 1, 19);
  const CellValue b = cellOf(town, "b");
  const CellValue a = cellOf(town, "a");
  CategoricalValue value(town);
  ASSERT_EQ(value.addCell(b, 2), 1);
  ASSERT_EQ(value.addCell(a, 1), 1);
  ASSERT_EQ(value.addCell(cellOf(town, nullptr), 1), 1);

  town.mode = MODE_BOOLEAN;
  EXPECT_EQ(valueText(value), "(1,2)");
  town.mode = MODE_CARDINALITY;
  EXPECT_EQ(valueText(value), "(1(2),2(1))");
  town.mode = MODE_PROBABILIST;  // the NULL weight is left out of the total
  EXPECT_EQ(valueText(value), "(1(0.666667),2(0.333333))");
  EXPECT_EQ(displayText(value), "[town = {\"b\"(0.666667), \"a\"(0.333333)}]");
  town.mode = MODE_KT_ESTIMATE;  // (w + 0.5) / (3 + 0.5 * 2)
  EXPECT_EQ(valueText(value), "(1(0.625),2(0.125),2(0.375))");

  EXPECT_EQ(description(town), "variable town\n  nominale {\"a\", \"b\"}\n  multiple,mode=KT-estimate probability;\n");
}

TEST(CategoricalValue, BreaksTheLineBeforeEveryTenthItemInTableOrder) {
  CategoricalVariable code("code", 1, 19);
  code.mode = MODE_BOOLEAN;
  CategoricalValue value(code);
  for (int i = 0; i < 12; ++i) EXPECT_TRUE(value.addCell(cellOf(code, std::to_string(i).c_str()), 1));
  // Nine buckets: indexes 9, 10 and 11 follow 0, 1 and 2 in their chains.
  EXPECT_EQ(valueText(value), "(1,10,2,11,3,12,4,5,6,\n    7,8,9)");
  value.rebuild();
  EXPECT_EQ(valueText(value), "(1,2,3,4,5,6,7,8,9,\n    10,11,12)");
}

TEST(CategoricalValue, SingleValuedTakesOneContributionAndShowsNoWeight) {
  CategoricalVariable sex("sex", 0, 19);
  EXPECT_EQ(sex.mode, MODE_BOOLEAN);
  const CellValue f = cellOf(sex, "F");
  CategoricalValue value(sex);
  EXPECT_EQ(value.addCell(f, 2), 1);
  EXPECT_EQ(value.addCell(cellOf(sex, "M"), 1), 0);
  EXPECT_EQ(value.totalWeight, 2.0);
  sex.mode = MODE_CARDINALITY;
  EXPECT_EQ(valueText(value), "1");
  EXPECT_EQ(displayText(value), "[sex = \"F\"]");
  EXPECT_EQ(description(sex), "variable sex\n  nominale {\"F\", \"M\"}\n  unique;\n");
}

TEST(SymbolicValue, NaOnlyWithoutNullWeightOtherwiseNu) {
  CategoricalVariable town("town", 1, 19);
  QuantitativeVariable age("age", 0);
  const CellValue naTown = naCell(cellOf(town, "Lyon"));
  CategoricalValue allNa(town);
  EXPECT_TRUE(allNa.addCell(naTown, 1));
  EXPECT_TRUE(allNa.addCell(naTown, 1));
  EXPECT_TRUE(allNa.isNA());
  EXPECT_FALSE(allNa.isNull());
  CategoricalValue mixed(town);
  EXPECT_TRUE(mixed.addCell(naTown, 1));
  EXPECT_TRUE(mixed.addCell(cellOf(town, nullptr), 1));
  EXPECT_FALSE(mixed.isNA());
  EXPECT_FALSE(mixed.isNull());
  EXPECT_TRUE(mixed.writesNU());
  QuantitativeValue ageNa(age);
  EXPECT_TRUE(ageNa.addCell(naCell(cellOf(age, "4")), 1));
  QuantitativeValue empty(age);
  EXPECT_TRUE(empty.isNull());

  const std::pair<const SymbolicValue*, const char*> shown[] = {
      {&allNa, "NA [town = NA]"}, {&mixed, "NU [town = NULL]"}, {&ageNa, "NA [age= NA]"}, {&empty, "NU [age= NULL]"}};
  for (const auto& [value, text] : shown) EXPECT_EQ(valueText(*value) + " " + displayText(*value), text);
}

TEST(QuantitativeValue, IntervalsSinglesSizesAndOverlap) {
  QuantitativeVariable age("age");
  QuantitativeValue value(age);
  EXPECT_TRUE(value.addCell(cellOf(age, "40"), 1));
  EXPECT_TRUE(value.addCell(cellOf(age, "12.5"), 1));
  EXPECT_TRUE(value.addCell(cellOf(age, nullptr), 1));
  EXPECT_EQ(valueText(value), "(12.5:40)");
  EXPECT_EQ(displayText(value), "[age in [12.5:40]]");
  EXPECT_EQ(value.size(), 27.5);
  EXPECT_EQ(description(age), "variable age\n  real [12.5:40]\n  interval;\n");

  QuantitativeValue other(age);
  EXPECT_TRUE(other.addCell(cellOf(age, "30"), 1));
  EXPECT_TRUE(other.addCell(cellOf(age, "50"), 1));
  EXPECT_EQ(value.overlap(other), 10.0);
  QuantitativeValue apart(age);
  EXPECT_TRUE(apart.addCell(cellOf(age, "41"), 1));
  EXPECT_EQ(value.overlap(apart), 0.0);
  EXPECT_EQ(apart.size(), 1.0) << "a single point has size 1";

  value.reset();
  EXPECT_EQ(valueText(value), "NU");
  EXPECT_EQ(value.totalWeight, 0.0);

  QuantitativeVariable weight("weight", 0);
  QuantitativeValue single(weight);
  EXPECT_TRUE(single.addCell(cellOf(weight, "70"), 1));
  EXPECT_EQ(valueText(single), "70");
  EXPECT_EQ(displayText(single), "[weight = 70]");
  EXPECT_EQ(single.addCell(cellOf(weight, "80"), 1), 0);

  QuantitativeVariable never("never");
  cellOf(never, nullptr);
  EXPECT_EQ(description(never), "variable never\n  real NULL\n  interval;\n");
}

}  // namespace
}  // namespace velda
