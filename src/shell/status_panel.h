#pragma once

#include <QLabel>
#include <functional>

#include "window/plot_controls.h"

namespace orv {

// The keys held at a click.
ClickKeys ClickKeysOf(Qt::KeyboardModifiers modifiers, bool right);

// The first panel of the status bar: a text that can be clicked, or pressed with the keyboard.
class StatusPanel : public QLabel {
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
