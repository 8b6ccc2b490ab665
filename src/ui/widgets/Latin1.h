#pragma once

#include <QFile>
#include <QString>
#include <string>

namespace velda::ui {

// The program keeps its texts as Latin-1 bytes; Qt shows them as QString.
inline QString toQt(const std::string& text) {
  return QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size()));
}

inline std::string fromQt(const QString& text) {
  const QByteArray bytes = text.toLatin1();
  return std::string(bytes.constData(), static_cast<size_t>(bytes.size()));
}

// File paths are the file system's bytes, not Latin-1 text: a name with
// characters beyond Latin-1 (or in UTF-8, as file systems usually hold it)
// must reach the system unchanged.
inline QString pathToQt(const std::string& path) { return QFile::decodeName(QByteArray::fromStdString(path)); }

inline std::string pathFromQt(const QString& path) { return QFile::encodeName(path).toStdString(); }

}  // namespace velda::ui
