#include "document/DialogChecks.h"

#include "common/Format.h"

namespace velda {

namespace {

std::optional<Refusal> refuse(std::string text, MessageIcon icon) { return Refusal{std::move(text), icon}; }

bool nothingChosen(const std::string& tableName, const std::string& query) {
  return tableName.empty() && query.find_first_not_of(" \t\r\n") == std::string::npos;
}

std::optional<Refusal> checkRange(int32_t value, int32_t low, int32_t high) {
  if (value >= low && value <= high) return std::nullopt;
  return refuse(format("Please enter an integer between %d and %d.", low, high), MessageIcon::Information);
}

}  // namespace

std::string queryOf(const std::string& tableName, const std::string& query) {
  return tableName.empty() ? query : "select * from " + tableName;
}

std::optional<Refusal> checkNewValues(const NewValues& values) {
  if (nothingChosen(values.tableName, values.query))
    return refuse("Please select a Table or a Request", MessageIcon::Warning);
  // The text names 100 while the accepted range starts at 10: both stay.
  if (values.sampling && (values.sampleSize < kMinSampleSize || values.sampleSize > kMaxSampleSize))
    return refuse("Number of individuals must be between 100 and 10000", MessageIcon::Information);
  if (values.minimumSet && values.minimum < 1)
    return refuse("Minimum of individuals must be more than 0", MessageIcon::Information);
  if (values.inDatabase && values.sampling)
    return refuse("Sampling needs the individuals: it cannot be used when the database aggregates them",
                  MessageIcon::Warning);
  return std::nullopt;
}

std::optional<Refusal> checkAddVariablesValues(const AddVariablesValues& values) {
  if (nothingChosen(values.tableName, values.query))
    return refuse("Please select a Table or a Request", MessageIcon::Warning);
  return std::nullopt;
}

std::optional<Refusal> checkTaxonomyValues(const TaxonomyValues& values) {
  if (values.variableIndex < 0) return refuse("No variable selected", MessageIcon::Warning);
  if (nothingChosen(values.tableName, values.query))
    return refuse("Please select a Table or a Request", MessageIcon::Warning);
  return std::nullopt;
}

std::optional<Refusal> checkReductionValues(const ReductionValues& values) {
  return checkRange(values.threshold, kMinReductionThreshold, kMaxReductionThreshold);
}

std::optional<Refusal> checkDivisionValues(const DivisionValues& values) {
  return checkRange(values.classes, kMinDivisionClasses, kMaxDivisionClasses);
}

std::optional<Refusal> checkExportValues(const ExportValues& values) {
  if (values.file.empty()) return refuse("You must set a file name", MessageIcon::Warning);
  return std::nullopt;
}

std::optional<Refusal> checkJoinValues(const JoinValues& values) {
  if (values.firstFile.empty() || values.secondFile.empty())
    return refuse("You must select file name", MessageIcon::Warning);
  return std::nullopt;
}

}  // namespace velda
