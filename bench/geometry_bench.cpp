#include <algorithm>
#include <array>
#include <benchmark/benchmark.h>
#include <string>
#include <vector>

#include "geometry/geometry.h"
#include "support/scripted_dialogs.h"

// A model of 40 primitives of 50 x 50 cells, three placement commands each.
namespace orv {
namespace {

constexpr int kPrimitives = 40;

struct Model {
  explicit Model(const std::vector<std::string>& shapes, const std::string& tail) : names(kPrimitives + 11) {
    table.Size({Bounds{0, kPrimitives + 10}, Bounds{1, 11}});
    for (int row = 1; row <= kPrimitives; ++row) {
      const std::string& shape = shapes[static_cast<std::size_t>(row) % shapes.size()];
      table(row, kSpecColumn) =
          std::string("Part").append(std::to_string(row)).append(" ").append(shape) + " cells 50 50 " + tail;
    }
  }

  // The parser's pass over all lines and the arrays in the size that it finds.
  void Size() {
    double countI = 5;
    double countJ = 5;
    for (int row = 1; row <= kPrimitives; ++row) {
      PrimitiveSpec spec;
      ParsePrimitive(table, row, kSpecColumn, names, reader, spec);
      countI = std::max(countI, spec.Nx);
      countJ = std::max(countJ, spec.Ny);
    }
    cells.CellData.Size(kPrimitives + 10, static_cast<int>(countI), static_cast<int>(countJ), 120);
    cells.CellCorners.Size(kPrimitives + 10, static_cast<int>(countI), static_cast<int>(countJ), 120);
    cells.BorderCorners.Size(kPrimitives + 20, static_cast<int>(countI), 120);
  }

  void Build() { a_SpaceApplicationGeometry({table, kPrimitives, 0}, names, cells, state, reader); }

  testing::ScriptedDialogs dialogs;
  ErrorPrompt prompt{dialogs};
  CellText reader{prompt, Locale{}};
  TextTable table;
  std::vector<std::string> names;
  Cells cells;
  GeometryState state;
};

const std::vector<std::string> kMixed = {"rect size 2 1",
                                         "rectfree size 0 1 0 1",
                                         "rectoriented size 0 0 0 1 0 0 1 1 0 0 1 0",
                                         "rect2sides size 0 1 0 2 1.1 1.05 0.1",
                                         "con size 1 2 1",
                                         "disc size 1 0.5 1",
                                         "sph size 1 2 1",
                                         "par size 1 2 0.5",
                                         "cyl size 1 2 1",
                                         "cylellipse size 1 2 1 0.5",
                                         "cylshape size 1 2 1",
                                         "cylshapex6 size 1 2 1",
                                         "cylshape4 size 1 2 1",
                                         "cylshape44 size 1 2 1"};
const std::string kTail = "R X 20 T 1 2 3 R Z 45";

void Report(benchmark::State& run, const Model& model) {
  if (!model.dialogs.boxes.empty()) run.SkipWithError("the model is not clean");
  run.counters["cells"] = benchmark::Counter(kPrimitives * 2500.0, benchmark::Counter::kIsIterationInvariantRate,
                                             benchmark::Counter::kIs1000);
}

// Sizing pass, fresh arrays, full build.
void ParseAndBuild(benchmark::State& run) {
  Model model(kMixed, kTail);
  for ([[maybe_unused]] auto _ : run) {
    model.Size();
    model.Build();
  }
  Report(run, model);
}
BENCHMARK(ParseAndBuild)->Unit(benchmark::kMillisecond);

// The full build of one shape in arrays that are in memory already.
void BuildShape(benchmark::State& run) {
  const std::string& shape = kMixed[static_cast<std::size_t>(run.range(0))];
  run.SetLabel(shape);
  Model model({shape}, kTail);
  model.Size();
  model.Build();
  for ([[maybe_unused]] auto _ : run) model.Build();
  Report(run, model);
}
BENCHMARK(BuildShape)->DenseRange(0, 13)->Unit(benchmark::kMillisecond);

// One rotation step of all primitives.
void RebuildStep(benchmark::State& run) {
  Model model(kMixed, "T 1 2 3 Automatic Y R Z 45");
  model.Size();
  model.Build();
  double angle = 0;
  for ([[maybe_unused]] auto _ : run) {
    model.state.rotation.RotationAngle = angle += 10;
    model.Build();
  }
  Report(run, model);
}
BENCHMARK(RebuildStep)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace orv

BENCHMARK_MAIN();
