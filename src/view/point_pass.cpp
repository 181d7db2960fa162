#include "view/point_pass.h"

#include <algorithm>
#include <cmath>

namespace orv {

ByteColour ToBytes(const Rgba& colour) {
  const auto part = [](float value) {
    return static_cast<std::uint8_t>(std::lround(std::clamp(value, 0.0F, 1.0F) * 255));
  };
  return {part(colour.red), part(colour.green), part(colour.blue), part(colour.alpha)};
}

// A line in the making.
class PointPass::Strip {
 public:
  Strip(GlApi& gl, const WideLine& wide, std::size_t expected) : gl_(gl), wide_(wide) { vertices_.reserve(expected); }

  void Add(const Vertex& position, const ByteColour& colour) { vertices_.push_back({position, colour}); }
  void Dot(const Vertex& position, const ByteColour& colour) {
    const ColouredVertex vertex{position, colour};
    gl_.DrawVertices(GL_POINTS, {&vertex, 1});
  }
  // Ends the line; the next vertex begins another.
  void Break() {
    if (vertices_.size() > 1) {
      if (wide_.halfWidth == 0) {
        gl_.DrawVertices(GL_LINE_STRIP, vertices_);
      } else {
        DrawWide();
      }
    }
    vertices_.clear();
  }

 private:
  void DrawWide() {
    std::vector<ColouredVertex> pairs;
    for (std::size_t i = 1; i < vertices_.size(); ++i) {
      pairs.push_back(vertices_[i - 1]);
      pairs.push_back(vertices_[i]);
    }
    WidenLines(pairs, wide_);
    if (!pairs.empty()) gl_.DrawVertices(GL_TRIANGLES, pairs);
  }

  GlApi& gl_;
  const WideLine& wide_;
  std::vector<ColouredVertex> vertices_;
};

// The rows of PointList, taken once for a stretch of entries.
struct PointPass::Rows {
  explicit Rows(const PointLists& lists)
      : time(lists.PointList.row(0)), x(lists.PointList.row(1)), y(lists.PointList.row(2)), z(lists.PointList.row(3)) {}
  Vertex Position(std::size_t i) const { return {x[i], y[i], z[i]}; }
  std::span<const float> time, x, y, z;
};

void PointPass::Take(const PointLists& lists) {
  events_ = EventStates(lists);
  values_ = ValueCurve(lists);
  kinds_.assign(lists.PenUpMode == 1 ? 0 : static_cast<std::size_t>(lists.NumberPoints) + 1, kPlain);
  const auto time = lists.PointList.row(0);
  const auto pen = lists.PointList.row(4);
  for (std::size_t i = 0; i < kinds_.size(); ++i) {
    const double state = events_.At(time[i]);
    int kind = state > EventStates::kInEvent ? kEvent : kPlain;
    if (EventStates::IsolatedDot(state)) kind |= kIsolated;
    if (pen[i] == kPenUp) kind |= kLifted;
    kinds_[i] = static_cast<std::uint8_t>(kind);
  }
}

void PointPass::SetLook(const Look& look) {
  look_ = look;
  nominal_ = ToBytes(look.nominal);
  event_ = ToBytes(look.event);
}

void PointPass::ColourByValue(const PointLists& lists) {
  const auto values = lists.PointList.row(0);
  colours_.resize(static_cast<std::size_t>(lists.NumberPoints) + 1);
  for (std::size_t i = 0; i < colours_.size(); ++i) {
    colours_[i] = look_.scale.Bytes(values[i], lists.PlotValueMin, lists.PlotValueMax);
  }
}

void PointPass::Emit(const PointLists& lists, GlApi& gl, int first, int last, bool more) const {
  if (lists.PenUpMode == 1) {
    EmitDots(lists, gl, first, last);
    return;
  }
  const Rows rows(lists);
  Strip strip(gl, look_.wide, static_cast<std::size_t>(std::abs(last - first)) + 2);
  const int step = first <= last ? 1 : -1;
  for (int i = first; i != last + step; i += step) EmitEntry(lists, rows, strip, static_cast<std::size_t>(i));
  if (more) LeadOn(lists, rows, strip, last + step, step);
  strip.Break();
}

// The line runs on to the next vertex, unless a break or a dot of its own comes first.
void PointPass::LeadOn(const PointLists& lists, const Rows& rows, Strip& strip, int next, int step) const {
  for (int i = next; i >= 0 && i <= lists.NumberPoints; i += step) {
    const auto place = static_cast<std::size_t>(i);
    if ((kinds_[place] & (kLifted | kIsolated)) != 0) return;
    double value = 0;
    const bool found = !values_.empty() && values_.At(rows.time[place], value);
    if (!values_.empty() && !found && look_.valueColours) continue;
    strip.Add(rows.Position(place),
              found ? look_.scale.Bytes(value, lists.ValueMin, lists.ValueMax) : PlainColour(place));
    return;
  }
}

void PointPass::EmitDots(const PointLists& lists, GlApi& gl, int first, int last) const {
  const Rows rows(lists);
  const int step = first <= last ? 1 : -1;
  std::vector<ColouredVertex> dots;
  dots.reserve(static_cast<std::size_t>(std::abs(last - first)) + 1);
  for (int i = first; i != last + step; i += step) {
    const auto place = static_cast<std::size_t>(i);
    dots.push_back({rows.Position(place), colours_[place]});
  }
  gl.DrawVertices(GL_POINTS, dots);
}

void PointPass::EmitEntry(const PointLists& lists, const Rows& rows, Strip& strip, std::size_t i) const {
  if ((kinds_[i] & kLifted) != 0) {
    strip.Break();
    return;
  }
  const ByteColour& plain = PlainColour(i);
  const Vertex position = rows.Position(i);
  if ((kinds_[i] & kIsolated) != 0) {
    strip.Break();
    strip.Dot(position, plain);
    strip.Add(position, plain);
  }
  if (values_.empty()) {
    strip.Add(position, plain);
    return;
  }
  double value = 0;
  const bool found = values_.At(rows.time[i], value);
  if (!found) {
    if (!look_.valueColours) strip.Add(position, plain);
    return;
  }
  const ByteColour coloured = look_.scale.Bytes(value, lists.ValueMin, lists.ValueMax);
  strip.Add(position, coloured);
  if (look_.valueColours) return;
  // A bar along the chosen axis and back.
  Vertex end = position;
  const auto length = static_cast<float>((value - look_.valueBase) * look_.valueGain);
  if (lists.ValueAxis == 1) end.x += length;
  if (lists.ValueAxis == 2) end.y += length;
  if (lists.ValueAxis == 3) end.z += length;
  strip.Add(end, coloured);
  strip.Add(position, plain);
}

}  // namespace orv
