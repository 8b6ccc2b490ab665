#include <new>

#include "formats/library/OutputBuffer.h"
#include "formats/library/SymbolicLibrary.h"
#include "formats/library/XmlEscape.h"

namespace velda::symlib {

namespace {

std::string str(long long n) { return std::to_string(n); }

class MetadataWriter {
 public:
  MetadataWriter(const MetaData& metadata, std::ostream& out) : meta_(metadata), out_(out) {}

  void write() {
    out_ << "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n"
         << "<MetaUlme xmlns:xsi=\"http://www.w3.org/2000/10/XMLSchema-instance\""
         << " xsi:noNamespaceSchemaLocation =\"./Metulme5.xsd\">\n"
         << "<!--===[ VELDA 2.x generated META File ]===-->\n";
    writeOrigInfo();
    writeMetaMat();
    out_ << "</MetaUlme>\n";
  }

 private:
  void indent(int depth) { out_.text().append(static_cast<size_t>(depth), '\t'); }

  void open(int depth, const char* name) {
    indent(depth);
    out_ << '<' << name << ">\n";
  }

  void close(int depth, const char* name) {
    indent(depth);
    out_ << "</" << name << ">\n";
  }

  void leaf(int depth, const char* name, std::string_view text) {
    indent(depth);
    out_ << '<' << name << '>';
    AppendXmlEscaped(out_.text(), text);
    out_ << "</" << name << ">\n";
  }

  void leaf(int depth, const char* name, long long n) {
    indent(depth);
    out_ << '<' << name << '>' << n << "</" << name << ">\n";
  }

  // Numbers of original variables are reported when out of range and
  // written as given.
  long long originalVariable(long long n) {
    if (n < 0 || n > meta_.origInfo.nbOrigVar) {
      LibraryLog::writeError(" the Original Variable number must be between 0 and " + str(meta_.origInfo.nbOrigVar) +
                             " not: " + str(n));
    }
    return n;
  }

  // Numbers of metavariables and metaindividuals out of range become 1.
  static long long metaNumber(long long n, long long max, const char* which) {
    if (n >= 0 && n <= max) return n;
    LibraryLog::writeError(std::string(" the ") + which + " Number must be between 0 and " + str(max) + " and not" +
                           str(n) + " val 1 assumed\n");
    return 1;
  }

  void writeOrigInfo() {
    const MetaOrigInfo& o = meta_.origInfo;
    open(1, "OrigInfo");
    leaf(2, "NbOrigVar", o.nbOrigVar);
    leaf(2, "NbOrigMat", o.nbOrigMat);
    const std::pair<const char*, const std::string*> fields[] = {
        {"PopSampSize", &o.popSampSize}, {"SampSize", &o.sampSize},
        {"RelUnit", &o.relUnit},         {"SurveyDesc", &o.surveyDesc},
        {"LegalFrame", &o.legalFrame},   {"SurveyType", &o.surveyType},
        {"SurveyFreq", &o.surveyFreq},   {"GeoCover", &o.geoCover},
        {"InterStand", &o.interStand},   {"SpecInterStand", &o.specInterStand},
        {"ReportUnit", &o.reportUnit},   {"PopDesc", &o.popDesc},
        {"SampOrig", &o.sampOrig},       {"SampSelect", &o.sampSelect},
        {"LawBase", &o.lawBase},         {"AdminQual", &o.adminQual},
        {"StatCollect", &o.statCollect}, {"ValidTech", &o.validTech},
        {"NonRespMeth", &o.nonRespMeth}, {"MissValReaj", &o.missValReaj},
        {"AgregMeth", &o.agregMeth},     {"GrossMeth", &o.grossMeth},
        {"CorrError", &o.corrError},     {"OtheCor", &o.otheCor},
        {"PopSampFrac", &o.popSampFrac}, {"RespRate", &o.respRate},
    };
    for (const auto& [name, text] : fields) leaf(2, name, *text);
    open(2, "ListeVarOrig");
    for (const MetaOrigVar& v : o.origVars) {
      open(3, "OrigVar");
      leaf(4, "Num", originalVariable(v.num));
      leaf(4, "Name", v.name);
      leaf(4, "Label", v.label);
      leaf(4, "Comment", v.comment);
      if (v.source < 0 || v.source > o.nbOrigMat) LibraryLog::writeError("Bad Source Numlber");
      leaf(4, "Source", v.source);
      leaf(4, "Computed", v.computed);
      leaf(4, "DataType", v.dataType);
      close(3, "OrigVar");
    }
    close(2, "ListeVarOrig");
    open(2, "ListeTabOrig");
    for (const MetaOrigTab& t : o.origTabs) {
      open(3, "OrigTab");
      leaf(4, "Name", t.name);
      leaf(4, "Label", t.label);
      leaf(4, "Comment", t.comment);
      leaf(4, "Source", t.source);
      close(3, "OrigTab");
    }
    close(2, "ListeTabOrig");
    close(1, "OrigInfo");
  }

  void writeMeasure(const char* element, const MetaMeasure& measure) {
    open(2, element);
    leaf(3, "Measure", measure.measure);
    open(3, "ListVar");
    for (long long v : measure.vars) leaf(4, "V", metaNumber(v, meta_.metaMat.nbMetaVar, "Metavar"));
    close(3, "ListVar");
    close(2, element);
  }

  void writeMetaMat() {
    const MetaMat& m = meta_.metaMat;
    open(1, "MetaMat");
    leaf(2, "Author", m.author);
    open(2, "MetaHistory");
    leaf(3, "SqlQuery", m.sqlQuery);
    leaf(3, "OdbcSource", m.odbcSource);
    open(3, "History");
    leaf(4, "PrevFile", m.prevFile);
    leaf(4, "PrevTreatment", m.prevTreatment);
    close(3, "History");
    close(2, "MetaHistory");
    leaf(2, "NbMetaVar", m.nbMetaVar);
    leaf(2, "NbMetaInd", m.nbMetaInd);
    writeMeasure("MetaDistance", m.distance);
    writeMeasure("MetaMatch", m.match);
    open(2, "MetaIndLis");
    for (const MetaInd& i : m.inds) {
      open(3, "MetaInd");
      leaf(4, "Num", metaNumber(i.num, m.nbMetaInd, "MetaInd"));
      leaf(4, "Name", i.name);
      leaf(4, "NbInObj", i.nbInObj);
      leaf(4, "GNbInObj", i.gNbInObj);
      leaf(4, "Operator", i.operatorName);
      close(3, "MetaInd");
    }
    close(2, "MetaIndLis");
    open(2, "MetaVarLis");
    for (const MetaVar& v : m.vars) {
      open(3, "MetaVar");
      leaf(4, "Num", metaNumber(v.num, m.nbMetaVar, "Metavar"));
      leaf(4, "Name", v.name);
      leaf(4, "VarOrig", originalVariable(v.varOrig));
      open(4, "VarOrigLis");
      for (long long vo : v.varOrigList) leaf(5, "Vo", originalVariable(vo));
      close(4, "VarOrigLis");
      leaf(4, "Label", v.label);
      leaf(4, "RelUnit", v.relUnit);
      leaf(4, "StepWidht", v.stepWidht);
      leaf(4, "Operator", v.operatorName);
      close(3, "MetaVar");
    }
    close(2, "MetaVarLis");
    close(1, "MetaMat");
  }

  const MetaData& meta_;
  OutputBuffer out_;
};

}  // namespace

bool WriteMetadataFile(const MetaData& metadata, std::ostream& out) {
  try {
    MetadataWriter(metadata, out).write();
    return true;
  } catch (const std::bad_alloc&) {
    return false;
  }
}

}  // namespace velda::symlib
