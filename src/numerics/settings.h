#pragma once

#include <array>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

// All lasting choices of a user: texts by section and key.
namespace orv {

// One stored text and its place.
struct StoredText {
  std::string section;
  std::string key;
  std::string value;
};

class SettingsStore {
 public:
  virtual ~SettingsStore() = default;
  // The stored text, or the default when there is none.
  virtual std::string Read(const std::string& section, const std::string& key, const std::string& initial) const = 0;
  // Failure 75 when the store cannot be written.
  virtual void Write(const std::string& section, const std::string& key, const std::string& value) = 0;
  // Many texts at once, in their order. A store with a cost for each writing takes it once.
  virtual void WriteAll(const std::vector<StoredText>& texts) {
    for (const StoredText& text : texts) Write(text.section, text.key, text.value);
  }
};

class MemorySettings : public SettingsStore {
 public:
  std::string Read(const std::string& section, const std::string& key, const std::string& initial) const override {
    const auto found = values_.find({section, key});
    return found == values_.end() ? initial : found->second;
  }
  void Write(const std::string& section, const std::string& key, const std::string& value) override {
    values_[{section, key}] = value;
  }

 protected:
  std::map<std::pair<std::string, std::string>, std::string> values_;
};

// One setting, described once for the store, the windows, the command line and the manual.
struct Setting {
  std::string_view section;
  std::string_view key;
  std::string_view initial;
  std::string_view label;
  std::string_view tip;
};

inline constexpr std::string_view kSectionUse = "Use";
inline constexpr std::string_view kSectionUseOrv = "UseOrv";
inline constexpr std::string_view kSectionDirs = "SettingsDirs";

inline constexpr std::array<Setting, 21> kSettings = {{
    {"Use", "SetDirBMP", "", "Image directory", "Folder of saved images and movie frames"},
    {"Use", "Setstr00.00", "earthjpg.jpg", "Earth texture", "Picture wrapped round the Earth"},
    {"Use", "Setstr01.00", "moonjpg.jpg", "Moon texture", "Picture wrapped round the Moon"},
    {"Use", "Setstr02.00", "MAX", "Main keyword", "Function word that marks a range plot"},
    {"Use", "Setstr03.00", "64", "Satellite size", "Size of the schematic satellite"},
    {"Use", "Setstr04.00", "0", "Satellite shown", "1: the schematic satellite is shown"},
    {"Use", "Setstr05.00", "0", "Panels track the Sun", "1: the panels of the schematic satellite follow the Sun"},
    {"Use", "Background15", "10", "Background red", "Red of the background that white replaces"},
    {"Use", "Background16", "20", "Background green", "Green of the background that white replaces"},
    {"Use", "Background17", "70", "Background blue", "Blue of the background that white replaces"},
    {"Use", "RecentWorkbooks", "", "Recent workbooks", "Files opened last, one a line, newest first"},
    {"UseOrv", "PlotsUsedLastSelected", "13", "Last plot selected", "Number of the plot chosen last"},
    {"UseOrv", "PlotsUsedLog10", "0", "Logarithmic scale", "0 linear, 1 with margins for zero, 2 without margins"},
    {"UseOrv", "PlotsUsedDirective", "", "Special directives", "Text of the plot options, such as L 3 or C 15"},
    {"UseOrv", "LastRun", "", "Last run", "Number of the plot of the last full run"},
    {"UseOrv", "PlotOptionC", "0", "Release compatibility", "Number used when the plot options hold no C"},
    {"UseOrv", "HeatFluxScale", "0.1", "Heat flux vectors",
     "Length of the heat flux vectors as a share of the model's radius; not above 0 reads as 0.1"},
    {"UseOrv", "DecimalSeparator", "", "Decimal separator", "Overrides the decimal separator of the locale"},
    {"UseOrv", "ThousandSeparator", "", "Thousands separator",
     "Overrides the locale's; the word none for no separator"},
    {"UseOrv", "OnQuestion", "", "Unattended answers", "ask, ignore or abort: how questions are answered"},
    {"SettingsDirs", "directory", "C:\\", "Data folder", "Folder of the trace file and the plot files"},
}};

// The entry of the table, or nullptr.
const Setting* FindSetting(std::string_view section, std::string_view key);

// A setting with the default of the table. An unknown key is a fault of the program: failure 5.
std::string ReadSetting(const SettingsStore& store, std::string_view section, std::string_view key);

// The record of stored options of the window, as numbers.
struct Options {
  std::array<double, 7> Check1{};  // the boxes 0 to 6
  double ThicknessLinePlot = 1;
  double LengthAxisFactor = 1;
  double ThicknessLineAxis = 1;
  double PositionFactor = 1;
  std::array<double, 3> ColourOfAxisLabels{40, 80, 120};
  std::array<double, 3> ColourOfAxis{128, 128, 128};
  std::array<double, 3> ColourOfPlotNominal{0, 255, 0};
  std::array<double, 3> ColourOfPlotEvents{255, 0, 0};
  std::array<double, 3> ColourOfSphere{50, 100, 150};
  std::array<double, 3> ColourOfBackGround{10, 20, 70};
  double MoonFactor = 10;
  double Interactive = 0;
  double SatelliteSize = 64;
  double SatelliteShown = 0;
  double PanelsTrackSun = 0;

  friend bool operator==(const Options&, const Options&) = default;
};

inline constexpr int kOptionSlots = 101;

// Writes the record as "Set00.00" to "Set100.00" in section "Use".
void SaveOptions(SettingsStore& store, const Options& options);

// Reads all 101 slots. False when their sum is 0, which means that nothing was stored: `options` stays as it is.
// Colours are limited to 0 .. 255.
bool LoadOptions(const SettingsStore& store, Options& options);

inline constexpr int kRememberedSpecifications = 21;

// "SpecsMax00.00" to "SpecsMax20.00", newest first, empty ones left out.
std::vector<std::string> RememberedSpecifications(const SettingsStore& store);

// Puts a specification in front; one that is remembered already moves there, the oldest beyond 21 falls out.
void RememberSpecification(SettingsStore& store, const std::string& specification);

}  // namespace orv
