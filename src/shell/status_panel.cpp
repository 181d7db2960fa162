#include "shell/status_panel.h"

#include <QKeyEvent>
#include <QMouseEvent>

namespace orv {
ClickKeys ClickKeysOf(Qt::KeyboardModifiers modifiers, bool right) {
  ClickKeys keys;
  keys.right = right;
  keys.shift = modifiers.testFlag(Qt::ShiftModifier);
  keys.ctrl = modifiers.testFlag(Qt::ControlModifier);
  keys.alt = modifiers.testFlag(Qt::AltModifier);
  return keys;
}

StatusPanel::StatusPanel(QWidget* parent) : QLabel(parent) {
  setFocusPolicy(Qt::TabFocus);
  setCursor(Qt::PointingHandCursor);
  setFrameStyle(QFrame::Panel | QFrame::Sunken);
  setTextFormat(Qt::PlainText);
}

void StatusPanel::mousePressEvent(QMouseEvent* event) {
  if (pressed) pressed(ClickKeysOf(event->modifiers(), event->button() == Qt::RightButton));
}

void StatusPanel::mouseReleaseEvent(QMouseEvent*) {
  if (released) released();
}

void StatusPanel::keyPressEvent(QKeyEvent* event) {
  if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter && event->key() != Qt::Key_Space) {
    QLabel::keyPressEvent(event);
    return;
  }
  if (pressed) pressed(ClickKeysOf(event->modifiers(), false));
  if (released) released();
}

}  // namespace orv
