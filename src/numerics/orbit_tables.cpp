#include "numerics/orbit_tables.h"

#include <cmath>

#include "numerics/angles.h"

namespace orv {

std::array<OrbitElements, kOrbitRows> MakeOrbitTable() {
  return {{
      {"SUN", 4.8689, 0.0172027914, 1.00000023, 4.9085, 8.1856e-07, 0, 0, 0.01675104, 0, 3},
      {"MERCURE", 4.0117, 0.0714254534, 0.387098, 1.3249, 7.4229e-07, 0.82304, 5.6618e-07, 0.205615, 0.1222, 2},
      {"VENUS", 3.6086, 0.0279631195, 0.72333, 2.2716, 6.5572e-07, 1.3229, 4.3668e-07, 0.006816, 0.05923, 2.4},
      {"EARTH", 4.8689, 0.0172027914, 1.00000023, 4.9085, 8.1856e-07, 0, 0, 0.01675104, 0, 3},
      {"MARS", 2.1776, 0.00914676594, 1.523678, 5.8338, 8.793e-07, 0.8516, 3.712e-07, 0.093309, 0.032294, 1.5},
      {"JUPITER", 4.6879, 0.0014509868, 5.202799, 0.2289, 8.57e-07, 1.7358, 4.83e-07, 0.048376, 0.02284, 1.48},
      {"SATURNE", 4.8567, 0.00058484028, 9.552098, 1.5974, 4.12e-07, 1.9686, 4.17e-07, 0.054311, 0.0435, 1.7},
      {"URANUS", 4.3224, 0.000205424, 19.21694, 2.9523, 7.62e-07, 1.2825, 2.3824e-07, 0.047319, 0.013482, -7},
      {"NEPTUNE", 1.5223, 0.000105061, 30.112912, 0.7637, 3.93e-07, 2.281, 5.25e-07, 0.008262, 0.031054, -7},
      {"PLUTON", 1.6406, 7.01214e-05, 39.438712, 3.8978, 6.672e-07, 1.9034, 6.672e-07, 0.250236, 0.29968, 8.3},
  }};
}

std::array<SatelliteElements, kSatelliteRows> MakeSatelliteTable() {
  return {{
      {2.694, 3.5515529, 5.9059},
      {5.771, 1.76932338, 9.3969},
      {2.597, 0.87820859, 14.989},
      {3.091, 0.37648689, 26.3641},
      {0.434, 3.32830711, 4.877},
      {4.472, 2.29571836, 6.2464},
      {6.081, 1.39085442, 8.723},
      {3.857, 0.39404325, 20.213},
  }};
}

// Rotation of Venus, Uranus and Pluto: IAU working group on cartographic coordinates and rotational elements; the turn
// is counted forward because the tilts beyond 90 degrees tell its sense. Perihelion of Pluto: its longitude at J2000 in
// the Keplerian elements for approximate positions of the major planets (E. M. Standish), rounded as the others are.
std::array<BodyRecord, kBodyRecords> MakeBodyTable() {
  std::array<BodyRecord, kBodyRecords> table = {{
      {"Sun", 1.32715e+20, 0, 0, 0, 0, 0, "mlkwy", 695000, 25, 0, 0},
      {"Mercury", 2.20311e+13, 87.969, 7.004, 0.2056, 48.35, 77.44, "Sun", 2439.7, 58.6462, 0, 7.003},
      {"Venus", 3.25e+14, 224.701, 3.394, 0.0068, 76.72, 131.56, "Sun", 6051.8, 243.0185, 177.36, 3.39364},
      {"Earth", 3.986005e+14, 365.256, 0, 0.0167, 354.9, 102.83, "Sun", 6378.14, 0.99727, 23.45, 0},
      {"Moon", 4.902e+12, 27.166425, 5.15, 0.05, 0, 0, "Earth", 1737.4, 27.32166, 6.68, 5.25},
      {"Mars", 4.29e+13, 686.98, 1.85, 0.0934, 49.6, 335.99, "Sun", 3397.2, 1.025957, 25.19, 1.8503},
      {"Jupiter", 1.267e+17, 4332.71, 1.308, 0.0483, 100.47, 15.63, "Sun", 71492, 0.41354, 3.13, 1.30874},
      {"Saturn", 3.79391e+16, 10759.5, 2.488, 0.056, 113.71, 92.8, "Sun", 60268, 0.44401, 25.33, 2.49252},
      {"Uranus", 5.79358e+15, 30685, 0.774, 0.0461, 74.06, 176.29, "Sun", 25559, 0.71833, 97.86, 0.772464},
      {"Neptune", 6.8301e+15, 60190, 1.774, 0.0097, 131.81, 1.95, "Sun", 24746, 0.67125, 28.31, 1.77924},
      {"Pluto", 8.60433e+11, 90800, 17.148, 0.2482, 110.42, 224.07, "Sun", 1160, 6.3872, 122.52, 17.1705},
      {},
  }};
  for (BodyRecord& record : table) {
    const double plane = DegToRad(record.planeInclinationDeg);
    record.planeCosine = std::cos(plane);
    record.planeSine = std::sin(plane);
  }
  table.back().gravity = 1.3271244e+20;
  return table;
}

}  // namespace orv
