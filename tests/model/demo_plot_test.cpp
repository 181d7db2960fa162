#include "model/demo_plot.h"

#include <cmath>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <unistd.h>

#include "model/plot_reading.h"
#include "numerics/paths.h"
#include "support/scripted_dialogs.h"

namespace orv {
namespace {

namespace fs = std::filesystem;
using testing::ScriptedDialogs;

class DemoPlot : public ::testing::Test {
 protected:
  DemoPlot() : folder_(fs::path(::testing::TempDir()) / ("orv_demo_" + std::to_string(::getpid()))) {
    fs::remove_all(folder_);
  }
  ~DemoPlot() override { fs::remove_all(folder_); }

  std::string Name() const { return TextOf(folder_ / "settings" / "OrvValisDemo.xls"); }
  static std::string Bytes(const std::string& name) {
    std::ifstream in(PathOf(name), std::ios::binary);
    std::ostringstream bytes;
    bytes << in.rdbuf();
    return bytes.str();
  }

  fs::path folder_;
};

double Number(const std::string& text) {
  return std::stod(text);
}

TEST_F(DemoPlot, IsWrittenWhenItIsMissingAndLeftAloneOtherwise) {
  EnsureDemoPlot(Name());
  const std::string first = Bytes(Name());
  EXPECT_EQ(first.rfind("From: \tOrvValisDemo.xls\tDemo\t=0.001*MAX(A2:M602)\t0.0010000000\tValisExcelPro\tDate "
                        "2003/03/21 00:00:00\r\n",
                        0),
            0U);
  EXPECT_TRUE(IsPlotFile(first));
  std::ofstream(PathOf(Name()), std::ios::binary) << "the user's own";
  EnsureDemoPlot(Name());
  EXPECT_EQ(Bytes(Name()), "the user's own");
  fs::remove(PathOf(Name()));
  EnsureDemoPlot(Name());
  EXPECT_EQ(Bytes(Name()), first);
  EXPECT_EQ(std::distance(fs::directory_iterator(folder_ / "settings"), fs::directory_iterator()), 1);
}

TEST_F(DemoPlot, CannotBeWrittenWhereAFileStandsForItsFolder) {
  fs::create_directories(folder_);
  std::ofstream(folder_ / "settings") << "x";
  EXPECT_THROW(EnsureDemoPlot(Name()), RuntimeFailure);
  EXPECT_THROW(EnsureDemoPlot(""), RuntimeFailure);
}

TEST_F(DemoPlot, IsAClosedEccentricOrbit) {
  const auto lines = DemoLines();
  ASSERT_EQ(lines.size(), static_cast<std::size_t>(kDemoPoints));
  double nearest = 1e9;
  double farthest = 0;
  for (const auto& line : lines) {
    ASSERT_EQ(line.size(), static_cast<std::size_t>(kDemoColumns));
    const double r = std::hypot(Number(line[0]), Number(line[1]), Number(line[2]));
    nearest = std::min(nearest, r);
    farthest = std::max(farthest, r);
    EXPECT_EQ(line[3], line[6]);
    EXPECT_EQ(line[3], line[11]);
  }
  EXPECT_NEAR(nearest + farthest, 2 * 42241.1, 1);
  EXPECT_NEAR((farthest - nearest) / (farthest + nearest), 0.6, 1e-6);
  for (std::size_t k = 0; k < 3; ++k) EXPECT_NEAR(Number(lines.front()[k]), Number(lines.back()[k]), 1e-5);
  EXPECT_EQ(Number(lines.front()[3]), 37701);
  EXPECT_EQ(Number(lines.back()[3]), 37702);
}

// The speed of an orbit follows from its distance; differences over one step show it.
TEST_F(DemoPlot, MovesAsKeplerTells) {
  const auto lines = DemoLines();
  for (std::size_t k = 1; k + 1 < lines.size(); k += 37) {
    double speed2 = 0;
    double r2 = 0;
    for (std::size_t n = 0; n < 3; ++n) {
      const double v = (Number(lines[k + 1][n]) - Number(lines[k - 1][n])) / (2 * 86400.0 / (kDemoPoints - 1));
      speed2 += v * v;
      r2 += Number(lines[k][n]) * Number(lines[k][n]);
    }
    const double expected = 398600.4418 * (2 / std::sqrt(r2) - 1 / 42241.1);
    EXPECT_NEAR(speed2 / expected, 1, 2e-3) << k;
  }
}

TEST_F(DemoPlot, PointsItsThirdAxisToTheEarthAndTurnsThePanelsSmoothly) {
  const auto lines = DemoLines();
  double angleBefore = Number(lines.front()[12]);
  std::array<double, 4> before{};
  for (std::size_t k = 0; k < lines.size(); ++k) {
    std::array<double, 4> q{};
    double norm = 0;
    double same = 0;
    for (std::size_t n = 0; n < 4; ++n) {
      q[n] = Number(lines[k][7 + n]);
      norm += q[n] * q[n];
      same += q[n] * before[n];
    }
    EXPECT_NEAR(norm, 1, 1e-8);
    if (k > 0) {
      EXPECT_GT(same, 0.98) << k;
    }
    before = q;
    const double x = 2 * (q[1] * q[3] + q[0] * q[2]);
    const double y = 2 * (q[2] * q[3] - q[0] * q[1]);
    const double z = 1 - 2 * (q[1] * q[1] + q[2] * q[2]);
    const double r = std::hypot(Number(lines[k][0]), Number(lines[k][1]), Number(lines[k][2]));
    EXPECT_NEAR(x, -Number(lines[k][0]) / r, 1e-7);
    EXPECT_NEAR(y, -Number(lines[k][1]) / r, 1e-7);
    EXPECT_NEAR(z, -Number(lines[k][2]) / r, 1e-7);
    EXPECT_NEAR(Number(lines[k][12]), angleBefore, 4) << k;
    angleBefore = Number(lines[k][12]);
  }
}

TEST_F(DemoPlot, FillsEveryList) {
  ScriptedDialogs dialogs;
  ErrorPrompt prompt(dialogs);
  CellText reader(prompt, Locale{});
  PointLists lists;
  const PlotReading reading = ReadPlotFile({"", Name(), 1}, lists, reader);
  EXPECT_EQ(reading.source, PlotReading::Source::Demo);
  EXPECT_EQ(lists.NumberPoints, kDemoPoints - 1);
  EXPECT_EQ(lists.TraceCount, kDemoPoints - 1);
  EXPECT_EQ(lists.PanelCount1, kDemoPoints - 1);
  EXPECT_EQ(lists.PanelCount2, kNoEntry);
  EXPECT_EQ(lists.EventCount, 8);
  EXPECT_EQ(lists.EventList(1, 0), 0);
  EXPECT_EQ(lists.EventList(1, 1), 1);
  EXPECT_EQ(lists.FactorScale, 0.001);
  EXPECT_TRUE(lists.EarthOn);
  EXPECT_TRUE(lists.TimePlot);
  EXPECT_EQ(lists.PenUpMode, 0);
  EXPECT_EQ(lists.PlotValueMin, 37701);
  EXPECT_EQ(lists.PlotValueMax, 37702);
  EXPECT_EQ(lists.Title, "OrvValisDemo.xls/Demo");
  EXPECT_TRUE(dialogs.log.empty());
}

}  // namespace
}  // namespace orv
