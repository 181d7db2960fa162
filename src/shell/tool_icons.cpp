#include "shell/tool_icons.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>
#include <cmath>
#include <numbers>

namespace orv {
namespace {

constexpr double kUnits = 24;  // side of the field that glyphs are drawn in
constexpr double kStroke = 1.8;
constexpr int kBusyPointer = 11;

// Lines to stroke and areas to fill, in a field of kUnits.
struct Glyph {
  QPainterPath lines;
  QPainterPath areas;
};

constexpr double Radians(double degrees) {
  return degrees * std::numbers::pi / 180;
}

// A filled head of an arrow whose tip is at (x, y), pointing at the angle (0 to the right, 90 upwards).
void AddHead(Glyph& glyph, double x, double y, double angleDeg, double length = 5) {
  const auto corner = [&](double turn) {
    const double angle = Radians(angleDeg + turn);
    return QPointF(x - length * std::cos(angle), y + length * std::sin(angle));
  };
  glyph.areas.moveTo(x, y);
  glyph.areas.lineTo(corner(32));
  glyph.areas.lineTo(corner(-32));
  glyph.areas.closeSubpath();
}

void AddLine(Glyph& glyph, double x1, double y1, double x2, double y2) {
  glyph.lines.moveTo(x1, y1);
  glyph.lines.lineTo(x2, y2);
}

// An arrow from the first point to the second.
void AddArrow(Glyph& glyph, double x1, double y1, double x2, double y2, double head = 5) {
  const double length = std::hypot(x2 - x1, y2 - y1);
  const double part = length > 0 ? (length - head * 0.7) / length : 0;
  AddLine(glyph, x1, y1, x1 + (x2 - x1) * part, y1 + (y2 - y1) * part);
  AddHead(glyph, x2, y2, std::atan2(y1 - y2, x2 - x1) * 180 / std::numbers::pi, head);
}

// An arc about (x, y), from one angle over a span, with a head at its end.
void AddTurn(Glyph& glyph, double x, double y, double rx, double ry, double from, double span) {
  const QRectF box(x - rx, y - ry, 2 * rx, 2 * ry);
  glyph.lines.arcMoveTo(box, from);
  glyph.lines.arcTo(box, from, span - (span > 0 ? 12 : -12));
  const double end = Radians(from + span);
  const double sign = span > 0 ? 1 : -1;
  const double along = std::atan2(sign * ry * std::cos(end), -sign * rx * std::sin(end));
  AddHead(glyph, x + rx * std::cos(end), y - ry * std::sin(end), along * 180 / std::numbers::pi);
}

void AddPolygon(QPainterPath& path, std::initializer_list<QPointF> points) {
  auto point = points.begin();
  path.moveTo(*point);
  while (++point != points.end()) path.lineTo(*point);
  path.closeSubpath();
}

Glyph Pointer() {
  Glyph glyph;
  AddPolygon(glyph.areas, {{6, 2.5}, {6, 18}, {9.6, 14.8}, {12, 21}, {14.8, 19.8}, {12.3, 13.8}, {17.3, 13.6}});
  return glyph;
}

Glyph FourArrows() {
  Glyph glyph;
  AddArrow(glyph, 12, 12, 12, 1.5);
  AddArrow(glyph, 12, 12, 12, 22.5);
  AddArrow(glyph, 12, 12, 1.5, 12);
  AddArrow(glyph, 12, 12, 22.5, 12);
  return glyph;
}

// An open hand.
Glyph Hand() {
  Glyph glyph;
  QPainterPath& path = glyph.lines;
  path.moveTo(8, 21);
  path.cubicTo(6.5, 18, 4.5, 15.5, 3, 13.2);
  path.cubicTo(2.2, 11.8, 4, 10.8, 5.2, 11.9);
  path.lineTo(7.5, 14);
  path.lineTo(7.5, 5.5);
  path.cubicTo(7.5, 3.8, 10, 3.8, 10, 5.5);
  path.lineTo(10, 11);
  path.moveTo(10, 5.5);
  path.lineTo(10, 4);
  path.cubicTo(10, 2.2, 12.8, 2.2, 12.8, 4);
  path.lineTo(12.8, 11);
  path.moveTo(12.8, 5);
  path.cubicTo(12.8, 3.2, 15.6, 3.2, 15.6, 5);
  path.lineTo(15.6, 11.5);
  path.moveTo(15.6, 7.5);
  path.cubicTo(15.6, 5.8, 18.4, 5.8, 18.4, 7.5);
  path.lineTo(18.4, 15);
  path.cubicTo(18.4, 18, 17.4, 19, 16.8, 21);
  path.closeSubpath();
  return glyph;
}

Glyph Magnifier() {
  Glyph glyph;
  glyph.lines.addEllipse(QPointF(10, 10), 6.8, 6.8);
  QPainterPath handle;
  handle.moveTo(15, 15);
  handle.lineTo(21.2, 21.2);
  QPainterPathStroker stroker;
  stroker.setWidth(3);
  stroker.setCapStyle(Qt::RoundCap);
  glyph.areas.addPath(stroker.createStroke(handle));
  return glyph;
}

// With a double arrow: dragging changes the size.
Glyph ZoomDrag() {
  Glyph glyph = Magnifier();
  AddArrow(glyph, 10, 10, 10, 5.2, 3.4);
  AddArrow(glyph, 10, 10, 10, 14.8, 3.4);
  return glyph;
}

Glyph ZoomMinus() {
  Glyph glyph = Magnifier();
  AddLine(glyph, 7, 10, 13, 10);
  return glyph;
}

Glyph ZoomPlus() {
  Glyph glyph = ZoomMinus();
  AddLine(glyph, 10, 7, 10, 13);
  return glyph;
}

// A disc half light, half dark.
Glyph HalfDisc() {
  Glyph glyph;
  glyph.lines.addEllipse(QPointF(12, 12), 8.5, 8.5);
  glyph.areas.moveTo(12, 3.5);
  glyph.areas.arcTo(QRectF(3.5, 3.5, 17, 17), 90, 180);
  glyph.areas.closeSubpath();
  return glyph;
}

// A turn and the square of a stop.
Glyph TurnStop() {
  Glyph glyph;
  AddTurn(glyph, 12, 12, 8.8, 8.8, 60, 300);
  glyph.areas.addRoundedRect(QRectF(8.4, 8.4, 7.2, 7.2), 1, 1);
  return glyph;
}

// A growing curve, halted.
Glyph PlotPause() {
  Glyph glyph;
  glyph.lines.moveTo(2.5, 20.5);
  glyph.lines.cubicTo(6, 20, 8, 17.5, 9.5, 13);
  glyph.lines.cubicTo(10.5, 10, 10.5, 6.5, 11.8, 3.5);
  glyph.areas.addRoundedRect(QRectF(14, 11, 3, 10), 0.8, 0.8);
  glyph.areas.addRoundedRect(QRectF(19, 11, 3, 10), 0.8, 0.8);
  return glyph;
}

// A cube seen from its corner.
Glyph Cube() {
  Glyph glyph;
  AddPolygon(glyph.lines, {{12, 2.5}, {20.5, 7.2}, {20.5, 16.8}, {12, 21.5}, {3.5, 16.8}, {3.5, 7.2}});
  AddLine(glyph, 12, 12, 12, 21.5);
  AddLine(glyph, 12, 12, 3.5, 7.2);
  AddLine(glyph, 12, 12, 20.5, 7.2);
  return glyph;
}

// A face between two axes, turned.
Glyph FaceViews() {
  Glyph glyph;
  AddArrow(glyph, 4, 20, 4, 2.5, 4.5);
  AddArrow(glyph, 4, 20, 21.5, 20, 4.5);
  glyph.areas.addRect(QRectF(7.2, 10.8, 6, 6));
  AddTurn(glyph, 9.5, 14.5, 9.5, 10.5, 75, -68);
  return glyph;
}

Glyph PhotoCamera() {
  Glyph glyph;
  glyph.lines.addRoundedRect(QRectF(2.5, 7, 19, 13.5), 2, 2);
  glyph.lines.addEllipse(QPointF(12, 13.6), 4, 4);
  AddPolygon(glyph.areas, {{8, 7}, {9.4, 3.8}, {14.6, 3.8}, {16, 7}});
  glyph.areas.addEllipse(QPointF(18.4, 10), 1, 1);
  return glyph;
}

// A strip of film.
Glyph Film() {
  Glyph glyph;
  glyph.lines.addRoundedRect(QRectF(2.5, 4, 19, 16), 1.5, 1.5);
  AddLine(glyph, 7, 4, 7, 20);
  AddLine(glyph, 17, 4, 17, 20);
  for (const double y : {6.0, 11.0, 16.0}) {
    glyph.areas.addRect(QRectF(3.8, y, 2, 2));
    glyph.areas.addRect(QRectF(18.2, y, 2, 2));
  }
  AddPolygon(glyph.areas, {{10, 8.4}, {15, 12}, {10, 15.6}});
  return glyph;
}

// Nearer and farther: along a line of sight.
Glyph Dolly() {
  Glyph glyph;
  AddArrow(glyph, 12, 12, 12, 1.5);
  AddArrow(glyph, 12, 12, 12, 22.5);
  AddLine(glyph, 8.5, 9, 15.5, 9);
  AddLine(glyph, 5.5, 15, 18.5, 15);
  return glyph;
}

Glyph ArcRotate() {
  Glyph glyph;
  glyph.lines.addEllipse(QPointF(12, 12), 4, 4);
  AddTurn(glyph, 12, 12, 9, 9, 160, -140);
  AddTurn(glyph, 12, 12, 9, 9, 340, -140);
  return glyph;
}

// About the horizontal axis.
Glyph Pitch() {
  Glyph glyph;
  AddLine(glyph, 1.5, 12, 22.5, 12);
  AddTurn(glyph, 12, 12, 5, 9, 235, -290);
  return glyph;
}

// About the vertical axis.
Glyph Yaw() {
  Glyph glyph;
  AddLine(glyph, 12, 1.5, 12, 22.5);
  AddTurn(glyph, 12, 12, 9, 5, 145, 290);
  return glyph;
}

// About the line of sight.
Glyph Roll() {
  Glyph glyph;
  AddTurn(glyph, 12, 12, 8.5, 8.5, 220, -280);
  glyph.areas.addEllipse(QPointF(12, 12), 2, 2);
  return glyph;
}

// A body on its way about another.
Glyph Orbit() {
  Glyph glyph;
  glyph.lines.addEllipse(QPointF(12, 12), 10, 5);
  glyph.areas.addEllipse(QPointF(12, 12), 3, 3);
  glyph.areas.addEllipse(QPointF(19.6, 8.8), 2, 2);
  return glyph;
}

Glyph Crosshair() {
  Glyph glyph;
  glyph.lines.addEllipse(QPointF(12, 12), 6, 6);
  AddLine(glyph, 12, 2, 12, 9.5);
  AddLine(glyph, 12, 14.5, 12, 22);
  AddLine(glyph, 2, 12, 9.5, 12);
  AddLine(glyph, 14.5, 12, 22, 12);
  return glyph;
}

// The corners of a rectangle.
Glyph Frame() {
  Glyph glyph;
  for (const double sx : {-1.0, 1.0}) {
    for (const double sy : {-1.0, 1.0}) {
      AddLine(glyph, 12 + 9 * sx, 12 + 4 * sy, 12 + 9 * sx, 12 + 9 * sy);
      AddLine(glyph, 12 + 9 * sx, 12 + 9 * sy, 12 + 4 * sx, 12 + 9 * sy);
    }
  }
  AddLine(glyph, 9.5, 12, 14.5, 12);
  AddLine(glyph, 12, 9.5, 12, 14.5);
  return glyph;
}

Glyph Rotate() {
  Glyph glyph;
  AddTurn(glyph, 12, 12, 8.8, 8.8, 50, 300);
  return glyph;
}

Glyph Scale() {
  Glyph glyph;
  glyph.lines.addRect(QRectF(3, 13, 8, 8));
  AddArrow(glyph, 9, 15, 21, 3, 6);
  AddLine(glyph, 3, 8.5, 3, 3);
  AddLine(glyph, 3, 3, 8.5, 3);
  AddLine(glyph, 15.5, 21, 21, 21);
  AddLine(glyph, 21, 21, 21, 15.5);
  return glyph;
}

Glyph Triangle() {
  Glyph glyph;
  glyph.areas.moveTo(6, 3);
  glyph.areas.lineTo(20, 12);
  glyph.areas.lineTo(6, 21);
  glyph.areas.closeSubpath();
  return glyph;
}

struct KeyGlyph {
  const char* key;
  Glyph (*glyph)();
  int cursor;  // 0: none
};

constexpr KeyGlyph kGlyphs[] = {
    {"select", Pointer, 0},        {"pan", Hand, 201},
    {"zoom", ZoomDrag, 200},       {"zminus", ZoomMinus, 0},
    {"zplus", ZoomPlus, 0},        {"lightback", HalfDisc, 0},
    {"stop", TurnStop, 0},         {"frozenstart", PlotPause, 0},
    {"valisxyz", Cube, 0},         {"valisxy", FaceViews, 0},
    {"imagespot", PhotoCamera, 0}, {"movieframes", Film, 0},
    {"dolly", Dolly, 202},         {"arcrotate", ArcRotate, 203},
    {"pitch", Pitch, 204},         {"yaw", Yaw, 205},
    {"roll", Roll, 206},           {"orbit", Orbit, 207},
    {"pick", Crosshair, 208},      {"frame", Frame, 209},
    {"move", FourArrows, 210},     {"rotate", Rotate, 211},
    {"scale", Scale, 212},         {"demo", Triangle, 0},
};

void Draw(QPainter& painter, const Glyph& glyph, const QColor& colour, double width) {
  painter.setPen(QPen(colour, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.setBrush(Qt::NoBrush);
  painter.drawPath(glyph.lines);
  // The border of the areas, for pictures that stand on a wider copy of themselves.
  painter.setPen(width > kStroke ? QPen(colour, width - kStroke, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin)
                                 : QPen(Qt::NoPen));
  painter.setBrush(colour);
  painter.drawPath(glyph.areas);
}

// Paints a glyph whenever it is shown, in the colours of that time.
class GlyphEngine : public QIconEngine {
 public:
  explicit GlyphEngine(Glyph glyph) : glyph_(std::move(glyph)) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
    const QPalette palette = QGuiApplication::palette();
    QColor colour =
        palette.color(mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active, QPalette::ButtonText);
    if (mode == QIcon::Selected) colour = palette.color(QPalette::HighlightedText);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    const double side = std::min(rect.width(), rect.height());
    painter->translate(rect.center().x() + 0.5 - side / 2, rect.center().y() + 0.5 - side / 2);
    painter->scale(side / kUnits, side / kUnits);
    Draw(*painter, glyph_, colour, kStroke);
    painter->restore();
  }

  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    QPixmap picture(size);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    paint(&painter, QRect(QPoint(0, 0), size), mode, state);
    return picture;
  }

  QIconEngine* clone() const override { return new GlyphEngine(*this); }

 private:
  Glyph glyph_;
};

}  // namespace

const std::vector<std::string>& ToolIconKeys() {
  static const std::vector<std::string> keys{"select",   "pan",       "zoom",      "zminus",
                                             "zplus",    "lightback", "stop",      "frozenstart",
                                             "valisxyz", "valisxy",   "imagespot", "movieframes"};
  return keys;
}

QIcon ToolIcon(const std::string& key) {
  for (const KeyGlyph& known : kGlyphs) {
    if (key == known.key) return QIcon(new GlyphEngine(known.glyph()));
  }
  return {};
}

QPixmap CursorPicture(int number, double deviceRatio) {
  for (const KeyGlyph& known : kGlyphs) {
    if (known.cursor == 0 || known.cursor != number) continue;
    const double ratio = deviceRatio > 0 ? deviceRatio : 1;
    const int side = static_cast<int>(std::lround(kCursorSide * ratio));
    QPixmap picture(side, side);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(side / (kUnits + 4), side / (kUnits + 4));
    painter.translate(2, 2);
    const Glyph glyph = known.glyph();
    Draw(painter, glyph, Qt::white, kStroke + 2.4);
    Draw(painter, glyph, QColor(20, 20, 20), kStroke);
    painter.end();
    picture.setDevicePixelRatio(ratio);
    return picture;
  }
  return {};
}

QCursor ViewCursor(int number, double deviceRatio) {
  if (number == kBusyPointer) return QCursor(Qt::WaitCursor);
  const QPixmap picture = CursorPicture(number, deviceRatio);
  if (picture.isNull()) return QCursor(Qt::ArrowCursor);
  return QCursor(picture, kCursorSide / 2, kCursorSide / 2);
}

}  // namespace orv
