#include "ops/division/GravityReport.h"

#include <cstdio>
#include <memory>
#include <new>

#include "common/FileStream.h"
#include "common/MessageBox.h"
#include "common/SafeFiles.h"
#include "model/CategoricalVariable.h"
#include "ops/EndWithMessage.h"

namespace velda {

namespace {

const char kNoCentre[] = "le centre de gravit\xe9 ou les indiv non initialis\xe9s";
const char kCoordinate[] = "  gravit\xe9 de ";

double weightedMean(const DivisionData& data, const std::vector<char>& members, size_t v) {
  double weight = 0.0;
  double sum = 0.0;
  for (size_t i = 0; i < data.size(); ++i) {
    if (!members[i] || data.missing(i, v)) continue;
    weight += data.weight(i);
    sum += data.weight(i) * data.number(i, v);
  }
  return weight != 0.0 ? sum / weight : -1.0;
}

double columnMean(const DivisionData& data, const std::vector<char>& members, size_t v, int32_t c,
                  MissingValueNotice& notice) {
  double sum = 0.0;
  int64_t count = 0;
  for (size_t i = 0; i < data.size(); ++i) {
    if (!members[i]) continue;
    const double entry = data.entry(i, v, c);
    if (entry == -1.0) {
      notice.missingEntry();
      continue;
    }
    sum += entry;
    ++count;
  }
  return count ? sum / static_cast<double>(count) : -1.0;
}

size_t coordinateCount(const SymbolicMatrix& matrix) {
  size_t count = 0;
  for (size_t v = 0; v < matrix.variableCount(); ++v) {
    const SymbolicVariable& variable = matrix.variable(v);
    count += variable.isCategorical() ? static_cast<const CategoricalVariable&>(variable).modalityCount() : 1;
  }
  return count;
}

}  // namespace

void MissingValueNotice::missingEntry() {
  if (shown_) return;
  shown_ = true;
  showMessage("valeur manquante", MessageIcon::Warning);
}

void writeGravityCentre(const SymbolicMatrix& matrix, const DivisionData* data, const std::vector<char>* members,
                        const std::string& assertionName, MissingValueNotice& notice) {
  if (!data || !data->hasTable() || !members || members->size() != data->size()) endWithMessage(kNoCentre);
  const size_t count = coordinateCount(matrix);
  std::unique_ptr<double[]> centre(new (std::nothrow) double[count == 0 ? 1 : count]);
  if (!centre) endWithMessage(kNoCentre);

  // Never written through a symbolic link planted at the report's name.
  std::FILE* report = openFixedNameFile("result.txt");
  FileOutputStream out(report);
  size_t next = 0;
  for (size_t v = 0; v < matrix.variableCount(); ++v) {
    const SymbolicVariable& variable = matrix.variable(v);
    out << " variable: " << variable.name << " \n";
    if (!report) continue;
    const bool held = v < data->variables();
    const size_t first = next;
    if (!variable.isCategorical()) {
      centre[next++] = held ? weightedMean(*data, *members, v) : -1.0;
    } else {
      const auto m = static_cast<int32_t>(static_cast<const CategoricalVariable&>(variable).modalityCount());
      for (int32_t c = 0; c < m; ++c) centre[next++] = held ? columnMean(*data, *members, v, c, notice) : -1.0;
    }
    for (size_t c = first; c < next; ++c) out << kCoordinate << assertionName << " =  " << centre[c];
  }
  out.flush();
  if (report) std::fclose(report);
}

}  // namespace velda
