#include "document/CommandTable.h"

namespace velda {

namespace {

using E = EnabledWhen;

const std::vector<CommandInfo> kCommands = {
    // File
    {ID_FILE_NEW, Menu::File, "&New...\tCtrl+N", "Create new data with a query", "New", E::Always, false},
    {ID_FILE_OPEN, Menu::File, "&Open...\tCtrl+O", "Open a VELDA file", "Open", E::Always, false},
    {ID_FILE_SAVE, Menu::File, "&Save\tCtrl+S", "Save", "Save", E::Data, false},
    {ID_FILE_SAVE_AS, Menu::File, "Save &as...", "Save with a new name", "Save As", E::Data, false},
    {ID_NEW_BY_JOIN, Menu::File, "New by &join...\tCtrl+J", "Create new data by joining two files", nullptr, E::Always,
     false},
    {ID_EXPORT, Menu::File, "&Export...", "Export assertions to KORVA format", "Export", E::Data, false},
    {ID_EXPORT_HORDES, Menu::File, "&Export Hordes...", "Export Hordes to KORVA format", "Export Hordes",
     E::HordesExist, false},
    {ID_EXPORT_AND_VIEW, Menu::File, "Export and &view...", "Export to KORVA format and view result", "Export and View",
     E::Data, false},
    {ID_DISCONNECT, Menu::File, "Disconnect", "Disconnect the database", nullptr, E::ConnectionOpen, false},
    {ID_APP_EXIT, Menu::File, "E&xit", "Quit the application", "Exit", E::Always, false},
    // Modify
    {ID_ADD_SINGLE_VALUED_VARIABLES, Menu::Modify, "&Add single-valued variables...",
     "Add one ore more single-valued variables", "Add one ore more single-valued variables", E::Data, false},
    {ID_ADD_SET_VALUED_VARIABLE, Menu::Modify, "Add one set-valued multiple variable...",
     "Add one set-valued qualitative variable", "Add one set-valued qualitative variable", E::Data, false},
    {ID_REMOVE_VARIABLES, Menu::Modify, "Re&move variables...", "Remove group variables", "Remove group variables",
     E::MoreVariablesThanCells, false},
    {ID_CREATE_TAXONOMY, Menu::Modify, "&Create a taxonomy...",
     "Create the taxonomy of a categorical or modal variable", "Create Taxonomy", E::QualitativeVariable, false},
    {ID_REMOVE_TAXONOMIES, Menu::Modify, "&Remove taxonomies...", "Remove taxonomy", "Remove Taxonomy",
     E::TaxonomyExists, false},
    {ID_ADD_DEPENDENCE, Menu::Modify, "Add a dependence...", "Add a dependence", "Add Dependence", E::PossibleMother,
     false},
    {ID_REDUCE_ASSERTIONS, Menu::Modify, "Reduce assertions...", "Reduce assertions", "Reduce Assertions",
     E::IndividualExists, false},
    {ID_DIVIDE_ASSERTIONS, Menu::Modify, "Divide assertions...", "Divide Assertions", "Divide Assertions", E::Divisible,
     false},
    {ID_REDUCE_HORDES, Menu::Modify, "Reduce Hordes...", "Reduce Hordes", "Reduce Hordes", E::HordesExist, false},
    {ID_VARIABLE_PROPERTIES, Menu::Modify, "&Variable properties...\tCtrl+V", "Edit variables ouput mode",
     "Edit Variables", E::Data, false},
    // View
    {ID_VIEW_INDIVIDUALS, Menu::View, "&Individuals...\tCtrl+I", "View individuals table", "View individuals",
     E::IndividualExists, false},
    {ID_VIEW_ASSERTIONS, Menu::View, "&Assertions...\tCtrl+A", "View assertions", "View Assertions", E::Data, false},
    {ID_VIEW_HORDES, Menu::View, "&Hordes...\tCtrl+H", "View hordes", "View hordes", E::HordesExist, false},
    {ID_VIEW_TAXONOMIES, Menu::View, "&Taxonomies...\tCtrl+T", "View taxonomies", "View Taxonomies", E::TaxonomyExists,
     false},
    {ID_VIEW_DEPENDENCES, Menu::View, "&Dependences...\tCtrl+R", "View dependences definition and taxonomy",
     "View dependences", E::DependenceExists, false},
    {ID_VIEW_REDUCED_ASSERTIONS, Menu::View, "&Reduced assertions...", "View the reduced assertions",
     "View reduced Assertions", E::ReducedAssertionExists, false},
    {ID_VIEW_VOLUME_MATRIX, Menu::View, "&Volume matrix...", "View volume matrix before reduction",
     "View pre-red Volume Matrix", E::ReducedAssertionExists, false},
    {ID_VIEW_REDUCED_HORDES, Menu::View, "R&educed Hordes...", "View the reduced Hordes", "View Reduced Hordes",
     E::ReducedHordeExists, false},
    // ToolBars
    {ID_MAIN_TOOLBAR, Menu::ToolBars, "&Main toolbar", "Show the main toolbar", "Show the main toolbar", E::Always,
     true},
    {ID_MODIFY_TOOLBAR, Menu::ToolBars, "M&odify toolbar", "Show the modify toolbar", "Show the modify toolbar",
     E::Always, true},
    {ID_VIEW_TOOLBAR, Menu::ToolBars, "&View toolbar", "Show the view toolbar", "Show the view toolbar", E::Always,
     true},
    {ID_WINDOWS_TOOLBAR, Menu::ToolBars, "&Windows toolbar", "Show the windows toolbar", "Show the windows toolbar",
     E::Always, true},
    {ID_REDOCK_TOOLBARS, Menu::ToolBars, "&Redock toolbars", "Redock toolbars", "Redock toolbars", E::Always, false},
    // Window, with its Console submenu first
    {ID_CLEAR_CONSOLE, Menu::Console, "C&lear", "Clear the console", nullptr, E::Always, false},
    {ID_SAVE_CONSOLE, Menu::Console, "&Save to file", "Save to a file", nullptr, E::Always, false},
    {ID_VARIABLES_DISPLAY, Menu::Window, "&Variables display", "Show the variables toolbox",
     "Show the variables toolbox", E::Always, true},
    {ID_INDIVIDUALS_DISPLAY, Menu::Window, "&Individuals display", "Show the individuals toolbox",
     "Show the individuals toolbox", E::Always, true},
    {ID_DEPENDENCES_DISPLAY, Menu::Window, "&Dependences display", "Show the dependences toolbox",
     "Show the dependences toolbox", E::Always, true},
    {ID_REDOCK_DISPLAYS, Menu::Window, "&Redock displays", "Redock toolboxes", "Redock toolboxes", E::Always, false},
    {ID_REFRESH_DISPLAYS, Menu::Window, "R&efresh displays", "Refresh Displays", "Refresh", E::Data, false},
    // ?
    {ID_HELP_FINDER, Menu::Help, "&Help", nullptr, nullptr, E::Always, false},
    {ID_HOME_PAGE, Menu::Help, "VELDA &home page", nullptr, nullptr, E::Always, false},
    {ID_APP_ABOUT, Menu::Help, "&About VELDA...", "Information about VELDA", "About", E::Always, false},
    // Strings without a menu item
    {ID_ADD_GROUP_VARIABLES, Menu::None, nullptr, "Add group variables", "Add group variables", E::Always, false},
    {ID_VIEW_REDUCED_MATRIX, Menu::None, nullptr, "View matrix of reduced assertions", "View reduced Assertions matrix",
     E::Always, false},
    {ID_VIEW_VOLUME_MATRIX_AFTER, Menu::None, nullptr, "View volume matrix after reduction",
     "View post-red Volume Matrix", E::Always, false},
    {ID_REDUCE_HORDES_OLD, Menu::None, nullptr, "Reduce Hordes\\Reduce Hordes", nullptr, E::Always, false},
};

}  // namespace

bool isEnabled(EnabledWhen rule, const DocumentState& s) {
  switch (rule) {
    case E::Always: return true;
    case E::Data: return s.hasData;
    case E::HordesExist: return s.hasData && s.hordeCount > 0;
    case E::ConnectionOpen: return s.connectionOpen;
    case E::MoreVariablesThanCells: return s.hasData && s.variableCount > s.cellCount;
    case E::QualitativeVariable: return s.hasData && s.qualitativeCount > 0;
    case E::TaxonomyExists: return s.hasData && s.taxonomyCount > 0;
    case E::PossibleMother: return s.hasData && s.possibleMothers > 0 && s.individualCount > 0;
    case E::IndividualExists: return s.hasData && s.individualCount > 0;
    case E::Divisible:
      return s.hasData && s.individualCount > 0 && (s.qualitativeCount == 0 || s.quantitativeCount == 0);
    case E::ReducedAssertionExists: return s.hasData && s.reducedAssertionCount > 0;
    case E::ReducedHordeExists: return s.hasData && s.reducedHordeCount > 0;
    case E::DependenceExists: return s.hasData && s.dependenceCount > 0;
  }
  return false;
}

const std::vector<CommandInfo>& commandTable() { return kCommands; }

const CommandInfo* findCommand(int32_t id) {
  for (const CommandInfo& info : kCommands)
    if (info.id == id) return &info;
  return nullptr;
}

bool needsIndividuals(int32_t id) {
  const CommandInfo* info = findCommand(id);
  if (!info) return false;
  switch (info->enabledWhen) {
    case E::PossibleMother:
    case E::IndividualExists:
    case E::Divisible:
    case E::HordesExist:
    case E::ReducedHordeExists: return true;
    default: return false;
  }
}

bool isCommandEnabled(int32_t id, const DocumentState& state) {
  const CommandInfo* info = findCommand(id);
  return info && isEnabled(info->enabledWhen, state);
}

}  // namespace velda
