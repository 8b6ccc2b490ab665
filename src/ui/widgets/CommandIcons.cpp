#include "ui/widgets/CommandIcons.h"

#include <QPainter>
#include <QPixmap>

#include "document/CommandTable.h"

namespace velda::ui {

namespace {

enum class Shape { Page, Folder, Disk, Grid, Tree, Panel, Round };

struct IconSpec {
  int32_t id;
  Shape shape;
  const char* mark;  // a short sign drawn over the shape
  QRgb colour;
};

constexpr QRgb kBlue = 0xff1f5fbf;
constexpr QRgb kGreen = 0xff1f8f3f;
constexpr QRgb kRed = 0xffbf2f1f;
constexpr QRgb kBrown = 0xff9f6f1f;
constexpr QRgb kPurple = 0xff6f2f9f;

const IconSpec kIcons[] = {
    {ID_FILE_NEW, Shape::Page, "", kBlue},
    {ID_FILE_OPEN, Shape::Folder, "", kBrown},
    {ID_FILE_SAVE, Shape::Disk, "", kBlue},
    {ID_EXPORT, Shape::Page, ">", kGreen},
    {ID_EXPORT_AND_VIEW, Shape::Page, "o", kGreen},
    {ID_EXPORT_HORDES, Shape::Page, "H", kGreen},
    {ID_HELP_FINDER, Shape::Round, "?", kBlue},
    {ID_ADD_SINGLE_VALUED_VARIABLES, Shape::Grid, "+", kGreen},
    {ID_ADD_SET_VALUED_VARIABLE, Shape::Grid, "{", kGreen},
    {ID_REMOVE_VARIABLES, Shape::Grid, "-", kRed},
    {ID_CREATE_TAXONOMY, Shape::Tree, "", kGreen},
    {ID_REMOVE_TAXONOMIES, Shape::Tree, "x", kRed},
    {ID_ADD_DEPENDENCE, Shape::Tree, "D", kPurple},
    {ID_REDUCE_ASSERTIONS, Shape::Grid, "v", kPurple},
    {ID_DIVIDE_ASSERTIONS, Shape::Grid, "/", kPurple},
    {ID_REDUCE_HORDES, Shape::Grid, "H", kPurple},
    {ID_VARIABLE_PROPERTIES, Shape::Panel, "P", kBlue},
    {ID_VIEW_INDIVIDUALS, Shape::Page, "I", kBlue},
    {ID_VIEW_ASSERTIONS, Shape::Grid, "A", kBlue},
    {ID_VIEW_HORDES, Shape::Grid, "H", kBlue},
    {ID_VIEW_TAXONOMIES, Shape::Tree, "T", kBlue},
    {ID_VIEW_DEPENDENCES, Shape::Tree, "D", kBlue},
    {ID_VIEW_REDUCED_ASSERTIONS, Shape::Grid, "r", kBrown},
    {ID_VIEW_VOLUME_MATRIX, Shape::Grid, "V", kRed},
    {ID_VIEW_REDUCED_HORDES, Shape::Grid, "h", kBrown},
    {ID_VARIABLES_DISPLAY, Shape::Panel, "V", kGreen},
    {ID_INDIVIDUALS_DISPLAY, Shape::Panel, "I", kGreen},
    {ID_DEPENDENCES_DISPLAY, Shape::Panel, "D", kGreen},
    {ID_REDOCK_DISPLAYS, Shape::Panel, "<", kBrown},
    {ID_REFRESH_DISPLAYS, Shape::Round, "R", kGreen},
};

void drawShape(QPainter& p, Shape shape, const QColor& colour) {
  p.setPen(QPen(colour.darker(150), 1));
  switch (shape) {
    case Shape::Page:
      p.setBrush(Qt::white);
      p.drawPolygon(QPolygon({QPoint(2, 0), QPoint(10, 0), QPoint(13, 3), QPoint(13, 14), QPoint(2, 14)}));
      p.drawLine(10, 0, 10, 3);
      p.drawLine(10, 3, 13, 3);
      return;
    case Shape::Folder:
      p.setBrush(colour.lighter(170));
      p.drawPolygon(QPolygon({QPoint(0, 3), QPoint(5, 3), QPoint(7, 5), QPoint(15, 5), QPoint(15, 13), QPoint(0, 13)}));
      return;
    case Shape::Disk:
      p.setBrush(colour);
      p.drawRect(1, 1, 13, 12);
      p.setBrush(Qt::white);
      p.drawRect(4, 1, 7, 4);
      p.drawRect(3, 8, 9, 5);
      return;
    case Shape::Grid:
      p.setBrush(Qt::white);
      p.drawRect(0, 1, 15, 13);
      p.setPen(QPen(colour.lighter(140), 1));
      for (int x = 5; x < 15; x += 5) p.drawLine(x, 2, x, 13);
      for (int y = 5; y < 14; y += 4) p.drawLine(1, y, 14, y);
      return;
    case Shape::Tree:
      p.drawLine(7, 3, 3, 10);
      p.drawLine(7, 3, 12, 10);
      p.setBrush(colour.lighter(150));
      p.drawEllipse(5, 0, 5, 5);
      p.drawEllipse(0, 9, 5, 5);
      p.drawEllipse(10, 9, 5, 5);
      return;
    case Shape::Panel:
      p.setBrush(Qt::white);
      p.drawRect(0, 1, 15, 13);
      p.setBrush(colour.lighter(160));
      p.drawRect(0, 1, 5, 13);
      return;
    case Shape::Round:
      p.setBrush(colour.lighter(170));
      p.drawEllipse(1, 0, 14, 14);
      return;
  }
}

QPixmap drawIcon(const IconSpec& spec) {
  QPixmap pixmap(16, 15);
  pixmap.fill(Qt::transparent);
  QPainter p(&pixmap);
  const QColor colour = QColor::fromRgba(spec.colour);
  drawShape(p, spec.shape, colour);
  if (*spec.mark) {
    QFont font = p.font();
    font.setPixelSize(10);
    font.setBold(true);
    p.setFont(font);
    p.setPen(colour);
    p.drawText(QRect(2, 3, 14, 12), Qt::AlignCenter, QString::fromLatin1(spec.mark));
  }
  return pixmap;
}

}  // namespace

QIcon commandIcon(int32_t commandId) {
  for (const IconSpec& spec : kIcons) {
    if (spec.id == commandId) return QIcon(drawIcon(spec));
  }
  return QIcon();
}

}  // namespace velda::ui
