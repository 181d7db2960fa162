#include "view/legend.h"

#include <algorithm>
#include <cmath>

#include "numerics/number_format.h"
#include "numerics/text.h"
#include "view/colour_scale.h"
#include "view/plot_texts.h"

namespace orv {
namespace {

constexpr int kTitleLines = 3;
constexpr double kTitleColumn = 3;
constexpr double kTitleLine = 3;
constexpr double kTitlePitch = 20;
constexpr double kTitleFont = 7;
constexpr double kUsualFont = 10;

constexpr double kFirstRow = 28;
constexpr double kRowPitch = 8;
constexpr std::size_t kLongestTitle = 1000;  // characters; no view shows more
constexpr int kSceneLabelGap = 3;            // levels between an end of the scale and its neighbour in the scene
constexpr double kTextHeight = 12;           // labels nearer than this would run into each other
constexpr double kSquareColumn = 8;
constexpr double kSquareWidth = 8;
constexpr double kSquareHeight = 4;
constexpr double kLabelColumn = 21;
constexpr double kLabelRise = 3;  // puts the middle of the digits on the middle of the square
constexpr double kBottomMargin = 8;

constexpr int kFewestDigits = 4;
constexpr int kMostDigits = 9;
constexpr double kSceneLabelSize = 0.25;
constexpr float kAxisPointGrowth = 5;
constexpr double kLeastContrast = 4.5;

using Texts = std::vector<std::string>;

bool LabelledLevel(int level, int levels, double style) {
  return level == 1 || level == levels || level % (style == 0 ? 5 : 6) == 3;
}

double AtPosition(double position, double minimum, double maximum) {
  if (position == 0) return minimum;
  return position == 1 ? maximum : position * (maximum - minimum) + minimum;
}

Texts NumberTexts(const std::vector<double>& values, int digits) {
  Texts texts;
  for (const double value : values) texts.push_back(SignificantText(value, digits));
  return texts;
}

// Numbers with the fewest digits that tell neighbours apart; of equal values with the fewest at all.
Texts DistinctTexts(const std::vector<double>& values) {
  if (values.front() == values.back()) return NumberTexts(values, kFewestDigits);
  Texts texts;
  for (int digits = kFewestDigits; digits <= kMostDigits; ++digits) {
    texts = NumberTexts(values, digits);
    if (std::adjacent_find(texts.begin(), texts.end()) == texts.end()) break;
  }
  return texts;
}

std::string BracketText(double plot, const std::string& number) {
  if (plot == 19) return " (R sputt" + number + " ) ";
  return (plot >= 90 && plot <= 94 ? " (R " : "(R ") + number + " )";
}

// The antilogarithm of a logarithm with the unit, in brackets; empty for one beyond all numbers.
std::string AntilogText(double logarithm, const std::string& unit) {
  const double value = std::pow(10.0, logarithm);
  if (!std::isfinite(value) || value == 0) return "";
  return "[" + Trim(SignificantText(value, kFewestDigits)) + (unit.empty() ? "" : " " + unit) + "]";
}

void Append(LegendLabel& label, const std::string& plain) {
  const std::string before = label.Text();
  label.plain = before.empty() || before.back() == ' ' ? plain : " " + plain;
  if (plain.empty()) label.plain.clear();
}

double Luminance(const Rgba& colour) {
  const auto linear = [](double c) { return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4); };
  return 0.2126 * linear(colour.red) + 0.7152 * linear(colour.green) + 0.0722 * linear(colour.blue);
}

double Contrast(const Rgba& a, const Rgba& b) {
  const double first = Luminance(a);
  const double second = Luminance(b);
  return (std::max(first, second) + 0.05) / (std::min(first, second) + 0.05);
}

// The text cut at carriage returns and line feeds; both together are one.
Texts AtReturns(const std::string& text) {
  Texts parts(1);
  for (const char c : ReplaceAll(text, "\r\n", "\r")) {
    if (c == '\r' || c == '\n') {
      parts.emplace_back();
    } else {
      parts.back().push_back(c);
    }
  }
  return parts;
}

// The largest count up to `most` that fits, 0 for none: a longer text is never narrower.
template <class Fits>
std::size_t MostThatFits(std::size_t most, const Fits& fits) {
  std::size_t low = 0;
  while (low < most) {
    const std::size_t middle = low + (most - low + 1) / 2;
    if (fits(middle)) {
      low = middle;
    } else {
      most = middle - 1;
    }
  }
  return low;
}

// Puts words into a line as long as it fits and returns the rest. A word that no line can hold is cut.
std::string TakeLine(const std::string& text, double width, const std::function<double(const std::string&)>& measure,
                     std::string& rest) {
  rest.clear();
  if (measure(text) <= width) return text;
  std::size_t cut = std::string::npos;
  for (std::size_t blank = text.find(' ', 1); blank != std::string::npos; blank = text.find(' ', blank + 1)) {
    if (measure(text.substr(0, blank)) > width) break;
    cut = blank;
  }
  std::string line = text.substr(0, cut);
  if (cut == std::string::npos) {
    const auto fits = [&](std::size_t count) { return measure(LeftCharacters(text, count)) <= width; };
    line = LeftCharacters(text, std::max<std::size_t>(1, MostThatFits(CharacterCount(text), fits)));
  }
  rest = Trim(text.substr(line.size()));
  return line;
}

std::string Shortened(const std::string& text, double width, const std::function<double(const std::string&)>& measure) {
  const auto fits = [&](std::size_t count) { return measure(LeftCharacters(text, count) + "...") <= width; };
  return Trim(LeftCharacters(text, MostThatFits(CharacterCount(text), fits))) + "...";
}

ColourScale ScaleOf(const PointLists& lists, const ViewState& state) {
  return {state.ColorStyle, lists.legend.LogScale};
}

// Prints the title and returns the row at which the legend begins.
double DrawTitle(const LegendInput& input, glxCtl& control) {
  control.ForeColor(input.state.TextColour());
  control.FontSize(kTitleFont);
  const int lines = input.state.ScaleMode < 3 ? kTitleLines : 1;
  const double width = control.Width() / control.DeviceRatio() - 2 * kTitleColumn;
  const Texts title =
      TitleLines(input.lists.Title, lines, width, [&](const std::string& text) { return control.StatusWidth(text); });
  double line = kTitleLine;
  for (const std::string& text : title) {
    if (!text.empty()) control.StatusPrint(text, kTitleColumn, line);
    line += kTitlePitch;
  }
  return kFirstRow + kTitlePitch * (static_cast<double>(title.size()) - 1);
}

void DrawSquares(const LegendInput& input, glxCtl& control, double firstRow, double pitch) {
  const ColourScale scale = ScaleOf(input.lists, input.state);
  const int levels = scale.LegendLevels();
  for (int k = 1; k <= levels; ++k) {
    control.ForeColor(scale.Of(LegendPosition(k, levels), 0, 1));
    control.StatusSquare(kSquareColumn, (levels - k) * pitch + firstRow, kSquareWidth, std::min(kSquareHeight, pitch));
  }
}

// Labels between the ends give way where they would touch a neighbour.
void DrawFlatLabels(const LegendInput& input, glxCtl& control, double firstRow, double pitch) {
  const ColourScale scale = ScaleOf(input.lists, input.state);
  const int levels = scale.LegendLevels();
  int below = 1 - levels;
  for (const LegendLabel& label : LegendLabels(input.lists, input.state.ColorStyle)) {
    const bool end = label.level == 1 || label.level == levels;
    const double toBelow = (label.level - below) * pitch;
    const double toTop = (levels - label.level) * pitch;
    if (!end && std::min(toBelow, toTop) < kTextHeight) continue;
    below = label.level;
    const Rgba colour = scale.Of(label.position, 0, 1);
    control.ForeColor(ReadableColour(colour, input.state.Background(), input.state.TextColour()));
    control.StatusPrint(label.Text(), kLabelColumn, toTop + firstRow - kLabelRise);
  }
}

void DrawSceneLabels(const LegendInput& input, glxCtl& control) {
  const ColourScale scale = ScaleOf(input.lists, input.state);
  const double length = AxisLength(input.RRMAXAXES, input.state.options);
  const int levels = scale.LegendLevels();
  for (const LegendLabel& label : LegendLabels(input.lists, input.state.ColorStyle)) {
    const int toEnd = std::min(label.level - 1, levels - label.level);
    if (toEnd != 0 && toEnd < kSceneLabelGap) continue;
    const Rgba level = scale.Of(label.position, 0, 1);
    const Rgba reversed{level.blue, level.green, level.red, 1};
    const Rgba colour = ReadableColour(reversed, input.state.Background(), input.state.TextColour());
    const double distance = length * label.growth;
    const std::string text = label.Text();
    control.Text3D(input.labelFont, text, distance, 0, 0, kSceneLabelSize, colour);
    control.Text3D(input.labelFont, text, 0, distance, 0, kSceneLabelSize, colour);
    control.Text3D(input.labelFont, text, 0, 0, distance, kSceneLabelSize, colour);
  }
}

}  // namespace

double LegendPosition(int level, int levels) {
  return level == levels ? 1 : static_cast<double>(level - 1) / (levels - 1);
}

double LegendGrowth(int level, int levels) {
  return 1 + static_cast<double>(level - levels) / levels / 3;
}

std::vector<LegendLabel> LegendLabels(const PointLists& lists, double ColorStyle) {
  const LegendRange& range = lists.legend;
  const int levels = ColourScale{ColorStyle, 0}.LegendLevels();
  std::vector<LegendLabel> labels;
  std::vector<double> numbers;
  std::vector<double> physical;
  for (int k = 1; k <= levels; ++k) {
    if (!LabelledLevel(k, levels, ColorStyle)) continue;
    LegendLabel label;
    label.level = k;
    label.position = LegendPosition(k, levels);
    label.growth = LegendGrowth(k, levels);
    numbers.push_back(AtPosition(label.position, range.LegendMin, range.LegendMax));
    physical.push_back(AtPosition(label.position, range.ScaleMin, range.ScaleMax));
    labels.push_back(label);
  }
  const bool normalised = range.ScaleMin != range.LegendMin || range.ScaleMax != range.LegendMax;
  const Texts numberTexts = DistinctTexts(numbers);
  const Texts physicalTexts = DistinctTexts(physical);
  for (std::size_t n = 0; n < labels.size(); ++n) {
    LegendLabel& label = labels[n];
    label.number = numberTexts[n];
    if (normalised) label.bracket = BracketText(lists.IndexPlot, physicalTexts[n]);
    if (label.level == 1 && range.HasNonPositive == 1) {
      if (range.LogScale == 1) label.note = " (i.e. =0 or <0)";
      if (range.LogScale == 2) label.note = " (or  =0  or <0)";
    }
    if (range.LogScale >= 1) {
      Append(label, AntilogText(normalised ? physical[n] : numbers[n], range.unit));
    } else if (label.level == levels) {
      Append(label, range.unit);
    }
  }
  return labels;
}

Rgba ReadableColour(const Rgba& colour, const Rgba& background, const Rgba& text) {
  constexpr int kSteps = 16;
  for (int step = 0; step < kSteps; ++step) {
    const float share = static_cast<float>(step) / kSteps;
    const auto mix = [&](float own, float other) { return own + (other - own) * share; };
    const Rgba mixed{mix(colour.red, text.red), mix(colour.green, text.green), mix(colour.blue, text.blue),
                     colour.alpha};
    if (Contrast(mixed, background) >= kLeastContrast) return mixed;
  }
  return {text.red, text.green, text.blue, colour.alpha};
}

Texts TitleLines(const std::string& title, int lines, double width,
                 const std::function<double(const std::string&)>& measure) {
  Texts waiting = AtReturns(LeftCharacters(title, kLongestTitle));
  Texts out;
  while (!waiting.empty()) {
    if (static_cast<int>(out.size()) == lines - 1) {
      std::string last = waiting.front();
      for (std::size_t n = 1; n < waiting.size(); ++n) last += " " + waiting[n];
      last = Trim(last);
      out.push_back(measure(last) <= width ? last : Shortened(last, width, measure));
      return out;
    }
    std::string rest;
    out.push_back(TakeLine(Trim(waiting.front()), width, measure, rest));
    if (rest.empty()) {
      waiting.erase(waiting.begin());
    } else {
      waiting.front() = rest;
    }
  }
  return out;
}

void DrawLegend(const LegendInput& input, glxCtl& control) {
  const double mode = input.state.ScaleMode;
  const double firstRow = DrawTitle(input, control);
  if (mode == 0 || mode == 1) {
    const int levels = ScaleOf(input.lists, input.state).LegendLevels();
    const double room = control.Height() / control.DeviceRatio() - firstRow - kBottomMargin -
                        CornerTextHeight(input.lists, input.state);
    const double pitch = std::clamp(room / levels, 1.0, kRowPitch);
    DrawSquares(input, control, firstRow, pitch);
    DrawFlatLabels(input, control, firstRow, pitch);
  }
  if (mode == 1 || mode == 2 || mode == 4) DrawSceneLabels(input, control);
  control.FontSize(kUsualFont);
}

void DrawScaleOnAxes(GlApi& gl, const ViewState& state, const PointLists& lists, double RRMAXAXES, double pixelRatio) {
  if (state.ScaleMode != 1 && state.ScaleMode != 3 && state.ScaleMode != 4) return;
  const ColourScale scale = ScaleOf(lists, state);
  const int levels = scale.LegendLevels();
  const double length = AxisLength(RRMAXAXES, state.options);
  std::vector<ColouredVertex> points;
  points.reserve(static_cast<std::size_t>(levels) * 3);
  for (int k = 1; k <= levels; ++k) {
    const auto distance = static_cast<float>(length * LegendGrowth(k, levels));
    const auto colour = scale.Bytes(LegendPosition(k, levels), 0, 1);
    points.push_back({{distance, 0, 0}, colour});
    points.push_back({{0, distance, 0}, colour});
    points.push_back({{0, 0, distance}, colour});
  }
  const double thickness = state.options.ThicknessLinePlot == 0 ? 0.1 : state.options.ThicknessLinePlot;
  gl.PointSize(static_cast<float>(thickness * pixelRatio) * kAxisPointGrowth);
  gl.DrawVertices(GL_POINTS, points);
}

}  // namespace orv
