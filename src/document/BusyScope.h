#pragma once

#include <string>

#include "document/UserInterface.h"

namespace velda {

// Shows a status text and the wait cursor while a command works, and clears
// both when it ends, whichever way it ends.
class BusyScope {
 public:
  BusyScope(UserInterface& ui, const std::string& statusText) : ui_(ui) {
    ui_.setWaitCursor(true);
    ui_.setStatusText(statusText);
  }
  ~BusyScope() {
    ui_.setStatusText("");
    ui_.setWaitCursor(false);
  }
  BusyScope(const BusyScope&) = delete;
  BusyScope& operator=(const BusyScope&) = delete;

 private:
  UserInterface& ui_;
};

}  // namespace velda
