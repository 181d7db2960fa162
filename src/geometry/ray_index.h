#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

// Strips as they are seen from one point, and an index of them by direction.
//
// Rays leave one point O, so the strips that a ray can hit depend on its direction alone. The faces of a cube round O
// are divided into squares, and each square lists the strips seen through it. The index only narrows the search: a
// strip counts as hit when the arithmetic of HitsStrip says so, and every strip that it can call hit, rounding
// included, is tried.
//
// Why none is missed. Write A, B, C for the vectors of a triangle (corner minus O and two sides), N = B x C, D for the
// ray, eps = 2^-53. det, s1 and s2 of the test are computed with errors below 9 eps |B||C||D|, 9 eps |A||C||D| and
// 9 eps |A||B||D|. With u = -s1 / det and v = s2 / det in the exact identity det A - s1 B + s2 C = (N.A) D a hit at the
// point X = A + u B + v C of the triangle obeys
//     det X = (N.A) D + e,   |e| <= 27 eps |A||B||C||D| + 1.01 eps |det| (|B| + |C|).
// * With Q = |B||C| (|A| + |B| + |C|) / |N.A| at most 1e8, X is parallel to D within 32 eps Q < 1e-6, and t > 0 then
//   means the same way. So D leads through the triangle's outline, widened by kMargin on the face of the cube, and lies
//   within 1e-6 of the inner side of each plane through O that has the strip on one side: that is Sieve. If
//   t = N.A / det, t < 1 means that X is nearer than the ray's end; if s1 is exactly 0 the test takes t = X.D instead.
//   Hence |X| < |D| or |X||D| < 1, up to 1e-6: strips beyond that are left out.
// * Else, with O in or near the plane, N.A is noise and every ray in that plane may hit, backwards too. |X| >= r, the
//   distance of the triangle, leaves |N.D| <= |D| ((|N.A| + 27 eps |A||B||C|) / r + 12 eps |B||C|): a band along a
//   great circle. A sliver, whose N is noise, has instead |(A x B).D| = |s2| <= |det| and the like for A x C. The
//   narrowest of the three bands is listed, without a sieve.
// * When all three are wide (O on the strip or at its corner), or a length is no number or outside 1e-50 .. 1e50, the
//   strip is tried for every ray. A triangle with N = 0 is never hit.
// Rays whose length is outside that range, 0 included, are tried on all strips.
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

// A triangle as the hit test takes it: a corner minus O, and two sides.
struct SightTriangle {
  Sight a;
  Sight b;
  Sight c;
};

// One number of two triangles side by side, and of four planes.
using Pair = double __attribute__((vector_size(16)));
using PairMask = std::int64_t __attribute__((vector_size(16)));
using Quad = float __attribute__((vector_size(16)));

struct PairSight {
  Pair x;
  Pair y;
  Pair z;
};

inline Pair Dot(const PairSight& a, const PairSight& b) {
  return a.x * b.x + a.y * b.y + a.z * b.z;
}
inline unsigned Bits(const PairMask& mask) {
  return static_cast<unsigned>((mask[0] & 1) | (mask[1] & 2));
}

// The two halves of a strip, with what the hit test computes from the strip alone.
struct SightStrip {
  SightStrip(const SightTriangle& first, const SightTriangle& second);
  // Corners 1 to 4 as X, Y, Z each, split along the diagonal from corner 1 to corner 3.
  SightStrip(const Sight& origin, const std::array<double, 12>& corners);

  SightTriangle Half(std::size_t n) const;

  PairSight a{};
  PairSight b{};
  PairSight c{};
  PairSight normal{};  // b x c
  Pair height{};       // normal . a
  int primitive = 0;
  int column = 0;  // strip of the primitive, 0 for the only one
};

// Bit n is set when half n of the strip is hit, with the parameter t[n] of its test.
struct StripHit {
  unsigned halves;
  Pair t;
  double Parameter() const { return (halves & 1U) != 0 ? t[0] : t[1]; }
};

// The test of both halves. A ray parallel to a plane has det = 0, t = 1, and no u or v that passes.
inline StripHit HitsStrip(const SightStrip& strip, const Sight& d) {
  const PairSight ray = {Pair{d.x, d.x}, Pair{d.y, d.y}, Pair{d.z, d.z}};
  const PairSight& a = strip.a;
  const Pair det = Dot(strip.normal, ray);
  const PairSight m = {ray.y * a.z - ray.z * a.y, ray.z * a.x - ray.x * a.z, ray.x * a.y - ray.y * a.x};
  const Pair s1 = Dot(m, strip.c);
  const Pair u = -s1 / det;
  const Pair v = Dot(m, strip.b) / det;
  Pair t = strip.height / det;
  if (Bits(s1 == 0) != 0) {
    const PairSight x = {v * strip.c.x + u * strip.b.x + a.x, v * strip.c.y + u * strip.b.y + a.y,
                         v * strip.c.z + u * strip.b.z + a.z};
    t = s1 == 0 ? Dot(x, ray) : t;
  }
  t = det == 0 ? Pair{1, 1} : t;
  return {Bits((0 <= u) & (u <= 1) & (0 <= v) & (v <= 1) & (0 < t) & (t < 1) & (u + v <= 1)), t};
}

// What is looked at before the test of a strip, one cache line: the planes through O and an edge, inner side positive;
// all zero where the strip is not on one side of the plane.
struct alignas(64) Sieve {
  Quad x{};
  Quad y{};
  Quad z{};
  float nearest = 0;  // square of a lower bound of the distance, 0 where distance says nothing
  int primitive = 0;
  int column = 0;
  std::uint32_t strip = 0;

  // False only when the ray misses. The ray's largest component is 1 or -1.
  bool Passes(const Quad& rayX, const Quad& rayY, const Quad& rayZ) const {
    const PairMask outside = std::bit_cast<PairMask>(x * rayX + y * rayY + z * rayZ < -1e-5F);
    return (outside[0] | outside[1]) == 0;
  }
};

class RayIndex {
 public:
  // Lists the strips by direction. The sample is some of the rays to come, the number of which is given: squares are
  // small where many rays pass.
  RayIndex(std::vector<SightStrip> strips, std::span<const Sight> sample, double rays);

  // Calls hit(n, t) for each strip n, 0 .., that the ray hits, in no set order. Left out are the only strip of the
  // ray's own primitive, and the strip with the ray's own column of it.
  template <class Hit>
  void FindHits(const Sight& ray, int ownPrimitive, int ownColumn, Hit&& hit) const;

 private:
  static constexpr int kSlots = 1024;  // along the edge of a face

  // Division of a face along one of its edges.
  struct Division {
    std::array<std::uint16_t, kSlots> part{};  // of each slot
    std::vector<int> begin;                    // first slot of each part, and kSlots
    int parts() const { return static_cast<int>(begin.size()) - 1; }
  };
  struct Face {
    Division columns;
    Division rows;
    std::uint32_t firstSquare = 0;
  };
  // The ray with 1 or -1 as its largest component, and where it passes a face: columns and rows in slots.
  struct Passage {
    Sight scaled;
    std::size_t face;
    double column;
    double row;
  };
  // Squares of one row that a strip is seen through.
  struct Stretch {
    std::uint32_t square;
    std::uint32_t count;
    std::uint32_t sieve;
  };
  class FaceRows;
  class Outlook;

  static Passage PassageOf(const Sight& ray);
  static void Divide(std::span<const double> weights, int parts, Division& division);
  void DivideFaces(std::span<const Sight> sample, double rays);
  std::vector<Outlook> OrderByDistance();
  std::vector<std::vector<Stretch>> Stretches(const std::vector<Outlook>& outlooks) const;
  void List(const std::vector<Outlook>& outlooks);

  std::vector<SightStrip> strips_;
  std::vector<Sieve> sieves_;              // one for each strip, the nearest first
  std::vector<std::uint32_t> everywhere_;  // sieves to try for every ray
  std::array<Face, 6> faces_;
  std::vector<std::uint32_t> start_;   // first place of a square in listed_, and the end of the last
  std::vector<std::uint32_t> listed_;  // sieves of the squares, ascending
};

inline RayIndex::Passage RayIndex::PassageOf(const Sight& ray) {
  const double x = std::abs(ray.x);
  const double y = std::abs(ray.y);
  const double z = std::abs(ray.z);
  constexpr double kHalf = 0.5 * kSlots;
  const bool isX = x >= y && x >= z;
  const bool isY = !isX && y >= z;
  const Sight scaled = 1 / (isX ? x : isY ? y : z) * ray;
  const auto passage = [&scaled](std::size_t face, double depth, double along, double across) {
    return Passage{scaled, face + (depth < 0 ? 1 : 0), along * kHalf + kHalf, across * kHalf + kHalf};
  };
  if (isX) return passage(0, scaled.x, scaled.y, scaled.z);
  if (isY) return passage(2, scaled.y, scaled.z, scaled.x);
  return passage(4, scaled.z, scaled.x, scaled.y);
}

template <class Hit>
void RayIndex::FindHits(const Sight& ray, int ownPrimitive, int ownColumn, Hit&& hit) const {
  const auto tryStrip = [&](const Sieve& sieve) {
    if (sieve.primitive == ownPrimitive && (sieve.column == ownColumn || sieve.column == 0)) return;
    const StripHit found = HitsStrip(strips_[sieve.strip], ray);
    if (found.halves != 0) hit(sieve.strip, found.Parameter());
  };
  const double square = Dot(ray, ray);
  if (!(square >= 1e-100 && square <= 1e100)) {
    for (const Sieve& sieve : sieves_) tryStrip(sieve);
    return;
  }
  for (const std::uint32_t n : everywhere_) tryStrip(sieves_[n]);
  const Passage passage = PassageOf(ray);
  const Face& face = faces_[passage.face];
  const std::uint32_t column = face.columns.part[static_cast<std::size_t>(std::min(passage.column, kSlots - 0.5))];
  const std::uint32_t row = face.rows.part[static_cast<std::size_t>(std::min(passage.row, kSlots - 0.5))];
  const std::uint32_t at = face.firstSquare + row * static_cast<std::uint32_t>(face.columns.parts()) + column;
  const auto broad = [](double value) {
    const float v = static_cast<float>(value);
    return Quad{v, v, v, v};
  };
  const Quad x = broad(passage.scaled.x);
  const Quad y = broad(passage.scaled.y);
  const Quad z = broad(passage.scaled.z);
  const double farthest = (square < 1 ? 1 / square : square) * (1 + 1e-4);
  const std::uint32_t* const end = listed_.data() + start_[at + 1];
  for (const std::uint32_t* n = listed_.data() + start_[at]; n != end; ++n) {
    const Sieve& sieve = sieves_[*n];
    if (sieve.nearest > farthest) break;
    if (sieve.Passes(x, y, z)) tryStrip(sieve);
  }
}

}  // namespace orv
