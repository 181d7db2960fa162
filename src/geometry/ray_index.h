#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

// Strips as they are seen from one point, and an index of them by direction.
//
// Rays leave one point O, so the strips that a ray can hit depend on its direction alone. The faces of a cube round O
// are divided into squares, and each square lists the strips seen through it. The index only narrows the search: a
// strip counts as hit when the arithmetic of HitsTriangle says so, and every strip that it can call hit, rounding
// included, is listed.
//
// Why none is missed. Write A, B, C for the vectors of a triangle (corner minus O and two sides), N = B x C, D for the
// ray, eps = 2^-53. det, s1 and s2 of the test are computed with errors below 9 eps |B||C||D|, 9 eps |A||C||D| and
// 9 eps |A||B||D|. With u = -s1 / det and v = s2 / det in the exact identity det A - s1 B + s2 C = (N.A) D a hit at the
// point X = A + u B + v C of the triangle obeys
//     det X = (N.A) D + e,   |e| <= 27 eps |A||B||C||D| + 1.01 eps |det| (|B| + |C|).
// * With Q = |B||C| (|A| + |B| + |C|) / |N.A| at most kSteadyLimit, X is parallel to D within 32 eps Q < 1e-6, and
//   t > 0 then means the same way. So D leads through the triangle's outline, widened by kMargin on the face of the
//   cube. If t = N.A / det, t < 1 means that X is nearer than the ray's end; if s1 is exactly 0 the test takes
//   t = X.D = |X||D|. Hence |X| < |D| or |X||D| < 1, up to 1e-6: the bounds of BeyondReach and of RayReach.
// * Else, with O in or near the plane, N.A is noise and every ray in that plane may hit, backwards too. |X| >= r, the
//   distance of the triangle, leaves |N.D| <= |D| ((|N.A| + 27 eps |A||B||C|) / r + 12 eps |B||C|): a band along a
//   great circle. A sliver, whose N is noise, has instead |(A x B).D| = |s2| <= |det| and the like for A x C. The
//   narrowest of the three bands is listed.
// * When all of them are wide (O on the strip or at its corner) or a number is outside 1e-50 .. 1e50, infinite or no
//   number, the strip is tried for every ray. A triangle with N = 0 is never hit.
// Rays of such lengths, and rays of no length, are not looked up at all: all strips are tried.
namespace orv {

struct Sight {
  double x = 0;
  double y = 0;
  double z = 0;
};

inline Sight operator+(const Sight& a, const Sight& b) {
  return {a.x + b.x, a.y + b.y, a.z + b.z};
}
inline Sight operator-(const Sight& a, const Sight& b) {
  return {a.x - b.x, a.y - b.y, a.z - b.z};
}
inline Sight operator*(double s, const Sight& a) {
  return {s * a.x, s * a.y, s * a.z};
}
inline double Dot(const Sight& a, const Sight& b) {
  return a.x * b.x + a.y * b.y + a.z * b.z;
}
inline Sight Cross(const Sight& a, const Sight& b) {
  return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
inline double Length(const Sight& a) {
  return std::sqrt(Dot(a, a));
}

// A triangle with what the hit test computes from it alone.
struct SightTriangle {
  SightTriangle() = default;
  SightTriangle(const Sight& corner, const Sight& sideB, const Sight& sideC)
      : a(corner), b(sideB), c(sideC), normal(Cross(sideB, sideC)), height(Dot(normal, corner)) {}

  Sight a;  // corner minus O
  Sight b;
  Sight c;
  Sight normal;       // b x c
  double height = 0;  // normal . a
  // The ray ends before the plane, or leads away from it, when det * side < reach * RayReach.
  double side = 1;
  double reach = -HUGE_VAL;  // -infinity: no such statement
};

// Whether the ray hits the triangle, and the parameter t of that test: 1 for a ray parallel to the plane.
inline bool HitsTriangle(const SightTriangle& triangle, const Sight& ray, double& t) {
  const double det = Dot(triangle.normal, ray);
  if (det == 0) {
    t = 1;
    return false;
  }
  const Sight m = Cross(ray, triangle.a);
  const double s1 = Dot(m, triangle.c);
  const double u = -s1 / det;
  const double v = Dot(m, triangle.b) / det;
  t = triangle.height / det;
  if (s1 == 0) t = Dot(v * triangle.c + u * triangle.b + triangle.a, ray);
  return 0 <= u && u <= 1 && 0 <= v && v <= 1 && 0 < t && t < 1 && u + v <= 1;
}

// One quadrilateral as two triangles along its diagonal from corner 1 to corner 3.
struct SightStrip {
  SightTriangle first;
  SightTriangle second;
  int primitive = 0;
  int number = 0;      // strip of the primitive, 1 ..
  bool alone = false;  // the primitive has one strip
  std::uint32_t tag = 0;  // for the caller
};

// Corners 1 to 4 as X, Y, Z each, seen from `origin`.
SightStrip MakeSightStrip(const Sight& origin, const std::array<double, 12>& corners);

// Whether the ray hits the strip; t is the parameter of the last triangle tested.
inline bool HitsStrip(const SightStrip& strip, const Sight& ray, double& t) {
  return HitsTriangle(strip.first, ray, t) || HitsTriangle(strip.second, ray, t);
}

class RayIndex {
 public:
  // Takes the strips, orders them by distance, and lists them by direction; the fineness follows the number of rays.
  RayIndex(std::vector<SightStrip> strips, std::size_t rays);

  // Calls hit(strip, t) for each strip that the ray hits and for which skip(strip) is false, in no set order.
  template <class Skip, class Hit>
  void FindHits(const Sight& ray, Skip&& skip, Hit&& hit) const;

  // Numbers held by the lists, for measurements.
  std::size_t listed() const { return listed_.size(); }
  int fineness() const { return fineness_; }

 private:
  struct Span {
    std::uint32_t square;
    std::uint32_t count;
    std::uint32_t strip;
  };

  void OrderByDistance(std::vector<SightStrip>& strips);
  void List();
  std::size_t SquareOf(const Sight& ray) const;

  std::vector<SightStrip> strips_;
  std::vector<double> nearest_;            // square of a lower bound of the strip's distance
  std::vector<std::uint32_t> everywhere_;  // strips to try for every ray
  int fineness_ = 1;                       // squares along the edge of a face
  double half_ = 0.5;                      // half of it
  std::vector<std::uint32_t> start_;       // first place of a square in listed_, 6 * fineness^2 + 1 entries
  std::vector<std::uint32_t> listed_;      // strips of the squares, ascending
};

inline std::size_t RayIndex::SquareOf(const Sight& ray) const {
  const double x = std::abs(ray.x);
  const double y = std::abs(ray.y);
  const double z = std::abs(ray.z);
  std::size_t face = 0;
  double along = ray.y;
  double across = ray.z;
  double depth = ray.x;
  if (x < y || x < z) {
    const bool isY = y >= z;
    face = isY ? 2 : 4;
    depth = isY ? ray.y : ray.z;
    along = isY ? ray.z : ray.x;
    across = isY ? ray.x : ray.y;
  }
  const double scale = half_ / std::abs(depth);
  const int last = fineness_ - 1;
  const int column = std::min(static_cast<int>(along * scale + half_), last);
  const int row = std::min(static_cast<int>(across * scale + half_), last);
  const std::size_t size = static_cast<std::size_t>(fineness_);
  return ((face + (depth < 0 ? 1 : 0)) * size + static_cast<std::size_t>(row)) * size +
         static_cast<std::size_t>(column);
}

template <class Skip, class Hit>
void RayIndex::FindHits(const Sight& ray, Skip&& skip, Hit&& hit) const {
  const double square = Dot(ray, ray);
  double t = 0;
  if (!(square >= 1e-100 && square <= 1e100)) {
    for (const SightStrip& strip : strips_) {
      if (!skip(strip) && HitsStrip(strip, ray, t)) hit(strip, t);
    }
    return;
  }
  const double reach = std::min(1.0, square * (1 - 1e-5));
  const double farthest = (square < 1 ? 1 / square : square) * (1 + 1e-4);
  const auto within = [&](const SightTriangle& triangle) {
    return !(Dot(triangle.normal, ray) * triangle.side < triangle.reach * reach) && HitsTriangle(triangle, ray, t);
  };
  const auto tryStrip = [&](std::uint32_t number) {
    const SightStrip& strip = strips_[number];
    if (!skip(strip) && (within(strip.first) || within(strip.second))) hit(strip, t);
  };
  for (const std::uint32_t number : everywhere_) tryStrip(number);
  const std::size_t at = SquareOf(ray);
  const std::uint32_t end = start_[at + 1];
  for (std::uint32_t place = start_[at]; place < end; ++place) {
    const std::uint32_t number = listed_[place];
    if (nearest_[number] > farthest) break;
    tryStrip(number);
  }
}

}  // namespace orv
