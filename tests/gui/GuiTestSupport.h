#pragma once

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>
#include <clocale>
#include <functional>
#include <string>

#include "ui/widgets/ModalDriver.h"

namespace velda::test {

// The one QApplication of a GUI test program (offscreen platform).
inline QApplication& guiApplication() {
  static int argc = 1;
  static char name[] = "velda_gui_test";
  static char* argv[] = {name, nullptr};
  static QApplication* application = [] {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    auto* app = new QApplication(argc, argv);
    std::setlocale(LC_NUMERIC, "C");
    return app;
  }();
  return *application;
}

using ui::onNextModal;

// What a message box said.
struct ShownMessage {
  std::string text;
  QMessageBox::Icon icon = QMessageBox::NoIcon;
  int count = 0;
};

// Records the next message box and closes it with its default button.
inline void recordNextMessage(ShownMessage& shown) {
  onNextModal<QMessageBox>([&shown](QMessageBox* box) {
    shown.text = box->text().toStdString();
    shown.icon = box->icon();
    ++shown.count;
    box->accept();
  });
}

// Answers the next message box with one of its buttons.
inline void answerNextMessage(QMessageBox::StandardButton button, ShownMessage* shown = nullptr) {
  onNextModal<QMessageBox>([button, shown](QMessageBox* box) {
    if (shown) {
      shown->text = box->text().toStdString();
      shown->icon = box->icon();
      ++shown->count;
    }
    box->button(button)->click();
  });
}

}  // namespace velda::test
