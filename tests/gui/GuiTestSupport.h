#pragma once

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>
#include <QTimer>
#include <clocale>
#include <functional>
#include <string>

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

// Runs `act` on the next modal widget of type T to appear (a dialog opened
// with exec() or a message box), from the event loop that runs it.
template <typename T>
void onNextModal(std::function<void(T*)> act) {
  auto* timer = new QTimer;
  timer->setInterval(5);
  QObject::connect(timer, &QTimer::timeout, [timer, act] {
    T* widget = qobject_cast<T*>(QApplication::activeModalWidget());
    if (!widget || !widget->isVisible()) return;
    timer->stop();
    timer->deleteLater();
    act(widget);
  });
  timer->start();
}

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
