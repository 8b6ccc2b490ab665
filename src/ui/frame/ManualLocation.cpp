#include "ui/frame/ManualLocation.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace velda::ui {

QString manualIndexPath() {
  const QString installed = QDir::cleanPath(QCoreApplication::applicationDirPath() + QLatin1Char('/') +
                                            QStringLiteral(VELDA_MANUAL_FROM_PROGRAM) + QStringLiteral("/index.html"));
  if (QFileInfo::exists(installed)) return installed;
  const QString buildTree = QStringLiteral(VELDA_SOURCE_DOCS "/index.html");
  if (QFileInfo::exists(buildTree)) return buildTree;
  return QString();
}

}  // namespace velda::ui
