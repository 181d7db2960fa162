#include <benchmark/benchmark.h>
#include <filesystem>
#include <string>

#include "model/file_workbook.h"
#include "support/workbook_writer.h"

// Time to open a workbook of 100,000 filled cells, and to copy and search it.
namespace {

using orv::FileWorkbook;
using orv::Locale;
using orv::testing::CellKind;
using orv::testing::TestBook;

constexpr int kRows = 5000;
constexpr int kColumns = 20;

// Columns of numbers, with a text, a formula and a logical value in every row.
TestBook LargeBook() {
  TestBook book;
  auto& cells = book.sheets[0].cells;
  for (int row = 1; row <= kRows; ++row) {
    const std::string number = std::to_string(row);
    for (int column = 1; column <= kColumns; ++column) {
      const std::string digits = std::to_string(0.001 * row * column) + std::to_string(row % 89);
      if (column == 1) {
        cells.push_back({{row, column}, CellKind::Text, "material " + std::to_string(row % 50), "", ""});
      } else if (column == 2) {
        cells.push_back({{row, column}, CellKind::Text, "plate 1 2 3 " + number, "", ""});
      } else if (column == 3) {
        std::string formula = "SUM(D";
        std::string openFormula = "SUM([.D";
        formula.append(number).append(":F").append(number).append(")*$A$1");
        openFormula.append(number).append(":.F").append(number).append("])*[.$A$1]");
        cells.push_back({{row, column}, CellKind::Number, digits, formula, openFormula});
      } else if (column == 4) {
        cells.push_back({{row, column}, CellKind::Logical, row % 2 == 0 ? "TRUE" : "FALSE", "", ""});
      } else {
        cells.push_back({{row, column}, CellKind::Number, digits, "", ""});
      }
    }
  }
  return book;
}

class LargeFile {
 public:
  LargeFile(const std::string& name, const std::string& bytes) : path_(folder_.Write(name, bytes)) {}
  const std::filesystem::path& path() const { return path_; }

 private:
  orv::testing::TemporaryFolder folder_;
  std::filesystem::path path_;
};

void Open(benchmark::State& state, const std::string& name, const std::string& bytes) {
  const LargeFile file(name, bytes);
  for (auto _ : state) {
    FileWorkbook book(file.path(), Locale{});
    book.Attach();
    if (book.Value({kRows, 2}) != "plate 1 2 3 5000") state.SkipWithError("wrong content");
  }
  state.counters["cells/s"] = benchmark::Counter(kRows * kColumns, benchmark::Counter::kIsIterationInvariantRate);
}

void OpenXlsx(benchmark::State& state) {
  Open(state, "m.xlsx", Zip(orv::testing::XlsxParts(LargeBook())));
}
void OpenXlsxInlineStrings(benchmark::State& state) {
  Open(state, "m.xlsx", Zip(orv::testing::XlsxParts(LargeBook(), {true, false, false, false})));
}
void OpenOds(benchmark::State& state) {
  Open(state, "m.ods", Zip(orv::testing::OdsParts(LargeBook())));
}
void OpenText(benchmark::State& state) {
  const LargeFile source("m.xlsx", Zip(orv::testing::XlsxParts(LargeBook())));
  FileWorkbook book(source.path(), Locale{});
  book.Attach();
  Open(state, "m.txt", book.RangeText("A1:T5000"));
}

void CopyAll(benchmark::State& state) {
  const LargeFile file("m.xlsx", Zip(orv::testing::XlsxParts(LargeBook())));
  FileWorkbook book(file.path(), Locale{});
  book.Attach();
  for (auto _ : state) benchmark::DoNotOptimize(book.RangeText("A1:T5000"));
}

void FindLast(benchmark::State& state) {
  const LargeFile file("m.xlsx", Zip(orv::testing::XlsxParts(LargeBook())));
  FileWorkbook book(file.path(), Locale{});
  book.Attach();
  for (auto _ : state) {
    book.Activate({1, 1});
    book.Find("PLATE 1 2 3 5000");
  }
}

BENCHMARK(OpenXlsx)->Unit(benchmark::kMillisecond);
BENCHMARK(OpenXlsxInlineStrings)->Unit(benchmark::kMillisecond);
BENCHMARK(OpenOds)->Unit(benchmark::kMillisecond);
BENCHMARK(OpenText)->Unit(benchmark::kMillisecond);
BENCHMARK(CopyAll)->Unit(benchmark::kMillisecond);
BENCHMARK(FindLast)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
