#include "view/planets.h"

#include <algorithm>
#include <cmath>

#include "numerics/angles.h"
#include "numerics/paths.h"
#include "view/texture_file.h"

namespace orv {
namespace {

constexpr double kSiderealDay = 86164.09;  // s
constexpr double kEarthStartDeg = -130;    // of the Earth's picture on the reference day
constexpr double kMoonRotationDays = 27.32166;
constexpr double kMoonOrbitDays = 27.5;
constexpr double kSunLineShare = 1.25;
constexpr double kFirstAngle = 1;

double SiderealTurn(double day) {
  return (day - kReferenceDay) * 360 * 86400 / kSiderealDay;
}

Vec3 Kilometres(const Vector3& metres) {
  return {metres(1) / 1000, metres(2) / 1000, metres(3) / 1000};
}

}  // namespace

double ReducedAngle(double degrees) {
  const double reduced = degrees - 360 * std::floor(degrees / 360);
  return reduced >= 360 ? 0 : reduced;  // a tiny negative angle rounds up to a whole turn
}

double EarthAngle(double day) {
  return ReducedAngle(kEarthStartDeg + SiderealTurn(day));
}

double MoonViewAngle(double day) {
  return ReducedAngle(kEarthStartDeg + (day - kReferenceDay) * 360 / kMoonRotationDays);
}

double MoonAngle(double day) {
  const double turns = (day - kReferenceDay) / kMoonOrbitDays;
  return ReducedAngle((turns - std::trunc(turns)) * 360 + 180);
}

Vec3 EquatorFromEcliptic(const Vec3& place) {
  const double tilt = DegToRad(kEclipticTiltDeg);
  return {place[0], place[1] * std::cos(tilt) - place[2] * std::sin(tilt),
          place[1] * std::sin(tilt) + place[2] * std::cos(tilt)};
}

Vec3 SunPlace(SolarSystem& sky, double day) {
  Vector3 fromSun;
  Vector3 fromEarth;
  sky.p_tarquinEcliptic(day - kOrbitEpoch, kBodySun, 0, fromSun, fromEarth);
  return EquatorFromEcliptic(Kilometres(fromEarth));
}

Vec3 MoonOnEcliptic(SolarSystem& sky, double day) {
  Vector3 fromSun;
  Vector3 fromEarth;
  sky.p_tarquinEcliptic(day - kOrbitEpoch, kBodyMoon, 4, fromSun, fromEarth);
  return Kilometres(fromEarth);
}

ShownPoint PointShown(const ClassGl& scene, const PointLists& lists) {
  ShownPoint shown;
  if (lists.NumberPoints == kNoEntry) return shown;
  shown.entry = std::clamp(scene.CURRINDEXI(), 0, lists.NumberPoints);
  const float day = lists.PointList(0, shown.entry);
  if (std::isfinite(day)) shown.day = day;
  for (std::size_t axis = 0; axis < 3; ++axis) {
    const float at = lists.PointList(axis + 1, shown.entry);
    if (std::isfinite(at)) shown.place[axis] = at;
  }
  return shown;
}

double CentralRadiusKm(const PointLists& lists) {
  return lists.MoonView ? kMoonRadiusKm : kEarthRadiusKm;
}

double SunLineLength(const ClassGl& scene, const PointLists& lists) {
  const double radius =
      lists.EarthOn ? CentralRadiusKm(lists) * lists.FactorScale : static_cast<double>(scene.RRMAXAXES());
  return kSunLineShare * radius;
}

double TurningAngle::At(const ClassGl& scene, const PointLists& lists, double angleOfTime, double day) {
  const int index = scene.CURRINDEXI();
  if (index == scene.CURRINDEXMINI()) {
    atEnd_ = false;
    degrees_ = kFirstAngle;
  } else if (index < lists.NumberPoints) {
    atEnd_ = false;
    degrees_ = angleOfTime;
  } else if (!atEnd_ || endDay_ != day) {
    atEnd_ = true;
    endDay_ = day;
    degrees_ = angleOfTime;
  }
  return degrees_;
}

bool TurningAngle::Step() {
  if (!atEnd_) return false;
  degrees_ = ReducedAngle(degrees_ + step_);
  return true;
}

GLuint SphereTextures::Texture(GlApi& gl, const std::string& file) {
  const auto made = textures_.find(file);
  if (made != textures_.end()) return made->second;
  GLuint& texture = textures_[file];
  texture = 0;
  if (file.empty()) return 0;
  Image image;
  const std::string name = TextOf(PathOf(folder_) / PathOf(file));
  std::string message = ReadTexture(name, image);
  if (message.empty()) {
    texture = gl.MakeTexture(image.width, image.height, image.rgb);
    if (texture == 0) message = "The picture " + name + " was not shown: OpenGL does not take it.";
  }
  if (!message.empty() && !told_[file]) {
    told_[file] = true;
    dialogs_.Log(message + " The sphere keeps its plain colour.");
  }
  return texture;
}

void SphereTextures::NewContext() {
  textures_.clear();
}

}  // namespace orv
