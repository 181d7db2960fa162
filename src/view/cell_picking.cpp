#include "view/cell_picking.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "view/outline_pass.h"

namespace orv {
namespace {

constexpr std::uint32_t kNoName = 0xFFFFFFFFU;  // -1
constexpr double kDotReach = 4;                 // logical pixels
constexpr int kOutlinesAtOnce = 4096;
constexpr double kEdge = 1e-9;  // of a triangle: no gap between neighbours

using Colour = std::array<std::uint8_t, 4>;

Vec3 Minus(const Vec3& a, const Vec3& b) {
  return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}
Vec3 Cross(const Vec3& a, const Vec3& b) {
  return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}
double Dot(const Vec3& a, const Vec3& b) {
  return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}
Vec3 PointOf(const Vertex& v) {
  return {v.x, v.y, v.z};
}

Matrix4 Translation(const Vec3& v, double sign) {
  Matrix4 m = IdentityMatrix();
  for (std::size_t i = 0; i < 3; ++i) m[12 + i] = sign * v[i];
  return m;
}

// From the scene to the clip space of a paint: the camera, and the trackball's turn about the look-at point.
Matrix4 SceneToClip(glxCtl& control) {
  const Camera& camera = control.Camera();
  const Matrix4 view = camera.ViewMatrix();
  const Vec3& target = camera.LookAt();
  const std::array<double, 4> centre = Transform(view, {target[0], target[1], target[2], 1});
  const Vec3 about{centre[0], centre[1], centre[2]};
  const Matrix4 turn = Product(Product(Translation(about, 1), control.Trackball().Matrix()), Translation(about, -1));
  return Product(camera.ProjectionMatrix(), Product(turn, view));
}

// The inverse by Gauss and Jordan with the largest pivot of each column; nothing for a matrix without one.
std::optional<Matrix4> Inverse(Matrix4 m) {
  Matrix4 inverse = IdentityMatrix();
  const auto at = [](Matrix4& a, std::size_t row, std::size_t column) -> double& { return a[column * 4 + row]; };
  for (std::size_t k = 0; k < 4; ++k) {
    std::size_t pivot = k;
    for (std::size_t row = k + 1; row < 4; ++row) {
      if (std::abs(at(m, row, k)) > std::abs(at(m, pivot, k))) pivot = row;
    }
    const double head = at(m, pivot, k);
    if (head == 0 || !std::isfinite(head)) return std::nullopt;
    for (std::size_t column = 0; column < 4; ++column) {
      std::swap(at(m, k, column), at(m, pivot, column));
      std::swap(at(inverse, k, column), at(inverse, pivot, column));
    }
    for (std::size_t column = 0; column < 4; ++column) {
      at(m, k, column) /= head;
      at(inverse, k, column) /= head;
    }
    for (std::size_t row = 0; row < 4; ++row) {
      const double factor = at(m, row, k);
      if (row == k || factor == 0) continue;
      for (std::size_t column = 0; column < 4; ++column) {
        at(m, row, column) -= factor * at(m, k, column);
        at(inverse, row, column) -= factor * at(inverse, k, column);
      }
    }
  }
  return inverse;
}

// What lies under one pixel, from the near plane to the far one.
struct SightLine {
  Vec3 from{};
  Vec3 along{};
};

// `x`, `y` in device coordinates -1 .. 1.
std::optional<SightLine> SightLineAt(const Matrix4& sceneToClip, double x, double y) {
  const std::optional<Matrix4> inverse = Inverse(sceneToClip);
  if (!inverse) return std::nullopt;
  const auto place = [&](double depth) {
    const std::array<double, 4> p = Transform(*inverse, {x, y, depth, 1});
    return Vec3{p[0] / p[3], p[1] / p[3], p[2] / p[3]};
  };
  const SightLine line{place(-1), Minus(place(1), place(-1))};
  const double reach = Dot(line.along, line.along) + Dot(line.from, line.from);
  return std::isfinite(reach) ? std::optional(line) : std::nullopt;
}

// Part of the line at which it meets the front of a triangle (T. Möller, B. Trumbore 1997); 2 when it does not.
double MeetsFront(const SightLine& line, const Vec3& a, const Vec3& b, const Vec3& c) {
  constexpr double kMiss = 2;
  const Vec3 ab = Minus(b, a);
  const Vec3 ac = Minus(c, a);
  const Vec3 p = Cross(line.along, ac);
  const double det = Dot(ab, p);  // above 0: the corners turn counter-clockwise for the viewer
  if (!(det > 0)) return kMiss;
  const Vec3 s = Minus(line.from, a);
  const double u = Dot(s, p) / det;
  if (!(u >= -kEdge && u <= 1 + kEdge)) return kMiss;
  const Vec3 q = Cross(s, ab);
  const double v = Dot(line.along, q) / det;
  if (!(v >= -kEdge && u + v <= 1 + kEdge)) return kMiss;
  const double t = Dot(ac, q) / det;
  return t >= 0 && t <= 1 ? t : kMiss;
}

Colour ColourOfIndex(std::size_t index) {
  Colour colour{};
  for (std::size_t byte = 0; byte < 4; ++byte) colour[byte] = static_cast<std::uint8_t>(index >> (8 * byte) & 0xFF);
  return colour;
}
int IndexOfColour(const Colour& colour) {
  std::uint32_t index = 0;
  for (std::size_t byte = 0; byte < 4; ++byte) index |= static_cast<std::uint32_t>(colour[byte]) << (8 * byte);
  return static_cast<int>(index);
}

PickedCell CellAt(const PointLists& lists, int entry, const Vec3& position) {
  return {entry, lists.PointList(0, entry), position};
}

// The triangles are those of the drawing: its own routine makes them, the number of the cell in place of its colour.
std::optional<PickedCell> PickSide(const PointLists& lists, int SidesMode, const SightLine& line) {
  std::vector<Colour> numbers(static_cast<std::size_t>(lists.OutlineCount / kOutlineEntries + 1));
  for (std::size_t cell = 0; cell < numbers.size(); ++cell) numbers[cell] = ColourOfIndex(cell);
  OutlinePass outlines;
  outlines.Take(lists);
  const int last = outlines.CountUpTo(lists.TraceMax) - 1;
  double nearest = 2;
  int entry = kNoEntry;
  std::vector<ColouredVertex> triangles;
  for (int first = outlines.FirstFrom(std::max(0, lists.TraceMin)); first <= last; first += kOutlinesAtOnce) {
    triangles.clear();
    outlines.Append(lists, SidesMode, first, std::min(last, first + kOutlinesAtOnce - 1), numbers, triangles);
    for (std::size_t i = 0; i + 2 < triangles.size(); i += 3) {
      const double t = MeetsFront(line, PointOf(triangles[i].position), PointOf(triangles[i + 1].position),
                                  PointOf(triangles[i + 2].position));
      if (t >= nearest) continue;
      nearest = t;
      entry = IndexOfColour(triangles[i].colour);
    }
  }
  if (entry == kNoEntry || entry > lists.NumberPoints) return std::nullopt;
  Vec3 position = line.from;
  for (std::size_t axis = 0; axis < 3; ++axis) position[axis] += nearest * line.along[axis];
  return CellAt(lists, entry, position);
}

// The closest dot in whole pixels, of equally close ones the nearest to the viewer.
std::optional<PickedCell> PickDot(ClassGl& scene, const Matrix4& sceneToClip, double x, double y) {
  const PointLists& lists = scene.Lists();
  glxCtl& control = scene.Control();
  // Behind the cells stand the points of the thruster's axes.
  const int cells = lists.OutlineCount > 0 ? lists.OutlineCount / kOutlineEntries : lists.NumberPoints + 1;
  const int last = std::min({scene.CURRINDEXI(), lists.NumberPoints, cells - 1});
  const double ratio = control.DeviceRatio() > 0 ? control.DeviceRatio() : 1;
  std::pair<double, double> closest{kDotReach * ratio, 2};
  int entry = kNoEntry;
  const auto px = lists.PointList.row(1);
  const auto py = lists.PointList.row(2);
  const auto pz = lists.PointList.row(3);
  for (int n = std::max(0, scene.CURRINDEXMINI()); n <= last; ++n) {
    const auto i = static_cast<std::size_t>(n);
    const std::array<double, 4> clip = Transform(sceneToClip, {px[i], py[i], pz[i], 1});
    if (!(clip[3] > 0) || !(std::abs(clip[2]) <= clip[3])) continue;
    const double dx = (clip[0] / clip[3] + 1) / 2 * control.Width() - x;
    const double dy = (1 - clip[1] / clip[3]) / 2 * control.Height() - y;
    const std::pair<double, double> place{std::round(std::hypot(dx, dy)), clip[2] / clip[3]};
    if (std::hypot(dx, dy) > kDotReach * ratio || !(place < closest)) continue;
    closest = place;
    entry = n;
  }
  if (entry == kNoEntry) return std::nullopt;
  const auto i = static_cast<std::size_t>(entry);
  return CellAt(lists, entry, {px[i], py[i], pz[i]});
}

}  // namespace

int NameOfNearestHit(std::span<const std::uint32_t> items) {
  constexpr double kFarthest = 1.7E+38;
  if (items.empty()) return 0;
  double nearest = kFarthest;
  int name = 0;
  std::size_t at = 1;
  for (std::uint32_t record = 0; record < items[0]; ++record) {
    if (at + 3 > items.size()) break;
    const std::size_t names = items[at];
    const double depth = items[at + 1];
    if (names > items.size() - at - 3) break;
    const auto own = items.subspan(at + 3, names);
    const auto last = std::find_if(own.rbegin(), own.rend(), [](std::uint32_t n) { return n != kNoName; });
    if (last != own.rend() && depth < nearest) {
      nearest = depth;
      name = static_cast<int>(*last);
    }
    at += 3 + names;
  }
  return name;
}

std::optional<PickedCell> PickCell(ClassGl& scene, double x, double y) {
  const PointLists& lists = scene.Lists();
  glxCtl& control = scene.Control();
  const bool inside = x >= 0 && y >= 0 && x <= control.Width() && y <= control.Height();
  if (lists.PenUpMode != 1 || lists.PlotLoaded != 1 || !inside) return std::nullopt;
  if (control.Width() <= 0 || control.Height() <= 0) return std::nullopt;
  const Matrix4 sceneToClip = SceneToClip(control);
  const int SidesMode = scene.View().SidesMode;
  if (SidesMode < kRectoSide) return PickDot(scene, sceneToClip, x, y);
  const std::optional<SightLine> line =
      SightLineAt(sceneToClip, 2 * x / control.Width() - 1, 1 - 2 * y / control.Height());
  return line ? PickSide(lists, SidesMode, *line) : std::nullopt;
}

}  // namespace orv
