#include "plume/sputter_stores.h"

#include <algorithm>
#include <string>

#include "geometry/quantities.h"
#include "plume/surface_cells.h"

namespace orv {
namespace {

constexpr float kNoMinimum = 1e+31F;
constexpr int kRotatedPrimitives = 20;
constexpr int kMinimum = 1;
constexpr int kMaximum = 2;

int LandedCount(const EffectStores& stores, int primitive) {
  const std::string& count = stores.RedepositedMaterials(primitive, 0);
  return count.empty() ? 0 : std::stoi(count);
}

// The net deposit of one material on one primitive, in its quantities and in the stores.
class NetDeposit {
 public:
  NetDeposit(EffectContext& context, FailureBlock& block, int turning)
      : context_(context), block_(block), turning_(turning) {}

  void Of(int primitive, int slot) {
    OfCells(primitive, slot);
    if (primitive > kStorePrimitives) return;
    if (!HasLanded(context_.stores, primitive, context_.materials.MaterialsUsed[static_cast<std::size_t>(slot)]))
      return;
    block_([&] { OfStep(primitive, slot, 0); });
    if (turning_ == 0) return;
    const int steps = static_cast<int>(ToIndex(context_.stores.RotationCellStore(0, 0, 0, 3)));
    for (int step = 1; step <= steps; ++step) {
      block_([&] { OfStep(primitive, slot, step); });
    }
  }

 private:
  std::span<double> Plane(Quantity first, int slot, int primitive) {
    return context_.cells.CellData.plane(Number(first) + slot - 1, primitive);
  }

  void OfCells(int primitive, int slot) {
    const EffectRange range = RangeOf(context_.cells, primitive);
    const std::span<const double> deposit = Plane(Quantity::Redeposition, slot, primitive);
    const std::span<const double> cleaning = Plane(Quantity::SputteringCleaning, slot, primitive);
    const std::span<double> net = Plane(Quantity::NetRedeposition, slot, primitive);
    for (int i = 1; i <= range.countI; ++i) {
      for (int j = 1; j <= range.countJ; ++j) {
        const std::size_t cell = range.at(i, j);
        const double value = std::max(deposit[cell] - cleaning[cell], 0.0);
        if (net[cell] != value) net[cell] = value;
      }
    }
  }

  void OfStep(int primitive, int slot, int step) {
    auto& store = context_.stores.RedepositionStore;
    const EffectRange range = RangeOf(context_.cells, primitive);
    const std::span<const double> cleaning = Plane(Quantity::SputteringCleaning, slot, primitive);
    const bool ownSteps = primitive == turning_;
    const double weight = step == 0 ? 1 : context_.rotation.RotPercentTable(step, 2);
    std::array<float, 2> least = {kNoMinimum, kNoMinimum};
    std::array<float, 2> most = {0, 0};
    for (int i = 1; i <= std::min(range.countI, kStoreCells); ++i) {
      for (int j = 1; j <= std::min(range.countJ, kStoreCells); ++j) {
        float& cleaned = store(step, i, j, slot + kCleaningSlots, primitive);
        if (!ownSteps) cleaned = static_cast<float>(cleaning[range.at(i, j)] * weight);
        const float net = std::max(store(step, i, j, slot, primitive) - cleaned, 0.0F);
        store(step, i, j, slot + kNetSlots, primitive) = net;
        least = {std::min(least[0], cleaned), std::min(least[1], net)};
        most = {std::max(most[0], cleaned), std::max(most[1], net)};
      }
    }
    auto& extrema = context_.stores.RedepositionExtrema;
    for (const std::size_t kind : {0, 1}) {
      const int at = slot + (kind == 0 ? kCleaningSlots : kNetSlots);
      extrema(step, kMinimum, at, primitive) = least[kind];
      extrema(step, kMaximum, at, primitive) = most[kind];
    }
  }

  EffectContext& context_;
  FailureBlock& block_;
  int turning_;
};

}  // namespace

void SizeSputterStores(EffectContext& context) {
  EffectStores& stores = context.stores;
  const Bounds steps{0, context.rotation.RotationSteps};
  const Bounds stepsAndTotal{-1, context.rotation.RotationSteps};
  const Bounds turned{0, kRotatingCells};
  const Bounds cells{0, kStoreCells};
  const Bounds slots{0, kStoreSlots};
  const Bounds primitives{0, kStorePrimitives};
  stores.RotationCellStore.Size({steps, turned, turned, Bounds{0, kQuantities}});
  stores.SputterRotationList.Size({stepsAndTotal, Bounds{1, 2}});
  stores.RedepositionStore.Size({steps, cells, cells, slots, primitives});
  stores.RedepositionExtrema.Size({stepsAndTotal, Bounds{1, 2}, slots, primitives});
  stores.AutoRotatedStore.Size({steps, turned, turned, Bounds{0, 3}, Bounds{0, kRotatedPrimitives}});
  stores.RedepositedMaterials.Size({primitives, slots});
  for (int p = 0; p <= kStorePrimitives; ++p) stores.RedepositedMaterials(p, 0) = "0";
}

void OpenExtrema(EffectStores& stores) {
  auto& extrema = stores.RedepositionExtrema;
  for (std::ptrdiff_t step = extrema.bounds(0).lower; step <= extrema.bounds(0).upper; ++step) {
    for (int slot = 1; slot <= kStoreSlots; ++slot) {
      for (int p = 0; p <= kStorePrimitives; ++p) extrema(step, kMinimum, slot, p) = kNoMinimum;
    }
  }
}

void CloseExtrema(EffectStores& stores, int first, int last) {
  auto& extrema = stores.RedepositionExtrema;
  for (std::ptrdiff_t step = extrema.bounds(0).lower; step <= extrema.bounds(0).upper; ++step) {
    for (int slot = first; slot <= last; ++slot) {
      for (int p = 0; p <= kStorePrimitives; ++p) {
        float& minimum = extrema(step, kMinimum, slot, p);
        if (minimum >= kNoMinimum) minimum = 0;
      }
    }
  }
}

int MaterialSlots(const EffectContext& context) {
  return std::min(context.materials.NumberOfMaterialsUsed, kStoreMaterials);
}

bool HasLanded(const EffectStores& stores, int primitive, const std::string& material) {
  if (primitive > kStorePrimitives) return false;
  for (int k = 1; k <= LandedCount(stores, primitive); ++k) {
    if (stores.RedepositedMaterials(primitive, k) == material) return true;
  }
  return false;
}

void NoteLanding(EffectStores& stores, int primitive, const std::string& material) {
  if (HasLanded(stores, primitive, material)) return;
  const int count = LandedCount(stores, primitive) + 1;
  stores.RedepositedMaterials(primitive, count) = material;
  stores.RedepositedMaterials(primitive, 0) = std::to_string(count);
}

void ComputeNetDeposit(EffectContext& context, FailureBlock& block, int turning) {
  NetDeposit net(context, block, turning);
  for (int slot = 1; slot <= MaterialSlots(context); ++slot) {
    for (int p = 1; p <= context.cells.numberPrimWithVolumic; ++p) {
      if (p != context.thruster.ThrusterPrimitive) net.Of(p, slot);
    }
  }
}

}  // namespace orv
