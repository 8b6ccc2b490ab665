#include "formats/library/MetaData.h"

namespace velda::symlib {

namespace {
constexpr const char* kUnknown = "unknown";
constexpr const char* kNone = "none";
}  // namespace

void MetaData::reset() {
  origInfo = MetaOrigInfo{};
  for (std::string* fact :
       {&origInfo.popSampSize, &origInfo.sampSize, &origInfo.relUnit, &origInfo.surveyDesc, &origInfo.surveyType,
        &origInfo.surveyFreq, &origInfo.geoCover, &origInfo.reportUnit, &origInfo.popDesc, &origInfo.sampOrig,
        &origInfo.sampSelect, &origInfo.adminQual, &origInfo.statCollect, &origInfo.popSampFrac, &origInfo.respRate}) {
    *fact = kUnknown;
  }
  for (std::string* treatment : {&origInfo.legalFrame, &origInfo.interStand, &origInfo.specInterStand,
                                 &origInfo.lawBase, &origInfo.validTech, &origInfo.nonRespMeth, &origInfo.missValReaj,
                                 &origInfo.agregMeth, &origInfo.grossMeth, &origInfo.corrError, &origInfo.otheCor}) {
    *treatment = kNone;
  }
  metaMat = MetaMat{};
  metaMat.author = kUnknown;
  metaMat.sqlQuery = kNone;
  metaMat.odbcSource = kNone;
  metaMat.prevFile = kNone;
  metaMat.prevTreatment = kNone;
  metaMat.distance.measure = kNone;
  metaMat.match.measure = kNone;
}

MetaOrigVar MakeMetaOrigVar() {
  MetaOrigVar v;
  v.label = kUnknown;
  v.comment = kNone;
  v.computed = kNone;
  v.dataType = kUnknown;
  return v;
}

MetaOrigTab MakeMetaOrigTab() { return MetaOrigTab{kUnknown, kUnknown, kNone, kUnknown}; }

MetaVar MakeMetaVar() {
  MetaVar v;
  v.label = kUnknown;
  v.relUnit = kUnknown;
  v.stepWidht = kNone;
  v.operatorName = kUnknown;
  return v;
}

MetaInd MakeMetaInd() {
  MetaInd m;
  m.operatorName = kUnknown;
  return m;
}

}  // namespace velda::symlib
