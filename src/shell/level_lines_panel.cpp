#include "shell/level_lines_panel.h"

#include <QAction>
#include <QClipboard>
#include <QCoreApplication>
#include <QFileDialog>
#include <QGuiApplication>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <cmath>

#include "numerics/text.h"
#include "view/drawing_surface.h"
#include "view/level_line_plot.h"
#include "window/level_lines.h"

namespace orv {
namespace {

constexpr int kWishedWidth = 520;
constexpr int kWishedHeight = 390;
constexpr int kLeastWidth = 160;
constexpr int kLeastHeight = 120;

QColor ColourOf(const SurfaceColour& colour) {
  return {colour.red, colour.green, colour.blue};
}

bool IsPlace(const SurfacePoint& point) {
  return std::isfinite(point.x) && std::isfinite(point.y);
}

// Plots through a painter, whose pixels are the units.
class PainterSurface : public DrawingSurface {
 public:
  PainterSurface(QPainter& painter, const QSize& size) : painter_(painter), size_(size) {
    painter_.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
  }

  double Width() const override { return size_.width(); }
  double Height() const override { return size_.height(); }
  double UnitsPerPoint() const override { return ReadableUnitsPerPoint(Width(), Height()); }

  SurfaceText Measure(const std::string& text) override {
    const QFontMetricsF metrics(PainterFont());
    return {metrics.horizontalAdvance(QString::fromStdString(text)), metrics.ascent(), metrics.descent()};
  }

  void Text(const SurfacePoint& pen, const std::string& text, const SurfaceColour& colour) override {
    if (!IsPlace(pen)) return;
    painter_.setFont(PainterFont());
    painter_.setPen(ColourOf(colour));
    painter_.drawText(QPointF(pen.x, pen.y), QString::fromStdString(text));
  }

  void Lines(std::span<const SurfaceLine> lines, const SurfaceColour& colour, double width) override {
    QPainterPath path;
    for (const SurfaceLine& line : lines) {
      if (!IsPlace(line.begin) || !IsPlace(line.end)) continue;
      path.moveTo(line.begin.x, line.begin.y);
      path.lineTo(line.end.x, line.end.y);
    }
    painter_.strokePath(path, QPen(ColourOf(colour), width, Qt::SolidLine, Qt::RoundCap));
  }

  void Fill(const SurfaceBox& box, const SurfaceColour& colour) override {
    painter_.fillRect(QRectF(QPointF(box.left, box.top), QPointF(box.right, box.bottom)), ColourOf(colour));
  }

 private:
  QFont PainterFont() const {
    QFont font(QStringList{QString::fromStdString(Font().family), "DejaVu Sans"});
    font.setPixelSize(std::max(1, static_cast<int>(std::lround(Font().points * UnitsPerPoint()))));
    font.setBold(Font().bold);
    return font;
  }

  QPainter& painter_;
  QSize size_;
};

}  // namespace

LevelLinesView::LevelLinesView(QWidget* parent) : QWidget(parent) {
  setObjectName("LevelLinesView");
  setMinimumSize(kLeastWidth, kLeastHeight);
  setAccessibleName("Level lines");
  setContextMenuPolicy(Qt::ActionsContextMenu);
}

QSize LevelLinesView::sizeHint() const {
  return {kWishedWidth, kWishedHeight};
}

std::string LevelLinesView::Show(const LevelLineInput& input) {
  input_ = input;
  hasPlot_ = true;
  std::string errorText = Draw();
  update();
  // Behind a long run: the plot comes to be seen before the next step.
  QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
  return errorText;
}

void LevelLinesView::Clear() {
  hasPlot_ = false;
  input_ = {};
  picture_ = {};
  update();
}

std::string LevelLinesView::Draw() {
  const double ratio = devicePixelRatioF();
  picture_ = QPixmap(size() * ratio);
  picture_.setDevicePixelRatio(ratio);
  picture_.fill(Qt::white);
  if (!hasPlot_) return {};
  QPainter painter(&picture_);
  PainterSurface surface(painter, size());
  return PlotLevelLines(input_, surface);
}

QPixmap LevelLinesView::Picture() {
  if (picture_.size() != size() * devicePixelRatioF()) (void)Draw();
  return picture_;
}

void LevelLinesView::paintEvent(QPaintEvent* /*event*/) {
  QPainter(this).drawPixmap(0, 0, Picture());
}

LevelLinesPanel::LevelLinesPanel(QWidget* parent) : QDockWidget(parent), view_(new LevelLinesView(this)) {
  setObjectName("LevelLinesPanel");
  setWindowTitle("Level lines");
  setAllowedAreas(Qt::AllDockWidgetAreas);
  setFeatures(DockWidgetClosable | DockWidgetMovable | DockWidgetFloatable);
  setWidget(view_);

  auto* save = new QAction("&Save image...", view_);
  auto* copy = new QAction("&Copy image", view_);
  connect(save, &QAction::triggered, this, &LevelLinesPanel::AskAndSave);
  connect(copy, &QAction::triggered, this, &LevelLinesPanel::CopyImage);
  view_->addActions({save, copy});
}

std::string LevelLinesPanel::ShowPlot(const LevelLineInput& input) {
  setWindowTitle(QString::fromStdString("Level lines: " + Trim(input.Title)));
  show();
  raise();
  return view_->Show(input);
}

void LevelLinesPanel::ClearPlot() {
  view_->Clear();
  setWindowTitle("Level lines");
  hide();
}

std::string LevelLinesPanel::SaveImage(const std::string& file) {
  if (!view_->HasPlot()) return "There are no level lines to save.";
  const double ratio = devicePixelRatioF();
  LevelLineFile wanted;
  wanted.name = IsLevelLineFile(file) ? file : file + ".png";
  wanted.width = static_cast<int>(std::lround(view_->width() * ratio));
  wanted.height = static_cast<int>(std::lround(view_->height() * ratio));
  wanted.pixelRatio = ratio;
  std::string errorText;  // told when the plot was shown
  return WriteLevelLines(view_->Input(), wanted, errorText);
}

void LevelLinesPanel::AskAndSave() {
  const QString file = QFileDialog::getSaveFileName(this, "Save the level lines", "level_lines.png",
                                                    "Pictures (*.png);;Vector pictures (*.svg)");
  if (file.isEmpty()) return;
  const std::string message = SaveImage(file.toStdString());
  if (!message.empty() && told) told(message);
}

void LevelLinesPanel::CopyImage() {
  if (view_->HasPlot()) QGuiApplication::clipboard()->setPixmap(view_->Picture());
}

}  // namespace orv
