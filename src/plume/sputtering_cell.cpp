#include "plume/sputtering_cell.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "geometry/quantities.h"
#include "numerics/angles.h"
#include "plume/surface_cells.h"

namespace orv {
namespace {

constexpr double kRadiansOf = kPi15 / 180;
constexpr double kHidden = 0.25;  // shadow flags from here on stop the ions

class ErosionPass {
 public:
  ErosionPass(EffectContext& context, int p, SurfaceMaterials& materials, int cleaningSlot)
      : context_(context),
        p_(p),
        materials_(materials),
        cleaningSlot_(cleaningSlot),
        block_(context.prompt(), {"Error fautea_SpaceApplicationEffectSPUTTERINGonePrimitive ",
                                  "Error fautea_SpaceApplicationEffectSPUTTERINGonePrimitive"}) {
    const ThrusterVector& thruster = context.thruster.ThrusterData;
    const auto column = [&](int c) { return thruster(slot::FirstParameter + c - 3).number(); };
    model_ = column(17);
    limit8_ = column(8);
    limit12_ = model_ == 100 ? limit8_ : column(12);
    species_ = std::min(kGases, Cells::LoopCount(thruster(slot::SpeciesCount).number()));
    charge_ = {0, thruster(slot::Charge1).number(), thruster(slot::Charge2).number()};
    fraction_ = {0, thruster(slot::CurrentFraction1).number(), thruster(slot::CurrentFraction2).number()};
    const double ratioPoints =
        thruster(slot::indexfinThrusterXepDens).number() - thruster(slot::indexfinThrusterEnergy).number();
    hasIonRatio_ = ratioPoints >= 2;
  }

  void Run() {
    const CellBlock& data = context_.cells.CellData;
    const double typeCode = data(p_, 0, 0, 10);
    if (!HasEffects(typeCode)) {
      context_.dialogs().Tell("Type not identified in Sputtering", " Memo Information");
      context_.prompt()("Type not identified in Sputtering");
    }
    const EffectRange range = RangeOf(context_.cells, p_);
    const int countJ = context_.cells.CountJ(p_);
    const int lastRow = std::min(range.countI, LastRowOfEffects(typeCode, context_.cells.CountI(p_)));
    const Planes planes(context_.cells.CellData, p_, cleaningSlot_);
    for (int i = 1; i <= lastRow; ++i) {
      for (int j = 1; j <= range.countJ; ++j) {
        const bool secondFace = cleaningSlot_ == 0 && materials_.two() && OnSecondFace(typeCode, j, countJ);
        OfCell(planes, range.at(i, j), secondFace);
      }
    }
  }

 private:
  // The quantities of the primitive that the pass reads and writes.
  struct Planes {
    Planes(CellBlock& data, int p, int cleaningSlot) {
      const auto plane = [&](int q) { return data.plane(q, p).data(); };
      incidence = plane(Number(Quantity::Incidence));
      indicatrix = plane(Number(Quantity::Indicatrix));
      current = plane(Number(Quantity::CurrentDensity));
      energy = plane(Number(Quantity::Energy));
      hidden = plane(Number(Quantity::Hidden));
      relativeCurrent = plane(Number(Quantity::RelativeCurrent));
      incidenceUsed = plane(Number(Quantity::IncidenceUsed));
      speed = plane(cleaningSlot == 0 ? Number(Quantity::Sputtering)
                                      : Number(Quantity::SputteringCleaning) + cleaningSlot - 1);
      yield = plane(Number(Quantity::SputterYield));
      betta = plane(Number(Quantity::BettaEmission));
    }
    const double *incidence, *indicatrix, *current, *energy, *hidden, *relativeCurrent;
    double *incidenceUsed, *speed, *yield, *betta;
  };

  void OfCell(const Planes& planes, std::size_t cell, bool secondFace) {
    planes.yield[cell] = 0;
    planes.betta[cell] = 0;
    if (planes.hidden[cell] >= kHidden) return;
    const double incidence = IncidenceUsed(planes.incidence[cell], planes.incidenceUsed[cell]);
    if (!InPlume(planes.indicatrix[cell])) return;
    for (int species = 1; species <= species_; ++species) AddSpecies(planes, cell, species, incidence, secondFace);
  }

  // Incidence by the side of the surface that counts.
  double IncidenceUsed(double incidence, double& used) const {
    if (used == 0) used = 1;
    const double recto = context_.directives.RectoOnly;
    const bool otherThanRotating = p_ != context_.geometry.rotation.RotatingPrimitive;
    const bool backFace = recto == 0 && otherThanRotating && incidence > 90;
    if (backFace || recto == 2) incidence = 180 - incidence;
    if (backFace || recto == 1 || recto == 2) used = incidence;
    return incidence;
  }

  bool InPlume(double thetaDeg) const {
    return (thetaDeg <= limit8_ && model_ != 1) || (thetaDeg <= limit12_ && model_ > 0);
  }

  void AddSpecies(const Planes& planes, std::size_t cell, int species, double incidence, bool secondFace) {
    const auto b = static_cast<std::size_t>(species);
    double share = fraction_[b];
    if (share == 0 && !hasIonRatio_) return;
    SputterMaterial& material = materials_.of(secondFace);
    YieldAtEnergy& atEnergy = atEnergy_[secondFace ? 1 : 0];
    const double energyEV = planes.energy[cell] * charge_[b];
    block_([&] { material.yields.AtEnergy(energyEV, atEnergy, context_.stores.extrapolationTold); });
    if (incidence > 90) return;
    block_([&] {
      yield_ = SputtYield_at_ion(incidence, species, atEnergy, material.yields, context_.MaiOrigine, context_.prompt());
    });
    if (hasIonRatio_) share = species == 1 ? planes.relativeCurrent[cell] : 1 - planes.relativeCurrent[cell];
    const double ions = context_.constants.ElementaryCharge * charge_[b];
    block_([&] {
      flux_ = Finite(Divide(planes.current[cell], ions) * yield_ * share * std::cos(incidence * kRadiansOf));
    });
    block_([&] {
      speed_ = Divide(Divide(flux_ * (material.molarMass / 1000), context_.constants.AvogadroNumber), material.density);
    });
    planes.speed[cell] += speed_;
    planes.yield[cell] += yield_;
    planes.betta[cell] += atEnergy.gas[b].bettaEmission * share;
  }

  EffectContext& context_;
  int p_;
  SurfaceMaterials& materials_;
  int cleaningSlot_;
  FailureBlock block_;
  double model_ = 0, limit8_ = 0, limit12_ = 0;
  int species_ = 0;
  bool hasIonRatio_ = false;
  std::array<double, kGases + 1> charge_{}, fraction_{};
  std::array<YieldAtEnergy, 2> atEnergy_;  // by face
  // Kept from cell to cell where a statement fails.
  double yield_ = 0;  // atoms per ion
  double flux_ = 0;   // ejected atoms per m2 and second
  double speed_ = 0;  // of the surface, m/s
};

}  // namespace

void aSpaceApplicationEffectSPUTTERINGonePrimitive(EffectContext& context, int p, SurfaceMaterials& materials,
                                                   int cleaningSlot) {
  ErosionPass(context, p, materials, cleaningSlot).Run();
}

}  // namespace orv
