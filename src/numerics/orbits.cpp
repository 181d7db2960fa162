#include "numerics/orbits.h"

#include <cmath>

#include "numerics/angles.h"

namespace orv {
namespace {

constexpr double kLargestZ = 0.000000000001;  // metres that the Sun and the Earth may stand off the ecliptic
constexpr double kDaysToJ2000 = 36160.5;      // from the epoch of the elements to 1 January 2000 12h
constexpr double kDaysOfCentury = 36525;
constexpr int kEarthRecord = 3;
constexpr int kJupiterRecord = 6;
constexpr int kSaturnRecord = 7;

Vector3 FromSphere(double radius, double longitude, double latitude) {
  return {std::cos(latitude) * radius * std::cos(longitude), std::cos(latitude) * radius * std::sin(longitude),
          std::sin(latitude) * radius};
}

// One term of a theory: its amplitude and its argument, both in degrees, at J2000 and by century.
struct Term {
  double amplitude;
  double phase;
  double rate;
};

constexpr std::array<Term, 6> kMoonLongitude = {{{6.29, 135.0, 477198.87},
                                                 {-1.27, 259.3, -413335.36},
                                                 {0.66, 235.7, 890534.22},
                                                 {0.21, 269.9, 954397.74},
                                                 {-0.19, 357.5, 35999.05},
                                                 {-0.11, 186.5, 966404.03}}};
constexpr std::array<Term, 4> kMoonLatitude = {
    {{5.13, 93.3, 483202.02}, {0.28, 228.2, 960400.89}, {-0.28, 318.3, 6003.15}, {-0.17, 217.6, -407332.21}}};
constexpr std::array<Term, 4> kMoonParallax = {
    {{0.0518, 135.0, 477198.87}, {0.0095, 259.3, -413335.36}, {0.0078, 235.7, 890534.22}, {0.0028, 269.9, 954397.74}}};
constexpr double kMoonMeanLongitude = 218.32;
constexpr double kMoonMeanRate = 481267.881;
constexpr double kMoonMeanParallax = 0.9508;

double SinusOf(const Term& term, double centuries) {
  return term.amplitude * std::sin(DegToRad(term.phase + term.rate * centuries));
}
double CosinusOf(const Term& term, double centuries) {
  return term.amplitude * std::cos(DegToRad(term.phase + term.rate * centuries));
}

}  // namespace

void SolarSystem::FillTables() {
  if (filled_) return;
  elements_ = MakeOrbitTable();
  satellites_ = MakeSatelliteTable();
  bodies_ = MakeBodyTable();
  filled_ = true;
}

std::array<OrbitElements, kOrbitRows>& SolarSystem::Elements() {
  FillTables();
  sun_.time.reset();
  earth_.time.reset();
  return elements_;
}

std::array<SatelliteElements, kSatelliteRows>& SolarSystem::Satellites() {
  FillTables();
  return satellites_;
}

const BodyRecord& SolarSystem::Body(int record) {
  FillTables();
  if (record < 0 || record >= kBodyRecords) Raise(FailureNumber::SubscriptOutOfRange);
  return bodies_[static_cast<std::size_t>(record)];
}

// The place on the mean orbit at a time; for the Earth the point opposite to the apparent Sun's.
Vector3 SolarSystem::OnOrbit(double t, int body) const {
  const OrbitElements& orbit = elements_[static_cast<std::size_t>(body)];
  const double perihelion = orbit.perihelion + orbit.perihelionRate * t;
  const double meanAnomaly = orbit.meanLongitude + orbit.meanLongitudeRate * t - perihelion;
  double anomaly = meanAnomaly;
  for (int pass = 0; pass <= 2 * orbit.iterations; ++pass) {
    anomaly = orbit.eccentricity * std::sin(anomaly) + meanAnomaly;
  }
  const double trueAnomaly =
      2 * std::atan(std::tan(anomaly / 2) * std::sqrt((1 + orbit.eccentricity) / (1 - orbit.eccentricity)));
  const double node = orbit.node + orbit.nodeRate * t;
  const double argument = (perihelion - node) + trueAnomaly;
  double reduced = argument;
  if (std::cos(argument) != 0) {
    reduced = std::atan(std::tan(argument) * std::cos(orbit.inclination));
    if (std::cos(argument) < 0) reduced += kPi;
  }
  double longitude = reduced + node;
  if (body == kBodyEarth) longitude += kPi;
  const double latitude = std::atan(std::sin(reduced) * std::tan(orbit.inclination));
  const double radius = kAstronomicalUnit * orbit.semiMajorAxis * (1 - orbit.eccentricity * std::cos(anomaly));
  return FromSphere(radius, longitude, latitude);
}

void SolarSystem::CheckPlane(double z, const std::string& name) {
  if (!(std::abs(z) > kLargestZ)) return;
  prompt_.dialogs().Tell("error p_tarquinEcliptic Abs(" + name + ") > 0.000000000001  ", "", Icon::Critical);
  prompt_.AbortQuestion();
}

const Vector3& SolarSystem::ApparentSun(double t) {
  if (sun_.time == t) return sun_.position;
  sun_.position = OnOrbit(t, kBodySun);
  sun_.time = t;
  ++sunComputations_;
  CheckPlane(sun_.position(3), "Zts");
  return sun_.position;
}

const Vector3& SolarSystem::Earth(double t) {
  if (earth_.time == t) return earth_.position;
  earth_.position = OnOrbit(t, kBodyEarth);
  earth_.time = t;
  CheckPlane(earth_.position(3), "Rst(3)");
  return earth_.position;
}

// The Moon from the Earth's centre by the low-precision formulae of the Astronomical Almanac (section D): longitude to
// 0.3 degrees, latitude to 0.2, parallax to 0.003, mean ecliptic and equinox of date.
Vector3 SolarSystem::MoonFromEarth(double t) {
  const double centuries = (t - kDaysToJ2000) / kDaysOfCentury;
  double longitude = kMoonMeanLongitude + kMoonMeanRate * centuries;
  for (const Term& term : kMoonLongitude) longitude += SinusOf(term, centuries);
  double latitude = 0;
  for (const Term& term : kMoonLatitude) latitude += SinusOf(term, centuries);
  double parallax = kMoonMeanParallax;
  for (const Term& term : kMoonParallax) parallax += CosinusOf(term, centuries);
  const double earthRadius = Body(kEarthRecord).radiusKm * 1000;
  return FromSphere(earthRadius / std::sin(DegToRad(parallax)), DegToRad(longitude), DegToRad(latitude));
}

Vector3 SolarSystem::FromPlanet(double t, int body) {
  const SatelliteElements& orbit = satellites_[static_cast<std::size_t>(body - kFirstSatellite)];
  const int planet = body < kFirstSaturnSatellite ? kJupiterRecord : kSaturnRecord;
  const double radius = orbit.distance * Body(planet).radiusKm * 1000;
  return FromSphere(radius, orbit.longitude + orbit.rate * t, 0);
}

void SolarSystem::p_tarquinEcliptic(double t, int body, double /*unused*/, Vector3& heliocentric, Vector3& geocentric) {
  FillTables();
  if (body == kBodySun) {
    heliocentric = geocentric = ApparentSun(t);
    sun_.time.reset();  // the next call computes it anew
    return;
  }
  if (body == kBodyMoon) {
    const Vector3 moon = MoonFromEarth(t);
    vCombine(Earth(t), 1, moon, 1, heliocentric);
    geocentric = moon;
    return;
  }
  Vector3 place;
  if (body == kBodyEarth) {
    place = Earth(t);
  } else if (body > kBodySun && body < kOrbitRows) {
    place = OnOrbit(t, body);
  } else if (body >= kFirstSatellite && body <= kLastSatellite) {
    vCombine(OnOrbit(t, body < kFirstSaturnSatellite ? kBodyJupiter : kBodySaturn), 1, FromPlanet(t, body), 1, place);
  } else {
    Raise(FailureNumber::SubscriptOutOfRange);
  }
  const Vector3& sun = ApparentSun(t);
  heliocentric = place;
  geocentric = {place(1) + sun(1), place(2) + sun(2), place(3)};
}

}  // namespace orv
