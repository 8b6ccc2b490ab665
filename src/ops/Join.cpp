#include "ops/Join.h"

#include <algorithm>
#include <new>
#include <string>
#include <vector>

#include "common/Format.h"
#include "model/SymbolicMatrix.h"

namespace velda {

namespace {

// The names the second matrix's variables take, each decided before the
// next: blanks become "_"; a clash with the individual column gives
// "<name>_1", with the assertion column "<name>_<counter + 1>"; then one
// pass compares the name with every variable already placed except the one
// just before it, each match giving "<name>_<++counter>". Names built on a
// clash start again from the name as it stands in its file.
std::vector<std::string> joinedNames(const SymbolicMatrix& result, const SymbolicMatrix& first,
                                     const SymbolicMatrix& second) {
  const size_t m1 = first.variableCount();
  std::vector<std::string> names;
  names.reserve(m1 + second.variableCount());
  for (size_t q = 0; q < m1; ++q) names.push_back(first.variable(q).name);
  for (size_t j = 0; j < second.variableCount(); ++j) {
    const std::string& file = second.variable(j).name;
    const size_t position = m1 + j;
    int counter = 0;
    std::string name = file;
    std::replace(name.begin(), name.end(), ' ', '_');
    if (name == result.individualColumn) name = format("%s_%d", file.c_str(), 1);
    if (name == result.assertionColumn) name = format("%s_%d", file.c_str(), counter + 1);
    for (size_t q = 0; q + 2 <= position; ++q) {
      if (name != names[q]) continue;
      ++counter;
      name = format("%s_%d", file.c_str(), counter);
    }
    names.push_back(std::move(name));
  }
  return names;
}

void shiftIndex(int32_t& index, int32_t offset) {
  if (index != -1) index += offset;
}

// Gives the second matrix's variables their joined names and shifts the
// indexes its variables and rules hold past the first's variables.
void placeAfterFirst(SymbolicMatrix& second, size_t offset, std::vector<std::string>& names) {
  const auto shift = static_cast<int32_t>(offset);
  for (size_t j = 0; j < second.variableCount(); ++j) {
    SymbolicVariable& variable = second.variable(j);
    if (names[offset + j] != variable.name) variable.name = std::move(names[offset + j]);
    shiftIndex(variable.motherIndex, shift);
    shiftIndex(variable.firstDaughter, shift);
    shiftIndex(variable.nextDaughter, shift);
  }
  for (auto& rule : second.rules) {
    shiftIndex(rule->mother, shift);
    shiftIndex(rule->daughter, shift);
  }
}

void joinAssertion(SymbolicMatrix& result, Assertion& fromFirst, Assertion& fromSecond) {
  Assertion joined(fromFirst.id, static_cast<int32_t>(result.assertionCount()));
  joined.memberCount = fromFirst.memberCount;
  joined.values.reserve(fromFirst.values.size() + fromSecond.values.size());
  for (auto& value : fromFirst.values) joined.values.push_back(std::move(value));
  for (auto& value : fromSecond.values) joined.values.push_back(std::move(value));
  result.assertions.insert(std::move(joined));
}

}  // namespace

bool Join(SymbolicMatrix& result, SymbolicMatrix& first, SymbolicMatrix& second) {
  result.individualColumn = first.individualColumn;
  result.assertionColumn = first.assertionColumn;
  result.weightColumn = first.weightColumn;
  result.title = first.title;
  result.subtitle = first.subtitle;
  try {
    std::vector<std::string> names = joinedNames(result, first, second);
    placeAfterFirst(second, first.variableCount(), names);
    result.takeVariables(first, second);

    const bool walkSecond = second.assertionCount() <= first.assertionCount();
    SymbolicMatrix& walked = walkSecond ? second : first;
    SymbolicMatrix& other = walkSecond ? first : second;
    for (Assertion& assertion : walked.assertions) {
      Assertion* match = other.findAssertion(assertion.id);
      if (!match) continue;
      if (walkSecond)
        joinAssertion(result, *match, assertion);
      else
        joinAssertion(result, assertion, *match);
    }
  } catch (const std::bad_alloc&) {
    return false;
  }
  return true;
}

}  // namespace velda
