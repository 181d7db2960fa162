#include <functional>
#include <gtest/gtest.h>
#include <memory>

#include "model/demo_plot.h"
#include "model/plot_reading.h"
#include "numerics/angles.h"
#include "support/golden_image.h"
#include "support/recorded_scene.h"
#include "view/offscreen_control.h"
#include "view/scene_bodies.h"

// Pictures of the sample orbit against those in tests/golden that were looked at.
namespace orv {
namespace {

using testing::DifferentShare;
using testing::GoldenTolerance;
using testing::MatchesGolden;

constexpr int kWidth = 320;
constexpr int kHeight = 240;
// Coarse enough for the smoothing of textures and the lighting of different systems.
constexpr GoldenTolerance kOrbit{32, 0.01, 1};

struct OrbitStage {
  explicit OrbitStage(double redrawFraction = 1) : made(OffscreenControl::Make({kWidth, kHeight, 1, 1})) {
    if (!made.control) return;
    std::vector<std::string> lines;
    for (const auto& fields : DemoLines()) {
      std::string line;
      for (const std::string& field : fields) line += (line.empty() ? "" : "\t") + field;
      lines.push_back(line);
    }
    ReadPlotLines(DemoHeader(), lines, "the sample", lists, reader);
    for (const std::size_t text : {4U, 5U, 6U}) view.options.Check1[text] = 1;
    view.ScaleMode = 5;
    view.redrawFraction = redrawFraction;
    view.options.ThicknessLinePlot = 2;
    scene = std::make_unique<ClassGl>(*made.control, lists, view, prompt, clock, std::function<bool(PointLists&)>(),
                                      &bodies);
    made.control->Attach(*scene);
    made.control->Paint(*scene);
    made.control->Camera().SetLookAt({0, 0, 0});
  }
  // From a direction, `range` scene units from the centre of the picture to its upper edge.
  Image From(const Vec3& position, double range, const Vec3& target = {}) {
    Camera& camera = made.control->Camera();
    camera.SetUp({0, 0, 1});
    camera.SetLookAt(target);
    camera.SetPosition({target[0] + position[0], target[1] + position[1], target[2] + position[2]});
    camera.SetSceneRange(range);
    return Again();
  }
  Image Again() {
    made.control->Paint(*scene);
    return made.control->Picture();
  }
  Vec3 Place() {
    const ShownPoint shown = PointShown(*scene, lists);
    return shown.place;
  }

  OffscreenControl::Made made;
  testing::ScriptedDialogs dialogs;
  ErrorPrompt prompt{dialogs};
  CellText reader{prompt, Locale{}};
  testing::HandClock clock;
  PointLists lists;
  ViewState view;
  OrbitBodies bodies{prompt, ORV_SOURCE_DIR "/textures"};
  std::unique_ptr<ClassGl> scene;
};

#define ORV_NEEDS_OPENGL(stage) ASSERT_TRUE((stage).made.control) << (stage).made.message

// Mean colour of a square about a place of the picture.
std::array<double, 3> ColourAt(const Image& image, double x, double y, int reach = 3) {
  std::array<double, 3> sum{};
  const int column = static_cast<int>(x * image.width);
  const int row = static_cast<int>(y * image.height);
  for (int dy = -reach; dy <= reach; ++dy) {
    for (int dx = -reach; dx <= reach; ++dx) {
      const auto pixel = static_cast<std::size_t>((row + dy) * image.width + column + dx) * 3;
      for (std::size_t part = 0; part < 3; ++part) sum[part] += image.rgb[pixel + part];
    }
  }
  const int count = (2 * reach + 1) * (2 * reach + 1);
  for (double& part : sum) part /= count;
  return sum;
}
double BrightnessAt(const Image& image, double x, double y) {
  const auto colour = ColourAt(image, x, y);
  return (colour[0] + colour[1] + colour[2]) / 3;
}

TEST(OrbitPictures, StartMiddleEnd) {
  const struct {
    const char* name;
    double fraction;
  } rows[] = {{"orbit_start", 0}, {"orbit_middle", 0.5}, {"orbit_end", 1}};
  std::vector<Image> images;
  for (const auto& row : rows) {
    OrbitStage stage(row.fraction);
    ORV_NEEDS_OPENGL(stage);
    images.push_back(stage.From({100, 60, 40}, 10));
    EXPECT_TRUE(MatchesGolden(row.name, images.back(), kOrbit));
    EXPECT_TRUE(stage.dialogs.log.empty());
  }
  EXPECT_GT(DifferentShare(images[0], images[1], kOrbit), kOrbit.share);
  EXPECT_GT(DifferentShare(images[1], images[2], kOrbit), kOrbit.share);
}

// The Earth alone, seen along the equator from where Greenwich stands.
TEST(OrbitPictures, TheEarthShowsItsContinentsAndItsDay) {
  OrbitStage stage(0.5);
  ORV_NEEDS_OPENGL(stage);
  stage.view.options.Check1[3] = 1;
  const double radius = kEarthRadiusKm * stage.lists.FactorScale;
  // The sample begins at the spring equinox, so that at noon of the first day Greenwich looks to the Sun.
  const double greenwich = (178.1 + 180.5) * kPi / 180;
  const Vec3 towards{100 * std::cos(greenwich), 100 * std::sin(greenwich), 0};
  const Image day = stage.From(towards, 1.2 * radius);
  EXPECT_TRUE(MatchesGolden("orbit_earth_day", day, kOrbit));
  // In the picture: Africa below the middle to the right, the Atlantic to the left, Europe above.
  const double scale = 0.5 / 1.2;  // of the height, for the radius of the Earth
  const auto at = [&](double lon, double lat) {
    const double c = std::cos(lat * kPi / 180);
    const double x = 0.5 + scale * c * std::sin(lon * kPi / 180) * kHeight / kWidth;
    return ColourAt(day, x, 0.5 - scale * std::sin(lat * kPi / 180));
  };
  const auto isSea = [](const std::array<double, 3>& colour) { return colour[2] > 1.5 * colour[0]; };
  EXPECT_FALSE(isSea(at(10, 24)));    // Sahara
  EXPECT_FALSE(isSea(at(22, -3)));    // Congo
  EXPECT_FALSE(isSea(at(25, 50)));    // eastern Europe
  EXPECT_TRUE(isSea(at(-30, 30)));    // Atlantic
  EXPECT_TRUE(isSea(at(-20, -20)));   // South Atlantic
  EXPECT_TRUE(isSea(at(62, -10)));    // Indian Ocean
  EXPECT_FALSE(isSea(at(-48, -10)));  // Brazil
  const Image night = stage.From({-towards[0], -towards[1], 0}, 1.2 * radius);
  const Image dawn = stage.From({-towards[1], towards[0], 0}, 1.2 * radius);
  EXPECT_TRUE(MatchesGolden("orbit_earth_dawn", dawn, kOrbit));
  EXPECT_GT(BrightnessAt(day, 0.5, 0.5), 1.5 * BrightnessAt(night, 0.5, 0.5));
  // Seen from 90 degrees east of the Sun, the lit side is on the left.
  EXPECT_GT(BrightnessAt(dawn, 0.40, 0.5), 1.5 * BrightnessAt(dawn, 0.60, 0.5));
}

TEST(OrbitPictures, TheSatelliteWithItsPanels) {
  enum Form { kTable, kTracking, kAsBuilt };
  std::vector<Image> images;
  for (const Form form : {kTable, kTracking, kAsBuilt}) {
    OrbitStage stage(0.4);
    ORV_NEEDS_OPENGL(stage);
    stage.view.options.PanelsTrackSun = form == kTracking ? 1 : 0;
    stage.view.satelliteAxes = form == kAsBuilt;
    if (form == kAsBuilt) stage.lists.PanelCount1 = kNoEntry;
    images.push_back(stage.From({60, 100, 40}, 0.5, stage.Place()));
  }
  EXPECT_TRUE(MatchesGolden("orbit_satellite", images[0], kOrbit));
  EXPECT_TRUE(MatchesGolden("orbit_satellite_sun", images[1], kOrbit));
  EXPECT_TRUE(MatchesGolden("orbit_satellite_axes", images[2], kOrbit));
  // The angles of the sample are those to the Sun; only the lines on the panels are new.
  EXPECT_LT(DifferentShare(images[0], images[1], kOrbit), kOrbit.share);
  EXPECT_GT(DifferentShare(images[0], images[2], kOrbit), kOrbit.share);
}

TEST(OrbitPictures, TheMoonTenTimesAsLarge) {
  std::vector<Image> images;
  for (const double factor : {1.0, 10.0}) {
    OrbitStage stage(0.5);
    ORV_NEEDS_OPENGL(stage);
    stage.view.options.MoonFactor = factor;
    SolarSystem& sky = stage.bodies.Sky();
    Vec3 moon = EquatorFromEcliptic(MoonOnEcliptic(sky, kDemoFirstDay + 0.5));
    for (double& part : moon) part *= stage.lists.FactorScale;
    // Past the Earth to the near side.
    images.push_back(stage.From({-moon[0] + 0.3 * moon[1], -moon[1] - 0.3 * moon[0], -moon[2]}, 4, moon));
  }
  EXPECT_TRUE(MatchesGolden("orbit_moon", images[0], kOrbit));
  EXPECT_TRUE(MatchesGolden("orbit_moon_x10", images[1], kOrbit));
  EXPECT_GT(DifferentShare(images[0], images[1], kOrbit), kOrbit.share);
}

TEST(OrbitPictures, TheMoonAsCentralBody) {
  OrbitStage stage(0.5);
  ORV_NEEDS_OPENGL(stage);
  stage.lists.MoonView = true;
  stage.view.options.Check1[3] = 1;
  const Image image = stage.From({100, 30, 20}, 1.2 * kMoonRadiusKm * stage.lists.FactorScale);
  EXPECT_TRUE(MatchesGolden("orbit_moon_view", image, kOrbit));
}

TEST(OrbitPictures, TheSatelliteForced) {
  OrbitStage stage(1);
  ORV_NEEDS_OPENGL(stage);
  stage.lists.TraceCount = stage.lists.TraceMax = kNoEntry;
  stage.view.options.SatelliteShown = 1;
  stage.view.options.SatelliteSize = 20;
  EXPECT_TRUE(MatchesGolden("orbit_satellite_forced", stage.From({100, 60, 40}, 12), kOrbit));
}

TEST(OrbitPictures, WithoutTexturesTheSpheresArePlain) {
  OrbitStage stage(0.5);
  ORV_NEEDS_OPENGL(stage);
  stage.view.earthTexture = "no such file.jpg";
  const Image image = stage.From({100, 30, 20}, 1.2 * kEarthRadiusKm * stage.lists.FactorScale);
  stage.Again();
  EXPECT_TRUE(MatchesGolden("orbit_earth_plain", image, kOrbit));
  ASSERT_EQ(stage.dialogs.log.size(), 1U);
  EXPECT_NE(stage.dialogs.log[0].find("no such file.jpg was not read: there is no such file. The sphere"),
            std::string::npos);
}

}  // namespace
}  // namespace orv
