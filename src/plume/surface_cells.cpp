#include "plume/surface_cells.h"

#include <cmath>

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

}  // namespace orv
