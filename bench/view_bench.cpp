#include <benchmark/benchmark.h>
#include <chrono>
#include <cstdio>
#include <memory>
#include <string>

#include "reference/plain_plot.h"
#include "support/scripted_dialogs.h"
#include "support/view_model.h"
#include "view/class_gl.h"
#include "view/offscreen_control.h"

// Plots that grow: milliseconds for a rebuild and for an unchanged paint, against one glBegin loop over the same data.
// Every figure is wall time with the drawing finished; the ratio comes from one run.
namespace orv {
namespace {

constexpr int kWidth = 1024;
constexpr int kHeight = 768;
constexpr int kGrowthSteps = 40;

struct Scene {
  explicit Scene(int sidesMode) : made(OffscreenControl::Make({kWidth, kHeight, 1, 1})) {
    view.SidesMode = sidesMode;
    view.options.Check1[4] = 1;  // no texts: they are the same for both forms
    view.options.Check1[3] = 1;
    view.options.Check1[5] = 1;
  }
  void Start() {
    scene = std::make_unique<ClassGl>(*made.control, lists, view, prompt, clock);
    made.control->Attach(*scene);
    Paint();
    Paint();
  }
  void Paint() {
    made.control->Paint(*scene);
    glFinish();
  }

  OffscreenControl::Made made;
  testing::ScriptedDialogs dialogs;
  ErrorPrompt prompt{dialogs};
  SystemClock clock;
  PointLists lists;
  ViewState view;
  std::unique_ptr<ClassGl> scene;
};

double Seconds() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

// The plot of a scene as the bench drives it, without the rest of a paint.
struct Plot {
  explicit Plot(Scene& s) : scene(s) {}
  DynamicPlot::Input Input(int last) const {
    const double share = static_cast<double>(last) / scene.lists.NumberPoints;
    scene.lists.TraceMax = static_cast<int>(share * scene.lists.TraceCount);
    return {scene.lists, scene.view, scene.scene->Scale(), last, 0};
  }
  Scene& scene;
  DynamicPlot shipped;
};

// A rebuild finished, the drawing of the list not counted.
template <class Work>
double Timed(Work&& work) {
  glFinish();
  const double begin = Seconds();
  work();
  glFinish();
  return Seconds() - begin;
}

// Rebuilds of a plot that grows in `kGrowthSteps` steps, and one call of the whole list.
void Grow(benchmark::State& state, Scene& s) {
  if (!s.made.control) {
    state.SkipWithError(s.made.message.c_str());
    return;
  }
  s.Start();
  Plot plot(s);
  GlApi& gl = s.made.control->Gl();
  double shipped = 0;
  double plainSeconds = 0;
  double unchanged = 0;
  double plainUnchanged = 0;
  long steps = 0;
  const GLuint plain = glGenLists(1);
  for (auto _ : state) {
    plot.shipped.Renew();
    for (int step = 1; step <= kGrowthSteps; ++step) {
      const int last = static_cast<int>(static_cast<double>(step) * s.lists.NumberPoints / kGrowthSteps);
      const DynamicPlot::Input input = plot.Input(last);
      shipped += Timed([&] { plot.shipped.Prepare(gl, input); });
      plainSeconds +=
          Timed([&] { reference::PlainRebuild(plain, s.lists, s.view, 0, last, plot.shipped.DrawForward() == 0); });
      ++steps;
    }
    unchanged += Timed([&] { plot.shipped.Draw(gl, plot.Input(s.lists.NumberPoints)); });
    plainUnchanged += Timed([&] { glCallList(plain); });
  }
  plot.shipped.Release(gl);
  glDeleteLists(plain, 1);
  const auto rounds = static_cast<double>(state.iterations());
  state.counters["rebuild_ms"] = 1e3 * shipped / static_cast<double>(steps);
  state.counters["plain_rebuild_ms"] = 1e3 * plainSeconds / static_cast<double>(steps);
  state.counters["ratio"] = plainSeconds / shipped;
  state.counters["unchanged_ms"] = 1e3 * unchanged / rounds;
  state.counters["plain_unchanged_ms"] = 1e3 * plainUnchanged / rounds;
}

// A change of colours: nothing of the plot can be kept.
void Recolour(benchmark::State& state, Scene& s) {
  if (!s.made.control) {
    state.SkipWithError(s.made.message.c_str());
    return;
  }
  s.Start();
  Plot plot(s);
  GlApi& gl = s.made.control->Gl();
  double shipped = 0;
  double plainSeconds = 0;
  const GLuint plain = glGenLists(1);
  int style = 0;
  for (auto _ : state) {
    style = (style + 1) % kColorStyles;
    s.view.ColorStyle = style;
    const DynamicPlot::Input input = plot.Input(s.lists.NumberPoints);
    shipped += Timed([&] { plot.shipped.Prepare(gl, input); });
    plainSeconds += Timed([&] { reference::PlainRebuild(plain, s.lists, s.view, 0, s.lists.NumberPoints, true); });
  }
  plot.shipped.Release(gl);
  glDeleteLists(plain, 1);
  const auto rounds = static_cast<double>(state.iterations());
  state.counters["rebuild_ms"] = 1e3 * shipped / rounds;
  state.counters["plain_rebuild_ms"] = 1e3 * plainSeconds / rounds;
  state.counters["ratio"] = plainSeconds / shipped;
}

void PointsGrowing(benchmark::State& state) {
  Scene s(kRectoSide);
  FillCurve(s.lists, 64000, 12);
  Grow(state, s);
}
BENCHMARK(PointsGrowing)->Unit(benchmark::kMillisecond)->Iterations(3);

void OutlinesGrowing(benchmark::State& state) {
  Scene s(static_cast<int>(state.range(0)));
  FillSheet(s.lists, 300, 500);
  Grow(state, s);
}
BENCHMARK(OutlinesGrowing)->ArgName("sides")->DenseRange(1, 4)->Unit(benchmark::kMillisecond)->Iterations(2);

void OutlinesRecoloured(benchmark::State& state) {
  Scene s(static_cast<int>(state.range(0)));
  FillSheet(s.lists, 300, 500);
  Recolour(state, s);
}
BENCHMARK(OutlinesRecoloured)->ArgName("sides")->DenseRange(1, 4)->Unit(benchmark::kMillisecond)->Iterations(7);

void PointsRecoloured(benchmark::State& state) {
  Scene s(kRectoSide);
  FillCurve(s.lists, 64000, 12);
  Recolour(state, s);
}
BENCHMARK(PointsRecoloured)->Unit(benchmark::kMillisecond)->Iterations(7);

}  // namespace
}  // namespace orv

BENCHMARK_MAIN();
