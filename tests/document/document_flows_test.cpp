// The document's commands driven through a scripted user interface.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>

#include "document/DocumentHarness.h"

namespace velda {
namespace {

bool exists(const std::string& path) { return access(path.c_str(), F_OK) == 0; }

using Lines = std::vector<std::string>;
using DocumentFlows = test::DocumentHarness;

TEST_F(DocumentFlows, OpenShowsTheSummaryAndSaveWritesTheLoadedFileWithItsMetadata) {
  const std::string path = saveTowns("towns.gaj");
  ASSERT_TRUE(openFile(path));
  ASSERT_EQ(requests_.size(), 1u);
  EXPECT_EQ(requests_[0].mode, FileRequest::Mode::Open);
  EXPECT_EQ(requests_[0].filter, "VELDA file (*.gaj)");
  EXPECT_EQ(requests_[0].defaultSuffix, "gaj");
  EXPECT_TRUE(requests_[0].offerIgnoreMetadata);
  EXPECT_EQ(console(), (Lines{"MetaData not found or ignored",
                              "Symbolic data matrix is composed by:", "2 variables (1 qualitatives, 1 quantitatives)",
                              "2 assertions build from 3 individuals"}));
  EXPECT_FALSE(document_.isModified());
  EXPECT_EQ(ui_.title, "VELDA - towns");
  EXPECT_EQ(document_.fileRecord().exportName, dir_.file("towns.kvf"));
  EXPECT_EQ(document_.metadataFileName(), path + ".xml");

  // Properties mark the document modified whichever button closes the dialog.
  EXPECT_TRUE(document_.editVariableProperties());
  EXPECT_TRUE(document_.isModified());

  // A loaded project is saved over its file without a dialog.
  EXPECT_TRUE(document_.save());
  EXPECT_EQ(requests_.size(), 1u);
  EXPECT_FALSE(document_.isModified());
  EXPECT_TRUE(exists(path + ".xml"));
  EXPECT_EQ(ui_.statusTexts.back(), "Saving file...");

  // Ignore metadata wins over the metadata file now beside the project.
  ASSERT_TRUE(openFile(path, true));
  EXPECT_TRUE(consoleHas("MetaData not found or ignored"));
  EXPECT_FALSE(document_.metadataLoaded());
  ASSERT_TRUE(openFile(path, false));
  EXPECT_TRUE(consoleHas("MetaData Loaded and transfered"));
  EXPECT_FALSE(consoleHas("MetaData not found or ignored"));
  EXPECT_TRUE(document_.metadataLoaded());

  // Closing forgets the metadata.
  EXPECT_TRUE(document_.closeData());
  EXPECT_FALSE(document_.metadataLoaded());
  EXPECT_EQ(document_.metadataFileName(), "metatest.xml");
  EXPECT_EQ(document_.console().count(), 0u);
}

TEST_F(DocumentFlows, CancelAtTheSaveQuestionKeepsEverythingAndAFailedOpenEndsEmpty) {
  ASSERT_TRUE(openFile(saveTowns("towns.gaj")));
  EXPECT_TRUE(document_.editVariableProperties());
  const SymbolicMatrix* before = document_.matrix();
  const size_t lines = document_.console().count();
  ui_.onAsk = [](const std::string&) { return Answer::Cancel; };
  EXPECT_FALSE(openFile(saveTowns("other.gaj")));
  EXPECT_EQ(ui_.questions, Lines{"Do you want to save current data ?"});
  EXPECT_EQ(requests_.size(), 1u);  // the open dialog never showed
  EXPECT_EQ(document_.matrix(), before);
  EXPECT_TRUE(document_.isModified());
  EXPECT_EQ(document_.console().count(), lines);

  // No goes on and drops the changes.
  ui_.onAsk = [](const std::string&) { return Answer::No; };
  EXPECT_TRUE(openFile(dir_.file("other.gaj")));
  EXPECT_EQ(ui_.title, "VELDA - other");

  test::writeFile(dir_.file("notes.gaj"), "not a project");
  EXPECT_FALSE(openFile(dir_.file("notes.gaj")));
  EXPECT_EQ(ui_.lastMessage(), "Load failed");
  EXPECT_EQ(ui_.messages.back().icon, MessageIcon::None);
  EXPECT_EQ(document_.matrix(), nullptr);
  EXPECT_EQ(ui_.title, "VELDA");
  EXPECT_FALSE(document_.state().hasData);
  EXPECT_FALSE(openFile(dir_.file("missing.gaj")));
  EXPECT_EQ(ui_.lastMessage(), "Can not open file " + dir_.file("missing.gaj"));
  EXPECT_EQ(ui_.messages.back().icon, MessageIcon::Warning);
}

TEST_F(DocumentFlows, JoinClosesTheDataFirstAndAFailedJoinLeavesNothing) {
  JoinValues files{saveTowns("first.gaj"), saveTowns("second.gaj")};
  ASSERT_TRUE(openFile(files.firstFile));
  EXPECT_TRUE(document_.editVariableProperties());
  const SymbolicMatrix* before = document_.matrix();
  int dialogs = 0;
  ui_.onJoin = [&](JoinValues& values) {
    ++dialogs;
    values = files;
    return true;
  };
  // Cancel at the save question: no dialog, nothing changes.
  ui_.onAsk = [](const std::string&) { return Answer::Cancel; };
  EXPECT_FALSE(document_.newByJoin());
  EXPECT_EQ(dialogs, 0);
  EXPECT_EQ(document_.matrix(), before);

  ui_.onAsk = [](const std::string&) { return Answer::No; };
  ASSERT_TRUE(document_.newByJoin());
  EXPECT_EQ(dialogs, 1);
  EXPECT_EQ(console(), (Lines{"Symbolic data matrix is composed by:", "4 variables (2 qualitatives, 2 quantitatives)",
                              "2 assertions"}));
  EXPECT_TRUE(document_.isModified());
  EXPECT_EQ(ui_.statusTexts.back(), "Joining files...");

  // The joined data is closed before the files are read; the failure
  // leaves the document without data.
  files.secondFile = dir_.file("notes.gaj");
  test::writeFile(files.secondFile, "not a project");
  EXPECT_FALSE(document_.newByJoin());
  EXPECT_EQ(ui_.lastMessage(), "Incorrect file type");
  EXPECT_EQ(document_.matrix(), nullptr);
  EXPECT_FALSE(document_.state().hasData);
}

TEST_F(DocumentFlows, RemovingEveryVariableIsRefusedAndChangesNothing) {
  ASSERT_TRUE(openFile(saveTowns("towns.gaj", 0, true)));
  ASSERT_TRUE(document_.isEnabled(ID_REMOVE_VARIABLES));
  const auto remove = [&](std::vector<int32_t> chosen) {
    ui_.onRemoveVariables = [chosen](VariableSelection& selection) {
      selection.variableIndexes = chosen;
      return true;
    };
    return document_.removeVariables();
  };
  // An empty choice ends silently; a variable that the dialog does not
  // offer (one the individuals hold) is refused, and repeats do not make
  // the choice "all the variables".
  const std::vector<std::pair<std::vector<int32_t>, std::string>> refused = {
      {{}, ""},
      {{0, 1, 2}, "Impossible to remove all the variables"},
      {{0, 2, 2}, "Variable 'town' can not be removed"}};
  for (const auto& [chosen, message] : refused) {
    ui_.messages.clear();
    EXPECT_FALSE(remove(chosen));
    EXPECT_EQ(ui_.lastMessage(), message);
    EXPECT_EQ(document_.matrix()->variableCount(), 3u);
    EXPECT_FALSE(document_.isModified());
  }
  EXPECT_TRUE(remove({2, 2, 2}));
  EXPECT_TRUE(consoleHas("1 variables removed:"));
  EXPECT_TRUE(consoleHas("   income"));
  EXPECT_TRUE(document_.isModified());
  EXPECT_FALSE(document_.isEnabled(ID_REMOVE_VARIABLES));
}

TEST_F(DocumentFlows, NoToTheNaQuestionBringsTheDependenceDialogBackWithTheSameChoice) {
  ASSERT_TRUE(openFile(saveTowns("towns.gaj")));
  // age is applicable if town in {x}: person 2 (y, 40) loses its age.
  std::vector<DependenceValues> shown;
  ui_.onDependence = [&](DependenceValues& values) {
    shown.push_back(values);
    if (shown.size() == 1) values = DependenceValues{0, {0}, {1}};
    return shown.size() != 3;  // Cancel the third time
  };
  ui_.onAsk = [](const std::string&) { return Answer::No; };
  EXPECT_FALSE(document_.addDependence());
  ASSERT_EQ(shown.size(), 3u);
  for (size_t i = 1; i < 3; ++i) {
    EXPECT_EQ(shown[i].motherIndex, 0);
    EXPECT_EQ(shown[i].applicableModalities, std::vector<int32_t>{0});
    EXPECT_EQ(shown[i].daughterIndexes, std::vector<int32_t>{1});
  }
  const std::string question =
      "Some values will be replaced by NA and this can not be undone.\nDo you wish to continue ?";
  EXPECT_EQ(ui_.questions, (Lines{question, question}));
  EXPECT_TRUE(document_.matrix()->rules.empty());
  EXPECT_FALSE(document_.isModified());

  shown.clear();
  ui_.onAsk = [](const std::string&) { return Answer::Yes; };
  EXPECT_TRUE(document_.addDependence());
  EXPECT_EQ(shown.size(), 1u);
  EXPECT_TRUE(consoleHas("1 rules added:"));
  EXPECT_EQ(document_.matrix()->rules.size(), 1u);
}

TEST_F(DocumentFlows, ReductionCancelledOutOfRangeOrOutOfMemoryChangesNothing) {
  ASSERT_TRUE(openFile(saveTowns("towns.gaj")));
  int32_t threshold = 0;
  ReductionValues offered;
  ui_.onReduction = [&](ReductionValues& values) {
    offered = values;
    if (threshold) values.threshold = threshold;
    return true;
  };
  ui_.onCancelPoll = [] { return true; };
  EXPECT_FALSE(document_.reduceAssertions());
  EXPECT_EQ(offered.threshold, 80);
  EXPECT_EQ(ui_.progressTitles, Lines{"Reducing assertions"});
  EXPECT_EQ(ui_.lastMessage(), "Reduction canceled");
  EXPECT_EQ(ui_.messages.back().icon, MessageIcon::Warning);
  EXPECT_FALSE(document_.isModified());

  // Out of range: the dialog's message, nothing run.
  threshold = 9;
  EXPECT_FALSE(document_.reduceAssertions());
  EXPECT_EQ(ui_.lastMessage(), "Please enter an integer between 10 and 100.");
  EXPECT_EQ(ui_.progressTitles.size(), 1u);

  ui_.onCancelPoll = nullptr;
  threshold = 50;
  EXPECT_TRUE(document_.reduceAssertions());
  EXPECT_EQ(document_.matrix()->reductionThreshold, 50);
  EXPECT_TRUE(document_.isEnabled(ID_VIEW_REDUCED_ASSERTIONS));
  EXPECT_TRUE(document_.isModified());

  // Memory running out ends the command with its message.
  ui_.onReduction = [](ReductionValues&) -> bool { throw std::bad_alloc(); };
  EXPECT_FALSE(document_.execute(ID_REDUCE_ASSERTIONS));
  EXPECT_EQ(ui_.lastMessage(), "Memory allocation failed");
  EXPECT_EQ(ui_.messages.back().icon, MessageIcon::Warning);
  EXPECT_NE(document_.matrix(), nullptr);

  // The same guard for a front end that runs a command itself.
  ui_.messages.clear();
  EXPECT_FALSE(document_.guardMemory([]() -> bool { throw std::bad_alloc(); }));
  EXPECT_EQ(ui_.lastMessage(), "Memory allocation failed");
  EXPECT_TRUE(document_.guardMemory([] { return true; }));
  EXPECT_EQ(ui_.messages.size(), 1u);
}

TEST_F(DocumentFlows, ExportMarksModifiedAndTheDestinationsNameChoosesSymbolicTextOrXml) {
  ASSERT_TRUE(openFile(saveTowns("towns.gaj")));
  std::string proposed;
  const auto propose = [&](const std::string& file) {
    return exportWith([&](ExportValues& values) {
      proposed = values.file;
      values.file = file;
    });
  };
  EXPECT_FALSE(propose("/nonexistent-velda-dir/out.kvf"));
  EXPECT_EQ(proposed, dir_.file("towns.kvf"));
  EXPECT_EQ(ui_.lastMessage(), "Can not open destination kvf file /nonexistent-velda-dir/out.kvf");
  EXPECT_TRUE(document_.isModified());
  EXPECT_TRUE(exists("tempkvf.dat"));

  // The next export proposes the last destination.
  EXPECT_FALSE(propose(""));
  EXPECT_EQ(proposed, "/nonexistent-velda-dir/out.kvf");
  EXPECT_EQ(ui_.lastMessage(), "You must set a file name");

  // "kvf" anywhere in the path means symbolic text.
  ASSERT_EQ(mkdir(dir_.file("kvfdata").c_str(), 0700), 0);
  const std::string text = dir_.file("kvfdata/out.xml");
  ASSERT_TRUE(exportTo(text));
  EXPECT_EQ(test::readFile(text).rfind("KORVA = (", 0), 0u);
  EXPECT_FALSE(exists(dir_.file("kvfdata/out_meta.xml")));
  const Lines tail = {"- Creating Korva file -", "exporting...", "[done]",
                      "building CompSymbMat...", "[done]",       "saving KVF file " + text + " ...",
                      "[done] - Finished"};
  EXPECT_EQ(consoleTail(tail), tail);

  // XML has its metadata beside it, in the same folder also for a name
  // without a dot.
  ASSERT_TRUE(exportTo(dir_.file("out.v2.xml")));
  EXPECT_EQ(test::readFile(dir_.file("out.v2.xml")).rfind("<?xml", 0), 0u);
  EXPECT_TRUE(exists(dir_.file("out.v2_meta.xml")));
  EXPECT_EQ(document_.metadataFileName(), dir_.file("out.v2_meta.xml"));
  EXPECT_TRUE(consoleHas("- Creating XML file -"));
  ASSERT_TRUE(exportTo(dir_.file("plain")));
  EXPECT_TRUE(exists(dir_.file("plain_meta")));

  // An empty subtitle takes the title.
  ASSERT_TRUE(exportWith([&](ExportValues& values) {
    values.file = dir_.file("out.kvf");
    values.title = "Survey";
    values.subtitle = "";
  }));
  EXPECT_EQ(document_.matrix()->subtitle, "Survey");
  const std::string kvf = test::readFile(dir_.file("out.kvf"));
  EXPECT_NE(kvf.find("title = \"Survey\""), std::string::npos);
  EXPECT_NE(kvf.find("sub_title = \"Survey\""), std::string::npos);

  // The next dialog starts from the stored texts.
  ExportValues next;
  exportWith([&](ExportValues& values) { next = values; });
  EXPECT_EQ(next.title, "Survey");
  EXPECT_EQ(next.subtitle, "Survey");
}

// One horde per assertion, with reduced classes that keep only the first
// member of each class: the reduced rows have narrower ages.
void giveHordes(SymbolicMatrix& matrix) {
  ASSERT_TRUE(matrix.indexAssertions());
  auto row = [&](const std::string& id, std::initializer_list<const char*> members) {
    auto made = std::make_unique<Assertion>(id, 0);
    for (const auto& variable : matrix.variables()) made->values.push_back(variable->newSymbolicValue());
    for (const char* member : members) {
      const Individual* individual = matrix.findIndividual(member);
      for (size_t v = 0; v < matrix.cellCount(); ++v) made->value(v).addCell(individual->cells[v], 1.0);
      ++made->memberCount;
    }
    return made;
  };
  matrix.hordes.resize(2);
  matrix.hordes[0].classes.push_back(row("a_1", {"1", "2"}));
  matrix.hordes[0].reducedClasses.push_back(row("a_1", {"1"}));
  matrix.hordes[1].classes.push_back(row("b_1", {"3"}));
  matrix.hordes[1].reducedClasses.push_back(row("b_1", {"3"}));
}

TEST_F(DocumentFlows, HordesExportFollowsTheReducedHordesBoxForTextAndTheReducedAssertionsBoxForXml) {
  ASSERT_TRUE(openFile(saveTowns("towns.gaj")));
  EXPECT_FALSE(document_.isEnabled(ID_EXPORT_HORDES));
  giveHordes(*document_.matrix());
  ASSERT_TRUE(document_.isEnabled(ID_EXPORT_HORDES));
  ASSERT_TRUE(document_.isEnabled(ID_VIEW_REDUCED_HORDES));

  // Text: the reduced classes, from "Export reduced Hordes".
  const auto hordesTo = [&](const std::string& name, bool reducedAssertions, bool reducedHordes) {
    return exportWith(
        [&](ExportValues& values) {
          values.file = dir_.file(name);
          values.exportReducedAssertions = reducedAssertions;  // no reduced assertion exists: taken as unticked
          values.exportReducedHordes = reducedHordes;
        },
        true);
  };
  ASSERT_TRUE(hordesTo("h.kvf", false, true));
  EXPECT_NE(test::readFile(dir_.file("h.kvf")).find("(30:30)"), std::string::npos);
  ASSERT_TRUE(hordesTo("h2.kvf", false, false));
  EXPECT_NE(test::readFile(dir_.file("h2.kvf")).find("(30:40)"), std::string::npos);

  // XML: "Export reduced assertions" decides, even with reduced hordes ticked.
  ASSERT_TRUE(hordesTo("h.xml", true, true));
  EXPECT_NE(test::readFile(dir_.file("h.xml")).find("<pmax>40</pmax>"), std::string::npos);
  EXPECT_FALSE(exists(dir_.file("h_meta.xml")));

  // The unwritable destination is refused before anything is written.
  EXPECT_FALSE(exportTo("/nonexistent-velda-dir/h.kvf", true));
  EXPECT_EQ(ui_.lastMessage(), "Can not open file /nonexistent-velda-dir/h.kvf");
}

TEST_F(DocumentFlows, TablesGoStraightToTheDestinationAndTheNextExportProposesThem) {
  ASSERT_TRUE(openFile(saveTowns("towns.gaj")));
  const std::string destination = dir_.file("towns.csv");
  std::vector<ViewerKind> viewers;
  ui_.onStartViewer = [&](const std::string& path, ViewerKind kind) {
    EXPECT_EQ(path, destination);
    viewers.push_back(kind);
    return true;
  };
  ui_.onExport = [&](ExportValues& values) {
    values.file = destination;
    values.format = ExportFormat::RsdaTable;
    return true;
  };
  ASSERT_TRUE(document_.exportAndView());
  // The tables' own layout is the writers' matter; here, which rows go.
  EXPECT_EQ(test::readFile(destination), "$M;town;x;y;$I;age;age\na;$M;2;0.5;0.5;$I;30;40\nb;$M;2;1;0;$I;50;50\n");
  EXPECT_EQ(viewers, std::vector<ViewerKind>{ViewerKind::Text});
  EXPECT_FALSE(exists("tempkvf.dat"));  // no symbolic text, no read-back
  EXPECT_TRUE(document_.isModified());
  const Lines tail = {"- Creating RSDA table -", "saving RSDA table " + destination + " ...", "[done] - Finished"};
  EXPECT_EQ(consoleTail(tail), tail);

  ExportValues proposed;
  ASSERT_TRUE(exportWith([&](ExportValues& values) {
    proposed = values;
    values.format = ExportFormat::TidyTable;
  }));
  EXPECT_EQ(proposed.file, destination);
  EXPECT_EQ(proposed.format, ExportFormat::RsdaTable);
  EXPECT_NE(test::readFile(destination).find("\na,age,interval,value,30,40,,\n"), std::string::npos);

  // Hordes follow "Export reduced Hordes", as symbolic text does: the
  // reduced class a_1 holds only the first member.
  giveHordes(*document_.matrix());
  ASSERT_TRUE(exportWith([&](ExportValues& values) { values.exportReducedAssertions = false; }, true));
  EXPECT_NE(test::readFile(destination).find("\na_1,age,interval,value,30,30,,\nb_1,"), std::string::npos);
  EXPECT_TRUE(consoleHas("saving tidy table " + destination + " ..."));

  // An unwritable destination gets the export's own message; a matrix
  // without active variable leaves the last table as it was.
  EXPECT_FALSE(exportTo("/nonexistent-velda-dir/t.csv"));
  EXPECT_EQ(ui_.lastMessage(), "Can not open destination kvf file /nonexistent-velda-dir/t.csv");
  const std::string before = test::readFile(destination);
  for (auto& variable : document_.matrix()->variables()) variable->active = 0;
  EXPECT_FALSE(exportTo(destination));
  EXPECT_EQ(ui_.lastMessage(), "No active variable");
  EXPECT_EQ(test::readFile(destination), before);
}

TEST_F(DocumentFlows, ViewFilesUseTheirPrefixesAndGoWithTheDocument) {
  std::vector<std::string> viewed;
  {
    Document document(ui_);
    nextFile_ = saveTowns("towns.gaj");
    ASSERT_TRUE(document.open());
    ui_.onStartViewer = [&](const std::string& path, ViewerKind kind) {
      EXPECT_EQ(kind, ViewerKind::Text);
      viewed.push_back(path);
      return viewed.size() < 3;  // the third viewer fails to start
    };
    ASSERT_TRUE(document.viewTable(Document::Table::Individuals));
    ASSERT_TRUE(document.viewTable(Document::Table::Assertions));
    ASSERT_EQ(viewed.size(), 2u);
    for (size_t i = 0; i < 2; ++i) {
      EXPECT_EQ(viewed[i].rfind(i == 0 ? "./dbind" : "./dbgrp", 0), 0u) << viewed[i];
      EXPECT_EQ(viewed[i].substr(viewed[i].size() - 4), ".txt");
    }
    // Table order: the loaded table has 3 buckets and "1", "2", "3" hash to
    // 49, 50, 51, so "3" comes first.
    EXPECT_EQ(test::readFile(viewed[0]),
              "Individual\tWeight\ttown\tage\tAssertions\n"
              "3\t1\tx\t50.00\tb\n"
              "1\t1\tx\t30.00\ta\n"
              "2\t1\ty\t40.00\ta\n");
    EXPECT_EQ(test::readFile(viewed[1]).rfind("Assertion\tIndividuals\ttown\tage\n", 0), 0u);

    // The same kind rewrites the same file; a failing viewer is reported.
    EXPECT_FALSE(document.viewTable(Document::Table::Individuals));
    EXPECT_EQ(viewed[2], viewed[0]);
    EXPECT_EQ(ui_.lastMessage(), "Creation of viewer subprocess failed");
    EXPECT_TRUE(exists(viewed[0]));
  }
  EXPECT_FALSE(exists(viewed[0]));
  EXPECT_FALSE(exists(viewed[1]));
}

TEST_F(DocumentFlows, EnabledCommandsFollowTheDocumentsState) {
  auto enabled = [&](std::initializer_list<int32_t> ids) {
    std::vector<int32_t> on;
    for (int32_t id : ids)
      if (document_.isEnabled(id)) on.push_back(id);
    return on;
  };
  const std::initializer_list<int32_t> dataCommands = {ID_FILE_SAVE,
                                                       ID_FILE_SAVE_AS,
                                                       ID_EXPORT,
                                                       ID_EXPORT_AND_VIEW,
                                                       ID_ADD_SINGLE_VALUED_VARIABLES,
                                                       ID_ADD_SET_VALUED_VARIABLE,
                                                       ID_VARIABLE_PROPERTIES,
                                                       ID_VIEW_ASSERTIONS,
                                                       ID_REFRESH_DISPLAYS};
  const std::initializer_list<int32_t> conditional = {ID_EXPORT_HORDES,      ID_DISCONNECT,
                                                      ID_REMOVE_VARIABLES,   ID_CREATE_TAXONOMY,
                                                      ID_REMOVE_TAXONOMIES,  ID_ADD_DEPENDENCE,
                                                      ID_REDUCE_ASSERTIONS,  ID_DIVIDE_ASSERTIONS,
                                                      ID_REDUCE_HORDES,      ID_VIEW_INDIVIDUALS,
                                                      ID_VIEW_HORDES,        ID_VIEW_TAXONOMIES,
                                                      ID_VIEW_DEPENDENCES,   ID_VIEW_REDUCED_ASSERTIONS,
                                                      ID_VIEW_VOLUME_MATRIX, ID_VIEW_REDUCED_HORDES};
  const std::initializer_list<int32_t> always = {ID_FILE_NEW,      ID_FILE_OPEN,    ID_NEW_BY_JOIN,  ID_APP_EXIT,
                                                 ID_CLEAR_CONSOLE, ID_SAVE_CONSOLE, ID_MAIN_TOOLBAR, ID_REDOCK_DISPLAYS,
                                                 ID_HELP_FINDER,   ID_APP_ABOUT};
  EXPECT_TRUE(enabled(dataCommands).empty());
  EXPECT_TRUE(enabled(conditional).empty());
  EXPECT_EQ(enabled(always).size(), always.size());
  EXPECT_FALSE(document_.execute(ID_FILE_SAVE));

  // Mixed kinds, no added variable: no division, no removal of variables.
  ASSERT_TRUE(openFile(saveTowns("towns.gaj")));
  EXPECT_EQ(enabled(dataCommands).size(), dataCommands.size());
  EXPECT_EQ(enabled(conditional),
            (std::vector<int32_t>{ID_CREATE_TAXONOMY, ID_ADD_DEPENDENCE, ID_REDUCE_ASSERTIONS, ID_VIEW_INDIVIDUALS}));
  ASSERT_TRUE(openFile(saveTowns("added.gaj", 0, true)));
  EXPECT_EQ(enabled(conditional), (std::vector<int32_t>{ID_REMOVE_VARIABLES, ID_CREATE_TAXONOMY, ID_ADD_DEPENDENCE,
                                                        ID_REDUCE_ASSERTIONS, ID_VIEW_INDIVIDUALS}));
}

TEST(DocumentPredicates, BoundariesOfTheEnabledWhenTests) {
  DocumentState state;
  state.hasData = true;
  state.variableCount = 3;
  state.cellCount = 3;
  EXPECT_FALSE(isEnabled(EnabledWhen::MoreVariablesThanCells, state));
  state.variableCount = 4;
  EXPECT_TRUE(isEnabled(EnabledWhen::MoreVariablesThanCells, state));

  // Divisible: individuals, and the variables all of one kind; a possible
  // mother: a dependence rewrites the individuals' cells, so a matrix
  // without individuals (aggregated in the database) takes none.
  struct Case {
    int32_t individuals, qualitative, quantitative, mothers;
    bool divisible, possibleMother;
  };
  for (const Case& c : {Case{1, 2, 0, 0, true, false}, Case{1, 2, 1, 0, false, false}, Case{1, 0, 1, 1, true, true},
                        Case{0, 0, 1, 1, false, false}}) {
    state.individualCount = c.individuals;
    state.qualitativeCount = c.qualitative;
    state.quantitativeCount = c.quantitative;
    state.possibleMothers = c.mothers;
    EXPECT_EQ(isEnabled(EnabledWhen::Divisible, state), c.divisible) << c.individuals << c.qualitative;
    EXPECT_EQ(isEnabled(EnabledWhen::PossibleMother, state), c.possibleMother) << c.individuals << c.mothers;
  }
  // A matrix aggregated in the database: the commands on individuals are
  // off, the others on.
  const DocumentState aggregated{.hasData = true,
                                 .variableCount = 2,
                                 .cellCount = 1,
                                 .qualitativeCount = 1,
                                 .taxonomyCount = 1,
                                 .possibleMothers = 1};
  for (int32_t id : {ID_ADD_DEPENDENCE, ID_REDUCE_ASSERTIONS, ID_DIVIDE_ASSERTIONS, ID_VIEW_INDIVIDUALS})
    EXPECT_TRUE(needsIndividuals(id) && !isCommandEnabled(id, aggregated)) << id;
  for (int32_t id : {ID_FILE_SAVE, ID_EXPORT, ID_EXPORT_AND_VIEW, ID_ADD_SINGLE_VALUED_VARIABLES,
                     ID_ADD_SET_VALUED_VARIABLE, ID_REMOVE_VARIABLES, ID_CREATE_TAXONOMY, ID_REMOVE_TAXONOMIES,
                     ID_VARIABLE_PROPERTIES, ID_VIEW_ASSERTIONS, ID_VIEW_TAXONOMIES})
    EXPECT_TRUE(!needsIndividuals(id) && isCommandEnabled(id, aggregated)) << id;
  DocumentState empty;
  empty.connectionOpen = true;
  EXPECT_TRUE(isEnabled(EnabledWhen::ConnectionOpen, empty));
  EXPECT_FALSE(isCommandEnabled(ID_FILE_SAVE, empty));
  EXPECT_FALSE(isCommandEnabled(12345, empty));

  // Every command number appears once in the table.
  for (const CommandInfo& a : commandTable()) {
    int count = 0;
    for (const CommandInfo& b : commandTable()) count += a.id == b.id;
    EXPECT_EQ(count, 1) << a.id;
  }
}

// The messages of each refusal are checked on the dialogs themselves.
TEST(DocumentDialogChecks, TheDialogsRules) {
  // The sample size is checked only when ticked; 10 to 10000 pass, with a
  // message that says 100.
  const std::string sizeText = "Number of individuals must be between 100 and 10000";
  struct Case {
    bool sampling;
    int32_t size;
    std::string refusal;
  };
  for (const Case& c : {Case{false, 9, ""}, Case{true, 9, sizeText}, Case{true, 10001, sizeText}, Case{true, 10, ""},
                        Case{true, 10000, ""}}) {
    NewValues values;
    values.tableName = "persons";
    values.sampling = c.sampling;
    values.sampleSize = c.size;
    const auto refusal = checkNewValues(values);
    EXPECT_EQ(refusal ? refusal->text : "", c.refusal) << c.size;
    EXPECT_EQ(refusal ? refusal->icon : MessageIcon::Information, MessageIcon::Information);
  }
  NewValues values;
  values.tableName = "persons";
  values.minimumSet = true;
  values.minimum = 0;
  EXPECT_EQ(checkNewValues(values).value_or(Refusal{}).text, "Minimum of individuals must be more than 0");
  values.minimum = 1;
  EXPECT_FALSE(checkNewValues(values));
  values.tableName.clear();
  values.query = "  ";
  EXPECT_TRUE(checkNewValues(values));  // a blank query is no query
  EXPECT_EQ(queryOf("persons", ""), "select * from persons");
  EXPECT_EQ(queryOf("", "select 1"), "select 1");

  EXPECT_TRUE(checkDivisionValues(DivisionValues{1}));
  EXPECT_FALSE(checkDivisionValues(DivisionValues{2}));
  EXPECT_FALSE(checkReductionValues(ReductionValues{100}));
  EXPECT_TRUE(checkReductionValues(ReductionValues{101}));
}

TEST(DocumentFileRecord, NamesMadeFromAChosenPath) {
  for (const auto& [path, name, title, exportName] :
       {std::array<std::string, 4>{"/data/v1.2/survey.gaj", "survey.gaj", "survey", "/data/v1.2/survey.kvf"},
        std::array<std::string, 4>{"/data/v1.2/survey", "survey", "survey", "/data/v1.2/survey.kvf"},
        std::array<std::string, 4>{"a.b.gaj", "a.b.gaj", "a.b", "a.b.kvf"}}) {
    const FileRecord record = FileRecord::fromPath(path);
    EXPECT_TRUE(record.valid);
    EXPECT_EQ(record.fileName, name);
    EXPECT_EQ(record.fileTitle, title);
    EXPECT_EQ(record.exportName, exportName);
  }
}

}  // namespace
}  // namespace velda
