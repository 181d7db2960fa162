#include "model/demo_plot.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <filesystem>
#include <system_error>
#include <utility>

#include "model/range_plot.h"
#include "numerics/angles.h"
#include "numerics/number_format.h"
#include "numerics/paths.h"

namespace orv {

namespace fs = std::filesystem;

namespace {

using Triple = std::array<double, 3>;
using Versor = std::array<double, 4>;  // w, x, y, z

constexpr double kEarthGravity = 398600.4418;  // km^3/s^2
constexpr double kPeriod = 86400;              // s
constexpr double kEccentricity = 0.6;
constexpr double kInclination = 63.4;  // degrees; at this one the perigee of a real orbit keeps its place
constexpr double kNodeLongitude = 40;
constexpr double kPerigeeArgument = 270;
constexpr double kObliquity = 23.44;
constexpr double kYear = 365.25;  // days; on the first day the Sun stands at the spring equinox

struct ThrustEvent {
  double hour;
  const char* state;  // S: thrust starts, E: it ends
};
constexpr std::array<ThrustEvent, 9> kEvents = {
    {{0, "E"}, {2, "S"}, {4, "E"}, {7, "S"}, {10, "E"}, {14, "S"}, {17, "E"}, {20, "S"}, {22, "E"}}};

double Dot(const Triple& a, const Triple& b) {
  return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

Triple Cross(const Triple& a, const Triple& b) {
  return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

Triple Unit(const Triple& a) {
  const double length = std::sqrt(Dot(a, a));
  return {a[0] / length, a[1] / length, a[2] / length};
}

// Kepler's equation E - e sin E = M by Newton's steps.
double EccentricAnomaly(double meanAnomaly) {
  double anomaly = meanAnomaly + kEccentricity * std::sin(meanAnomaly);
  for (int step = 0; step < 20; ++step) {
    anomaly -= (anomaly - kEccentricity * std::sin(anomaly) - meanAnomaly) / (1 - kEccentricity * std::cos(anomaly));
  }
  return anomaly;
}

// Position in km, `share` of a turn behind the perigee.
Triple OrbitPosition(double share) {
  const double semiMajorAxis = std::cbrt(kEarthGravity * std::pow(kPeriod / (2 * kPi), 2));
  const double anomaly = EccentricAnomaly(2 * kPi * share);
  const double p = semiMajorAxis * (std::cos(anomaly) - kEccentricity);
  const double q = semiMajorAxis * std::sqrt(1 - kEccentricity * kEccentricity) * std::sin(anomaly);
  const double perigee = DegToRad(kPerigeeArgument);
  const double node = DegToRad(kNodeLongitude);
  const double inclination = DegToRad(kInclination);
  const double alongNode = p * std::cos(perigee) - q * std::sin(perigee);
  const double across = p * std::sin(perigee) + q * std::cos(perigee);
  return {alongNode * std::cos(node) - across * std::cos(inclination) * std::sin(node),
          alongNode * std::sin(node) + across * std::cos(inclination) * std::cos(node), across * std::sin(inclination)};
}

// Direction of the Sun on a circle along the ecliptic.
Triple SunDirection(double day) {
  const double longitude = 2 * kPi * (day - kDemoFirstDay) / kYear;
  const double tilt = DegToRad(kObliquity);
  return {std::cos(longitude), std::sin(longitude) * std::cos(tilt), std::sin(longitude) * std::sin(tilt)};
}

// The quaternion of the rotation whose matrix has these columns, from the largest of its four parts.
Versor VersorOf(const Triple& x, const Triple& y, const Triple& z) {
  const std::array<double, 4> squares = {1 + x[0] + y[1] + z[2], 1 + x[0] - y[1] - z[2], 1 - x[0] + y[1] - z[2],
                                         1 - x[0] - y[1] + z[2]};
  const auto largest = std::max_element(squares.begin(), squares.end());
  const double four = 2 * std::sqrt(*largest);
  switch (largest - squares.begin()) {
    case 0:
      return {four / 4, (y[2] - z[1]) / four, (z[0] - x[2]) / four, (x[1] - y[0]) / four};
    case 1:
      return {(y[2] - z[1]) / four, four / 4, (x[1] + y[0]) / four, (z[0] + x[2]) / four};
    case 2:
      return {(z[0] - x[2]) / four, (x[1] + y[0]) / four, four / 4, (y[2] + z[1]) / four};
    default:
      return {(x[1] - y[0]) / four, (z[0] + x[2]) / four, (y[2] + z[1]) / four, four / 4};
  }
}

// Few enough digits that the file is the same whatever the last place of the machine's sine.
std::string Places(double value, double unit) {
  return NumberText(std::round(value / unit) * unit);
}

std::string DayText(double day) {
  return Places(day, 1e-8);
}

}  // namespace

PlotHeader DemoHeader() {
  PlotHeader header;
  header.workbook = "OrvValisDemo.xls";
  header.sheet = "Demo";
  // A scale other than 1 switches the Earth on.
  header.specification = "=0.001*MAX(A2:M" + std::to_string(kDemoPoints + 1) + ")";
  header.scale = 0.001;
  header.options = std::string(kDefaultPlotOptions);
  header.date = PlotDate({2003, 3, 21, 0, 0, 0});
  return header;
}

std::vector<std::vector<std::string>> DemoLines() {
  std::vector<std::vector<std::string>> lines;
  Versor before{};
  for (int k = 0; k < kDemoPoints; ++k) {
    const double share = static_cast<double>(k) / (kDemoPoints - 1);
    const double day = kDemoFirstDay + share * kPeriod / 86400;
    const Triple position = OrbitPosition(share);
    const Triple sun = SunDirection(day);
    // Third axis to the Earth, second axis square to the Sun, so that the panels can face it by turning about that
    // axis.
    const Triple nadir = Unit({-position[0], -position[1], -position[2]});
    const Triple panelAxis = Unit(Cross(nadir, sun));
    const Triple first = Cross(panelAxis, nadir);
    Versor attitude = VersorOf(first, panelAxis, nadir);
    double sameSide = 0;
    for (std::size_t n = 0; n < 4; ++n) sameSide += attitude[n] * before[n];
    if (sameSide < 0) {
      for (double& part : attitude) part = -part;
    }
    before = attitude;
    const double panelAngle = RadToDeg(std::atan2(Dot(sun, first), Dot(sun, nadir)));

    std::vector<std::string> line;
    for (const double coordinate : position) line.push_back(Places(coordinate, 1e-6));
    line.push_back(DayText(day));
    const bool hasEvent = static_cast<std::size_t>(k) < kEvents.size();
    const ThrustEvent event = hasEvent ? kEvents[static_cast<std::size_t>(k)] : ThrustEvent{0, ""};
    line.push_back(hasEvent ? DayText(kDemoFirstDay + event.hour / 24) : "");
    line.push_back(event.state);
    line.push_back(DayText(day));
    for (const double part : attitude) line.push_back(Places(part, 1e-10));
    line.push_back(DayText(day));
    line.push_back(Places(panelAngle, 1e-6));
    lines.push_back(std::move(line));
  }
  return lines;
}

void EnsureDemoPlot(const std::string& name) {
  const fs::path path = PathOf(name);
  std::error_code error;
  if (name.empty()) Raise(FailureNumber::FileNotFound);
  if (fs::exists(path, error)) return;
  if (path.has_parent_path()) fs::create_directories(path.parent_path(), error);
  WritePlotFile(name, DemoHeader(), DemoLines());
}

}  // namespace orv
