#include "plume/surface_cells.h"

#include <algorithm>
#include <cmath>
#include <span>

namespace orv {
namespace {

constexpr double kLastKnownType = 16;
constexpr double kTwoSided = 15;  // whole part of the code of a sheet with two faces

}  // namespace

int LastRowOfEffects(double typeCode, int NI) {
  if (typeCode >= 8 && typeCode <= 11) return NI - 2;
  if (typeCode == 12 || typeCode == 13) return NI - 3;
  if (typeCode == 14) return NI - 4;
  return NI;
}

bool HasEffects(double typeCode) {
  return !(typeCode > kLastKnownType);
}

bool OnSecondFace(double typeCode, int j, int NJ) {
  return std::floor(typeCode) == kTwoSided && j > NJ / 2.0;
}

EffectRange RangeOf(const Cells& cells, int primitive) {
  const CellBlock& data = cells.CellData;
  return {std::min(cells.CountI(primitive), data.cellsI()), std::min(cells.CountJ(primitive), data.cellsJ()),
          data.rowLength()};
}

void ClearQuantity(Cells& cells, int primitive, int quantity) {
  const EffectRange range = RangeOf(cells, primitive);
  const std::span<double> plane = cells.CellData.plane(quantity, primitive);
  for (int i = 1; i <= range.countI; ++i) {
    for (double& value : plane.subspan(range.at(i, 1), static_cast<std::size_t>(range.countJ))) {
      if (value != 0) value = 0;
    }
  }
}

}  // namespace orv
