// Whole runs on generated models: plot 100 of a model of 100,000 cells with its seconds per phase and its peak memory,
// and how the time of the plots 13, 22 and 19 grows with the number of cells.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <sys/resource.h>

#include "analysis/effect_phases.h"
#include "analysis/run_driver.h"
#include "model/memory_sheet.h"

namespace {

class SilentDialogs : public orv::UserDialogs {
 public:
  // The generated models are known to be large: what is said of that needs no answer.
  orv::Answer Ask(const std::string&, const std::string&, orv::Buttons, orv::Icon) override {
    return orv::Answer::Ignore;
  }
  std::string Input(const std::string&, const std::string&, const std::string& initial) override { return initial; }
  void Pause(const std::string&, const std::string&) override {}
  void Log(const std::string&) override {}
  void Status(const std::string&) override {}
  void Progress(const std::string&, double) override {}
  bool Attended() const override { return false; }
};

class OnePlot : public orv::PlotSelection {
 public:
  explicit OnePlot(double plot) : plot_(plot) {}
  orv::PlotChoice Select(const std::string&, const orv::RunContext&) override { return {plot_, "", {}}; }

 private:
  double plot_;
};

// 39 primitives round a thruster, plates, cylinders and spheres, of side x side cells each.
std::string ModelOf(int side) {
  const std::string cells = " cells " + std::to_string(side) + " " + std::to_string(side);
  std::string text =
      "\n\tOrvdata Generated\tT 0 0 0 Silent 1\n\tHT\tThruster thr size 0.05 0.1 cells 1 1 R X -90 T 0 -1 0\n";
  for (int k = 0; k < 39; ++k) {
    const char* const shapes[3] = {" rect size 1 1", " cyl size 0.4 1 1", " sph size 0.5 1 1"};
    text += "\tsilver\tP" + std::to_string(k) + shapes[k % 3] + cells + " R X " + std::to_string(k * 9) + " T " +
            std::to_string(k % 7 - 3) + " " + std::to_string(k % 5 + 1) + " " + std::to_string(k % 4 - 1) + "\n";
  }
  return text +
         "\n\n\tDatabaseOrvValis\n\n\tTable      1 Thrusters\n\tname\n"
         "\tHT\t\t4.2\t300\t0.9\t4\t0.01\t90\t0\t0\t0\t90\t0\t0\t0\t90\t0\n\n\tTable      6 Gases\n\tname\n"
         "\tXe+\t\t1\t131.29\n\tXe++\t\t2\t131.29\n\n\tTable      7 Materials\n\tname\n\tsilver\t10490\t107.87\n\n"
         "\tTable      8 Accommodation\n\tgas\n\tXe+\tsilver\t0.9\t0.9\t0.9\tY\n\n\tTable      10 Species\n\tname\n"
         "\tHT\tXe+\t0.9\n\tHT\tXe++\t0.1\n\n\tTable      9 Yields\n\tgas\n\tXe+\tsilver\t100\t0.5\t0.9\t50\t1.3\n"
         "\tXe+\tsilver\t800\t3.9\t6\t50\t1.3\n\tXe++\tsilver\t100\t0.5\t0.9\t50\t1.3\n\tXe++\tsilver\t800\t3."
         "9\t6\t50\t1.3\n\n\n";
}

double PeakMegabytes() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return static_cast<double>(usage.ru_maxrss) / 1024;
}

double Run(int side, double plot, bool phasesToo) {
  SilentDialogs dialogs;
  orv::ErrorPrompt prompt(dialogs);
  orv::CellText reader(prompt, orv::Locale{});
  orv::MemorySettings settings;
  const orv::SystemClock clock;
  const char* folder = std::getenv("TMPDIR");
  orv::RunContext run(prompt, reader, settings, clock, std::string(folder != nullptr ? folder : "/tmp") + "/");
  orv::MemorySheet sheet;
  sheet.SetText({1, 1}, ModelOf(side));
  sheet.Attach();
  orv::CommExcel reading(sheet, reader, clock);
  orv::CommExcel::Session source;
  reading.Read(run.model, source);
  OnePlot selection(plot);
  orv::EffectPhases phases;
  const double begin = clock.Seconds();
  orv::a_SpaceApplication(run, selection, phases);
  const double seconds = clock.Seconds() - begin;
  if (phasesToo) {
    for (const auto& [name, duration] : run.record.phaseSeconds)
      std::printf("  %-16s %9.3f s\n", name.c_str(), duration);
  }
  return seconds;
}

}  // namespace

int main(int argc, char** argv) {
  const bool quick = argc > 1 && std::strcmp(argv[1], "--quick") == 0;
  std::printf("Growth with the number of cells, seconds\n  plot");
  const int sides[3] = {16, 32, 64};
  for (const int side : sides) std::printf("  %7d cells", 39 * side * side);
  std::printf("\n");
  for (const double plot : {13.0, 22.0, 19.0}) {
    std::printf("  %4.0f", plot);
    for (const int side : sides) std::printf("  %13.4f", Run(side, plot, false));
    std::printf("\n");
  }
  const int side = quick ? 16 : 50;
  std::printf("Plot 100 of %d cells\n", 39 * side * side);
  std::printf("  %-16s %9.3f s\n  peak memory %.0f MB\n", "all", Run(side, 100, true), PeakMegabytes());
  return 0;
}
