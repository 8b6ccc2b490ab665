#pragma once

#include <gtest/gtest.h>
#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QMessageBox>
#include <clocale>
#include <functional>
#include <memory>
#include <string>

#include "ui/widgets/ModalDriver.h"

namespace velda::test {

// The one QApplication of a GUI test program, on Qt's offscreen platform
// unless the first call names another ("xcb": a real X server).
inline QApplication& guiApplication(const char* platform = "offscreen") {
  static int argc = 1;
  static char name[] = "velda_gui_test";
  static char* argv[] = {name, nullptr};
  static QApplication* application = [platform] {
    qputenv("QT_QPA_PLATFORM", platform);
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

// Answers the next message box with one of its buttons (by default its
// default button), recording what it said.
inline void answerNextMessage(QMessageBox::StandardButton button, ShownMessage* shown = nullptr) {
  onNextModal<QMessageBox>([button, shown](QMessageBox* box) {
    if (shown) {
      shown->text = box->text().toStdString();
      shown->icon = box->icon();
      ++shown->count;
    }
    button == QMessageBox::NoButton ? box->accept() : box->button(button)->click();
  });
}

inline void recordNextMessage(ShownMessage& shown) { answerNextMessage(QMessageBox::NoButton, &shown); }

// Presses OK and returns the message shown instead of closing, which must
// have the given icon.
inline std::string refusalOf(QDialog& dialog, QMessageBox::Icon icon = QMessageBox::Warning) {
  auto shown = std::make_shared<ShownMessage>();  // outlives the call if no message comes
  onNextModal<QMessageBox>([shown](QMessageBox* box) {
    shown->text = box->text().toStdString();
    shown->icon = box->icon();
    box->accept();
  });
  dialog.accept();
  EXPECT_NE(dialog.result(), QDialog::Accepted);
  EXPECT_EQ(shown->icon, icon) << shown->text;
  return shown->text;
}

}  // namespace velda::test
