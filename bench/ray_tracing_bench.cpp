// Shadow flags of a satellite of 100,000 cells and 2,000 strips: the shipped search against the plain one, measured in
// one run. Exit code 1 when a cell differs.
#include <algorithm>
#include <bit>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <numbers>
#include <sys/resource.h>
#include <vector>

#include "geometry/cell_data.h"
#include "geometry/ray_tracing.h"
#include "reference/plain_ray_tracing.h"
#include "support/scripted_dialogs.h"

namespace orv {
namespace {

struct Point {
  double x = 0;
  double y = 0;
  double z = 0;
};
Point operator+(const Point& a, const Point& b) {
  return {a.x + b.x, a.y + b.y, a.z + b.z};
}
Point operator*(double s, const Point& a) {
  return {s * a.x, s * a.y, s * a.z};
}

// A surface over (column, row) in 0 .. 1 each, divided into cells; flat ones are one strip, the others one per column.
struct Surface {
  std::function<Point(double, double)> at;
  int cellsI;
  int cellsJ;
  bool flat;
};

Surface Plate(const Point& centre, const Point& sideI, const Point& sideJ, int cellsI, int cellsJ) {
  return {[=](double u, double v) { return centre + (u - 0.5) * sideI + (v - 0.5) * sideJ; }, cellsI, cellsJ, true};
}

// Turned round an axis: radius(v) at the height v * length over the foot.
Surface Turned(const Point& foot, const Point& axis, double length, const std::function<double(double)>& radius,
               int cellsI, int cellsJ) {
  const Point e1 = std::abs(axis.z) > 0.5 ? Point{1, 0, 0} : Point{0, 0, 1};
  const Point e2 = {axis.y * e1.z - axis.z * e1.y, axis.z * e1.x - axis.x * e1.z, axis.x * e1.y - axis.y * e1.x};
  return {[=](double u, double v) {
            const double angle = 2 * std::numbers::pi * u;
            const double r = radius(v);
            return foot + (v * length) * axis + (r * std::cos(angle)) * e1 + (r * std::sin(angle)) * e2;
          },
          cellsI, cellsJ, false};
}

Surface Cylinder(const Point& foot, const Point& axis, double length, double radius, int cellsI, int cellsJ) {
  return Turned(
      foot, axis, length, [=](double) { return radius; }, cellsI, cellsJ);
}
Surface Cone(const Point& foot, const Point& axis, double length, double from, double to, int cellsI, int cellsJ) {
  return Turned(
      foot, axis, length, [=](double v) { return from + v * (to - from); }, cellsI, cellsJ);
}
Surface Dish(const Point& foot, const Point& axis, double depth, double radius, int cellsI, int cellsJ) {
  return Turned(
      foot, axis, depth, [=](double v) { return radius * std::sqrt(v); }, cellsI, cellsJ);
}
Surface Sphere(const Point& centre, double radius, int cellsI, int cellsJ) {
  return {[=](double u, double v) {
            const double angle = 2 * std::numbers::pi * u;
            const double height = std::numbers::pi * (v - 0.5);
            return centre + Point{radius * std::cos(height) * std::cos(angle),
                                  radius * std::cos(height) * std::sin(angle), radius * std::sin(height)};
          },
          cellsI, cellsJ, false};
}

// A box body, two wings of solar panels with front and back, dishes on arms, a deck of instruments, tanks on the lower
// deck, nozzles and an antenna mast.
std::vector<Surface> Satellite() {
  std::vector<Surface> all;
  const double w = 1.1;  // half width of the body
  const double h = 1.6;  // half height
  for (const double side : {-1.0, 1.0}) {
    all.push_back(Plate({side * w, 0, 0}, {0, 2 * w, 0}, {0, 0, 2 * h}, 64, 64));
    all.push_back(Plate({0, side * w, 0}, {2 * w, 0, 0}, {0, 0, 2 * h}, 64, 64));
    all.push_back(Plate({0, 0, side * h}, {2 * w, 0, 0}, {0, 2 * w, 0}, 60, 60));
    for (int panel = 0; panel < 5; ++panel) {
      const double y = side * (w + 2.0 + 2.1 * panel);
      all.push_back(Plate({0.05, y, 0.1}, {0.9, 0, 1.6}, {0, 2.0, 0}, 48, 48));
      all.push_back(Plate({0.02, y, 0.1}, {0.9, 0, 1.6}, {0, 2.0, 0}, 30, 30));
    }
    all.push_back(Cylinder({0, side * w, 0.1}, {0, side, 0}, 1.0, 0.05, 36, 20));
    all.push_back(Dish({side * (w + 0.6), 0.2, 0.4}, {side, 0, 0}, 0.35, 0.9, 64, 40));
    all.push_back(Dish({side * (w + 0.55), 0.2, 0.4}, {side, 0, 0}, 0.36, 0.91, 64, 20));
    all.push_back(Cylinder({side * w, 0.2, 0.4}, {side, 0, 0}, 0.6, 0.06, 36, 20));
    all.push_back(Cone({side * (w + 1.0), 0.2, 0.4}, {side, 0, 0}, 0.3, 0.05, 0.16, 36, 16));
  }
  for (int n = 0; n < 8; ++n) {
    const double angle = 2 * std::numbers::pi * n / 8;
    const Point low = {0.95 * std::cos(angle), 0.95 * std::sin(angle), -h};
    all.push_back(Cylinder(low, {0, 0, -1}, 0.25, 0.08, 40, 20));
    all.push_back(Cone(low + Point{0, 0, -0.25}, {0, 0, -1}, 0.2, 0.03, 0.12, 36, 16));
    const Point top = {0.75 * std::cos(angle), 0.75 * std::sin(angle), h};
    all.push_back(Cylinder(top, {0, 0, 1}, 0.5, 0.07, 40, 20));
    all.push_back(Sphere(top + Point{0, 0, 0.6}, 0.12, 36, 20));
  }
  for (int n = 0; n < 4; ++n) {
    const double x = n % 2 == 0 ? -0.4 : 0.4;
    const double y = n / 2 == 0 ? -0.4 : 0.4;
    all.push_back(Sphere({x, y, -h - 0.3}, 0.3, 44, 30));
    all.push_back(Plate({x, y, h + 0.02}, {0.3, 0, 0}, {0, 0.3, 0}, 24, 24));
    all.push_back(Plate({1.6 * x, 1.6 * y, h + 0.3}, {0.2, 0.1, 0}, {0, 0, 0.6}, 24, 24));
  }
  all.push_back(Cylinder({0, 0, h}, {0, 0, 1}, 3.0, 0.04, 36, 40));
  all.push_back(Sphere({0, 0, h + 3.2}, 0.2, 36, 24));
  return all;
}

void Fill(Cells& cells, const std::vector<Surface>& surfaces, const Point& thruster, const Point& axis) {
  const int count = static_cast<int>(surfaces.size()) + 1;
  cells.CellData.Size(count + 10, 64, 64, 120);
  cells.BorderCorners.Size(count + 20, 64, 120);
  cells.numberPrimWithVolumic = count;
  const auto put = [&](int k, int i, int j, int q, const Point& p) {
    cells.CellData(k, i, j, q) = p.x;
    cells.CellData(k, i, j, q + 1) = p.y;
    cells.CellData(k, i, j, q + 2) = p.z;
  };
  cells.CellData(1, 0, 0, 1) = 1;
  cells.CellData(1, 0, 0, 2) = 1;
  put(1, 1, 1, 1, thruster);
  for (int k = 2; k <= count; ++k) {
    const Surface& surface = surfaces[static_cast<std::size_t>(k) - 2];
    const int n = surface.cellsI;
    const int m = surface.cellsJ;
    cells.CellData(k, 0, 0, 1) = n;
    cells.CellData(k, 0, 0, 2) = m;
    for (int i = 1; i <= n; ++i) {
      for (int j = 1; j <= m; ++j) {
        const Point p = surface.at((i - 0.5) / n, (j - 0.5) / m);
        put(k, i, j, 1, p);
        const Point ray = p + -1.0 * thruster;
        const double distance = std::sqrt(ray.x * ray.x + ray.y * ray.y + ray.z * ray.z);
        const double cosine = (ray.x * axis.x + ray.y * axis.y + ray.z * axis.z) / distance;
        cells.CellData(k, i, j, 8) = distance;
        cells.CellData(k, i, j, 10) = std::acos(std::clamp(cosine, -1.0, 1.0)) * 180 / std::numbers::pi;
      }
    }
    const int strips = surface.flat ? 1 : n;
    cells.BorderCorners(k, 0, 0) = strips;
    for (int s = 1; s <= strips; ++s) {
      const double low = surface.flat ? 0 : (s - 1.0) / n;
      const double high = surface.flat ? 1 : s / static_cast<double>(n);
      const Point corners[4] = {surface.at(low, 0), surface.at(high, 0), surface.at(high, 1), surface.at(low, 1)};
      for (int c = 0; c < 4; ++c) {
        cells.BorderCorners(k, s, 3 * c + 1) = corners[c].x;
        cells.BorderCorners(k, s, 3 * c + 2) = corners[c].y;
        cells.BorderCorners(k, s, 3 * c + 3) = corners[c].z;
      }
    }
  }
}

// Most memory that the program has held so far, 0 where the system does not tell.
double PeakMegabytes() {
#if __has_include(<sys/resource.h>)
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return static_cast<double>(usage.ru_maxrss) / 1024;
#else
  return 0;
#endif
}

double BestSeconds(int runs, const std::function<void()>& work) {
  double best = HUGE_VAL;
  for (int run = 0; run < runs; ++run) {
    const auto begin = std::chrono::steady_clock::now();
    work();
    best = std::min(best, std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count());
  }
  return best;
}

std::vector<double> Results(const Cells& cells) {
  std::vector<double> values;
  for (int k = 1; k <= cells.numberPrimWithVolumic; ++k) {
    for (const int q : {18, 20}) {
      const auto plane = cells.CellData.plane(q, k);
      values.insert(values.end(), plane.begin(), plane.end());
    }
  }
  return values;
}

std::size_t CountDifferent(const std::vector<double>& a, const std::vector<double>& b) {
  std::size_t different = 0;
  for (std::size_t n = 0; n < a.size(); ++n) {
    if (std::bit_cast<std::uint64_t>(a[n]) != std::bit_cast<std::uint64_t>(b[n])) ++different;
  }
  return different;
}

struct Thruster {
  const char* where;
  Point at;
  Point axis;
  double limit;
};

// Measures both forms; true when all cells agree.
bool Run(const Thruster& thruster, int shippedRuns, int plainRuns) {
  Cells cells;
  Fill(cells, Satellite(), thruster.at, thruster.axis);
  for (const int q : {18, 20}) std::ranges::fill(cells.CellData.plane(q), -1.0);
  RayTracingInput input;
  input.NumberOfPrimitives = cells.numberPrimWithVolumic;
  input.numberPrimWithVolumic = cells.numberPrimWithVolumic;
  input.ThrusterPrimitive = 1;
  input.PlumeLimitAngle = thruster.limit;
  double total = 0;
  double strips = 0;
  for (int k = 1; k <= input.NumberOfPrimitives; ++k) {
    total += cells.CountI(k) * cells.CountJ(k);
    strips += cells.BorderCorners(k, 0, 0);
  }
  testing::ScriptedDialogs dialogs;
  ErrorPrompt prompt(dialogs);
  RayTracingState state;
  RayTracingReport report;
  const double before = PeakMegabytes();
  const double fast = BestSeconds(shippedRuns, [&] {
    report = {};
    a_SpaceApplicationRayTrac(cells, input, state, report, prompt);
  });
  const double extra = PeakMegabytes() - before;
  const std::vector<double> shipped = Results(cells);
  double tests = 0;
  const double plain = BestSeconds(plainRuns, [&] { tests = reference::PlainRayTracing(cells, input); });
  const std::size_t different = CountDifferent(shipped, Results(cells));
  const double rays = static_cast<double>(report.raysCast);
  std::printf("Thruster %s, limit %g degrees\n", thruster.where, thruster.limit);
  std::printf("  %.0f cells, %.0f strips, %.0f rays, %zu shadowed\n", total, strips, rays, report.cellsShadowed);
  std::printf("  plain   %9.3f ms  %.2f million rays/s, %.0f strip tests\n", plain * 1e3, rays / plain / 1e6, tests);
  std::printf("  shipped %9.3f ms  %.1f million rays/s\n", fast * 1e3, rays / fast / 1e6);
  std::printf("  ratio   %9.0f\n", plain / fast);
  std::printf("  cells that differ: %zu; peak memory grew by %.1f MB, the planes of a run are %.1f MB\n", different,
              extra, total * 46 * 8 / 1048576);
  return different == 0;
}

}  // namespace
}  // namespace orv

int main() {
  bool agree = true;
  for (const orv::Thruster& thruster : {orv::Thruster{"on an arm below the body", {0.6, 0.2, -3}, {0, 0, -1}, 180},
                                        orv::Thruster{"on the lower deck", {0, 0, -1.65}, {0, 0, -1}, 180},
                                        orv::Thruster{"on another craft", {7, 2, 9}, {-0.6, 0, -0.8}, 180},
                                        orv::Thruster{"on an arm below the body", {0.6, 0.2, -3}, {0.6, 0, 0.8}, 60}}) {
    agree = orv::Run(thruster, 50, 3) && agree;
  }
  std::printf("Peak memory of the program %.1f MB\n", orv::PeakMegabytes());
  std::puts(agree ? "All cells agree" : "CELLS DIFFER");
  return agree ? 0 : 1;
}
