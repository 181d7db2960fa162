#include <benchmark/benchmark.h>
#include <cmath>
#include <filesystem>
#include <string>

#include "model/file_workbook.h"
#include "model/range_sending.h"
#include "numerics/number_format.h"
#include "numerics/paths.h"
#include "support/scripted_dialogs.h"
#include "support/workbook_writer.h"
#include "view/class_gl.h"
#include "view/image_file.h"
#include "view/offscreen_control.h"
#include "view/scene_bodies.h"

// Time from a workbook file with 64,000 rows by 15 columns to its picture, and its parts.
namespace {

using namespace orv;
using testing::CellKind;
using testing::TestBook;

constexpr int kRows = 64000;
constexpr int kColumns = 15;
constexpr const char* kSpecification = "=0.001*MAX(A1:O64000)";

TestBook LargeBook() {
  TestBook book;
  auto& cells = book.sheets[0].cells;
  cells.reserve(std::size_t{kRows} * kColumns);
  for (int row = 1; row <= kRows; ++row) {
    for (int column = 1; column <= kColumns; ++column) {
      if (column == 6) {
        cells.push_back({{row, column}, CellKind::Text, row % 2 == 0 ? "S" : "E", "", ""});
      } else {
        cells.push_back({{row, column}, CellKind::Number, NumberText(std::sin(0.001 * row * column) * 42164), "", ""});
      }
    }
  }
  return book;
}

struct Desk {
  explicit Desk(const std::string& ending)
      : path(folder.Write("m." + ending,
                          Zip(ending == "xlsx" ? testing::XlsxParts(LargeBook()) : testing::OdsParts(LargeBook())))) {
    names.TraceFile = TextOf(folder.path() / kLastPlotName);
    names.DemoFile = TextOf(folder.path() / "demo.xls");
    copy.specification = kSpecification;
  }
  PlotReading Send(Spreadsheet& sheet) { return SendRangePlot(sheet, copy, names, lists, reader, clock); }

  testing::TemporaryFolder folder;
  std::filesystem::path path;
  testing::ScriptedDialogs dialogs;
  ErrorPrompt prompt{dialogs};
  CellText reader{prompt, Locale{}};
  SystemClock clock;
  PlotFileNames names;
  RangeCopy copy;
  PointLists lists;
};

void WorkbookToLists(benchmark::State& state, const std::string& ending) {
  Desk desk(ending);
  for (auto _ : state) {
    FileWorkbook book(desk.path, Locale{});
    book.Attach();
    desk.Send(book);
    if (desk.lists.NumberPoints != kRows - 1 || desk.lists.PanelCount2 != kRows - 1) state.SkipWithError("wrong lists");
  }
}

// What the command "show" does: the file, the lists, a scene that is painted twice, the picture's file.
void WorkbookToPicture(benchmark::State& state) {
  Desk desk("xlsx");
  for (auto _ : state) {
    FileWorkbook book(desk.path, Locale{});
    book.Attach();
    desk.Send(book);
    ViewState view;
    OffscreenControl::Made made = OffscreenControl::Make({1280, 960, 1, 4});
    if (!made.control) {
      state.SkipWithError(made.message.c_str());
      return;
    }
    OrbitBodies bodies(desk.prompt, ORV_TEXTURES);
    ClassGl scene(*made.control, desk.lists, view, desk.prompt, desk.clock, {}, &bodies);
    made.control->Attach(scene);
    made.control->Paint(scene);
    made.control->Paint(scene);
    const std::string fault = WritePng((desk.folder.path() / "plot.png").string(), made.control->Picture());
    if (!fault.empty()) state.SkipWithError(fault.c_str());
  }
}

void OpenWorkbook(benchmark::State& state) {
  const Desk desk("xlsx");
  for (auto _ : state) FileWorkbook(desk.path, Locale{}).Attach();
}

void SendRanges(benchmark::State& state) {
  Desk desk("xlsx");
  FileWorkbook book(desk.path, Locale{});
  book.Attach();
  for (auto _ : state) desk.Send(book);
}

void ReadRanges(benchmark::State& state) {
  Desk desk("xlsx");
  FileWorkbook book(desk.path, Locale{});
  book.Attach();
  bool narrow = false;
  for (auto _ : state) benchmark::DoNotOptimize(ReadRangePlot(book, desk.copy, desk.reader, desk.clock, narrow));
}

void ReadPlot(benchmark::State& state) {
  Desk desk("xlsx");
  FileWorkbook book(desk.path, Locale{});
  book.Attach();
  desk.Send(book);
  for (auto _ : state) ReadPlotFile(desk.names, desk.lists, desk.reader);
}

BENCHMARK_CAPTURE(WorkbookToLists, xlsx, "xlsx")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(WorkbookToLists, ods, "ods")->Unit(benchmark::kMillisecond);
BENCHMARK(WorkbookToPicture)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(OpenWorkbook)->Unit(benchmark::kMillisecond);
BENCHMARK(SendRanges)->Unit(benchmark::kMillisecond);
BENCHMARK(ReadRanges)->Unit(benchmark::kMillisecond);
BENCHMARK(ReadPlot)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
