#include "view/plot_texts.h"

#include <algorithm>
#include <cstdio>

#include "numerics/date_format.h"
#include "numerics/number_format.h"
#include "numerics/text.h"

namespace orv {
namespace {

constexpr double kTextPoints = 9;
constexpr double kMargin = 8;  // logical pixels
constexpr double kLineHeight = 18;
constexpr double kSceneSize = 0.25;
constexpr std::size_t kOriginWidth = 10;

// Ten characters: a number with what fits of its digits, blanks in front.
std::string TenCharacters(double value) {
  std::string text = NumberText(value);
  if (text.size() > kOriginWidth) text = SignificantText(value, 4);
  if (text.size() > kOriginWidth) text.resize(kOriginWidth);
  return std::string(kOriginWidth - text.size(), ' ') + text;
}

// A number of single precision with the digits that it has.
std::string SingleText(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%.7g", value);
  return text;
}

}  // namespace

std::string ProductWord(const std::string& title) {
  const std::string trimmed = Trim(title);
  return trimmed.substr(0, trimmed.find_first_of(" \r\n"));
}

double CornerTextHeight(const PointLists& lists, const ViewState& view) {
  if (view.options.Check1[6] != 0) return 0;
  if (lists.ValueCount != kNoEntry) return 2 * kLineHeight;
  return lists.TimePlot ? kLineHeight : 0;
}

void DrawPlotTexts(const PlotTextInput& input, glxCtl& control) {
  const PointLists& lists = input.lists;
  const bool timeMoves = input.view.options.Check1[6] == 0;
  const int index = std::min(input.CURRINDEXI, lists.NumberPoints);
  const auto place = static_cast<std::size_t>(std::max(0, index));
  const double time = lists.PointList.row(0)[place];
  const double bottom = control.Height() / control.DeviceRatio() - kMargin;
  control.ForeColor(input.view.TextColour());
  control.FontSize(kTextPoints);
  double value = 0;
  if (lists.ValueCount != kNoEntry && timeMoves && index >= 0 && input.points.Values().At(time, value)) {
    control.StatusPrint("Value : " + SingleText(value) + "  limits: " + SingleText(lists.ValueMin) + " to " +
                            SingleText(lists.ValueMax),
                        kMargin, bottom - 2 * kLineHeight);
  }
  if (index <= 0) return;
  if (lists.TimePlot && timeMoves) {
    const std::string date = ProductWord(lists.Title) + FormatDay(time, " dd  MMM yyyy hh:mm ");
    control.StatusPrint(date, kMargin, bottom - kLineHeight);
    control.Text3D(input.smallFont, date, lists.PointList.row(1)[place], lists.PointList.row(2)[place],
                   lists.PointList.row(3)[place], kSceneSize, input.view.TextColour());
  }
  if (input.view.options.Check1[5] == 0 && lists.FreeScale) {
    std::string origin;
    for (std::size_t axis = 1; axis <= 3; ++axis) {
      origin += TenCharacters(0 - input.scale.AxisRange[axis].Offset) + " , ";
    }
    control.Text3D(input.labelFont, origin, 0, 0, 0, kSceneSize, OptionColour(input.view.options.ColourOfAxisLabels));
  }
}

}  // namespace orv
