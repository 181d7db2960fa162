#pragma once

#include <optional>

#include "numerics/error_prompt.h"
#include "numerics/orbit_tables.h"
#include "numerics/vectors.h"

namespace orv {

inline constexpr double kAstronomicalUnit = 1.5e11;  // metres, as the orbits count it
inline constexpr double kOrbitEpoch = 366;           // day number of the epoch of the elements: subtract it from a date
inline constexpr int kBodySun = 0;
inline constexpr int kBodyEarth = 3;
inline constexpr int kBodyJupiter = 5;
inline constexpr int kBodySaturn = 6;
inline constexpr int kBodyMoon = 31;

// Places of the bodies of the solar system. Its tables are filled at the first call; the last places of the Sun and of
// the Earth are kept.
class SolarSystem {
 public:
  explicit SolarSystem(ErrorPrompt& prompt) : prompt_(prompt) {}

  // Place of a body at a time t in days from 31 December 1900 0h (a day number less kOrbitEpoch), in metres, mean
  // ecliptic and equinox of date: from the Sun, and from the Earth (Z of the Sun and the planets counts from the Sun,
  // which is the same). Bodies: 0 the apparent Sun, in both outputs; 1 to 9 the planets, 3 the Earth; 18 to 21 the
  // satellites of Jupiter; 22 to 25 those of Saturn; 31 the Moon. `unused` is for callers that name a parent body.
  // Failure 9 for any other body.
  //
  // Directions from the Sun agree with published ones to 0.05 degrees for Mercury to Mars, 0.7 for Jupiter, Neptune and
  // Pluto, 0.2 for Saturn and 2.8 for Uranus, 1950 to 2050; seen from the Earth Mercury to Mars to 0.07, Jupiter to 0.8
  // and Uranus to 2.9. The Moon agrees to 0.4.
  void p_tarquinEcliptic(double t, int body, double unused, Vector3& heliocentric, Vector3& geocentric);

  // The tables; a change of an element holds from the next computation on.
  std::array<OrbitElements, kOrbitRows>& Elements();
  std::array<SatelliteElements, kSatelliteRows>& Satellites();
  // Record 0 .. 11; failure 9 outside.
  const BodyRecord& Body(int record);

  // How often the place of the apparent Sun was computed.
  long SunComputations() const { return sunComputations_; }

 private:
  struct Place {
    std::optional<double> time;
    Vector3 position;
  };
  void FillTables();
  Vector3 OnOrbit(double t, int body) const;
  const Vector3& ApparentSun(double t);
  const Vector3& Earth(double t);
  Vector3 MoonFromEarth(double t);
  Vector3 FromPlanet(double t, int body);
  void CheckPlane(double z, const std::string& name);

  ErrorPrompt& prompt_;
  bool filled_ = false;
  std::array<OrbitElements, kOrbitRows> elements_;
  std::array<SatelliteElements, kSatelliteRows> satellites_;
  std::array<BodyRecord, kBodyRecords> bodies_;
  Place sun_;
  Place earth_;
  long sunComputations_ = 0;
};

}  // namespace orv
