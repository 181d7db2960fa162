#include "numerics/settings.h"

#include <algorithm>
#include <charconv>

#include "numerics/failure.h"
#include "numerics/number_format.h"
#include "numerics/text.h"

namespace orv {
namespace {

std::string SlotKey(int slot) {
  return "Set" + FormatNumber(slot, "00.00");
}
std::string SpecificationKey(int place) {
  return "SpecsMax" + FormatNumber(place, "00.00");
}

// Every number of the record in slot order. The one list serves packing and unpacking.
std::vector<double*> Fields(Options& o) {
  std::vector<double*> fields;
  for (double& box : o.Check1) fields.push_back(&box);
  for (double* number : {&o.ThicknessLinePlot, &o.LengthAxisFactor, &o.ThicknessLineAxis, &o.PositionFactor}) {
    fields.push_back(number);
  }
  for (auto* colour : {&o.ColourOfAxisLabels, &o.ColourOfAxis, &o.ColourOfPlotNominal, &o.ColourOfPlotEvents,
                       &o.ColourOfSphere, &o.ColourOfBackGround}) {
    for (double& part : *colour) fields.push_back(&part);
  }
  for (double* number : {&o.MoonFactor, &o.Interactive, &o.SatelliteSize, &o.SatelliteShown, &o.PanelsTrackSun}) {
    fields.push_back(number);
  }
  return fields;
}

constexpr int kFirstColourSlot = 11;
constexpr int kLastColourSlot = 28;

}  // namespace

const Setting* FindSetting(std::string_view section, std::string_view key) {
  const auto found = std::find_if(kSettings.begin(), kSettings.end(),
                                  [&](const Setting& s) { return s.section == section && s.key == key; });
  return found == kSettings.end() ? nullptr : &*found;
}

std::string ReadSetting(const SettingsStore& store, std::string_view section, std::string_view key) {
  const Setting* setting = FindSetting(section, key);
  if (setting == nullptr) Raise(FailureNumber::InvalidProcedureCall);
  return store.Read(std::string(section), std::string(key), std::string(setting->initial));
}

void SaveOptions(SettingsStore& store, const Options& options) {
  Options copy = options;
  std::vector<double> slots(kOptionSlots, 0.0);
  const std::vector<double*> fields = Fields(copy);
  for (std::size_t k = 0; k < fields.size(); ++k) slots[k] = *fields[k];
  std::vector<StoredText> texts;
  texts.reserve(slots.size());
  for (int slot = 0; slot < kOptionSlots; ++slot) {
    texts.push_back({std::string(kSectionUse), SlotKey(slot), NumberText(slots[static_cast<std::size_t>(slot)])});
  }
  store.WriteAll(texts);
}

bool LoadOptions(const SettingsStore& store, Options& options) {
  std::vector<double> slots(kOptionSlots, 0.0);
  double sum = 0;
  for (int slot = 0; slot < kOptionSlots; ++slot) {
    const std::string text = store.Read(std::string(kSectionUse), SlotKey(slot), "0");
    double value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    if (!(value >= -1e9 && value <= 1e9)) value = 0;  // a damaged store must not lead anywhere
    slots[static_cast<std::size_t>(slot)] = value;
    sum += value;
  }
  if (sum == 0) return false;
  const std::vector<double*> fields = Fields(options);
  for (std::size_t k = 0; k < fields.size(); ++k) {
    const bool colour = k >= kFirstColourSlot && k <= kLastColourSlot;
    *fields[k] = colour ? std::clamp(slots[k], 0.0, 255.0) : slots[k];
  }
  return true;
}

std::vector<std::string> RememberedSpecifications(const SettingsStore& store) {
  std::vector<std::string> list;
  for (int place = 0; place < kRememberedSpecifications; ++place) {
    std::string text = store.Read(std::string(kSectionUse), SpecificationKey(place), "");
    if (!text.empty()) list.push_back(std::move(text));
  }
  return list;
}

void RememberSpecification(SettingsStore& store, const std::string& specification) {
  if (Trim(specification).empty()) return;
  std::vector<std::string> list = RememberedSpecifications(store);
  list.erase(std::remove(list.begin(), list.end(), specification), list.end());
  list.insert(list.begin(), specification);
  list.resize(kRememberedSpecifications);
  std::vector<StoredText> texts;
  texts.reserve(kRememberedSpecifications);
  for (int place = 0; place < kRememberedSpecifications; ++place) {
    texts.push_back({std::string(kSectionUse), SpecificationKey(place), list[static_cast<std::size_t>(place)]});
  }
  store.WriteAll(texts);
}

}  // namespace orv
