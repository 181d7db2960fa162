// How long the window is left without handling events while a run on a model of 100,000 cells goes on: the largest gap
// between two ticks of a timer of 5 ms, for the plots 13, 22, 19 and 100. Needs a display.
#include <QApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "analysis/effect_phases.h"
#include "analysis/run_driver.h"
#include "model/memory_sheet.h"
#include "shell/frm_warning.h"
#include "shell/qt_dialogs.h"

namespace {

constexpr int kTickMs = 5;
constexpr double kLongestGap = 100;  // ms, what a user does not notice

struct Model {
  int primitives = 0;
  int side = 0;          // cells along i and j of each primitive
  bool turning = false;  // the first plate turns
  int cells() const { return primitives * side * side; }
};

// The dialogs of the window. The generated models are known: what is said of them needs no answer.
class AnsweredDialogs : public orv::QtDialogs {
 public:
  using QtDialogs::QtDialogs;
  orv::Answer Ask(const std::string&, const std::string&, orv::Buttons, orv::Icon) override {
    return orv::Answer::Ignore;
  }
  std::string Input(const std::string&, const std::string&, const std::string& initial) override { return initial; }
  void Pause(const std::string&, const std::string&) override {}
};

class OnePlot : public orv::PlotSelection {
 public:
  explicit OnePlot(double plot) : plot_(plot) {}
  orv::PlotChoice Select(const std::string&, const orv::RunContext&) override { return {plot_, "G", {}}; }

 private:
  double plot_;
};

// The largest gap between two ticks, with the phases told at both.
class GapMeter {
 public:
  explicit GapMeter(orv::QtDialogs& dialogs) {
    QObject::connect(&dialogs, &orv::QtDialogs::ProgressChanged, &timer_,
                     [this](const QString& text, double) { phase_ = text.toStdString(); });
    QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { Tick(); });
    timer_.setTimerType(Qt::PreciseTimer);
  }

  void Start() {
    timer_.start(kTickMs);
    QCoreApplication::processEvents();
    last_.start();
  }

  void Stop() {
    Tick();
    timer_.stop();
  }

  double largest() const { return largest_; }
  const std::string& place() const { return place_; }

  bool tellAll = false;  // every gap that is too long, not only the largest

 private:
  void Tick() {
    const double gap = static_cast<double>(last_.nsecsElapsed()) / 1e6;
    last_.start();
    const std::string place = phaseBefore_ == phase_ ? phase_ : "\"" + phaseBefore_ + "\" to \"" + phase_ + "\"";
    phaseBefore_ = phase_;
    if (tellAll && gap > kLongestGap) std::printf("        %7.1f ms  %s\n", gap, place.c_str());
    if (gap <= largest_) return;
    largest_ = gap;
    place_ = place;
  }

  QTimer timer_;
  QElapsedTimer last_;
  double largest_ = 0;
  std::string phase_, phaseBefore_, place_;
};

// Plates, cylinders and spheres round a thruster.
std::string TextOf(const Model& model) {
  const std::string cells = " cells " + std::to_string(model.side) + " " + std::to_string(model.side);
  std::string text =
      "\n\tOrvdata Generated\tT 0 0 0 ro 0 360 10 re\n\tHT\tThruster thr size 0.05 0.1 cells 1 1 R X -90 T 0 -1 0\n";
  for (int k = 0; k < model.primitives; ++k) {
    const char* const shapes[3] = {" rect size 1 1", " cyl size 0.4 1 1", " sph size 0.5 1 1"};
    text += "\tsilver\tP" + std::to_string(k) + shapes[k % 3] + cells + " R X " + std::to_string(k * 9);
    text += " T " + std::to_string(k % 7 - 3) + " " + std::to_string(k % 5 + 1) + " " + std::to_string(k % 4 - 1) +
            (model.turning && k == 0 ? " A Y\n" : "\n");
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

// One run; prints its line and returns the largest gap in ms.
double Run(const Model& model, double plot, bool tellAll) {
  orv::frmWarning warnings;
  AnsweredDialogs dialogs(nullptr, warnings);
  GapMeter meter(dialogs);
  meter.tellAll = tellAll;
  orv::ErrorPrompt prompt(dialogs);
  orv::CellText reader(prompt, orv::Locale{});
  orv::MemorySettings settings;
  const orv::SystemClock clock;
  const QTemporaryDir folder;
  const std::string output = folder.path().toStdString() + "/";
  orv::RunContext run(prompt, reader, settings, clock, output);
  orv::MemorySheet sheet;
  sheet.SetText({1, 1}, TextOf(model));
  sheet.Attach();
  orv::CommExcel reading(sheet, reader, clock);
  orv::CommExcel::Session source;
  meter.Start();
  reading.Read(run.model, source);
  run.model.WorkbookFolder = output;
  OnePlot selection(plot);
  orv::EffectPhases phases;
  const double begin = clock.Seconds();
  orv::a_SpaceApplication(run, selection, phases);
  const double seconds = clock.Seconds() - begin;
  meter.Stop();
  std::printf("  %4.0f  %2d x %-6d %-8s %8.3f s  %7.1f ms  %s\n", plot, model.primitives, model.side * model.side,
              model.turning ? "turning" : "", seconds, meter.largest(), meter.place().c_str());
  std::fflush(stdout);
  if (tellAll) {
    for (const auto& [name, duration] : run.record.phaseSeconds)
      std::printf("        %-16s %9.3f s\n", name.c_str(), duration);
  }
  return meter.largest();
}

}  // namespace

// Options: --quick for a small model, --all to see every gap above the limit. Ends with 1 when there is one.
int main(int argc, char** argv) {
  QApplication application(argc, argv);
  bool quick = false;
  bool tellAll = false;
  for (int k = 1; k < argc; ++k) {
    quick = quick || std::strcmp(argv[k], "--quick") == 0;
    tellAll = tellAll || std::strcmp(argv[k], "--all") == 0;
  }
  const Model many{39, quick ? 16 : 51};
  const Model few{2, quick ? 71 : 225};
  std::printf("Largest time without events, %d cells\n  plot  model                    all        gap  phase\n",
              many.cells());
  double largest = 0;
  const auto run = [&](const Model& model, double plot) { largest = std::max(largest, Run(model, plot, tellAll)); };
  for (const double plot : {13.0, 22.0, 19.0, 100.0}) run(many, plot);
  for (const double plot : {22.0, 19.0}) run({many.primitives, many.side, true}, plot);
  for (const double plot : {13.0, 100.0}) run(few, plot);
  run({few.primitives, few.side, true}, 22);
  return largest > kLongestGap ? EXIT_FAILURE : EXIT_SUCCESS;
}
