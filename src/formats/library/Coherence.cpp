#include "formats/library/Coherence.h"

#include <cmath>
#include <string>

#include "formats/library/LibraryLog.h"

namespace velda::symlib {

namespace {

std::string str(long long n) { return std::to_string(n); }

void compareCount(Diagnostics& diag, const char* what, long long declared, size_t described) {
  const long long count = static_cast<long long>(described);
  if (declared == count) return;
  diag.coherenceError(std::string("ERROR the number of") + what + " declared in the header (" + str(declared) +
                      " is different of the number of" + what + " described in the file (" + str(count));
}

// Counts are written as reals with six significant digits: a declared
// count stands for any number within half a unit of its last printed digit.
double printedRounding(double declared) {
  const double magnitude = std::fabs(declared);
  if (magnitude < 1e6) return 0;  // a whole count of up to six digits prints exactly
  return 0.5 * std::pow(10.0, std::floor(std::log10(magnitude)) - 5);
}

bool withinRounding(double found, double declared, double rounding) { return std::fabs(found - declared) <= rounding; }

void compareMissing(Diagnostics& diag, const char* which, double found, double sumOfVariables,
                    double roundingOfVariables, const KeyValue& header) {
  const std::string values = std::string("the number of ") + which + " values within the MATRIX" + FormatReal(found);
  if (!withinRounding(found, sumOfVariables, roundingOfVariables)) {
    diag.coherenceError(values + " \t is different of the SUM of element" + FormatReal(sumOfVariables) +
                        " declared within the variables");
  }
  if (header.set && !withinRounding(found, header.real, printedRounding(header.real))) {
    diag.coherenceError(values + " \t is different of the number declared in the header" + FormatReal(header.real));
  }
}

std::string summaryLine(const std::string& count, const char* what) {
  std::string line = "\t";
  line += count;
  line += what;
  return line;
}

}  // namespace

void VerifyCoherence(const SymbolicFile& model, Diagnostics& diag) {
  const KeyValueBlock& h = model.header;
  compareCount(diag, "individuals", h.value(kIndivNb).integer, model.individuals.size());
  compareCount(diag, "variables", h.value(kVarNb).integer, model.variables.size());
  compareCount(diag, "rules", h.value(kRulesNb).integer, model.rules.size());
  compareCount(diag, "hierarchies", h.value(kNbHierarchies).integer, model.hierarchies.size());

  double naFound = 0;
  double nuFound = 0;
  for (const SymRow& row : model.matrix) {
    for (const SymValue& value : row) {
      naFound += value.kind == SymValue::Kind::NA;
      nuFound += value.kind == SymValue::Kind::NU;
    }
  }
  double naDeclared = 0;
  double nuDeclared = 0;
  double naRounding = 0;
  double nuRounding = 0;
  for (const SymVariable& variable : model.variables) {
    naDeclared += variable.naCount;
    nuDeclared += variable.nuCount;
    naRounding += printedRounding(variable.naCount);
    nuRounding += printedRounding(variable.nuCount);
  }
  compareMissing(diag, "NA", naFound, naDeclared, naRounding, h.value(kNbNa));
  compareMissing(diag, "NU", nuFound, nuDeclared, nuRounding, h.value(kNbNu));

  diag.note("this Base file contain");
  diag.note(summaryLine(str(static_cast<long long>(model.individuals.size())), " individuals"));
  diag.note(summaryLine(str(static_cast<long long>(model.variables.size())), " variables"));
  diag.note(summaryLine(str(static_cast<long long>(model.rules.size())), " rules"));
  diag.note(summaryLine(str(static_cast<long long>(model.hierarchies.size())), " hierarchies"));
  diag.note(summaryLine(FormatReal(naFound), " NA values"));
  diag.note(summaryLine(FormatReal(nuFound), " NU values"));
}

}  // namespace velda::symlib
