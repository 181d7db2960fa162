#include "geometry/ray_index.h"

#include <numeric>
#include <tbb/blocked_range.h>
#include <tbb/parallel_for.h>

namespace orv {
namespace {

constexpr double kEps = 0x1p-53;
constexpr double kSteadyLimit = 1e8;
constexpr double kWidestBand = 0.1;
constexpr double kMargin = 1e-5;   // on a face of the cube, whose half edge is 1
constexpr double kOverlap = 1e-3;  // outlines are clipped so much beyond the edge of a face
constexpr std::size_t kFaces = 6;

// Where the rays that a triangle can stop lead.
struct Region {
  enum class Kind { Nowhere, Outline, Band, Everywhere } kind = Kind::Nowhere;
  Sight normal;      // of the plane of the great circle, unit length
  double width = 0;  // sine of the half width of the band
};

// Lower bound of the distance from O to the hull of the points: the best of the planes that are perpendicular to the
// shortest way to an edge, or to the plane of the first three points.
double Nearest(std::span<const Sight> points) {
  double best = 0;
  double longest = 0;
  const auto tryPlane = [&](const Sight& direction) {
    const double length = Length(direction);
    double lowest = HUGE_VAL;
    for (const Sight& point : points) lowest = std::min(lowest, Dot(point, direction));
    best = std::max(best, lowest / length);  // unchanged by 0 / 0
  };
  for (std::size_t i = 0; i < points.size(); ++i) {
    longest = std::max(longest, Dot(points[i], points[i]));
    const Sight& from = points[i];
    const Sight side = points[(i + 1) % points.size()] - from;
    const double square = Dot(side, side);
    const double share = square > 0 ? std::clamp(-Dot(from, side) / square, 0.0, 1.0) : 0.0;
    tryPlane(from + share * side);
  }
  const Sight normal = Cross(points[1] - points[0], points[2] - points[0]);
  tryPlane((Dot(normal, points[0]) < 0 ? -1.0 : 1.0) * normal);
  return std::max(0.0, best - 16 * kEps * std::sqrt(longest));
}

Region NarrowestBand(const SightTriangle& triangle, double a, double b, double c) {
  Region region{Region::Kind::Everywhere, {}, kWidestBand};
  const auto propose = [&region](const Sight& normal, double excess) {
    const double length = Length(normal);
    const double width = 2 * excess / length;
    if (width < region.width) region = {Region::Kind::Band, (1 / length) * normal, width};
  };
  const std::array<Sight, 3> points = {triangle.a, triangle.a + triangle.b, triangle.a + triangle.c};
  const double distance = Nearest(points) - 4 * kEps * (a + b + c);
  const double noise = 12 * kEps * b * c;
  if (distance > 0) {
    propose(triangle.normal, (std::abs(triangle.height) + 40 * kEps * a * b * c) / distance + noise);
  }
  const double det = Length(triangle.normal) + noise;
  propose(Cross(triangle.a, triangle.b), det + 20 * kEps * a * b);
  propose(Cross(triangle.a, triangle.c), det + 20 * kEps * a * c);
  return region;
}

Region RegionOf(const SightTriangle& triangle) {
  if (triangle.normal.x == 0 && triangle.normal.y == 0 && triangle.normal.z == 0) return {};
  const double a = Length(triangle.a);
  const double b = Length(triangle.b);
  const double c = Length(triangle.c);
  const auto ordinary = [](double length) { return length >= 1e-50 && length <= 1e50; };
  if (!ordinary(a) || !ordinary(b) || !ordinary(c)) return {Region::Kind::Everywhere, {}, 0};
  if (b * c * (a + b + c) <= kSteadyLimit * std::abs(triangle.height)) return {Region::Kind::Outline, {}, 0};
  return NarrowestBand(triangle, a, b, c);
}

void SetReach(SightTriangle& triangle) {
  if (RegionOf(triangle).kind != Region::Kind::Outline) return;
  triangle.side = triangle.height < 0 ? -1 : 1;
  triangle.reach = std::abs(triangle.height);
}

// Coordinates on a face of the cube: depth towards the face, along and across it.
struct FacePoint {
  double depth;
  double along;
  double across;
};

FacePoint OnFace(std::size_t face, const Sight& v) {
  const double sign = face % 2 == 0 ? 1 : -1;
  switch (face / 2) {
    case 0:
      return {sign * v.x, v.y, v.z};
    case 1:
      return {sign * v.y, v.z, v.x};
    default:
      return {sign * v.z, v.x, v.y};
  }
}

// How far the point is inside of each of the four planes through O and the edges of the face.
double Inside(std::size_t plane, const FacePoint& p) {
  const double bound = p.depth * (1 + kOverlap);
  switch (plane) {
    case 0:
      return bound - p.along;
    case 1:
      return bound + p.along;
    case 2:
      return bound - p.across;
    default:
      return bound + p.across;
  }
}

// The squares of one face that a strip is seen through: a range of columns for each row.
class FaceRows {
 public:
  explicit FaceRows(int fineness)
      : fineness_(fineness),
        half_(0.5 * fineness),
        margin_(kMargin * half_),
        low_(static_cast<std::size_t>(fineness), HUGE_VAL),
        high_(static_cast<std::size_t>(fineness), -HUGE_VAL) {}

  void AddOutline(std::size_t face, const std::array<Sight, 3>& corners);
  void AddBand(std::size_t face, const Region& band);

  // Hands over first and last column of each row touched, and forgets them.
  template <class Row>
  void Take(Row&& row) {
    for (int r = firstRow_; r <= lastRow_; ++r) {
      double& low = low_[static_cast<std::size_t>(r)];
      double& high = high_[static_cast<std::size_t>(r)];
      if (low - margin_ < fineness_ && high + margin_ >= 0) {
        row(r, static_cast<int>(std::max(low - margin_, 0.0)),
            static_cast<int>(std::min(high + margin_, fineness_ - 0.5)));
      }
      low = HUGE_VAL;
      high = -HUGE_VAL;
    }
    firstRow_ = fineness_;
    lastRow_ = -1;
  }

 private:
  struct Place {
    double column;
    double row;
  };

  void AddEdge(Place from, Place to);
  void Widen(int row, double column) {
    low_[static_cast<std::size_t>(row)] = std::min(low_[static_cast<std::size_t>(row)], column);
    high_[static_cast<std::size_t>(row)] = std::max(high_[static_cast<std::size_t>(row)], column);
  }
  Place PlaceOf(const FacePoint& p) const {
    const double scale = half_ / p.depth;
    return {p.along * scale + half_, p.across * scale + half_};
  }

  int fineness_;
  double half_;
  double margin_;
  std::vector<double> low_;
  std::vector<double> high_;
  int firstRow_ = fineness_;
  int lastRow_ = -1;
};

void FaceRows::AddOutline(std::size_t face, const std::array<Sight, 3>& corners) {
  std::array<FacePoint, 16> outline{};
  std::size_t count = corners.size();
  unsigned allOut = 15;
  unsigned anyOut = 0;
  for (std::size_t i = 0; i < count; ++i) {
    outline[i] = OnFace(face, corners[i]);
    unsigned out = 0;
    for (std::size_t plane = 0; plane < 4; ++plane) out |= Inside(plane, outline[i]) < 0 ? 1U << plane : 0U;
    allOut &= out;
    anyOut |= out;
  }
  if (allOut != 0) return;
  for (std::size_t plane = 0; plane < 4; ++plane) {
    if ((anyOut >> plane & 1U) == 0) continue;
    std::array<FacePoint, 16> clipped{};
    std::size_t kept = 0;
    for (std::size_t i = 0; i < count; ++i) {
      const FacePoint& from = outline[i];
      const FacePoint& to = outline[(i + 1) % count];
      const double d0 = Inside(plane, from);
      const double d1 = Inside(plane, to);
      if (d0 >= 0) clipped[kept++] = from;
      if ((d0 < 0) == (d1 < 0)) continue;
      const double s = d0 / (d0 - d1);
      clipped[kept++] = {from.depth + s * (to.depth - from.depth), from.along + s * (to.along - from.along),
                         from.across + s * (to.across - from.across)};
    }
    outline = clipped;
    count = kept;
  }
  for (std::size_t i = 0; i < count; ++i) AddEdge(PlaceOf(outline[i]), PlaceOf(outline[(i + 1) % count]));
}

void FaceRows::AddEdge(Place from, Place to) {
  if (from.row > to.row) std::swap(from, to);
  const double rise = to.row - from.row;
  const double slope = rise > 1e-3 ? (to.column - from.column) / rise : 0;
  const double lowest = from.row - margin_;
  const double highest = to.row + margin_;
  if (highest < 0 || lowest > fineness_) return;
  const int first = std::min(static_cast<int>(std::max(lowest, 0.0)), fineness_ - 1);
  const int last = std::min(static_cast<int>(highest), fineness_ - 1);
  for (int row = first; row <= last; ++row) {
    const double below = row - margin_;
    const double above = row + 1 + margin_;
    const bool whole = rise <= 1e-3;
    Widen(row, whole || below <= from.row ? from.column : from.column + (below - from.row) * slope);
    Widen(row, whole || above >= to.row ? to.column : from.column + (above - from.row) * slope);
  }
  firstRow_ = std::min(firstRow_, first);
  lastRow_ = std::max(lastRow_, last);
}

void FaceRows::AddBand(std::size_t face, const Region& band) {
  const FacePoint n = OnFace(face, band.normal);
  const double width = 1.75 * band.width + kMargin;
  for (int row = 0; row < fineness_; ++row) {
    const double across0 = n.across * ((row - margin_) / half_ - 1);
    const double across1 = n.across * ((row + 1 + margin_) / half_ - 1);
    // n.along times the place along the face lies between these two.
    const double low = -width - n.depth - std::max(across0, across1);
    const double high = width - n.depth - std::min(across0, across1);
    const double steep = std::abs(n.along) * (1 + kMargin);
    if (low > steep || high < -steep) continue;
    const bool flat = steep < 1e-9;
    Widen(row, flat ? 0 : (std::clamp(low / n.along, -1.5, 1.5) + 1) * half_);
    Widen(row, flat ? fineness_ : (std::clamp(high / n.along, -1.5, 1.5) + 1) * half_);
    firstRow_ = std::min(firstRow_, row);
    lastRow_ = std::max(lastRow_, row);
  }
}

struct StripRegions {
  Region first;
  Region second;
  bool Has(Region::Kind kind) const { return first.kind == kind || second.kind == kind; }
};

void AddRegion(FaceRows& rows, std::size_t face, const SightTriangle& triangle, const Region& region) {
  if (region.kind == Region::Kind::Outline) {
    rows.AddOutline(face, {triangle.a, triangle.a + triangle.b, triangle.a + triangle.c});
  } else if (region.kind == Region::Kind::Band) {
    rows.AddBand(face, region);
  }
}

// Square of a lower bound of the strip's distance, 0 where distance says nothing.
double NearestSquare(const SightStrip& strip) {
  const SightTriangle& first = strip.first;
  const StripRegions regions = {RegionOf(first), RegionOf(strip.second)};
  if (regions.Has(Region::Kind::Band) || regions.Has(Region::Kind::Everywhere)) return 0;
  const double nearest = Nearest(std::array{first.a + first.b, strip.second.a, first.a + first.c, first.a});
  return nearest * nearest;
}

}  // namespace

SightStrip MakeSightStrip(const Sight& origin, const std::array<double, 12>& corners) {
  const auto corner = [&corners](std::size_t n) {
    return Sight{corners[3 * n], corners[3 * n + 1], corners[3 * n + 2]};
  };
  const Sight p1 = corner(0);
  const Sight p2 = corner(1);
  const Sight p3 = corner(2);
  const Sight p4 = corner(3);
  SightStrip strip;
  strip.first = SightTriangle(p4 - origin, p1 - p4, p3 - p4);
  strip.second = SightTriangle(p2 - origin, p3 - p2, p1 - p2);
  SetReach(strip.first);
  SetReach(strip.second);
  return strip;
}

RayIndex::RayIndex(std::vector<SightStrip> strips, std::size_t rays) {
  fineness_ = std::clamp(static_cast<int>(std::sqrt(static_cast<double>(rays) / 6)), 4, 512);
  if (const char* e = std::getenv("FINE")) fineness_ = std::atoi(e);
  half_ = 0.5 * fineness_;
  OrderByDistance(strips);
  List();
}

void RayIndex::OrderByDistance(std::vector<SightStrip>& strips) {
  std::vector<std::pair<double, std::uint32_t>> order(strips.size());
  tbb::parallel_for(tbb::blocked_range<std::size_t>(0, strips.size(), 128), [&](const auto& range) {
    for (std::size_t s = range.begin(); s < range.end(); ++s) {
      order[s] = {NearestSquare(strips[s]), static_cast<std::uint32_t>(s)};
    }
  });
  std::sort(order.begin(), order.end());
  strips_.reserve(strips.size());
  nearest_.reserve(strips.size());
  for (const auto& [nearest, s] : order) {
    strips_.push_back(strips[s]);
    nearest_.push_back(nearest);
  }
}

void RayIndex::List() {
  constexpr std::size_t kBlock = 64;
  const std::size_t size = static_cast<std::size_t>(fineness_);
  std::vector<std::vector<Span>> blocks((strips_.size() + kBlock - 1) / kBlock);
  tbb::parallel_for(std::size_t{0}, blocks.size(), [&](std::size_t block) {
    FaceRows rows(fineness_);
    const std::size_t end = std::min((block + 1) * kBlock, strips_.size());
    for (std::size_t s = block * kBlock; s < end; ++s) {
      const SightStrip& strip = strips_[s];
      const StripRegions regions = {RegionOf(strip.first), RegionOf(strip.second)};
      if (regions.Has(Region::Kind::Everywhere)) continue;
      for (std::size_t face = 0; face < kFaces; ++face) {
        AddRegion(rows, face, strip.first, regions.first);
        AddRegion(rows, face, strip.second, regions.second);
        rows.Take([&](int row, int low, int high) {
          const std::size_t square =
              (face * size + static_cast<std::size_t>(row)) * size + static_cast<std::size_t>(low);
          blocks[block].push_back({static_cast<std::uint32_t>(square), static_cast<std::uint32_t>(high - low + 1),
                                   static_cast<std::uint32_t>(s)});
        });
      }
    }
  });
  for (std::size_t s = 0; s < strips_.size() && nearest_[s] == 0; ++s) {
    const StripRegions regions = {RegionOf(strips_[s].first), RegionOf(strips_[s].second)};
    if (regions.Has(Region::Kind::Everywhere)) everywhere_.push_back(static_cast<std::uint32_t>(s));
  }
  // start_[square + 1] counts, then marks the place after the last number of a square.
  start_.assign(kFaces * size * size + 1, 0);
  for (const auto& block : blocks) {
    for (const Span& span : block) {
      for (std::uint32_t i = 0; i < span.count; ++i) ++start_[span.square + i + 1];
    }
  }
  std::partial_sum(start_.begin(), start_.end(), start_.begin());
  listed_.resize(start_.back());
  std::vector<std::uint32_t> next(start_.begin(), start_.end() - 1);
  for (const auto& block : blocks) {
    for (const Span& span : block) {
      for (std::uint32_t i = 0; i < span.count; ++i) listed_[next[span.square + i]++] = span.strip;
    }
  }
}

}  // namespace orv
