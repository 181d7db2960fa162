#include "plume/sputtering.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "geometry/quantities.h"
#include "plume/redeposition.h"
#include "plume/sputter_turn.h"
#include "plume/surface_cells.h"

namespace orv {
namespace {

constexpr int kSputterPlot = 19;
constexpr int kRedepositionPlots = 90;

// The rotating primitive when this plot takes it through its turn, else 0.
int TurningPrimitive(const EffectContext& context) {
  const bool turns = context.IndexPlot == kSputterPlot || context.IndexPlot >= kRedepositionPlots;
  return turns ? context.geometry.rotation.RotatingPrimitive : 0;
}

// Switches redeposition off for as long as it lives.
class WithoutRedeposition {
 public:
  explicit WithoutRedeposition(int& on) : on_(on), before_(std::exchange(on, 0)) {}
  ~WithoutRedeposition() { on_ = before_; }
  WithoutRedeposition(const WithoutRedeposition&) = delete;
  WithoutRedeposition& operator=(const WithoutRedeposition&) = delete;

 private:
  int& on_;
  int before_;
};

class Sputtering {
 public:
  Sputtering(EffectContext& context, const SputterInput& input, SputterOutput& output)
      : context_(context),
        input_(input),
        block_(context.prompt(),
               {"Error fautea_SpaceApplicationEffectSPUTTERING ", "Error fautea_SpaceApplicationEffectSPUTTERING"}),
        progress_(context.dialogs()),
        turning_(TurningPrimitive(context)),
        redeposition_(context, block_, progress_, turning_),
        turn_(context, block_, progress_, input, output) {}

  void Execute() {
    const bool redepositionOn = context_.RedepositionOn != 0;
    if (input_.SpectrumBand <= 1) BeginRun(redepositionOn);
    SizeSputterStores(context_);
    if (redepositionOn) OpenExtrema(context_.stores);
    for (int p = 1; p <= context_.cells.numberPrimWithVolumic; ++p) {
      for (int q = Number(Quantity::Redeposition); q <= kLastPlot; ++q) ClearQuantity(context_.cells, p, q);
    }
    Sweep(0);
    CloseExtrema(context_.stores, 1, kStoreMaterials);
    if (context_.CleaningOn != 0) Clean();
    CloseExtrema(context_.stores, kStoreMaterials + 1, kStoreSlots);
  }

 private:
  // A spectrum is one run of many bands: what a run is told once comes with its first band.
  void BeginRun(bool redepositionOn) {
    context_.stores.extrapolationTold = false;
    if (redepositionOn) redeposition_.CheckLimits();
  }

  void Clean() {
    const WithoutRedeposition off(context_.RedepositionOn);
    for (int slot = 1; slot <= MaterialSlots(context_); ++slot) {
      cleaned_ = context_.materials.MaterialsUsed[static_cast<std::size_t>(slot)];
      LoadSputterMaterial(context_, cleaned_, block_, materials_.first);
      materials_.secondName.clear();
      Sweep(slot);
    }
    ComputeNetDeposit(context_, block_, turning_);
  }

  // The rotating primitive comes first: the others find its steps in the stores.
  std::vector<int> SweepPrimitive() const {
    std::vector<int> order;
    for (int p = 1; p <= context_.cells.numberPrimWithVolumic; ++p) order.push_back(p);
    const auto turning = std::find(order.begin(), order.end(), turning_);
    if (turning != order.end()) std::iter_swap(turning, order.begin());
    return order;
  }

  // Erosion of all primitives; with a cleaning slot, of what that material left on them.
  void Sweep(int cleaningSlot) {
    const std::vector<int> order = SweepPrimitive();
    for (std::size_t n = 0; n < order.size(); ++n) {
      const int p = order[n];
      if (p == context_.thruster.ThrusterPrimitive) continue;
      progress_(cleaningSlot == 0 ? "sputtering" : "cleaning",
                static_cast<double>(n) / static_cast<double>(order.size()));
      if (cleaningSlot == 0) {
        LoadSurfaceMaterials(context_, p, block_, materials_);
        for (const Quantity q : {Quantity::Sputtering, Quantity::SputterYield, Quantity::BettaEmission}) {
          ClearQuantity(context_.cells, p, Number(q));
        }
      } else {
        ClearQuantity(context_.cells, p, Number(Quantity::SputteringCleaning) + cleaningSlot - 1);
        ClearQuantity(context_.cells, p, Number(Quantity::NetRedeposition) + cleaningSlot - 1);
        if (!HasLanded(context_.stores, p, cleaned_)) continue;
      }
      OnePrimitive(p, cleaningSlot);
    }
  }

  void OnePrimitive(int p, int cleaningSlot) {
    Redeposition* const redeposition = context_.RedepositionOn != 0 ? &redeposition_ : nullptr;
    if (p == turning_) {
      turn_.Run(p, materials_, cleaningSlot, redeposition);
      return;
    }
    aSpaceApplicationEffectSPUTTERINGonePrimitive(context_, p, materials_, cleaningSlot);
    if (redeposition != nullptr) redeposition->FromPrimitive(p, 0, SpeedsOf(p), materials_);
  }

  ErosionSpeeds SpeedsOf(int p) {
    const EffectRange range = RangeOf(context_.cells, p);
    const auto plane = context_.cells.CellData.plane(Number(Quantity::Sputtering), p);
    ErosionSpeeds speeds{range.countI, range.countJ, {}};
    speeds.speed.reserve(static_cast<std::size_t>(range.countI) * static_cast<std::size_t>(range.countJ));
    for (int i = 1; i <= range.countI; ++i) {
      for (int j = 1; j <= range.countJ; ++j) speeds.speed.push_back(plane[range.at(i, j)]);
    }
    return speeds;
  }

  EffectContext& context_;
  const SputterInput& input_;
  FailureBlock block_;
  ProgressPace progress_;
  int turning_;
  Redeposition redeposition_;
  SputterTurn turn_;
  SurfaceMaterials materials_;  // of the primitive before where one is missing
  std::string cleaned_;         // the material of the cleaning pass
};

}  // namespace

void aSpaceApplicationEffectSPUTTERING(EffectContext& context, const SputterInput& input, SputterOutput& output) {
  Sputtering(context, input, output).Execute();
}

}  // namespace orv
