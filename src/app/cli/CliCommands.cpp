#include "app/cli/CliCommands.h"

#include <cstdio>
#include <iostream>

#include "app/cli/CliUserInterface.h"
#include "common/Format.h"
#include "common/LastError.h"
#include "db/ColumnView.h"
#include "db/Connection.h"
#include "db/TableCatalog.h"
#include "document/Document.h"
#include "document/export/SymbolicFileCheck.h"
#include "model/CategoricalVariable.h"
#include "model/SymbolicMatrix.h"

namespace velda::cli {

namespace {

// Shows the refusal; always false, for `return fail(...)`.
bool fail(Session& session, const std::string& text) {
  session.ui.showMessage(text, MessageIcon::Warning);
  return false;
}

[[nodiscard]] bool needConnection(Session& session) {
  if (session.document.connection()) return true;
  return fail(session, "Not connected: use connect CONN first");
}

[[nodiscard]] bool needData(Session& session) {
  if (session.document.matrix()) return true;
  return fail(session, "No data: use new, open or join first");
}

// The index of the variable with this name, or -1 after saying so.
int32_t variableNamed(Session& session, const std::string& name) {
  const SymbolicMatrix& matrix = *session.document.matrix();
  for (size_t i = 0; i < matrix.variableCount(); ++i)
    if (matrix.variable(i).name == name) return static_cast<int32_t>(i);
  fail(session, "No variable named '" + name + "'");
  return -1;
}

[[nodiscard]] bool variablesNamed(Session& session, const std::vector<std::string>& names,
                                  std::vector<int32_t>& indexes) {
  for (const std::string& name : names) {
    const int32_t index = variableNamed(session, name);
    if (index < 0) return false;
    indexes.push_back(index);
  }
  return true;
}

// Says why a command that works on the individuals cannot run on a matrix
// that the database aggregated; false for any other case.
[[nodiscard]] bool refusedWithoutIndividuals(Session& session, int32_t commandId, const char* what) {
  const SymbolicMatrix* matrix = session.document.matrix();
  if (!matrix || matrix->individualCount() > 0 || !needsIndividuals(commandId)) return false;
  fail(session, format("%s is not possible: the matrix holds no individuals (the database aggregated them)", what));
  return true;
}

// Runs a document command only while it is enabled, as a menu would.
[[nodiscard]] bool runEnabled(Session& session, int32_t commandId, const char* what, bool (Document::*command)()) {
  if (refusedWithoutIndividuals(session, commandId, what)) return false;
  if (!session.document.isEnabled(commandId)) return fail(session, format("%s is not possible now", what));
  return (session.document.*command)();
}

Action parseConnect(Arguments& args) {
  const auto words = args.operands(1, 1);
  if (args.failed()) return nullptr;
  const std::string connection = words[0];
  return [connection](Session& s) { return s.document.connect(connection); };
}

Action parseDisconnect(Arguments& args) {
  args.operands(0, 0);
  return [](Session& s) { return s.document.disconnect(); };
}

Action parseTables(Arguments& args) {
  args.operands(0, 0);
  return [](Session& s) {
    if (!needConnection(s)) return false;
    std::vector<CatalogEntry> entries;
    if (!listTablesAndViews(*s.document.connection(), entries)) return fail(s, lastError());
    for (const CatalogEntry& entry : entries) std::printf("%s\t%s\n", entry.name.c_str(), entry.type.c_str());
    std::fflush(stdout);
    return true;
  };
}

Action parseColumns(Arguments& args) {
  const auto words = args.operands(1, 1);
  if (args.failed()) return nullptr;
  const std::string table = words[0];
  return [table](Session& s) {
    if (!needConnection(s)) return false;
    const ColumnView view = describeTableColumns(*s.document.connection(), table);
    if (!view.ok) return fail(s, view.errorCaption + ": " + view.errorText);
    std::printf("%s\t%s\t%s\t%s\n", kColumnViewHeadings[0], kColumnViewHeadings[1], kColumnViewHeadings[2],
                kColumnViewHeadings[3]);
    for (const ColumnDescription& column : view.columns)
      std::printf("%s\t%s\t%s\t%s\n", column.name.c_str(), column.typeName.c_str(), column.precision.c_str(),
                  column.nullable.c_str());
    std::fflush(stdout);
    return true;
  };
}

Action parseNew(Arguments& args) {
  NewValues values;
  args.tableOrQuery(values.tableName, values.query);
  values.lastColumnIsWeight = args.flag("--weight");
  values.inDatabase = args.flag("--in-database");
  if (const auto sample = args.number("--sample")) {
    values.sampling = true;
    values.sampleSize = *sample;
  }
  if (const auto minimum = args.number("--min")) {
    values.minimumSet = true;
    values.minimum = *minimum;
  }
  args.operands(0, 0);
  return [values](Session& s) {
    if (!needConnection(s)) return false;
    s.ui.onNew = [values](NewValues& v) {
      v = values;
      return true;
    };
    return s.document.newFromDatabase();
  };
}

Action parseOpen(Arguments& args) {
  const bool ignore = args.flag("--ignore-metadata");
  const auto words = args.paths(1, 1);
  if (args.failed()) return nullptr;
  const std::string path = words[0];
  return [path, ignore](Session& s) {
    s.ui.onChooseFile = [path, ignore](const FileRequest&, FileChoice& choice) {
      choice.path = path;
      choice.ignoreMetadata = ignore;
      return true;
    };
    return s.document.open();
  };
}

Action parseSave(Arguments& args) {
  const auto words = args.paths(0, 1);
  if (args.failed()) return nullptr;
  if (words.empty())
    return [](Session& s) {
      if (!needData(s)) return false;
      if (!s.document.fileRecord().valid) return fail(s, "The data was never saved: use save FILE");
      return s.document.save();
    };
  const std::string path = words[0];
  return [path](Session& s) {
    if (!needData(s)) return false;
    s.ui.onChooseFile = [path](const FileRequest&, FileChoice& choice) {
      choice.path = path;
      return true;
    };
    return s.document.saveAs();
  };
}

Action parseJoin(Arguments& args) {
  const auto words = args.paths(2, 2);
  if (args.failed()) return nullptr;
  const JoinValues values{words[0], words[1]};
  return [values](Session& s) {
    s.ui.onJoin = [values](JoinValues& v) {
      v = values;
      return true;
    };
    return s.document.newByJoin();
  };
}

Action parseAddVariables(Arguments& args, bool setValued) {
  AddVariablesValues values;
  args.tableOrQuery(values.tableName, values.query);
  args.operands(0, 0);
  return [values, setValued](Session& s) {
    if (!needData(s) || !needConnection(s)) return false;
    s.ui.onAddVariables = [values](AddVariablesValues& v) {
      v = values;
      return true;
    };
    return setValued ? s.document.addSetValuedVariable() : s.document.addSingleValuedVariables();
  };
}

Action parseAddSingle(Arguments& args) { return parseAddVariables(args, false); }
Action parseAddSet(Arguments& args) { return parseAddVariables(args, true); }

// remove-variables and remove-taxonomies: the named variables are what the
// command's dialog answers.
using SelectionDialog = ScriptedUserInterface::Dialog<VariableSelection> ScriptedUserInterface::*;

Action parseVariableSelection(Arguments& args, SelectionDialog dialog, int32_t commandId, const char* what,
                              bool (Document::*command)()) {
  const auto names = args.operands(1, SIZE_MAX);
  if (args.failed()) return nullptr;
  return [=](Session& s) {
    if (!needData(s)) return false;
    VariableSelection chosen;
    if (!variablesNamed(s, names, chosen.variableIndexes)) return false;
    s.ui.*dialog = [chosen](VariableSelection& v) {
      v = chosen;
      return true;
    };
    return runEnabled(s, commandId, what, command);
  };
}

Action parseRemoveVariables(Arguments& args) {
  return parseVariableSelection(args, &ScriptedUserInterface::onRemoveVariables, ID_REMOVE_VARIABLES,
                                "Removing variables", &Document::removeVariables);
}

Action parseTaxonomy(Arguments& args) {
  TaxonomyValues values;
  args.tableOrQuery(values.tableName, values.query);
  const auto words = args.operands(1, 1);
  if (args.failed()) return nullptr;
  const std::string variable = words[0];
  return [values, variable](Session& s) {
    if (!needData(s) || !needConnection(s)) return false;
    TaxonomyValues chosen = values;
    chosen.variableIndex = variableNamed(s, variable);
    if (chosen.variableIndex < 0) return false;
    s.ui.onTaxonomy = [chosen](TaxonomyValues& v) {
      v = chosen;
      return true;
    };
    return runEnabled(s, ID_CREATE_TAXONOMY, "Creating a taxonomy", &Document::createTaxonomy);
  };
}

Action parseRemoveTaxonomies(Arguments& args) {
  return parseVariableSelection(args, &ScriptedUserInterface::onRemoveTaxonomies, ID_REMOVE_TAXONOMIES,
                                "Removing taxonomies", &Document::removeTaxonomies);
}

Action parseDependence(Arguments& args) {
  const auto mother = args.value("--mother");
  const auto applicable = args.value("--applicable");
  const auto daughters = args.value("--daughters");
  const bool yes = args.flag("--yes");
  args.operands(0, 0);
  if (!args.failed() && (!mother || !applicable || !daughters))
    args.fail("dependence needs --mother, --applicable and --daughters");
  if (args.failed()) return nullptr;
  const std::string motherName = *mother;
  const std::vector<std::string> modalityNames = splitList(*applicable);
  const std::vector<std::string> daughterNames = splitList(*daughters);
  return [=](Session& s) {
    if (!needData(s) || refusedWithoutIndividuals(s, ID_ADD_DEPENDENCE, "Adding a dependence")) return false;
    DependenceValues values;
    values.motherIndex = variableNamed(s, motherName);
    if (values.motherIndex < 0) return false;
    SymbolicVariable& variable = s.document.matrix()->variable(static_cast<size_t>(values.motherIndex));
    if (!variable.isCategorical()) return fail(s, "Variable '" + motherName + "' is not categorical");
    auto& categorical = static_cast<CategoricalVariable&>(variable);
    for (const std::string& name : modalityNames) {
      const Modality* modality = categorical.modalities.find(name);
      if (!modality) return fail(s, "Variable '" + motherName + "' has no modality '" + name + "'");
      values.applicableModalities.push_back(modality->index);
    }
    if (!variablesNamed(s, daughterNames, values.daughterIndexes)) return false;
    s.ui.confirmDependence = yes;
    // Without --yes the replacement question is answered No, which brings
    // the dialog back: the second time it is cancelled, with the reason.
    s.ui.onDependence = [values, &s, asked = false](DependenceValues& v) mutable {
      if (asked) return fail(s, "Dependence not added: some values would be replaced by NA (confirm with --yes)");
      asked = true;
      v = values;
      return true;
    };
    return runEnabled(s, ID_ADD_DEPENDENCE, "Adding a dependence", &Document::addDependence);
  };
}

Action parseProperties(Arguments& args) {
  const bool active = args.flag("--active");
  const bool inactive = args.flag("--inactive");
  const auto modeName = args.value("--mode");
  const auto names = args.operands(1, SIZE_MAX);
  if (active && inactive) args.fail("give --active or --inactive, not both");
  static const char* const kModes[] = {"boolean", "cardinality", "probabilist", "kt"};
  int32_t mode = -1;
  if (modeName) {
    for (int32_t m = 0; m < 4; ++m)
      if (*modeName == kModes[m]) mode = m;
    if (mode < 0) args.fail("--mode must be boolean, cardinality, probabilist or kt");
  }
  if (args.failed()) return nullptr;
  return [=](Session& s) {
    if (!needData(s)) return false;
    std::vector<int32_t> indexes;
    if (!variablesNamed(s, names, indexes)) return false;
    s.ui.onVariableProperties = [=](VariablePropertiesValues& v) {
      for (int32_t index : indexes) {
        VariableProperty& property = v.variables[static_cast<size_t>(index)];
        if (active || inactive) property.active = active;
        if (mode >= 0) property.mode = mode;
      }
      return true;
    };
    return s.document.editVariableProperties();
  };
}

Action parseReduce(Arguments& args, bool hordes) {
  const auto threshold = args.number("--threshold");
  args.operands(0, 0);
  if (args.failed()) return nullptr;
  return [threshold, hordes](Session& s) {
    if (!needData(s)) return false;
    s.ui.onReduction = [threshold](ReductionValues& v) {
      if (threshold) v.threshold = *threshold;
      return true;
    };
    if (hordes) return runEnabled(s, ID_REDUCE_HORDES, "Reducing hordes", &Document::reduceHordes);
    return runEnabled(s, ID_REDUCE_ASSERTIONS, "Reducing assertions", &Document::reduceAssertions);
  };
}

Action parseReduceAssertions(Arguments& args) { return parseReduce(args, false); }
Action parseReduceHordes(Arguments& args) { return parseReduce(args, true); }

Action parseDivide(Arguments& args) {
  const auto classes = args.number("--classes");
  args.operands(0, 0);
  if (args.failed()) return nullptr;
  return [classes](Session& s) {
    if (!needData(s)) return false;
    s.ui.onDivision = [classes](DivisionValues& v) {
      if (classes) v.classes = *classes;
      return true;
    };
    return runEnabled(s, ID_DIVIDE_ASSERTIONS, "Dividing assertions", &Document::divideAssertions);
  };
}

// "--format rsda|tidy" picks a table; without it the destination's name
// decides between symbolic text and XML.
ExportFormat exportFormat(Arguments& args) {
  const auto name = args.value("--format");
  if (!name) return ExportFormat::Symbolic;
  if (*name == "rsda") return ExportFormat::RsdaTable;
  if (*name == "tidy") return ExportFormat::TidyTable;
  args.fail("--format takes rsda or tidy, not '" + *name + "'");
  return ExportFormat::Symbolic;
}

Action parseExport(Arguments& args, bool hordes) {
  const ExportFormat format = exportFormat(args);
  const auto title = args.value("--title");
  const auto subtitle = args.value("--subtitle");
  const bool reduced = args.flag("--reduced");
  const bool reducedHordes = hordes && args.flag("--reduced-hordes");
  const auto words = args.paths(1, 1);
  if (args.failed()) return nullptr;
  const std::string file = words[0];
  return [=](Session& s) {
    if (!needData(s)) return false;
    s.ui.onExport = [=](ExportValues& v) {
      v.file = file;
      v.format = format;
      if (title) v.title = *title;
      if (subtitle) v.subtitle = *subtitle;
      v.exportReducedAssertions = reduced && v.reducedAssertionsAvailable;
      v.exportReducedHordes = reducedHordes && v.reducedHordesAvailable;
      return true;
    };
    if (hordes) return runEnabled(s, ID_EXPORT_HORDES, "Exporting hordes", &Document::exportHordes);
    return s.document.exportMatrix();
  };
}

Action parseExportMatrix(Arguments& args) { return parseExport(args, false); }
Action parseExportHordes(Arguments& args) { return parseExport(args, true); }

Action parseView(Arguments& args) {
  const auto words = args.operands(1, 1);
  if (args.failed()) return nullptr;
  struct Choice {
    const char* name;
    Document::Table table;
    CommandId id;
    const char* what;
  };
  static const Choice kChoices[] = {
      {"individuals", Document::Table::Individuals, ID_VIEW_INDIVIDUALS, "Viewing individuals"},
      {"assertions", Document::Table::Assertions, ID_VIEW_ASSERTIONS, "Viewing assertions"},
      {"hordes", Document::Table::Hordes, ID_VIEW_HORDES, "Viewing hordes"},
      {"reduced", Document::Table::ReducedAssertions, ID_VIEW_REDUCED_ASSERTIONS, "Viewing reduced assertions"},
      {"reduced-hordes", Document::Table::ReducedHordes, ID_VIEW_REDUCED_HORDES, "Viewing reduced hordes"},
  };
  for (const Choice& choice : kChoices) {
    if (words[0] != choice.name) continue;
    return [choice](Session& s) {
      if (!needData(s) || refusedWithoutIndividuals(s, choice.id, choice.what)) return false;
      if (!s.document.isEnabled(choice.id)) return fail(s, format("There is nothing to view as %s", choice.name));
      return s.document.viewTable(choice.table);
    };
  }
  args.fail("view takes individuals, assertions, hordes, reduced or reduced-hordes");
  return nullptr;
}

Action parseTaxonomies(Arguments& args) {
  args.operands(0, 0);
  return [](Session& s) { return needData(s) && s.document.viewTaxonomies(); };
}

Action parseDependences(Arguments& args) {
  args.operands(0, 0);
  return [](Session& s) { return needData(s) && s.document.viewDependences(); };
}

Action parseVolumeMatrix(Arguments& args) {
  const bool before = args.flag("--before");
  args.operands(0, 0);
  return [before](Session& s) {
    if (!needData(s)) return false;
    if (!s.document.isEnabled(ID_VIEW_VOLUME_MATRIX)) return fail(s, "No reduction was made");
    s.ui.volumeMatrixBefore = before;
    return s.document.viewVolumeMatrix();
  };
}

Action parseConsoleSave(Arguments& args) {
  const auto words = args.paths(1, 1);
  if (args.failed()) return nullptr;
  const std::string path = words[0];
  return [path](Session& s) {
    if (s.document.console().count() == 0) return true;
    s.ui.onChooseFile = [path](const FileRequest&, FileChoice& choice) {
      choice.path = path;
      return true;
    };
    return s.document.saveConsole();
  };
}

Action parseCheck(Arguments& args) {
  const auto words = args.paths(1, 1);
  if (args.failed()) return nullptr;
  const std::string path = words[0];
  return [path](Session& s) {
    if (!checkSymbolicFile(path)) return fail(s, lastError());
    return true;
  };
}

const std::vector<CommandSpec> kSpecs = {
    {"connect", "CONN", "open the ODBC connection (\"ODBC;\" prefix accepted)", parseConnect},
    {"disconnect", "", "close the ODBC connection", parseDisconnect},
    {"tables", "", "tables and views of the source", parseTables},
    {"columns", "TABLE", "the query view: name, type, precision, nullable", parseColumns},
    {"new", "(--table NAME | --query SQL) [--weight] [--sample N] [--min M] [--in-database]",
     "extract individuals into a new matrix (--in-database: the database groups them)", parseNew},
    {"open", "FILE [--ignore-metadata]", "open a project file", parseOpen},
    {"save", "[FILE]", "save the project; with FILE: save as", parseSave},
    {"join", "FIRST SECOND", "new data by joining two project files", parseJoin},
    {"add-variables", "(--table NAME | --query SQL)", "add single-valued variables", parseAddSingle},
    {"add-set-variable", "(--table NAME | --query SQL)", "add one set-valued multiple variable", parseAddSet},
    {"remove-variables", "NAME...", "remove variables", parseRemoveVariables},
    {"taxonomy", "VARIABLE (--table NAME | --query SQL)", "create a taxonomy", parseTaxonomy},
    {"remove-taxonomies", "VARIABLE...", "remove taxonomies", parseRemoveTaxonomies},
    {"dependence", "--mother NAME --applicable M1,M2,... --daughters D1,D2,... [--yes]",
     "add a dependence (values replaced by NA only with --yes)", parseDependence},
    {"properties", "NAME... [--active | --inactive] [--mode boolean|cardinality|probabilist|kt]",
     "edit variable properties", parseProperties},
    {"reduce", "[--threshold T]", "reduce assertions (default: stored threshold or 80)", parseReduceAssertions},
    {"divide", "[--classes K]", "divide assertions (default: stored class number or 3)", parseDivide},
    {"reduce-hordes", "[--threshold T]", "reduce hordes", parseReduceHordes},
    {"export", "FILE [--format rsda|tidy] [--title T] [--subtitle S] [--reduced]",
     "export as symbolic text (\"kvf\" in FILE) or XML with metadata, or as a table for R or pandas",
     parseExportMatrix},
    {"export-hordes", "FILE [--format rsda|tidy] [--title T] [--subtitle S] [--reduced] [--reduced-hordes]",
     "export the hordes", parseExportHordes},
    {"view", "individuals|assertions|hordes|reduced|reduced-hordes", "print a table", parseView},
    {"taxonomies", "", "print the taxonomies", parseTaxonomies},
    {"dependences", "", "print the dependences", parseDependences},
    {"volume-matrix", "[--before]", "print the volume matrix after (or before) reduction", parseVolumeMatrix},
    {"console-save", "FILE", "save the console lines to a file", parseConsoleSave},
    {"check", "FILE", "read and check a symbolic file with the library", parseCheck},
};

}  // namespace

const std::vector<CommandSpec>& commandSpecs() { return kSpecs; }

const CommandSpec* findCommandSpec(const std::string& name) {
  for (const CommandSpec& spec : kSpecs)
    if (name == spec.name) return &spec;
  return nullptr;
}

}  // namespace velda::cli
