// Commands whose operations this build does not carry yet.
#include "document/Document.h"

namespace velda {

bool Document::unavailable(const char* command) {
  ui_.showMessage(std::string(command) + " is not available in this version", MessageIcon::Warning);
  return false;
}

bool Document::newByJoin() { return unavailable("New by join"); }
bool Document::divideAssertions() { return unavailable("Divide assertions"); }
bool Document::reduceHordes() { return unavailable("Reduce Hordes"); }

}  // namespace velda
