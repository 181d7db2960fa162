#include "view/level_line_plot.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "numerics/text.h"

namespace orv {
namespace {

constexpr const char* kPlotFont = "MS Serif";
constexpr double kFramePoints = 6;
constexpr double kTickPoints = 2.5;
constexpr double kGapPoints = 3;
constexpr double kSamplePoints = 18;  // of the legend's lines
constexpr double kLinePoints = 0.9;
constexpr double kFrameLinePoints = 0.5;
constexpr double kLabelMargin = 1;    // points around the label of a line
constexpr double kLegendPitch = 1.4;  // rows of the legend, in heights of a text
constexpr double kLegendShare = 0.4;  // of the surface at most
constexpr double kBaseShare = 0.5;
constexpr SurfaceColour kInk{0, 0, 0};
constexpr SurfaceColour kGround{0, 0, 0};  // the one ground on which every colour of the palette is seen

SurfaceColour ColourOf(Colour32 colour) {
  return {static_cast<std::uint8_t>(colour & 255), static_cast<std::uint8_t>(colour >> 8 & 255),
          static_cast<std::uint8_t>(colour >> 16 & 255)};
}

SurfaceFont FontOf(double points) {
  return {kPlotFont, points, false};
}

SurfaceBox Grown(const SurfaceBox& box, double margin) {
  return {box.left - margin, box.top - margin, box.right + margin, box.bottom + margin};
}

bool Holds(const SurfaceBox& outer, const SurfaceBox& inner) {
  return inner.left >= outer.left && inner.right <= outer.right && inner.top >= outer.top &&
         inner.bottom <= outer.bottom;
}

bool MeetsAny(const std::vector<SurfaceBox>& boxes, const SurfaceBox& box) {
  return std::any_of(boxes.begin(), boxes.end(), [&](const SurfaceBox& other) { return other.Meets(box); });
}

// A text with its box, the pen at the left end of the baseline.
void Print(DrawingSurface& surface, const SurfaceBox& box, const SurfaceText& extent, const std::string& text,
           const SurfaceColour& colour) {
  surface.Text({box.left, box.top + extent.ascent}, text, colour);
}

SurfaceBox BoxAt(double left, double top, const SurfaceText& extent) {
  return {left, top, left + extent.width, top + extent.height()};
}

// The frame of one plot on its surface.
class Frame {
 public:
  Frame(const LevelLineInput& input, const LevelRecords& levels, DrawingSurface& surface)
      : input_(input), levels_(levels), surface_(surface), unit_(surface.UnitsPerPoint()), gap_(kGapPoints * unit_) {}

  PlotArea Draw() {
    PassOverFailure([&] { area_.x = AxisOf(input_.X); });
    PassOverFailure([&] { area_.y = AxisOf(input_.Y); });
    surface_.setFont(FontOf(kFramePoints));
    row_ = surface_.Measure("0").height();
    Scale();
    if (!area_.HasRoom()) return area_;
    surface_.Fill(area_.box, kGround);
    DrawAxes();
    PrintTextsX();
    PrintTextsY();
    PrintLabels();
    return area_;
  }

 private:
  AxisScale AxisOf(const LevelAxis& axis) const {
    return ScaleAxis(axis(1), axis(axis.bounds(0).upper), input_.AxisText);
  }

  double Widest(const AxisScale& axis) {
    double widest = 0;
    for (int k = 0; k <= axis.steps; ++k) {
      widest = std::max(widest, surface_.Measure(axis.TextOf(axis.Tick(k))).width);
    }
    return widest;
  }

  double LegendWidth() {
    double widest = 0;
    surface_.setFont(FontOf(kLevelFont));
    for (const LevelRecord& level : levels_.values()) {
      widest = std::max(widest, surface_.Measure(Trim(level.Label)).width);
    }
    surface_.setFont(FontOf(kFramePoints));
    const double width = kSamplePoints * unit_ + widest + 3 * gap_;
    return levels_.values().empty() || width > kLegendShare * surface_.Width() ? 0 : width;
  }

  void Scale() {
    area_.legendWidth = LegendWidth();
    const double tick = kTickPoints * unit_;
    const double right = std::max(Widest(area_.x) / 2, gap_) + gap_;
    SurfaceBox& box = area_.box;
    box.left = Widest(area_.y) + tick + 2 * gap_;
    box.right = surface_.Width() - right - (area_.legendWidth > 0 ? area_.legendWidth + gap_ : 0);
    box.top = gap_ + 2 * (row_ + gap_);
    box.bottom = surface_.Height() - tick - 3 * gap_ - 2 * row_;
    box = {std::round(box.left), std::round(box.top), std::round(box.right), std::round(box.bottom)};
  }

  void DrawAxes() {
    const SurfaceBox& box = area_.box;
    const double tick = kTickPoints * unit_;
    std::vector<SurfaceLine> lines = {{{box.left, box.top}, {box.left, box.bottom}},
                                      {{box.left, box.bottom}, {box.right, box.bottom}},
                                      {{box.right, box.bottom}, {box.right, box.top}},
                                      {{box.right, box.top}, {box.left, box.top}}};
    for (int k = 0; k <= area_.x.steps; ++k) {
      const double x = PlaceX(k);
      lines.push_back({{x, box.bottom}, {x, box.bottom + tick}});
    }
    for (int k = 0; k <= area_.y.steps; ++k) {
      const double y = PlaceY(k);
      lines.push_back({{box.left, y}, {box.left - tick, y}});
    }
    surface_.Lines(lines, kInk, kFrameLinePoints * unit_);
  }

  double PlaceX(int k) const { return area_.At(area_.x.Tick(k), area_.y.low).x; }
  double PlaceY(int k) const { return area_.At(area_.x.low, area_.y.Tick(k)).y; }

  void PrintTextsX() {
    const double top = area_.box.bottom + kTickPoints * unit_ + gap_ / 2;
    std::vector<SurfaceBox> printed;
    for (int k = 0; k <= area_.x.steps; ++k) {
      const std::string text = area_.x.TextOf(area_.x.Tick(k));
      const SurfaceText extent = surface_.Measure(text);
      PrintApart(printed, BoxAt(PlaceX(k) - extent.width / 2, top, extent), extent, text);
    }
  }

  void PrintTextsY() {
    const double right = area_.box.left - kTickPoints * unit_ - gap_ / 2;
    std::vector<SurfaceBox> printed;
    for (int k = 0; k <= area_.y.steps; ++k) {
      const std::string text = area_.y.TextOf(area_.y.Tick(k));
      const SurfaceText extent = surface_.Measure(text);
      PrintApart(printed, BoxAt(right - extent.width, PlaceY(k) - extent.height() / 2, extent), extent, text);
    }
  }

  // Texts of an axis give way where they would touch the one before.
  void PrintApart(std::vector<SurfaceBox>& printed, const SurfaceBox& box, const SurfaceText& extent,
                  const std::string& text) {
    if (MeetsAny(printed, Grown(box, unit_))) return;
    Print(surface_, box, extent, text, kInk);
    printed.push_back(box);
  }

  void PrintLabels() {
    const SurfaceBox& box = area_.box;
    const std::string title = Trim(input_.Title);
    const SurfaceText titleExtent = surface_.Measure(title);
    const double middle = (box.left + box.right - titleExtent.width) / 2;
    Print(surface_, BoxAt(std::max(gap_, middle), gap_, titleExtent), titleExtent, title, kInk);

    const std::string labelY = Trim(input_.YLabel);
    Print(surface_, BoxAt(gap_, box.top - row_ - gap_, {}), surface_.Measure(labelY), labelY, kInk);

    const std::string labelX = Trim(input_.XLabel);
    const SurfaceText extentX = surface_.Measure(labelX);
    const double left = std::max(gap_, (box.left + box.right - extentX.width) / 2);
    Print(surface_, BoxAt(left, surface_.Height() - gap_ - row_, extentX), extentX, labelX, kInk);
  }

  const LevelLineInput& input_;
  const LevelRecords& levels_;
  DrawingSurface& surface_;
  double unit_;
  double gap_;
  double row_ = 0;  // height of a text
  PlotArea area_;
};

// The lines and labels of one plot within its frame.
class LevelDrawing {
 public:
  LevelDrawing(DrawingSurface& surface, const PlotArea& area)
      : surface_(surface), area_(area), unit_(surface.UnitsPerPoint()), width_(kLinePoints * unit_) {}

  void AddLevel(const std::vector<LevelPiece>& pieces, const LevelRecord& level) {
    std::vector<SurfaceLine> lines;
    lines.reserve(pieces.size());
    for (const LevelPiece& piece : pieces) {
      lines.push_back({area_.At(piece.x1, piece.y1), area_.At(piece.x2, piece.y2)});
    }
    surface_.Lines(lines, ColourOf(level.LineColour), width_);
    PlaceLabel(lines, level);
  }

  // Above all lines.
  void PrintLabels() {
    for (const PlacedLabel& label : labels_) {
      surface_.setFont(FontOf(label.level->LabelFont));
      surface_.Fill(label.box, kGround);
      Print(surface_, Grown(label.box, -kLabelMargin * unit_), label.extent, label.text,
            ColourOf(label.level->LabelColour));
    }
  }

  void DrawLegend(const LevelRecords& levels) {
    if (!(area_.legendWidth > 0)) return;
    const int count = static_cast<int>(levels.values().size());
    surface_.setFont(FontOf(kLevelFont));
    const double row = surface_.Measure("0").height();
    const double gap = kGapPoints * unit_;
    const double pitch = std::min(kLegendPitch * row, (area_.box.height() - 2 * gap) / count);
    SurfaceBox room;
    room.right = surface_.Width() - gap;
    room.left = room.right - area_.legendWidth;
    room.top = area_.box.top;
    room.bottom = room.top + pitch * count + 2 * gap;
    surface_.Fill(room, kGround);
    std::vector<SurfaceBox> printed;
    for (int t = count; t >= 1; --t) {  // the highest level on top
      const double y = room.top + gap + pitch * (count - t + kBaseShare);
      DrawLegendRow(levels(t), {room.left + gap, y}, printed);
    }
  }

 private:
  struct PlacedLabel {
    const LevelRecord* level;
    std::string text;
    SurfaceText extent;
    SurfaceBox box;  // with its margin
  };

  // At the end of the first piece where it has room, on the side that lies within the frame.
  void PlaceLabel(const std::vector<SurfaceLine>& lines, const LevelRecord& level) {
    const std::string text = Trim(level.Label);
    if (text.empty()) return;
    surface_.setFont(FontOf(level.LabelFont));
    const SurfaceText extent = surface_.Measure(text);
    const double margin = kLabelMargin * unit_;
    const double width = extent.width + 2 * margin;
    const double height = extent.height() + 2 * margin;
    const SurfaceBox inside = Grown(area_.box, -margin);
    for (const SurfaceLine& line : lines) {
      const double left = line.end.x + width <= inside.right ? line.end.x : line.end.x - width;
      const double lowest = std::max(inside.top, inside.bottom - height);
      const double top = std::clamp(line.end.y - height / 2, inside.top, lowest);
      const SurfaceBox box{left, top, left + width, top + height};
      if (!Holds(inside, box) || MeetsAny(boxes_, box)) continue;
      boxes_.push_back(box);
      labels_.push_back({&level, text, extent, box});
      return;
    }
  }

  void DrawLegendRow(const LevelRecord& level, const SurfacePoint& start, std::vector<SurfaceBox>& printed) {
    const SurfacePoint end{start.x + kSamplePoints * unit_, start.y};
    const SurfaceLine sample{start, end};
    surface_.Lines({&sample, 1}, ColourOf(level.LineColour), width_);
    const std::string text = Trim(level.Label);
    const SurfaceText extent = surface_.Measure(text);
    const SurfaceBox box = BoxAt(end.x + kGapPoints * unit_, start.y - extent.height() / 2, extent);
    if (MeetsAny(printed, box)) return;
    Print(surface_, box, extent, text, ColourOf(level.LabelColour));
    printed.push_back(box);
  }

  DrawingSurface& surface_;
  const PlotArea& area_;
  double unit_;
  double width_;
  std::vector<SurfaceBox> boxes_;
  std::vector<PlacedLabel> labels_;
};

}  // namespace

SurfacePoint PlotArea::At(double xValue, double yValue) const {
  return {box.left + (xValue - x.low) / (x.high - x.low) * box.width(),
          box.bottom - (yValue - y.low) / (y.high - y.low) * box.height()};
}

PlotArea DrawLevelFrame(const LevelLineInput& input, const LevelRecords& levels, DrawingSurface& surface) {
  const KeepFont keep(surface);
  return Frame(input, levels, surface).Draw();
}

void CONREC(DrawingSurface& surface, const PlotArea& area, const LevelAxis& X, const LevelAxis& Y, const LevelGrid& Z,
            LevelRecords& levels, std::string& errorText) {
  const KeepFont keep(surface);
  errorText.clear();
  try {
    CheckContourInput(X, Y, levels);
    if (!area.HasRoom()) return;
    LevelDrawing drawing(surface, area);
    for (LevelRecord& level : levels.values()) {
      if (level.Active == 0) level.Active = 1;
      drawing.AddLevel(TraceLevel(X, Y, Z, level.Level), level);
    }
    drawing.PrintLabels();
    drawing.DrawLegend(levels);
  } catch (const RuntimeFailure& failure) {
    errorText = failure.description();
  }
}

std::string PlotLevelLines(LevelLineInput input, DrawingSurface& surface,
                           const std::function<void()>& letEventsThrough) {
  PassOverFailure([&] { Arrange(input); });
  const Array<Colour32, 1> palette = BuildPalette();
  double lo = 0;
  double hi = 0;
  FindExtremes(input.Z, lo, hi);
  ApplyFactors(input.LowFactor, input.HighFactor, lo, hi);
  LevelRecords levels = MakeLevels(input, lo, hi, palette);
  const PlotArea area = DrawLevelFrame(input, levels, surface);
  std::string errorText;
  CONREC(surface, area, input.X, input.Y, input.Z, levels, errorText);
  if (letEventsThrough) letEventsThrough();
  return errorText;
}

}  // namespace orv
