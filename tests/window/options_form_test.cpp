#include "window/options_form.h"

#include <gmock/gmock.h>
#include <set>

#include "window/window_fixture.h"

namespace orv::testing {
namespace {

class OptionsFrame : public WindowFixture {
 protected:
  std::string Stored(const std::string& key) const { return settings.Of("Use", key); }
  OptionsForm Fresh() { return OptionsForm(settings, view, prompt); }
  OptionsForm options{settings, view, prompt};
};

TEST_F(OptionsFrame, StartsWithTheDefaultsOfTheForm) {
  view.options.PositionFactor = 7;
  options.Load();
  EXPECT_EQ(view.options, Options{});
  EXPECT_EQ(settings.writes, 0);
  EXPECT_TRUE(options.Ticked("Check1", 8)) << "Moon x10";
  EXPECT_FALSE(options.Ticked("Check1", 7));
  EXPECT_EQ(options.Value("Text4", 0), "1");
  EXPECT_EQ(options.Value("Text5", 17), "70");
  EXPECT_EQ(options.Value("Text7"), "earthjpg.jpg");
  EXPECT_EQ(options.Value("Text8"), "moonjpg.jpg");
  EXPECT_EQ(options.MainKeyword(), "MAX");
  EXPECT_EQ(options.ImageDirectory(), "");
  EXPECT_EQ(options.SatelliteLabel(), "Satellite size  65");
  EXPECT_EQ(options.Check3Caption(), "Satellite");
  EXPECT_FALSE(options.Pending());
  EXPECT_FALSE(options.Visible());
}

TEST_F(OptionsFrame, ShowsWhatIsStored) {
  Options stored;
  stored.Check1 = {1, 0, 1, 0, 0, 0, 1};
  stored.ThicknessLinePlot = 2.5;
  stored.ColourOfBackGround = {255, 255, 255};
  stored.MoonFactor = 1;
  stored.Interactive = 1;
  SaveOptions(settings, stored);
  settings.Write("Use", "SetDirBMP", "/pictures");
  settings.Write("Use", "Setstr00.00", "earth.png");
  settings.Write("Use", "Setstr02.00", "sum");
  options.Load();
  EXPECT_TRUE(options.Ticked("Check1", 0));
  EXPECT_FALSE(options.Ticked("Check1", 1));
  EXPECT_TRUE(options.Ticked("Check1", 6));
  EXPECT_TRUE(options.InteractiveMark());
  EXPECT_FALSE(options.Ticked("Check1", 8));
  EXPECT_EQ(options.Value("Text4", 0), "2.5");
  EXPECT_TRUE(options.Ticked("Check7")) << "the background is white";
  EXPECT_EQ(options.ImageDirectory(), "/pictures");
  EXPECT_EQ(options.Value("Text7"), "earth.png");
  EXPECT_EQ(options.MainKeyword(), "SUM");
  EXPECT_EQ(view.options, stored);
  EXPECT_FALSE(options.Pending());
}

TEST_F(OptionsFrame, TheKeysOfTheSatelliteWinOverTheirSlots) {
  Options stored;
  stored.SatelliteSize = 100;
  stored.SatelliteShown = 1;
  stored.PanelsTrackSun = 1;
  SaveOptions(settings, stored);
  settings.Write("Use", "Setstr03.00", "200");
  settings.Write("Use", "Setstr04.00", "0");
  options.Load();
  EXPECT_EQ(view.options.SatelliteSize, 200);
  EXPECT_EQ(view.options.SatelliteShown, 0);
  EXPECT_EQ(view.options.PanelsTrackSun, 1) << "no key of its own is stored";
  EXPECT_EQ(options.Value("HScroll3"), "200");
  options.Command1();
  EXPECT_EQ(Stored("Set31.00"), "200") << "the slots follow";
  EXPECT_EQ(Stored("Set32.00"), "0");
}

TEST_F(OptionsFrame, SurvivesADamagedStore) {
  for (const char* text : {"", "abc", "1e999", "-7", "99999999", "nan"}) {
    SCOPED_TRACE(text);
    settings.Write("Use", "Setstr03.00", text);
    settings.Write("Use", "Setstr04.00", text);
    OptionsForm form2 = Fresh();
    form2.Load();
    EXPECT_GE(view.options.SatelliteSize, 0);
    EXPECT_LE(view.options.SatelliteSize, 32000);
    EXPECT_TRUE(form2.Value("Check3") == "0" || form2.Value("Check3") == "1");
  }
}

TEST_F(OptionsFrame, AColourOf300InTheStoreReadsAs255) {
  settings.Write("Use", "Set07.00", "1");
  settings.Write("Use", "Set11.00", "300");
  options.Load();
  EXPECT_EQ(options.Value("Text5", 0), "255");
}

// --- changes that count at once
// ----------------------------------------------------------------------------------------

TEST_F(OptionsFrame, TextsAreStoredOnEachChange) {
  options.Load();
  options.Change("Text6", "/here");
  options.Change("Text7", "e.jpg");
  options.Change("Text8", "m.jpg");
  options.Change("Text9", " min ");
  EXPECT_EQ(Stored("SetDirBMP"), "/here");
  EXPECT_EQ(Stored("Setstr00.00"), "e.jpg");
  EXPECT_EQ(Stored("Setstr01.00"), "m.jpg");
  EXPECT_EQ(Stored("Setstr02.00"), "MIN") << "kept in capitals";
  EXPECT_EQ(options.MainKeyword(), "MIN");
  const int writes = settings.writes;
  options.Change("Text6", "/here");
  EXPECT_EQ(settings.writes, writes) << "no change";
}

TEST_F(OptionsFrame, TypedTextsAreStoredWhenTheyAreDone) {
  options.Load();
  for (const char* text : {"/", "/h", "/he"}) options.Type("Text6", kSingle, text);
  options.Type("Text9", kSingle, "su");
  EXPECT_EQ(settings.writes, 0);
  EXPECT_EQ(options.ImageDirectory(), "/he") << "it counts at once";
  options.StoreTyped();
  EXPECT_EQ(Stored("SetDirBMP"), "/he");
  EXPECT_EQ(Stored("Setstr02.00"), "SU");
  EXPECT_EQ(settings.writes, 2);
  options.StoreTyped();
  EXPECT_EQ(settings.writes, 2);
  options.Type("Text7", kSingle, "a.jpg");
  options.Command2();
  EXPECT_EQ(Stored("Setstr00.00"), "a.jpg");
  options.Type("Text7", kSingle, "b.jpg");
  options.Command1();
  EXPECT_EQ(Stored("Setstr00.00"), "b.jpg");
}

TEST_F(OptionsFrame, TheSatelliteIsStoredAndShownAtOnce) {
  options.Load();
  options.Change("HScroll3", "1000");
  options.Change("Check3", "1");
  options.Change("Check4", "1");
  EXPECT_EQ(Stored("Setstr03.00"), "1000");
  EXPECT_EQ(Stored("Setstr04.00"), "1");
  EXPECT_EQ(Stored("Setstr05.00"), "1");
  EXPECT_EQ(view.options.SatelliteSize, 1000);
  EXPECT_EQ(view.options.SatelliteShown, 1);
  EXPECT_EQ(view.options.PanelsTrackSun, 1);
  EXPECT_EQ(options.SatelliteLabel(), "Satellite size  1001");
  options.Change("HScroll3", "40000");
  EXPECT_EQ(options.Value("HScroll3"), "32000");
  OptionsForm next = Fresh();
  next.Load();
  EXPECT_EQ(view.options.SatelliteSize, 32000) << "also without Save";
}

TEST_F(OptionsFrame, TraceBoxesActAtOnceAndAreNotStored) {
  options.Load();
  options.Change("Check5", "1");
  options.Change("Check6", "1");
  options.Change("Check2", "1");
  EXPECT_TRUE(view.valueColours);
  EXPECT_TRUE(view.satelliteAxes);
  EXPECT_TRUE(options.Extended());
  options.Change("Check5", "0");
  EXPECT_FALSE(view.valueColours);
  EXPECT_EQ(settings.writes, 0);
}

TEST_F(OptionsFrame, OneBoxTellsTheAxisOfTheValues) {
  options.Load();
  EXPECT_EQ(options.ValueAxis(), 0);
  for (const int axis : {1, 2, 3}) {
    options.ShowValueAxis(axis);
    EXPECT_EQ(options.ValueAxis(), axis);
    for (int box = 0; box < 3; ++box) EXPECT_EQ(options.Ticked("Check8", box), box + 1 == axis) << axis;
  }
  options.Change("Check8", 0, "1");
  EXPECT_EQ(options.ValueAxis(), 1);
  EXPECT_FALSE(options.Ticked("Check8", 2));
  options.Change("Check8", 0, "0");
  EXPECT_EQ(options.ValueAxis(), 1) << "a click on the ticked box keeps it";
  options.ShowValueAxis(0);
  EXPECT_EQ(options.ValueAxis(), 0);
  EXPECT_EQ(settings.writes, 0);
}

TEST_F(OptionsFrame, InteractiveFollowsBoxAndMenu) {
  options.Load();
  options.Change("Check1", 7, "1");
  EXPECT_TRUE(options.InteractiveMark());
  EXPECT_EQ(view.options.Interactive, 1);
  options.mnuOinteractive_Click();
  EXPECT_FALSE(options.Ticked("Check1", 7));
  EXPECT_EQ(view.options.Interactive, 0);
  options.mnuOinteractive_Click();
  EXPECT_EQ(view.options.Interactive, 1);
  options.ForbidInteractive();
  EXPECT_FALSE(options.InteractiveMark());
  EXPECT_EQ(view.options.Interactive, 0);
  EXPECT_EQ(settings.writes, 0);
}

TEST_F(OptionsFrame, WhiteReplacesTheBackgroundAndGivesItBack) {
  options.Load();
  options.Change("Text5", 15, "11");
  options.Change("Text5", 16, "22");
  options.Change("Check7", "1");
  for (const int part : {15, 16, 17}) EXPECT_EQ(options.Value("Text5", part), "255");
  EXPECT_EQ(Stored("Background15"), "11");
  EXPECT_EQ(Stored("Background16"), "22");
  EXPECT_EQ(Stored("Background17"), "70");
  EXPECT_EQ(options.StoredBackground(), (std::array<double, 3>{11, 22, 70}));
  options.Change("Check7", "0");
  EXPECT_EQ(options.Value("Text5", 15), "11");
  EXPECT_EQ(options.Value("Text5", 16), "22");
  EXPECT_EQ(options.Value("Text5", 17), "70");
}

TEST_F(OptionsFrame, LightbackAndWhiteExchangeTheSameBackground) {
  options.Load();
  options.Change("Text4", 0, "3");
  options.KeepBackground({11, 22, 33});  // what the button does
  view.options.ColourOfBackGround = {255, 255, 255};
  options.ShowBackground();
  EXPECT_TRUE(options.Ticked("Check7"));
  EXPECT_EQ(options.Value("Text4", 0), "3") << "other fields stay as they are";
  options.Change("Check7", "0");
  EXPECT_EQ(options.Value("Text5", 15), "11");
  EXPECT_EQ(options.Value("Text5", 17), "33");
  EXPECT_EQ(options.StoredBackground(), (std::array<double, 3>{11, 22, 33}));
}

TEST_F(OptionsFrame, AWhiteBackgroundIsNotKeptAsTheOneBefore) {
  options.Load();
  for (const int part : {15, 16, 17}) options.Change("Text5", part, "255");
  options.Change("Check7", "1");
  EXPECT_EQ(Stored("Background15"), "absent");
  options.Change("Check7", "0");
  EXPECT_EQ(options.Value("Text5", 15), "10") << "the default of the key";
  EXPECT_EQ(options.Value("Text5", 16), "20");
  EXPECT_EQ(options.Value("Text5", 17), "70");
}

// --- buttons
// -----------------------------------------------------------------------------------------------------------

TEST_F(OptionsFrame, FieldsCountAtSaveAndCloseOnly) {
  options.Load();
  options.Change("Check1", 3, "1");
  options.Change("Text4", 1, "2,5");
  options.Change("Text5", 0, "200");
  EXPECT_EQ(view.options, Options{});
  EXPECT_TRUE(options.Pending());
  options.Command2();
  EXPECT_EQ(view.options.Check1[3], 1);
  EXPECT_EQ(view.options.LengthAxisFactor, 2.5);
  EXPECT_EQ(view.options.ColourOfAxisLabels[0], 200);
  EXPECT_FALSE(options.Pending());
  EXPECT_EQ(Stored("Set03.00"), "absent") << "closing stores nothing";
  options.Command1();
  EXPECT_EQ(Stored("Set03.00"), "1");
  EXPECT_EQ(Stored("Set08.00"), "2.5");
  EXPECT_EQ(Stored("Set11.00"), "200");
  EXPECT_EQ(Stored("Set100.00"), "0");
  EXPECT_EQ(Stored("SetDirBMP"), "");
}

TEST_F(OptionsFrame, LimitsItsNumbersOnReading) {
  struct Row {
    const char* name;
    int index;
    const char* typed;
    const char* shown;
  };
  for (const Row& row : {Row{"Text4", 0, "0", "0.01"}, Row{"Text4", 1, "-3", "0.01"}, Row{"Text4", 2, "15.5", "15"},
                         Row{"Text4", 3, "0,02", "0.02"}, Row{"Text4", 3, "", "0.01"}, Row{"Text4", 3, "1e400", "0.01"},
                         Row{"Text5", 0, "300", "255"}, Row{"Text5", 9, "-1", "0"}, Row{"Text5", 17, "abc", "0"},
                         Row{"Text5", 17, "12.5", "12.5"}, Row{"Text5", 8, " 7 ", "7"}}) {
    SCOPED_TRACE(std::string(row.name) + " " + row.typed);
    options.Load();
    options.Change(row.name, row.index, row.typed);
    EXPECT_EQ(options.Value(row.name, row.index), row.typed) << "while it is typed";
    options.Command1();
    EXPECT_EQ(options.Value(row.name, row.index), row.shown);
  }
}

TEST_F(OptionsFrame, TheMoonBoxIsAFactorOfTen) {
  options.Load();
  options.Change("Check1", 8, "0");
  options.Command1();
  EXPECT_EQ(view.options.MoonFactor, 1);
  EXPECT_EQ(Stored("Set29.00"), "1");
  options.Change("Check1", 8, "1");
  options.Command1();
  EXPECT_EQ(Stored("Set29.00"), "10");
}

TEST_F(OptionsFrame, ShowAndClose) {
  options.Show();
  EXPECT_TRUE(options.Visible());
  options.Command4();
  EXPECT_TRUE(options.HelpShown());
  options.Command5();
  EXPECT_FALSE(options.HelpShown());
  options.Command2();
  EXPECT_FALSE(options.Visible());
}

TEST_F(OptionsFrame, FactorySettings) {
  options.Load();
  for (int box = 0; box < 9; ++box) options.Change("Check1", box, box == 8 ? "0" : "1");
  options.Change("Text4", 0, "3");
  options.Change("Text5", 17, "1");
  options.Change("Check7", "1");
  options.Change("Text6", "/here");
  options.Change("Text7", "e.jpg");
  options.Change("Text9", "SUM");
  options.Change("HScroll3", "7");
  options.Change("Check3", "1");
  options.Change("Check4", "1");
  options.Command1();
  options.Command3();
  EXPECT_EQ(view.options, Options{});
  EXPECT_EQ(options.Value("Text6"), "");
  EXPECT_EQ(options.Value("Text9"), "MAX");
  EXPECT_EQ(options.Value("Text7"), "e.jpg") << "the textures stay";
  EXPECT_FALSE(options.Ticked("Check7"));
  EXPECT_EQ(Stored("Set29.00"), "10");
  EXPECT_EQ(Stored("Setstr02.00"), "MAX");
  EXPECT_EQ(Stored("Setstr03.00"), "64");
  EXPECT_EQ(Stored("Setstr04.00"), "0");
  EXPECT_EQ(Stored("SetDirBMP"), "");
  OptionsForm next = Fresh();
  next.Load();
  EXPECT_EQ(view.options, Options{});
}

TEST_F(OptionsFrame, OptionAffecteUserTakesChangesBack) {
  options.Load();
  options.Change("Text4", 0, "9");
  options.Change("Check1", 0, "1");
  EXPECT_TRUE(options.Pending());
  options.OptionAffecteUser();
  EXPECT_FALSE(options.Pending());
  EXPECT_EQ(options.Value("Text4", 0), "1");
}

TEST_F(OptionsFrame, GoesOnWhenTheStoreCannotBeWritten) {
  options.Load();
  settings.refuse = true;
  options.Change("Text6", "/here");
  options.Change("Text4", 0, "9");
  options.Command1();
  EXPECT_EQ(view.options.ThicknessLinePlot, 9);
  EXPECT_EQ(options.ImageDirectory(), "/here");
  EXPECT_TRUE(dialogs.boxes.empty());
  EXPECT_THAT(dialogs.log, ::testing::Contains("_The options could not be stored: Path/File access error"));
}

TEST_F(OptionsFrame, KeyIWritesOnCheck3) {
  options.SetCheck3Caption("REAL_ISO");
  EXPECT_EQ(options.Check3Caption(), "REAL_ISO");
  options.SetCheck3Caption("");
  EXPECT_EQ(options.Check3Caption(), "");
}

TEST_F(OptionsFrame, RefusesAControlItDoesNotHave) {
  EXPECT_THROW(options.Value("Check1"), RuntimeFailure);
  EXPECT_THROW(options.Change("Text5", 18, "1"), RuntimeFailure);
}

TEST(OptionsTable, HasEveryControlOnceWithItsCaption) {
  std::set<std::string> names;
  for (const ControlEntry& entry : kOptionControls) EXPECT_TRUE(names.insert(ObjectName(entry)).second);
  EXPECT_EQ(names.size(), 50U);
  const auto caption = [](const std::string& name) {
    for (const ControlEntry& entry : kOptionControls) {
      if (ObjectName(entry) == name) return std::string(entry.caption);
    }
    return std::string("absent");
  };
  struct Row {
    const char* name;
    const char* caption;
  };
  for (const Row& row : {Row{"Check1(0)", "no Plot Earth..."},
                         Row{"Check1(1)", "no Colour Axis X"},
                         Row{"Check1(2)", "Large Characters "},
                         Row{"Check1(3)", "no Plot Axis"},
                         Row{"Check1(4)", "no Logo Label "},
                         Row{"Check1(5)", "no Origin Label"},
                         Row{"Check1(6)", "no Time Moving"},
                         Row{"Check1(7)", "Interactive"},
                         Row{"Check1(8)", "Moon x10"},
                         Row{"Text4(0)", "Thickness LinePlot "},
                         Row{"Text4(1)", "Length Axis Factor"},
                         Row{"Text4(2)", "Thickness LineAxis"},
                         Row{"Text4(3)", "X,Y,Z position Factor"},
                         Row{"Text5(0)", "Colour of Axis labels"},
                         Row{"Text5(3)", "Colour of Axis"},
                         Row{"Text5(6)", "Colour of Plot Nominal"},
                         Row{"Text5(9)", "Colour of Plot Events"},
                         Row{"Text5(12)", "Colour of Sphere"},
                         Row{"Text5(15)", "Colour of BackGround"},
                         Row{"Text6", "Directory for the images saved"},
                         Row{"Text9", "Main KEYWORD Excel"},
                         Row{"HScroll3", "Satellite  size"},
                         Row{"Check3", "Satellite"},
                         Row{"Check4", "Solar panel"},
                         Row{"Check5", "Valz"},
                         Row{"Check8(0)", "Bars valx"},
                         Row{"Check8(1)", "Bars valy"},
                         Row{"Check8(2)", "Bars valz"},
                         Row{"Check6", "Sat. Axis"},
                         Row{"Check2", "Ext Change colours"},
                         Row{"Check7", "white"},
                         Row{"Command1", "Save"},
                         Row{"Command2", "Close"},
                         Row{"Command3", "Factory Settings"}}) {
    EXPECT_EQ(caption(row.name), row.caption) << row.name;
  }
  for (const ControlEntry& entry : kOptionControls) {
    if (ObjectName(entry) != "Check1(7)") continue;
    EXPECT_EQ(entry.tip,
              "Interactivity with Excel : takes into account immediately the changes in the worksheet. Save you "
              "worksheet before!");
  }
}

}  // namespace
}  // namespace orv::testing
