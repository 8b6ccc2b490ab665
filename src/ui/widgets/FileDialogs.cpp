#include "ui/widgets/FileDialogs.h"

#include <QCheckBox>
#include <QFileDialog>
#include <QGridLayout>
#include <algorithm>

#include "ui/widgets/Latin1.h"

namespace velda::ui {

namespace {

// A pattern list such as "*.xml;*.XML" in Qt's space-separated form.
QString qtPatterns(const QString& patterns) {
  QString spaced = patterns;
  spaced.replace(QLatin1Char(';'), QLatin1Char(' '));
  return spaced.trimmed().isEmpty() ? QStringLiteral("*") : spaced.trimmed();
}

bool isPlainSuffix(const QString& suffix) {
  return !suffix.isEmpty() && std::all_of(suffix.begin(), suffix.end(), [](QChar c) { return c.isLetterOrNumber(); });
}

// The suffix that a filter's first pattern names: "xml" for
// "XML file (*.xml)", nothing for "(*)".
QString filterSuffix(const QString& filter) {
  const qsizetype open = filter.lastIndexOf(QLatin1Char('('));
  const QString patterns = open < 0 ? QString() : filter.mid(open + 1).chopped(1);
  const QString first = patterns.section(QLatin1Char(' '), 0, 0);
  if (!first.startsWith(QStringLiteral("*."))) return QString();
  const QString suffix = first.mid(2);
  return isPlainSuffix(suffix) ? suffix : QString();
}

// The place of the chosen file type among the dialog's filters. The dialog
// names it by its visible text, without the patterns that it hides.
int32_t chosenFilter(const QFileDialog& dialog) {
  const QString chosen = dialog.selectedNameFilter();
  const QStringList filters = dialog.nameFilters();
  for (qsizetype i = 0; i < filters.size(); ++i)
    if (filters[i] == chosen || filters[i].startsWith(chosen + QStringLiteral(" ("))) return static_cast<int32_t>(i);
  return -1;
}

}  // namespace

QStringList qtNameFilters(const std::string& filter) {
  // Each filter carries its patterns in a trailing "(...)" that the dialog
  // hides (HideNameFilterDetails), so the visible text is the program's own.
  const QStringList parts = toQt(filter).split(QLatin1Char('|'));
  QStringList filters;
  for (qsizetype i = 0; i < parts.size(); i += 2) {
    if (parts[i].isEmpty()) continue;
    const QString patterns = i + 1 < parts.size() ? parts[i + 1] : QString();
    filters << parts[i] + QStringLiteral(" (") + qtPatterns(patterns) + QLatin1Char(')');
  }
  return filters;
}

bool chooseFile(QWidget* parent, const FileRequest& request, FileChoice& choice) {
  QFileDialog dialog(parent, toQt(request.title));
  dialog.setOption(QFileDialog::DontUseNativeDialog);
  dialog.setOption(QFileDialog::HideNameFilterDetails);
  const bool saving = request.mode == FileRequest::Mode::Save;
  dialog.setAcceptMode(saving ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
  dialog.setFileMode(saving ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
  dialog.setNameFilters(qtNameFilters(request.filter));
  // The name field starts empty: a literal "*.gaj" would be taken as a
  // file name on this platform. A name typed without a suffix gets the one
  // of the chosen filter, or else the request's own.
  const QString requestSuffix = isPlainSuffix(toQt(request.defaultSuffix)) ? toQt(request.defaultSuffix) : QString();
  auto followFilter = [&dialog, requestSuffix](const QString& filter) {
    const QString suffix = filterSuffix(filter);
    dialog.setDefaultSuffix(suffix.isEmpty() ? requestSuffix : suffix);
  };
  followFilter(dialog.selectedNameFilter());
  QObject::connect(&dialog, &QFileDialog::filterSelected, &dialog, followFilter);

  QCheckBox* ignoreMetadata = nullptr;
  if (request.offerIgnoreMetadata) {
    ignoreMetadata = new QCheckBox(QStringLiteral("Ignore MetaData"), &dialog);
    ignoreMetadata->setObjectName(QStringLiteral("ignoreMetadata"));
    if (auto* grid = qobject_cast<QGridLayout*>(dialog.layout()))
      grid->addWidget(ignoreMetadata, grid->rowCount(), 0, 1, -1);
  }

  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return false;
  choice.path = pathFromQt(dialog.selectedFiles().first());
  choice.filter = chosenFilter(dialog);
  choice.ignoreMetadata = ignoreMetadata && ignoreMetadata->isChecked();
  return true;
}

}  // namespace velda::ui
