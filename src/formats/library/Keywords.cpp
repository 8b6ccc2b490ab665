#include "formats/library/Keywords.h"

#include <string_view>
#include <unordered_map>

#include "SymbolicGrammar.h"

namespace velda::symlib {

namespace {

using T = SymbolicGrammar::token;

template <typename Value>
using Table = std::unordered_map<std::string_view, Value>;

// One entry per spelling, current and old-style names side by side.
const Table<WordToken>& keywords() {
  static const Table<WordToken> table = {
      {"KORVA", {T::KORVA, nullptr}},
      {"UTILE", {T::KORVA, nullptr}},
      {"END", {T::END, nullptr}},
      {"CONTAINS", {T::CONTAIN, nullptr}},
      {"CONTENU", {T::CONTAIN, "WARNING the term CONTENU is old styled use CONTAINS"}},
      {"FILES", {T::CFILES, nullptr}},
      {"FICHIER", {T::CFILES, nullptr}},
      {"HEADER", {T::CHEADER, nullptr}},
      {"ENTETE", {T::CHEADER, nullptr}},
      {"INDIVIDUALS", {T::CINDIVIDUALS, nullptr}},
      {"INDIVIDUS", {T::CINDIVIDUALS, nullptr}},
      {"VARIABLES", {T::CVARIABLES, nullptr}},
      {"VARIABLES_SET", {T::CVARIABLES_SET, nullptr}},
      {"HIERARCHIE", {T::CHIERARCHIE, nullptr}},
      {"RULES", {T::CRULES, nullptr}},
      {"RELATIONS", {T::CRULES, nullptr}},
      {"RECTANGLE_MATRIX", {T::REC_MATRIX, nullptr}},
      {"MATRICE_RECTANGLE", {T::REC_MATRIX, "WARNING the term MATRICE_RECTANGLE is old styled use RECTANGLE_MATRIX"}},
      {"DIST_MATRIX", {T::CDISTANCE_MATRIX, nullptr}},
      {"MATRICE_TRIANGLE", {T::CDISTANCE_MATRIX, nullptr}},
      {"MATCH_MATRIX", {T::CMATCH_MATRIX, nullptr}},
      {"MATRICE_DEPENDANCE", {T::CMATCH_MATRIX, nullptr}},
      {"VAR", {T::VAR, nullptr}},
      {"NA", {T::NA, nullptr}},
      {"NU", {T::NU, nullptr}},
      {"procedure_name", {T::PROC_NAME, nullptr}},
      {"version", {T::VERSION, nullptr}},
      {"create_date", {T::CREAT_DATE, nullptr}},
      {"filiere_name", {T::FIL_NAME, nullptr}},
      {"filiere_path", {T::FIL_PATH, nullptr}},
      {"array", {T::ARRAY, nullptr}},
      {"base", {T::BASE, nullptr}},
      {"title", {T::TITLE, nullptr}},
      {"sub_title", {T::SUB_TITLE, nullptr}},
      {"indiv_nb", {T::NB_INDIV, nullptr}},
      {"var_nb", {T::NB_VAR, nullptr}},
      {"rules_nb", {T::RULES_NB, nullptr}},
      {"nb_var_set", {T::SET_VAR_NB, nullptr}},
      {"nb_indiv_set", {T::SET_INDIV_NB, nullptr}},
      {"nb_var_nom", {T::NB_VAR_NOM, nullptr}},
      {"nb_var_cont", {T::NB_VAR_CONT, nullptr}},
      {"nb_var_text", {T::NB_VAR_TEXT, nullptr}},
      {"nb_var_cont_symb", {T::NB_VAR_CONT_SYMB, nullptr}},
      {"nb_var_nom_symb", {T::NB_VAR_NOM_SYMB, nullptr}},
      {"nb_var_nom_mod", {T::NB_VAR_NOM_MOD, nullptr}},
      {"nb_na", {T::NB_NA, nullptr}},
      {"nb_null", {T::NB_NULL, nullptr}},
      {"nb_hierarchies", {T::NB_HIERARCHIES, nullptr}},
      {"weight_indiv", {T::WEIGHT_INDIV, nullptr}},
      {"nb_nu", {T::NB_NU, nullptr}},
      {"continue", {T::CONTINUE, nullptr}},
      {"inter_continue", {T::INTER_CONT, nullptr}},
      {"nominal", {T::NOMINAL, nullptr}},
      {"mult_nominal", {T::MULT_NOMINAL, nullptr}},
      {"mult_nominal_Modif", {T::MULT_NOMINAL_M, nullptr}},
      {"binary", {T::BINARY, nullptr}},
      {"ordered", {T::ORDERED, nullptr}},
      {"unordered", {T::UNORDERED, nullptr}},
      {"cardinal", {T::CARDINAL, nullptr}},
      {"proba", {T::PROBA, nullptr}},
  };
  return table;
}

const Table<ElementTokens>& ulmeElements() {
  static const Table<ElementTokens> table = {
      {"ulmefile", {T::ULMEFILE, T::FINULMEFILE, false}},
      {"contains", {T::XMLCONTAINS, T::FINXMLCONTAINS, true}},
      {"Procedure", {T::XMLPROCEDURE, T::FINXMLPROCEDURE, false}},
      {"date_creat", {T::XMLDATE_CREAT, T::FINXMLDATE_CREAT, false}},
      {"header", {T::XMLHEADER, T::FINXMLHEADER, true}},
      {"individus", {T::XMLINDIVIDUS, T::FINXMLINDIVIDUS, false}},
      {"stindiv", {T::XMLSTINDIV, T::FINXMLSTINDIV, false}},
      {"num", {T::XMLNUM, T::FINXMLNUM, false}},
      {"name", {T::XMLNAME, T::FINXMLNAME, false}},
      {"label", {T::XMLLABEL, T::FINXMLLABEL, false}},
      {"variables", {T::XMLVARIABLES, T::FINXMLVARIABLES, false}},
      {"stvar", {T::XMLSTVAR, T::FINXMLSTVAR, false}},
      {"ident", {T::XMLIDENT, T::FINXMLIDENT, false}},
      {"continue", {T::XMLCONTINUE, T::FINXMLCONTINUE, false}},
      {"continue-desc", {T::XMLCONTINUE_DESC, T::FINXMLCONTINUE_DESC, true}},
      {"inter-cont", {T::XMLINTER_CONT, T::FINXMLINTER_CONT, false}},
      {"nominal", {T::XMLNOMINAL, T::FINXMLNOMINAL, false}},
      {"mult_nominal", {T::XMLMULT_NOMINAL, T::FINXMLMULT_NOMINAL, false}},
      {"mult_nominal_Modif", {T::XMLMULT_NOMINAL_MODIF, T::FINXMLMULT_NOMINAL_MODIF, false}},
      {"type_modif", {T::XMLTYPE_MODIF, T::FINXMLTYPE_MODIF, false}},
      {"nominal-desc", {T::XMLNOMINAL_DESC, T::FINXMLNOMINAL_DESC, true}},
      {"list-nom", {T::XMLLIST_NOM, T::FINXMLLIST_NOM, false}},
      {"hierarchies", {T::XMLHIERARCHIES, T::FINXMLHIERARCHIES, false}},
      {"hierarchie", {T::XMLHIERARCHIE, T::FINXMLHIERARCHIE, false}},
      {"var_num_ref", {T::XMLVAR_NUM_REF, T::FINXMLVAR_NUM_REF, false}},
      {"nb_hier_val", {T::XMLNB_HIER_VAL, T::FINXMLNB_HIER_VAL, false}},
      {"hier_val_list", {T::XMLHIER_VAL_LIST, T::FINXMLHIER_VAL_LIST, false}},
      {"hier_ref_list", {T::XMLHIER_REF_LIST, T::FINXMLHIER_REF_LIST, false}},
      {"categ_num", {T::XMLCATEG_NUM, T::FINXMLCATEG_NUM, false}},
      {"hval_ref_list", {T::XMLHVAL_REF_LIST, T::FINXMLHVAL_REF_LIST, false}},
      {"hval_ref_elem", {T::XMLHVAL_REF_ELEM, T::FINXMLHVAL_REF_ELEM, false}},
      {"rules_gen", {T::XMLRULES_GEN, T::FINXMLRULES_GEN, false}},
      {"rules", {T::XMLRULES, T::FINXMLRULES, false}},
      {"prem_desc", {T::XMLPREM_DESC, T::FINXMLPREM_DESC, false}},
      {"conclusion", {T::XMLCONCLUSION, T::FINXMLCONCLUSION, false}},
      {"var_num", {T::XMLVAR_NUM, T::FINXMLVAR_NUM, false}},
      {"val", {T::XMLVAL, T::FINXMLVAL, false}},
      {"indiv_mat", {T::XMLINDIV_MAT, T::FINXMLINDIV_MAT, false}},
      {"ligmat", {T::XMLLIGMAT, T::FINXMLLIGMAT, false}},
      {"valmat", {T::XMLVALMAT, T::FINXMLVALMAT, false}},
      {"NA", {T::XMLNA, T::FINXMLNA, false}},
      {"NU", {T::XMLNU, T::FINXMLNU, false}},
      {"val_conti", {T::XMLVAL_CONTI, T::FINXMLVAL_CONTI, false}},
      {"val_interv", {T::XMLVAL_INTERV, T::FINXMLVAL_INTERV, false}},
      {"pmin", {T::XMLPMIN, T::FINXMLPMIN, false}},
      {"pmax", {T::XMLPMAX, T::FINXMLPMAX, false}},
      {"val_nomina", {T::XMLVAL_NOMINA, T::FINXMLVAL_NOMINA, false}},
      {"val_modal", {T::XMLVAL_MODAL, T::FINXMLVAL_MODAL, false}},
      {"val_list_modal", {T::XMLVAL_LIST_MODAL, T::FINXMLVAL_LIST_MODAL, false}},
      {"no_moda", {T::XMLNO_MODA, T::FINXMLNO_MODA, false}},
      {"frequency", {T::XMLFREQUENCY, T::FINXMLFREQUENCY, false}},
      {"dist_mat", {T::XMLDIST_MAT, T::FINXMLDIST_MAT, false}},
      {"ligDmat", {T::XMLLIGDMAT, T::FINXMLLIGDMAT, false}},
      {"vf", {T::XMLVF, T::FINXMLVF, false}},
      {"match_mat", {T::XMLMATCH_MAT, T::FINXMLMATCH_MAT, false}},
  };
  return table;
}

const Table<ElementTokens>& metaElements() {
  static const Table<ElementTokens> table = {
      {"MetaUlme", {T::M_METAULME, T::FM_METAULME, false}},
      {"OrigInfo", {T::M_ORIGINFO, T::FM_ORIGINFO, false}},
      {"NbOrigVar", {T::M_NBORIGVAR, T::FM_NBORIGVAR, false}},
      {"NbOrigMat", {T::M_NBORIGMAT, T::FM_NBORIGMAT, false}},
      {"PopSampSize", {T::M_POPSAMPSIZE, T::FM_POPSAMPSIZE, false}},
      {"SampSize", {T::M_SAMPSIZE, T::FM_SAMPSIZE, false}},
      {"RelUnit", {T::M_RELUNIT, T::FM_RELUNIT, false}},
      {"SurveyDesc", {T::M_SURVEYDESC, T::FM_SURVEYDESC, false}},
      {"LegalFrame", {T::M_LEGALFRAME, T::FM_LEGALFRAME, false}},
      {"SurveyType", {T::M_SURVEYTYPE, T::FM_SURVEYTYPE, false}},
      {"SurveyFreq", {T::M_SURVEYFREQ, T::FM_SURVEYFREQ, false}},
      {"GeoCover", {T::M_GEOCOVER, T::FM_GEOCOVER, false}},
      {"InterStand", {T::M_INTERSTAND, T::FM_INTERSTAND, false}},
      {"SpecInterStand", {T::M_SPECINTERSTAND, T::FM_SPECINTERSTAND, false}},
      {"ReportUnit", {T::M_REPORTUNIT, T::FM_REPORTUNIT, false}},
      {"PopDesc", {T::M_POPDESC, T::FM_POPDESC, false}},
      {"SampOrig", {T::M_SAMPORIG, T::FM_SAMPORIG, false}},
      {"SampSelect", {T::M_SAMPSELECT, T::FM_SAMPSELECT, false}},
      {"LawBase", {T::M_LAWBASE, T::FM_LAWBASE, false}},
      {"AdminQual", {T::M_ADMINQUAL, T::FM_ADMINQUAL, false}},
      {"StatCollect", {T::M_STATCOLLECT, T::FM_STATCOLLECT, false}},
      {"ValidTech", {T::M_VALIDTECH, T::FM_VALIDTECH, false}},
      {"NonRespMeth", {T::M_NONRESPMETH, T::FM_NONRESPMETH, false}},
      {"MissValReaj", {T::M_MISSVALREAJ, T::FM_MISSVALREAJ, false}},
      {"AgregMeth", {T::M_AGREGMETH, T::FM_AGREGMETH, false}},
      {"GrossMeth", {T::M_GROSSMETH, T::FM_GROSSMETH, false}},
      {"CorrError", {T::M_CORRERROR, T::FM_CORRERROR, false}},
      {"OtheCor", {T::M_OTHECOR, T::FM_OTHECOR, false}},
      {"PopSampFrac", {T::M_POPSAMPFRAC, T::FM_POPSAMPFRAC, false}},
      {"RespRate", {T::M_RESPRATE, T::FM_RESPRATE, false}},
      {"ListeVarOrig", {T::M_LISTEVARORIG, T::FM_LISTEVARORIG, false}},
      {"OrigVar", {T::M_ORIGVAR, T::FM_ORIGVAR, false}},
      {"Num", {T::M_NUM, T::FM_NUM, false}},
      {"Name", {T::M_NAME, T::FM_NAME, false}},
      {"Label", {T::M_LABEL, T::FM_LABEL, false}},
      {"Comment", {T::M_COMMENT, T::FM_COMMENT, false}},
      {"Source", {T::M_SOURCE, T::FM_SOURCE, false}},
      {"Computed", {T::M_COMPUTED, T::FM_COMPUTED, false}},
      {"DataType", {T::M_DATATYPE, T::FM_DATATYPE, false}},
      {"ListeTabOrig", {T::M_LISTETABORIG, T::FM_LISTETABORIG, false}},
      {"OrigTab", {T::M_ORIGTAB, T::FM_ORIGTAB, false}},
      {"MetaMat", {T::M_METAMAT, T::FM_METAMAT, false}},
      {"Author", {T::M_AUTHOR, T::FM_AUTHOR, false}},
      {"MetaHistory", {T::M_METAHISTORY, T::FM_METAHISTORY, false}},
      {"SqlQuery", {T::M_SQLQUERY, T::FM_SQLQUERY, false}},
      {"OdbcSource", {T::M_ODBCSOURCE, T::FM_ODBCSOURCE, false}},
      {"History", {T::M_HISTORY, T::FM_HISTORY, false}},
      {"PrevFile", {T::M_PREVFILE, T::FM_PREVFILE, false}},
      {"PrevTreatment", {T::M_PREVTREATMENT, T::FM_PREVTREATMENT, false}},
      {"NbMetaVar", {T::M_NBMETAVAR, T::FM_NBMETAVAR, false}},
      {"NbMetaInd", {T::M_NBMETAIND, T::FM_NBMETAIND, false}},
      {"MetaDistance", {T::M_METADISTANCE, T::FM_METADISTANCE, false}},
      {"MetaMatch", {T::M_METAMATCH, T::FM_METAMATCH, false}},
      {"Measure", {T::M_MEASURE, T::FM_MEASURE, false}},
      {"ListVar", {T::M_LISTVAR, T::FM_LISTVAR, false}},
      {"V", {T::M_V, T::FM_V, false}},
      {"MetaIndLis", {T::M_METAINDLIS, T::FM_METAINDLIS, false}},
      {"MetaInd", {T::M_METAIND, T::FM_METAIND, false}},
      {"NbInObj", {T::M_NBINOBJ, T::FM_NBINOBJ, false}},
      {"GNbInObj", {T::M_GNBINOBJ, T::FM_GNBINOBJ, false}},
      {"Operator", {T::M_OPERATOR, T::FM_OPERATOR, false}},
      {"MetaVarLis", {T::M_METAVARLIS, T::FM_METAVARLIS, false}},
      {"MetaVar", {T::M_METAVAR, T::FM_METAVAR, false}},
      {"VarOrig", {T::M_VARORIG, T::FM_VARORIG, false}},
      {"VarOrigLis", {T::M_VARORIGLIS, T::FM_VARORIGLIS, false}},
      {"Vo", {T::M_VO, T::FM_VO, false}},
      {"StepWidht", {T::M_STEPWIDHT, T::FM_STEPWIDHT, false}},
  };
  return table;
}

template <typename Value>
const Value* lookUp(const Table<Value>& table, std::string_view name) {
  auto found = table.find(name);
  return found == table.end() ? nullptr : &found->second;
}

}  // namespace

const WordToken* FindKeyword(std::string_view word) { return lookUp(keywords(), word); }

const ElementTokens* FindElement(DocumentMode mode, std::string_view name) {
  switch (mode) {
    case DocumentMode::UlmeXml: return lookUp(ulmeElements(), name);
    case DocumentMode::MetaXml: return lookUp(metaElements(), name);
    case DocumentMode::Text: break;
  }
  return nullptr;
}

}  // namespace velda::symlib
