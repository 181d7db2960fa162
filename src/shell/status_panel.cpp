#include "shell/status_panel.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>
#include <QToolTip>

#include "shell/form_parts.h"

namespace orv {
ClickKeys ClickKeysOf(Qt::KeyboardModifiers modifiers, bool right) {
  ClickKeys keys;
  keys.right = right;
  keys.shift = modifiers.testFlag(Qt::ShiftModifier);
  keys.ctrl = modifiers.testFlag(Qt::ControlModifier);
  keys.alt = modifiers.testFlag(Qt::AltModifier);
  return keys;
}

ElidedLabel::ElidedLabel(QWidget* parent) : QLabel(parent) {
  setTextFormat(Qt::PlainText);
  setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  setMinimumWidth(8 * fontMetrics().averageCharWidth());
}

QString ElidedLabel::Shown() const {
  const QFontMetrics letters = fontMetrics();
  const int room = contentsRect().width();
  const QString whole = text();
  const qsizetype end = whole.lastIndexOf('"');
  const QString rest = end < 0 ? QString() : whole.sliced(end);
  const int left = room - letters.horizontalAdvance(rest);
  if (left <= 0) return letters.elidedText(whole, Qt::ElideRight, room);
  return letters.elidedText(whole.chopped(rest.size()), Qt::ElideRight, left) + rest;
}

bool ElidedLabel::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip || Shown() == text()) return QLabel::event(event);
  const QString more = accessibleDescription();
  const QString tip = more.isEmpty() ? text() : text() + "\n" + more;
  QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), TipText(tip), this);
  return true;
}

void ElidedLabel::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  drawFrame(&painter);
  style()->drawItemText(&painter, contentsRect(), static_cast<int>(alignment()), palette(), isEnabled(), Shown(),
                        foregroundRole());
}

StatusPanel::StatusPanel(QWidget* parent) : ElidedLabel(parent) {
  setFocusPolicy(Qt::TabFocus);
  setCursor(Qt::PointingHandCursor);
  setFrameStyle(QFrame::Panel | QFrame::Sunken);
}

void StatusPanel::mousePressEvent(QMouseEvent* event) {
  if (pressed) pressed(ClickKeysOf(event->modifiers(), event->button() == Qt::RightButton));
}

void StatusPanel::mouseReleaseEvent(QMouseEvent*) {
  if (released) released();
}

void StatusPanel::keyPressEvent(QKeyEvent* event) {
  if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter && event->key() != Qt::Key_Space) {
    ElidedLabel::keyPressEvent(event);
    return;
  }
  if (pressed) pressed(ClickKeysOf(event->modifiers(), false));
  if (released) released();
}

}  // namespace orv
