#include "ui/frame/AboutDialog.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "ui/widgets/SideButton.h"

namespace velda::ui {

AboutDialog::AboutDialog(QWidget* parent) : QDialog(parent) {
  setWindowTitle(QStringLiteral("About VELDA"));
  setFont(QFont(QStringLiteral("Arial"), 9));
  auto* name = new QLabel(QStringLiteral("VELDA 2.4"), this);
  QFont large(QStringLiteral("Arial"), 14, QFont::Bold);
  name->setFont(large);
  auto* version = new QLabel(QString::fromLatin1(kVersionLine), this);
  auto* credits = new QLabel(QStringLiteral("Symbolic data analysis from relational databases.\n"
                                            "Written by the VELDA developers."),
                             this);
  more_ = new QLabel(QStringLiteral("Built with Qt, unixODBC and the C++ standard library.\n"
                                    "Thanks to everyone who tested and reported problems."),
                     this);
  more_->setVisible(false);

  // Return closes the box, also after More.
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok, this);
  buttons->button(QDialogButtonBox::Ok)->setDefault(true);
  QPushButton* moreButton = makeSideButton(QStringLiteral("More"), this);
  buttons->addButton(moreButton, QDialogButtonBox::ActionRole);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(moreButton, &QPushButton::clicked, this, [this] { more_->setVisible(true); });

  auto* layout = new QVBoxLayout(this);
  layout->addWidget(name);
  layout->addWidget(version);
  layout->addWidget(credits);
  layout->addWidget(more_);
  layout->addWidget(buttons);
}

}  // namespace velda::ui
