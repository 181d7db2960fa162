#include "analysis/result_labels.h"

#include <cstdlib>

#include "numerics/text.h"

namespace orv {

void FillResultLabels(const std::vector<std::string>& LabelMaterials, std::vector<std::string>& ResultLabels,
                      ErrorPrompt& prompt) {
  // The labels hold three rows of materials; a larger design must enlarge them first.
  constexpr int room = MaxLabel32 / 3;
  if (room < MaxRedepMaterial10) {
    prompt.dialogs().Tell("Warning : MaxRedepMaterial10 is too high or MaxLabel32 too low , please see hallam", "",
                          Icon::Warning);
    prompt.AbortQuestion();
  }
  ResultLabels.assign(kQuantities + 1, "");
  for (const QuantityEntry& entry : kQuantityTable) {
    ResultLabels[static_cast<std::size_t>(entry.number)] = std::string(entry.label);
  }
  const auto set = [&](int index, const std::string& label) {
    if (index >= 0 && index <= kQuantities) ResultLabels[static_cast<std::size_t>(index)] = label;
  };
  const int count = LabelMaterials.empty() ? 0 : std::atoi(LabelMaterials[0].c_str());
  for (int k = 1; k <= count && static_cast<std::size_t>(k) < LabelMaterials.size(); ++k) {
    const std::string name = ReplaceAll(LabelMaterials[static_cast<std::size_t>(k)], "Tbl", "");
    set(90 + k - 1, "Redeposition " + name + "(m/s)");
    set(95 + k - 1, "SputtClean. " + name + "(m/s)");
    set(100 + k - 1, "NetRedep. " + name + "(m/s)");
  }
  if (count > 0) return;
  for (int k = 1; k <= MaxRedepMaterial10; ++k) {
    set(90 + k - 1, "Redeposition (m/s)");
    set(95 + k - 1, "SputteringCleaning (m/s)");
    set(100 + k - 1, "NetRedeposition (m/s)");
  }
}

std::string LabelOf(const std::vector<std::string>& ResultLabels, int quantity) {
  if (quantity < 0 || static_cast<std::size_t>(quantity) >= ResultLabels.size()) return {};
  return ResultLabels[static_cast<std::size_t>(quantity)];
}

}  // namespace orv
