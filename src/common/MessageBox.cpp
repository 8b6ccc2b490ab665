#include "common/MessageBox.h"

namespace velda {

namespace {
MessageBoxTarget* current = nullptr;
}

void setMessageBoxTarget(MessageBoxTarget* target) { current = target; }
MessageBoxTarget* messageBoxTarget() { return current; }

void showMessage(const std::string& text, MessageIcon icon) {
  if (current) current->showMessage(text, icon);
}

}  // namespace velda
