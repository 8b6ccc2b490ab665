#pragma once

namespace velda {

// Shows a plain message box and ends the process with status 0, without
// saving: the division's answer to its internal inconsistencies.
[[noreturn]] void endWithMessage(const char* text);

}  // namespace velda
