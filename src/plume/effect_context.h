#pragma once

#include <array>
#include <string>
#include <vector>

#include "geometry/cell_data.h"
#include "geometry/geometry.h"
#include "geometry/ray_tracing.h"
#include "model/cell_table.h"
#include "model/database.h"
#include "model/directives.h"
#include "numerics/zero_pages.h"
#include "plume/thruster_data.h"

namespace orv {

// Angles and weights of the automatic rotation.
struct RotationTables {
  // (-1, 1) shift in degrees, (-1, 2) number of rows, (0, 2) sum of the weights, (k, 1) angle and (k, 2) weight of step
  // k.
  Array<double, 2> RotPercentTable{{Bounds{-1, 360}, Bounds{1, 2}}};
  int RotationSteps = 0;
};

// A vector shown on the hottest cell of a primitive: points with a pen flag, 0 to draw and -1 to lift.
using HeatFluxPoint = std::array<float, 4>;
inline constexpr std::size_t kHeatFluxPoints = 12001;

inline constexpr int kHeatFluxMaxPrimitives = 100;
inline constexpr int kStorePrimitives = 40;  // limit of the redeposition stores
inline constexpr int kStoreMaterials = 5;
inline constexpr int kStoreCells = 32;     // of a redeposition target along i and j
inline constexpr int kRotatingCells = 72;  // of the rotating primitive along i and j

// What the effects keep besides the quantities of the cells; sized once a run.
struct EffectStores {
  std::vector<HeatFluxPoint> HeatFluxList;
  Array<double, 1> HeatFluxMaxTable{{Bounds{0, kHeatFluxMaxPrimitives}}};  // quantity 57 by primitive, W/m2
  Array<double, 2> RotationSums;            // (0 .. steps, 0 .. 120); (0, 0) the number of steps
  PagedArray<double, 4> StepCellPositions;  // (step, i, j, axis), metres
  PagedArray<float, 4> RotationCellStore;   // (0 .. S, 0 .. 72, 0 .. 72, 0 .. 120)
  Array<double, 2> SputterRotationList;     // (-1 .. S, 1 .. 2)
  PagedArray<float, 5> RedepositionStore;   // (0 .. S, 0 .. 32, 0 .. 32, 0 .. 15, 0 .. 40)
  Array<float, 4> RedepositionExtrema;      // (-1 .. S, 1 .. 2, 0 .. 15, 0 .. 40)
  PagedArray<float, 5> AutoRotatedStore;    // (0 .. S, 0 .. 72, 0 .. 72, 0 .. 3, 0 .. 20)
  Array<std::string, 2> RedepositedMaterials{{Bounds{0, kStorePrimitives}, Bounds{0, 15}}};  // (p, 0) the count as text
  bool extrapolationTold = false;  // the notice of the energy extrapolation, once a run
};

// What an effect works on: one run, seen from the effects.
struct EffectContext {
  // The model
  const TextTable& ModelCells;
  int NumberOfPrimitives;
  const Directives& directives;
  const PhysicalConstants& constants;
  // The plot
  double IndexPlot;
  double PlotOptionC;
  double MaiOrigine;
  int& RedepositionOn;
  int CleaningOn;
  int AutomaticRotationActive;  // index of the rotating primitive when a heat flux or force plot turns it, else 0
  int SputterRotationActive;    // the same for sputter and redeposition plots
  double HeatFluxScale;         // length of the vectors of HeatFluxList over the model's radius
  // What is computed
  Cells& cells;
  GeometryState& geometry;  // geometry.rotation.RotatingPrimitive: the rotating primitive in force, 0 for none
  std::vector<std::string>& PrimitiveNames;
  const std::vector<std::string>& ResultLabels;
  ThrusterState& thruster;
  Materials& materials;
  RayTracingState& rayTracing;
  RotationTables& rotation;
  EffectStores& stores;
  TableCache& tables;
  CellText& reader;

  ErrorPrompt& prompt() const { return reader.prompt(); }
  UserDialogs& dialogs() const { return reader.prompt().dialogs(); }
};

}  // namespace orv
