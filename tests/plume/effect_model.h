#pragma once

#include <array>
#include <string>
#include <vector>

#include "geometry/geometry.h"
#include "numerics/angles.h"
#include "plume/effect_context.h"
#include "plume/plume_models.h"
#include "plume/thruster_angles.h"
#include "support/scripted_dialogs.h"

namespace orv::testing {

// A few primitives with a thruster of model 0 at row 1, taken through geometry, angles, plume and rays as a run does,
// so that an effect can be tried on them. Rows: {material, specification}.
class EffectModel {
 public:
  explicit EffectModel(const std::vector<std::array<std::string, 2>>& rows)
      : prompt(dialogs), reader(prompt, Locale{}), count(static_cast<int>(rows.size())) {
    table.Size({Bounds{0, count + 10}, Bounds{1, 11}});
    for (int row = 1; row <= count; ++row) {
      table(row, 1) = rows[static_cast<std::size_t>(row - 1)][0];
      table(row, 2) = rows[static_cast<std::size_t>(row - 1)][1];
    }
    names.resize(static_cast<std::size_t>(count) + 11);
    labels.resize(121);
    SetThruster({1, 2}, {1, 0});
    AddMaterial("silver", 0.85, 0.9, 0.95);
  }

  // Model 0: a cosine law of amplitude C5 = 1 to a power of 1 within 90 degrees, 2 A beam, 300 eV.
  void SetThruster(std::array<double, 2> charges, std::array<double, 2> shares) {
    auto& data = thruster.ThrusterData;
    data = EmptyThrusterData();
    const bool two = shares[1] != 0;
    data(slot::SpeciesCount) = two ? 2.0 : 1.0;
    data(slot::Charge1) = charges[0];
    data(slot::Charge2) = charges[1];
    data(slot::MolarMass) = 131.29;
    data(slot::CurrentFraction1) = shares[0];
    data(slot::CurrentFraction2) = shares[1];
    data(slot::FirstGas) = std::string("Xe+");
    const double columns[15] = {2, 300, 1, 1, 0, 90, 0, 0, 0, 90, 0, 0, 0, 90, 0};
    for (int k = 0; k < 15; ++k) data(slot::FirstParameter + k) = columns[k];
    for (int s = -6; s <= -4; ++s) data(s) = 0.0;
    data(slot::indexfinThruster) = 24.0;
  }

  void AddMaterial(const std::string& name, double sn, double st, double at) {
    materialRows.push_back({name, sn, st, at});
    materials.NumberOfMaterials = static_cast<int>(materialRows.size());
    materials.MaterialNames = {""};
    materials.MaterialTable.Size({Bounds{1, materials.NumberOfMaterials}, Bounds{1, kMaterialSlots}});
    for (int m = 1; m <= materials.NumberOfMaterials; ++m) {
      const MaterialRow& row = materialRows[static_cast<std::size_t>(m - 1)];
      materials.MaterialNames.push_back(row.name);
      materials.MaterialTable(m, 4) = row.sn;
      materials.MaterialTable(m, 5) = row.st;
      materials.MaterialTable(m, 6) = row.at;
    }
  }

  // Geometry, frame, angles, plume and rays.
  EffectModel& Build(double plotOptionC = 0) {
    PlotOptionC = plotOptionC;
    double countI = 5;
    double countJ = 5;
    for (int row = 1; row <= count; ++row) {
      PrimitiveSpec spec;
      ParsePrimitive(table, row, kSpecColumn, names, reader, spec);
      countI = std::max(countI, spec.Nx);
      countJ = std::max(countJ, spec.Ny);
    }
    cells.MaxCellsI = static_cast<int>(countI);
    cells.MaxCellsJ = static_cast<int>(countJ);
    cells.CellData.Size(count + 10, cells.MaxCellsI, cells.MaxCellsJ, 120);
    cells.CellCorners.Size(count + 10, cells.MaxCellsI, cells.MaxCellsJ, 120);
    cells.BorderCorners.Size(count + 20, cells.MaxCellsI, 120);
    const GeometryInput input{table, count, PlotOptionC};
    a_SpaceApplicationGeometry(input, names, cells, geometry, reader);
    BuildFrame();
    AnglesInput angles;
    angles.NumberOfPrimitives = count;
    angles.numberPrimWithVolumic = cells.numberPrimWithVolumic;
    angles.ThrusterPrimitive = 1;
    angles.PlotOptionC = PlotOptionC;
    aSpaceApplicationAnglesThrusters(cells, thruster.frame, angles, prompt);
    PlumeInput plume;
    plume.numberPrimWithVolumic = cells.numberPrimWithVolumic;
    plume.ThrusterPrimitive = 1;
    PlumeResult result;
    aSpaceApplicationThrusterPLUME(cells, thruster.ThrusterData, constants, plume, result, prompt);
    thruster.PlumeLimitAngle = result.PlumeLimitAngle;
    RayTracingInput rays;
    rays.NumberOfPrimitives = count;
    rays.numberPrimWithVolumic = cells.numberPrimWithVolumic;
    rays.ThrusterPrimitive = 1;
    rays.PlumeLimitAngle = thruster.PlumeLimitAngle;
    RayTracingReport report;
    a_SpaceApplicationRayTrac(cells, rays, rayTracing, report, prompt);
    return *this;
  }

  EffectContext Context() {
    return {table,       count,    directives,     constants,  IndexPlot,
            PlotOptionC, 0,        RedepositionOn, 0,          AutomaticRotationActive,
            0,           0.1,      cells,          geometry,   names,
            labels,      thruster, materials,      rayTracing, rotation,
            stores,      tables,   reader};
  }

  double Q(int p, int i, int j, int q) const { return cells.CellData(p, i, j, q); }
  double Sum(int p, int q) const {
    double sum = 0;
    for (int i = 1; i <= cells.CountI(p); ++i) {
      for (int j = 1; j <= cells.CountJ(p); ++j) sum += Q(p, i, j, q);
    }
    return sum;
  }

  ScriptedDialogs dialogs;
  ErrorPrompt prompt;
  CellText reader;
  int count;
  TextTable table;
  std::vector<std::string> names, labels;
  Directives directives;
  PhysicalConstants constants;
  double IndexPlot = 22;
  double PlotOptionC = 0;
  int RedepositionOn = 0;
  int AutomaticRotationActive = 0;
  Cells cells;
  GeometryState geometry;
  ThrusterState thruster;
  Materials materials;
  RayTracingState rayTracing;
  RotationTables rotation;
  EffectStores stores;
  TableCache tables;

 private:
  struct MaterialRow {
    std::string name;
    double sn, st, at;
  };

  void BuildFrame() {
    thruster.ThrusterPrimitive = 1;
    ThrusterFrame& frame = thruster.frame;
    for (std::size_t axis = 1; axis <= 3; ++axis) {
      frame.ThrusterPosition(axis) = Q(1, 1, 1, static_cast<int>(axis));
      frame.axiT(axis) = Q(1, 1, 1, static_cast<int>(axis) + 4);
    }
    Vector3 reference(1, 0, 0);
    if (std::abs(vDot(reference, frame.axiT)) > 0.9) reference = Vector3(0, 1, 0);
    Vector3 cross;
    double length = 0;
    vcross(frame.axiT, reference, cross);
    vUnit(cross, frame.axDeclin, length);
    vcross(frame.axDeclin, frame.axiT, cross);
    vUnit(cross, frame.AxAzimuth, length);
  }

  std::vector<MaterialRow> materialRows;
};

}  // namespace orv::testing
