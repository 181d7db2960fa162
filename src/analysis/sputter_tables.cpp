#include "analysis/sputter_tables.h"

#include <algorithm>
#include <array>

#include "analysis/report.h"
#include "analysis/result_labels.h"
#include "numerics/number_format.h"
#include "numerics/progress_pace.h"
#include "numerics/text.h"

namespace orv {
namespace {

constexpr int kDigits = 4;
constexpr std::size_t kWidth = 11;

// Slots of the store behind slot 0, which holds the erosion weighted by the time at the step.
constexpr std::array<int, 13> kSlots = {1, 2, 3, 4, 5, 6, 7, 9, 10, 15, 16, 20, 61};

std::string StepHeads(const RunContext& run, double angle) {
  std::string line = " I J" + TextColumn(LabelOf(run.ResultLabels, Number(Quantity::Sputtering)), 0);
  for (const int slot : kSlots) line += TextColumn(LabelOf(run.ResultLabels, slot), 0);
  return line + " AngleAutoRotationDeg" + TextColumn(NumberText(angle), 0);
}

void PrintSteps(RunContext& run, ReportFile& file) {
  const PagedArray<float, 4>& store = run.stores.RotationCellStore;
  if (store.bounds(0).count() == 0) return;
  const auto limit = [&](int slot, std::size_t dimension) {
    return std::min<std::ptrdiff_t>(ToIndex(store(0, 0, 0, slot)), store.bounds(dimension).upper);
  };
  const std::ptrdiff_t n = limit(1, 1);
  const std::ptrdiff_t m = limit(2, 2);
  const std::ptrdiff_t steps = limit(3, 0);
  ProgressPace progress(run.dialogs());
  for (std::ptrdiff_t s = 1; s <= steps; ++s) {
    file.Print(StepHeads(run, store(s, 0, 0, 0)));
    for (std::ptrdiff_t i = 1; i <= n; ++i) {
      progress("reports, steps of the turn", static_cast<double>(s - 1) / static_cast<double>(steps));
      for (std::ptrdiff_t j = 1; j <= m; ++j) {
        std::string row = IndexColumn(i, 3) + IndexColumn(j, 3) + NumberColumn(store(s, i, j, 0), kDigits, kWidth);
        for (const int slot : kSlots) row += NumberColumn(store(s, i, j, slot), kDigits, kWidth);
        file.Print(row);
      }
    }
  }
}

}  // namespace

bool WriteSputterRotationTable(RunContext& run, const std::vector<std::string>& potentials) {
  const std::string name =
      ResultName(run, "OrvSputtAutoTable" + ShortTitle(run, 29) + " " + DateAndTimeStamp(run) + "_.xls");
  return WriteReportFile(run, name, [&](ReportFile& file) {
    const auto print = [&](const std::string& line) { file.Print(line); };
    PrintHeading(run, print);
    PrintSteps(run, file);
    PrintModelSummary(run, name, SummaryPlace::SputterTable, potentials, print);
  });
}

bool SpectrumTable::Open(RunContext& run) {
  file_.reset();
  run_ = &run;
  if (run.model.directives.SilentMode == 1) return false;
  file_ = OpenReport(run, ResultName(run, "OrvSpectrum" + ShortTitle(run, 36) + " " + DateAndTimeStamp(run) + "_.xls"));
  if (file_ != nullptr) file_->Print(" Band Angle_(deg) Min_(m/s) Max_(m/s) Summary");
  return file_ != nullptr;
}

void SpectrumTable::Line(int band, double angle, double smallest, double largest, const std::string& text) {
  if (file_ == nullptr) return;
  file_->Print(TextColumn(std::to_string(band), 4) + NumberColumn(angle, kDigits, kWidth) +
               NumberColumn(smallest, kDigits, kWidth) + NumberColumn(largest, kDigits, kWidth) +
               TextColumn(Trim(text), 0));
}

bool SpectrumTable::Close() {
  return file_ != nullptr && CloseReport(*run_, std::move(file_));
}

}  // namespace orv
