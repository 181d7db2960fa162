#include <functional>
#include <gtest/gtest.h>
#include <memory>

#include "support/golden_image.h"
#include "support/recorded_scene.h"
#include "view/offscreen_control.h"

// Pictures of the scene against those in tests/golden that were looked at. One sample for a pixel, so that they are
// alike on every system.
namespace orv {
namespace {

using testing::DifferentShare;
using testing::GoldenTolerance;
using testing::MatchesGolden;

constexpr int kWidth = 240;
constexpr int kHeight = 180;
// Systems place lines and points up to a pixel apart, and letters differ a little between releases of the font library.
constexpr GoldenTolerance kDrawing{24, 0.01, 1};
constexpr GoldenTolerance kWithTexts{48, 0.006, 1};

// A scene on the system's OpenGL.
struct Stage {
  explicit Stage(int width = kWidth, int height = kHeight, double ratio = 1)
      : made(OffscreenControl::Make({width, height, ratio, 1})) {
    if (!made.control) return;
    scene = std::make_unique<ClassGl>(*made.control, lists, view, prompt, clock);
  }
  // No letters but those that are the subject.
  void WithoutTexts() {
    view.options.Check1[4] = 1;
    view.options.Check1[5] = 1;
    view.options.Check1[6] = 1;
    view.ScaleMode = 5;
    lists.Title = "OrvValis";
  }
  void WithoutAxes() { view.options.Check1[3] = 1; }
  // The first paint takes the plot and sets the first view, `camera` another one.
  Image Picture(const std::function<void(Stage&)>& camera = {}) {
    made.control->Attach(*scene);
    made.control->Paint(*scene);
    if (camera) {
      camera(*this);
    } else {
      scene->CameraSet("ISO", 0, 0);
    }
    made.control->Paint(*scene);
    return made.control->Picture();
  }
  Image Again() {
    made.control->Paint(*scene);
    return made.control->Picture();
  }

  OffscreenControl::Made made;
  testing::ScriptedDialogs dialogs;
  ErrorPrompt prompt{dialogs};
  testing::HandClock clock;
  PointLists lists;
  ViewState view;
  std::unique_ptr<ClassGl> scene;
};

// Pictures of a series must differ by more than the comparison lets pass, else it could not tell them apart.
void ExpectUnlike(const std::vector<Image>& images, const GoldenTolerance& tolerance = kDrawing) {
  for (std::size_t a = 0; a < images.size(); ++a) {
    for (std::size_t b = a + 1; b < images.size(); ++b) {
      EXPECT_GT(DifferentShare(images[a], images[b], tolerance), tolerance.share) << a << " and " << b;
    }
  }
}

// Pictures of one size side by side.
Image Sheet(const std::vector<Image>& tiles, int columns) {
  const int width = tiles.front().width;
  const int height = tiles.front().height;
  const int rows = (static_cast<int>(tiles.size()) + columns - 1) / columns;
  Image sheet{width * columns, height * rows, {}};
  sheet.rgb.resize(static_cast<std::size_t>(sheet.width * sheet.height) * 3);
  for (std::size_t tile = 0; tile < tiles.size(); ++tile) {
    const int left = static_cast<int>(tile) % columns * width;
    const int top = static_cast<int>(tile) / columns * height;
    for (int row = 0; row < height; ++row) {
      const auto from = tiles[tile].rgb.begin() + static_cast<std::ptrdiff_t>(row) * width * 3;
      std::copy_n(from, width * 3,
                  sheet.rgb.begin() + (static_cast<std::ptrdiff_t>(top + row) * sheet.width + left) * 3);
    }
  }
  return sheet;
}

std::string Numbered(const std::string& name, int number) {
  return name + "_" + std::to_string(number);
}

#define ORV_NEEDS_OPENGL(stage) ASSERT_TRUE((stage).made.control) << (stage).made.message

TEST(Golden, ColourStyles) {
  std::vector<Image> images;
  for (int style = 0; style < kColorStyles; ++style) {
    Stage stage;
    ORV_NEEDS_OPENGL(stage);
    FillSheet(stage.lists, 24, 18);
    stage.WithoutTexts();
    stage.WithoutAxes();
    stage.view.SidesMode = kBothSides;
    stage.view.ColorStyle = style;
    images.push_back(stage.Picture());
    EXPECT_TRUE(MatchesGolden(Numbered("colour_style", style), images.back(), kDrawing));
  }
  ExpectUnlike(images);
}

TEST(Golden, ScaleModes) {
  std::vector<Image> images;
  for (int mode = 0; mode < kScaleModes; ++mode) {
    Stage stage;
    ORV_NEEDS_OPENGL(stage);
    FillSheet(stage.lists, 20, 15);
    stage.view.SidesMode = kBothSides;
    stage.view.ScaleMode = mode;
    stage.view.options.ThicknessLinePlot = 2;
    images.push_back(stage.Picture());
    EXPECT_TRUE(MatchesGolden(Numbered("scale_mode", mode), images.back(), kWithTexts));
  }
  ExpectUnlike(images, kWithTexts);
}

TEST(Golden, LinearAndLogarithmic) {
  std::vector<Image> images;
  for (const bool logarithmic : {false, true}) {
    Stage stage(280, 210);
    ORV_NEEDS_OPENGL(stage);
    FillSheet(stage.lists, 20, 15);
    stage.view.SidesMode = kBothSides;
    LegendRange& legend = stage.lists.legend;
    if (logarithmic) {
      legend.LogScale = 1;
      legend.HasNonPositive = 1;
      legend.LegendMin = legend.ScaleMin = 12;
      legend.LegendMax = legend.ScaleMax = 15.7;
    }
    images.push_back(stage.Picture());
    EXPECT_TRUE(MatchesGolden(logarithmic ? "scale_logarithmic" : "scale_linear", images.back(), kWithTexts));
  }
  ExpectUnlike(images, kWithTexts);
}

TEST(Golden, SidesModes) {
  std::vector<Image> images;
  for (int mode = 0; mode < kSidesModes; ++mode) {
    Stage stage;
    ORV_NEEDS_OPENGL(stage);
    FillBowl(stage.lists, 24, 12);
    stage.WithoutTexts();
    stage.WithoutAxes();
    stage.view.options.ThicknessLinePlot = 3;
    stage.view.SidesMode = mode;
    images.push_back(stage.Picture());
    EXPECT_TRUE(MatchesGolden(Numbered("sides_mode", mode), images.back(), kDrawing));
  }
  ExpectUnlike(images);
}

// Cameras: a sheet that looks different from everywhere, with its axes, X yellow.

struct CameraStage : Stage {
  CameraStage() : Stage(120, 90) {
    FillSheet(lists, 16, 12);
    WithoutTexts();
    view.SidesMode = kBothSides;
  }
};

TEST(Golden, IsometricViews) {
  std::vector<Image> tiles;
  {
    CameraStage stage;
    ORV_NEEDS_OPENGL(stage);
    tiles.push_back(stage.Picture([](Stage& s) { s.scene->CameraSet("iso", 0, 0); }));
  }
  for (int axis = 1; axis <= 3; ++axis) {
    CameraStage stage;
    ORV_NEEDS_OPENGL(stage);
    for (int step = 1; step <= 3; ++step) {
      const auto turn = [&](Stage& s) {
        if (step == 1) s.scene->Cameras() = CameraCycle();
        s.scene->CameraSet("isonew", axis, 1);
      };
      if (step == 1) {
        tiles.push_back(stage.Picture(turn));
      } else {
        turn(stage);
        tiles.push_back(stage.Again());
      }
    }
  }
  ExpectUnlike(tiles);
  EXPECT_TRUE(MatchesGolden("camera_iso", Sheet(tiles, 4), kDrawing));
}

TEST(Golden, CornerViews) {
  std::vector<Image> plus;
  CameraStage stage;
  ORV_NEEDS_OPENGL(stage);
  plus.push_back(stage.Picture([](Stage& s) {
    s.scene->Cameras() = CameraCycle();
    s.scene->CameraSet("ISONEWPLUS", 2, 0);
  }));
  for (int step = 2; step <= 6; ++step) {
    stage.scene->CameraSet("ISONEWPLUS", 2, 0);
    plus.push_back(stage.Again());
  }
  ExpectUnlike(plus);
  std::vector<Image> real;
  for (int axis = 1; axis <= 3; ++axis) {
    stage.view.realIso = true;
    stage.scene->Cameras() = CameraCycle();
    for (int step = 1; step <= 2; ++step) {
      stage.scene->CameraSet("ISONEW", axis, 1);
      real.push_back(stage.Again());
    }
  }
  ExpectUnlike(real);
  EXPECT_TRUE(MatchesGolden("camera_isonewplus", Sheet(plus, 3), kDrawing));
  EXPECT_TRUE(MatchesGolden("camera_realiso", Sheet(real, 3), kDrawing));
}

TEST(Golden, ViewsAlongTheAxes) {
  std::vector<Image> tiles;
  CameraStage stage;
  ORV_NEEDS_OPENGL(stage);
  tiles.push_back(stage.Picture(
      [](Stage& s) { s.scene->Cameras().ShowProjection(0, s.made.control->Camera(), s.made.control->Trackball()); }));
  for (int step = 1; step < kProjections; ++step) {
    stage.scene->CameraSet("proj", 0, 0);
    EXPECT_EQ(stage.scene->Cameras().Projection(), step);
    tiles.push_back(stage.Again());
  }
  EXPECT_TRUE(MatchesGolden("camera_proj", Sheet(tiles, 4), kDrawing));
  stage.scene->CameraSet("projinverse", 0, 0);
  EXPECT_EQ(stage.scene->Cameras().Projection(), kProjections - 2);
  EXPECT_EQ(DifferentShare(stage.Again(), tiles[kProjections - 2], {0, 0}), 0);
}

TEST(Golden, DynamicPlot) {
  std::vector<Image> images;
  for (const int percent : {0, 30, 100}) {
    Stage stage;
    ORV_NEEDS_OPENGL(stage);
    FillSheet(stage.lists, 40, 30);
    stage.WithoutTexts();
    stage.view.SidesMode = kBothSides;
    stage.view.redrawFraction = percent / 100.0;
    images.push_back(stage.Picture());
    EXPECT_TRUE(MatchesGolden(Numbered("dynamic_percent", percent), images.back(), kDrawing));
  }
  ExpectUnlike(images);
}

TEST(Golden, Events) {
  std::vector<Image> images;
  for (const int events : {5, 0}) {
    Stage stage;
    ORV_NEEDS_OPENGL(stage);
    FillCurve(stage.lists, 1500, events);
    stage.WithoutTexts();
    stage.WithoutAxes();
    stage.view.options.ThicknessLinePlot = 3;
    images.push_back(stage.Picture());
  }
  EXPECT_TRUE(MatchesGolden("events", images[0], kDrawing));
  ExpectUnlike(images);
}

TEST(Golden, ValueComb) {
  std::vector<Image> images;
  for (const bool colours : {false, true}) {
    Stage stage;
    ORV_NEEDS_OPENGL(stage);
    FillCurve(stage.lists, 600);
    FillValues(stage.lists, 40);
    stage.WithoutTexts();
    stage.WithoutAxes();
    stage.view.valueColours = colours;
    stage.view.options.ThicknessLinePlot = colours ? 3 : 1;
    images.push_back(stage.Picture([](Stage& s) { s.scene->CameraSet("proj", 0, 0); }));
    EXPECT_TRUE(MatchesGolden(colours ? "value_colours" : "value_comb", images.back(), kDrawing));
  }
  ExpectUnlike(images);
}

TEST(Golden, TextsOfATimePlot) {
  std::vector<Image> images;
  for (const double withoutTexts : {0.0, 1.0}) {
    Stage stage(280, 210);
    ORV_NEEDS_OPENGL(stage);
    FillCurve(stage.lists, 600, 4);
    FillValues(stage.lists, 40);
    stage.lists.Title = "Orbit of the sample";
    stage.lists.TimePlot = true;
    stage.view.redrawFraction = 0.6;
    stage.view.options.Check1[6] = withoutTexts;
    images.push_back(stage.Picture());
  }
  EXPECT_TRUE(MatchesGolden("texts", images[0], kWithTexts));
  ExpectUnlike(images, kWithTexts);
}

TEST(Golden, TheWholeTable) {
  Stage stage;
  ORV_NEEDS_OPENGL(stage);
  FillCurve(stage.lists, kListEntries - 1, 20);
  stage.WithoutTexts();
  stage.WithoutAxes();
  stage.view.options.ThicknessLinePlot = 2;
  // Thousands of translucent pieces upon each other: their sum differs more than one of them.
  EXPECT_TRUE(MatchesGolden("whole_table", stage.Picture(), {64, 0.01, 1}));
}

TEST(Golden, LegendAtTwoPixelsAPixel) {
  Stage stage(400, 300, 2);
  ORV_NEEDS_OPENGL(stage);
  FillSheet(stage.lists, 20, 15);
  stage.view.SidesMode = kBothSides;
  EXPECT_TRUE(MatchesGolden("legend_ratio_2", stage.Picture(), kWithTexts));
}

TEST(Golden, WhiteBackground) {
  Stage stage;
  ORV_NEEDS_OPENGL(stage);
  FillSheet(stage.lists, 20, 15);
  stage.view.SidesMode = kDotsAndBorders;
  stage.view.options.ColourOfBackGround = {255, 255, 255};
  EXPECT_TRUE(MatchesGolden("white_background", stage.Picture(), kWithTexts));
}

}  // namespace
}  // namespace orv
