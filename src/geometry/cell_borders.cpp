#include "geometry/cell_borders.h"

#include "geometry/cell_walk.h"

namespace orv {
namespace {

using Corners = std::array<const double*, 13>;  // planes of the corner elements 1 to 12

// Offsets of the corners of the five points, in element numbers.
constexpr std::array<int, 5> kForward = {0, 3, 6, 9, 0};
constexpr std::array<int, 5> kReversed = {0, 9, 6, 3, 0};

// The corners of these cells run the other way round than their normal asks for.
bool IsReversed(double typeCode, double area, int j, double halfOfM) {
  if (typeCode == 2 || typeCode == 4 || typeCode == 5) return true;
  if (typeCode == 7) return area < 0;
  if (typeCode == 15) return j > halfOfM;
  if (typeCode == 15.5) return j <= halfOfM;
  return false;
}

class OutlineWriter {
 public:
  OutlineWriter(const Cells& cells, const std::array<double, 3>& shift, PointLists& lists)
      : cells_(cells), shift_(shift), w_(lists.TraceList.row(3)) {
    for (std::size_t axis = 0; axis < 3; ++axis) row_[axis] = lists.TraceList.row(static_cast<int>(axis));
  }

  // False when a coordinate had no place in single precision.
  bool Write(const CellStretch& stretch, int firstEntry) {
    const int k = stretch.primitive;
    const double typeCode = cells_.CellData(k, 0, 0, 10);
    const double halfOfM = cells_.CellData(k, 0, 0, 2) / 2;
    const double* const area = cells_.CellData.plane(4, k).data();
    Corners corners{};
    for (int e = 1; e <= 12; ++e) corners[static_cast<std::size_t>(e)] = cells_.CellCorners.plane(e, k).data();
    const std::size_t areaRow = cells_.CellData.rowLength();
    const std::size_t cornerRow = cells_.CellCorners.rowLength();
    fits_ = true;
    std::size_t entry = static_cast<std::size_t>(firstEntry);
    OnCells(stretch, [&](int i, int j, int) {
      const auto row = static_cast<std::size_t>(i);
      const auto column = static_cast<std::size_t>(j);
      const bool reversed = IsReversed(typeCode, area[row * areaRow + column], j, halfOfM);
      Outline(corners, row * cornerRow + column, reversed ? kReversed : kForward, entry);
      entry += kOutlineEntries;
    });
    return fits_;
  }

 private:
  void Outline(const Corners& corners, std::size_t cell, const std::array<int, 5>& order, std::size_t entry) {
    for (std::size_t axis = 0; axis < 3; ++axis) {
      float* const to = row_[axis].data() + entry;
      for (std::size_t point = 0; point < 5; ++point) {
        const auto element = static_cast<std::size_t>(order[point]) + axis + 1;
        to[point] = Single(corners[element][cell] - shift_[axis]);
      }
      to[5] = 0;
    }
    float* const pen = w_.data() + entry;
    for (std::size_t point = 0; point < 5; ++point) pen[point] = 0;
    pen[5] = kPenUp;
  }

  float Single(double value) {
    fits_ = fits_ && FitsSingle(value);
    return SingleOrZero(value);
  }

  const Cells& cells_;
  std::array<double, 3> shift_;
  std::array<std::span<float>, 3> row_;
  std::span<float> w_;
  bool fits_ = true;
};

}  // namespace

CellBordersOutput a_SpaceApplicationCellsBordersQater(const Cells& cells, const CellBordersInput& input,
                                                      PointLists& lists, ErrorPrompt& prompt) {
  FailureBlock block(prompt, FailureLabels::Of("a_SpaceApplicationCellsBordersQater"));
  std::array<double, 3> shift{};
  for (std::size_t axis = 0; axis < 3 && input.originShift[0] == 1; ++axis) shift[axis] = input.originShift[axis + 1];

  // Both blocks of a run have the same bounds.
  const bool alike =
      cells.CellCorners.cellsI() >= cells.CellData.cellsI() && cells.CellCorners.cellsJ() >= cells.CellData.cellsJ();
  const int start = lists.TraceCount <= 0 ? 0 : lists.TraceCount + 1;
  const int room = alike ? (kListEntries - start) / kOutlineEntries : 0;
  const CellWalk walk = WalkCells(cells, input.NumberOfPrimitives, room);
  CellBordersOutput output;
  output.primitives.resize(1);
  OutlineWriter writer(cells, shift, lists);
  for (const CellStretch& stretch : walk.stretches) {
    const OutlineStretch outlines{start + kOutlineEntries * stretch.first, kOutlineEntries * stretch.cells};
    output.primitives.push_back(outlines);
    if (stretch.primitive == input.RotatingPrimitive) output.rotating = outlines;
    if (stretch.cells == 0) continue;
    block([&] {
      if (!writer.Write(stretch, outlines.first)) Raise(FailureNumber::Overflow);
    });
  }
  if (walk.cells > 0) {
    lists.TraceCount = start + kOutlineEntries * walk.cells - 1;
    lists.OutlineCount = lists.TraceCount + 1;
  }
  if (!walk.whole) block([] { Raise(FailureNumber::SubscriptOutOfRange); });
  return output;
}

}  // namespace orv
