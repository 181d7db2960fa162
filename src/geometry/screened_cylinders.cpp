#include "geometry/screened_cylinders.h"

#include <array>
#include <vector>

#include "geometry/round_primitives.h"
#include "numerics/number_format.h"

namespace orv {
namespace {

// A flat column: place of its middle, width for the area, half widths along X and Y, normal.
struct FlatColumn {
  double x = 0;
  double y = 0;
  double width = 0;
  double halfX = 0;
  double halfY = 0;
  Vector3 normal{0, 1, 0};
};

// What tells one screened family from another.
struct Layout {
  double roundCount = 0;        // round columns in all
  double perTurn = 0;           // round columns of one cylinder
  std::vector<double> axes{0};  // X of the cylinders' axes
  std::vector<FlatColumn> flats;
};

struct RoundPlace {
  double group;   // which cylinder, from 0
  double column;  // place in it, from 1
};

RoundPlace PlaceOf(const Layout& layout, int i) {
  if (layout.axes.size() == 1) return {0, static_cast<double>(i)};
  const double p = Mod(i, layout.perTurn);
  return {Int((i - 1) / layout.perTurn), p == 0 ? layout.perTurn : p};
}

// Flat column `number`, from 1.
const FlatColumn& FlatOf(const Layout& layout, double number) {
  const std::ptrdiff_t index = ToIndex(number);
  if (index < 1 || static_cast<std::size_t>(index) > layout.flats.size()) Raise(FailureNumber::SubscriptOutOfRange);
  return layout.flats[static_cast<std::size_t>(index - 1)];
}

void BuildRoundColumn(GeometryCall& call, const Layout& layout, CellWriter& writer, int i) {
  const GeometryVariables& v = call.v;
  const RoundPlace place = PlaceOf(layout, i);
  const CylinderColumn column{ColumnAngles(v.da, place.column), call.spec.Size1, 1,
                              layout.axes.at(static_cast<std::size_t>(place.group))};
  for (int j = 1; j <= Cells::LoopCount(v.m); ++j) {
    CellShape cell = writer.Read(i, j);
    SetCylinderCell(call, column, v.dz / 2 + (j - 1) * v.dz, cell);
    // The normal of a further cylinder does not hold the place of its axis.
    if (place.group > 0) {
      call.block([&] { cell.normal(1) = call.cells.CellData(call.k, i - layout.perTurn, j, 5); });
    }
    writer.Write(i, j, cell);
  }
}

void BuildFlatColumn(GeometryCall& call, const FlatColumn& flat, CellWriter& writer, int i) {
  const GeometryVariables& v = call.v;
  for (int j = 1; j <= Cells::LoopCount(v.m); ++j) {
    CellShape cell;
    cell.centre = {flat.x, flat.y, v.dz / 2 + (j - 1) * v.dz};
    cell.area = flat.width * v.dz;
    cell.normal = flat.normal;
    cell.SetFlatCorners({flat.halfX, flat.halfY, 0}, {0, 0, v.dz / 2});
    if (!CellsOnCircle(call)) cell.centre = cell.MeanOfCorners();
    writer.Write(i, j, cell);
  }
}

void BuildScreened(GeometryCall& call, const Layout& layout, double code) {
  GeometryVariables& v = call.v;
  const int k = call.k;
  const double R = call.spec.Size1;
  call.SetHeader(k, 1, layout.roundCount);
  call.SetHeader(k, 2, v.m);
  call.block([&] { v.da = Divide(2 * kPi * call.spec.Size3, layout.perTurn); });
  call.block([&] { v.dz = Divide(call.spec.Size2, v.m); });
  SetCylinderHeader(call, k, R, 2 * R, code);
  CellWriter writer(call.cells, call.block, k);
  for (int i = 1; i <= Cells::LoopCount(v.n); ++i) {
    if (i <= layout.roundCount) {
      BuildRoundColumn(call, layout, writer, i);
    } else {
      call.block([&] { BuildFlatColumn(call, FlatOf(layout, i - layout.roundCount), writer, i); });
    }
  }
  call.SetHeader(k, 1, v.n);
  SetStrips(call, k, v.n, v.n, v.m);
}

bool EndsWithB(const std::string& type) {
  return !type.empty() && type.back() == 'B';
}

// The builder table, drawn for a cylinder of this radius; lengths in metres.
constexpr double kBuilderRadius = 0.0001125;
struct BuilderRow {
  double x, y, length, nx, ny, nz, dx, dy;
};
constexpr std::array<BuilderRow, 8> kBuilderTable = {{
    {-0.0001815, -0.000105, 0.000138, 0, 1, 0, 0.000069, 0},       // Plane1
    {-0.0001125, -0.0000525, 0.000105, -1, 0, 0, 0, 0.0000525},    // Plane2
    {0.0001125, -0.0001525, 0.000305, 1, 0, 0, 0, 0.0001525},      // Plane3
    {0.000331, -0.000305, 0.000437, 0, 1, 0, 0.0002185, 0},        // Plane4
    {-0.0202505, 0.0000205, 0.04, 0, 1, 0, 0.02, 0},               // screen1
    {-0.0002505, -0.00004225, 0.0001255, 1, 0, 0, 0, 0.00006275},  // screen2
    {0.0005495, -0.00014225, 0.0003255, -1, 0, 0, 0, 0.00016275},  // screen3
    {0.0203995, 0.0000205, 0.04, 0, 1, 0, 0.02, 0},                // screen4
}};

FlatColumn ScaledRow(const BuilderRow& row, double R) {
  const auto scaled = [R](double length) { return length / kBuilderRadius * R; };
  return {scaled(row.x),  scaled(row.y),  scaled(row.length),
          scaled(row.dx), scaled(row.dy), Vector3(row.nx, row.ny, row.nz)};
}

}  // namespace

void BuildScreenPair(GeometryCall& call, double code) {
  GeometryVariables& v = call.v;
  if (v.n < 2) v.n = 3;
  const double R = call.spec.Size1;
  const bool wide = EndsWithB(call.spec.Type);
  const double W = wide ? 400 * R : 20 * R;
  const double y = wide ? 0 : -W / 10;
  Layout layout;
  layout.roundCount = v.n - 2;
  layout.perTurn = layout.roundCount;
  layout.flats = {{W / 2, y, W, W / 2, 0}, {-W / 2, y, W, W / 2, 0}};
  BuildScreened(call, layout, code);
}

void BuildSixCylinders(GeometryCall& call, double code) {
  GeometryVariables& v = call.v;
  if (v.n < 8) v.n = 8;
  const double q = Int((v.n - 2) / 6);
  v.n = 6 * q + 2;
  const double R = call.spec.Size1;
  double leftEnd = (-0.04 - 400 * R) + 0.04;
  Layout layout;
  layout.axes = {0, 1.5, 2.65, (5.44 - 2.65) / 2 + 2.65, 5.44, 8.24};
  if (EndsWithB(call.spec.Type)) {
    leftEnd = call.spec.ExtraNumbers(-1);
    for (int g = 0; g <= 5; ++g) layout.axes[static_cast<std::size_t>(g)] = call.spec.ExtraNumbers(g);
  }
  layout.roundCount = v.n - 2;
  layout.perTurn = q;
  const double W = (layout.axes[5] - leftEnd) / 2;
  const double x = W / 2 + leftEnd;
  layout.flats = {{x, 0, W, W / 2, 0}, {x + W, 0, W, W / 2, 0}};
  BuildScreened(call, layout, code);
}

void BuildFourPlates(GeometryCall& call, double code) {
  GeometryVariables& v = call.v;
  if (v.n < 4) v.n = 5;
  const double R = call.spec.Size1;
  const double W = 30 * R;
  const bool far = EndsWithB(call.spec.Type);
  Layout layout;
  layout.roundCount = v.n - 4;
  layout.perTurn = layout.roundCount;
  layout.flats = {{far ? -1.5 * R : 7 * R, -R, far ? 2 * R : 14 * R, far ? R / 2 : 7 * R, 0},
                  {0, -2 * R, W, W / 2, 0},
                  {far ? -W / 4 - 6.5 * R : -W / 4 - R, 2 * R, W / 2, W / 4, 0},
                  {far ? -8 * R : -R, 0, 4 * R, 0, 2 * R, Vector3(1, 0, 0)}};
  BuildScreened(call, layout, code);
}

void BuildBuilderTable(GeometryCall& call, double code) {
  GeometryVariables& v = call.v;
  if (v.n < 8) v.n = 9;
  Layout layout;
  layout.roundCount = v.n - 8;
  layout.perTurn = layout.roundCount;
  for (const BuilderRow& row : kBuilderTable) {
    layout.flats.push_back(ScaledRow(row, call.spec.Size1));
  }
  BuildScreened(call, layout, code);
}

}  // namespace orv
