#pragma once

class QWidget;

namespace velda::ui {

// The start picture: a borderless window, centred, that closes itself
// after 5 seconds. Shown at most once per run; returns the window (null
// when it was already shown).
QWidget* showSplashOnce();

}  // namespace velda::ui
