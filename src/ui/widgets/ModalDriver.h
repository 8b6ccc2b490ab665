#pragma once

#include <QApplication>
#include <QTimer>
#include <functional>

namespace velda::ui {

// Runs `act` on the next modal widget of type T to appear (a dialog run
// with exec() or a message box), from inside the event loop that runs it.
// Scripted runs (the screenshots) and the GUI tests drive dialogs with it.
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

}  // namespace velda::ui
