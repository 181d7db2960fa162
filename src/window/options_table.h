#pragma once

#include <array>

#include "window/control_entry.h"

// The options frame, described once: the form is built from it and the options are read by it.
namespace orv {

inline constexpr int kOptionBoxes = 9;     // Check1
inline constexpr int kOptionAxes = 3;      // Check8
inline constexpr int kOptionFactors = 4;   // Text4
inline constexpr int kOptionColours = 18;  // Text5, red, green, blue of six colours
inline constexpr double kSmallestFactor = 0.01;
inline constexpr double kLargestFactor = 15;
inline constexpr double kLargestColour = 255;
inline constexpr int kLargestSatellite = 32000;

namespace options_table {

constexpr ControlEntry Box(int index, std::string_view caption, std::string_view initial = "0",
                           std::string_view tip = {}) {
  return {.name = "Check1",
          .index = index,
          .kind = ControlKind::Check,
          .caption = caption,
          .tip = tip,
          .initial = initial,
          .maximum = 1};
}
constexpr ControlEntry Lone(std::string_view name, std::string_view caption, std::string_view tip,
                            std::string_view key = {}) {
  return {.name = name,
          .kind = ControlKind::Check,
          .caption = caption,
          .tip = tip,
          .initial = "0",
          .maximum = 1,
          .key = key};
}
constexpr ControlEntry Axis(int index, std::string_view caption) {
  return {.name = "Check8",
          .index = index,
          .kind = ControlKind::Check,
          .caption = caption,
          .tip = "The axis along which the values of a range plot stand; the plot ticks it",
          .initial = "0",
          .maximum = 1};
}
constexpr ControlEntry Factor(int index, std::string_view caption) {
  return {.name = "Text4",
          .index = index,
          .kind = ControlKind::Number,
          .caption = caption,
          .tip = "A factor from 0.01 to 15",
          .initial = "1",
          .minimum = kSmallestFactor,
          .maximum = kLargestFactor};
}
// The caption stands before the first of the three.
constexpr ControlEntry Part(int index, std::string_view caption, std::string_view initial) {
  constexpr std::array<std::string_view, 3> kParts = {"Red, 0 to 255", "Green, 0 to 255", "Blue, 0 to 255"};
  return {.name = "Text5",
          .index = index,
          .kind = ControlKind::Colour,
          .caption = caption,
          .tip = kParts[static_cast<std::size_t>(index % 3)],
          .initial = initial,
          .maximum = kLargestColour};
}
constexpr ControlEntry Line(std::string_view name, std::string_view caption, std::string_view tip,
                            std::string_view initial, std::string_view key) {
  return {.name = name, .kind = ControlKind::Text, .caption = caption, .tip = tip, .initial = initial, .key = key};
}
constexpr ControlEntry Press(std::string_view name, std::string_view caption, std::string_view tip) {
  return {.name = name, .kind = ControlKind::Button, .caption = caption, .tip = tip};
}

}  // namespace options_table

inline constexpr std::array<ControlEntry, 50> kOptionControls = {{
    options_table::Box(0, "no Plot Earth..."),
    options_table::Box(1, "no Colour Axis X"),
    options_table::Box(2, "Large Characters "),
    options_table::Box(3, "no Plot Axis"),
    options_table::Box(4, "no Logo Label "),
    options_table::Box(5, "no Origin Label"),
    options_table::Box(6, "no Time Moving"),
    options_table::Box(7, "Interactive", "0",
                       "Interactivity with Excel : takes into account immediately the changes in the worksheet. Save "
                       "you worksheet before!"),
    options_table::Box(8, "Moon x10", "1"),
    options_table::Factor(0, "Thickness LinePlot "),
    options_table::Factor(1, "Length Axis Factor"),
    options_table::Factor(2, "Thickness LineAxis"),
    options_table::Factor(3, "X,Y,Z position Factor"),
    options_table::Part(0, "Colour of Axis labels", "40"),
    options_table::Part(1, "", "80"),
    options_table::Part(2, "", "120"),
    options_table::Part(3, "Colour of Axis", "128"),
    options_table::Part(4, "", "128"),
    options_table::Part(5, "", "128"),
    options_table::Part(6, "Colour of Plot Nominal", "0"),
    options_table::Part(7, "", "255"),
    options_table::Part(8, "", "0"),
    options_table::Part(9, "Colour of Plot Events", "255"),
    options_table::Part(10, "", "0"),
    options_table::Part(11, "", "0"),
    options_table::Part(12, "Colour of Sphere", "50"),
    options_table::Part(13, "", "100"),
    options_table::Part(14, "", "150"),
    options_table::Part(15, "Colour of BackGround", "10"),
    options_table::Part(16, "", "20"),
    options_table::Part(17, "", "70"),
    options_table::Lone("Check7", "white", "White background; unticked, the one before comes back"),
    options_table::Line("Text6", "Directory for the images saved", "Empty: the folder of the workbook", "",
                        "SetDirBMP"),
    options_table::Line("Text7", "", "Picture of the Earth", "earthjpg.jpg", "Setstr00.00"),
    options_table::Line("Text8", "", "Picture of the Moon", "moonjpg.jpg", "Setstr01.00"),
    options_table::Line("Text9", "Main KEYWORD Excel", "Function word that marks a range plot", "MAX", "Setstr02.00"),
    {.name = "HScroll3",
     .kind = ControlKind::Scroll,
     .caption = "Satellite  size",
     .tip = "Size of the schematic satellite",
     .initial = "64",
     .maximum = kLargestSatellite,
     .key = "Setstr03.00"},
    options_table::Lone("Check3", "Satellite", "Shows the schematic satellite", "Setstr04.00"),
    options_table::Lone("Check4", "Solar panel", "The panels of the schematic satellite follow the Sun", "Setstr05.00"),
    options_table::Lone("Check5", "Valz", "Values colour the trace in place of bars"),
    options_table::Axis(0, "Bars valx"),
    options_table::Axis(1, "Bars valy"),
    options_table::Axis(2, "Bars valz"),
    options_table::Lone("Check6", "Sat. Axis", "Shows the axes of the satellite"),
    options_table::Lone("Check2", "Ext Change colours", "Shows the colours too"),
    options_table::Press("Command1", "Save", "Applies the options and stores them"),
    options_table::Press("Command2", "Close", "Applies the options and closes this frame"),
    options_table::Press("Command3", "Factory Settings", "All options as they were at first"),
    options_table::Press("Command4", "Excel link", "What links the plot to the worksheet"),
    options_table::Press("Command5", "Close help", "Closes the text about the link"),
}};

}  // namespace orv
