#include "geometry/ray_index.h"

#include <numeric>
#include <tbb/blocked_range.h>
#include <tbb/parallel_for.h>
#include <utility>

namespace orv {
namespace {

constexpr double kEps = 0x1p-53;
constexpr double kSteadyLimit = 1e8;
constexpr double kWidestBand = 0.1;
constexpr double kMargin = 1e-5;   // on a face of the cube, whose half edge is 1
constexpr double kOverlap = 1e-3;  // outlines are clipped so much beyond the edge of a face
constexpr std::size_t kFaces = 6;
constexpr std::size_t kBlock = 64;  // strips that one task takes

// Where the rays that a triangle can stop lead.
struct Region {
  enum class Kind { Nowhere, Outline, Band, Everywhere } kind = Kind::Nowhere;
  Sight normal;      // of the plane of the great circle, unit length
  double width = 0;  // sine of the half width of the band
};

// Lower bound of the distance from O to the hull of the points: the best of the planes that are perpendicular to the
// shortest way to an edge, or parallel to the first three points.
double Nearest(std::span<const Sight> points) {
  double best = 0;
  double longest = 0;
  const auto tryPlane = [&](const Sight& direction) {
    double lowest = HUGE_VAL;
    for (const Sight& point : points) lowest = std::min(lowest, Dot(point, direction));
    best = std::max(best, lowest / Length(direction));  // left alone by 0 / 0
  };
  for (std::size_t i = 0; i < points.size(); ++i) {
    const Sight& from = points[i];
    const Sight side = points[(i + 1) % points.size()] - from;
    const double square = Dot(side, side);
    tryPlane(from + (square > 0 ? std::clamp(-Dot(from, side) / square, 0.0, 1.0) : 0.0) * side);
    longest = std::max(longest, Length(from));
  }
  const Sight normal = Cross(points[1] - points[0], points[2] - points[0]);
  tryPlane((Dot(normal, points[0]) < 0 ? -1.0 : 1.0) * normal);
  return std::max(0.0, best - 16 * kEps * longest);
}

Region NarrowestBand(const SightTriangle& triangle, const Sight& n, double a, double b, double c) {
  Region region{Region::Kind::Everywhere, {}, kWidestBand};
  const auto propose = [&region](const Sight& normal, double excess) {
    const double length = Length(normal);
    const double width = 2 * excess / length;
    if (width < region.width) region = {Region::Kind::Band, 1 / length * normal, width};
  };
  const std::array points = {triangle.a, triangle.a + triangle.b, triangle.a + triangle.c};
  const double distance = Nearest(points) - 4 * kEps * (a + b + c);
  const double noise = 12 * kEps * b * c;
  if (distance > 0) propose(n, (std::abs(Dot(n, triangle.a)) + 40 * kEps * a * b * c) / distance + noise);
  const double det = Length(n) + noise;
  propose(Cross(triangle.a, triangle.b), det + 20 * kEps * a * b);
  propose(Cross(triangle.a, triangle.c), det + 20 * kEps * a * c);
  return region;
}

Region RegionOf(const SightTriangle& triangle) {
  const Sight n = Cross(triangle.b, triangle.c);
  if (n.x == 0 && n.y == 0 && n.z == 0) return {};
  const double a = Length(triangle.a);
  const double b = Length(triangle.b);
  const double c = Length(triangle.c);
  const auto ordinary = [](double length) { return length >= 1e-50 && length <= 1e50; };
  if (!ordinary(a) || !ordinary(b) || !ordinary(c)) return {Region::Kind::Everywhere, {}, 0};
  if (b * c * (a + b + c) <= kSteadyLimit * std::abs(Dot(n, triangle.a))) return {Region::Kind::Outline, {}, 0};
  return NarrowestBand(triangle, n, a, b, c);
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

// How far the point is inside of one of the four planes through O and near the edges of the face.
double Inside(std::size_t plane, const FacePoint& p) {
  const double bound = p.depth * (1 + kOverlap);
  const double place = plane < 2 ? p.along : p.across;
  return plane % 2 == 0 ? bound - place : bound + place;
}

// An outline as it is cut at the planes of a face; rounding may add more corners than a convex outline can get.
struct Outline {
  std::array<FacePoint, 20> corner;
  std::size_t count = 0;
  void Add(const FacePoint& point) { corner[count++] = point; }
  const FacePoint& Next(std::size_t n) const { return corner[n + 1 == count ? 0 : n + 1]; }
};

Outline Clip(const Outline& outline, std::size_t plane) {
  Outline clipped;
  for (std::size_t n = 0; n < outline.count; ++n) {
    const FacePoint& from = outline.corner[n];
    const FacePoint& to = outline.Next(n);
    const double d0 = Inside(plane, from);
    const double d1 = Inside(plane, to);
    if (d0 >= 0) clipped.Add(from);
    if ((d0 < 0) == (d1 < 0)) continue;
    const double s = d0 / (d0 - d1);
    clipped.Add({from.depth + s * (to.depth - from.depth), from.along + s * (to.along - from.along),
                 from.across + s * (to.across - from.across)});
  }
  return clipped;
}

}  // namespace

// What the index needs to know of a strip while it is made.
class RayIndex::Outlook {
 public:
  Outlook() = default;
  explicit Outlook(const SightStrip& strip);

  bool Has(Region::Kind kind) const { return regions_[0].kind == kind || regions_[1].kind == kind; }
  Sieve MakeSieve();
  void AddTo(FaceRows& rows, std::size_t number, const Face& face) const;

 private:
  std::array<SightTriangle, 2> halves_;
  std::array<Region, 2> regions_;
  std::array<Sight, 4> corners_;  // of the halves that have an outline, in turn
  std::size_t count_ = 0;         // 4, 3 for one half, 0 for none
  bool convex_ = false;           // the strip is the cone of them
};

RayIndex::Outlook::Outlook(const SightStrip& strip)
    : halves_{strip.Half(0), strip.Half(1)}, regions_{RegionOf(halves_[0]), RegionOf(halves_[1])} {
  const SightTriangle& first = halves_[0];
  const SightTriangle& second = halves_[1];
  const bool hasFirst = regions_[0].kind == Region::Kind::Outline;
  const bool hasSecond = regions_[1].kind == Region::Kind::Outline;
  const auto add = [this](const Sight& corner) { corners_[count_++] = corner; };
  if (hasFirst) add(first.a + first.b);
  if (hasSecond) add(second.a);
  if (hasFirst) add(first.a + first.c);
  if (hasFirst) add(first.a);
  if (hasSecond && !hasFirst) add(second.a + second.b);
  if (hasSecond && !hasFirst) add(second.a + second.c);
}

Sieve RayIndex::Outlook::MakeSieve() {
  Sieve sieve;
  if (count_ == 0 || Has(Region::Kind::Band) || Has(Region::Kind::Everywhere)) return sieve;
  const std::span<const Sight> corners(corners_.data(), count_);
  const double nearest = Nearest(corners) * (1 - 1e-6);
  sieve.nearest = static_cast<float>(std::min(nearest * nearest, 1e38));
  int planes = 0;
  int turns = 0;  // how many of them have the strip on their left, less those on their right
  for (std::size_t n = 0; n < count_; ++n) {
    const Sight edge = Cross(corners[n], corners[(n + 1) % count_]);
    const double length = Length(edge);
    double lowest = 0;
    double highest = 0;
    for (const Sight& corner : corners) {
      const double rounding = 8 * kEps * Length(corner) * length;
      const double place = Dot(edge, corner);
      lowest = std::min(lowest, place + rounding);
      highest = std::max(highest, place - rounding);
    }
    if (!(length > 0) || (lowest < 0) == (highest > 0)) continue;
    const double scale = (lowest < 0 ? -1 : 1) / length;
    const int lane = planes++;
    turns += lowest < 0 ? -1 : 1;
    sieve.x[lane] = static_cast<float>(scale * edge.x);
    sieve.y[lane] = static_cast<float>(scale * edge.y);
    sieve.z[lane] = static_cast<float>(scale * edge.z);
  }
  double longest = 0;
  for (const Sight& corner : corners) longest = std::max(longest, Length(corner));
  convex_ = std::abs(turns) == static_cast<int>(count_) && nearest >= 1e-6 * longest;
  return sieve;
}

// The squares of one face that a strip is seen through: a range of columns, in slots, for each row.
class RayIndex::FaceRows {
 public:
  void AddOutline(std::size_t number, const Face& face, std::span<const Sight> corners);
  void AddBand(std::size_t number, const Face& face, const Region& band);

  // Hands over row, first and last column for each row touched, and forgets them.
  template <class Row>
  void Take(const Face& face, Row&& row) {
    for (int r = firstRow_; r <= lastRow_; ++r) {
      Extent& extent = extents_[static_cast<std::size_t>(r)];
      const double low = extent.low - kSlotMargin;
      const double high = extent.high + kSlotMargin;
      if (low <= kSlots && high >= 0) row(r, face.columns.part[SlotOf(low)], face.columns.part[SlotOf(high)]);
      extent = {};
    }
    firstRow_ = kSlots;
    lastRow_ = -1;
  }

 private:
  static constexpr double kHalf = 0.5 * kSlots;
  static constexpr double kSlotMargin = kMargin * kHalf;
  struct Extent {
    double low = HUGE_VAL;
    double high = -HUGE_VAL;
  };
  struct Point {
    double column;
    double row;
  };

  static std::size_t SlotOf(double place) { return static_cast<std::size_t>(std::clamp(place, 0.0, kSlots - 0.5)); }
  static Point PointOf(const FacePoint& p) {
    const double scale = kHalf / p.depth;
    return {p.along * scale + kHalf, p.across * scale + kHalf};
  }
  void AddEdge(const Face& face, Point from, Point to);
  void Widen(int row, double column) {
    Extent& extent = extents_[static_cast<std::size_t>(row)];
    extent.low = std::min(extent.low, column);
    extent.high = std::max(extent.high, column);
  }
  void Touch(int first, int last) {
    firstRow_ = std::min(firstRow_, first);
    lastRow_ = std::max(lastRow_, last);
  }

  std::vector<Extent> extents_ = std::vector<Extent>(kSlots);
  int firstRow_ = kSlots;
  int lastRow_ = -1;
};

void RayIndex::FaceRows::AddOutline(std::size_t number, const Face& face, std::span<const Sight> corners) {
  Outline outline;
  unsigned allOut = 15;
  unsigned anyOut = 0;
  for (const Sight& corner : corners) {
    outline.Add(OnFace(number, corner));
    unsigned out = 0;
    for (std::size_t plane = 0; plane < 4; ++plane) {
      out |= Inside(plane, outline.corner[outline.count - 1]) < 0 ? 1U << plane : 0U;
    }
    allOut &= out;
    anyOut |= out;
  }
  if (allOut != 0) return;
  if (face.rows.parts() == 1 && face.columns.parts() == 1) {
    Widen(0, kHalf);
    Touch(0, 0);
    return;
  }
  for (std::size_t plane = 0; plane < 4; ++plane) {
    if ((anyOut >> plane & 1U) != 0) outline = Clip(outline, plane);
  }
  for (std::size_t n = 0; n < outline.count; ++n) {
    AddEdge(face, PointOf(outline.corner[n]), PointOf(outline.Next(n)));
  }
}

void RayIndex::FaceRows::AddEdge(const Face& face, Point from, Point to) {
  if (from.row > to.row) std::swap(from, to);
  const double lowest = from.row - kSlotMargin;
  const double highest = to.row + kSlotMargin;
  if (highest < 0 || lowest > kSlots) return;
  const double rise = to.row - from.row;
  const bool whole = rise < 1e-3;  // too flat for its slope to say anything
  const double slope = whole ? 0 : (to.column - from.column) / rise;
  const int first = face.rows.part[SlotOf(lowest)];
  const int last = face.rows.part[SlotOf(highest)];
  for (int row = first; row <= last; ++row) {
    const double below = face.rows.begin[static_cast<std::size_t>(row)] - kSlotMargin;
    const double above = face.rows.begin[static_cast<std::size_t>(row) + 1] + kSlotMargin;
    Widen(row, whole || below <= from.row ? from.column : from.column + (below - from.row) * slope);
    Widen(row, whole || above >= to.row ? to.column : from.column + (above - from.row) * slope);
  }
  Touch(first, last);
}

void RayIndex::FaceRows::AddBand(std::size_t number, const Face& face, const Region& band) {
  const FacePoint n = OnFace(number, band.normal);
  const double width = 1.75 * band.width + kMargin;  // a point of the face is up to 1.75 from O
  for (int row = 0; row < face.rows.parts(); ++row) {
    const double below = face.rows.begin[static_cast<std::size_t>(row)] - kSlotMargin;
    const double above = face.rows.begin[static_cast<std::size_t>(row) + 1] + kSlotMargin;
    const double across0 = n.across * (below / kHalf - 1);
    const double across1 = n.across * (above / kHalf - 1);
    // n.along times the place along the face lies between these two.
    const double low = -width - n.depth - std::max(across0, across1);
    const double high = width - n.depth - std::min(across0, across1);
    const double steep = std::abs(n.along) * (1 + kMargin);
    if (low > steep || high < -steep) continue;
    const bool flat = steep < 1e-9;
    Widen(row, flat ? 0 : (std::clamp(low / n.along, -1.5, 1.5) + 1) * kHalf);
    Widen(row, flat ? kSlots : (std::clamp(high / n.along, -1.5, 1.5) + 1) * kHalf);
    Touch(row, row);
  }
}

void RayIndex::Outlook::AddTo(FaceRows& rows, std::size_t number, const Face& face) const {
  if (convex_) {
    rows.AddOutline(number, face, {corners_.data(), count_});
    return;
  }
  for (std::size_t half = 0; half < 2; ++half) {
    const SightTriangle& triangle = halves_[half];
    const std::array corners = {triangle.a, triangle.a + triangle.b, triangle.a + triangle.c};
    if (regions_[half].kind == Region::Kind::Outline) rows.AddOutline(number, face, corners);
    if (regions_[half].kind == Region::Kind::Band) rows.AddBand(number, face, regions_[half]);
  }
}

namespace {

std::array<SightTriangle, 2> Split(const Sight& origin, const std::array<double, 12>& corners) {
  const auto corner = [&](std::size_t n) { return Sight{corners[3 * n - 3], corners[3 * n - 2], corners[3 * n - 1]}; };
  return {SightTriangle{corner(4) - origin, corner(1) - corner(4), corner(3) - corner(4)},
          SightTriangle{corner(2) - origin, corner(3) - corner(2), corner(1) - corner(2)}};
}

PairSight Beside(const Sight& first, const Sight& second) {
  return {Pair{first.x, second.x}, Pair{first.y, second.y}, Pair{first.z, second.z}};
}

}  // namespace

SightStrip::SightStrip(const SightTriangle& first, const SightTriangle& second)
    : a(Beside(first.a, second.a)),
      b(Beside(first.b, second.b)),
      c(Beside(first.c, second.c)),
      normal(Beside(Cross(first.b, first.c), Cross(second.b, second.c))),
      height(Dot(normal, a)) {}

SightStrip::SightStrip(const Sight& origin, const std::array<double, 12>& corners)
    : SightStrip(Split(origin, corners)[0], Split(origin, corners)[1]) {}

SightTriangle SightStrip::Half(std::size_t n) const {
  const auto half = [n](const PairSight& v) { return Sight{v.x[n], v.y[n], v.z[n]}; };
  return {half(a), half(b), half(c)};
}

RayIndex::RayIndex(std::vector<SightStrip> strips, std::span<const Sight> sample, double rays)
    : strips_(std::move(strips)) {
  DivideFaces(sample, rays);
  List(OrderByDistance());
}

// Parts of equal weight, as far as whole slots allow.
void RayIndex::Divide(std::span<const double> weights, int parts, Division& division) {
  const double share = std::accumulate(weights.begin(), weights.end(), 0.0) / parts;
  double sum = 0;
  for (int slot = 0; slot < kSlots; ++slot) {
    if (sum >= share * static_cast<double>(division.begin.size())) division.begin.push_back(slot);
    division.part[static_cast<std::size_t>(slot)] = static_cast<std::uint16_t>(division.begin.size() - 1);
    sum += weights[static_cast<std::size_t>(slot)];
  }
  division.begin.push_back(kSlots);
}

void RayIndex::DivideFaces(std::span<const Sight> sample, double rays) {
  constexpr double kRaysPerSquare = 4;
  constexpr double kEvenShare = 0.25;  // added to the weight of a face's rays, spread over the whole face
  struct Weights {
    std::vector<double> columns = std::vector<double>(kSlots);
    std::vector<double> rows = std::vector<double>(kSlots);
    double total = 0;
  };
  std::array<Weights, kFaces> weights;
  for (const Sight& ray : sample) {
    const Passage passage = PassageOf(ray);
    if (!(passage.column >= 0 && passage.row >= 0)) continue;  // no number
    Weights& of = weights[passage.face];
    ++of.columns[static_cast<std::size_t>(std::min(passage.column, kSlots - 0.5))];
    ++of.rows[static_cast<std::size_t>(std::min(passage.row, kSlots - 0.5))];
    ++of.total;
  }
  std::uint32_t squares = 0;
  for (std::size_t f = 0; f < kFaces; ++f) {
    Weights& of = weights[f];
    const double share = of.total == 0 ? 0 : of.total / static_cast<double>(sample.size());
    const int parts = std::clamp(static_cast<int>(std::sqrt(rays * share / kRaysPerSquare)), 1, kSlots / 2);
    const double even = kEvenShare * std::max(of.total, 1.0) / kSlots;
    for (double& weight : of.columns) weight += even;
    for (double& weight : of.rows) weight += even;
    Divide(of.columns, parts, faces_[f].columns);
    Divide(of.rows, parts, faces_[f].rows);
    faces_[f].firstSquare = squares;
    squares += static_cast<std::uint32_t>(faces_[f].columns.parts() * faces_[f].rows.parts());
  }
  start_.assign(squares + 1, 0);
}

// Fills sieves_, and looks at each strip; the result stands in the order of strips_.
std::vector<RayIndex::Outlook> RayIndex::OrderByDistance() {
  std::vector<Outlook> outlooks(strips_.size());
  std::vector<std::pair<float, std::uint32_t>> order(strips_.size());
  std::vector<Sieve> sieves(strips_.size());
  tbb::parallel_for(tbb::blocked_range<std::size_t>(0, strips_.size(), kBlock), [&](const auto& range) {
    for (std::size_t s = range.begin(); s < range.end(); ++s) {
      outlooks[s] = Outlook(strips_[s]);
      sieves[s] = outlooks[s].MakeSieve();
      sieves[s].primitive = strips_[s].primitive;
      sieves[s].column = strips_[s].column;
      sieves[s].strip = static_cast<std::uint32_t>(s);
      order[s] = {sieves[s].nearest, sieves[s].strip};
    }
  });
  std::sort(order.begin(), order.end());
  sieves_.reserve(order.size());
  for (const auto& [nearest, s] : order) sieves_.push_back(sieves[s]);
  return outlooks;
}

// The squares of every strip, in blocks of strips.
std::vector<std::vector<RayIndex::Stretch>> RayIndex::Stretches(const std::vector<Outlook>& outlooks) const {
  std::vector<std::vector<Stretch>> blocks((sieves_.size() + kBlock - 1) / kBlock);
  tbb::parallel_for(std::size_t{0}, blocks.size(), [&](std::size_t block) {
    FaceRows rows;
    const std::size_t end = std::min((block + 1) * kBlock, sieves_.size());
    for (std::size_t s = block * kBlock; s < end; ++s) {
      const Outlook& outlook = outlooks[sieves_[s].strip];
      if (outlook.Has(Region::Kind::Everywhere)) continue;
      for (std::size_t f = 0; f < kFaces; ++f) {
        const Face& face = faces_[f];
        outlook.AddTo(rows, f, face);
        rows.Take(face, [&](int row, std::uint32_t first, std::uint32_t last) {
          const std::uint32_t rowBegin = face.firstSquare + static_cast<std::uint32_t>(row * face.columns.parts());
          blocks[block].push_back({rowBegin + first, last - first + 1, static_cast<std::uint32_t>(s)});
        });
      }
    }
  });
  return blocks;
}

void RayIndex::List(const std::vector<Outlook>& outlooks) {
  for (std::uint32_t s = 0; s < sieves_.size() && sieves_[s].nearest == 0; ++s) {
    if (outlooks[sieves_[s].strip].Has(Region::Kind::Everywhere)) everywhere_.push_back(s);
  }
  const std::vector<std::vector<Stretch>> blocks = Stretches(outlooks);
  const auto forEachSquare = [&blocks](auto&& visit) {
    for (const auto& block : blocks) {
      for (const Stretch& stretch : block) {
        for (std::uint32_t n = 0; n < stretch.count; ++n) visit(stretch.square + n, stretch.sieve);
      }
    }
  };
  // start_[n + 1] counts the strips of square n, then marks their begin, and in the end that of the next square.
  forEachSquare([this](std::uint32_t square, std::uint32_t) { ++start_[square + 1]; });
  std::uint32_t sum = 0;
  for (std::uint32_t& start : start_) start = std::exchange(sum, sum + start);
  listed_.resize(sum);
  forEachSquare([this](std::uint32_t square, std::uint32_t sieve) { listed_[start_[square + 1]++] = sieve; });
}

}  // namespace orv
