#include "geometry/cell_writer.h"

namespace orv {

Vector3 CellShape::MeanOfCorners() const {
  Vector3 mean;
  for (std::size_t axis = 1; axis <= 3; ++axis) {
    mean(axis) = (corners[0](axis) + corners[1](axis) + corners[2](axis) + corners[3](axis)) / 4;
  }
  return mean;
}

double CellShape::AreaOfCorners() const {
  const auto halfCross = [](const Vector3& a, const Vector3& apex, const Vector3& b) {
    Vector3 first;
    Vector3 second;
    Vector3 cross;
    vCombine(a, 1, apex, -1, first);
    vCombine(b, 1, apex, -1, second);
    vcross(first, second, cross);
    return 0.5 * vNorm(cross);
  };
  return halfCross(corners[0], corners[1], corners[2]) + halfCross(corners[2], corners[3], corners[0]);
}

void CellShape::SetFlatCorners(const Vector3& a, const Vector3& b) {
  for (std::size_t axis = 1; axis <= 3; ++axis) {
    corners[0](axis) = centre(axis) - a(axis) - b(axis);
    corners[1](axis) = centre(axis) + a(axis) - b(axis);
    corners[2](axis) = centre(axis) + a(axis) + b(axis);
    corners[3](axis) = centre(axis) - a(axis) + b(axis);
  }
}

CellWriter::CellWriter(Cells& cells, FailureBlock& block, int primitive)
    : cells_(cells), block_(block), primitive_(primitive) {
  CellBlock& data = cells.CellData;
  CellBlock& corners = cells.CellCorners;
  const bool alike = data.rowLength() == corners.rowLength() && primitive <= data.primitives() &&
                     primitive <= corners.primitives() && data.quantities() >= 8 && corners.quantities() >= 12;
  if (!alike) return;
  lastI_ = std::min(data.cellsI(), corners.cellsI());
  lastJ_ = data.cellsJ();
  rowLength_ = data.rowLength();
  for (int q = 1; q <= 8; ++q) quantity_[static_cast<std::size_t>(q)] = data.plane(q, primitive).data();
  for (int n = 1; n <= 12; ++n) corner_[static_cast<std::size_t>(n)] = corners.plane(n, primitive).data();
}

CellShape CellWriter::Read(int i, int j) const {
  CellShape shape;
  if (!Inside(i, j)) return shape;
  const std::size_t at = At(i, j);
  for (std::size_t axis = 1; axis <= 3; ++axis) {
    shape.centre(axis) = quantity_[axis][at];
    shape.normal(axis) = quantity_[axis + 4][at];
    for (std::size_t c = 0; c < 4; ++c) shape.corners[c](axis) = corner_[3 * c + axis][at];
  }
  shape.area = quantity_[4][at];
  return shape;
}

void CellWriter::Write(int i, int j, const CellShape& shape) {
  if (Inside(i, j)) {
    const std::size_t at = At(i, j);
    for (std::size_t axis = 1; axis <= 3; ++axis) {
      quantity_[axis][at] = shape.centre(axis);
      quantity_[axis + 4][at] = shape.normal(axis);
      for (std::size_t c = 0; c < 4; ++c) corner_[3 * c + axis][at] = shape.corners[c](axis);
    }
    quantity_[4][at] = shape.area;
    quantity_[8][at] = shape.distance;
    return;
  }
  for (std::size_t axis = 1; axis <= 3; ++axis) {
    block_([&] { cells_.CellData(primitive_, i, j, axis) = shape.centre(axis); });
    block_([&] { cells_.CellData(primitive_, i, j, axis + 4) = shape.normal(axis); });
    for (std::size_t c = 0; c < 4; ++c) {
      block_([&] { cells_.CellCorners(primitive_, i, j, 3 * c + axis) = shape.corners[c](axis); });
    }
  }
  block_([&] { cells_.CellData(primitive_, i, j, 4) = shape.area; });
  block_([&] { cells_.CellData(primitive_, i, j, 8) = shape.distance; });
}

void CellWriter::SetQuantity(int i, int j, int quantity, double value) {
  block_([&] { cells_.CellData(primitive_, i, j, quantity) = value; });
}

}  // namespace orv
