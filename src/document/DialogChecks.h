#pragma once

#include <optional>
#include <string>

#include "common/MessageBox.h"
#include "document/CommandValues.h"

namespace velda {

// Why a dialog refuses its values: the message it shows, and its icon.
struct Refusal {
  std::string text;
  MessageIcon icon;
};

// The checks each dialog makes before it closes with OK. The dialogs call
// them to stay open; the document calls them again on what it receives, so
// values from any source obey the same rules.
std::optional<Refusal> checkNewValues(const NewValues& values);
std::optional<Refusal> checkAddVariablesValues(const AddVariablesValues& values);
std::optional<Refusal> checkTaxonomyValues(const TaxonomyValues& values);
std::optional<Refusal> checkReductionValues(const ReductionValues& values);
std::optional<Refusal> checkDivisionValues(const DivisionValues& values);
std::optional<Refusal> checkExportValues(const ExportValues& values);
std::optional<Refusal> checkJoinValues(const JoinValues& values);

// Accepted ranges of the sampling count and of the two analysis parameters.
constexpr int32_t kMinSampleSize = 10;
constexpr int32_t kMaxSampleSize = 10000;
constexpr int32_t kMinReductionThreshold = 10;
constexpr int32_t kMaxReductionThreshold = 100;
constexpr int32_t kMinDivisionClasses = 2;
constexpr int32_t kMaxDivisionClasses = 100;

// The query that a dialog's choice stands for: "select * from " and the
// chosen table, or the written query.
std::string queryOf(const std::string& tableName, const std::string& query);

}  // namespace velda
