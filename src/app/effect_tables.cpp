#include "app/effect_tables.h"

#include <algorithm>
#include <array>
#include <ostream>
#include <string>
#include <vector>

#include "analysis/result_labels.h"
#include "analysis/summary.h"
#include "app/terminal_table.h"
#include "numerics/number_format.h"
#include "numerics/text.h"

namespace orv {
namespace {

constexpr int kDigits = 4;
constexpr double kMicrometresPerKilohour = 1e6 * 3600 * 1000;

std::string Text(double value) {
  return Trim(SignificantText(value, kDigits));
}

// One table over the primitives, and a last row of totals where they mean something.
class EffectTables {
 public:
  EffectTables(RunContext& run, std::ostream& out) : run_(run), out_(out) {}

  void PlumeAndHeat() {
    TerminalTable table({"n", "name", "material", "max density 1/m3", "max heat W/m2", "hottest corner", "heat W"}, 3);
    double total = 0;
    for (int p : Primitives()) {
      const QuantitySummary density = SummariseQuantity(run_, p, 13);
      const QuantitySummary heat = SummariseQuantity(run_, p, 22);
      if (density.AllZero() && heat.AllZero()) continue;
      total += heat.Integral;
      const auto& corners = run_.stores.HeatFluxMaxTable;
      const double corner = p <= corners.bounds(0).upper ? corners(p) : 0;
      table.Add(Row(p, {Text(density.Max), Text(heat.Max), Text(corner), Text(heat.Integral)}));
    }
    if (!table.empty()) table.Add({"", "all", "", "", "", "", Text(total)});
    Print("Plume and heat", table);
  }

  // Sums over the cells of three components; the last row adds up the primitives.
  void Forces(const std::string& title, int nominal, int worst1, int worst2) {
    TerminalTable table({"n", "name", "material", "x", "y", "z", "WC1 x", "WC1 y", "WC1 z", "WC2 x", "WC2 y", "WC2 z"},
                        3);
    std::array<double, 9> totals{};
    for (int p : Primitives()) {
      // Quantities 24 and 25 of the inner shells of a volume are integrals along the radio path.
      if (p > run_.model.NumberOfPrimitives) continue;
      std::array<double, 9> sums{};
      bool any = false;
      for (std::size_t axis = 0; axis < 3; ++axis) {
        const int a = static_cast<int>(axis);
        sums[axis] = SummariseQuantity(run_, p, nominal + a).Sum;
        sums[axis + 3] = SummariseQuantity(run_, p, worst1 + a).Sum;
        sums[axis + 6] = SummariseQuantity(run_, p, worst2 + a).Sum;
      }
      std::vector<std::string> cells;
      for (std::size_t k = 0; k < sums.size(); ++k) {
        any = any || sums[k] != 0;
        totals[k] += sums[k];
        cells.push_back(Text(sums[k]));
      }
      if (any) table.Add(Row(p, cells));
    }
    if (!table.empty()) {
      std::vector<std::string> last = {"", "all", ""};
      for (const double total : totals) last.push_back(Text(total));
      table.Add(last);
    }
    Print(title, table);
  }

  void Erosion() {
    TerminalTable table({"n", "name", "material", "max m/s", "max um/kh", "mean um/kh"}, 3);
    for (int p : Primitives()) {
      const QuantitySummary erosion = SummariseQuantity(run_, p, 19);
      if (erosion.AllZero()) continue;
      const double area = PrimitiveArea(run_, p);
      const double mean = area > 0 ? erosion.Integral / area : 0;
      table.Add(Row(
          p, {Text(erosion.Max), Text(erosion.Max * kMicrometresPerKilohour), Text(mean * kMicrometresPerKilohour)}));
    }
    Print("Erosion (um/kh: micrometres in 1000 hours of firing)", table);
  }

  void Redeposition(const std::string& title, int first) {
    TerminalTable table({"n", "name", "deposit", "max m/s", "max um/kh"}, 3);
    for (int p : Primitives()) {
      for (int k = 0; k < MaxRedepMaterial10; ++k) {
        const QuantitySummary rate = SummariseQuantity(run_, p, first + k);
        if (rate.AllZero()) continue;
        std::vector<std::string> row = Row(p, {Text(rate.Max), Text(rate.Max * kMicrometresPerKilohour)});
        const auto& used = run_.materials.MaterialsUsed;
        const std::size_t material = static_cast<std::size_t>(k) + 1;
        row[2] = material < used.size() ? used[material] : "";
        table.Add(row);
      }
    }
    Print(title, table);
  }

  void Turn() {
    const auto& sums = run_.stores.RotationSums;
    if (run_.plot.AutomaticRotationActive == 0 || sums.values().empty() || sums(0, 0) == 0) return;
    TerminalTable table({"angle deg", "max heat W/m2", "Fx N", "Fy N", "Fz N", "MxT N.m", "MyT N.m", "MzT N.m"}, 0);
    for (int s = 1; s <= static_cast<int>(sums(0, 0)); ++s) {
      std::vector<std::string> row = {Text(sums(s, 0))};
      for (const int q : {22, 23, 24, 25, 36, 37, 38}) row.push_back(Text(sums(s, q)));
      table.Add(row);
    }
    Print("Turn of primitive " + std::to_string(run_.rotation.RotatingPrimitive) + " " + run_.rotation.RotatingName,
          table);
  }

  void Texts() {
    if (!Trim(run_.record.SputterText).empty()) out_ << '\n' << Trim(run_.record.SputterText) << '\n';
    if (!run_.record.PlasmaText.empty()) out_ << '\n' << Trim(SoftBlanks(run_.record.PlasmaText)) << '\n';
  }

 private:
  std::vector<int> Primitives() const {
    std::vector<int> list;
    for (int p = 1; p <= run_.cells.numberPrimWithVolumic; ++p) {
      if (p != run_.thruster.ThrusterPrimitive) list.push_back(p);
    }
    return list;
  }

  std::vector<std::string> Row(int p, const std::vector<std::string>& numbers) const {
    const int modelRow = std::min(p, run_.model.NumberOfPrimitives);
    std::vector<std::string> row = {std::to_string(p), run_.PrimitiveNames[static_cast<std::size_t>(p)],
                                    Trim(run_.model.ModelCells(modelRow, 1))};
    row.insert(row.end(), numbers.begin(), numbers.end());
    return row;
  }

  void Print(const std::string& title, const TerminalTable& table) const {
    if (table.empty()) return;
    out_ << '\n' << title << '\n';
    table.Print(out_);
  }

  RunContext& run_;
  std::ostream& out_;
};

}  // namespace

void PrintEffectTables(RunContext& run, std::ostream& out) {
  EffectTables tables(run, out);
  tables.PlumeAndHeat();
  tables.Forces("Forces (N)", 23, 39, 48);
  tables.Forces("Moments about the point of the directive T (N.m)", 36, 45, 54);
  tables.Erosion();
  tables.Redeposition("Redeposition of eroded atoms", 90);
  tables.Redeposition("Cleaning of the deposit by the plume", 95);
  tables.Redeposition("Net redeposition", 100);
  tables.Turn();
  tables.Texts();
}

}  // namespace orv
