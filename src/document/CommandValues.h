#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace velda {

// The values that each command's dialog hands back to the document. The
// document fills them with their initial values before asking, so a dialog
// starts from what it receives.

// "Extraction of individuals" (New) and its written-query form.
struct NewValues {
  std::string tableName;  // a chosen table or view: the query is "select * from " + name
  std::string query;      // a written query; used when tableName is empty
  bool lastColumnIsWeight = false;
  bool sampling = false;  // "Sampling with up to" ticked
  int32_t sampleSize = 1000;
  bool minimumSet = false;  // "Groups with at least" ticked
  int32_t minimum = 1;
  bool inDatabase = false;  // the database groups the rows; no individual is read
};

// "Add individuals" for both forms of adding variables.
struct AddVariablesValues {
  std::string tableName;
  std::string query;
};

// "Create a taxonomy".
struct TaxonomyValues {
  int32_t variableIndex = -1;  // a categorical variable of the matrix
  std::string tableName;
  std::string query;
};

// "Add a dependence": indexes into the matrix's variables and the mother's
// modality indexes.
struct DependenceValues {
  int32_t motherIndex = -1;
  std::vector<int32_t> applicableModalities;
  std::vector<int32_t> daughterIndexes;
};

// "Remove variables" / "Remove taxonomies": the chosen variable indexes.
struct VariableSelection {
  std::vector<int32_t> variableIndexes;
};

// "Variables properties": one entry per variable, in variable order.
struct VariableProperty {
  bool active = true;
  int32_t mode = 0;  // display mode of a categorical variable (0..3)
};
struct VariablePropertiesValues {
  std::vector<VariableProperty> variables;
};

// "Reduction parameter" and "Division Parameter".
struct ReductionValues {
  int32_t threshold = 80;
};
struct DivisionValues {
  int32_t classes = 3;
};

// What an export writes: the symbolic file (symbolic text when the
// destination's path holds "kvf", XML otherwise), or one of the tables that
// statistics programs read.
enum class ExportFormat { Symbolic, RsdaTable, TidyTable };

// "KORVA export".
struct ExportValues {
  std::string file;
  ExportFormat format = ExportFormat::Symbolic;
  std::string title;
  std::string subtitle;
  bool exportReducedAssertions = false;
  bool reducedAssertionsAvailable = false;  // the box is disabled when false
  bool exportReducedHordes = false;
  bool reducedHordesAvailable = false;
};

// "Select files to join".
struct JoinValues {
  std::string firstFile;
  std::string secondFile;
};

// A standard file dialog.
struct FileRequest {
  enum class Mode { Open, Save };
  Mode mode = Mode::Open;
  std::string title;
  std::string filter;                // shown text, e.g. "VELDA file (*.gaj)"
  std::string defaultSuffix;         // e.g. "gaj"
  bool offerIgnoreMetadata = false;  // the "Ignore MetaData" box of Open
};
struct FileChoice {
  std::string path;
  int32_t filter = -1;  // the chosen file type: its place among the request's filters
  bool ignoreMetadata = false;
};

}  // namespace velda
