#include "ui/panels/EmptyPage.h"

#include <QLabel>
#include <QListWidget>
#include <QVBoxLayout>

namespace velda::ui {

EmptyPage::EmptyPage(QWidget* parent) : QWidget(parent) {
  auto* list = new QListWidget(this);
  list->addItem(QStringLiteral("Empty"));
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(list, 1);
  layout->addWidget(new QLabel(QStringLiteral("Welcome to VELDA."), this));
}

}  // namespace velda::ui
