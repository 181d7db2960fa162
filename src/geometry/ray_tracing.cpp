#include "geometry/ray_tracing.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <tbb/parallel_pipeline.h>
#include <tbb/task_arena.h>
#include <utility>

#include "geometry/quantities.h"
#include "geometry/ray_index.h"
#include "numerics/progress_pace.h"

namespace orv {
namespace {

constexpr std::size_t kChunkCells = 1024;
constexpr std::size_t kChunksAtOnce = 64;  // between two reports of progress
constexpr std::size_t kSampleStride = 23;

// What the choice between the hits of a ray needs to know of a strip.
struct StripRole {
  int place;    // of its primitive in the order of the search
  int number;   // 1 .. strips
  int strips;   // of its primitive
  int allowed;  // strips that the search tries before it gives the primitive up
  double flag;  // what the strip writes into the shadow flag
};

// The cells of one tested primitive: its counts, and its part of the planes.
struct TestedCells {
  int primitive;
  std::size_t cellsI;
  std::size_t cellsJ;
  std::size_t rowLength;
  std::array<const double*, 3> centre;
  const double* distance;
  const double* angle;
  double* shadowDistance;
  double* flag;

  // Place in the planes of the n-th cell, counted along j, then i.
  std::size_t PlaceOf(std::size_t n) const { return (n / cellsJ + 1) * rowLength + n % cellsJ + 1; }
  Sight CentreOf(std::size_t place) const { return {centre[0][place], centre[1][place], centre[2][place]}; }
};

// Cells of one primitive, counted as PlaceOf does.
struct Chunk {
  const TestedCells* cells;
  std::size_t first;
  std::size_t count;
};

// A strip that a ray hits, and the distance from the thruster to that point.
struct Hit {
  std::size_t place;
  std::uint32_t strip;
  double distance;
};

struct ChunkResult {
  std::vector<Hit> hits;  // those of one cell side by side
  std::size_t rays = 0;
  std::size_t beyond = 0;
};

Sight ToSight(const Vector3& v) {
  return {v(1), v(2), v(3)};
}

// Where the last search ended: the next one begins there, since neighbouring rays usually meet the same obstacle.
class SearchCache {
 public:
  // The hit that a search would find first, none when it gives up all the obstacles before.
  const Hit* First(std::span<const Hit> hits, std::span<const StripRole> roles, int places) const {
    const Hit* first = nullptr;
    std::pair<int, int> best{};
    for (const Hit& hit : hits) {
      const StripRole& role = roles[hit.strip];
      const int q = role.place - place_ + (role.place < place_ ? places : 0);
      const int start = strip_ >= 1 && strip_ <= role.strips ? strip_ : 1;
      const int u = role.number - start + (role.number < start ? role.strips : 0);
      if (u >= role.allowed || (first != nullptr && best <= std::pair(q, u))) continue;
      first = &hit;
      best = {q, u};
    }
    return first;
  }
  void Remember(const StripRole& role) {
    place_ = role.place;
    strip_ = role.number - 1;
  }

 private:
  int place_ = 1;
  int strip_ = 0;  // of whatever primitive; 0: unset
};

// Which obstacle a ray meets first depends on the rays before it, which obstacles it meets does not. So the strips that
// each ray hits are found in parallel, by chunks, and one chunk after the other is then walked in the order of the
// cells to choose as a search from strip to strip would.
class RayTracing {
 public:
  RayTracing(Cells& cells, const RayTracingInput& input, RayTracingReport& report, FailureBlock& block,
             UserDialogs& dialogs)
      : cells_(cells), input_(input), report_(report), block_(block), progress_(dialogs) {}

  // Every cell of the range, the thruster's own included, is free.
  void MarkAllFree();

  void Compute(RayTracingState& state);

 private:
  std::pair<int, int> Range() const;
  void AddTested(int primitive);
  std::vector<double> StripCounts();
  void ReadOrigin();
  int AllowedStrips(int primitive, int strips);
  void AddObstacle(int primitive, int place, int strips);
  std::vector<Sight> SampleRays() const;
  std::vector<Chunk> Chunks() const;
  void Trace(const RayIndex& index);
  void FindHits(const Chunk& chunk, const RayIndex& index, ChunkResult& result) const;
  void ChooseHits(const Chunk& chunk, const ChunkResult& result);

  Cells& cells_;
  const RayTracingInput& input_;
  RayTracingReport& report_;
  FailureBlock& block_;
  ProgressPace progress_;
  Sight origin_;
  std::vector<TestedCells> tested_;
  std::vector<SightStrip> strips_;
  std::vector<StripRole> roles_;  // of strips_
  SearchCache cache_;
};

std::pair<int, int> RayTracing::Range() const {
  if (input_.OnlyPrimitive != 0) return {input_.OnlyPrimitive, input_.OnlyPrimitive};
  return {1, input_.numberPrimWithVolumic};
}

// Takes the primitive's cells that the arrays hold.
void RayTracing::AddTested(int primitive) {
  block_([&] {
    CellBlock& data = cells_.CellData;
    const int cellsI = cells_.CountI(primitive);
    const int cellsJ = cells_.CountJ(primitive);
    const auto plane = [&](Quantity q) { return data.plane(Number(q), primitive).data(); };
    tested_.push_back({primitive,
                       static_cast<std::size_t>(std::min(cellsI, data.cellsI())),
                       static_cast<std::size_t>(std::min(cellsJ, data.cellsJ())),
                       data.rowLength(),
                       {plane(Quantity::X), plane(Quantity::Y), plane(Quantity::Z)},
                       plane(Quantity::Distance),
                       plane(Quantity::Indicatrix),
                       plane(Quantity::ShadowDistance),
                       plane(Quantity::Hidden)});
    if (cellsI > 0 && cellsJ > 0) static_cast<void>(std::as_const(data)(primitive, cellsI, cellsJ, 0));
  });
}

void RayTracing::MarkAllFree() {
  const auto [first, last] = Range();
  for (int k = first; k <= last; ++k) AddTested(k);
  for (const TestedCells& cells : tested_) {
    for (std::size_t i = 1; i <= cells.cellsI; ++i) {
      const std::size_t at = i * cells.rowLength + 1;
      std::copy_n(cells.distance + at, cells.cellsJ, cells.shadowDistance + at);
      std::fill_n(cells.flag + at, cells.cellsJ, 0.0);
    }
  }
}

std::vector<double> RayTracing::StripCounts() {
  std::vector<double> counts(static_cast<std::size_t>(std::max(input_.NumberOfPrimitives, 0)) + 1);
  for (std::size_t p = 1; p < counts.size(); ++p) block_([&] { counts[p] = cells_.BorderCorners(p, 0, 0); });
  return counts;
}

void RayTracing::ReadOrigin() {
  const int thruster = input_.ThrusterPrimitive;
  if (thruster == 0) return;
  const auto centre = [&](Quantity q) { return std::as_const(cells_.CellData)(thruster, 1, 1, Number(q)); };
  block_([&] { origin_ = {centre(Quantity::X), centre(Quantity::Y), centre(Quantity::Z)}; });
}

// The search gives an obstacle up at the first column without a cell inside the limit angle; column u stands for the
// u-th strip tried, whichever that is. A limit of 180 gives nothing up.
int RayTracing::AllowedStrips(int primitive, int strips) {
  const double limit = input_.PlumeLimitAngle;
  if (!(limit < 180)) return strips;
  int allowed = 0;
  block_([&] {
    const CellBlock& data = cells_.CellData;
    const int rows = cells_.CountJ(primitive);
    for (; allowed < strips; ++allowed) {
      bool inside = false;
      for (int j = 1; j <= rows && !inside; ++j) {
        inside = data(primitive, allowed + 1, j, Number(Quantity::Indicatrix)) <= limit;
      }
      if (!inside) return;
    }
  });
  return allowed;
}

void RayTracing::AddObstacle(int primitive, int place, int strips) {
  const int allowed = AllowedStrips(primitive, strips);
  if (allowed == 0) return;
  block_([&] {
    for (int s = 1; s <= strips; ++s) {
      std::array<double, 12> corners{};
      for (std::size_t n = 0; n < corners.size(); ++n) corners[n] = cells_.BorderCorners(primitive, s, n + 1);
      SightStrip strip(origin_, corners);
      strip.primitive = primitive;
      strip.column = strips == 1 ? 0 : s;
      strips_.push_back(strip);
      const double code = s % 10 == 0 ? s + 0.111 : s;
      roles_.push_back({place, s, strips, allowed, primitive + code / 1000});
    }
  });
}

std::vector<Sight> RayTracing::SampleRays() const {
  std::vector<Sight> rays;
  for (const TestedCells& cells : tested_) {
    for (std::size_t n = kSampleStride / 2; n < cells.cellsI * cells.cellsJ; n += kSampleStride) {
      const std::size_t place = cells.PlaceOf(n);
      if (!(cells.angle[place] > input_.PlumeLimitAngle)) rays.push_back(cells.CentreOf(place) - origin_);
    }
  }
  return rays;
}

std::vector<Chunk> RayTracing::Chunks() const {
  std::vector<Chunk> chunks;
  for (const TestedCells& cells : tested_) {
    const std::size_t total = cells.cellsI * cells.cellsJ;
    for (std::size_t first = 0; first < total; first += kChunkCells) {
      chunks.push_back({&cells, first, std::min(kChunkCells, total - first)});
    }
  }
  return chunks;
}

// Writes the cells of the chunk as if all rays were free, and finds what they hit.
void RayTracing::FindHits(const Chunk& chunk, const RayIndex& index, ChunkResult& result) const {
  const TestedCells& cells = *chunk.cells;
  result.hits.clear();
  result.rays = 0;
  result.beyond = 0;
  for (std::size_t done = 0; done < chunk.count;) {
    const std::size_t n = chunk.first + done;
    const std::size_t restOfColumn = std::min(cells.cellsJ - n % cells.cellsJ, chunk.count - done);
    const int column = static_cast<int>(n / cells.cellsJ) + 1;
    const std::size_t begin = cells.PlaceOf(n);
    for (std::size_t place = begin; place < begin + restOfColumn; ++place) {
      const bool beyond = cells.angle[place] > input_.PlumeLimitAngle;
      cells.shadowDistance[place] = cells.distance[place];
      cells.flag[place] = beyond ? 0.5 : 0;
      ++(beyond ? result.beyond : result.rays);
      if (beyond) continue;
      const Sight ray = cells.CentreOf(place) - origin_;
      const std::size_t before = result.hits.size();
      index.FindHits(ray, cells.primitive, column, [&](std::uint32_t strip, double t) {
        result.hits.push_back({place, strip, t});
      });
      if (result.hits.size() == before) continue;
      const double length = vNorm(Vector3(ray.x, ray.y, ray.z));
      for (std::size_t h = before; h < result.hits.size(); ++h) result.hits[h].distance *= length;
    }
    done += restOfColumn;
  }
}

void RayTracing::ChooseHits(const Chunk& chunk, const ChunkResult& result) {
  report_.raysCast += result.rays;
  report_.cellsBeyond += result.beyond;
  const std::span<const Hit> hits = result.hits;
  for (std::size_t begin = 0, end = 0; begin < hits.size(); begin = end) {
    while (end < hits.size() && hits[end].place == hits[begin].place) ++end;
    const Hit* hit = cache_.First(hits.subspan(begin, end - begin), roles_, input_.NumberOfPrimitives);
    if (hit == nullptr) continue;
    const StripRole& role = roles_[hit->strip];
    chunk.cells->shadowDistance[hit->place] = hit->distance;
    chunk.cells->flag[hit->place] = role.flag;
    cache_.Remember(role);
    ++report_.cellsShadowed;
  }
}

void RayTracing::Trace(const RayIndex& index) {
  const std::vector<Chunk> chunks = Chunks();
  // As many chunks are on their way as there are results.
  std::vector<ChunkResult> results(4 * static_cast<std::size_t>(tbb::this_task_arena::max_concurrency()));
  const auto resultOf = [&results](std::size_t chunk) -> ChunkResult& { return results[chunk % results.size()]; };
  std::size_t next = 0;
  std::size_t end = 0;
  const auto take = [&](tbb::flow_control& flow) {
    if (next < end) return next++;
    flow.stop();
    return next;
  };
  const auto find = [&](std::size_t chunk) {
    FindHits(chunks[chunk], index, resultOf(chunk));
    return chunk;
  };
  const auto choose = [&](std::size_t chunk) { ChooseHits(chunks[chunk], resultOf(chunk)); };
  while (next < chunks.size()) {
    // A step of a turn tells of its turn.
    if (input_.OnlyPrimitive == 0) {
      progress_("ray tracing", static_cast<double>(next) / static_cast<double>(chunks.size()));
    }
    end = std::min(next + kChunksAtOnce, chunks.size());
    tbb::parallel_pipeline(results.size(),
                           tbb::make_filter<void, std::size_t>(tbb::filter_mode::serial_in_order, take) &
                               tbb::make_filter<std::size_t, std::size_t>(tbb::filter_mode::parallel, find) &
                               tbb::make_filter<std::size_t, void>(tbb::filter_mode::serial_in_order, choose));
  }
}

void RayTracing::Compute(RayTracingState& state) {
  const std::vector<double> counts = StripCounts();
  const std::vector<int> order = PrimitiveOrder(counts);
  state.computedOnce = true;
  ReadOrigin();
  for (std::size_t place = 1; place < order.size(); ++place) {
    const int b = order[place];
    if (b == input_.ThrusterPrimitive) continue;
    AddObstacle(b, static_cast<int>(place), Cells::LoopCount(counts[static_cast<std::size_t>(b)]));
  }
  const auto [first, last] = Range();
  for (int k = first; k <= last; ++k) {
    if (k != input_.ThrusterPrimitive) AddTested(k);
  }
  const std::vector<Sight> sample = SampleRays();
  Trace(RayIndex(std::move(strips_), sample, static_cast<double>(sample.size() * kSampleStride)));
}

int ZeroOrOne(const SightStrip& strip, const Vector3& ray, double& t) {
  const StripHit hit = HitsStrip(strip, ToSight(ray));
  t = hit.Parameter();
  return hit.halves != 0 ? 1 : 0;
}

}  // namespace

int RayTriangleHit(const Vector3& ray, const Vector3& a, const Vector3& b, const Vector3& c, double& t) {
  const SightTriangle triangle = {ToSight(a), ToSight(b), ToSight(c)};
  return ZeroOrOne(SightStrip(triangle, triangle), ray, t);
}

int RayQuadHit(const Vector3& ray, const Vector3& origin, const Vector3& corner1, const Vector3& corner2,
               const Vector3& corner3, const Vector3& corner4, double& t) {
  std::array<double, 12> corners{};
  const std::array<const Vector3*, 4> all = {&corner1, &corner2, &corner3, &corner4};
  for (std::size_t n = 0; n < corners.size(); ++n) corners[n] = (*all[n / 3])(n % 3 + 1);
  return ZeroOrOne(SightStrip(ToSight(origin), corners), ray, t);
}

std::vector<int> PrimitiveOrder(std::span<const double> strips) {
  std::vector<int> order(std::max<std::size_t>(strips.size(), 1));
  std::size_t front = 0;
  std::size_t back = order.size();
  double top = strips.size() > 1 ? strips[1] : 0;
  for (std::size_t p = 1; p < strips.size(); ++p) {
    if (top <= strips[p] && strips[p] > 2) {
      top = strips[p];
      order[--back] = static_cast<int>(p);
      std::rotate(order.begin() + static_cast<std::ptrdiff_t>(back),
                  order.begin() + static_cast<std::ptrdiff_t>(back) + 1, order.end());
    } else {
      order[++front] = static_cast<int>(p);
    }
  }
  return order;
}

void a_SpaceApplicationRayTrac(Cells& cells, const RayTracingInput& input, RayTracingState& state,
                               RayTracingReport& report, ErrorPrompt& prompt) {
  FailureBlock block(prompt, FailureLabels::Of("a_SpaceApplicationRayTrac"));
  RayTracing tracing(cells, input, report, block, prompt.dialogs());
  if (input.NotHidden == 0) report.ShadowStatusText = " Process: With shadow";
  if (input.NotHidden == 1) {
    tracing.MarkAllFree();
    report.ShadowStatusText = " Process: No shadow";
    return;
  }
  if (input.NotHidden == 2 && state.computedOnce) {
    report.ShadowStatusText = "WARNING: Process with shadow flags from the previous run";
    return;
  }
  tracing.Compute(state);
}

}  // namespace orv
