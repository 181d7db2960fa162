#pragma once

#include <QDockWidget>
#include <QPixmap>
#include <functional>
#include <string>

#include "numerics/level_lines.h"

namespace orv {

// Draws the plot at the size it has.
class LevelLinesView : public QWidget {
  Q_OBJECT

 public:
  explicit LevelLinesView(QWidget* parent = nullptr);

  // Shows a plot; the result is empty, or says why there are no lines.
  std::string Show(const LevelLineInput& input);
  void Clear();
  bool HasPlot() const { return hasPlot_; }
  const LevelLineInput& Input() const { return input_; }
  QPixmap Picture();

  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  std::string Draw();

  LevelLineInput input_;
  bool hasPlot_ = false;
  QPixmap picture_;  // of the last drawing, at the widget's size
};

// The picture surface of the main window for level lines: a panel that stays at the window's side or floats.
class LevelLinesPanel : public QDockWidget {
  Q_OBJECT

 public:
  explicit LevelLinesPanel(QWidget* parent = nullptr);

  // Shows a plot and the panel with it; the result is empty, or says why there are no lines.
  std::string ShowPlot(const LevelLineInput& input);
  // Empties the panel and hides it.
  void ClearPlot();
  LevelLinesView& View() { return *view_; }

  // Writes the plot as .png, at the size shown, or as .svg. The result is empty, or says why there is no file.
  std::string SaveImage(const std::string& file);

  // Hears why an image was not saved; without a listener nobody does.
  std::function<void(const std::string&)> told;

 private:
  void AskAndSave();
  void CopyImage();

  LevelLinesView* view_;
};

}  // namespace orv
