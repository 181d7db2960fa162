#include "analysis/running_tables.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <vector>

#include "analysis/result_file.h"
#include "analysis/result_labels.h"
#include "analysis/summary.h"
#include "numerics/element_tab.h"
#include "numerics/number_format.h"
#include "numerics/text.h"

namespace orv {
namespace {

constexpr int kLastSum = 81;
const char* const kTableFormat = "##0.###E+##                     ";
const char* const kAngleFormat = "          ##0.##             ";
const char* const kSumFormat = "##0.########              ";
const char* const kNoPonderation =
    "NO TIME ratio PONDERATION FOR FORCE and MOMENT TABLES (it was active only for OrvValis Release 53 to 55).  "
    "AutoRotation on ";

std::chrono::sys_days DayOf(const CivilTime& time) {
  return std::chrono::year{time.year} / time.month / time.day;
}

// first and first + offset, then the two behind them: the three axes, two values each.
std::vector<int> Pairs(int first, int offset) {
  return {first, first + offset, first + 1, first + 1 + offset, first + 2, first + 2 + offset};
}

void Append(std::vector<int>& list, const std::vector<int>& more) {
  list.insert(list.end(), more.begin(), more.end());
}

// The rows of one run in the running table.
class RunningTable {
 public:
  explicit RunningTable(RunContext& run) : run_(run) {
    for (const auto& [first, offset] : {std::pair{39, 9}, {45, 9}, {64, 3}, {70, 3}, {76, 3}}) {
      Append(sums_, Pairs(first, offset));
    }
  }

  void Print(ReportFile& file) {
    auto old = ReadReportLines(file.name(), kRunningTableLines);
    const bool newTable = StartsAnew(file.name(), old);
    for (int p = 1; p <= LastPrimitive(run_); ++p) PrintRow(p, newTable, file);
    if (newTable) return;
    for (const std::string& line : *old) file.Print(line);
  }

 private:
  bool StartsAnew(const std::string& name, const std::optional<std::vector<std::string>>& old) const {
    if (!old || old->empty()) return true;
    const std::optional<CivilTime> written = FileTime(name);
    return written && DayOf(run_.clock.Local()) - DayOf(*written) >= std::chrono::days{1};
  }

  int ModeOf(int p, bool newTable) const {
    if (p == run_.thruster.ThrusterPrimitive) return newTable ? 1 : -5;
    const std::vector<double>& list = run_.model.directives.TableList;
    if (list.empty() || list[0] < 1) return 0;
    return std::find(list.begin() + 1, list.end(), p) != list.end() ? 0 : -5;
  }

  void PrintRow(int p, bool newTable, ReportFile& file) {
    const int mode = ModeOf(p, newTable);
    if (mode == -5) return;
    ElementTab table(
        [&](const std::string& line) {
          file.Print(mode == 1 ? " N°  Name Material " + line
                               : TextColumn(std::to_string(p), 0) + TextColumn(PrimitiveName(run_, p), 0) +
                                     TextColumn(MaterialColumn(run_, p), 0) + " " + line +
                                     TextColumn(run_.record.CaseLine, 0));
        },
        run_.prompt);
    for (const int q : {19, 13, 22}) {
      table(mode, "MAX" + HardBlanks(LabelOf(run_.ResultLabels, q)), kTableFormat, SummariseQuantity(run_, p, q).Max);
    }
    for (const int q : sums_) {
      table(mode, HardBlanks(LabelOf(run_.ResultLabels, q)), kTableFormat, SummariseQuantity(run_, p, q).Sum);
    }
    table(-1, "", "", 0);
  }

  RunContext& run_;
  std::vector<int> sums_;
};

// Quantities of a rotation step in the order of their columns.
std::vector<int> StepQuantities() {
  std::vector<int> list = Pairs(39, 9);
  Append(list, Pairs(64, 3));
  Append(list, Pairs(45, 9));
  Append(list, Pairs(70, 3));
  Append(list, Pairs(76, 3));
  Append(list, {22, 57, 23, 24, 25, 36, 37, 38, 26, 27, 28});
  Append(list, Pairs(42, 9));
  return list;
}

// Line 0 holds the heads.
void PrintRotationSteps(RunContext& run, int steps, ReportFile& file) {
  ElementTab table([&](const std::string& line) { file.Print(line); }, run.prompt);
  const std::vector<int> quantities = StepQuantities();
  for (int s = 0; s <= steps; ++s) {
    const int mode = s == 0 ? 1 : 0;
    table(mode, " AngleAutoRotationDeg ", kAngleFormat, run.stores.RotationSums(s, 0));
    for (const int q : quantities) {
      std::string head = HardBlanks(LabelOf(run.ResultLabels, q));
      if (q == Number(Quantity::HeatFlux)) head += HardBlanks(" MAX") + " ";
      table(mode, head, kSumFormat, run.stores.RotationSums(s, q));
    }
    table(-1, "", "", 0);
  }
}

}  // namespace

bool WriteRunningTable(RunContext& run) {
  const std::string name = ResultName(run, "OrvforTables_.xls");
  const bool written = WriteReportFile(
      run, name, [&](ReportFile& file) { RunningTable(run).Print(file); }, name + "New");
  if (written) SetFileTime(name, run.clock.Local());
  return written;
}

bool WriteForcesAndMoments(RunContext& run) {
  const Array<double, 2>& sums = run.stores.RotationSums;
  if (sums.bounds(0).count() == 0 || sums.bounds(1).upper < kLastSum || !(sums(0, 0) >= 1)) return true;
  const int steps = static_cast<int>(std::min<std::ptrdiff_t>(ToIndex(sums(0, 0)), sums.bounds(0).upper));
  return WriteReportFile(run, ResultName(run, "OrvForcesAndMoments_.xls"), [&](ReportFile& file) {
    const auto old = ReadReportLines(file.name(), 0);
    const int rotating = run.plot.AutomaticRotationActive;
    file.Print(kNoPonderation + HardBlanks(PrimitiveName(run, rotating)) + " n°: " + std::to_string(rotating));
    PrintRotationSteps(run, steps, file);
    if (!old) return;
    for (const std::string& line : *old) file.Print(line);
  });
}

}  // namespace orv
