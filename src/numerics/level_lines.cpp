#include "numerics/level_lines.h"

#include <charconv>
#include <cmath>

#include "numerics/date_format.h"
#include "numerics/number_format.h"
#include "numerics/text.h"

namespace orv {
namespace {

constexpr double kStretches = 5;  // of the rainbow
constexpr double kFullColour = 255;
constexpr double kInFromTop = 0.99999999;
constexpr double kInFromBottom = 1.00000001;
constexpr int kLevelDigits = 3;
constexpr double kLargeLabel = 10000;  // from here on, and below 1, a label shows significant digits
constexpr double kSmallLabel = 1;
constexpr double kFewestSteps = 5;
constexpr double kMostSteps = 10;
constexpr double kMostTicks = 100;
constexpr const char* kFixedMask = "#0.0##";
constexpr const char* kWholeMask = "### ##0";
constexpr const char* kDateMask = "dd mmm yy";

Colour32 Component(double share) {
  return static_cast<Colour32>(CInt(share * kFullColour));
}

Colour32 PaletteColour(int entry) {
  double x = static_cast<double>(entry) / (kPaletteEntries - 1);
  if (x >= 1) x *= kInFromTop;
  if (x <= 0) x *= kInFromBottom;
  const double place = kStretches * x;
  const double f = place - Int(place);
  double red = 0;
  double green = 0;
  double blue = 0;
  switch (static_cast<int>(Int(place))) {
    case 4:
      red = 1;
      green = 1 - f;
      break;
    case 3:
      red = f;
      green = 1;
      break;
    case 2:
      green = 1;
      blue = 1 - f;
      break;
    case 1:
      green = f;
      blue = 1;
      break;
    default:
      red = 1 - f;
      blue = 1;
      break;
  }
  return Component(red) + 256 * Component(green) + 65536 * Component(blue);
}

// The number that a formatted text shows.
double NumberOf(const std::string& formatted) {
  const std::string text = Trim(formatted);
  double value = 0;
  const auto read = std::from_chars(text.data(), text.data() + text.size(), value);
  if (read.ec != std::errc()) Raise(FailureNumber::TypeMismatch);
  return value;
}

int LastIndex(const LevelAxis& axis) {
  return static_cast<int>(axis.bounds(0).upper);
}

}  // namespace

Array<Colour32, 1> BuildPalette() {
  Array<Colour32, 1> palette({Bounds{0, kPaletteEntries - 1}});
  for (int e = 0; e < kPaletteEntries; ++e) palette(e) = PaletteColour(e);
  return palette;
}

void Arrange(LevelLineInput& input) {
  if (input.Swap == 0) return;
  const int n = LastIndex(input.X);
  const int m = LastIndex(input.Y);
  LevelGrid transposed({Bounds{1, m}, Bounds{1, n}});
  for (int i = 1; i <= n; ++i) {
    for (int j = 1; j <= m; ++j) transposed(j, i) = input.Z(i, j);
  }
  input.Z = std::move(transposed);
  std::swap(input.X, input.Y);
  std::swap(input.XLabel, input.YLabel);
}

void FindExtremes(const LevelGrid& Z, double& lo, double& hi) {
  bool any = false;
  lo = 0;
  hi = 0;
  for (const double z : Z.values()) {
    if (!std::isfinite(z)) continue;
    if (!any || z < lo) lo = z;
    if (!any || z > hi) hi = z;
    any = true;
  }
}

void ApplyFactors(double lowFactor, double highFactor, double& lo, double& hi) {
  const double low = lo * lowFactor;
  const double high = hi * highFactor;
  if (low < high) {
    lo = low;
    hi = high;
    return;
  }
  if (low < hi) lo = low;
  if (high > lo) hi = high;
}

LevelRecords MakeLevels(const LevelLineInput& input, double lo, double hi, const Array<Colour32, 1>& palette) {
  const int count = input.LevelCount;
  LevelRecords levels({Bounds{1, count}});
  double value = 0;
  for (int t = 1; t <= count; ++t) {
    LevelRecord& record = levels(t);
    PassOverFailure([&] { value = Finite(lo + Divide((hi - lo) * (t - 1), count - 1)); });
    PassOverFailure([&] { record.Level = NumberOf(SignificantText(value, kLevelDigits)); });
    PassOverFailure([&] { record.LineColour = palette(Divide(t - 1, count - 1) * (kPaletteEntries - 1)); });
    record.LabelColour = record.LineColour;
    if (input.Labels) {
      PassOverFailure([&] { record.Label = LevelLabel(record.Level, input.LogScale, input.LabelFormat); });
    }
  }
  return levels;
}

std::string LevelLabel(double level, double LogScale, const std::string& format) {
  const double v = LogScale >= 1 ? Power(10, level) : level;
  const std::size_t sharp = format.rfind('#');
  const std::size_t split = sharp == std::string::npos ? 0 : sharp + 1;
  const std::string unit = format.substr(split);
  // A mask without a "0" would drop the zero in front of the point.
  if (v >= kLargeLabel || v < kSmallLabel) return SignificantText(v, kLevelDigits) + " " + unit;
  return FormatNumber(v, std::string_view(format).substr(0, split)) + unit;
}

double AxisScale::Tick(int k) const {
  return step * (Int(low / step + 0.5) + k);
}

std::string AxisScale::TextOf(double value) const {
  return dates ? FormatDay(value, kDateMask) : Trim(FormatNumber(value, mask));
}

AxisScale ScaleAxis(double p, double q, const std::string& axisText) {
  Finite(p);
  Finite(q);
  if (p == q) q = p + 1;
  if (p > q) std::swap(p, q);

  AxisScale axis;
  const auto isDay = [](double day) { return day > kFirstAxisDay && day < kLastAxisDay; };
  axis.dates = axisText != kFixedMask && isDay(p) && isDay(q);
  axis.mask = axisText == kFixedMask ? kFixedMask : kWholeMask;

  const double span = Finite(q - p);
  if (!(span > 0)) Raise(FailureNumber::InvalidProcedureCall);
  double step = Power(10, Int(std::log10(span)));
  while (Divide(span, step) < kFewestSteps) step /= 2;
  if (Divide(span, step) > kMostSteps) step *= 2;

  const double first = Int(p / step);
  const double last = -Int(-(q / step));
  if (!(last - first >= 1 && last - first <= kMostTicks)) Raise(FailureNumber::Overflow);
  axis.low = Finite(step * first);
  axis.high = Finite(step * last);
  axis.step = step;
  axis.steps = static_cast<int>(last - first);
  return axis;
}

void CheckContourInput(const LevelAxis& X, const LevelAxis& Y, const LevelRecords& levels) {
  if (X.bounds(0).count() < 2 || Y.bounds(0).count() < 2 || levels.bounds(0).count() < 1) {
    Raise(kContourFailure, "Error in Input Parameters");
  }
  for (std::ptrdiff_t t = levels.bounds(0).lower + 1; t <= levels.bounds(0).upper; ++t) {
    if (!(levels(t).Level > levels(t - 1).Level)) Raise(kContourFailure, "Error in Contour Levels");
  }
}

namespace {

constexpr int kCorners = 4;

// Corners of a rectangle in the order of their numbers: (i, j), (i, j + 1), (i + 1, j), (i + 1, j + 1).
struct Corner {
  double x = 0;
  double y = 0;
  double h = 0;  // above the level
};

// Some of the corners, by number, rising.
struct CornerList {
  std::array<int, kCorners> numbers{};
  int count = 0;
  void Add(int corner) { numbers[static_cast<std::size_t>(count++)] = corner; }
  int operator[](int place) const { return numbers[static_cast<std::size_t>(place)]; }
};

// The two neighbours of a corner.
constexpr std::array<std::array<int, 2>, kCorners + 1> kNeighbours = {{{0, 0}, {2, 3}, {1, 4}, {1, 4}, {2, 3}}};

class Rectangle {
 public:
  Rectangle(const std::array<Corner, kCorners>& corners, std::vector<LevelPiece>& pieces)
      : corners_(corners), pieces_(pieces) {}

  void Trace() {
    CornerList below;
    CornerList above;
    int on = 0;
    for (int c = 1; c <= kCorners; ++c) {
      const double h = At(c).h;
      if (h < 0) below.Add(c);
      if (h > 0) above.Add(c);
      if (h == 0) ++on;
    }
    if (below.count + on + above.count < kCorners) return;  // a corner without a value
    if (below.count == kCorners || above.count == kCorners) return;
    if (on > 1) return;
    if (below.count == 1) {
      CutOff(below[0]);
    } else if (above.count == 1) {
      CutOff(above[0]);
    } else if (below.count == 2 && above.count == 2) {
      CutInHalves(below);
    }
  }

 private:
  struct Point {
    double x;
    double y;
  };

  const Corner& At(int corner) const { return corners_[static_cast<std::size_t>(corner - 1)]; }

  Point Cut(int a, int b) const {
    const Corner& from = At(a);
    const Corner& to = At(b);
    if (from.h == to.h) return {from.x, from.y};
    const double t = from.h / (from.h - to.h);
    return {from.x + t * (to.x - from.x), from.y + t * (to.y - from.y)};
  }

  void Add(const Point& begin, const Point& end) {
    if (!std::isfinite(begin.x + begin.y + end.x + end.y)) return;
    pieces_.push_back({begin.x, begin.y, end.x, end.y});
  }

  void CutOff(int corner) {
    const auto& [first, second] = kNeighbours[static_cast<std::size_t>(corner)];
    Add(Cut(corner, first), Cut(corner, second));
  }

  void CutInHalves(const CornerList& pair) {
    const int a = pair[0];
    const int b = pair[1];
    const auto& [first, second] = kNeighbours[static_cast<std::size_t>(a)];
    if (b != first && b != second) {
      CutOff(a);
      CutOff(b);
      return;
    }
    const int outside = b == first ? second : first;
    const int remaining = 10 - a - b - outside;
    Add(Cut(a, outside), Cut(b, remaining));
  }

  const std::array<Corner, kCorners>& corners_;
  std::vector<LevelPiece>& pieces_;
};

}  // namespace

std::vector<LevelPiece> TraceLevel(const LevelAxis& X, const LevelAxis& Y, const LevelGrid& Z, double level) {
  std::vector<LevelPiece> pieces;
  for (int j = 1; j < LastIndex(Y); ++j) {
    for (int i = 1; i < LastIndex(X); ++i) {
      const auto corner = [&](int a, int b) { return Corner{X(a), Y(b), Z(a, b) - level}; };
      const std::array<Corner, kCorners> corners = {corner(i, j), corner(i, j + 1), corner(i + 1, j),
                                                    corner(i + 1, j + 1)};
      Rectangle(corners, pieces).Trace();
    }
  }
  return pieces;
}

}  // namespace orv
