#pragma once

#include <string>
#include <vector>

namespace velda::symlib {

// The metadata document written beside an XML export: where the symbolic
// data came from and how it was formed. Element names are kept as the
// document spells them (StepWidht, OtheCor, VarOrigLis).

struct MetaOrigVar {
  long long num = 0;
  std::string name;
  std::string label;
  std::string comment;
  long long source = 0;  // number of the original table
  std::string computed;
  std::string dataType;  // "nominal" or "continue"
  bool operator==(const MetaOrigVar&) const = default;
};

struct MetaOrigTab {
  std::string name;
  std::string label;
  std::string comment;
  std::string source;
  bool operator==(const MetaOrigTab&) const = default;
};

// OrigInfo: the original data. Survey fields are free texts.
struct MetaOrigInfo {
  long long nbOrigVar = 0;
  long long nbOrigMat = 0;
  std::string popSampSize, sampSize, relUnit, surveyDesc, legalFrame, surveyType, surveyFreq, geoCover, interStand,
      specInterStand, reportUnit, popDesc, sampOrig, sampSelect, lawBase, adminQual, statCollect, validTech,
      nonRespMeth, missValReaj, agregMeth, grossMeth, corrError, otheCor, popSampFrac, respRate;
  std::vector<MetaOrigVar> origVars;  // ListeVarOrig
  std::vector<MetaOrigTab> origTabs;  // ListeTabOrig
  bool operator==(const MetaOrigInfo&) const = default;
};

// MetaDistance and MetaMatch.
struct MetaMeasure {
  std::string measure;
  std::vector<long long> vars;  // ListVar: one V per variable concerned
  bool operator==(const MetaMeasure&) const = default;
};

struct MetaInd {
  long long num = 0;
  std::string name;
  long long nbInObj = 0;
  long long gNbInObj = 0;
  std::string operatorName;
  bool operator==(const MetaInd&) const = default;
};

struct MetaVar {
  long long num = 0;
  std::string name;
  long long varOrig = 0;
  std::vector<long long> varOrigList;  // VarOrigLis: one Vo per original variable
  std::string label;
  std::string relUnit;
  std::string stepWidht;
  std::string operatorName;  // "native", "aggregated" or "unknown"
  bool operator==(const MetaVar&) const = default;
};

struct MetaMat {
  std::string author;
  std::string sqlQuery;
  std::string odbcSource;
  std::string prevFile;
  std::string prevTreatment;
  long long nbMetaVar = 0;
  long long nbMetaInd = 0;
  MetaMeasure distance;
  MetaMeasure match;
  std::vector<MetaInd> inds;  // MetaIndLis
  std::vector<MetaVar> vars;  // MetaVarLis
  bool operator==(const MetaMat&) const = default;
};

struct MetaData {
  MetaData() { reset(); }
  // Back to an empty description whose texts say "unknown" (facts not
  // known) or "none" (treatments not applied).
  void reset();

  MetaOrigInfo origInfo;
  MetaMat metaMat;
  bool operator==(const MetaData&) const = default;
};

// A new original variable, metavariable or metaindividual with the same
// defaults.
MetaOrigVar MakeMetaOrigVar();
MetaOrigTab MakeMetaOrigTab();
MetaVar MakeMetaVar();
MetaInd MakeMetaInd();

}  // namespace velda::symlib
