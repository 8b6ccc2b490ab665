#pragma once

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

}  // namespace velda::ui
