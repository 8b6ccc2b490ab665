#pragma once

class QAbstractItemView;

namespace velda::ui {

// Lets the user read every line of a list or tree whatever its length: a
// tree's column grows to its longest line, so that the view scrolls across
// instead of cutting the line, and resting the mouse on a line shows it
// whole in a tooltip.
void showWholeLines(QAbstractItemView* view);

}  // namespace velda::ui
