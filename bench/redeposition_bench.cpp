// Redeposition: the shipped form against the plain one, measured in one run, and a whole turn of a solar array with
// redeposition. Exit code 1 when they disagree.
#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "plume/redeposition_kernel.h"
#include "plume/sputter_model.h"
#include "plume/surface_cells.h"
#include "reference/plain_redeposition.h"

namespace orv {
namespace {

using reference::PlainEmitter;
using reference::PlainReceiver;
using testing::SputterModel;

struct Duration {
  double wall = 0;
  double processor = 0;  // of all threads
};

Duration Measure(const std::function<void()>& work) {
  const auto begin = std::chrono::steady_clock::now();
  const std::clock_t processorBegin = std::clock();
  work();
  return {std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count(),
          static_cast<double>(std::clock() - processorBegin) / CLOCKS_PER_SEC};
}

bool Agree(double value, double expected) {
  return (value == 0) == (expected == 0) && std::abs(value - expected) <= 1e-12 * std::abs(expected);
}

// Cells of a surface over 0 .. 1, 0 .. 1.
struct Surface {
  std::vector<PlainEmitter> emitters;
  std::vector<PlainReceiver> receivers;
};
struct SurfacePoint {
  double x, y, z, nx, ny, nz;
};

Surface CellsOf(int n, int m, const std::function<SurfacePoint(double, double)>& at) {
  constexpr double volume = 1.7e-29;
  std::mt19937 random(3);
  std::uniform_real_distribution<double> share(0, 1);
  Surface surface;
  for (int i = 0; i < n; ++i) {
    for (int j = 0; j < m; ++j) {
      const SurfacePoint p = at((i + 0.5) / n, (j + 0.5) / m);
      const double beta = 0.7 + share(random);
      surface.emitters.push_back({p.x, p.y, p.z, p.nx, p.ny, p.nz, 1e17 * (0.5 + share(random)), beta, volume});
      surface.receivers.push_back({p.x, p.y, p.z, p.nx, p.ny, p.nz, 1});
    }
  }
  return surface;
}

bool RunPairs(const char* title, const Surface& from, const Surface& to, bool first) {
  std::vector<RedepositionSource> sources;
  for (const PlainEmitter& e : from.emitters) {
    const double strength = e.atomsPerSecond * ((e.beta + 1) / (2 * kPi15)) * e.atomicVolume;
    sources.push_back({e.x, e.y, e.z, e.nx, e.ny, e.nz, strength, e.beta});
  }
  RedepositionTargets targets;
  targets.Resize(to.receivers.size());
  for (std::size_t t = 0; t < to.receivers.size(); ++t) {
    const PlainReceiver& r = to.receivers[t];
    targets.x[t] = r.x;
    targets.y[t] = r.y;
    targets.z[t] = r.z;
    targets.nx[t] = r.nx;
    targets.ny[t] = r.ny;
    targets.nz[t] = r.nz;
  }
  Duration shipped{1e9, 1e9};
  for (int run = 0; run < 3; ++run) {
    std::fill(targets.rate.begin(), targets.rate.end(), 0.0);
    std::fill(targets.stored.begin(), targets.stored.end(), 0.0F);
    const Duration once = Measure([&] { AddRedeposition(sources, targets, 0, targets.size()); });
    if (once.wall < shipped.wall) shipped = once;
  }
  std::vector<double> rate(to.receivers.size());
  std::vector<float> stored(to.receivers.size());
  const Duration plain = Measure([&] { reference::PlainRedeposition(from.emitters, to.receivers, rate, stored); });
  std::size_t different = 0;
  double worst = 0;
  for (std::size_t t = 0; t < rate.size(); ++t) {
    if (!Agree(targets.rate[t], rate[t])) ++different;
    if (rate[t] != 0) worst = std::max(worst, std::abs(targets.rate[t] / rate[t] - 1));
  }
  const double pairs = static_cast<double>(sources.size()) * static_cast<double>(rate.size()) / 1e6;
  std::printf("%s: %zu sources, %zu targets, %.0f million pairs\n", title, sources.size(), rate.size(), pairs);
  std::printf("  plain   %7.3f s, %6.0f million pairs/s\n", plain.wall, pairs / plain.wall);
  std::printf("  shipped %7.3f s, %6.0f million pairs/s, %.0f a core\n", shipped.wall, pairs / shipped.wall,
              pairs / shipped.processor);
  std::printf("  ratio %.1f, of the processors' time %.1f; targets that differ: %zu, largest difference %.1e\n",
              plain.wall / shipped.wall, plain.processor / shipped.processor, different, worst);
  if (first && shipped.wall > 0) std::printf("  wanted: ratio 12 and 400 million pairs/s on two free cores\n");
  return different == 0;
}

// A body of plates, cylinders and spheres with two arms, one array that turns, and the thruster below: 10,000 cells.
std::vector<std::array<std::string, 2>> Satellite() {
  std::vector<std::array<std::string, 2>> rows = {{"HT", testing::kTestThruster}};
  const auto add = [&](const char* material, const std::string& specification) {
    rows.push_back({material, "P" + std::to_string(rows.size()) + " " + specification});
  };
  add("gold", "rect size 2 2 cells 32 32 T 0 0 -0.2");
  add("carbon", "rect size 2 3 cells 32 32 R X 90 T 0 -1 -1.7");
  add("carbon", "rect size 2 3 cells 32 32 R X -90 T 0 1 -1.7");
  add("gold", "rect size 3 2 cells 32 32 R Y 90 T 1 0 -1.7");
  add("gold", "rect size 3 2 cells 32 32 R Y -90 T -1 0 -1.7");
  for (const char* const x : {"1.4", "-1.4"}) {
    add("gold", "rect size 0.6 1.6 cells 24 32 R X 180 T " + std::string(x) + " 0 1.1");
    add("carbon", "sph size 0.5 0.3 1 cells 24 16 R X 180 T " + std::string(x) + " 1.4 0.9");
    add("gold", "cyl size 0.1 1.2 1 cells 24 20 T " + std::string(x) + " -1.3 0.1");
    add("carbon", "rect size 0.8 0.8 cells 20 20 R X 140 T " + std::string(x) + " -2.2 0.8");
  }
  add("silver", "rect size 4 1.6 cells 32 32 Automatic X T 3.4 0 0.6");
  return rows;
}

std::vector<PlainEmitter> EmittersOf(const SputterModel& model, int p) {
  const std::string& name = model.table(p, 1);
  const auto& names = model.materials.MaterialNames;
  const int m = static_cast<int>(std::find(names.begin(), names.end(), name) - names.begin());
  const double volume = model.materials.MaterialTable(m, 3).number() / 1000 / model.constants.AvogadroNumber /
                        model.materials.MaterialTable(m, 2).number();
  std::vector<PlainEmitter> emitters;
  for (int i = 1; i <= model.cells.CountI(p); ++i) {
    for (int j = 1; j <= model.cells.CountJ(p); ++j) {
      const auto q = [&](int quantity) { return model.Q(p, i, j, quantity); };
      if (!(q(19) > 0)) continue;
      emitters.push_back({q(1), q(2), q(3), q(5), q(6), q(7), std::abs(q(4)) * q(19) / volume, q(62), volume});
    }
  }
  return emitters;
}

// Gold comes from standing plates alone: the plain form tells what arrives on every primitive, step by step on the
// array.
bool CheckGold(const SputterModel& model, int array, int steps, int goldQuantity, double& pairs, Duration& plain) {
  std::size_t different = 0;
  for (int target = 2; target <= array; ++target) {
    const int parts = target == array ? steps : 1;
    std::vector<double> sum(model.Values(target, goldQuantity).size());
    for (int s = 1; s <= parts; ++s) {
      std::vector<PlainReceiver> receivers;
      for (int i = 1; i <= model.cells.CountI(target); ++i) {
        for (int j = 1; j <= model.cells.CountJ(target); ++j) {
          const auto q = [&](int quantity) {
            return target == array ? static_cast<double>(model.stores.RotationCellStore(s, i, j, quantity))
                                   : model.Q(target, i, j, quantity);
          };
          const double weight = target == array ? model.rotation.RotPercentTable(s, 2) : 1;
          receivers.push_back({q(1), q(2), q(3), q(5), q(6), q(7), weight});
        }
      }
      std::vector<float> stored(receivers.size());
      for (int source = 2; source < array; ++source) {
        if (source == target || model.table(source, 1) != "gold") continue;
        const std::vector<PlainEmitter> emitters = EmittersOf(model, source);
        pairs += static_cast<double>(emitters.size()) * static_cast<double>(receivers.size()) / 1e6;
        const Duration once = Measure([&] { reference::PlainRedeposition(emitters, receivers, sum, stored); });
        plain.wall += once.wall;
      }
    }
    const std::vector<double> shipped = model.Values(target, goldQuantity);
    for (std::size_t n = 0; n < sum.size(); ++n) different += Agree(shipped[n], sum[n]) ? 0U : 1U;
  }
  std::printf("  cells whose gold deposit differs from the plain form: %zu\n", different);
  return different == 0;
}

bool RunTurn() {
  constexpr int kSteps = 36;
  const auto rows = Satellite();
  const int array = static_cast<int>(rows.size());
  Duration spent[2];
  bool agree = true;
  for (const bool redeposition : {false, true}) {
    SputterModel model(rows, redeposition ? 90 : 19);
    model.directives.RectoOnly = 1;
    model.UniformTurn(kSteps, 10);
    model.Build();
    spent[redeposition ? 1 : 0] = Measure([&] { model.Run(); });
    if (!redeposition) continue;
    double cells = 0;
    double emitting = 0;
    double pairs = 0;
    for (int p = 2; p <= array; ++p) {
      const double count = model.cells.CountI(p) * model.cells.CountJ(p);
      cells += count;
      if (p == array) continue;
      const double sources = static_cast<double>(EmittersOf(model, p).size());
      emitting += sources;
      pairs -= sources * count / 1e6;
    }
    const double own = model.cells.CountI(array) * model.cells.CountJ(array);
    pairs += emitting * (cells - own + own * kSteps) / 1e6;
    double turning = 0;
    for (int s = 1; s <= kSteps; ++s) {
      for (int i = 1; i <= model.cells.CountI(array); ++i) {
        for (int j = 1; j <= model.cells.CountJ(array); ++j) {
          if (model.stores.RotationCellStore(s, i, j, 0) > 0) ++turning;
        }
      }
    }
    pairs += turning * (cells - own) / 1e6;
    std::printf("turn of %d steps, %.0f cells, array of 32 x 32, %.0f standing cells emit: %.0f million pairs\n",
                kSteps, cells, emitting, pairs);
    double plainPairs = 0;
    Duration plain;
    agree = CheckGold(model, array, kSteps, 90, plainPairs, plain) && model.dialogs.boxes.empty();
    const double plainAll = plain.wall * pairs / plainPairs;
    const double turn = spent[1].wall - spent[0].wall;
    std::printf("  erosion alone %.3f s, with redeposition %.3f s; redeposition %.0f million pairs/s\n", spent[0].wall,
                spent[1].wall, pairs / turn);
    std::printf("  plain form %.0f million pairs/s: it would take %.1f s, ratio %.1f\n", plainPairs / plain.wall,
                plainAll, plainAll / turn);
  }
  return agree;
}

}  // namespace
}  // namespace orv

int main() {
  using orv::SurfacePoint;
  const double turn = 2 * orv::kPi;
  const orv::Surface plate =
      orv::CellsOf(200, 100, [](double u, double v) { return SurfacePoint{2 * u, 2 * v, 0, 0, 0, 1}; });
  const orv::Surface facing =
      orv::CellsOf(160, 125, [](double u, double v) { return SurfacePoint{3 * u - 1, 2 * v, 1 + u, 0, 0, -1}; });
  const orv::Surface tube = orv::CellsOf(200, 100, [turn](double u, double v) {
    const double c = std::cos(turn * u);
    const double s = std::sin(turn * u);
    return SurfacePoint{1 + 0.5 * c, 2 * v, 0.8 + 0.5 * s, c, 0, s};
  });
  bool agree = orv::RunPairs("two plates, every cell sees every other", plate, facing, true);
  agree = orv::RunPairs("a plate onto a cylinder, half of it behind", plate, tube, false) && agree;
  agree = orv::RunTurn() && agree;
  std::printf(agree ? "all cells agree\n" : "CELLS DIFFER\n");
  return agree ? 0 : 1;
}
