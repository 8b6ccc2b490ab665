#pragma once

#include <QStringList>
#include <string>

#include "document/CommandValues.h"

class QWidget;

namespace velda::ui {

// Turns the program's filter texts ("text|pattern|text|pattern||", or a
// lone text with no pattern part) into Qt name filters that show exactly
// the given texts. A lone text restricts nothing.
QStringList qtNameFilters(const std::string& filter);

// The standard open or save dialog (Qt's own, so that Open can carry the
// "Ignore MetaData" box). The file-name field starts as "*.<suffix>".
// Returns false on Cancel.
[[nodiscard]] bool chooseFile(QWidget* parent, const FileRequest& request, FileChoice& choice);

}  // namespace velda::ui
