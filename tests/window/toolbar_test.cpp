#include "window/toolbar.h"

#include <gtest/gtest.h>
#include <set>

namespace orv {
namespace {

TEST(Toolbar, HasItsButtonsAndKeys) {
  std::set<std::string_view> keys;
  int buttons = 0;
  for (const ToolEntry& tool : kTools) {
    EXPECT_TRUE(keys.insert(tool.key).second) << tool.key;
    EXPECT_EQ(tool.button, !tool.tip.empty()) << tool.key;
    buttons += tool.button ? 1 : 0;
  }
  EXPECT_EQ(buttons, 12);
  EXPECT_EQ(keys.size(), 21U);
  struct Row {
    const char* key;
    int state;
    const char* tip;
  };
  for (const Row& row :
       {Row{"select", 1, "Move with left button, Orient with right"},
        Row{"pan", 8, "Pan with Left button, Try the Right button !"},
        Row{"zoom", 6, "Zoom with Left button, Try the Right button !"},
        Row{"zminus", 13, "Zoom out"},
        Row{"zplus", 14, "Zoom in"},
        Row{"lightback", 15, "Change the background color."},
        Row{"stop", 16,
            "Enable or disable the automatic rotation  motion given by the left click.  Use first the left click to "
            "stop."},
        Row{"frozenstart", 17, "To stop the Redraw"},
        Row{"valisxyz", 0, "Fix the orientation ISO  (try with Control or Alt or Shift key)"},
        Row{"valisxy", 0, "Various orientations (backward with Control or Alt or Shift key)"},
        Row{"imagespot", 0, "Save Image with timestamp in the directory (see options) "},
        Row{"movieframes", 0, "Save Movie Frames with timestamp in the directory (see options) "},
        Row{"dolly", 7, ""},
        Row{"orbit", 9, ""},
        Row{"pitch", 10, ""},
        Row{"yaw", 11, ""},
        Row{"roll", 12, ""},
        Row{"move", 2, ""},
        Row{"rotate", 3, ""},
        Row{"scale", 5, ""},
        Row{"arcrotate", 4, ""}}) {
    SCOPED_TRACE(row.key);
    const ToolEntry* const tool = FindTool(row.key);
    ASSERT_NE(tool, nullptr);
    EXPECT_EQ(tool->EditState, row.state);
    EXPECT_EQ(tool->tip, row.tip);
  }
  EXPECT_EQ(FindTool("nothing"), nullptr);
}

TEST(Toolbar, MarksPanBeforeTheFirstMode) {
  Toolbar bar;
  EXPECT_EQ(bar.Marked(), "");
  EXPECT_EQ(bar.MarkedState(), 0);
  const ToolClick click = bar.Toolbar1MYButtonClick("zplus");
  EXPECT_EQ(bar.Marked(), "pan");
  EXPECT_EQ(click.EditState, 14);
  EXPECT_EQ(click.EditStateAfter, 8);
}

TEST(Toolbar, ModesRememberTheirMark) {
  Toolbar bar;
  for (const ToolEntry& tool : kTools) {
    if (tool.EditState == 0 || tool.EditState > 12) continue;
    const ToolClick click = bar.Toolbar1MYButtonClick(std::string(tool.key));
    EXPECT_EQ(click.action, ToolAction::Mode) << tool.key;
    EXPECT_EQ(click.EditState, tool.EditState);
    EXPECT_EQ(click.EditStateAfter, tool.EditState);
    EXPECT_EQ(bar.Marked(), tool.key);
    EXPECT_FALSE(click.refreshDirectory);
  }
}

TEST(Toolbar, StepsGiveTheMarkedModeBack) {
  Toolbar bar;
  bar.Toolbar1MYButtonClick("Zoom");
  EXPECT_EQ(bar.Marked(), "zoom") << "keys come in any case";
  for (const char* key : {"zminus", "zplus", "lightback"}) {
    const ToolClick click = bar.Toolbar1MYButtonClick(key);
    EXPECT_EQ(click.action, ToolAction::Step);
    EXPECT_EQ(click.EditState, FindTool(key)->EditState);
    EXPECT_EQ(click.EditStateAfter, 6);
    EXPECT_EQ(click.refreshDirectory, std::string(key) != "lightback");
    EXPECT_EQ(bar.Marked(), "zoom");
  }
}

TEST(Toolbar, TheFirstStopTurnsTheTrackballOff) {
  Toolbar bar;
  EXPECT_TRUE(bar.Animate());
  ToolClick click = bar.Toolbar1MYButtonClick("stop");
  EXPECT_EQ(click.action, ToolAction::TrackballOff);
  EXPECT_EQ(click.EditState, 16);
  EXPECT_EQ(click.EditStateAfter, 8);
  EXPECT_FALSE(bar.Animate());
  click = bar.Toolbar1MYButtonClick("stop");
  EXPECT_EQ(click.action, ToolAction::TrackballOn);
  EXPECT_TRUE(bar.Animate());
  EXPECT_EQ(bar.ToggleTrackball(), ToolAction::TrackballOff) << "a double click on the view";
}

TEST(Toolbar, FrozenStartIsLeftToItsTwoPresses) {
  Toolbar bar;
  bar.Toolbar1MYButtonClick("select");
  const ToolClick click = bar.Toolbar1MYButtonClick("frozenstart");
  EXPECT_EQ(click.action, ToolAction::FrozenStart);
  EXPECT_EQ(click.EditState, 0);
  EXPECT_EQ(click.EditStateAfter, 1);
  EXPECT_EQ(bar.Marked(), "select");
}

TEST(Toolbar, Views) {
  Toolbar bar;
  ToolClick click = bar.Toolbar1MYButtonClick("valisxyz");
  EXPECT_EQ(click.action, ToolAction::CameraSet);
  EXPECT_EQ(click.camera, "isonew");
  EXPECT_EQ(click.axis, 2);
  EXPECT_EQ(click.SPECaxeVertical, 0);
  click = bar.Toolbar1MYButtonClick("valisxyz", {.modifier = true});
  EXPECT_EQ(click.camera, "isonewPlus");
  click = bar.Toolbar1MYButtonClick("valisxy");
  EXPECT_EQ(click.camera, "proj");
  click = bar.Toolbar1MYButtonClick("valisxy", {.modifier = true});
  EXPECT_EQ(click.camera, "projinverse");
}

TEST(Toolbar, AHeldAxisKeyTurnsAnyClickIntoTheView) {
  struct Row {
    int code;
    int axis;
  };
  for (const Row& row : {Row{88, 1}, Row{120, 1}, Row{89, 2}, Row{121, 2}, Row{90, 3}, Row{122, 3}}) {
    for (const char* key : {"zplus", "valisxyz", "pan", "imagespot", "nothing"}) {
      Toolbar bar;
      const ToolClick click = bar.Toolbar1MYButtonClick(key, {.heldKey = row.code});
      EXPECT_EQ(click.action, ToolAction::CameraSet);
      EXPECT_EQ(click.camera, "isonew");
      EXPECT_EQ(click.axis, row.axis);
      EXPECT_EQ(click.SPECaxeVertical, 1);
      EXPECT_EQ(click.EditState, 0);
      EXPECT_EQ(click.EditStateAfter, 8);
    }
  }
  Toolbar bar;
  EXPECT_EQ(bar.Toolbar1MYButtonClick("zplus", {.heldKey = 65}).action, ToolAction::Step);
}

TEST(Toolbar, ImagesAndMovies) {
  Toolbar bar;
  EXPECT_EQ(bar.Toolbar1MYButtonClick("imagespot").action, ToolAction::SaveImage);
  EXPECT_FALSE(bar.MovieFlag());
  EXPECT_EQ(bar.Toolbar1MYButtonClick("movieframes").action, ToolAction::MovieFrames);
  EXPECT_TRUE(bar.MovieFlag());
  bar.Toolbar1MYButtonClick("movieframes");
  EXPECT_FALSE(bar.MovieFlag());
}

TEST(Toolbar, AnUnknownKeyDoesNothing) {
  Toolbar bar;
  const ToolClick click = bar.Toolbar1MYButtonClick("nothing");
  EXPECT_EQ(click.action, ToolAction::None);
  EXPECT_EQ(click.EditState, 0);
  EXPECT_EQ(click.EditStateAfter, 8);
}

TEST(Toolbar, MarksCanBeSet) {
  Toolbar bar;
  bar.ttbarpressed("zoom");
  EXPECT_EQ(bar.MarkedState(), 6);
  bar.ttbarUnpressed();
  EXPECT_EQ(bar.Marked(), "");
}

}  // namespace
}  // namespace orv
