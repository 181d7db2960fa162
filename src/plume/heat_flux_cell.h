#pragma once

#include <functional>
#include <optional>

#include "numerics/vectors.h"
#include "plume/effect_context.h"
#include "plume/heat_flux.h"

namespace orv {

// Accommodation of a surface material: normal and tangential momentum, thermal.
struct Accommodation {
  double sn = 0;
  double st = 0;
  double at = 0;
};

// The pass over the cells of a primitive that turns the plume's flow into heat, force and moments.
class HeatFluxPass {
 public:
  explicit HeatFluxPass(EffectContext& context);

  // Begins the work on a primitive: failures that were ignored for the one before are told again. Reads the
  // accommodation of its one or two materials; a missing material leaves the values of the primitive before.
  void Begin(int p);
  // For the other statements of that work.
  FailureBlock& block() { return block_; }

  // Adds up quantities 22 to 81 of all cells of a primitive that the plume reaches. Calls told(share) before each row.
  void AllCells(int p, const std::function<void(double)>& told);
  // The same for one cell.
  void SingleCell(int p, int i, int j);

  // Puts the incident direction and the tangent at a cell into HeatFluxList. HeatFluxScale times the radius of the
  // model is the length of the first, a quarter of it that of the second.
  void ShowFlow(int p, int i, int j);

 private:
  struct CellState;
  void ReadMaterials(int p);
  void FindThermalSpeed();
  bool TypeIsKnown(int p);
  void OfCell(int p, int i, int j, double typeCode, int sideLimit);
  bool AddSpecies(CellState& cell, int species, double typeCode, const Accommodation& surface);
  void FinishWorstCases(CellState& cell);
  void AddExtremeTerms(CellState& cell);
  bool InPlume(double thetaDeg) const;
  void AddSegment(const Vector3& from, const Vector3& to);
  double VectorLength();

  EffectContext& context_;
  CellBlock& data_;
  FailureBlock block_;
  Accommodation first_, second_;
  bool twoMaterials_ = false;
  double model_ = 0, limit8_ = 0, limit12_ = 0;
  double mass_ = 0, thermalSpeed_ = 0;
  bool thermalSpeedFound_ = false;
  int species_ = 0;
  double charge_[2] = {};
  Vector3 tangent_;  // of the cell before where a cell has none
  Vector3 incident_;
  std::optional<double> modelRadius_;  // found when a vector is shown for the first time
};

}  // namespace orv
