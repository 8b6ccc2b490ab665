#pragma once

#include <QString>

namespace velda::ui {

// The manual's front page, opened by Help and by the home page command.
// An installed program reads the manual installed beside it (its place
// relative to the program is fixed when the program is built, so a staged
// or moved installation still finds its own); a program run from the build
// tree reads the manual of the source tree. Empty when neither exists.
QString manualIndexPath();

}  // namespace velda::ui
