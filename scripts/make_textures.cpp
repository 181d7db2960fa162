// Draws the pictures that the view wraps round the Earth and the Moon: coastlines as coarse polygons put down by hand,
// climate, maria and craters as ellipses and circles, the rest noise. Always the same pictures.
//
//     make_textures FOLDER        writes earthjpg.jpg and moonjpg.jpg

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <jpeglib.h>
#include <numbers>
#include <string>
#include <vector>

namespace {

constexpr int kWidth = 2048;
constexpr int kHeight = 1024;
// Longitude of the left edge. The sphere begins its picture a quarter turn from its x axis and the view turns it by
// -130 degrees on 21 March 2003 0h: Greenwich then stands at its sidereal time, 178.1 degrees.
constexpr double kEarthLeft = -218.1;
// On that day the view turns the Moon by 180 degrees and the Moon stands at the ecliptic longitude 215.7: its near side
// looks to the Earth.
constexpr double kMoonLeft = -125.7;

struct Colour {
  double red, green, blue;
};
Colour Mix(const Colour& a, const Colour& b, double share) {
  const double s = std::clamp(share, 0.0, 1.0);
  return {a.red + (b.red - a.red) * s, a.green + (b.green - a.green) * s, a.blue + (b.blue - a.blue) * s};
}
Colour Bright(const Colour& a, double factor) {
  return {a.red * factor, a.green * factor, a.blue * factor};
}
double Smooth(double low, double high, double x) {
  const double t = std::clamp((x - low) / (high - low), 0.0, 1.0);
  return t * t * (3 - 2 * t);
}

struct Place {
  double lon, lat;  // degrees
};
struct Direction {
  double x, y, z;
};
double Radians(double degrees) {
  return degrees * std::numbers::pi / 180;
}
Direction Towards(const Place& p) {
  const double c = std::cos(Radians(p.lat));
  return {c * std::cos(Radians(p.lon)), c * std::sin(Radians(p.lon)), std::sin(Radians(p.lat))};
}
double AngleBetween(const Direction& a, const Direction& b) {
  return std::acos(std::clamp(a.x * b.x + a.y * b.y + a.z * b.z, -1.0, 1.0)) * 180 / std::numbers::pi;
}

// Noise on a lattice in space, so that it has no seam on the sphere.
double Lattice(int x, int y, int z, unsigned seed) {
  auto h = static_cast<std::uint32_t>(x) * 374761393U + static_cast<std::uint32_t>(y) * 668265263U +
           static_cast<std::uint32_t>(z) * 2147483647U + seed * 1274126177U;
  h = (h ^ (h >> 13)) * 1274126177U;
  h ^= h >> 16;
  return (h & 0xFFFFFF) / 8388607.5 - 1;
}
double Noise(double x, double y, double z, unsigned seed) {
  const double fx = std::floor(x), fy = std::floor(y), fz = std::floor(z);
  const int ix = static_cast<int>(fx), iy = static_cast<int>(fy), iz = static_cast<int>(fz);
  const auto fade = [](double t) { return t * t * (3 - 2 * t); };
  const double u = fade(x - fx), v = fade(y - fy), w = fade(z - fz);
  double sum = 0;
  for (int k = 0; k < 8; ++k) {
    const int dx = k & 1, dy = k >> 1 & 1, dz = k >> 2 & 1;
    const double weight = (dx != 0 ? u : 1 - u) * (dy != 0 ? v : 1 - v) * (dz != 0 ? w : 1 - w);
    sum += weight * Lattice(ix + dx, iy + dy, iz + dz, seed);
  }
  return sum;
}
double Fractal(const Direction& d, double scale, int octaves, unsigned seed) {
  double sum = 0, size = 1, amplitude = 0.5;
  for (int k = 0; k < octaves; ++k, size *= 2, amplitude /= 2) {
    sum += amplitude * Noise(d.x * scale * size + 17, d.y * scale * size + 31, d.z * scale * size + 47,
                             seed + static_cast<unsigned>(k));
  }
  return sum;
}

using Outline = std::vector<Place>;

bool Inside(const Outline& outline, double lon, double lat) {
  bool inside = false;
  for (std::size_t i = 0, j = outline.size() - 1; i < outline.size(); j = i++) {
    const Place& a = outline[i];
    const Place& b = outline[j];
    if ((a.lat > lat) != (b.lat > lat) && lon < (b.lon - a.lon) * (lat - a.lat) / (b.lat - a.lat) + a.lon) {
      inside = !inside;
    }
  }
  return inside;
}

const std::vector<Outline>& Lands() {
  static const std::vector<Outline> kLands = {
      // North America
      {{-168, 66},   {-162, 70}, {-156, 71},   {-141, 70},   {-128, 70},     {-115, 68},     {-108, 68},
       {-95, 68},    {-94, 72},  {-85, 69},    {-82, 67},    {-87, 64},      {-94, 60},      {-93, 57},
       {-85, 55},    {-82, 52},  {-79, 51},    {-79, 55},    {-77, 57},      {-78, 62},      {-73, 62},
       {-68, 59},    {-64, 60},  {-61, 56},    {-56, 52},    {-60, 50},      {-66, 50},      {-70, 47},
       {-65, 49},    {-64, 46},  {-60, 46},    {-66, 44},    {-70, 43},      {-71, 41},      {-74, 40},
       {-76, 37},    {-76, 35},  {-81, 32},    {-81, 30},    {-80, 26},      {-81, 25},      {-83, 29},
       {-85, 30},    {-90, 30},  {-94, 29.5},  {-97, 27},    {-97.5, 22},    {-96, 19},      {-92, 18.5},
       {-91, 19},    {-90, 21},  {-87, 21.5},  {-88, 16},    {-84, 15.5},    {-83, 11},      {-80, 9},
       {-77.5, 8.5}, {-80, 7.5}, {-83, 8},     {-86, 11},    {-88, 13},      {-92, 14.5},    {-95, 16},
       {-101, 17.5}, {-105, 20}, {-106, 23},   {-109, 26},   {-112, 29},     {-114.5, 31.5}, {-113, 28},
       {-110, 23},   {-112, 25}, {-115, 29},   {-117, 32.5}, {-120.5, 34.5}, {-122.5, 37.5}, {-124, 40.5},
       {-124, 46},   {-123, 49}, {-128, 51},   {-131, 55},   {-135, 59},     {-140, 60},     {-147, 61},
       {-152, 59},   {-157, 57}, {-164, 54.5}, {-158, 58},   {-162, 59.5},   {-165, 62},     {-161, 64}},
      {{-80, 73.5}, {-72, 71}, {-62, 66.5}, {-66, 62}, {-73, 64.5}, {-78, 70}, {-85, 72}, {-90, 73.5}},
      {{-117, 73}, {-105, 73}, {-102, 69}, {-115, 69}},
      {{-90, 76.5}, {-78, 76.5}, {-65, 82}, {-75, 83}, {-92, 81.5}},
      {{-125, 74}, {-118, 73}, {-122, 71.5}},
      {{-59, 47.6}, {-53, 46.7}, {-53.5, 49}, {-56, 51.5}},
      // Greenland
      {{-73, 78.5},
       {-60, 82},
       {-32, 83.5},
       {-17, 80},
       {-20, 75},
       {-22, 70.5},
       {-32, 68},
       {-40, 65},
       {-43, 60},
       {-48, 61},
       {-53, 66},
       {-54, 70},
       {-58, 75},
       {-68, 76}},
      {{-85, 22}, {-80, 23}, {-74, 20}, {-78, 20}},
      {{-74, 19}, {-72, 20}, {-68.5, 18.5}, {-72, 18}},
      // South America
      {{-77.5, 8.5}, {-72, 12},      {-71, 11},    {-64, 10.5},  {-60, 8.5},   {-54, 6},     {-50, 1},     {-48, -1},
       {-42, -2.8},  {-37, -4.8},    {-35, -7},    {-37, -11.5}, {-39, -14},   {-39, -18},   {-41, -22},   {-44.5, -23},
       {-48, -25.5}, {-48.7, -28.5}, {-52, -33},   {-55, -35},   {-58, -34.2}, {-57, -37},   {-62, -39},   {-65, -41},
       {-65, -45},   {-67, -46},     {-66, -48},   {-69, -51},   {-68, -53},   {-65.5, -55}, {-71, -54.5}, {-75, -50},
       {-75.5, -46}, {-73, -42},     {-73.5, -38}, {-71.5, -33}, {-71, -27},   {-70, -19},   {-76, -14},   {-79, -8.5},
       {-81, -6},    {-80, -3},      {-80, 0.5},   {-77.5, 4}},
      // Africa
      {{-6, 35.8},  {0, 36},     {10, 37.3},   {11, 34},    {20, 31},      {22, 33},    {29, 31},      {32.5, 31},
       {35, 28},    {37, 21.5},  {39.5, 15.5}, {43, 11.5},  {51, 12},      {48, 5},     {42, -1.5},    {39, -5},
       {40.5, -11}, {40.5, -15}, {35, -20},    {35.5, -24}, {32.5, -27},   {30, -31.5}, {26, -34},     {20, -34.8},
       {18, -32},   {15, -27},   {12, -18},    {13.5, -12}, {12.5, -6},    {9, -1},     {9.5, 4},      {6, 4.3},
       {2, 6.3},    {-4, 5.2},   {-7.7, 4.4},  {-13, 8.5},  {-16.8, 12.5}, {-17.3, 15}, {-16.3, 19.5}, {-17, 21},
       {-13, 27.5}, {-9.7, 30},  {-9, 33}},
      {{49.3, -12}, {50.3, -15.5}, {47.5, -24.5}, {44.5, -25}, {43.5, -21.5}, {44.5, -16.5}},
      // Europe and Asia
      {{-9, 37},      {-9, 43},     {-2, 43.5},    {-1.5, 46},   {-4.7, 48.3}, {1, 50},      {4, 52},
       {8, 54},       {8.5, 57},    {10.5, 57.5},  {10.5, 54.5}, {14, 54},     {19, 54.5},   {21, 57},
       {24, 59.3},    {30, 60},     {22.5, 60},    {21.5, 62.5}, {25, 65},     {22, 65.8},   {17.5, 62},
       {18.5, 60},    {16.5, 56.5}, {13, 55.5},    {11, 59},     {7, 58},      {5, 61},      {10, 64},
       {15, 68.5},    {21, 70},     {28, 71},      {41, 67},     {33, 66.5},   {37, 64},     {44, 66},
       {46, 68.3},    {60, 69},     {68, 68.5},    {67, 71},     {70, 73},     {73, 71},     {73, 68},
       {76, 72},      {80, 73.5},   {87, 75},      {104, 77.7},  {113, 74},    {128, 72.5},  {140, 72.5},
       {152, 71},     {160, 69.5},  {170, 70},     {180, 69},    {190, 66.5},  {180, 64.5},  {178, 62.5},
       {170, 60},     {163, 60},    {163, 56},     {157, 51},    {156, 57},    {163, 62},    {155, 59.5},
       {142, 59},     {136, 54.5},  {141, 53},     {140, 48},    {133, 43},    {128, 40},    {129.5, 36},
       {126.5, 34.5}, {125, 38},    {121.5, 40.5}, {118, 39},    {122, 37},    {119.5, 35},  {122, 31},
       {120, 26},     {114, 22.5},  {108.5, 21.5}, {106, 19},    {109, 13},    {105, 9},     {100.5, 13.5},
       {99.5, 9.5},   {103.5, 1.5}, {100.5, 6},    {98.5, 9},    {97, 16.5},   {94, 17},     {91.5, 22.5},
       {87, 21.5},    {82, 16.5},   {80, 13},      {77.5, 8},    {73.5, 16},   {72.5, 21.5}, {70, 21},
       {67, 25},      {61.5, 25.3}, {57, 27},      {50, 30},     {48.5, 28},   {51, 25},     {56.5, 26},
       {59.7, 22.5},  {55, 17.5},   {45, 12.8},    {43, 13},     {39, 21},     {34.8, 28},   {34.3, 31},
       {36, 36.5},    {30, 36.3},   {27, 37},      {27, 40.3},   {30, 41.2},   {36, 41.7},   {41.5, 41.5},
       {37, 45},      {39, 47},     {34, 46},      {31, 46.5},   {28.5, 44},   {28, 41.5},   {24, 40.8},
       {23, 36.5},    {19.5, 41},   {13.5, 45.5},  {16, 41.8},   {18.5, 40},   {16, 38},     {12, 42},
       {8.5, 44.3},   {3.3, 43},    {0, 39},       {-2, 36.8},   {-6, 36.3}},
      {{-5.5, 50}, {1, 51}, {1.7, 52.7}, {-1.5, 55}, {-2, 57.5}, {-5, 58.5}, {-5.5, 56}, {-3, 54}, {-4.5, 52}},
      {{-10, 52}, {-6.3, 52.2}, {-6, 54.5}, {-8.3, 55.2}, {-10, 54}},
      {{-24, 65.5}, {-22, 64}, {-18.5, 63.4}, {-13.8, 65}, {-16, 66.5}, {-22.5, 66.3}},
      {{52, 71}, {57, 70.7}, {68, 76.7}, {60, 76}},
      {{11, 79.5}, {20, 80.3}, {22, 78}, {15, 76.8}},
      {{95, 80}, {105, 79}, {98, 78.5}},
      {{12.5, 37.8}, {15.5, 38.2}, {15, 36.7}},
      {{8.3, 41}, {9.6, 41}, {9.5, 39}, {8.5, 39}},
      // Islands from Japan to New Zealand
      {{131, 34}, {135.5, 33.6}, {140, 35.2}, {142, 39.5}, {141, 41.4}, {139.8, 38.5}, {136.5, 36.7}, {132.5, 35.4}},
      {{140, 42}, {145, 43.5}, {142, 45.4}},
      {{130, 33.5}, {131.8, 33}, {130.7, 31.2}},
      {{142, 46}, {143.5, 49.5}, {143, 54}, {142, 52}},
      {{120.2, 23}, {121, 22}, {121.9, 25}},
      {{120.3, 18}, {122, 18.3}, {121.7, 14}, {120.3, 14.5}},
      {{122, 7}, {125.5, 5.8}, {126.3, 8.5}, {124, 8.5}},
      {{95.3, 5.5}, {98, 4}, {104, -1.5}, {106, -5.7}, {102, -4}, {98.5, 1.5}},
      {{105.3, -6.5}, {108.5, -6.7}, {114.4, -7.8}, {114.3, -8.6}, {106.5, -7.4}},
      {{109, 1.5}, {112.5, 3}, {117, 7}, {119, 5}, {117.8, 1}, {116, -4}, {110.3, -2.9}},
      {{119, -5.5}, {120.4, -3}, {121, 1}, {125, 1.5}, {120.5, 0.4}, {123, -1}, {121.5, -2}, {122.5, -5}},
      {{131, -1},
       {134, -0.8},
       {137.8, -1.5},
       {144.5, -3.9},
       {148, -6},
       {150.5, -10.5},
       {146, -8.5},
       {143, -9},
       {138, -8.3},
       {133, -4}},
      {{79.8, 8}, {81.8, 7.3}, {80.3, 6}},
      {{114, -22},     {113.6, -26}, {115.7, -32},   {115, -34.3}, {118, -35},     {124, -33},     {131, -31.5},
       {135.5, -34.8}, {138, -33},   {138.5, -35.5}, {140.5, -38}, {146.3, -39},   {150, -37.3},   {153, -31},
       {153, -25.5},   {149, -21},   {146, -19},     {145.3, -15}, {142.5, -10.8}, {141.5, -13.5}, {140.5, -17.5},
       {136, -15.5},   {137, -12.3}, {132, -11.3},   {130, -14.5}, {126, -14},     {122.2, -18}},
      {{144.7, -41}, {148.2, -41}, {147, -43.5}},
      {{172.8, -34.5}, {178.3, -37.8}, {175.3, -41.5}, {174, -39}},
      {{172.5, -40.7}, {174.2, -41.8}, {170.5, -45.8}, {168.5, -46.6}, {166.5, -45.8}},
  };
  return kLands;
}

const std::vector<Outline>& Lakes() {
  static const std::vector<Outline> kLakes = {
      {{47, 45}, {51, 47}, {53.5, 45}, {53, 40}, {54, 37}, {50, 37.2}, {49.5, 40}, {48, 42}},
      {{31.7, 0.3}, {34.2, 0.3}, {33.8, -2.5}, {31.8, -2.6}},
      {{-92, 46.7}, {-88, 48.8}, {-84.5, 46.7}, {-88, 46.5}},
      {{-88, 42}, {-86.3, 42}, {-85, 45.8}, {-87.5, 44.8}},
      {{-84, 45.8}, {-82, 43.2}, {-80, 45}, {-82, 46}},
  };
  return kLakes;
}

// Where the coast of Antarctica runs, by longitude.
constexpr std::array<Place, 27> kAntarctica = {
    {{-180, -78},  {-160, -77.5}, {-150, -77}, {-135, -74.5}, {-100, -72.5}, {-80, -73}, {-70, -69},
     {-62, -64},   {-57, -63.3},  {-60, -67},  {-62, -74},    {-40, -78},    {-30, -76}, {-15, -72},
     {0, -70},     {20, -70},     {40, -69},   {55, -66},     {70, -70},     {80, -68},  {100, -66},
     {120, -66.7}, {140, -66.7},  {160, -70},  {168, -73},    {165, -77},    {180, -78}}};

bool OnAntarctica(double lon, double lat) {
  static const Outline kCoast = [] {
    Outline coast(kAntarctica.begin(), kAntarctica.end());
    coast.push_back({180, -91});
    coast.push_back({-180, -91});
    return coast;
  }();
  return lat < -79 || Inside(kCoast, std::remainder(lon, 360), lat);
}

bool OnLand(double lon, double lat) {
  for (const Outline& lake : Lakes()) {
    if (Inside(lake, lon, lat)) return false;
  }
  return std::any_of(Lands().begin(), Lands().end(),
                     [&](const Outline& land) { return Inside(land, lon, lat) || Inside(land, lon + 360, lat); });
}

struct Spot {
  double lon, lat, halfWidth, halfHeight;
};
// 1 at the centre of the nearest spot, 0 beyond its rim.
template <std::size_t Count>
double Within(const std::array<Spot, Count>& spots, double lon, double lat) {
  double most = 0;
  for (const Spot& spot : spots) {
    const double dx = std::remainder(lon - spot.lon, 360) / spot.halfWidth;
    const double dy = (lat - spot.lat) / spot.halfHeight;
    most = std::max(most, 1 - std::sqrt(dx * dx + dy * dy));
  }
  return most;
}

constexpr std::array<Spot, 13> kDry = {{{8, 23, 34, 11},
                                        {47, 23, 14, 10},
                                        {60, 31, 15, 8},
                                        {64, 42, 20, 8},
                                        {102, 42, 20, 7},
                                        {82, 39, 9, 5},
                                        {19, -24, 8, 8},
                                        {130, -25, 19, 10},
                                        {-69, -23, 4, 10},
                                        {-68, -45, 5, 9},
                                        {-112, 34, 11, 9},
                                        {45, 8, 7, 7},
                                        {-104, 26, 6, 7}}};
constexpr std::array<Spot, 7> kHigh = {{{88, 33, 18, 6},
                                        {72, 37, 9, 5},
                                        {-70, -17, 4, 16},
                                        {-73, 2, 4, 10},
                                        {-112, 45, 9, 12},
                                        {10, 46.5, 8, 2.5},
                                        {44, 42.5, 7, 2.5}}};

Colour EarthAt(const Place& place) {
  const Direction d = Towards(place);
  const double lat = place.lat + 1.6 * Fractal(d, 9, 4, 11);
  const double lon = place.lon + 1.6 * Fractal(d, 9, 4, 23) / std::max(0.3, std::cos(Radians(place.lat)));
  const double grain = Fractal(d, 14, 4, 5);
  const Colour ice{234, 239, 244};
  if (OnAntarctica(lon, lat)) return Bright(ice, 1 + 0.06 * grain);
  if (!OnLand(lon, lat)) {
    const Colour deep{14, 40, 96};
    const Colour light{26, 72, 132};
    const Colour sea = Mix(deep, light, 0.45 + 0.5 * Fractal(d, 3, 3, 71));
    return Mix(sea, ice, Smooth(76, 82, place.lat + 4 * grain));
  }
  const double north = std::abs(place.lat);
  const Colour forest{44, 92, 42};
  const Colour steppe{118, 124, 66};
  const Colour desert{206, 178, 122};
  const Colour tundra{138, 134, 108};
  const Colour rock{134, 114, 92};
  Colour land = Mix(forest, steppe, Smooth(8, 28, north) - Smooth(38, 52, north) + 0.7 * grain);
  land = Mix(land, tundra, Smooth(58, 68, north + 6 * grain));
  land = Mix(land, desert, Smooth(0.12, 0.5, Within(kDry, place.lon, place.lat) + 0.35 * grain));
  land = Mix(land, rock, Smooth(0.2, 0.6, Within(kHigh, place.lon, place.lat) + 0.3 * grain));
  const bool greenland = place.lon > -60 && place.lon < (place.lat > 68 ? -10 : -26) && place.lat > 60.5;
  land = Mix(land, ice, greenland ? Smooth(61, 66, place.lat + 4 * grain) : Smooth(70, 77, place.lat + 5 * grain));
  return Bright(land, 1 + 0.22 * grain);
}

constexpr std::array<Spot, 20> kMaria = {{{-16, 33, 23, 18}, {18, 28, 13, 11},  {31, 8, 15, 12},    {59, 17, 9, 7},
                                          {51, -6, 9, 14},   {34, -15, 7, 7},   {-17, -21, 13, 11}, {-39, -24, 8, 8},
                                          {-55, 20, 17, 25}, {-45, -3, 17, 13}, {-23, -10, 11, 8},  {4, 13, 6, 5},
                                          {0, 57, 45, 5},    {-93, -19, 5, 5},  {148, 27, 5, 5},    {164, -34, 5, 5},
                                          {81, 57, 7, 4},    {87, -1.5, 6, 6},  {86, 13, 7, 6},     {-22, 10, 14, 8}}};

struct Crater {
  Direction centre;
  double radius;  // degrees
  double rays;    // radii that they reach, 0 for none
};

std::vector<Crater> MakeCraters() {
  std::vector<Crater> craters = {{Towards({-11.4, -43.3}), 1.9, 22}, {Towards({-20.1, 9.6}), 1.7, 8},
                                 {Towards({-38, 8.1}), 1, 8},        {Towards({-47.5, 23.7}), 1, 6},
                                 {Towards({60.9, -8.9}), 2.2, 4},    {Towards({-14.4, -58.8}), 3.7, 0},
                                 {Towards({-9.3, 51.6}), 1.7, 0},    {Towards({46.5, 5.7}), 0.7, 6}};
  std::uint32_t state = 20030321;
  const auto next = [&] {
    state = state * 1664525U + 1013904223U;
    return (state >> 8) / 16777216.0;
  };
  for (int k = 0; k < 1500; ++k) {
    const double z = 2 * next() - 1;
    const double lon = 360 * next();
    const double lat = std::asin(z) * 180 / std::numbers::pi;
    const double radius = 0.35 * std::pow(next() + 0.01, -0.45);
    craters.push_back({Towards({lon, lat}), std::min(radius, 3.2), next() < 0.02 ? 5.0 : 0.0});
  }
  return craters;
}

// Brightness that a crater adds at a distance of so many radii: a dark floor, a bright rim, rays.
double CraterShade(const Crater& crater, const Direction& d, double distance) {
  if (distance < 0.85) return -0.10;
  if (distance < 1.25) return 0.16 * (1 - std::abs(distance - 1.02) / 0.25);
  if (crater.rays <= distance) return 0;
  const double streak = Fractal({d.x - crater.centre.x, d.y - crater.centre.y, d.z - crater.centre.z},
                                3 / std::max(0.02, distance * crater.radius / 57), 2, 91);
  return std::max(0.0, 0.10 + 0.5 * streak) * (1 - distance / crater.rays);
}

Colour MoonAt(const Place& place, const std::vector<Crater>& craters) {
  const Direction d = Towards(place);
  const double warp = Fractal(d, 6, 4, 3);
  const double mare = Smooth(0.02, 0.28, Within(kMaria, place.lon + 5 * warp, place.lat - 5 * warp) + 0.25 * warp);
  double level = 0.72 - 0.30 * mare + 0.10 * Fractal(d, 10, 4, 57) * (1 - 0.5 * mare);
  for (const Crater& crater : craters) {
    const double reach = std::max(1.25, crater.rays) * crater.radius;
    const double chord = d.x * crater.centre.x + d.y * crater.centre.y + d.z * crater.centre.z;
    if (chord < std::cos(Radians(std::min(reach, 90.0)))) continue;
    level += CraterShade(crater, d, AngleBetween(d, crater.centre) / crater.radius) * (1 - 0.5 * mare);
  }
  const double grey = 250 * std::clamp(level, 0.1, 1.0);
  return {grey, grey * 0.98, grey * 0.94};
}

template <class ColourAt>
std::vector<std::uint8_t> Paint(double left, ColourAt colourAt) {
  std::vector<std::uint8_t> rgb;
  rgb.reserve(static_cast<std::size_t>(kWidth) * kHeight * 3);
  for (int y = 0; y < kHeight; ++y) {
    for (int x = 0; x < kWidth; ++x) {
      const double lon = left + 360.0 * (x + 0.5) / kWidth;
      const Colour colour = colourAt(Place{std::remainder(lon, 360), 90 - 180.0 * (y + 0.5) / kHeight});
      for (const double part : {colour.red, colour.green, colour.blue}) {
        rgb.push_back(static_cast<std::uint8_t>(std::clamp(part, 0.0, 255.0)));
      }
    }
  }
  return rgb;
}

bool Write(const std::string& name, std::vector<std::uint8_t>& rgb, int quality) {
  std::FILE* file = std::fopen(name.c_str(), "wb");
  if (file == nullptr) {
    std::fprintf(stderr, "%s cannot be written\n", name.c_str());
    return false;
  }
  jpeg_compress_struct jpeg;
  jpeg_error_mgr errors;
  jpeg.err = jpeg_std_error(&errors);
  jpeg_create_compress(&jpeg);
  jpeg_stdio_dest(&jpeg, file);
  jpeg.image_width = kWidth;
  jpeg.image_height = kHeight;
  jpeg.input_components = 3;
  jpeg.in_color_space = JCS_RGB;
  jpeg_set_defaults(&jpeg);
  jpeg_set_quality(&jpeg, quality, TRUE);
  jpeg.optimize_coding = TRUE;
  jpeg_start_compress(&jpeg, TRUE);
  while (jpeg.next_scanline < jpeg.image_height) {
    JSAMPROW row = rgb.data() + static_cast<std::size_t>(jpeg.next_scanline) * kWidth * 3;
    jpeg_write_scanlines(&jpeg, &row, 1);
  }
  jpeg_finish_compress(&jpeg);
  jpeg_destroy_compress(&jpeg);
  return std::fclose(file) == 0;
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 2) {
    std::fprintf(stderr, "make_textures FOLDER\n");
    return 2;
  }
  const std::string folder = std::string(arguments[1]) + "/";
  const std::vector<Crater> craters = MakeCraters();
  auto earth = Paint(kEarthLeft, EarthAt);
  auto moon = Paint(kMoonLeft, [&](const Place& place) { return MoonAt(place, craters); });
  const bool written = Write(folder + "earthjpg.jpg", earth, 82) && Write(folder + "moonjpg.jpg", moon, 82);
  return written ? 0 : 1;
}
