#include "view/outline_pass.h"

#include <algorithm>
#include <cmath>

namespace orv {
namespace {

using Colour = std::array<std::uint8_t, 4>;

Colour ColourOfEntry(int entry, std::span<const Colour> colours) {
  const auto cell = static_cast<std::size_t>(entry / kOutlineEntries);
  return cell < colours.size() ? colours[cell] : Colour{0, 255, 255, 255};
}

// Corners in their order as a fan, which is how a polygon is filled. Corners that fall together add nothing.
void AppendFan(std::span<const Vertex> corners, const Colour& colour, std::vector<ColouredVertex>& vertices) {
  for (std::size_t i = 2; i < corners.size(); ++i) {
    if (corners[i] == corners[0] || corners[i] == corners[i - 1] || corners[i - 1] == corners[0]) continue;
    vertices.push_back({corners[0], colour});
    vertices.push_back({corners[i - 1], colour});
    vertices.push_back({corners[i], colour});
  }
}

void AppendLoop(std::span<const Vertex> corners, const Colour& colour, std::vector<ColouredVertex>& vertices) {
  for (std::size_t i = 0; i < corners.size(); ++i) {
    const Vertex& from = corners[i];
    const Vertex& to = corners[(i + 1) % corners.size()];
    if (from == to) continue;
    vertices.push_back({from, colour});
    vertices.push_back({to, colour});
  }
}

}  // namespace

WideLine WideLineOf(GlApi& gl, double pixels, const Vec3& towardsCamera, double unitsPerPixel) {
  WideLine wide;
  if (pixels > gl.WidestLine()) {
    wide.towardsCamera = towardsCamera;
    wide.halfWidth = pixels * unitsPerPixel / 2;
  }
  return wide;
}

void WidenLines(std::vector<ColouredVertex>& pairs, const WideLine& wide) {
  std::vector<ColouredVertex> strips;
  strips.reserve(pairs.size() * 3);
  for (std::size_t i = 0; i + 1 < pairs.size(); i += 2) {
    const Vertex& a = pairs[i].position;
    const Vertex& b = pairs[i + 1].position;
    const Vec3 along{b.x - a.x, b.y - a.y, b.z - a.z};
    const Vec3& to = wide.towardsCamera;
    Vec3 side{along[1] * to[2] - along[2] * to[1], along[2] * to[0] - along[0] * to[2],
              along[0] * to[1] - along[1] * to[0]};
    const double length = std::sqrt(side[0] * side[0] + side[1] * side[1] + side[2] * side[2]);
    if (length == 0) continue;
    for (double& x : side) x *= wide.halfWidth / length;
    const auto shifted = [&](const ColouredVertex& v, double sign) {
      return ColouredVertex{
          {static_cast<float>(v.position.x + sign * side[0]), static_cast<float>(v.position.y + sign * side[1]),
           static_cast<float>(v.position.z + sign * side[2])},
          v.colour};
    };
    const ColouredVertex corners[4] = {shifted(pairs[i], 1), shifted(pairs[i], -1), shifted(pairs[i + 1], -1),
                                       shifted(pairs[i + 1], 1)};
    for (const int corner : {0, 1, 2, 0, 2, 3}) strips.push_back(corners[corner]);
  }
  pairs = std::move(strips);
}

void OutlinePass::Take(const PointLists& lists) {
  outlines_.clear();
  const auto pen = lists.TraceList.row(3);
  const int end = std::min(lists.OutlineCount, kListEntries);
  int first = 0;
  for (int i = 0; i < end; ++i) {
    if (pen[static_cast<std::size_t>(i)] != kPenUp) continue;
    if (i > first) outlines_.push_back({first, i - first});
    first = i + 1;
  }
  if (end > first) outlines_.push_back({first, end - first});
}

int OutlinePass::FirstFrom(int entry) const {
  const auto found = std::lower_bound(outlines_.begin(), outlines_.end(), entry,
                                      [](const Outline& outline, int e) { return outline.first < e; });
  return static_cast<int>(found - outlines_.begin());
}

int OutlinePass::CountUpTo(int entry) const {
  const auto found = std::partition_point(outlines_.begin(), outlines_.end(), [&](const Outline& outline) {
    return outline.first + outline.count - 1 <= entry;
  });
  return static_cast<int>(found - outlines_.begin());
}

void OutlinePass::Append(const PointLists& lists, int mode, int first, int last, std::span<const Colour> colours,
                         std::vector<ColouredVertex>& vertices) const {
  const auto x = lists.TraceList.row(0);
  const auto y = lists.TraceList.row(1);
  const auto z = lists.TraceList.row(2);
  const auto vertex = [&](int entry) {
    const auto i = static_cast<std::size_t>(entry);
    return Vertex{x[i], y[i], z[i]};
  };
  std::vector<Vertex> corners;
  for (int k = first; k <= last; ++k) {
    const Outline& outline = outlines_[static_cast<std::size_t>(k)];
    const Colour colour = ColourOfEntry(outline.first, colours);
    if (mode != kVersoSide) {
      corners.clear();
      for (int i = 0; i < outline.count; ++i) corners.push_back(vertex(outline.first + i));
      if (mode >= kRectoSide) {
        AppendFan(corners, colour, vertices);
      } else {
        AppendLoop(corners, colour, vertices);
      }
    }
    if (mode == kVersoSide || mode == kBothSides) {
      corners.clear();
      const int end = outline.first + outline.count;
      for (int i = end - 1; i >= std::max(outline.first, end - 4); --i) corners.push_back(vertex(i));
      AppendFan(corners, colour, vertices);
    }
  }
}

void OutlinePass::AppendPairs(const PointLists& lists, int last, std::span<const Colour> colours,
                              std::vector<ColouredVertex>& vertices) {
  const auto x = lists.TraceList.row(0);
  const auto y = lists.TraceList.row(1);
  const auto z = lists.TraceList.row(2);
  const auto pen = lists.TraceList.row(3);
  last = std::min(last, kListEntries - 1);
  int i = lists.OutlineCount;
  while (i < last) {
    const auto a = static_cast<std::size_t>(i);
    if (pen[a] == kPenUp) {
      ++i;
      continue;
    }
    if (pen[a + 1] == kPenUp) {
      i += 2;
      continue;
    }
    const Colour colour = ColourOfEntry(i, colours);
    vertices.push_back({{x[a], y[a], z[a]}, colour});
    vertices.push_back({{x[a + 1], y[a + 1], z[a + 1]}, colour});
    i += 2;
  }
}

}  // namespace orv
