#pragma once

#include <string>
#include <vector>

#include "model/plot_file.h"

namespace orv {

// The sample plot that is shown when there is nothing else: a satellite on an eccentric orbit of one day that turns its
// third axis to the Earth and its panels to the Sun, with thrust arcs on both sides of the apogee. Lengths are
// kilometres, times days, angles degrees.
inline constexpr int kDemoPoints = 601;
inline constexpr int kDemoColumns = 13;
inline constexpr double kDemoFirstDay = 37701;

PlotHeader DemoHeader();

// One line for each point: x, y, z; time; event time and state on the first lines; time and quaternion w, x, y, z from
// the satellite's frame to the orbit's; time and panel angle.
std::vector<std::vector<std::string>> DemoLines();

// Writes the sample plot in the format of a plot file unless the file is there. Failure 76 when the folder cannot be
// made, 75 or 70 when the file cannot be written.
void EnsureDemoPlot(const std::string& name);

}  // namespace orv
