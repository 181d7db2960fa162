#pragma once

#include <string>

#include "numerics/settings.h"
#include "view/gl_api.h"

namespace orv {

inline constexpr int kSidesModes = 5;
inline constexpr int kColorStyles = 7;
inline constexpr int kScaleModes = 6;

// What the user has set about the picture; the window and the command line write it, the scene reads it.
struct ViewState {
  Options options;              // the record of stored options
  double ColorStyle = 0;        // 0 .. 6
  double ScaleMode = 0;         // 0 .. 5: where the legend goes
  int SidesMode = 1;            // 0 .. 4
  int AutoRotMode = 0;          // 0 mean data, 1 data of the steps, 2 the turn itself
  double AutoRotPeriod = 8.11;  // seconds for a frame of the turn
  int STEPPT = 81;              // points added at each animation step
  bool animation = false;       // plots grow from their start
  double redrawFraction = 1;    // HScroll1 / 1000, used without animation
  double startFraction = 0;     // HScroll4 / 1000
  bool grid = false;
  bool valueColours = false;                  // Check5: values colour the trace in place of bars
  bool satelliteAxes = false;                 // Check6
  std::string earthTexture = "earthjpg.jpg";  // files in the folder of the textures
  std::string moonTexture = "moonjpg.jpg";
  bool realIso = false;  // corner views in the proportions of a cube
  bool frozen = false;   // the view keeps its step

  Rgba Background() const;
  // White on dark backgrounds, black on light ones.
  Rgba TextColour() const;
};

// A colour of the options, 0 .. 255 each.
Rgba OptionColour(const std::array<double, 3>& colour, float alpha = 1);

// The length of the axes from the centre: the radius of the scene times the option, 1.1 for an option of 0.
double AxisLength(double RRMAXAXES, const Options& options);

}  // namespace orv
