#include "analysis/level_line_data.h"

#include <algorithm>
#include <cmath>

#include "analysis/result_labels.h"
#include "analysis/run_driver.h"
#include "geometry/quantities.h"
#include "numerics/number_format.h"

namespace orv {
namespace {

// Columns of a primitive's header.
constexpr int kStepX = 4;
constexpr int kStepY = 5;
constexpr int kFirstX = 6;
constexpr int kFirstY = 7;
constexpr int kTypeCode = 10;

constexpr double kOneSided = 16;  // type codes of the plates with growing cells
constexpr double kTwoSided = 15;
constexpr double kVersoOnly = 2;
constexpr double kColourSteps = 32;

// The cells of a primitive that are plotted.
struct CellRange {
  int primitive = 0;
  int countI = 0;
  int countJ = 0;
  int behindJ = 0;  // rows in front of the first one: the recto face when the verso face is shown
  bool grownPlate = false;
};

CellRange RangeOf(const RunContext& run, int primitive) {
  const CellBlock& data = run.cells.CellData;
  CellRange range;
  range.primitive = primitive;
  range.countI = std::min(run.cells.CountI(primitive), data.cellsI());
  range.countJ = std::min(run.cells.CountJ(primitive), data.cellsJ());
  const double code = data(primitive, 0, 0, kTypeCode);
  const bool faces = Int(code) == kTwoSided;
  range.grownPlate = faces || code == kOneSided;
  if (faces) {
    range.countJ /= 2;
    if (run.model.directives.RectoOnly == kVersoOnly) range.behindJ = range.countJ;
  }
  return range;
}

double Distance(const CellBlock& data, int p, int i, int j, int nextI, int nextJ) {
  const auto along = [&](int axis) { return data(p, nextI, nextJ, axis) - data(p, i, j, axis); };
  return std::hypot(along(1), along(2), along(3));
}

LevelAxis AxisX(const RunContext& run, const CellRange& range) {
  const CellBlock& data = run.cells.CellData;
  const int p = range.primitive;
  const double step = data(p, 0, 0, kStepX);
  const int row = range.behindJ + 1;
  LevelAxis axis({Bounds{1, range.countI}});
  if (!range.grownPlate && step == 0) {
    for (int i = 2; i <= range.countI; ++i) axis(i) = axis(i - 1) + Distance(data, p, i - 1, row, i, row);
    return axis;
  }
  for (int i = 1; i <= range.countI; ++i) {
    axis(i) = range.grownPlate ? static_cast<double>(run.geometry.Rect2SidesLocalTable(p, i, row, 1))
                               : data(p, 0, 0, kFirstX) + (i - 1) * step;
  }
  return axis;
}

LevelAxis AxisY(const RunContext& run, const CellRange& range) {
  const CellBlock& data = run.cells.CellData;
  const int p = range.primitive;
  const double step = data(p, 0, 0, kStepY);
  LevelAxis axis({Bounds{1, range.countJ}});
  if (!range.grownPlate && step == 0) {
    for (int j = 2; j <= range.countJ; ++j) axis(j) = axis(j - 1) + Distance(data, p, 1, j - 1, 1, j);
    return axis;
  }
  for (int j = 1; j <= range.countJ; ++j) {
    axis(j) = range.grownPlate ? static_cast<double>(run.geometry.Rect2SidesLocalTable(p, 1, range.behindJ + j, 2))
                               : data(p, 0, 0, kFirstY) + (j - 1) * step;
  }
  return axis;
}

LevelGrid ValuesOf(const RunContext& run, const CellRange& range, int column) {
  LevelGrid Z({Bounds{1, range.countI}, Bounds{1, range.countJ}});
  for (int i = 1; i <= range.countI; ++i) {
    for (int j = 1; j <= range.countJ; ++j) {
      Z(i, j) = run.cells.CellData(range.primitive, i, range.behindJ + j, column);
    }
  }
  return Z;
}

// The primitive of the option "L"; nothing when the text asks for something else or for no number.
void ReadListPrimitive(RunContext& run) {
  PlotState asked;
  asked.PlotOptionText = run.plot.PlotOptionText;
  ReadPlotOption(asked, run.reader);
  run.plot.ListPrimitive = asked.ListPrimitive;
}

LevelLineInput InputFor(const RunContext& run, int primitive) {
  const CellRange range = RangeOf(run, primitive);
  const double plot = CInt(run.plot.IndexPlot);
  const int column = plot == 0 ? Number(Quantity::Density) : static_cast<int>(ToIndex(plot));
  LevelLineInput input;
  input.X = AxisX(run, range);
  input.Y = AxisY(run, range);
  input.Z = ValuesOf(run, range, column);
  input.Title = LabelOf(run.ResultLabels, column);
  input.LabelFormat += LevelUnit(input.Title);
  input.LogScale = run.plot.LogScale;
  if (input.LogScale >= 1) TakeLevelLogarithms(input.Z, input.LogScale);
  return input;
}

}  // namespace

LevelAxis LevelAxisX(const RunContext& run, int primitive) {
  return AxisX(run, RangeOf(run, primitive));
}

LevelAxis LevelAxisY(const RunContext& run, int primitive) {
  return AxisY(run, RangeOf(run, primitive));
}

void TakeLevelLogarithms(LevelGrid& Z, double LogScale) {
  double leastPositive = 0;
  double most = 0;
  bool zeroInLog = false;
  for (const double z : Z.values()) {
    if (!(z > 0)) {
      zeroInLog = true;
      continue;
    }
    if (leastPositive == 0 || z < leastPositive) leastPositive = z;
    most = std::max(most, z);
  }
  double floor = leastPositive > 0 ? std::log10(leastPositive) : 0;
  if (zeroInLog && leastPositive > 0 && LogScale == 1) floor -= (std::log10(most) - floor) / kColourSteps;
  for (double& z : Z.values()) z = z > 0 ? std::log10(z) : floor;
}

std::string LevelUnit(const std::string& label) {
  const std::size_t end = label.rfind(')');
  if (end == std::string::npos) return {};
  const std::size_t begin = label.rfind('(', end);
  if (begin == std::string::npos) return {};
  return label.substr(begin + 1, end - begin - 1);
}

std::optional<LevelLineInput> FindLevelLineData(RunContext& run, std::string& message) {
  message.clear();
  if (!run.record.finished) return std::nullopt;
  try {
    ReadListPrimitive(run);
    const double wanted = CInt(run.plot.ListPrimitive);
    if (wanted == 0) return std::nullopt;
    const int last = std::min(run.cells.numberPrimWithVolumic, run.cells.CellData.primitives());
    if (!(wanted >= 1 && wanted <= last)) {
      message =
          "Level lines: there is no primitive " + NumberText(wanted) + ", the primitives are 1 to " + NumberText(last);
      return std::nullopt;
    }
    return InputFor(run, static_cast<int>(wanted));
  } catch (const RuntimeFailure& failure) {
    message = "Level lines: " + failure.description();
    return std::nullopt;
  }
}

}  // namespace orv
