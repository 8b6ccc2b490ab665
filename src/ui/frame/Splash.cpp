#include "ui/frame/Splash.h"

#include <QPainter>
#include <QPixmap>
#include <QSplashScreen>
#include <QTimer>

#include "ui/frame/AboutDialog.h"

namespace velda::ui {

namespace {

constexpr int kSplashMilliseconds = 5000;

QPixmap splashPicture() {
  QPixmap picture(360, 200);
  picture.fill(QColor(0x1f, 0x3f, 0x7f));
  QPainter p(&picture);
  p.setPen(Qt::white);
  p.setFont(QFont(QStringLiteral("Arial"), 36, QFont::Bold));
  p.drawText(QRect(0, 30, 360, 70), Qt::AlignCenter, QStringLiteral("VELDA"));
  p.setFont(QFont(QStringLiteral("Arial"), 10));
  p.drawText(QRect(0, 100, 360, 30), Qt::AlignCenter, QStringLiteral("Symbolic data analysis"));
  p.drawText(QRect(0, 140, 360, 30), Qt::AlignCenter, QString::fromLatin1(AboutDialog::kVersionLine));
  return picture;
}

}  // namespace

QWidget* showSplashOnce() {
  static bool shown = false;
  if (shown) return nullptr;
  shown = true;
  auto* splash = new QSplashScreen(splashPicture());
  splash->setAttribute(Qt::WA_DeleteOnClose);
  splash->show();
  QTimer::singleShot(kSplashMilliseconds, splash, &QWidget::close);
  return splash;
}

}  // namespace velda::ui
