#include "ops/PrivacyThreshold.h"

#include <vector>

#include "common/ConsoleLog.h"
#include "common/LastError.h"
#include "model/SymbolicMatrix.h"

namespace velda {

namespace {

// Deleting an assertion leaves the member counts of the others unchanged,
// so the assertions below the threshold, in table order, are the ones that
// rescanning the table after each deletion would find, in the same order.
std::vector<Assertion*> assertionsBelow(SymbolicMatrix& matrix, int32_t threshold) {
  std::vector<Assertion*> below;
  for (Assertion& a : matrix.assertions)
    if (a.memberCount < threshold) below.push_back(&a);
  return below;
}

// Only the deleted assertion's members hold it in their membership, so
// walking them is walking every individual that the deletion concerns.
void deleteAssertion(SymbolicMatrix& matrix, Assertion& assertion) {
  while (!assertion.members.empty()) {
    Individual& member = *assertion.members.back();
    matrix.unlink(member, assertion);
    if (!member.hasMembership()) matrix.removeIndividual(member);
  }
  const std::string id = assertion.id;
  matrix.assertions.erase(id);
}

// Each remaining assertion moves down by the number of deleted indexes at
// or below its own.
void correctIndexes(SymbolicMatrix& matrix, const std::vector<int32_t>& deleted, size_t countAtEntry) {
  std::vector<int32_t> deletedUpTo(countAtEntry + 1, 0);
  for (int32_t index : deleted)
    if (index >= 0 && static_cast<size_t>(index) < countAtEntry) ++deletedUpTo[static_cast<size_t>(index) + 1];
  for (size_t i = 1; i <= countAtEntry; ++i) deletedUpTo[i] += deletedUpTo[i - 1];
  for (Assertion& a : matrix.assertions)
    if (a.number >= 0 && static_cast<size_t>(a.number) < countAtEntry)
      a.number -= deletedUpTo[static_cast<size_t>(a.number) + 1];
}

}  // namespace

bool ApplyPrivacyThreshold(SymbolicMatrix& matrix, ConsoleLog& console, int32_t threshold) {
  console.print(":Privacy operation");
  console.print("::Individuals per group threshold: %d", threshold);
  if (matrix.assertionCount() < 1) {
    console.print(": no assertion to handle");
    return true;
  }
  const size_t countAtEntry = matrix.assertionCount();
  std::vector<int32_t> deleted;
  deleted.reserve(countAtEntry);
  // The index of the remaining assertions fits in this room, so that
  // memory can only run out before the first deletion.
  matrix.orderedAssertions.reserve(countAtEntry);
  for (Assertion* assertion : assertionsBelow(matrix, threshold)) {
    deleted.push_back(assertion->number);
    deleteAssertion(matrix, *assertion);
  }

  if (!deleted.empty()) {
    console.print("::%d assertion%s deleted, correcting indexes...", static_cast<int>(deleted.size()),
                  deleted.size() > 1 ? "s" : "");
    correctIndexes(matrix, deleted, countAtEntry);
    if (!matrix.indexAssertions()) {
      setError("Memory allocation failed");
      return false;
    }
    for (size_t i = 0; i < matrix.orderedAssertions.size(); ++i)
      console.print("Assertion n\xb0%d has %d individual(s). Minimum: %d", static_cast<int>(i),
                    matrix.orderedAssertions[i]->memberCount, threshold);
  }
  console.print(":[done]");
  return true;
}

}  // namespace velda
