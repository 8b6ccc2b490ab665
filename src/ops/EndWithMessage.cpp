#include "ops/EndWithMessage.h"

#include <cstdlib>

#include "common/MessageBox.h"

namespace velda {

void endWithMessage(const char* text) {
  showMessage(text, MessageIcon::None);
  std::exit(0);
}

}  // namespace velda
