#pragma once

#include <cstddef>
#include <cstdint>

namespace velda::project {

// The fixed values of the project file's layout.
constexpr const char* kMagic = "$KORVA$";
constexpr size_t kHeaderCounters = 10;
constexpr size_t kTextBlockSize = 256;
constexpr size_t kTitleSize = 128;  // title, then subtitle: each zero-ended and zero-padded

constexpr uint16_t kQuantitative = 1;
constexpr uint16_t kCategorical = 2;

constexpr uint16_t kNone = 0xFFFF;  // no modality, no taxonomy, end of a set
constexpr uint32_t kEndOfMemberships = 0xFFFFFFFF;

// The header counters, by position.
enum Counter : size_t {
  kVariables,
  kQuantitativeVariables,
  kCategoricalVariables,
  kTaxonomies,
  kCellVariables,
  kCellTaxonomies,
  kMotherCandidates,
  kReductionThreshold,
  kRules,
  kDivisionClasses,
};

// The smallest size of a record, in bytes: counts read from a file are
// checked against the bytes left before anything is made for them.
constexpr size_t kMinVariableRecord = 16;
constexpr size_t kMinModalityEntry = 4;
constexpr size_t kMinRuleRecord = 6;
constexpr size_t kMinAssertionRecord = 10;
constexpr size_t kMinDescription = 26;
constexpr size_t kMinIndividualRecord = 18;
constexpr size_t kMinCellRecord = 1;

}  // namespace velda::project
