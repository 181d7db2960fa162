#include "geometry/geometry.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "geometry/flat_primitives.h"
#include "geometry/geometry_call.h"
#include "geometry/placement.h"
#include "geometry/round_primitives.h"
#include "geometry/screened_cylinders.h"
#include "numerics/progress_pace.h"

namespace orv {
namespace {

struct Family {
  std::string_view type;
  void (*build)(GeometryCall& call, double code);
  double code;  // header column 10
};

constexpr auto kFamilies = std::to_array<Family>({
    {"RECT", BuildRect, 1},
    {"RECTFREE", BuildRectFree, 3},
    {"RECTORIENTED", BuildRectOriented, 3.5},
    {"RECT2SIDES", BuildRect2Sides, 16},
    {"DISC", BuildCone, 2},
    {"CON", BuildCone, 4},
    {"CON2", BuildCone, 4},
    {"SPH", BuildEllipsoid, 5},
    {"ELLI", BuildEllipsoid, 5},
    {"PAR", BuildEllipsoid, 5},
    {"THR", BuildThruster, 0},
    {"CYL", BuildCylinder, 7},
    {"CYLELLIPSE", BuildCylinder, 7},
    {"CYLSHAPE", BuildScreenPair, 8},
    {"CYLSCREEN", BuildScreenPair, 8},
    {"CYLSHAPEB", BuildScreenPair, 9},
    {"CYLSCREENB", BuildScreenPair, 9},
    {"CYLSHAPEX6", BuildSixCylinders, 10},
    {"CYLSCREENX6", BuildSixCylinders, 10},
    {"CYLSHAPEX6B", BuildSixCylinders, 11},
    {"CYLSCREENX6B", BuildSixCylinders, 11},
    {"CYLSHAPE4", BuildFourPlates, 12},
    {"CYLSCREEN4", BuildFourPlates, 12},
    {"CYLSHAPE4B", BuildFourPlates, 13},
    {"CYLSCREEN4B", BuildFourPlates, 13},
    {"CYLSHAPE44", BuildBuilderTable, 14},
    {"CYLSCREEN44", BuildBuilderTable, 14},
});

// A type without a generator: the user is told, and the primitive has the cells that its header counts, all zero.
void RefuseType(GeometryCall& call) {
  if (call.spec.Type == "CYLFREE") {
    call.Tell("error not set up ");
  } else {
    call.Tell(call.spec.Type + " this specification is not allowed. See Hallam ");
    call.SetHeader(call.k, 1, call.v.n);
    call.SetHeader(call.k, 2, call.v.m);
  }
  call.prompt.AbortQuestion();
}

void BuildShape(GeometryCall& call) {
  const auto family = std::find_if(kFamilies.begin(), kFamilies.end(),
                                   [&](const Family& candidate) { return candidate.type == call.spec.Type; });
  if (family == kFamilies.end()) {
    RefuseType(call);
  } else {
    family->build(call, family->code);
  }
}

// Keeps centres and normals as they are before placement.
void CopyLocal(GeometryCall& call, int primitive) {
  LocalTable& local = call.state.LocalCellTable;
  const CellGrid grid = call.Grid(primitive);
  local.Reserve(primitive, grid.countI, grid.countJ);
  for (const int column : {1, 2, 3, 5, 6, 7}) {
    OnEachElement(call.block, call.cells.CellData, grid, column,
                  [&](int i, int j, const double& value) { local.Set(primitive, i, j, column, value); });
  }
}

void NumberCells(GeometryCall& call) {
  const CellGrid grid = call.Grid(call.k);
  OnEachElement(call.block, call.cells.CellData, grid, 29, [](int i, int, double& value) { value = i; });
  OnEachElement(call.block, call.cells.CellData, grid, 30, [](int, int j, double& value) { value = j; });
}

// Every shell walks the same text; in a rebuild the first one walks it with the rotation put in.
void Place(GeometryCall& call, bool rebuild) {
  const std::string unedited = call.spec.Tail;
  for (int shell = 0; shell < call.shells; ++shell) {
    call.spec.Tail = rebuild && shell == 0
                         ? RewriteTailForRotation(unedited, call.state.rotation, call.specification, call.specification,
                                                  call.prompt, call.reader.locale())
                         : unedited;
    WalkTail(call, call.k + shell, call.spec.Tail);
  }
}

// A coordinate that a shape leaves as it was is 0 in a first build. In a rebuild it must not be the one of the position
// before, which the tail would move once more.
void ClearCorners(GeometryCall& call, int k) {
  const CellBlock& corners = call.cells.CellCorners;
  const CellGrid grid{k, std::min(call.cells.CountI(k), corners.cellsI()),
                      std::min(call.cells.CountJ(k), corners.cellsJ())};
  for (int element = 1; element <= 12; ++element) {
    OnEachElement(call.block, call.cells.CellCorners, grid, element, [](int, int, double& value) { value = 0; });
  }
}

void BuildPrimitive(GeometryCall& call, int k, bool rebuild) {
  call.state.LargestCentreShift = 0;
  call.shells = 1;
  ReadPrimitive(call, k);
  if (rebuild) ClearCorners(call, k);
  BuildShape(call);
  for (int shell = 0; shell < call.shells; ++shell) CopyLocal(call, k + shell);
  Place(call, rebuild);
  NumberCells(call);
}

// The strips again, from the corners where they stand now.
void PlaceStrips(GeometryCall& call, int k) {
  double strips = 0;
  call.block([&] { strips = call.cells.BorderCorners(k, 0, 0); });
  call.block([&] { SetStrips(call, k, strips, call.cells.CellData(k, 0, 0, 1), call.cells.CellData(k, 0, 0, 2)); });
}

}  // namespace

bool GeometryState::Rotates(int primitive) const {
  const auto end = AutoRotatedList.begin() + 1 + RotatedCount();
  return std::find(AutoRotatedList.begin() + 1, end, primitive) != end;
}

void GeometryState::AddRotated(int primitive) {
  if (AutoRotatedList.empty()) AutoRotatedList.push_back(0);
  if (Rotates(primitive)) return;
  AutoRotatedList.resize(static_cast<std::size_t>(RotatedCount()) + 1);
  AutoRotatedList.push_back(primitive);
  ++AutoRotatedList[0];
}

int GeometryState::RotatedCount() const {
  if (AutoRotatedList.empty()) return 0;
  return std::clamp(AutoRotatedList[0], 0, static_cast<int>(AutoRotatedList.size()) - 1);
}

void ReadPrimitive(GeometryCall& call, int k) {
  call.k = k;
  call.block([&] { call.specification = call.input.ModelCells(k, kSpecColumn); });
  call.block([&] {
    ParsePrimitive(call.input.ModelCells, k, kSpecColumn, call.names, call.reader, call.spec);
    call.v.n = call.spec.Nx;
    call.v.m = call.spec.Ny;
  });
}

void SetStrips(GeometryCall& call, int primitive, double strips, double n, double m) {
  const CellBlock& corners = call.cells.CellCorners;
  BorderBlock& border = call.cells.BorderCorners;
  call.block([&] { border(primitive, 0, 0) = strips; });
  for (int s = 1; s <= Cells::LoopCount(strips); ++s) {
    const double a = strips == 1 ? n : s;
    for (int axis = 1; axis <= 3; ++axis) {
      call.block([&] { border(primitive, s, axis) = corners(primitive, a, 1, axis); });
      call.block([&] { border(primitive, s, 3 + axis) = corners(primitive, s, 1, 3 + axis); });
      call.block([&] { border(primitive, s, 6 + axis) = corners(primitive, s, m, 6 + axis); });
      call.block([&] { border(primitive, s, 9 + axis) = corners(primitive, a, m, 9 + axis); });
    }
  }
}

void a_SpaceApplicationGeometry(const GeometryInput& input, std::vector<std::string>& PrimitiveNames, Cells& cells,
                                GeometryState& state, CellText& reader) {
  GeometryCall call(input, PrimitiveNames, cells, state, reader);
  state.VolumicSlices = 1;
  if (state.rotation.RotatingPrimitive != 0) {
    const std::vector<int> list = state.AutoRotatedList;
    const int count = state.RotatedCount();
    if (count == 0) return;
    const int last = list[static_cast<std::size_t>(count)];
    for (int k = list[1]; k <= last && state.Rotates(k); ++k) BuildPrimitive(call, k, true);
    for (int entry = 1; entry <= count; ++entry) PlaceStrips(call, list[static_cast<std::size_t>(entry)]);
    return;
  }
  state.LocalCellTable.Clear();
  state.Rect2SidesLocalTable.Clear();
  ProgressPace progress(call.prompt.dialogs());
  for (int k = 1; k <= input.NumberOfPrimitives; ++k) {
    progress("geometry", static_cast<double>(k - 1) / input.NumberOfPrimitives);
    BuildPrimitive(call, k, false);
  }
  for (int k = 1; k <= input.NumberOfPrimitives; ++k) PlaceStrips(call, k);
  cells.numberPrimWithVolumic = input.NumberOfPrimitives + state.VolumicSlices - 1;
}

}  // namespace orv
