#pragma once

#include <QLabel>
#include <functional>

#include "window/plot_controls.h"

namespace orv {

// The keys held at a click.
ClickKeys ClickKeysOf(Qt::KeyboardModifiers modifiers, bool right);

// A line of text whose place does not depend on it: what does not fit is left out, and the tip shows it whole.
class ElidedLabel : public QLabel {
 public:
  explicit ElidedLabel(QWidget* parent = nullptr);
  // What there is room for. What follows a name in quotes stays.
  QString Shown() const;

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
};

// The first panel of the status bar: a text that can be clicked, or pressed with the keyboard.
class StatusPanel : public ElidedLabel {
 public:
  explicit StatusPanel(QWidget* parent = nullptr);
  std::function<void(const ClickKeys&)> pressed;
  std::function<void()> released;

 protected:
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
};

}  // namespace orv
