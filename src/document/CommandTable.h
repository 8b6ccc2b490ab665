#pragma once

#include <cstdint>
#include <vector>

namespace velda {

// Command numbers, shared by the menus, the toolbars, the status-bar prompts
// and the document's dispatch.
enum CommandId : int32_t {
  ID_FILE_NEW = 57600,
  ID_FILE_OPEN = 57601,
  ID_FILE_SAVE = 57603,
  ID_FILE_SAVE_AS = 57604,
  ID_APP_ABOUT = 57664,
  ID_APP_EXIT = 57665,
  ID_HELP_FINDER = 57667,
  ID_VIEW_INDIVIDUALS = 32771,
  ID_VIEW_ASSERTIONS = 32772,
  ID_VARIABLE_PROPERTIES = 32773,
  ID_CREATE_TAXONOMY = 32774,
  ID_REMOVE_TAXONOMIES = 32775,
  ID_ADD_GROUP_VARIABLES = 32776,
  ID_REMOVE_VARIABLES = 32777,
  ID_EXPORT = 32778,
  ID_VIEW_TAXONOMIES = 32779,
  ID_ADD_DEPENDENCE = 32780,
  ID_VIEW_DEPENDENCES = 32781,
  ID_EXPORT_AND_VIEW = 32782,
  ID_DISCONNECT = 32783,
  ID_ADD_SINGLE_VALUED_VARIABLES = 32784,
  ID_ADD_SET_VALUED_VARIABLE = 32785,
  ID_NEW_BY_JOIN = 32786,
  ID_REDUCE_ASSERTIONS = 32787,
  ID_VIEW_REDUCED_MATRIX = 32788,
  ID_VIEW_REDUCED_ASSERTIONS = 32789,
  ID_VIEW_VOLUME_MATRIX = 32790,
  ID_VIEW_VOLUME_MATRIX_AFTER = 32791,
  ID_DIVIDE_ASSERTIONS = 32793,
  ID_VIEW_HORDES = 32794,
  ID_REDUCE_HORDES_OLD = 32795,
  ID_REDUCE_HORDES = 32796,
  ID_VIEW_REDUCED_HORDES = 32798,
  ID_EXPORT_HORDES = 32799,
  ID_VARIABLES_DISPLAY = 32802,
  ID_INDIVIDUALS_DISPLAY = 32803,
  ID_REDOCK_DISPLAYS = 32804,
  ID_DEPENDENCES_DISPLAY = 32806,
  ID_MAIN_TOOLBAR = 32810,
  ID_MODIFY_TOOLBAR = 32811,
  ID_VIEW_TOOLBAR = 32812,
  ID_WINDOWS_TOOLBAR = 32813,
  ID_REDOCK_TOOLBARS = 32814,
  ID_HOME_PAGE = 32815,
  ID_REFRESH_DISPLAYS = 32816,
  ID_CLEAR_CONSOLE = 32822,
  ID_SAVE_CONSOLE = 32823,
};

// The state of the document that the enabled-when tests read.
struct DocumentState {
  bool hasData = false;
  bool connectionOpen = false;
  int32_t variableCount = 0;
  int32_t cellCount = 0;  // values stored with each individual
  int32_t qualitativeCount = 0;
  int32_t quantitativeCount = 0;
  int32_t taxonomyCount = 0;
  int32_t possibleMothers = 0;  // qualitative variables among the cell ones
  int32_t dependenceCount = 0;
  int32_t individualCount = 0;
  int32_t reducedAssertionCount = 0;
  int32_t hordeCount = 0;
  int32_t reducedHordeCount = 0;
};

// When a command is enabled.
enum class EnabledWhen {
  Always,
  Data,
  HordesExist,
  ConnectionOpen,
  MoreVariablesThanCells,
  QualitativeVariable,
  TaxonomyExists,
  PossibleMother,
  IndividualExists,
  Divisible,  // individuals, and all variables quantitative or all qualitative
  ReducedAssertionExists,
  ReducedHordeExists,
  DependenceExists,
};

bool isEnabled(EnabledWhen rule, const DocumentState& state);

enum class Menu { None, File, Modify, View, ToolBars, Window, Console, Help };

// One command: its number, menu and menu text (with "&" mnemonics and a
// "\t" before the accelerator), status-bar prompt, tooltip and enabled-when
// test. Texts are null where the command has none.
struct CommandInfo {
  CommandId id;
  Menu menu;
  const char* menuText;
  const char* prompt;
  const char* tooltip;
  EnabledWhen enabledWhen;
  bool checkable;  // ticked while its toolbar or panel is shown
};

// Every command, in menu order within each menu; commands that have a
// string but no menu item come last with Menu::None.
const std::vector<CommandInfo>& commandTable();
// The command with this number, or null.
const CommandInfo* findCommand(int32_t id);
// Whether the command works on the individuals (dependences, reduction,
// division, hordes, the individuals table): a matrix that the database
// aggregated holds none, and these commands stay disabled for it.
bool needsIndividuals(int32_t id);
// Whether the command is enabled in this state (false for an unknown one).
bool isCommandEnabled(int32_t id, const DocumentState& state);

}  // namespace velda
