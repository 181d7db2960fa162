#pragma once

#include <array>
#include <string>

// What SolarSystem knows of the bodies before it computes anything.
namespace orv {

inline constexpr int kOrbitRows = 10;  // bodies 0 to 9
inline constexpr int kFirstSatellite = 18;
inline constexpr int kFirstSaturnSatellite = 22;
inline constexpr int kLastSatellite = 25;
inline constexpr int kSatelliteRows = kLastSatellite - kFirstSatellite + 1;
inline constexpr int kBodyRecords = 12;

// Mean elements, linear in time: angles in radians, rates in radians a day, time in days from 31 December 1900, mean
// ecliptic of date.
struct OrbitElements {
  std::string name;
  double meanLongitude = 0;
  double meanLongitudeRate = 0;
  double semiMajorAxis = 0;  // astronomical units
  double perihelion = 0;     // its longitude
  double perihelionRate = 0;
  double node = 0;
  double nodeRate = 0;
  double eccentricity = 0;
  double inclination = 0;
  double iterations = 0;  // Kepler's equation is iterated while a counter from 0 is not above twice this
};

// Circular orbit round a planet in the plane of the ecliptic.
struct SatelliteElements {
  double longitude = 0;  // radians
  double rate = 0;       // radians a day
  double distance = 0;   // radii of the planet
};

struct BodyRecord {
  std::string name;
  double gravity = 0;  // m^3/s^2
  double periodDays = 0;
  double inclinationDeg = 0;
  double eccentricity = 0;
  double nodeDeg = 0;
  double perihelionDeg = 0;
  std::string centralBody;
  double radiusKm = 0;
  double rotationDays = 0;
  double tiltDeg = 0;
  double planeInclinationDeg = 0;
  double planeCosine = 0;
  double planeSine = 0;
};

std::array<OrbitElements, kOrbitRows> MakeOrbitTable();
std::array<SatelliteElements, kSatelliteRows> MakeSatelliteTable();
// The Sun, the planets with the Moon behind the Earth, and the Sun once more with another value of its gravity.
std::array<BodyRecord, kBodyRecords> MakeBodyTable();

}  // namespace orv
