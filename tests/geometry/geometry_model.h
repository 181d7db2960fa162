#pragma once

#include <algorithm>
#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

#include "geometry/geometry.h"
#include "geometry/geometry_call.h"
#include "support/scripted_dialogs.h"

namespace orv::testing {

// A model of a few lines with its arrays sized as a run sizes them.
class GeometryModel {
 public:
  explicit GeometryModel(const std::vector<std::string>& lines, double plotOptionC = 0, const Locale& locale = {})
      : prompt(dialogs), reader(prompt, locale), count_(static_cast<int>(lines.size())), plotOptionC_(plotOptionC) {
    table.Size({Bounds{0, count_ + 10}, Bounds{1, 11}});
    for (int row = 1; row <= count_; ++row) table(row, kSpecColumn) = lines[static_cast<std::size_t>(row - 1)];
    names.resize(static_cast<std::size_t>(count_) + 11);
    double countI = 5;
    double countJ = 5;
    ScriptedDialogs quiet;
    ErrorPrompt quietPrompt(quiet);
    CellText quietReader(quietPrompt, Locale{});
    FailureBlock block(quietPrompt, FailureLabels::Of("sizing"));
    for (int row = 1; row <= count_; ++row) {
      PrimitiveSpec spec;
      block([&] { ParsePrimitive(table, row, kSpecColumn, names, quietReader, spec); });
      countI = std::max(countI, spec.Nx);
      countJ = std::max(countJ, spec.Ny);
    }
    Size(static_cast<int>(countI), static_cast<int>(countJ));
  }

  void Size(int cellsI, int cellsJ) {
    cells.MaxCellsI = cellsI;
    cells.MaxCellsJ = cellsJ;
    cells.CellData.Size(count_ + 10, cellsI, cellsJ, 120);
    cells.CellCorners.Size(count_ + 10, cellsI, cellsJ, 120);
    cells.BorderCorners.Size(count_ + 20, cellsI, 120);
  }

  GeometryInput Input() const { return {table, count_, plotOptionC_}; }

  GeometryModel& Build() {
    a_SpaceApplicationGeometry(Input(), names, cells, state, reader);
    return *this;
  }
  GeometryModel& Rebuild(double angle) {
    state.rotation.RotationAngle = angle;
    return Build();
  }

  double Header(int k, int column) const { return cells.CellData(k, 0, 0, column); }
  double Data(int k, int i, int j, int q) const { return cells.CellData(k, i, j, q); }
  double Corner(int k, int i, int j, int corner, int axis) const {
    return cells.CellCorners(k, i, j, 3 * (corner - 1) + axis);
  }
  Vector3 Centre(int k, int i, int j) const { return {Data(k, i, j, 1), Data(k, i, j, 2), Data(k, i, j, 3)}; }
  Vector3 Normal(int k, int i, int j) const { return {Data(k, i, j, 5), Data(k, i, j, 6), Data(k, i, j, 7)}; }
  Vector3 CornerPoint(int k, int i, int j, int corner) const {
    return {Corner(k, i, j, corner, 1), Corner(k, i, j, corner, 2), Corner(k, i, j, corner, 3)};
  }
  Vector3 StripPoint(int k, int s, int corner) const {
    const int first = 3 * (corner - 1);
    return {cells.BorderCorners(k, s, first + 1), cells.BorderCorners(k, s, first + 2),
            cells.BorderCorners(k, s, first + 3)};
  }

  ScriptedDialogs dialogs;
  ErrorPrompt prompt;
  CellText reader;
  TextTable table;
  std::vector<std::string> names;
  Cells cells;
  GeometryState state;

 private:
  int count_;
  double plotOptionC_;
};

}  // namespace orv::testing

namespace orv::testing {

inline void ExpectPoint(const Vector3& point, double x, double y, double z, double tolerance = 1e-12) {
  EXPECT_NEAR(point(1), x, tolerance);
  EXPECT_NEAR(point(2), y, tolerance);
  EXPECT_NEAR(point(3), z, tolerance);
}

inline void ExpectPoint(const Vector3& point, const Vector3& expected, double tolerance = 1e-12) {
  ExpectPoint(point, expected(1), expected(2), expected(3), tolerance);
}

}  // namespace orv::testing
