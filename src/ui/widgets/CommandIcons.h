#pragma once

#include <QIcon>
#include <cstdint>

namespace velda::ui {

// The toolbar picture of a command, drawn in code on a 16 x 15 surface
// (a null icon for a command without one).
QIcon commandIcon(int32_t commandId);

}  // namespace velda::ui
