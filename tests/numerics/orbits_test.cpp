#include "numerics/orbits.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>
#include <string>

#include "numerics/angles.h"
#include "support/scripted_dialogs.h"

namespace orv {
namespace {

// Day number of a date of the Gregorian calendar, day 0 being 30 December 1899.
double DayNumber(int year, int month, double day) {
  const int a = (14 - month) / 12;
  const int y = year + 4800 - a;
  const int m = month + 12 * a - 3;
  return day + (153 * m + 2) / 5 + 365.0 * y + y / 4 - y / 100 + y / 400 - 32045 - 2415019;
}

TEST(DayNumber, OfKnownDates) {
  EXPECT_EQ(DayNumber(1899, 12, 30), 0);
  EXPECT_EQ(DayNumber(1900, 12, 31), kOrbitEpoch);
  EXPECT_EQ(DayNumber(2003, 3, 21), 37701);
  EXPECT_EQ(DayNumber(2000, 1, 1.5), 36526.5);
}

struct Spherical {
  double longitude, latitude, radius;  // degrees, astronomical units of the orbits
};
Spherical SphericalOf(const Vector3& v) {
  const double radius = vNorm(v);
  const double longitude = std::atan2(v(2), v(1)) * 180 / std::numbers::pi;
  return {longitude < 0 ? longitude + 360 : longitude, std::asin(v(3) / radius) * 180 / std::numbers::pi,
          radius / kAstronomicalUnit};
}
// The difference of two angles, -180 to 180.
double Apart(double a, double b) {
  return std::remainder(a - b, 360);
}

struct Sky {
  Spherical FromSun(double day, int body) {
    Vector3 sun, earth;
    system.p_tarquinEcliptic(day - kOrbitEpoch, body, 0, sun, earth);
    return SphericalOf(sun);
  }
  Spherical FromEarth(double day, int body) {
    Vector3 sun, earth;
    system.p_tarquinEcliptic(day - kOrbitEpoch, body, 0, sun, earth);
    return SphericalOf(earth);
  }
  testing::ScriptedDialogs dialogs;
  ErrorPrompt prompt{dialogs};
  SolarSystem system{prompt};
};

// Places from the Sun, ecliptic and equinox of date. J. Meeus, Astronomical Algorithms, 2nd edition: examples 32.a and
// 33.a (VSOP87), 25.a for the Earth of 13 October 1992 (the Sun's longitude less 180 degrees).
struct HeliocentricRow {
  int body;
  int year, month;
  double day;
  double longitude, latitude, radius;
  double tolerance;  // degrees
};
constexpr HeliocentricRow kHeliocentric[] = {
    {2, 1992, 12, 20, 26.11428, -2.62070, 0.724603, 0.02},
    {3, 1992, 12, 20, 88.35704, 0.00014, 0.983824, 0.02},
    {3, 1992, 10, 13, 19.90988, 0, 0.99766, 0.02},
};

TEST(SolarSystem, PlacesFromTheSun) {
  Sky sky;
  for (const HeliocentricRow& row : kHeliocentric) {
    SCOPED_TRACE("body " + std::to_string(row.body) + " on " + std::to_string(row.year) + "-" +
                 std::to_string(row.month) + "-" + std::to_string(row.day));
    const Spherical place = sky.FromSun(DayNumber(row.year, row.month, row.day), row.body);
    EXPECT_NEAR(Apart(place.longitude, row.longitude), 0, row.tolerance) << place.longitude;
    EXPECT_NEAR(place.latitude, row.latitude, row.tolerance);
    EXPECT_NEAR(place.radius, row.radius, 0.0005);
  }
}

// Longitude of the Sun at the beginnings of the seasons (US Naval Observatory) and in example 27.a of Meeus.
struct SeasonRow {
  int year, month, day;
  double hour, longitude;
};
constexpr SeasonRow kSeasons[] = {{2000, 3, 20, 7 + 35 / 60.0, 0},
                                  {2000, 6, 21, 1 + 48 / 60.0, 90},
                                  {2000, 9, 22, 17 + 28 / 60.0, 180},
                                  {2000, 12, 21, 13 + 37 / 60.0, 270},
                                  {2003, 3, 21, 1, 0},
                                  {1962, 6, 21, 21 + 24.7 / 60, 90},
                                  {2020, 12, 21, 10 + 2 / 60.0, 270}};

TEST(SolarSystem, SunAtTheSeasons) {
  Sky sky;
  for (const SeasonRow& row : kSeasons) {
    SCOPED_TRACE(std::to_string(row.year) + "-" + std::to_string(row.month) + "-" + std::to_string(row.day) + " " +
                 std::to_string(row.hour) + "h");
    const Spherical sun = sky.FromEarth(DayNumber(row.year, row.month, row.day + row.hour / 24), kBodySun);
    EXPECT_NEAR(Apart(sun.longitude, row.longitude), 0, 0.03) << sun.longitude;
    EXPECT_EQ(sun.latitude, 0);
  }
}

// Angles between two bodies as seen from the Earth at oppositions, conjunctions and transits, as the almanacs of these
// years gave them.
struct MeetingRow {
  const char* what;
  int body, other;
  int year, month, day;
  double hour, apart;  // degrees of longitude from the other to the body
  double tolerance;
};
constexpr MeetingRow kMeetings[] = {
    {"transit of Mercury", 1, 0, 2003, 5, 7, 7.87, 0, 0.1},
    {"transit of Venus", 2, 0, 2004, 6, 8, 8.33, 0, 0.1},
    {"transit of Venus", 2, 0, 2012, 6, 6, 1.5, 0, 0.1},
    {"opposition of Mars", 4, 0, 2003, 8, 28, 18, 180, 0.3},
    {"opposition of Mars", 4, 0, 2018, 7, 27, 5, 180, 0.3},
    {"opposition of Jupiter", 5, 0, 2003, 2, 2, 9, 180, 0.8},
    {"opposition of Saturn", 6, 0, 2003, 12, 31, 21, 180, 0.25},
    {"opposition of Uranus", 7, 0, 2003, 8, 24, 10, 180, 2.9},
    {"opposition of Neptune", 8, 0, 2003, 8, 4, 14, 180, 0.7},
    {"Jupiter and Saturn", 5, 6, 2020, 12, 21, 18.33, 0, 0.8},
};

TEST(SolarSystem, MeetingsSeenFromTheEarth) {
  Sky sky;
  for (const MeetingRow& row : kMeetings) {
    SCOPED_TRACE(std::string(row.what) + " on " + std::to_string(row.year) + "-" + std::to_string(row.month) + "-" +
                 std::to_string(row.day) + " " + std::to_string(row.hour) + "h");
    const double day = DayNumber(row.year, row.month, row.day + row.hour / 24);
    const double apart = Apart(sky.FromEarth(day, row.body).longitude, sky.FromEarth(day, row.other).longitude);
    EXPECT_NEAR(Apart(apart, row.apart), 0, row.tolerance) << apart;
  }
}

// Keplerian elements for approximate positions of the major planets, 1800 to 2050 (E. M. Standish): semi-major axis,
// eccentricity, inclination, mean longitude, longitudes of perihelion and node at J2000, then their rates a century;
// equinox J2000. Good to some arc minutes for these years.
struct KeplerianRow {
  int body;
  double a, e, i, L, w, O;
  double da, de, di, dL, dw, dO;
  double longitude, latitude, radius;  // tolerances: degrees, degrees, share
};
constexpr KeplerianRow kKeplerian[] = {
    {1, 0.38709927, 0.20563593, 7.00497902, 252.25032350, 77.45779628, 48.33076593, 0.00000037, 0.00001906, -0.00594749,
     149472.67411175, 0.16047689, -0.12534081, 0.02, 0.02, 0.0002},
    {2, 0.72333566, 0.00677672, 3.39467605, 181.97909950, 131.60246718, 76.67984255, 0.00000390, -0.00004107,
     -0.00078890, 58517.81538729, 0.00268329, -0.27769418, 0.02, 0.02, 0.0002},
    {3, 1.00000261, 0.01671123, -0.00001531, 100.46457166, 102.93768193, 0, 0.00000562, -0.00004392, -0.01294668,
     35999.37244981, 0.32327364, 0, 0.02, 0.02, 0.0002},
    {4, 1.52371034, 0.09339410, 1.84969142, -4.55343205, -23.94362959, 49.55953891, 0.00001847, 0.00007882, -0.00813131,
     19140.30268499, 0.44441088, -0.29257343, 0.04, 0.02, 0.0003},
    {5, 5.20288700, 0.04838624, 1.30439695, 34.39644051, 14.72847983, 100.47390909, -0.00011607, -0.00013253,
     -0.00183714, 3034.74612775, 0.21252668, 0.20469106, 0.7, 0.03, 0.0005},
    {6, 9.53667594, 0.05386179, 2.48599187, 49.95424423, 92.59887831, 113.66242448, -0.00125060, -0.00050991,
     0.00193609, 1222.49362201, -0.41897216, -0.28867794, 0.15, 0.02, 0.003},
    {7, 19.18916464, 0.04725744, 0.77263783, 313.23810451, 170.95427630, 74.01692503, -0.00196176, -0.00004397,
     -0.00242939, 428.48202785, 0.40805281, 0.04240589, 2.8, 0.05, 0.003},
    {8, 30.06992276, 0.00859048, 1.77004347, -55.12002969, 44.96476227, 131.78422574, 0.00026291, 0.00005105,
     0.00035372, 218.45945325, -0.32241464, -0.00508664, 0.6, 0.03, 0.003},
    {9, 39.48211675, 0.24882730, 17.14001206, 238.92903833, 224.06891629, 110.30393684, -0.00031596, 0.00005170,
     0.00004818, 145.20780515, -0.04062942, -0.01183482, 0.7, 0.15, 0.005},
};

Spherical ByElements(const KeplerianRow& row, double day) {
  const double T = (day - 36526.5) / 36525;
  const double a = row.a + row.da * T;
  const double e = row.e + row.de * T;
  const double i = DegToRad(row.i + row.di * T);
  const double w = DegToRad(row.w + row.dw * T);
  const double O = DegToRad(row.O + row.dO * T);
  const double M = DegToRad(row.L + row.dL * T) - w;
  double E = M;
  for (int step = 0; step < 30; ++step) E -= (E - e * std::sin(E) - M) / (1 - e * std::cos(E));
  const double p = a * (std::cos(E) - e);
  const double q = a * std::sqrt(1 - e * e) * std::sin(E);
  const double n = p * std::cos(w - O) - q * std::sin(w - O);
  const double m = p * std::sin(w - O) + q * std::cos(w - O);
  Spherical place = SphericalOf({n * std::cos(O) - m * std::sin(O) * std::cos(i),
                                 n * std::sin(O) + m * std::cos(O) * std::cos(i), m * std::sin(i)});
  place.longitude += 1.396971 * T;  // general precession
  place.radius *= kAstronomicalUnit;
  return place;
}

TEST(SolarSystem, PlanetsOfACenturyAgreeWithPublishedElements) {
  Sky sky;
  for (const KeplerianRow& row : kKeplerian) {
    for (double day = DayNumber(1950, 1, 1); day < DayNumber(2050, 1, 1); day += 137.3) {
      SCOPED_TRACE("body " + std::to_string(row.body) + " on day " + std::to_string(day));
      const Spherical place = sky.FromSun(day, row.body);
      const Spherical expected = ByElements(row, day);
      ASSERT_NEAR(Apart(place.longitude, expected.longitude), 0, row.longitude);
      ASSERT_NEAR(place.latitude, expected.latitude, row.latitude);
      ASSERT_NEAR(place.radius / expected.radius, 1, row.radius);
    }
  }
}

// The place of a body from that of the Earth, both seen from the Sun.
Spherical SeenFrom(const Spherical& earth, const Spherical& body) {
  const auto rectangular = [](const Spherical& place) {
    const double l = DegToRad(place.longitude);
    const double b = DegToRad(place.latitude);
    const double r = place.radius * kAstronomicalUnit;
    return Vector3(r * std::cos(b) * std::cos(l), r * std::cos(b) * std::sin(l), r * std::sin(b));
  };
  Vector3 apart;
  vScaleAdd(rectangular(earth), -1, rectangular(body), apart);
  return SphericalOf(apart);
}

// Seen from the Earth a near planet shows more of the error of its place, and of the Earth's.
TEST(SolarSystem, PlanetsOfACenturyAgreeSeenFromTheEarth) {
  struct Row {
    int body;
    double tolerance;  // degrees
  };
  Sky sky;
  for (const Row& row :
       {Row{1, 0.03}, Row{2, 0.03}, Row{4, 0.07}, Row{5, 0.8}, Row{6, 0.2}, Row{7, 2.9}, Row{8, 0.6}, Row{9, 0.7}}) {
    for (double day = DayNumber(1950, 1, 1); day < DayNumber(2050, 1, 1); day += 17.37) {
      const Spherical expected = SeenFrom(ByElements(kKeplerian[2], day), ByElements(kKeplerian[row.body - 1], day));
      const Spherical place = sky.FromEarth(day, row.body);
      const double alongLatitude = Apart(place.longitude, expected.longitude) * std::cos(DegToRad(expected.latitude));
      ASSERT_LT(std::hypot(alongLatitude, place.latitude - expected.latitude), row.tolerance)
          << "body " << row.body << " on day " << day;
    }
  }
}

// Meeus, example 47.a.
TEST(SolarSystem, MoonOfAKnownDay) {
  Sky sky;
  const Spherical moon = sky.FromEarth(DayNumber(1992, 4, 12), kBodyMoon);
  EXPECT_NEAR(moon.longitude, 133.162655, 0.3);
  EXPECT_NEAR(moon.latitude, -3.229126, 0.2);
  EXPECT_NEAR(moon.radius * kAstronomicalUnit / 1000, 368409.7, 0.004 * 368409.7);
}

// Phases of the Moon: Meeus, examples 49.a and 49.b; eclipses and phases of the almanacs.
struct PhaseRow {
  int year, month, day;
  double hour, apart;  // degrees of longitude from the Sun
};
constexpr PhaseRow kPhases[] = {{1977, 2, 18, 3.63, 0},   {2044, 1, 21, 23.8, 270},  {1999, 8, 11, 11.13, 0},
                                {2000, 1, 21, 4.68, 180}, {2003, 3, 18, 10.57, 180}, {2003, 5, 31, 4.33, 0},
                                {2018, 7, 27, 20.33, 180}};

TEST(SolarSystem, PhasesOfTheMoon) {
  Sky sky;
  for (const PhaseRow& row : kPhases) {
    SCOPED_TRACE(std::to_string(row.year) + "-" + std::to_string(row.month) + "-" + std::to_string(row.day) + " " +
                 std::to_string(row.hour) + "h");
    const double day = DayNumber(row.year, row.month, row.day + row.hour / 24);
    const double apart = Apart(sky.FromEarth(day, kBodyMoon).longitude, sky.FromEarth(day, kBodySun).longitude);
    EXPECT_NEAR(Apart(apart, row.apart), 0, 0.4) << apart;
  }
}

TEST(SolarSystem, TheMoonFromTheSunStandsBesideTheEarth) {
  Sky sky;
  Vector3 moonFromSun, moon, earth, none;
  sky.system.p_tarquinEcliptic(36000, kBodyMoon, 4, moonFromSun, moon);
  sky.system.p_tarquinEcliptic(36000, kBodyEarth, 0, earth, none);
  for (std::size_t k = 1; k <= 3; ++k) EXPECT_EQ(moonFromSun(k), earth(k) + moon(k));
  EXPECT_NEAR(vNorm(moon) / 1000, 384400, 25000);
}

// Mean longitudes of the satellites of Jupiter (J. H. Lieske's theory E2, in Meeus chapter 44), equinox 1950.
struct SatelliteRow {
  int body;
  double longitude, rate;  // at 10 August 1976 0h, degrees a day
  double distance;         // radii of the planet
};
constexpr SatelliteRow kSatellites[] = {{18, 106.07719, 203.488955790, 5.9059},
                                        {19, 175.73161, 101.374724735, 9.3969},
                                        {20, 120.55883, 50.317609207, 14.989},
                                        {21, 84.44459, 21.571071177, 26.3641}};

TEST(SolarSystem, SatellitesOfJupiter) {
  Sky sky;
  for (const SatelliteRow& row : kSatellites) {
    for (const double day : {DayNumber(1976, 8, 10), DayNumber(2003, 3, 21)}) {
      SCOPED_TRACE("body " + std::to_string(row.body) + " on day " + std::to_string(day));
      Vector3 satellite, planet, fromEarth, planetFromEarth;
      sky.system.p_tarquinEcliptic(day - kOrbitEpoch, row.body, 0, satellite, fromEarth);
      sky.system.p_tarquinEcliptic(day - kOrbitEpoch, kBodyJupiter, 0, planet, planetFromEarth);
      Vector3 offset, offsetFromEarth;
      vCombine(satellite, 1, planet, -1, offset);
      vCombine(fromEarth, 1, planetFromEarth, -1, offsetFromEarth);
      const double precession = 1.397 * (day - DayNumber(1950, 1, 1)) / 36525;
      const double expected = row.longitude + row.rate * (day - DayNumber(1976, 8, 10)) + precession;
      EXPECT_NEAR(Apart(SphericalOf(offset).longitude, expected), 0, 0.15);
      EXPECT_NEAR(offset(3), 0, 1);
      EXPECT_NEAR(vNorm(offset) / 71492e3, row.distance, 1e-6);
      for (std::size_t k = 1; k <= 3; ++k) EXPECT_NEAR(offset(k), offsetFromEarth(k), 1e-3);
    }
  }
}

TEST(SolarSystem, SatellitesOfSaturnCircleInTheirPeriods) {
  Sky sky;
  const struct {
    int body;
    double periodDays, distance;
  } rows[] = {{22, 1.8878, 4.877}, {23, 2.7369, 6.2464}, {24, 4.5175, 8.723}, {25, 15.9454, 20.213}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.body);
    const auto offset = [&](double t) {
      Vector3 satellite, planet, none, out;
      sky.system.p_tarquinEcliptic(t, row.body, 0, satellite, none);
      sky.system.p_tarquinEcliptic(t, kBodySaturn, 0, planet, none);
      vCombine(satellite, 1, planet, -1, out);
      return SphericalOf(out);
    };
    EXPECT_NEAR(Apart(offset(37000 + row.periodDays).longitude, offset(37000).longitude), 0, 0.1);
    EXPECT_NEAR(Apart(offset(37000 + row.periodDays / 4).longitude, offset(37000).longitude), 90, 0.1);
    EXPECT_NEAR(offset(37000).radius * kAstronomicalUnit / 60268e3, row.distance, 1e-6);
  }
}

TEST(SolarSystem, SunAndEarthStandOpposite) {
  Sky sky;
  for (const double day : {0.0, 20000.0, 37701.0}) {
    EXPECT_NEAR(std::abs(Apart(sky.FromEarth(day, kBodySun).longitude, sky.FromSun(day, kBodyEarth).longitude)), 180,
                1e-9);
    Vector3 sun, both, earth, fromEarth;
    sky.system.p_tarquinEcliptic(day - kOrbitEpoch, kBodySun, 0, sun, both);
    for (std::size_t k = 1; k <= 3; ++k) EXPECT_EQ(sun(k), both(k));
    sky.system.p_tarquinEcliptic(day - kOrbitEpoch, kBodyEarth, 0, earth, fromEarth);
    EXPECT_NEAR(vNorm(fromEarth), 0, 1e-3);
  }
}

TEST(SolarSystem, TheSunIsComputedOnceForATime) {
  Sky sky;
  Vector3 a, b;
  sky.system.p_tarquinEcliptic(100, 4, 0, a, b);
  EXPECT_EQ(sky.system.SunComputations(), 1);
  sky.system.p_tarquinEcliptic(100, 4, 0, a, b);
  sky.system.p_tarquinEcliptic(100, 5, 0, a, b);
  sky.system.p_tarquinEcliptic(100, kBodySun, 0, a, b);
  EXPECT_EQ(sky.system.SunComputations(), 1);
  // The Sun itself leaves the kept time stale.
  sky.system.p_tarquinEcliptic(100, 4, 0, a, b);
  EXPECT_EQ(sky.system.SunComputations(), 2);
  sky.system.p_tarquinEcliptic(101.02, 4, 0, a, b);
  EXPECT_EQ(sky.system.SunComputations(), 3);
}

// By the number of passes: none for Uranus and Neptune, seven for the Earth.
TEST(SolarSystem, KeplersEquationTakesItsFixedPasses) {
  const struct { int body, passes; } rows[] = {{1, 5}, {2, 5}, {3, 7}, {4, 4}, {5, 3}, {6, 4}, {7, 0}, {8, 0}, {9, 17}};
  Sky sky;
  for (const auto& row : rows) {
    SCOPED_TRACE(row.body);
    const OrbitElements orbit = sky.system.Elements()[static_cast<std::size_t>(row.body)];
    const double t = 12345;
    const double M = orbit.meanLongitude + orbit.meanLongitudeRate * t - (orbit.perihelion + orbit.perihelionRate * t);
    double E = M;
    for (int pass = 0; pass < row.passes; ++pass) E = M + orbit.eccentricity * std::sin(E);
    const double radius = sky.FromSun(t + kOrbitEpoch, row.body).radius;
    EXPECT_NEAR(radius, orbit.semiMajorAxis * (1 - orbit.eccentricity * std::cos(E)), 1e-12 * radius);
  }
}

TEST(SolarSystem, AnOrbitOffTheEclipticIsTold) {
  const struct {
    std::size_t element;
    int body;
    const char* text;
  } rows[] = {{kBodySun, 4, "error p_tarquinEcliptic Abs(Zts) > 0.000000000001  "},
              {kBodyEarth, kBodyEarth, "error p_tarquinEcliptic Abs(Rst(3)) > 0.000000000001  "}};
  for (const auto& row : rows) {
    Sky sky;
    Vector3 a, b;
    sky.system.p_tarquinEcliptic(50, row.body, 0, a, b);
    EXPECT_TRUE(sky.dialogs.boxes.empty());
    sky.system.Elements()[row.element].inclination = 0.1;
    sky.system.p_tarquinEcliptic(50, row.body, 0, a, b);
    ASSERT_EQ(sky.dialogs.boxes.size(), 2U);
    EXPECT_EQ(sky.dialogs.boxes[0].text, row.text);
    EXPECT_EQ(sky.dialogs.boxes[1].buttons, Buttons::AbortRetryIgnore);
    sky.system.Elements();
    sky.dialogs.answers = {Answer::Abort};
    EXPECT_THROW(sky.system.p_tarquinEcliptic(50, row.body, 0, a, b), ProgramEnd);
  }
}

TEST(SolarSystem, OtherBodiesAreRefused) {
  Sky sky;
  Vector3 a, b;
  for (const int body : {-1, 10, 17, 26, 30, 32}) {
    try {
      sky.system.p_tarquinEcliptic(0, body, 0, a, b);
      ADD_FAILURE() << body;
    } catch (const RuntimeFailure& failure) {
      EXPECT_EQ(failure.number(), FailureNumber::SubscriptOutOfRange) << body;
    }
  }
}

TEST(SolarSystem, BodyTable) {
  Sky sky;
  const char* const names[] = {"Sun",     "Mercury", "Venus",  "Earth",   "Moon", "Mars",
                               "Jupiter", "Saturn",  "Uranus", "Neptune", "Pluto"};
  for (int record = 0; record <= 10; ++record) {
    const BodyRecord& body = sky.system.Body(record);
    EXPECT_EQ(body.name, names[record]);
    EXPECT_GT(body.rotationDays, 0) << body.name;
    const double plane = body.planeInclinationDeg * std::numbers::pi / 180;
    EXPECT_NEAR(body.planeCosine, std::cos(plane), 1e-14) << body.name;
    EXPECT_NEAR(body.planeSine, std::sin(plane), 1e-14) << body.name;
    // The two inclinations of the table are of one orbit; the Moon's differ by its wobble.
    EXPECT_NEAR(body.planeInclinationDeg, body.inclinationDeg, 0.15) << body.name;
  }
  EXPECT_EQ(sky.system.Body(11).gravity, 1.3271244e+20);
  EXPECT_THROW(sky.system.Body(12), RuntimeFailure);
  EXPECT_THROW(sky.system.Body(-1), RuntimeFailure);
  // Kepler's third law binds periods, the Sun's gravity and the semi-major axes of the elements.
  const struct {
    int record, element;
    double tolerance;
  } orbits[] = {{1, 1, 1e-3}, {2, 2, 1e-3}, {3, 3, 1e-3}, {5, 4, 1e-3}, {6, 5, 2e-3},
                {7, 6, 5e-3}, {8, 7, 5e-3}, {9, 8, 5e-3}, {10, 9, 1e-2}};
  for (const auto& row : orbits) {
    const double seconds = sky.system.Body(row.record).periodDays * 86400;
    const double axis = std::cbrt(sky.system.Body(11).gravity * std::pow(seconds / (2 * std::numbers::pi), 2));
    const double listed = sky.system.Elements()[static_cast<std::size_t>(row.element)].semiMajorAxis;
    EXPECT_NEAR(axis / 1.495978707e11 / listed, 1, row.tolerance) << row.record;
  }
}

}  // namespace
}  // namespace orv
