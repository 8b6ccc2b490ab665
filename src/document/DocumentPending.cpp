// Commands whose operations this build does not carry yet.
#include "document/Document.h"

namespace velda {

bool Document::unavailable(const char* command) {
  ui_.showMessage(std::string(command) + " is not available in this version", MessageIcon::Warning);
  return false;
}

bool Document::newByJoin() { return unavailable("New by join"); }
bool Document::exportMatrix() { return unavailable("Export"); }
bool Document::exportAndView() { return unavailable("Export"); }
bool Document::exportHordes() { return unavailable("Export Hordes"); }
bool Document::exportHordesAndView() { return unavailable("Export Hordes"); }
bool Document::reduceAssertions() { return unavailable("Reduce assertions"); }
bool Document::divideAssertions() { return unavailable("Divide assertions"); }
bool Document::reduceHordes() { return unavailable("Reduce Hordes"); }
bool Document::viewTable(Table) { return unavailable("View"); }
bool Document::viewTaxonomies() { ui_.showTaxonomies(); return true; }
bool Document::viewDependences() { ui_.showDependences(); return true; }
bool Document::viewVolumeMatrix() { ui_.showVolumeMatrix(); return true; }

}  // namespace velda
