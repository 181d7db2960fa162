#include "plume/sputter_material.h"

#include <algorithm>

#include "model/cell_table.h"

namespace orv {
namespace {

constexpr int kNameColumn = 1;
constexpr int kDensitySlot = 2;
constexpr int kMolarMassSlot = 3;
constexpr int kCountSlot = 8;
constexpr int kFirstRecordSlot = 9;

// The records of one gas behind each other; curves stand in the place of the first one.
void CopyRecords(const Array<GeneralValue, 2>& table, int index, int gas, int rows, Array<GeneralValue, 3>& to) {
  const int first = kFirstRecordSlot + (gas - 1) * kSecondGasOffset;
  for (int k = 1; k <= rows; ++k) {
    for (int field = 1; field <= kYieldFields; ++field) {
      to(gas, k, field) = table(index, first + kYieldFields * (k - 1) + field - 1);
    }
  }
}

}  // namespace

void LoadSputterMaterial(EffectContext& context, const std::string& name, FailureBlock& block,
                         SputterMaterial& material) {
  const Array<GeneralValue, 2>& table = context.materials.MaterialTable;
  const int index = FindMaterial(context.materials.MaterialNames, name, context.prompt());
  block([&] { material.density = table(index, kDensitySlot).number(); });
  block([&] { material.molarMass = table(index, kMolarMassSlot).number(); });
  YieldRecords& records = material.records;
  block([&] {
    YieldRecords found;
    std::array<int, kGases + 1> rows{};
    for (int gas = 1; gas <= kGases; ++gas) {
      const double count = table(index, kCountSlot + (gas - 1) * kSecondGasOffset).number();
      const auto g = static_cast<std::size_t>(gas);
      found.YieldRowCount[g] = count == -1 ? -1 : Cells::LoopCount(count);
      rows[g] = count == -1 ? 1 : found.YieldRowCount[g];
    }
    found.YieldRows.Size({Bounds{1, kGases}, Bounds{0, std::max({rows[1], rows[2], 1})}, Bounds{1, kYieldFields}});
    for (int gas = 1; gas <= kGases; ++gas) {
      block([&] { CopyRecords(table, index, gas, rows[static_cast<std::size_t>(gas)], found.YieldRows); });
    }
    records = std::move(found);
  });
  material.yields = YieldTable(records, context.tables, context.reader);
}

void LoadSurfaceMaterials(EffectContext& context, int primitive, FailureBlock& block, SurfaceMaterials& materials) {
  const int row = std::min(primitive, context.NumberOfPrimitives);
  block([&] { SplitTwoNames(context.ModelCells(row, kNameColumn), materials.firstName, materials.secondName); });
  LoadSputterMaterial(context, materials.firstName, block, materials.first);
  if (materials.two()) LoadSputterMaterial(context, materials.secondName, block, materials.second);
}

}  // namespace orv
