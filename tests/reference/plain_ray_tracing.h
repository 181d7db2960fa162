#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <vector>

#include "geometry/cell_data.h"
#include "geometry/ray_tracing.h"
#include "numerics/error_prompt.h"

// The shadow search as it reads: one ray after the other, one strip after the other, with its caches. It is slow, and
// what the shipped form must agree with bit for bit. It computes always; the modes are not its business.
namespace orv::reference {

struct PlainVector {
  double x;
  double y;
  double z;
};

inline PlainVector Minus(const PlainVector& a, const PlainVector& b) {
  return {a.x - b.x, a.y - b.y, a.z - b.z};
}
inline double PlainDot(const PlainVector& a, const PlainVector& b) {
  return a.x * b.x + a.y * b.y + a.z * b.z;
}
inline PlainVector PlainCross(const PlainVector& a, const PlainVector& b) {
  return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

inline int PlainTriangleHit(const PlainVector& d, const PlainVector& a, const PlainVector& b, const PlainVector& c,
                            double& t) {
  const PlainVector n = PlainCross(b, c);
  const double det = PlainDot(n, d);
  if (det == 0) {
    t = 1;
    return 0;
  }
  const PlainVector m = PlainCross(d, a);
  const double s1 = PlainDot(m, c);
  const double u = -s1 / det;
  const double v = PlainDot(m, b) / det;
  if (s1 != 0) {
    t = PlainDot(n, a) / det;
  } else {
    const PlainVector x = {v * c.x + u * b.x + a.x, v * c.y + u * b.y + a.y, v * c.z + u * b.z + a.z};
    t = PlainDot(x, d);
  }
  if (!(0 <= u)) return 0;
  if (!(u <= 1)) return 0;
  if (!(0 <= v)) return 0;
  if (!(v <= 1)) return 0;
  if (!(0 < t)) return 0;
  if (!(t < 1)) return 0;
  if (!(u + v <= 1)) return 0;
  return 1;
}

inline int PlainQuadHit(const PlainVector& ray, const PlainVector& origin, const std::array<PlainVector, 5>& p,
                        double& t) {
  if (PlainTriangleHit(ray, Minus(p[4], origin), Minus(p[1], p[4]), Minus(p[3], p[4]), t) == 1) return 1;
  return PlainTriangleHit(ray, Minus(p[2], origin), Minus(p[3], p[2]), Minus(p[1], p[2]), t);
}

// The corners of all strips in a table of their own: (primitive, strip) -> corners 1 to 4. A strip that lies outside of
// the array has none.
class PlainStrips {
 public:
  PlainStrips(const Cells& cells, int primitives) : strips_(static_cast<std::size_t>(primitives) + 1) {
    for (int b = 1; b <= primitives; ++b) {
      std::vector<std::array<PlainVector, 5>>& of = strips_[static_cast<std::size_t>(b)];
      count_.resize(strips_.size());
      if (b > cells.BorderCorners.primitives()) continue;
      count_[static_cast<std::size_t>(b)] = Cells::LoopCount(cells.BorderCorners(b, 0, 0));
      of.resize(static_cast<std::size_t>(cells.BorderCorners.strips()) + 1);
      for (int s = 1; s <= cells.BorderCorners.strips(); ++s) {
        for (std::size_t corner = 1; corner <= 4; ++corner) {
          of[static_cast<std::size_t>(s)][corner] = {cells.BorderCorners(b, s, corner * 3 - 2),
                                                     cells.BorderCorners(b, s, corner * 3 - 1),
                                                     cells.BorderCorners(b, s, corner * 3)};
        }
      }
    }
  }
  int Count(int b) const { return count_[static_cast<std::size_t>(b)]; }
  bool Holds(int b, int s) const { return static_cast<std::size_t>(s) < strips_[static_cast<std::size_t>(b)].size(); }
  const std::array<PlainVector, 5>& Corners(int b, int s) const {
    return strips_[static_cast<std::size_t>(b)][static_cast<std::size_t>(s)];
  }

 private:
  std::vector<std::vector<std::array<PlainVector, 5>>> strips_;
  std::vector<int> count_;
};

// Flat primitives first; in the last place the latest that reached the running maximum.
inline std::vector<int> PlainOrder(const PlainStrips& strips, int n) {
  std::vector<int> list(static_cast<std::size_t>(n) + 2);
  const auto at = [&list](int place) -> int& { return list[static_cast<std::size_t>(place)]; };
  int front = 0;
  int back = n + 1;
  int top = n >= 1 ? strips.Count(1) : 0;
  for (int p = 1; p <= n; ++p) {
    const int c = strips.Count(p);
    if (top <= c && c > 2) {
      top = c;
      back = back - 1;
      at(back) = p;
      for (int place = back; place < n; ++place) {
        const int kept = at(place);
        at(place) = at(place + 1);
        at(place + 1) = kept;
      }
    } else {
      front = front + 1;
      at(front) = p;
    }
  }
  return list;
}

// Writes quantities 18 and 20 of the tested cells; returns the number of strips tested.
inline double PlainRayTracing(Cells& cells, const RayTracingInput& input) {
  CellBlock& data = cells.CellData;
  const int n = input.NumberOfPrimitives;
  const double limit = input.PlumeLimitAngle;
  const PlainStrips strips(cells, n);
  const std::vector<int> list = PlainOrder(strips, n);
  PlainVector thruster = {0, 0, 0};
  if (const int p = input.ThrusterPrimitive; p != 0) thruster = {data(p, 1, 1, 1), data(p, 1, 1, 2), data(p, 1, 1, 3)};
  int lastPlace = 1;
  int lastStrip = -1;
  double tests = 0;

  const auto columnIsOut = [&](int b, int u) {
    double angle = 180;
    const int rows = cells.CountJ(b);
    for (int j = 1; angle > limit && j <= rows; ++j) {
      if (u <= data.cellsI()) angle = data(b, u, j, 10);  // left as it was by an index outside
      if (!(angle <= limit)) angle = 181;                 // no number is not inside
    }
    return angle > limit;
  };

  int from = 1;
  int to = input.numberPrimWithVolumic;
  if (input.OnlyPrimitive != 0) from = to = input.OnlyPrimitive;
  for (int k = from; k <= to; ++k) {
    if (k == input.ThrusterPrimitive) continue;
    const int cellsI = cells.CountI(k);
    const int cellsJ = cells.CountJ(k);
    for (int i = 1; i <= cellsI; ++i) {
      for (int j = 1; j <= cellsJ; ++j) {
        double flag = 0.5;
        data(k, i, j, 20) = flag;
        data(k, i, j, 18) = data(k, i, j, 8);
        if (data(k, i, j, 10) > limit) continue;
        flag = 0;
        const PlainVector ray = Minus({data(k, i, j, 1), data(k, i, j, 2), data(k, i, j, 3)}, thruster);
        for (int q = 1; q <= n && flag == 0; ++q) {
          int place = lastPlace + q - 1;
          if (place > n) place -= n;
          const int b = list[static_cast<std::size_t>(place)];
          if (b == input.ThrusterPrimitive) continue;
          const int count = strips.Count(b);
          for (int u = 1; u <= count; ++u) {
            if (columnIsOut(b, u)) break;
            int s = u;
            if (lastStrip >= 1 && lastStrip <= count) {
              s = lastStrip + u - 1;
              if (s > count) s -= count;
            }
            if (b == k && (s == i || count == 1)) continue;
            if (!strips.Holds(b, s)) continue;
            double t = 0;
            ++tests;
            if (PlainQuadHit(ray, thruster, strips.Corners(b, s), t) == 1) {
              data(k, i, j, 18) = std::pow(PlainDot(ray, ray), 0.5) * t;
              const double code = s % 10 == 0 ? s + 0.111 : s;
              flag = b + code / 1000;
              lastPlace = place;
              lastStrip = s - 1;
              break;
            }
          }
        }
        data(k, i, j, 20) = flag;
      }
    }
  }
  return tests;
}

}  // namespace orv::reference
