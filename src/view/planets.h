#pragma once

#include <map>
#include <string>

#include "numerics/orbits.h"
#include "view/class_gl.h"

namespace orv {

inline constexpr double kEarthRadiusKm = 6378;
inline constexpr double kMoonRadiusKm = 1738;           // as central body
inline constexpr double kMoonSatelliteRadiusKm = 1740;  // as satellite of the Earth
inline constexpr double kSunDistanceKm = 150000000;
inline constexpr double kReferenceDay = 37701;  // 21 March 2003
inline constexpr double kEclipticTiltDeg = 23.45;
inline constexpr int kSphereSlices = 106;

// An angle in degrees brought to 0 .. 360.
double ReducedAngle(double degrees);
// Turn of the Earth about its axis at a day number, by the sidereal day of 86164.09 s; of the Moon as central body; of
// the Moon as satellite of the Earth. Degrees, 0 to 360.
double EarthAngle(double day);
double MoonViewAngle(double day);
double MoonAngle(double day);
// Places at a day number from the Earth's centre, km: of the Sun in the frame of the Earth's equator, of the Moon in
// that of the ecliptic.
Vec3 SunPlace(SolarSystem& sky, double day);
Vec3 MoonOnEcliptic(SolarSystem& sky, double day);
Vec3 EquatorFromEcliptic(const Vec3& place);

// The point of a plot that a paint shows last: its entry, its day number (the value of the point) and its place in the
// scene.
struct ShownPoint {
  int entry = 0;
  double day = kReferenceDay;
  Vec3 place{};
};
ShownPoint PointShown(const ClassGl& scene, const PointLists& lists);

// Radius of the central body in km, and of what the line to the Sun is measured by, in scene units: the central body of
// an orbit plot, the scene of any other.
double CentralRadiusKm(const PointLists& lists);
double SunLineLength(const ClassGl& scene, const PointLists& lists);

// The turn of a body: by the time while the plot grows, 1 degree at its first point, by steps of the timer at its end.
class TurningAngle {
 public:
  explicit TurningAngle(double step) : step_(step) {}
  double At(const ClassGl& scene, const PointLists& lists, double angleOfTime, double day);
  bool Step();  // false while the plot is not at its end
  void SetStep(double step) { step_ = step; }
  double Degrees() const { return degrees_; }

 private:
  double step_;
  double degrees_ = 1;
  bool atEnd_ = false;
  double endDay_ = 0;
};

// Pictures on spheres, by file name: read once, made once a context. What is wrong with a file is logged once.
class SphereTextures {
 public:
  SphereTextures(UserDialogs& dialogs, std::string folder) : dialogs_(dialogs), folder_(std::move(folder)) {}
  // The texture of a file of the folder, 0 when there is none.
  GLuint Texture(GlApi& gl, const std::string& file);
  void NewContext();

 private:
  UserDialogs& dialogs_;
  std::string folder_;
  std::map<std::string, GLuint> textures_;
  std::map<std::string, bool> told_;
};

}  // namespace orv
