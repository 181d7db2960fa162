#pragma once

#include <array>

#include "window/control_entry.h"

// The controls of the main window apart from its toolbar, its menus and the options frame.
namespace orv {

inline constexpr std::string_view kPanelText = "Re-Plots";
inline constexpr std::string_view kPanelTip =
    "Re-plot other data,  with RIGHT or SHIFT show selection box to re-plot, with CTRL view RECTO side  then VERSO "
    "Side then points then squared areas elements";
inline constexpr std::string_view kColorScaleCaption = "color scale";
inline constexpr std::string_view kColorScaleTip =
    "Scales colors 32  64 or 26 levels,  with RIGHT or SHIFT Scale on axis, with CTRL plot Vectors Normal, tangent";
inline constexpr std::string_view kAllScalesTip = "All scales in color; Try Shift+Click";
inline constexpr std::string_view kRotationCaption = "Auto Rotation";
inline constexpr std::string_view kRotationTip = "mean data only";

inline constexpr int kThousandths = 1000;    // HScroll1 and HScroll4
inline constexpr int kSpeedMaximum = 32;     // HScroll2
inline constexpr int kRotationMaximum = 10;  // HScroll2 while a turn is played
inline constexpr int kSpeedStart = 9;

inline constexpr std::array<ControlEntry, 18> kMainControls = {{
    {.name = "Toolbar1", .kind = ControlKind::Toolbar},
    {.name = "glxCtl1", .kind = ControlKind::View},
    {.name = "Combo1",
     .kind = ControlKind::List,
     .tip = "By default, the specification is taken from Excel. When none, please write here the spec like "
            "\"=MAX(A2:C60)\" and  press the Enter Key."},
    {.name = "HScroll1",
     .kind = ControlKind::Scroll,
     .tip = "Redraw  feature: new dynamic plot redrawn from the point you select up to the last one",
     .initial = "1000",
     .maximum = kThousandths},
    {.name = "Text3", .caption = "Redraw"},
    {.name = "HScroll4",
     .kind = ControlKind::Scroll,
     .tip = "Starting feature: Trace start from the point you select",
     .initial = "0",
     .maximum = kThousandths},
    {.name = "Text10", .caption = "Starting"},
    {.name = "HScroll2",
     .kind = ControlKind::Scroll,
     .tip = "Increase or decrease the speed of the dynamic plot",
     .initial = "9",
     .maximum = kSpeedMaximum},
    {.name = "Text2", .caption = "Redraw speed"},
    {.name = "Command7", .kind = ControlKind::Button, .caption = kColorScaleCaption, .tip = kColorScaleTip},
    {.name = "Command8", .kind = ControlKind::Button, .caption = kRotationCaption, .tip = kRotationTip},
    {.name = "Command9", .kind = ControlKind::Button, .caption = "Reset", .tip = kAllScalesTip},
    {.name = "Command6", .kind = ControlKind::Button, .caption = "Run Demo"},
    {.name = "ProgressBar1", .kind = ControlKind::Progress, .minimum = 30, .maximum = 100},
    {.name = "StatusBar1", .kind = ControlKind::StatusBar, .caption = kPanelText, .tip = kPanelTip},
    {.name = "Text12", .kind = ControlKind::Text, .caption = "warning", .initial = "This is a memo for the warnings"},
    {.name = "Options", .kind = ControlKind::Frame, .caption = "Options"},
    {.name = "Frame1", .kind = ControlKind::Frame, .caption = "To run in PowerPoint"},
}};

}  // namespace orv
