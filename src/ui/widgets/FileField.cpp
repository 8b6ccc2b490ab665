#include "ui/widgets/FileField.h"

#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>

#include "ui/widgets/FileDialogs.h"
#include "ui/widgets/Latin1.h"
#include "ui/widgets/SideButton.h"

namespace velda::ui {

FileField::FileField(const FileRequest& request, QWidget* parent) : QWidget(parent), request_(request) {
  edit_ = new QLineEdit(this);
  edit_->setMinimumWidth(280);
  select_ = makeSideButton(QStringLiteral("Select..."), this);
  connect(select_, &QPushButton::clicked, this, &FileField::select);
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(edit_, 1);
  layout->addWidget(select_);
}

QString FileField::text() const { return edit_->text(); }
void FileField::setText(const QString& text) { edit_->setText(text); }

void FileField::select() {
  FileChoice choice;
  if (!chooseFile(this, request_, choice)) return;
  edit_->setText(pathToQt(choice.path));
  chosenFilter_ = choice.filter;
  emit fileChosen(edit_->text());
}

}  // namespace velda::ui
