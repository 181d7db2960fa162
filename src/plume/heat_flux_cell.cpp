#include "plume/heat_flux_cell.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "geometry/cell_walk.h"
#include "model/cell_table.h"
#include "numerics/angles.h"
#include "numerics/number_format.h"
#include "plume/surface_cells.h"

namespace orv {
namespace {

constexpr double kRadiansOf = kPi15 / 180;
constexpr double kHidden = 0.25;
constexpr double kColdestWall = 1e-30;  // kelvin; keeps the thermal speed above 0

}  // namespace

// One cell: its place, its normal, and its numbers, which stand a plane apart.
struct HeatFluxPass::CellState {
  CellBlock& data;
  std::size_t planeStride;
  double* base;  // quantity 0 of the cell
  Vector3 centre, normal, fromMomentOrigin;

  CellState(CellBlock& block, int p, int i, int j, const std::array<double, 4>& momentOrigin)
      : data(block),
        planeStride(block.planeSize() * (static_cast<std::size_t>(block.primitives()) + 1)),
        base(block.plane(0, p).data() + static_cast<std::size_t>(i) * block.rowLength() + static_cast<std::size_t>(j)) {
    for (std::size_t axis = 1; axis <= 3; ++axis) {
      centre(axis) = at(static_cast<int>(axis));
      normal(axis) = at(static_cast<int>(axis) + 4);
      fromMomentOrigin(axis) = centre(axis) - momentOrigin[axis];
    }
  }
  double& at(int q) const { return base[static_cast<std::size_t>(q) * planeStride]; }
  Vector3 vectorAt(int q) const { return {at(q), at(q + 1), at(q + 2)}; }
  void add(int q, const Vector3& v) const {
    for (int axis = 0; axis < 3; ++axis) at(q + axis) += v(static_cast<std::size_t>(axis) + 1);
  }
  void set(int q, const Vector3& v) const {
    for (int axis = 0; axis < 3; ++axis) at(q + axis) = v(static_cast<std::size_t>(axis) + 1);
  }
};

HeatFluxPass::HeatFluxPass(EffectContext& context)
    : context_(context),
      data_(context.cells.CellData),
      block_(context.prompt(), {"Error fautea_SpaceApplicationEffectHEATFLUXonePrimitive ",
                                "Error aSpaceApplicationEffectHEATFLUXonePrimitive"}) {
  const ThrusterVector& thruster = context.thruster.ThrusterData;
  const auto column = [&](int c) { return thruster(slot::FirstParameter + c - 3).number(); };
  model_ = column(17);
  limit8_ = column(8);
  limit12_ = model_ >= 100 ? column(8) : column(12);
  species_ = std::min(2, static_cast<int>(thruster(slot::SpeciesCount).number()));
  charge_[0] = thruster(slot::Charge1).number();
  charge_[1] = thruster(slot::Charge2).number();
}

void HeatFluxPass::Begin(int p) {
  block_.setSilenced(false);
  ReadMaterials(p);
  block_([&] {
    mass_ = Divide(context_.thruster.ThrusterData(slot::MolarMass).number() / 1000, context_.constants.AvogadroNumber);
  });
}

// The same for all cells, but where it fails each cell that needs it fails.
void HeatFluxPass::FindThermalSpeed() {
  if (thermalSpeedFound_) return;
  thermalSpeedFound_ = block_([&] {
    const double wall = std::max(kColdestWall, context_.directives.Twall);
    thermalSpeed_ = Power(Divide(2 * context_.constants.BoltzmannConstant * wall, mass_), 0.5);
  });
}

void HeatFluxPass::ReadMaterials(int p) {
  std::string first;
  std::string second;
  // The shells of a volume have no row of their own.
  SplitTwoNames(context_.ModelCells(std::min(p, context_.NumberOfPrimitives), 1), first, second);
  const auto read = [&](const std::string& name, Accommodation& surface) {
    const int material = FindMaterial(context_.materials.MaterialNames, name, context_.prompt());
    block_([&] { surface.sn = context_.materials.MaterialTable(material, 4).number(); });
    block_([&] { surface.st = context_.materials.MaterialTable(material, 5).number(); });
    block_([&] { surface.at = context_.materials.MaterialTable(material, 6).number(); });
  };
  read(first, first_);
  twoMaterials_ = !second.empty();
  if (twoMaterials_) read(second, second_);
}

bool HeatFluxPass::TypeIsKnown(int p) {
  if (HasEffects(data_(p, 0, 0, 10))) return true;
  context_.dialogs().Tell("Type not identified in Heat Flux", " Memo Information");
  context_.prompt()("Type not identified in Heat Flux");
  return false;
}

void HeatFluxPass::AllCells(int p, const std::function<void(double)>& told) {
  const double typeCode = data_(p, 0, 0, 10);
  TypeIsKnown(p);
  const int n = std::min(LastRowOfEffects(typeCode, context_.cells.CountI(p)), data_.cellsI());
  const int NJ = context_.cells.CountJ(p);
  const int m = std::min(NJ, data_.cellsJ());
  for (int i = 1; i <= n; ++i) {
    told(static_cast<double>(i - 1) / n);
    for (int j = 1; j <= m; ++j) OfCell(p, i, j, typeCode, NJ);
  }
}

void HeatFluxPass::SingleCell(int p, int i, int j) {
  OfCell(p, i, j, data_(p, 0, 0, 10), context_.cells.CountJ(p));
}

bool HeatFluxPass::InPlume(double thetaDeg) const {
  return (thetaDeg <= limit8_ && model_ != 1) || (thetaDeg <= limit12_ && model_ > 0);
}

void HeatFluxPass::OfCell(int p, int i, int j, double typeCode, int NJ) {
  CellState cell(data_, p, i, j, context_.directives.MomentOrigin);
  if (cell.at(20) >= kHidden) return;
  const bool secondSide = twoMaterials_ && OnSecondFace(typeCode, j, NJ);
  for (int b = 1; b <= species_; ++b) {
    if (!AddSpecies(cell, b, typeCode, secondSide ? second_ : first_)) return;
  }
  if (species_ == 0) return;
  FinishWorstCases(cell);
  AddExtremeTerms(cell);
}

// False when the cell is left: its side does not count.
bool HeatFluxPass::AddSpecies(CellState& cell, int species, double typeCode, const Accommodation& surface) {
  double speed = cell.at(17);
  if (charge_[species - 1] == 2) speed *= std::pow(2.0, 0.5);
  const double density = cell.at(species == 1 ? 33 : 34);
  if (!InPlume(cell.at(10))) return true;
  const double rho = mass_ * density;

  double incidence = cell.at(60);
  if (Int(typeCode) == 15 && cell.at(9) > 90) return false;
  if (typeCode == 7 && incidence < 90) return false;
  double sign = 1;
  if (incidence > 90) {
    incidence = 180 - incidence;
    sign = -1;
  }

  SurfaceFlow flow;
  flow.incidence = incidence * kRadiansOf;
  flow.dynamicPressure = 0.5 * rho * (speed * speed);
  flow.speed = speed;
  FindThermalSpeed();
  if (!(speed < thermalSpeed_)) {
    block_([&] {
      const double ratio = Divide(speed, thermalSpeed_);
      flow.speedRatio2 = ratio * ratio;
    });
  }

  // The normal along the flow, and the tangent in the plane of flow and normal.
  const Vector3 along(sign * cell.normal(1), sign * cell.normal(2), sign * cell.normal(3));
  vCombine(cell.centre, 1, context_.thruster.frame.ThrusterPosition, -1, incident_);
  Vector3 across;
  vcross(incident_, along, across);
  vcross(along, across, across);
  double length = 0;
  vUnit(across, tangent_, length);

  cell.at(22) += HeatFluxOf(flow, surface.at);
  const double area = cell.at(4);
  const auto forceOf = [&](double sn, double st) {
    const ForceFactors f = ForceFactorsOf(flow, sn, st);
    Vector3 pressure;
    vCombine(along, 2 * flow.dynamicPressure * f.normal, tangent_, 2 * flow.dynamicPressure * f.tangential, pressure);
    return Vector3(area * pressure(1), area * pressure(2), area * pressure(3));
  };
  const Vector3 force = forceOf(surface.sn, surface.st);
  Vector3 moment;
  cell.add(23, force);
  vcross(cell.centre, force, moment);
  cell.add(26, moment);
  vcross(cell.fromMomentOrigin, force, moment);
  cell.add(36, moment);
  cell.add(39, forceOf(1, 0));
  cell.add(48, forceOf(0, 2));
  return true;
}

void HeatFluxPass::FinishWorstCases(CellState& cell) {
  for (const int q : {39, 48}) {
    const Vector3 force = cell.vectorAt(q);
    Vector3 moment;
    vcross(cell.centre, force, moment);
    cell.set(q + 3, moment);
    vcross(cell.fromMomentOrigin, force, moment);
    cell.set(q + 6, moment);
  }
  for (int axis = 0; axis < 3; ++axis) {
    const double force1 = cell.at(39 + axis);
    const double force2 = cell.at(48 + axis);
    cell.at(64 + axis) = std::min(force1, force2);
    cell.at(67 + axis) = std::max(force1, force2);
    const double moment1 = cell.at(45 + axis);
    const double moment2 = cell.at(54 + axis);
    cell.at(70 + axis) = std::min(moment1, moment2);
    cell.at(73 + axis) = std::max(moment1, moment2);
  }
}

// A moment component is a sum of two products; each product may come from either worst case.
void HeatFluxPass::AddExtremeTerms(CellState& cell) {
  const Vector3 force1 = cell.vectorAt(39);
  const Vector3 force2 = cell.vectorAt(48);
  const auto addTerms = [&](void (*half)(const Vector3&, const Vector3&, Vector3&)) {
    Vector3 terms1;
    Vector3 terms2;
    half(cell.fromMomentOrigin, force1, terms1);
    half(cell.fromMomentOrigin, force2, terms2);
    for (std::size_t axis = 1; axis <= 3; ++axis) {
      const double low = std::min(terms1(axis), terms2(axis));
      const double high = std::max(terms1(axis), terms2(axis));
      if (low < 0) cell.at(75 + static_cast<int>(axis)) += low;
      if (high > 0) cell.at(78 + static_cast<int>(axis)) += high;
    }
  };
  addTerms(vCrossPlus);
  addTerms(vCrossMinus);
}

void HeatFluxPass::AddSegment(const Vector3& from, const Vector3& to) {
  auto& list = context_.stores.HeatFluxList;
  if (list.size() + 3 > kHeatFluxPoints) return;
  const auto point = [&](const Vector3& v, float pen) {
    list.push_back({static_cast<float>(v(1)), static_cast<float>(v(2)), static_cast<float>(v(3)), pen});
  };
  point(from, 0);
  point(to, 0);
  list.push_back({0, 0, 0, -1});
}

double HeatFluxPass::VectorLength() {
  if (!modelRadius_) modelRadius_ = CellRadius(context_.cells, Vector3{});
  return context_.HeatFluxScale * *modelRadius_;
}

void HeatFluxPass::ShowFlow(int p, int i, int j) {
  const CellState cell(data_, p, i, j, context_.directives.MomentOrigin);
  Vector3 direction;
  double length = 0;
  vUnit(incident_, direction, length);
  Vector3 end;
  vScaleAdd(direction, -VectorLength(), cell.centre, end);
  AddSegment(end, cell.centre);
  vScaleAdd(tangent_, VectorLength() / 4, cell.centre, end);
  AddSegment(cell.centre, end);
}

}  // namespace orv
