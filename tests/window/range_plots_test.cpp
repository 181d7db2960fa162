#include <cmath>
#include <gtest/gtest.h>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "model/file_workbook.h"
#include "model/range_sending.h"
#include "support/golden_image.h"
#include "support/recorded_scene.h"
#include "view/offscreen_control.h"
#include "view/planets.h"
#include "view/scene_bodies.h"

// The example workbook of range plots, from its cells to the picture.
namespace orv {
namespace {

using testing::DifferentShare;
using testing::GoldenTolerance;
using testing::MatchesGolden;

constexpr int kWidth = 320;
constexpr int kHeight = 240;
constexpr GoldenTolerance kDrawing{24, 0.002, 1};  // a curve covers few pixels
constexpr GoldenTolerance kBodies{32, 0.01, 1};    // textures and light differ from system to system

// Reads the specification of a cell and its ranges, as a plot of its own.
struct ExamplePlot {
  ExamplePlot(const std::string& ending, const std::string& sheetName, const std::string& cell) {
    FileWorkbook book(std::string(ORV_SOURCE_DIR) + "/examples/range_plots." + ending, Locale{});
    book.ChooseSheet(sheetName);
    book.ChooseCell(cell);
    book.Attach();
    RangeCopy copy;
    copy.specification = book.Formula(book.ActiveCell());
    bool narrow = false;
    CellText reader(prompt, Locale{});
    plot = ReadRangePlot(book, copy, reader, FixedClock({2031, 4, 5, 6, 7, 8}), narrow);
    if (plot) ReadPlotLines(plot->header, plot->lines, "example", lists, reader);
  }
  // The scene, painted once. Without letters, which are not the subject.
  struct Stage {
    explicit Stage(ExamplePlot& plot)
        : made(OffscreenControl::Make({kWidth, kHeight, 1, 1})),
          scene(*made.control, plot.lists, plot.view, plot.prompt, plot.clock, {}, &plot.bodies) {
      plot.view.options.Check1[1] = plot.view.options.Check1[4] = plot.view.options.Check1[5] = 1;
      plot.view.options.Check1[6] = 1;
      plot.view.ScaleMode = 5;
      plot.view.SidesMode = kBothSides;
      plot.view.options.ThicknessLinePlot = 3;
      plot.lists.Title.clear();
      made.control->Attach(scene);
      made.control->Paint(scene);
    }
    Image Again() {
      made.control->Paint(scene);
      return made.control->Picture();
    }
    OffscreenControl::Made made;
    ClassGl scene;
  };
  Image Picture() {
    Stage stage(*this);
    stage.scene.CameraSet("ISO", 0, 0);
    return stage.Again();
  }
  // From the side of the Sun, `range` scene units from the middle to the upper edge: the central body in the middle
  // and a large satellite on its way, or the satellite alone.
  Image BodiesPicture(bool satellite) {
    view.redrawFraction = 0.2;
    view.options.SatelliteSize = satellite ? 64 : 900;
    view.options.Check1[3] = 1;
    Stage stage(*this);
    Camera& camera = stage.made.control->Camera();
    const Vec3 target = satellite ? PointShown(stage.scene, lists).place : Vec3{};
    camera.SetUp({0, 0, 1});
    camera.SetLookAt(target);
    camera.SetPosition({target[0] + 60, target[1] - 80, target[2] + 40});
    camera.SetSceneRange(satellite ? 0.4 : 9);
    return stage.Again();
  }

  testing::ScriptedDialogs dialogs;
  ErrorPrompt prompt{dialogs};
  testing::HandClock clock;
  PointLists lists;
  ViewState view;
  OrbitBodies bodies{prompt, ORV_SOURCE_DIR "/textures"};
  std::optional<RangePlot> plot;
};

struct Example {
  const char* name;
  const char* sheet;
  const char* cell;
  const char* specification;
};

constexpr Example kExamples[] = {
    {"3_columns", "Orbit", "A4", "=MAX(A24:C204)"},
    {"4_columns", "Orbit", "A5", "=0.001*MAX(A24:D204)"},
    {"6_columns", "Orbit", "A6", "=0.001*MAX(A24:F204)"},
    {"11_columns", "Orbit", "A7", "=0.001*MAX(A24:K204)"},
    {"13_columns", "Orbit", "A8", "=0.001*MAX(A24:M204)"},
    {"15_columns", "Orbit", "A9", "=0.001*MAX(A24:O204)"},
    {"valx", "Orbit", "A10",
     "=MAX(A24:C204)+MAX(D24:D204)+MAX(E24:F204)+MAX(G24:K204)+MAX(L24:M204)+MAX(U24:V204)&\"valx\""},
    {"valy", "Orbit", "A11",
     "=MAX(A24:C204)+MAX(D24:D204)+MAX(E24:F204)+MAX(G24:K204)+MAX(L24:M204)+MAX(U24:V204)&\"valy\""},
    {"valz", "Orbit", "A12",
     "=MAX(A24:C204)+MAX(D24:D204)+MAX(E24:F204)+MAX(G24:K204)+MAX(L24:M204)+MAX(U24:V204)&\"valz\""},
    {"esa", "Orbit", "A13", "=0.001*MAX(A24:C204)+MAX(D24:D204)+MAX(E24:F204)+MAX(P24:T204)&\"ESA\""},
    {"moon", "Orbit", "A14", "=0.001*MAX(A24:O204)&\"moon\""},
    {"penup", "Surface", "A4", "=MAX(A10:C149)+MAX(D10:D149)+MAX(E10:F149)+MAX(G10:I849)&\"PENUP\""},
    {"penup_valx", "Surface", "A5", "=MAX(A10:C149)+MAX(D10:D149)+MAX(E10:F149)+MAX(G10:I849)&\"PENUP valx\""},
    {"penup_points", "Surface", "A6", "=MAX(A10:C149) \"PENUP\""},
};

TEST(RangePlots, OfTheExampleLookAsTheyWereLookedAt) {
  std::map<std::string, Image> pictures;
  for (const Example& example : kExamples) {
    SCOPED_TRACE(example.name);
    ExamplePlot shown("xlsx", example.sheet, example.cell);
    ASSERT_TRUE(shown.plot);
    EXPECT_EQ(shown.plot->header.specification, example.specification);
    pictures[example.name] = shown.Picture();
    const GoldenTolerance& tolerance = shown.lists.EarthOn ? kBodies : kDrawing;
    EXPECT_TRUE(MatchesGolden(std::string("range_plot_") + example.name, pictures[example.name], tolerance));
    EXPECT_TRUE(shown.dialogs.boxes.empty());
    EXPECT_TRUE(shown.dialogs.log.empty());
  }
  // The comparison tells those apart that are to differ.
  const std::vector<std::string> unlike = {"3_columns", "4_columns", "6_columns",  "valx",        "valy",
                                           "valz",      "penup",     "penup_valx", "penup_points"};
  for (std::size_t a = 0; a < unlike.size(); ++a) {
    for (std::size_t b = a + 1; b < unlike.size(); ++b) {
      EXPECT_GT(DifferentShare(pictures[unlike[a]], pictures[unlike[b]], kDrawing), kDrawing.share)
          << unlike[a] << " and " << unlike[b];
    }
  }
}

// Those with an attitude: the satellite with its panels, and the body that it flies round, lit by the Sun.
TEST(RangePlots, OfTheExampleShowTheBodies) {
  std::map<std::string, Image> pictures;
  for (const Example& example : kExamples) {
    const std::string name = example.name;
    const bool orbit = name == "11_columns" || name == "13_columns" || name == "15_columns" || name == "esa";
    if (!orbit && name != "moon") continue;
    SCOPED_TRACE(name);
    for (const bool satellite : {false, true}) {
      ExamplePlot shown("xlsx", example.sheet, example.cell);
      ASSERT_TRUE(shown.plot);
      const std::string picture = name + (satellite ? "_satellite" : "_bodies");
      pictures[picture] = shown.BodiesPicture(satellite);
      EXPECT_TRUE(MatchesGolden("range_plot_" + picture, pictures[picture], kBodies));
      EXPECT_TRUE(shown.dialogs.log.empty()) << "the textures were read";
    }
  }
  const auto unlike = [&](const std::string& a, const std::string& b) {
    return DifferentShare(pictures.at(a), pictures.at(b), kBodies) > kBodies.share;
  };
  EXPECT_TRUE(unlike("11_columns_satellite", "13_columns_satellite")) << "the panels turn";
  EXPECT_FALSE(unlike("13_columns_satellite", "15_columns_satellite")) << "angles of the second panel count backwards";
  EXPECT_FALSE(unlike("11_columns_satellite", "esa_satellite")) << "one attitude, spelled in two ways";
  EXPECT_GT(DifferentShare(pictures.at("15_columns_bodies"), pictures.at("moon_bodies"), kDrawing), kDrawing.share);

  ExamplePlot other("xlsx", "Orbit", "A9");
  for (float& angle : other.lists.PanelAngleList2.row(1)) angle = -angle;
  EXPECT_GT(DifferentShare(other.BodiesPicture(true), pictures.at("15_columns_satellite"), kBodies), kBodies.share)
      << "the second panel turns by itself";
}

TEST(RangePlots, OfBothFormatsHoldTheSame) {
  for (const Example& example : kExamples) {
    SCOPED_TRACE(example.name);
    const ExamplePlot xlsx("xlsx", example.sheet, example.cell);
    const ExamplePlot ods("ods", example.sheet, example.cell);
    ASSERT_TRUE(xlsx.plot && ods.plot);
    EXPECT_EQ(xlsx.plot->header.specification, ods.plot->header.specification);
    EXPECT_EQ(xlsx.plot->lines, ods.plot->lines);
  }
}

TEST(RangePlots, OfTheExampleFillTheLists) {
  const ExamplePlot three("xlsx", "Orbit", "A4");
  EXPECT_EQ(three.lists.NumberPoints, 180);
  EXPECT_EQ(three.lists.EventCount, kNoEntry);
  EXPECT_FALSE(three.lists.EarthOn);
  const ExamplePlot four("xlsx", "Orbit", "A5");
  EXPECT_TRUE(four.lists.EarthOn && four.lists.TimePlot);
  EXPECT_EQ(four.lists.TraceCount, kNoEntry);
  const ExamplePlot six("xlsx", "Orbit", "A6");
  EXPECT_EQ(six.lists.EventCount, 8);
  const ExamplePlot eleven("xlsx", "Orbit", "A7");
  EXPECT_EQ(eleven.lists.TraceCount, 180);
  EXPECT_EQ(eleven.lists.PanelCount1, kNoEntry);
  const ExamplePlot thirteen("xlsx", "Orbit", "A8");
  EXPECT_EQ(thirteen.lists.PanelCount1, 180);
  EXPECT_EQ(thirteen.lists.PanelCount2, kNoEntry);
  const ExamplePlot fifteen("xlsx", "Orbit", "A9");
  EXPECT_EQ(fifteen.lists.PanelCount2, 180);
  EXPECT_EQ(fifteen.lists.PanelAngleList2(1, 7), -fifteen.lists.PanelAngleList1(1, 7));
  for (const auto& [cell, axis] : {std::pair{"A10", 1}, std::pair{"A11", 2}, std::pair{"A12", 3}}) {
    const ExamplePlot values("xlsx", "Orbit", cell);
    EXPECT_EQ(values.lists.ValueAxis, axis);
    EXPECT_EQ(values.lists.ValueCount, 180);
  }
  const ExamplePlot moon("xlsx", "Orbit", "A14");
  EXPECT_TRUE(moon.lists.MoonView);
  const ExamplePlot penUp("xlsx", "Surface", "A4");
  EXPECT_EQ(penUp.lists.NumberPoints, 139);
  EXPECT_EQ(penUp.lists.TraceCount, 839);
  EXPECT_EQ(penUp.lists.OutlineCount, 840);
}

// The attitude of the satellite is the same, whichever part of the quaternion stands first.
TEST(RangePlots, OfTheExampleTurnTheQuaternion) {
  const ExamplePlot first("xlsx", "Orbit", "A7");
  const ExamplePlot last("xlsx", "Orbit", "A13");
  ASSERT_EQ(last.lists.TraceCount, 180);
  for (int k = 0; k <= 180; ++k) {
    double length = 0;
    for (int row = 0; row < 5; ++row) {
      EXPECT_EQ(first.lists.TraceList(row, k), last.lists.TraceList(row, k)) << k << ", " << row;
      if (row > 0) length += std::pow(static_cast<double>(first.lists.TraceList(row, k)), 2);
    }
    EXPECT_NEAR(length, 1, 1e-5);
  }
}

}  // namespace
}  // namespace orv
