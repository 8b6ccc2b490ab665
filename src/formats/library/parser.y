/* Grammar of the symbolic-file library: the symbolic text form, the XML
   symbolic file and the metadata XML. The actions hand everything to the
   builder of the parse context, which applies the checks. The parser's
   stack holds only numbers and texts (pieces of the input); lists and
   records are gathered in the context until the rule that completes them. */

%require "3.2"
%language "c++"
%define api.namespace {velda::symlib}
%define api.parser.class {SymbolicGrammar}
%parse-param {ParseContext& ctx}
%lex-param {ParseContext& ctx}

%code requires {
#include "formats/library/SymbolicModel.h"
#include "formats/library/TextSpan.h"

namespace velda::symlib {
class ParseContext;
}
}

%union {
  long long integer;
  double real;
  velda::symlib::TextSpan text;
  velda::symlib::SymWeighting weighting;
  int attributes;  // which of the context's attribute lists
}

%code provides {
namespace velda::symlib {
// The scanner: one token per call, its value stored for the grammar.
int ScanToken(SymbolicGrammar::value_type* value, void* scanner);
}
}

%code {
#include <utility>

#include "formats/library/GrammarSupport.h"
#include "formats/library/ParseContext.h"

namespace velda::symlib {
namespace {
int yylex(SymbolicGrammar::value_type* value, ParseContext& ctx) { return ScanToken(value, ctx.scanner); }
}  // namespace
}
}

/* Literals. */
%token <integer> C_INT
%token <real> C_FLOAT
%token <text> C_STRING IDENT XML_TEXT
%token UNKNOWN_CHAR UNKNOWN_TAG

/* Top level and contents. */
%token KORVA END CONTAIN CFILES CHEADER CINDIVIDUALS CVARIABLES CVARIABLES_SET CHIERARCHIE CRULES
%token REC_MATRIX CDISTANCE_MATRIX CMATCH_MATRIX VAR NA NU

/* Keys of the FILE and HEADER blocks. */
%token <text> PROC_NAME VERSION CREAT_DATE FIL_NAME FIL_PATH ARRAY BASE
%token <text> TITLE SUB_TITLE NB_INDIV NB_VAR RULES_NB SET_VAR_NB SET_INDIV_NB NB_VAR_NOM NB_VAR_CONT
%token <text> NB_VAR_TEXT NB_VAR_CONT_SYMB NB_VAR_NOM_SYMB NB_VAR_NOM_MOD NB_NA NB_NULL NB_HIERARCHIES
%token <text> WEIGHT_INDIV NB_NU

/* Variable kinds. */
%token CONTINUE INTER_CONT NOMINAL MULT_NOMINAL MULT_NOMINAL_M CARDINAL PROBA
%token <text> BINARY ORDERED UNORDERED

/* XML symbolic file. */
%token ULMEFILE FINULMEFILE
%token <attributes> XMLCONTAINS XMLHEADER XMLCONTINUE_DESC XMLNOMINAL_DESC
%token FINXMLCONTAINS FINXMLHEADER FINXMLCONTINUE_DESC FINXMLNOMINAL_DESC
%token XMLPROCEDURE FINXMLPROCEDURE XMLDATE_CREAT FINXMLDATE_CREAT
%token XMLINDIVIDUS FINXMLINDIVIDUS XMLSTINDIV FINXMLSTINDIV
%token XMLNUM FINXMLNUM XMLNAME FINXMLNAME XMLLABEL FINXMLLABEL
%token XMLVARIABLES FINXMLVARIABLES XMLSTVAR FINXMLSTVAR XMLIDENT FINXMLIDENT
%token XMLCONTINUE FINXMLCONTINUE XMLINTER_CONT FINXMLINTER_CONT XMLNOMINAL FINXMLNOMINAL
%token XMLMULT_NOMINAL FINXMLMULT_NOMINAL XMLMULT_NOMINAL_MODIF FINXMLMULT_NOMINAL_MODIF
%token XMLTYPE_MODIF FINXMLTYPE_MODIF XMLLIST_NOM FINXMLLIST_NOM
%token XMLHIERARCHIES FINXMLHIERARCHIES XMLHIERARCHIE FINXMLHIERARCHIE
%token XMLVAR_NUM_REF FINXMLVAR_NUM_REF XMLNB_HIER_VAL FINXMLNB_HIER_VAL
%token XMLHIER_VAL_LIST FINXMLHIER_VAL_LIST XMLHIER_REF_LIST FINXMLHIER_REF_LIST
%token XMLCATEG_NUM FINXMLCATEG_NUM XMLHVAL_REF_LIST FINXMLHVAL_REF_LIST XMLHVAL_REF_ELEM FINXMLHVAL_REF_ELEM
%token XMLRULES_GEN FINXMLRULES_GEN XMLRULES FINXMLRULES XMLPREM_DESC FINXMLPREM_DESC
%token XMLCONCLUSION FINXMLCONCLUSION XMLVAR_NUM FINXMLVAR_NUM XMLVAL FINXMLVAL
%token XMLINDIV_MAT FINXMLINDIV_MAT XMLLIGMAT FINXMLLIGMAT XMLVALMAT FINXMLVALMAT
%token XMLNA FINXMLNA XMLNU FINXMLNU XMLVAL_CONTI FINXMLVAL_CONTI
%token XMLVAL_INTERV FINXMLVAL_INTERV XMLPMIN FINXMLPMIN XMLPMAX FINXMLPMAX
%token XMLVAL_NOMINA FINXMLVAL_NOMINA XMLVAL_MODAL FINXMLVAL_MODAL
%token XMLVAL_LIST_MODAL FINXMLVAL_LIST_MODAL XMLNO_MODA FINXMLNO_MODA XMLFREQUENCY FINXMLFREQUENCY
%token XMLDIST_MAT FINXMLDIST_MAT XMLMATCH_MAT FINXMLMATCH_MAT XMLLIGDMAT FINXMLLIGDMAT XMLVF FINXMLVF

/* Metadata XML. */
%token M_METAULME FM_METAULME M_ORIGINFO FM_ORIGINFO M_NBORIGVAR FM_NBORIGVAR M_NBORIGMAT FM_NBORIGMAT
%token M_POPSAMPSIZE FM_POPSAMPSIZE M_SAMPSIZE FM_SAMPSIZE M_RELUNIT FM_RELUNIT M_SURVEYDESC FM_SURVEYDESC
%token M_LEGALFRAME FM_LEGALFRAME M_SURVEYTYPE FM_SURVEYTYPE M_SURVEYFREQ FM_SURVEYFREQ M_GEOCOVER FM_GEOCOVER
%token M_INTERSTAND FM_INTERSTAND M_SPECINTERSTAND FM_SPECINTERSTAND M_REPORTUNIT FM_REPORTUNIT
%token M_POPDESC FM_POPDESC M_SAMPORIG FM_SAMPORIG M_SAMPSELECT FM_SAMPSELECT M_LAWBASE FM_LAWBASE
%token M_ADMINQUAL FM_ADMINQUAL M_STATCOLLECT FM_STATCOLLECT M_VALIDTECH FM_VALIDTECH
%token M_NONRESPMETH FM_NONRESPMETH M_MISSVALREAJ FM_MISSVALREAJ M_AGREGMETH FM_AGREGMETH
%token M_GROSSMETH FM_GROSSMETH M_CORRERROR FM_CORRERROR M_OTHECOR FM_OTHECOR
%token M_POPSAMPFRAC FM_POPSAMPFRAC M_RESPRATE FM_RESPRATE
%token M_LISTEVARORIG FM_LISTEVARORIG M_ORIGVAR FM_ORIGVAR M_LISTETABORIG FM_LISTETABORIG M_ORIGTAB FM_ORIGTAB
%token M_NUM FM_NUM M_NAME FM_NAME M_LABEL FM_LABEL M_COMMENT FM_COMMENT M_SOURCE FM_SOURCE
%token M_COMPUTED FM_COMPUTED M_DATATYPE FM_DATATYPE
%token M_METAMAT FM_METAMAT M_AUTHOR FM_AUTHOR M_METAHISTORY FM_METAHISTORY M_SQLQUERY FM_SQLQUERY
%token M_ODBCSOURCE FM_ODBCSOURCE M_HISTORY FM_HISTORY M_PREVFILE FM_PREVFILE M_PREVTREATMENT FM_PREVTREATMENT
%token M_NBMETAVAR FM_NBMETAVAR M_NBMETAIND FM_NBMETAIND M_METADISTANCE FM_METADISTANCE M_METAMATCH FM_METAMATCH
%token M_MEASURE FM_MEASURE M_LISTVAR FM_LISTVAR M_V FM_V M_METAINDLIS FM_METAINDLIS M_METAIND FM_METAIND
%token M_NBINOBJ FM_NBINOBJ M_GNBINOBJ FM_GNBINOBJ M_OPERATOR FM_OPERATOR M_METAVARLIS FM_METAVARLIS
%token M_METAVAR FM_METAVAR M_VARORIG FM_VARORIG M_VARORIGLIS FM_VARORIGLIS M_VO FM_VO M_STEPWIDHT FM_STEPWIDHT

%type <text> key xtext mtext m_name m_label m_comment m_source m_computed m_datatype m_operator
%type <real> number xreal
%type <integer> xint xnum mint m_num
%type <weighting> weighting xweighting

%%

input: text_file | ulme_file | meta_file ;

/* ---------------------------------------------------------------- text */

text_file: KORVA '=' '(' contents blocks ')' END ;

contents: CONTAIN '=' '(' ')' | CONTAIN '=' '(' content_names ')' ;
content_names: content_name | content_names ',' content_name ;
content_name
  : CFILES { ctx.builder.declare(SymBlock::Files); }
  | CHEADER { ctx.builder.declare(SymBlock::Header); }
  | CINDIVIDUALS { ctx.builder.declare(SymBlock::Individuals); }
  | CVARIABLES { ctx.builder.declare(SymBlock::Variables); }
  | CVARIABLES_SET { ctx.builder.declare(SymBlock::VariablesSet); }
  | CHIERARCHIE { ctx.builder.declare(SymBlock::Hierarchie); }
  | CRULES { ctx.builder.declare(SymBlock::Rules); }
  | REC_MATRIX { ctx.builder.declare(SymBlock::RectangleMatrix); }
  | CDISTANCE_MATRIX { ctx.builder.declare(SymBlock::DistMatrix); }
  | CMATCH_MATRIX { ctx.builder.declare(SymBlock::MatchMatrix); }
  ;

blocks: %empty | blocks ',' block ;

block
  : CFILES '=' '(' { ctx.builder.beginBlock(SymBlock::Files); } assignments ')'
  | CHEADER '=' '(' { ctx.builder.beginBlock(SymBlock::Header); } assignments ')'
  | CINDIVIDUALS '=' '(' { ctx.builder.beginBlock(SymBlock::Individuals); } individuals ')'
  | CVARIABLES '=' '(' { ctx.builder.beginBlock(SymBlock::Variables); } variables ')'
  | CHIERARCHIE '=' '(' { ctx.builder.beginBlock(SymBlock::Hierarchie); } hierarchies ')'
  | CRULES '=' '(' { ctx.builder.beginBlock(SymBlock::Rules); } rules ')'
  | REC_MATRIX '=' '(' { ctx.builder.beginBlock(SymBlock::RectangleMatrix);
                         if (!ctx.builder.beginMatrix()) YYABORT; } rows ')'
  | CDISTANCE_MATRIX '=' '(' { ctx.builder.beginBlock(SymBlock::DistMatrix);
                               ctx.builder.beginTriangle(SymBlock::DistMatrix); } triangle ')'
                             { ctx.builder.endTriangle(); }
  | CMATCH_MATRIX '=' '(' { ctx.builder.beginBlock(SymBlock::MatchMatrix);
                            ctx.builder.beginTriangle(SymBlock::MatchMatrix); } triangle ')'
                          { ctx.builder.endTriangle(); }
  | CVARIABLES_SET { ctx.builder.refuseVariablesSet(); YYABORT; }
  ;

assignments: %empty | assignment_items ;
assignment_items: assignment | assignment_items ',' assignment ;
assignment
  : key '=' C_STRING { ctx.builder.assignKey($1.view(), TextInput($3.view())); }
  | key '=' C_INT { ctx.builder.assignKey($1.view(), IntegerInput($3)); }
  | key '=' C_FLOAT { ctx.builder.assignKey($1.view(), RealInput($3)); }
  ;
key
  : IDENT { $$ = $1; }
  | PROC_NAME { $$ = $1; }
  | VERSION { $$ = $1; }
  | CREAT_DATE { $$ = $1; }
  | FIL_NAME { $$ = $1; }
  | FIL_PATH { $$ = $1; }
  | ARRAY { $$ = $1; }
  | BASE { $$ = $1; }
  | TITLE { $$ = $1; }
  | SUB_TITLE { $$ = $1; }
  | NB_INDIV { $$ = $1; }
  | NB_VAR { $$ = $1; }
  | RULES_NB { $$ = $1; }
  | SET_VAR_NB { $$ = $1; }
  | SET_INDIV_NB { $$ = $1; }
  | NB_VAR_NOM { $$ = $1; }
  | NB_VAR_CONT { $$ = $1; }
  | NB_VAR_TEXT { $$ = $1; }
  | NB_VAR_CONT_SYMB { $$ = $1; }
  | NB_VAR_NOM_SYMB { $$ = $1; }
  | NB_VAR_NOM_MOD { $$ = $1; }
  | NB_NA { $$ = $1; }
  | NB_NULL { $$ = $1; }
  | NB_HIERARCHIES { $$ = $1; }
  | WEIGHT_INDIV { $$ = $1; }
  | NB_NU { $$ = $1; }
  ;

individuals: %empty | individual_items ;
individual_items: individual | individual_items ',' individual ;
individual: '(' C_INT ',' C_STRING ',' C_STRING ')'
            { ctx.builder.addIndividual($2, $4.str(), $6.str()); } ;

variables: %empty | variable_items ;
variable_items: variable | variable_items ',' variable ;
variable: '(' C_INT ',' var_body ')'
          { ctx.variable.number = $2; ctx.builder.addVariable(std::exchange(ctx.variable, {})); } ;
var_body
  : CONTINUE ',' C_STRING ',' C_STRING ',' C_STRING ',' number ',' number ',' number ',' number
    { ctx.variable = Quantitative(SymVariableKind::Continue, $3.view(), $5.view(), $7.view(), $9, $11, $13, $15); }
  | INTER_CONT ',' C_STRING ',' C_STRING ',' C_STRING ',' number ',' number ',' number ',' number
    { ctx.variable = Quantitative(SymVariableKind::InterContinue, $3.view(), $5.view(), $7.view(), $9, $11, $13, $15); }
  | NOMINAL ',' C_STRING ',' C_STRING ',' C_STRING ',' number ',' number ',' C_INT ',' categ_list
    { ctx.variable = Categorical(SymVariableKind::Nominal, SymWeighting::None, $3.view(), $5.view(), $7.view(), $9,
                                 $11, $13, std::exchange(ctx.categories, {})); }
  | MULT_NOMINAL ',' C_STRING ',' C_STRING ',' C_STRING ',' number ',' number ',' C_INT ',' categ_list
    { ctx.variable = Categorical(SymVariableKind::MultNominal, SymWeighting::None, $3.view(), $5.view(), $7.view(),
                                 $9, $11, $13, std::exchange(ctx.categories, {})); }
  | MULT_NOMINAL_M ',' C_STRING ',' C_STRING ',' C_STRING ',' weighting ',' number ',' number ',' C_INT ','
    categ_list
    { ctx.variable = Categorical(SymVariableKind::MultNominalModif, $9, $3.view(), $5.view(), $7.view(), $11, $13,
                                 $15, std::exchange(ctx.categories, {})); }
  | BINARY { ctx.builder.refuseKind($1.view()); YYABORT; }
  | ORDERED { ctx.builder.refuseKind($1.view()); YYABORT; }
  | UNORDERED { ctx.builder.refuseKind($1.view()); YYABORT; }
  ;
weighting: CARDINAL { $$ = SymWeighting::Cardinal; } | PROBA { $$ = SymWeighting::Proba; } ;
number: C_INT { $$ = static_cast<double>($1); } | C_FLOAT { $$ = $1; } ;

/* Categories, links and children are gathered in the context. */
categ_list: '(' ')' | '(' categ_items ')' ;
categ_items: categ_item | categ_items ',' categ_item ;
categ_item: '(' C_INT ',' C_STRING ',' C_STRING ',' C_INT ')'
            { ctx.categories.push_back(SymCategory{$2, $4.str(), $6.str(), $8}); } ;

hierarchies: %empty | hierarchy_items ;
hierarchy_items: hierarchy | hierarchy_items ',' hierarchy ;
hierarchy: '(' VAR '=' C_INT ',' C_INT categ_list ',' link_list ')'
           { if (!ctx.builder.addHierarchy(SymHierarchy{$4, $6, std::exchange(ctx.categories, {}),
                                                        std::exchange(ctx.links, {})}))
               YYABORT; } ;
link_list: '(' ')' | '(' link_items ')' ;
link_items: link_item | link_items ',' link_item ;
link_item: C_INT '=' child_list { ctx.links.push_back(SymHierarchyLink{$1, std::exchange(ctx.numbers, {})}); } ;
child_list: '(' ')' | '(' child_items ')' ;
child_items
  : C_INT { ctx.numbers.push_back($1); }
  | child_items ',' C_INT { ctx.numbers.push_back($3); }
  ;

rules: %empty | rule_items ;
rule_items: rule | rule_items ',' rule ;
rule: '(' '(' C_INT '=' value { ctx.premise = std::move(ctx.value); } ')' '(' C_INT '=' value ')' ')'
      { if (!ctx.builder.addRule(SymRule{$3, std::move(ctx.premise), $9, std::move(ctx.value)})) YYABORT; } ;

rows: %empty | row_items ;
row_items: row | row_items ',' row ;
row: '(' { ctx.builder.beginRow(); } cells ')' { ctx.builder.endRow(); } ;
cells: %empty | cell_items ;
cell_items
  : value { ctx.builder.addCell(std::move(ctx.value)); }
  | cell_items ',' value { ctx.builder.addCell(std::move(ctx.value)); }
  ;

/* A value is left in the context, its items gathered there first. */
value
  : C_INT { ctx.value = CategoryValue($1); }
  | C_FLOAT { ctx.value = RealValue($1); }
  | NA { ctx.value = EmptyValue(SymValue::Kind::NA); }
  | NU { ctx.value = EmptyValue(SymValue::Kind::NU); }
  | '(' ')' { ctx.value = EmptyValue(SymValue::Kind::CategorySet); }
  | '(' number ':' number ')' { ctx.value = IntervalValue($2, $4); }
  | '(' int_items ')' { ctx.value = ListValue(SymValue::Kind::CategorySet, ctx.items); }
  | '(' modal_items ')' { ctx.value = ListValue(SymValue::Kind::WeightedSet, ctx.items); }
  ;
int_items
  : C_INT { ctx.items.push_back(SymItem{$1, 0}); }
  | int_items ',' C_INT { ctx.items.push_back(SymItem{$3, 0}); }
  ;
modal_items: modal_item | modal_items ',' modal_item ;
modal_item: C_INT '(' number ')' { ctx.items.push_back(SymItem{$1, $3}); } ;

triangle: %empty | triangle_items ;
triangle_items: triangle_row | triangle_items ',' triangle_row ;
triangle_row: real_list { ctx.builder.addTriangleRow(std::exchange(ctx.reals, {})); } ;
real_list: '(' ')' | '(' real_items ')' ;
real_items
  : number { ctx.reals.push_back($1); }
  | real_items ',' number { ctx.reals.push_back($3); }
  ;

/* ------------------------------------------------------- XML symbolic */

ulme_file
  : ULMEFILE xcontains xfile_desc xheader xindividuals xvariables xhierarchies xrules xmatrix
    xdist xmatch FINULMEFILE
  ;

xcontains: XMLCONTAINS FINXMLCONTAINS { DeclareContents(ctx.builder, ctx, ctx.attributeLists[$1]); } ;

xfile_desc
  : %empty
  | XMLPROCEDURE xtext FINXMLPROCEDURE XMLDATE_CREAT xtext FINXMLDATE_CREAT
    { ctx.builder.beginBlock(SymBlock::Files);
      ctx.builder.assignKey("procedure_name", TextInput($2.view()));
      ctx.builder.assignKey("create_date", TextInput($5.view())); }
  ;

xheader
  : %empty
  | XMLHEADER FINXMLHEADER
    { ctx.builder.beginBlock(SymBlock::Header);
      for (auto& [name, text] : ctx.attributeLists[$1]) ctx.builder.assignKey(name, XmlTextInput(std::move(text))); }
  ;

xtext: %empty { $$ = SpanOf(""); } | XML_TEXT { $$ = $1; } ;
xint: XML_TEXT { $$ = XmlInteger(ctx, $1.view()); } ;
xreal: XML_TEXT { $$ = XmlReal(ctx, $1.view()); } ;
xnum: XMLNUM xint FINXMLNUM { $$ = $2; } ;
xweighting: XML_TEXT { $$ = XmlWeighting(ctx, $1.view()); } ;

xindividuals
  : %empty
  | XMLINDIVIDUS FINXMLINDIVIDUS { ctx.builder.beginEmptyBlock(SymBlock::Individuals); }
  | XMLINDIVIDUS { ctx.builder.beginBlock(SymBlock::Individuals); } xindividual xindividual_items FINXMLINDIVIDUS
  ;
xindividual_items: %empty | xindividual_items xindividual ;
xindividual
  : XMLSTINDIV xnum XMLNAME xtext FINXMLNAME XMLLABEL xtext FINXMLLABEL FINXMLSTINDIV
    { ctx.builder.addIndividual($2, $4.str(), $7.str()); }
  ;

xvariables
  : %empty
  | XMLVARIABLES FINXMLVARIABLES { ctx.builder.beginEmptyBlock(SymBlock::Variables); }
  | XMLVARIABLES { ctx.builder.beginBlock(SymBlock::Variables); } xvariable xvariable_items FINXMLVARIABLES
  ;
xvariable_items: %empty | xvariable_items xvariable ;
xvariable
  : XMLSTVAR XMLIDENT xnum XMLNAME xtext FINXMLNAME XMLLABEL xtext FINXMLLABEL FINXMLIDENT xvar_desc FINXMLSTVAR
    { ctx.variable.number = $3;
      ctx.variable.code = $5.str();
      ctx.variable.label = $8.str();
      ctx.builder.addVariable(std::exchange(ctx.variable, {})); }
  ;
xvar_desc
  : XMLCONTINUE XMLCONTINUE_DESC FINXMLCONTINUE_DESC FINXMLCONTINUE
    { ctx.variable = XmlQuantitative(ctx, SymVariableKind::Continue, ctx.attributeLists[$2]); }
  | XMLINTER_CONT XMLCONTINUE_DESC FINXMLCONTINUE_DESC FINXMLINTER_CONT
    { ctx.variable = XmlQuantitative(ctx, SymVariableKind::InterContinue, ctx.attributeLists[$2]); }
  | XMLNOMINAL XMLNOMINAL_DESC xcateg_items FINXMLNOMINAL_DESC FINXMLNOMINAL
    { ctx.variable = XmlCategorical(ctx, SymVariableKind::Nominal, SymWeighting::None, ctx.attributeLists[$2],
                                    std::exchange(ctx.categories, {})); }
  | XMLMULT_NOMINAL XMLNOMINAL_DESC xcateg_items FINXMLNOMINAL_DESC FINXMLMULT_NOMINAL
    { ctx.variable = XmlCategorical(ctx, SymVariableKind::MultNominal, SymWeighting::None, ctx.attributeLists[$2],
                                    std::exchange(ctx.categories, {})); }
  | XMLMULT_NOMINAL_MODIF XMLTYPE_MODIF xweighting FINXMLTYPE_MODIF
    XMLNOMINAL_DESC xcateg_items FINXMLNOMINAL_DESC FINXMLMULT_NOMINAL_MODIF
    { ctx.variable = XmlCategorical(ctx, SymVariableKind::MultNominalModif, $3, ctx.attributeLists[$5],
                                    std::exchange(ctx.categories, {})); }
  ;
xcateg_items: %empty | xcateg_items xcateg ;
xcateg: XMLLIST_NOM xnode FINXMLLIST_NOM { ctx.categories.back().leaves = 1; } ;
xnode: xnum XMLNAME xtext FINXMLNAME XMLLABEL xtext FINXMLLABEL
       { ctx.categories.push_back(SymCategory{$1, $3.str(), $6.str(), 0}); } ;

xhierarchies
  : %empty
  | XMLHIERARCHIES FINXMLHIERARCHIES { ctx.builder.beginEmptyBlock(SymBlock::Hierarchie); }
  | XMLHIERARCHIES { ctx.builder.beginBlock(SymBlock::Hierarchie); } xhierarchy xhierarchy_items FINXMLHIERARCHIES
  ;
xhierarchy_items: %empty | xhierarchy_items xhierarchy ;
xhierarchy
  : XMLHIERARCHIE XMLVAR_NUM_REF xint FINXMLVAR_NUM_REF XMLNB_HIER_VAL xint FINXMLNB_HIER_VAL
    XMLHIER_VAL_LIST xnode_items FINXMLHIER_VAL_LIST XMLHIER_REF_LIST xlink_items FINXMLHIER_REF_LIST
    FINXMLHIERARCHIE
    { if (!ctx.builder.addHierarchy(SymHierarchy{$3, $6, std::exchange(ctx.categories, {}),
                                                 std::exchange(ctx.links, {})}))
        YYABORT; }
  ;
xnode_items: %empty | xnode_items xnode ;
xlink_items: %empty | xlink_items xlink ;
xlink
  : XMLCATEG_NUM xint FINXMLCATEG_NUM XMLHVAL_REF_LIST xchild_items FINXMLHVAL_REF_LIST
    { ctx.links.push_back(SymHierarchyLink{$2, std::exchange(ctx.numbers, {})}); }
  ;
xchild_items
  : %empty
  | xchild_items XMLHVAL_REF_ELEM xint FINXMLHVAL_REF_ELEM { ctx.numbers.push_back($3); }
  ;

xrules
  : %empty
  | XMLRULES_GEN FINXMLRULES_GEN { ctx.builder.beginEmptyBlock(SymBlock::Rules); }
  | XMLRULES_GEN XMLRULES FINXMLRULES FINXMLRULES_GEN { ctx.builder.beginEmptyBlock(SymBlock::Rules); }
  | XMLRULES_GEN XMLRULES { ctx.builder.beginBlock(SymBlock::Rules); } xrule xrule_items FINXMLRULES FINXMLRULES_GEN
  ;
xrule_items: %empty | xrule_items xrule ;
xrule
  : XMLPREM_DESC XMLVAR_NUM xint FINXMLVAR_NUM XMLVAL xvalue_opt FINXMLVAL FINXMLPREM_DESC
    { ctx.premise = std::move(ctx.value); }
    XMLCONCLUSION XMLVAR_NUM xint FINXMLVAR_NUM XMLVAL xvalue_opt FINXMLVAL FINXMLCONCLUSION
    { if (!ctx.builder.addRule(SymRule{$3, std::move(ctx.premise), $12, std::move(ctx.value)})) YYABORT; }
  ;

xmatrix
  : %empty
  | XMLINDIV_MAT FINXMLINDIV_MAT { ctx.builder.beginEmptyBlock(SymBlock::RectangleMatrix);
                                  if (!ctx.builder.beginMatrix()) YYABORT; }
  | XMLINDIV_MAT { ctx.builder.beginBlock(SymBlock::RectangleMatrix);
                   if (!ctx.builder.beginMatrix()) YYABORT; } xrow xrow_items FINXMLINDIV_MAT
  ;
xrow_items: %empty | xrow_items xrow ;
xrow: XMLLIGMAT { ctx.builder.beginRow(); } xcells FINXMLLIGMAT { ctx.builder.endRow(); } ;
xcells: %empty | xcells XMLVALMAT xvalue_opt FINXMLVALMAT { ctx.builder.addCell(std::move(ctx.value)); } ;

xvalue_opt: %empty { ctx.value = EmptyValue(SymValue::Kind::CategorySet); } | xvalue ;
xvalue
  : XMLNA xtext FINXMLNA { ctx.value = EmptyValue(SymValue::Kind::NA); }
  | XMLNU xtext FINXMLNU { ctx.value = EmptyValue(SymValue::Kind::NU); }
  | XMLVAL_CONTI xreal FINXMLVAL_CONTI { ctx.value = RealValue($2); }
  | XMLVAL_INTERV XMLPMIN xreal FINXMLPMIN XMLPMAX xreal FINXMLPMAX FINXMLVAL_INTERV
    { ctx.value = IntervalValue($3, $6); }
  | XMLVAL_NOMINA xint FINXMLVAL_NOMINA { ctx.value = CategoryValue($2); }
  | xmodal_items { ctx.value = ListValue(SymValue::Kind::CategorySet, ctx.items); }
  | XMLVAL_LIST_MODAL xweighted_items FINXMLVAL_LIST_MODAL
    { ctx.value = ListValue(SymValue::Kind::WeightedSet, ctx.items); }
  ;
xmodal_items
  : XMLVAL_MODAL xint FINXMLVAL_MODAL { ctx.items.push_back(SymItem{$2, 0}); }
  | xmodal_items XMLVAL_MODAL xint FINXMLVAL_MODAL { ctx.items.push_back(SymItem{$3, 0}); }
  ;
xweighted_items
  : %empty
  | xweighted_items XMLNO_MODA xint FINXMLNO_MODA XMLFREQUENCY xreal FINXMLFREQUENCY
    { ctx.items.push_back(SymItem{$3, $6}); }
  ;

xdist
  : %empty
  | XMLDIST_MAT { ctx.builder.beginBlock(SymBlock::DistMatrix); ctx.builder.beginTriangle(SymBlock::DistMatrix); }
    xtriangle FINXMLDIST_MAT { ctx.builder.endTriangle(); }
  ;
xmatch
  : %empty
  | XMLMATCH_MAT { ctx.builder.beginBlock(SymBlock::MatchMatrix); ctx.builder.beginTriangle(SymBlock::MatchMatrix); }
    xtriangle FINXMLMATCH_MAT { ctx.builder.endTriangle(); }
  ;
xtriangle
  : %empty
  | xtriangle XMLLIGDMAT xvf_items FINXMLLIGDMAT { ctx.builder.addTriangleRow(std::exchange(ctx.reals, {})); }
  ;
xvf_items: %empty | xvf_items XMLVF xreal FINXMLVF { ctx.reals.push_back($3); } ;

/* ------------------------------------------------------------ metadata */

meta_file: M_METAULME m_orig_info m_meta_mat FM_METAULME ;

mtext: %empty { $$ = SpanOf(""); } | XML_TEXT { $$ = $1; } ;
mint: XML_TEXT { $$ = XmlInteger(ctx, $1.view()); } ;

m_orig_info
  : M_ORIGINFO m_nb_orig_var m_nb_orig_mat m_pop_samp_size m_samp_size m_rel_unit m_survey_desc m_legal_frame
    m_survey_type m_survey_freq m_geo_cover m_inter_stand m_spec_inter_stand m_report_unit m_pop_desc
    m_samp_orig m_samp_select m_law_base m_admin_qual m_stat_collect m_valid_tech m_non_resp_meth
    m_miss_val_reaj m_agreg_meth m_gross_meth m_corr_error m_othe_cor m_pop_samp_frac m_resp_rate
    m_liste_var_orig m_liste_tab_orig FM_ORIGINFO
  ;
m_nb_orig_var: M_NBORIGVAR mint FM_NBORIGVAR { Meta(ctx).origInfo.nbOrigVar = $2; } ;
m_nb_orig_mat: M_NBORIGMAT mint FM_NBORIGMAT { Meta(ctx).origInfo.nbOrigMat = $2; } ;
m_pop_samp_size: M_POPSAMPSIZE mtext FM_POPSAMPSIZE { Meta(ctx).origInfo.popSampSize = $2.str(); } ;
m_samp_size: M_SAMPSIZE mtext FM_SAMPSIZE { Meta(ctx).origInfo.sampSize = $2.str(); } ;
m_rel_unit: M_RELUNIT mtext FM_RELUNIT { Meta(ctx).origInfo.relUnit = $2.str(); } ;
m_survey_desc: M_SURVEYDESC mtext FM_SURVEYDESC { Meta(ctx).origInfo.surveyDesc = $2.str(); } ;
m_legal_frame: M_LEGALFRAME mtext FM_LEGALFRAME { Meta(ctx).origInfo.legalFrame = $2.str(); } ;
m_survey_type: M_SURVEYTYPE mtext FM_SURVEYTYPE { Meta(ctx).origInfo.surveyType = $2.str(); } ;
m_survey_freq: M_SURVEYFREQ mtext FM_SURVEYFREQ { Meta(ctx).origInfo.surveyFreq = $2.str(); } ;
m_geo_cover: M_GEOCOVER mtext FM_GEOCOVER { Meta(ctx).origInfo.geoCover = $2.str(); } ;
m_inter_stand: M_INTERSTAND mtext FM_INTERSTAND { Meta(ctx).origInfo.interStand = $2.str(); } ;
m_spec_inter_stand: M_SPECINTERSTAND mtext FM_SPECINTERSTAND { Meta(ctx).origInfo.specInterStand = $2.str(); } ;
m_report_unit: M_REPORTUNIT mtext FM_REPORTUNIT { Meta(ctx).origInfo.reportUnit = $2.str(); } ;
m_pop_desc: M_POPDESC mtext FM_POPDESC { Meta(ctx).origInfo.popDesc = $2.str(); } ;
m_samp_orig: M_SAMPORIG mtext FM_SAMPORIG { Meta(ctx).origInfo.sampOrig = $2.str(); } ;
m_samp_select: M_SAMPSELECT mtext FM_SAMPSELECT { Meta(ctx).origInfo.sampSelect = $2.str(); } ;
m_law_base: M_LAWBASE mtext FM_LAWBASE { Meta(ctx).origInfo.lawBase = $2.str(); } ;
m_admin_qual: M_ADMINQUAL mtext FM_ADMINQUAL { Meta(ctx).origInfo.adminQual = $2.str(); } ;
m_stat_collect: M_STATCOLLECT mtext FM_STATCOLLECT { Meta(ctx).origInfo.statCollect = $2.str(); } ;
m_valid_tech: M_VALIDTECH mtext FM_VALIDTECH { Meta(ctx).origInfo.validTech = $2.str(); } ;
m_non_resp_meth: M_NONRESPMETH mtext FM_NONRESPMETH { Meta(ctx).origInfo.nonRespMeth = $2.str(); } ;
m_miss_val_reaj: M_MISSVALREAJ mtext FM_MISSVALREAJ { Meta(ctx).origInfo.missValReaj = $2.str(); } ;
m_agreg_meth: M_AGREGMETH mtext FM_AGREGMETH { Meta(ctx).origInfo.agregMeth = $2.str(); } ;
m_gross_meth: M_GROSSMETH mtext FM_GROSSMETH { Meta(ctx).origInfo.grossMeth = $2.str(); } ;
m_corr_error: M_CORRERROR mtext FM_CORRERROR { Meta(ctx).origInfo.corrError = $2.str(); } ;
m_othe_cor: M_OTHECOR mtext FM_OTHECOR { Meta(ctx).origInfo.otheCor = $2.str(); } ;
m_pop_samp_frac: M_POPSAMPFRAC mtext FM_POPSAMPFRAC { Meta(ctx).origInfo.popSampFrac = $2.str(); } ;
m_resp_rate: M_RESPRATE mtext FM_RESPRATE { Meta(ctx).origInfo.respRate = $2.str(); } ;

m_liste_var_orig: M_LISTEVARORIG m_orig_vars FM_LISTEVARORIG ;
m_orig_vars: %empty | m_orig_vars m_orig_var ;
m_orig_var
  : M_ORIGVAR m_num m_name m_label m_comment m_source m_computed m_datatype FM_ORIGVAR
    { Meta(ctx).origInfo.origVars.push_back(MetaOrigVar{$2, $3.str(), $4.str(), $5.str(), XmlInteger(ctx, $6.view()),
                                                        $7.str(), $8.str()}); }
  ;
m_liste_tab_orig: M_LISTETABORIG m_orig_tabs FM_LISTETABORIG ;
m_orig_tabs: %empty | m_orig_tabs m_orig_tab ;
m_orig_tab
  : M_ORIGTAB m_name m_label m_comment m_source FM_ORIGTAB
    { Meta(ctx).origInfo.origTabs.push_back(MetaOrigTab{$2.str(), $3.str(), $4.str(), $5.str()}); }
  ;

m_num: M_NUM mint FM_NUM { $$ = $2; } ;
m_name: M_NAME mtext FM_NAME { $$ = $2; } ;
m_label: M_LABEL mtext FM_LABEL { $$ = $2; } ;
m_comment: M_COMMENT mtext FM_COMMENT { $$ = $2; } ;
m_source: M_SOURCE mtext FM_SOURCE { $$ = $2; } ;
m_computed: M_COMPUTED mtext FM_COMPUTED { $$ = $2; } ;
m_datatype: M_DATATYPE mtext FM_DATATYPE { $$ = $2; } ;
m_operator: M_OPERATOR mtext FM_OPERATOR { $$ = $2; } ;

m_meta_mat
  : M_METAMAT m_author m_meta_history m_nb_meta_var m_nb_meta_ind m_meta_distance m_meta_match
    m_meta_ind_lis m_meta_var_lis FM_METAMAT
  ;
m_author: M_AUTHOR mtext FM_AUTHOR { Meta(ctx).metaMat.author = $2.str(); } ;
m_meta_history: M_METAHISTORY m_sql_query m_odbc_source m_history FM_METAHISTORY ;
m_sql_query: M_SQLQUERY mtext FM_SQLQUERY { Meta(ctx).metaMat.sqlQuery = $2.str(); } ;
m_odbc_source: M_ODBCSOURCE mtext FM_ODBCSOURCE { Meta(ctx).metaMat.odbcSource = $2.str(); } ;
m_history: M_HISTORY m_prev_file m_prev_treatment FM_HISTORY ;
m_prev_file: M_PREVFILE mtext FM_PREVFILE { Meta(ctx).metaMat.prevFile = $2.str(); } ;
m_prev_treatment: M_PREVTREATMENT mtext FM_PREVTREATMENT { Meta(ctx).metaMat.prevTreatment = $2.str(); } ;
m_nb_meta_var: M_NBMETAVAR mint FM_NBMETAVAR { Meta(ctx).metaMat.nbMetaVar = $2; } ;
m_nb_meta_ind: M_NBMETAIND mint FM_NBMETAIND { Meta(ctx).metaMat.nbMetaInd = $2; } ;
m_meta_distance
  : M_METADISTANCE m_measure_desc FM_METADISTANCE { Meta(ctx).metaMat.distance = std::exchange(ctx.measure, {}); }
  ;
m_meta_match: M_METAMATCH m_measure_desc FM_METAMATCH { Meta(ctx).metaMat.match = std::exchange(ctx.measure, {}); } ;
m_measure_desc
  : M_MEASURE mtext FM_MEASURE M_LISTVAR m_v_items FM_LISTVAR
    { ctx.measure = MetaMeasure{$2.str(), std::exchange(ctx.numbers, {})}; }
  ;
m_v_items: %empty | m_v_items M_V mint FM_V { ctx.numbers.push_back($3); } ;

m_meta_ind_lis: M_METAINDLIS m_meta_inds FM_METAINDLIS ;
m_meta_inds: %empty | m_meta_inds m_meta_ind ;
m_meta_ind
  : M_METAIND m_num m_name M_NBINOBJ mint FM_NBINOBJ M_GNBINOBJ mint FM_GNBINOBJ m_operator FM_METAIND
    { Meta(ctx).metaMat.inds.push_back(MetaInd{$2, $3.str(), $5, $8, $10.str()}); }
  ;

m_meta_var_lis: M_METAVARLIS m_meta_vars FM_METAVARLIS ;
m_meta_vars: %empty | m_meta_vars m_meta_var ;
m_meta_var
  : M_METAVAR m_num m_name M_VARORIG mint FM_VARORIG m_var_orig_lis m_label M_RELUNIT mtext FM_RELUNIT
    M_STEPWIDHT mtext FM_STEPWIDHT m_operator FM_METAVAR
    { Meta(ctx).metaMat.vars.push_back(MetaVar{$2, $3.str(), $5, std::exchange(ctx.numbers, {}), $8.str(),
                                              $10.str(), $13.str(), $15.str()}); }
  ;
m_var_orig_lis: %empty | M_VARORIGLIS m_vo_items FM_VARORIGLIS ;
m_vo_items: %empty | m_vo_items M_VO mint FM_VO { ctx.numbers.push_back($3); } ;

%%

void velda::symlib::SymbolicGrammar::error(const std::string& message) { ctx.reportSyntaxError(message); }
