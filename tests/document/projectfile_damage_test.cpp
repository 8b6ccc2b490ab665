#include <gtest/gtest.h>

#include <limits>

#include "common/LastError.h"
#include "document/ProjectBytes.h"
#include "document/ProjectFileSamples.h"

namespace velda {
namespace {

using test::ProjectBytes;
using test::projectBytes;
using test::projectFromBytes;

constexpr size_t kMagicAndCounts = 10 + 8;
constexpr size_t kHeaderOffset = kMagicAndCounts;

std::string refusal(std::string_view bytes) {
  setError("not read");
  const auto matrix = projectFromBytes(bytes);
  return matrix ? "read" : lastError();
}

void setU16(std::string& bytes, size_t offset, uint16_t value) {
  bytes[offset] = static_cast<char>(value & 0xFF);
  bytes[offset + 1] = static_cast<char>(value >> 8);
}

void setU32(std::string& bytes, size_t offset, uint32_t value) {
  for (size_t i = 0; i < 4; ++i) bytes[offset + i] = static_cast<char>(value >> (8 * i));
}

TEST(ProjectFileDamage, EveryTruncationFailsWithItsReason) {
  for (const std::string& bytes : {projectBytes(*test::smallProject()), projectBytes(*test::fullProject())}) {
    ASSERT_GT(bytes.size(), kMagicAndCounts);
    ASSERT_EQ(refusal(bytes), "read");
    for (size_t length = 0; length < bytes.size(); ++length) {
      const char* reason = length < kMagicAndCounts ? "Incorrect file type" : "Load failed";
      ASSERT_EQ(refusal(std::string_view(bytes).substr(0, length)), reason) << "cut at " << length;
    }
  }
}

TEST(ProjectFileDamage, OnlyTheExactMagicIsAccepted) {
  const std::string body = projectBytes(*test::smallProject()).substr(10);
  EXPECT_EQ(refusal(ProjectBytes().u16(0).raw(body).bytes()), "Incorrect file type");
  // Without its zero, and with a wrong last byte.
  EXPECT_EQ(refusal(ProjectBytes().u16(7).raw("$KORVA$").raw(body).bytes()), "Incorrect file type");
  EXPECT_EQ(refusal(ProjectBytes().u16(8).raw("$KORVA$!").raw(body).bytes()), "Incorrect file type");
  EXPECT_EQ(refusal(ProjectBytes().str("$KORVA").raw(body).bytes()), "Incorrect file type");
  EXPECT_EQ(refusal(ProjectBytes().str("$korva$").raw(body).bytes()), "Incorrect file type");
  EXPECT_EQ(refusal(ProjectBytes().str("$KORVA$$").raw(body).bytes()), "Incorrect file type");
  // A length far beyond the file is never read past the end.
  EXPECT_EQ(refusal(ProjectBytes().u16(0xFFFF).raw("$KORVA$").bytes()), "Incorrect file type");
}

TEST(ProjectFileDamage, CountsThatDoNotAddUpAreRefused) {
  const std::string valid = projectBytes(*test::smallProject());
  auto withCounter = [&](size_t counter, uint16_t value) {
    std::string bytes = valid;
    setU16(bytes, kHeaderOffset + 2 * counter, value);
    return bytes;
  };
  EXPECT_EQ(refusal(withCounter(1, 2)), "Load failed");  // 2 + 1 quantitative and qualitative for 2 variables
  EXPECT_EQ(refusal(withCounter(4, 3)), "Load failed");  // P above the variable count
  EXPECT_EQ(refusal(withCounter(3, 1)), "Load failed");  // a taxonomy that no variable has
  EXPECT_EQ(refusal(withCounter(8, 1)), "Load failed");  // a rule record that is not there

  // Counts far above what the bytes could hold fail before anything is made
  // for them.
  for (size_t offset : {size_t{10}, size_t{14}}) {
    std::string bytes = valid;
    setU32(bytes, offset, 0xFFFFFFFF);
    EXPECT_EQ(refusal(bytes), "Load failed");
  }
  EXPECT_EQ(refusal(withCounter(0, 0xFFFF)), "Load failed");
}

TEST(ProjectFileDamage, TheMotherCounterIsKeptAsStored) {
  // c is the one categorical column, but a join or a removal may have left
  // another count: it is read and written back as it stands.
  std::string bytes = projectBytes(*test::smallProject());
  setU16(bytes, kHeaderOffset + 2 * 6, 0);
  const auto matrix = projectFromBytes(bytes);
  ASSERT_TRUE(matrix) << lastError();
  EXPECT_EQ(matrix->motherCandidateCount(), 0u);
  EXPECT_EQ(projectBytes(*matrix), bytes);
}

TEST(ProjectFileDamage, NumbersThatReferToNothingAreRefused) {
  const std::string valid = projectBytes(*test::smallProject());
  // The last cell is modality 0 of c: number 2 does not exist.
  std::string badCell = valid;
  setU16(badCell, badCell.size() - 2, 2);
  EXPECT_EQ(refusal(badCell), "Load failed");

  // The membership of i1 (assertion 0) pointing at assertion 1 of 1.
  std::string badMembership = valid;
  const size_t membership = valid.size() - (1 + 8 + 1 + 2) - 4 - 4;
  setU32(badMembership, membership, 1);
  EXPECT_EQ(refusal(badMembership), "Load failed");

  // Two leaves of c both numbered 0.
  std::string twice = valid;
  const size_t leaves = valid.find(ProjectBytes().str("b").u16(1).bytes());
  ASSERT_NE(leaves, std::string::npos);
  setU16(twice, leaves + 4, 0);
  EXPECT_EQ(refusal(twice), "Load failed");

  // A non-finite weight.
  std::string infinite = valid;
  const size_t weight = valid.find(ProjectBytes().str("i1").bytes()) + 5;
  for (size_t i = 0; i < 8; ++i) infinite[weight + i] = ProjectBytes().f64(std::numeric_limits<double>::infinity()).bytes()[i];
  EXPECT_EQ(refusal(infinite), "Load failed");
}

}  // namespace
}  // namespace velda
