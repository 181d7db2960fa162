#include "window/menus.h"

#include <gtest/gtest.h>
#include <map>
#include <set>

#include "numerics/text.h"
#include "window/help_texts.h"
#include "window/main_controls.h"

namespace orv {
namespace {

TEST(Menus, AreTheirNamesAndCaptions) {
  std::map<std::string_view, MenuEntry> menus;
  for (const MenuEntry& entry : kMenus) EXPECT_TRUE(menus.emplace(entry.name, entry).second) << entry.name;
  struct Row {
    const char* name;
    const char* parent;
    const char* caption;
  };
  for (const Row& row : {Row{"mnuFile", "", "&File"},
                         Row{"mnuFOpen", "mnuFile", "&Open"},
                         Row{"mnuFSave", "mnuFile", "&SaveImage"},
                         Row{"mnuFSaveAs", "mnuFile", "SaveImage&WithTimeStamp"},
                         Row{"mnuFMovieSaveAs", "mnuFile", "&MovieFrames"},
                         Row{"mnuFRunPowerPoint", "mnuFile", "&To run in PowerPoint"},
                         Row{"mnuFOptions", "mnuFile", "&Options"},
                         Row{"mnuFPrint", "mnuFile", "&Print"},
                         Row{"mnuFExit", "mnuFile", "E&xit"},
                         Row{"mnuEdit", "", "&Edit"},
                         Row{"mnuEMove", "mnuEdit", "&Move"},
                         Row{"mnuERotate", "mnuEdit", "&Rotate"},
                         Row{"mnuEScale", "mnuEdit", "&Scale"},
                         Row{"mnuEDelete", "mnuEdit", "&Delete"},
                         Row{"mnuEProperties", "mnuEdit", "&Properties"},
                         Row{"mnuOptions", "", "&OptionsInteractive"},
                         Row{"mnuOinteractive", "mnuOptions", "&Interactive"},
                         Row{"mnuView", "", "&View"},
                         Row{"mnuVGrids", "mnuView", "&Grid"},
                         Row{"mnuVCam", "mnuView", "&Camera"},
                         Row{"mnuVReset", "mnuView", "&Reset"},
                         Row{"mnuVView", "mnuView", "&View"},
                         Row{"mnuVVPerspective", "mnuVView", "&Perspecdtive"},
                         Row{"mnuVVTop", "mnuVView", "&Top"},
                         Row{"mnuVVLeft", "mnuVView", "&Left"},
                         Row{"mnuVVFront", "mnuVView", "&Front"},
                         Row{"mnuHelp", "", "&Help"},
                         Row{"mnuHContents", "mnuHelp", "&Contents"},
                         Row{"mnuHAbout", "mnuHelp", "&About"},
                         Row{"mnuOpenFolder", "", "&Folder"},
                         Row{"mnuUpdateExcel", "", "&UpdateExcel"}}) {
    SCOPED_TRACE(row.name);
    ASSERT_TRUE(menus.contains(row.name));
    EXPECT_EQ(menus.at(row.name).parent, row.parent);
    EXPECT_EQ(menus.at(row.name).caption, row.caption);
  }
}

TEST(Menus, HangTogether) {
  std::set<std::string_view> open;
  std::set<MenuAction> actions;
  for (const MenuEntry& entry : kMenus) {
    SCOPED_TRACE(entry.name);
    EXPECT_TRUE(entry.parent.empty() || open.contains(entry.parent)) << "a parent stands before its entries";
    if (entry.action == MenuAction::Menu) open.insert(entry.name);
    EXPECT_EQ(entry.action == MenuAction::None, entry.parent == "mnuEdit") << "only these are without action";
    const bool several = entry.action == MenuAction::Menu || entry.action == MenuAction::None;
    EXPECT_TRUE(several || actions.insert(entry.action).second);
  }
  for (const std::string_view name : kMenusHiddenInFileMode) EXPECT_TRUE(open.contains(name)) << name;
}

TEST(Help, TellsSyntaxAndUse) {
  const auto [syntax, use] = HelpContents();
  EXPECT_TRUE(Contains(syntax, "OrvData"));
  EXPECT_TRUE(Contains(syntax, "UserName Type [size] numbers [cells] Nx Ny [placement ...]"));
  for (const char* type : {"thr", "rect", "rectfree", "rect2sides", "rectOriented", "par", "sph", "con", "con2", "elli",
                           "cyl", "cylfree", "cylellipse", "disc", "cylshape", "cylscreen", "cylshapeX6b"}) {
    EXPECT_TRUE(Contains(syntax, type)) << type;
  }
  EXPECT_TRUE(Contains(use,
                       "Double Click in the plot window to disable or enable the automatic rotation given while moving "
                       "the mouse with the right button down!  etc."));
  EXPECT_TRUE(Contains(use,
                       "Move the cursors labelled Redraw Start and Redraw Speed in order to watch dynamically the plot "
                       "increasing. "));
  EXPECT_TRUE(Contains(use, "Note : if Excel is not already open, the program sent a message to open it"));
  EXPECT_TRUE(Contains(LinkHelp(), "UpdateExcel"));
}

TEST(About, TellsTheRelease) {
  EXPECT_EQ(ReleaseText({2031, 4, 25, 0, 0, 0}), "025.004.2031");
  EXPECT_TRUE(Contains(AboutText({2031, 12, 5, 0, 0, 0}), "005.012.2031"));
}

TEST(MainControls, BearTheirTexts) {
  const auto find = [](std::string_view name) {
    for (const ControlEntry& entry : kMainControls) {
      if (entry.name == name) return entry;
    }
    return ControlEntry{.name = "absent"};
  };
  EXPECT_EQ(find("Combo1").tip,
            "By default, the specification is taken from Excel. When none, please write here the spec like "
            "\"=MAX(A2:C60)\" and  press the Enter Key.");
  EXPECT_EQ(find("HScroll1").tip,
            "Redraw  feature: new dynamic plot redrawn from the point you select up to the last one");
  EXPECT_EQ(find("HScroll4").tip, "Starting feature: Trace start from the point you select");
  EXPECT_EQ(find("HScroll2").tip, "Increase or decrease the speed of the dynamic plot");
  EXPECT_EQ(find("Command7").caption, "color scale");
  EXPECT_EQ(find("Command8").caption, "Auto Rotation");
  EXPECT_EQ(find("Command8").tip, "mean data only");
  EXPECT_EQ(find("Command9").caption, "Reset");
  EXPECT_EQ(find("Command9").tip, "All scales in color; Try Shift+Click");
  EXPECT_EQ(find("Command6").caption, "Run Demo");
  EXPECT_EQ(find("Text12").initial, "This is a memo for the warnings");
  EXPECT_EQ(find("StatusBar1").caption, "Re-Plots");
  EXPECT_EQ(find("StatusBar1").tip,
            "Re-plot other data,  with RIGHT or SHIFT show selection box to re-plot, with CTRL view RECTO side  then "
            "VERSO Side then points then squared areas elements");
  EXPECT_EQ(find("Frame1").caption, "To run in PowerPoint");
  EXPECT_EQ(find("HScroll1").maximum, 1000);
  EXPECT_EQ(find("ProgressBar1").minimum, 30);
  EXPECT_EQ(find("ProgressBar1").maximum, 100);
}

}  // namespace
}  // namespace orv
