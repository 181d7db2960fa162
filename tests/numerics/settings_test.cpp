#include "numerics/settings.h"

#include <gtest/gtest.h>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "numerics/failure.h"

namespace orv {
namespace {

// Keeps count of what is asked and written.
class CountingSettings : public MemorySettings {
 public:
  std::string Read(const std::string& section, const std::string& key, const std::string& initial) const override {
    read.insert({section, key});
    defaults.insert(initial);
    return MemorySettings::Read(section, key, initial);
  }
  void Write(const std::string& section, const std::string& key, const std::string& value) override {
    ++writes;
    MemorySettings::Write(section, key, value);
  }
  const auto& values() const { return values_; }

  mutable std::set<std::pair<std::string, std::string>> read;
  mutable std::set<std::string> defaults;
  void WriteAll(const std::vector<StoredText>& texts) override {
    ++batches;
    MemorySettings::WriteAll(texts);
  }
  int writes = 0;
  int batches = 0;
};

std::string Slot(int slot) {
  return slot == 100 ? "Set100.00" : "Set" + std::string(slot < 10 ? "0" : "") + std::to_string(slot) + ".00";
}
std::string Remembered(int place) {
  return "SpecsMax" + std::string(place < 10 ? "0" : "") + std::to_string(place) + ".00";
}

TEST(Settings, HaveTheirDefaults) {
  struct Row {
    const char* section;
    const char* key;
    const char* initial;
  };
  const MemorySettings empty;
  for (const Row& row :
       {Row{"Use", "SetDirBMP", ""}, Row{"Use", "Setstr00.00", "earthjpg.jpg"},
        Row{"Use", "Setstr01.00", "moonjpg.jpg"}, Row{"Use", "Setstr02.00", "MAX"}, Row{"Use", "Setstr03.00", "64"},
        Row{"Use", "Setstr04.00", "0"}, Row{"Use", "Setstr05.00", "0"}, Row{"Use", "Background15", "10"},
        Row{"Use", "Background16", "20"}, Row{"Use", "Background17", "70"},
        Row{"UseOrv", "PlotsUsedLastSelected", "13"}, Row{"UseOrv", "HeatFluxScale", "0.1"},
        Row{"SettingsDirs", "directory", "C:\\"}}) {
    SCOPED_TRACE(std::string(row.section) + "/" + row.key);
    EXPECT_EQ(ReadSetting(empty, row.section, row.key), row.initial);
    ASSERT_NE(FindSetting(row.section, row.key), nullptr);
    EXPECT_EQ(FindSetting(row.section, row.key)->initial, row.initial);
  }
  for (const char* key : {"PlotsUsedLog10", "PlotsUsedDirective", "LastRun"}) {
    EXPECT_NE(FindSetting("UseOrv", key), nullptr) << key;
  }
}

TEST(Settings, ComeFromTheStore) {
  MemorySettings store;
  store.Write("UseOrv", "PlotsUsedLastSelected", "19");
  EXPECT_EQ(ReadSetting(store, "UseOrv", "PlotsUsedLastSelected"), "19");
  store.Write("UseOrv", "PlotsUsedLastSelected", "");
  EXPECT_EQ(ReadSetting(store, "UseOrv", "PlotsUsedLastSelected"), "");
  EXPECT_EQ(FindSetting("Use", "PlotsUsedLastSelected"), nullptr);
  EXPECT_THROW(ReadSetting(store, "Use", "NoSuchKey"), RuntimeFailure);
}

TEST(Settings, AreDescribedOnceEach) {
  std::set<std::pair<std::string_view, std::string_view>> seen;
  for (const Setting& setting : kSettings) {
    SCOPED_TRACE(setting.key);
    EXPECT_TRUE(seen.insert({setting.section, setting.key}).second);
    EXPECT_FALSE(setting.label.empty());
    EXPECT_FALSE(setting.tip.empty());
  }
}

TEST(Options, HaveTheDefaultsOfTheForm) {
  CountingSettings store;
  SaveOptions(store, Options{});
  struct Row {
    int slot;
    double value;
  };
  for (const Row& row :
       {Row{0, 0},    Row{6, 0},    Row{7, 1},    Row{8, 1},    Row{9, 1},    Row{10, 1},   Row{11, 40}, Row{12, 80},
        Row{13, 120}, Row{14, 128}, Row{15, 128}, Row{16, 128}, Row{17, 0},   Row{18, 255}, Row{19, 0},  Row{20, 255},
        Row{21, 0},   Row{22, 0},   Row{23, 50},  Row{24, 100}, Row{25, 150}, Row{26, 10},  Row{27, 20}, Row{28, 70},
        Row{29, 10},  Row{30, 0},   Row{31, 64},  Row{32, 0},   Row{33, 0},   Row{34, 0},   Row{100, 0}}) {
    SCOPED_TRACE(Slot(row.slot));
    EXPECT_EQ(store.Read("Use", Slot(row.slot), "absent"), std::to_string(static_cast<int>(row.value)));
  }
  EXPECT_EQ(store.values().size(), 101U);
}

// Every slot is told apart from its neighbours.
TEST(Options, StandInTheirSlots) {
  MemorySettings store;
  for (int slot = 0; slot <= 33; ++slot) store.Write("Use", Slot(slot), std::to_string(101 + slot));
  Options options;
  ASSERT_TRUE(LoadOptions(store, options));
  for (std::size_t k = 0; k < 7; ++k) EXPECT_EQ(options.Check1[k], 101 + static_cast<double>(k));
  EXPECT_EQ(options.ThicknessLinePlot, 108);
  EXPECT_EQ(options.LengthAxisFactor, 109);
  EXPECT_EQ(options.ThicknessLineAxis, 110);
  EXPECT_EQ(options.PositionFactor, 111);
  EXPECT_EQ(options.ColourOfAxisLabels, (std::array<double, 3>{112, 113, 114}));
  EXPECT_EQ(options.ColourOfAxis, (std::array<double, 3>{115, 116, 117}));
  EXPECT_EQ(options.ColourOfPlotNominal, (std::array<double, 3>{118, 119, 120}));
  EXPECT_EQ(options.ColourOfPlotEvents, (std::array<double, 3>{121, 122, 123}));
  EXPECT_EQ(options.ColourOfSphere, (std::array<double, 3>{124, 125, 126}));
  EXPECT_EQ(options.ColourOfBackGround, (std::array<double, 3>{127, 128, 129}));
  EXPECT_EQ(options.MoonFactor, 130);
  EXPECT_EQ(options.Interactive, 131);
  EXPECT_EQ(options.SatelliteSize, 132);
  EXPECT_EQ(options.SatelliteShown, 133);
  EXPECT_EQ(options.PanelsTrackSun, 134);
}

TEST(Settings, AreWrittenOneByOneUnlessTheStoreKnowsBetter) {
  CountingSettings store;
  store.WriteAll({{"Use", "a", "1"}, {"Use", "b", "2"}, {"Use", "a", "3"}});
  EXPECT_EQ(store.writes, 3);
  EXPECT_EQ(store.Read("Use", "a", ""), "3") << "in their order";
  EXPECT_EQ(store.Read("Use", "b", ""), "2");
}

TEST(Options, AndSpecificationsAreStoredInOneGo) {
  CountingSettings store;
  SaveOptions(store, Options{});
  EXPECT_EQ(store.batches, 1);
  EXPECT_EQ(store.writes, 101);
  RememberSpecification(store, "=MAX(A1:B2)");
  EXPECT_EQ(store.batches, 2);
}

TEST(Options, ComeBackAsTheyWereSaved) {
  Options options;
  options.Check1 = {1, 0, 1, 0, 1, 0, 1};
  options.ThicknessLinePlot = 2.5;
  options.PositionFactor = 0.125;
  options.ColourOfAxis = {1, 2, 3};
  options.MoonFactor = 1;
  options.PanelsTrackSun = 1;
  MemorySettings store;
  SaveOptions(store, options);
  Options loaded;
  EXPECT_TRUE(LoadOptions(store, loaded));
  EXPECT_EQ(loaded, options);
}

TEST(Options, OfANewUserStayAndAreNotStored) {
  CountingSettings store;
  Options options;
  options.ThicknessLinePlot = 9;
  const Options before = options;
  EXPECT_FALSE(LoadOptions(store, options));
  EXPECT_EQ(options, before);
  EXPECT_EQ(store.writes, 0);
  EXPECT_EQ(store.read.size(), 101U);
  EXPECT_TRUE(store.read.contains({"Use", "Set00.00"}));
  EXPECT_TRUE(store.read.contains({"Use", "Set100.00"}));
  EXPECT_EQ(store.defaults, std::set<std::string>{"0"});
}

TEST(Options, OfZerosAloneCountAsNotStored) {
  MemorySettings store;
  for (int slot = 0; slot <= 100; ++slot) store.Write("Use", Slot(slot), "0");
  Options options;
  EXPECT_FALSE(LoadOptions(store, options));
  EXPECT_EQ(options, Options{});
  store.Write("Use", "Set100.00", "1");  // the last of all the slots counts too
  EXPECT_TRUE(LoadOptions(store, options));
  EXPECT_EQ(options.ThicknessLinePlot, 0);
}

TEST(Options, LimitTheirColours) {
  struct Row {
    const char* stored;
    double colour;
  };
  for (const Row& row : {Row{"300", 255}, Row{"255", 255}, Row{"-1", 0}, Row{"12.5", 12.5}, Row{"0", 0}}) {
    for (const int slot : {11, 14, 28}) {
      SCOPED_TRACE(Slot(slot) + " = " + row.stored);
      MemorySettings store;
      store.Write("Use", "Set07.00", "7");
      store.Write("Use", Slot(slot), row.stored);
      Options options;
      ASSERT_TRUE(LoadOptions(store, options));
      const double read = slot == 11   ? options.ColourOfAxisLabels[0]
                          : slot == 14 ? options.ColourOfAxis[0]
                                       : options.ColourOfBackGround[2];
      EXPECT_EQ(read, row.colour);
    }
  }
  MemorySettings store;
  store.Write("Use", "Set10.00", "300");
  store.Write("Use", "Set29.00", "-3");
  Options options;
  ASSERT_TRUE(LoadOptions(store, options));
  EXPECT_EQ(options.PositionFactor, 300);
  EXPECT_EQ(options.MoonFactor, -3);
}

TEST(Options, SurviveADamagedStore) {
  for (const char* text : {"", "abc", "1e999", "-1e999", "nan", "0x10", "\xFF\xFE", "1 2 3"}) {
    SCOPED_TRACE(text);
    MemorySettings store;
    store.Write("Use", "Set07.00", "3");
    store.Write("Use", "Set31.00", text);
    store.Write("Use", "Set20.00", text);
    Options options;
    EXPECT_TRUE(LoadOptions(store, options));
    EXPECT_EQ(options.ThicknessLinePlot, 3);
    EXPECT_TRUE(options.ColourOfPlotEvents[0] >= 0 && options.ColourOfPlotEvents[0] <= 255);
    EXPECT_TRUE(options.SatelliteSize > -1e300 && options.SatelliteSize < 1e300);
  }
}

TEST(RememberedSpecifications, ShiftUpTheNewestFirst) {
  MemorySettings store;
  EXPECT_TRUE(RememberedSpecifications(store).empty());
  RememberSpecification(store, "=MAX(A1:B2)");
  RememberSpecification(store, "=MAX(A1:C3)");
  EXPECT_EQ(RememberedSpecifications(store), (std::vector<std::string>{"=MAX(A1:C3)", "=MAX(A1:B2)"}));
  EXPECT_EQ(store.Read("Use", "SpecsMax00.00", ""), "=MAX(A1:C3)");
  EXPECT_EQ(store.Read("Use", "SpecsMax01.00", ""), "=MAX(A1:B2)");
  EXPECT_EQ(store.Read("Use", "SpecsMax02.00", ""), "");
}

TEST(RememberedSpecifications, MoveToTheFrontWhenRepeated) {
  MemorySettings store;
  for (const char* text : {"c", "b", "a", "c"}) RememberSpecification(store, text);
  EXPECT_EQ(RememberedSpecifications(store), (std::vector<std::string>{"c", "a", "b"}));
  RememberSpecification(store, "c");
  EXPECT_EQ(RememberedSpecifications(store), (std::vector<std::string>{"c", "a", "b"}));
}

TEST(RememberedSpecifications, AreTwentyOne) {
  MemorySettings store;
  for (int k = 1; k <= 30; ++k) RememberSpecification(store, "spec " + std::to_string(k));
  const std::vector<std::string> list = RememberedSpecifications(store);
  ASSERT_EQ(list.size(), 21U);
  EXPECT_EQ(list.front(), "spec 30");
  EXPECT_EQ(list.back(), "spec 10");
  EXPECT_EQ(store.Read("Use", Remembered(20), "absent"), "spec 10");
  EXPECT_EQ(store.Read("Use", Remembered(21), "absent"), "absent");
}

TEST(RememberedSpecifications, LeaveOutAnEmptyText) {
  MemorySettings store;
  RememberSpecification(store, "a");
  RememberSpecification(store, "");
  EXPECT_EQ(RememberedSpecifications(store), std::vector<std::string>{"a"});
}

}  // namespace
}  // namespace orv
