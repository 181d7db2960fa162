#include "analysis/display_lists.h"

#include <algorithm>
#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "analysis/effect_phases.h"
#include "analysis/run_fixture.h"
#include "geometry/cell_walk.h"
#include "geometry/rigid_motion.h"
#include "numerics/number_format.h"
#include "numerics/text.h"

namespace orv::testing {
namespace {

using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::SizeIs;
using ::testing::StartsWith;

constexpr int kCells = 1 + 16 + 16;  // of the plain model
constexpr int kAxisEntries = 60;

// What clients of the display see when they are called.
class WatchingPhases : public EffectPhases {
 public:
  void FillPointLists(RunContext& run) override { pointsSeen.push_back(run.lists.NumberPoints); }
  void WriteReports(RunContext&) override {}
  std::vector<int> pointsSeen;
};

class DisplayListsTest : public RunFixture {
 protected:
  DisplayListsTest() { text.AddAllYields(); }
  bool Compute(double plot = 13, double logScale = 0) {
    Load();
    selection.choices = {{plot, "", logScale}};
    return a_SpaceApplication(run, selection, effects);
  }
  bool PlotAgain(double plot) {
    run.plot.IndexPlotRequest = plot;
    return a_SpaceApplication(run, selection, effects);
  }
  const PointLists& Lists() const { return run.lists; }
  float Point(int row, int n) const { return run.lists.PointList(row, n); }
  float Trace(int row, int n) const { return run.lists.TraceList(row, n); }
  Vector3 PlaceOf(int n) const {
    const auto x = [&](int row) { return static_cast<double>(Point(row, n)); };
    return {x(1), x(2), x(3)};
  }
  Vector3 TracePoint(int n) const {
    const auto x = [&](int row) { return static_cast<double>(Trace(row, n)); };
    return {x(0), x(1), x(2)};
  }
  static void ExpectPlace(const Vector3& place, const Vector3& expected) {
    for (std::size_t axis = 1; axis <= 3; ++axis) EXPECT_NEAR(place(axis), expected(axis), 1e-6) << "axis " << axis;
  }
  void PutThruster(const std::string& tail) { text.primitives[0] += " " + tail; }

  WatchingPhases effects;
};

// --- points ----------------------------------------------------------------------------------------------------------

TEST_F(DisplayListsTest, CellCentresAreThePointsInTheirOrder) {
  PutThruster("T 0.25 0 -1");
  ASSERT_TRUE(Compute(1));
  EXPECT_EQ(Lists().NumberPoints, kCells + kAxisEntries - 1);
  int n = 0;
  for (int p = 1; p <= 3; ++p) {
    for (int i = 1; i <= (p == 1 ? 1 : 4); ++i) {
      for (int j = 1; j <= (p == 1 ? 1 : 4); ++j, ++n) {
        ExpectPlace(PlaceOf(n), {Data(p, i, j, 1), Data(p, i, j, 2), Data(p, i, j, 3)});
        EXPECT_EQ(Point(4, n), kPenUp);
      }
    }
  }
  EXPECT_EQ(n, kCells);
  EXPECT_EQ(Point(0, 0), 1) << "the thruster is drawn at full value";
  // Plate 2 reaches from -0.75 to 0.75, and 0.25 of the thruster is not on the scale.
  EXPECT_NEAR(Lists().legend.LegendMin, -0.75, 1e-6);
  EXPECT_NEAR(Lists().legend.LegendMax, 0.75, 1e-6);
  for (int c = 1; c < kCells; ++c) EXPECT_NEAR(Point(0, c), (Point(1, c) + 0.75) / 1.5, 1e-6) << c;
}

TEST_F(DisplayListsTest, TheThrusterShowsItsAxesAsPoints) {
  PutThruster("T 0 0 -1");
  ASSERT_TRUE(Compute());
  const ThrusterFrame& frame = run.thruster.frame;
  const double spacing = 2.0 / 20;
  int n = kCells;
  for (int k = 1; k <= 20; ++k) {
    for (const auto& [axis, value] : {std::pair{frame.axiT, 1.0F}, {frame.AxAzimuth, 0.5F}, {frame.axDeclin, 0.0F}}) {
      Vector3 expected;
      vScaleAdd(axis, k * spacing, frame.ThrusterPosition, expected);
      ExpectPlace(PlaceOf(n), expected);
      EXPECT_EQ(Point(0, n), value);
      EXPECT_EQ(Point(4, n), kPenUp);
      ++n;
    }
  }
  EXPECT_EQ(n, Lists().NumberPoints + 1);
  EXPECT_EQ(Lists().PlotValueMin, 0);
  EXPECT_EQ(Lists().PlotValueMax, 1);
}

TEST_F(DisplayListsTest, AThrusterAtTheOriginTakesTheSizeOfTheScene) {
  ASSERT_TRUE(Compute());
  ASSERT_EQ(vNorm(run.thruster.frame.ThrusterPosition), 0);
  const double radius = CellRadius(run.cells, {});
  EXPECT_NEAR(radius, std::sqrt(0.75 * 0.75 * 2 + 2.9 * 2.9), 1e-9);
  Vector3 expected;
  vScaleAdd(run.thruster.frame.axiT, radius / 20, {}, expected);
  ExpectPlace(PlaceOf(kCells), expected);
  vScaleAdd(run.thruster.frame.axiT, radius, {}, expected);
  ExpectPlace(PlaceOf(kCells + 57), expected);
  ExpectPlace(TracePoint(6 * kCells + 1), expected);
}

TEST_F(DisplayListsTest, AMarkedMomentOriginShiftsTheScene) {
  PutThruster("T 0 0 -1");
  ASSERT_TRUE(Compute(22));
  const Vector3 cell = PlaceOf(5);
  const Vector3 axis = PlaceOf(kCells + 4);
  const Vector3 corner = TracePoint(6 * 5 + 2);
  const Vector3 line = TracePoint(6 * kCells + 3);
  const Vector3 vector = TracePoint(6 * kCells + 6);
  const auto expectShifted = [&](double dx, double dy, double dz) {
    const auto shifted = [&](const Vector3& v) { return Vector3(v(1) - dx, v(2) - dy, v(3) - dz); };
    ExpectPlace(PlaceOf(5), shifted(cell));
    ExpectPlace(PlaceOf(kCells + 4), shifted(axis));
    ExpectPlace(TracePoint(6 * 5 + 2), shifted(corner));
    ExpectPlace(TracePoint(6 * kCells + 3), shifted(line));
    ExpectPlace(TracePoint(6 * kCells + 6), shifted(vector));
  };
  run.model.directives.MomentOrigin = {2, 1, 2, 3};  // as a sheet sets it
  PlotAgain(22);
  expectShifted(0, 0, 0);
  run.model.directives.MomentOrigin = {1, 1, 2, 3};
  PlotAgain(22);
  expectShifted(1, 2, 3);
}

TEST_F(DisplayListsTest, AModelWithoutAThrusterExcludesNothing) {
  text.primitives.erase(text.primitives.begin());
  ASSERT_TRUE(Compute(1));
  EXPECT_EQ(Lists().NumberPoints, 32 + kAxisEntries - 1);
  EXPECT_LT(Point(0, 0), 1);
}

// --- lines -----------------------------------------------------------------------------------------------------------

TEST_F(DisplayListsTest, TheAxesStandBehindTheOutlines) {
  PutThruster("T 0 0 -1.5");
  ASSERT_TRUE(Compute());
  run.stores.HeatFluxList.clear();
  PlotAgain(13);
  EXPECT_EQ(Lists().OutlineCount, 6 * kCells);
  EXPECT_EQ(Lists().TraceCount, 6 * kCells + 6 - 1);
  EXPECT_EQ(Lists().TraceMin, 0);
  EXPECT_EQ(Lists().TraceMax, Lists().TraceCount);
  const ThrusterFrame& frame = run.thruster.frame;
  int n = 6 * kCells;
  for (const Vector3& axis : {frame.axiT, frame.AxAzimuth, frame.axDeclin}) {
    Vector3 end;
    vScaleAdd(axis, 3, frame.ThrusterPosition, end);
    ExpectPlace(TracePoint(n), frame.ThrusterPosition);
    ExpectPlace(TracePoint(n + 1), end);
    EXPECT_EQ(Trace(3, n), 0);
    EXPECT_EQ(Trace(3, n + 1), 0);
    n += 2;
  }
  EXPECT_EQ(Trace(3, n), kPenUp);
}

TEST_F(DisplayListsTest, HeatFluxVectorsWaitBehindTheTrace) {
  PutThruster("T 0 0 -1");
  ASSERT_TRUE(Compute(22));
  const std::vector<HeatFluxPoint>& vectors = run.stores.HeatFluxList;
  ASSERT_THAT(vectors, Not(IsEmpty()));
  EXPECT_EQ(Lists().VectorCount, static_cast<int>(vectors.size()));
  EXPECT_FALSE(Lists().VectorsShown);
  const int first = 6 * kCells + 6;
  EXPECT_EQ(Lists().TraceCount, first - 1);
  EXPECT_EQ(Lists().TraceMax, first - 1);
  for (std::size_t k = 0; k < vectors.size(); ++k) {
    for (std::size_t row = 0; row < 4; ++row)
      EXPECT_EQ(Trace(static_cast<int>(row), first + static_cast<int>(k)), vectors[k][row]);
  }
  // The window shows them; the next plot hides them again.
  run.lists.VectorsShown = true;
  run.lists.TraceCount += run.lists.VectorCount;
  PlotAgain(9);
  EXPECT_FALSE(Lists().VectorsShown);
  EXPECT_EQ(Lists().TraceCount, first - 1);
  EXPECT_EQ(Lists().VectorCount, static_cast<int>(vectors.size()));
}

TEST_F(DisplayListsTest, HeatFluxVectorsAreAShareOfTheModel) {
  settings.Write("UseOrv", "HeatFluxScale", "0.25");
  ASSERT_TRUE(Compute(22));
  const auto& vectors = run.stores.HeatFluxList;
  ASSERT_THAT(vectors, SizeIs(::testing::Ge(6U)));
  const auto length = [&](std::size_t k) {
    double sum = 0;
    for (std::size_t axis = 0; axis < 3; ++axis) sum += std::pow(vectors[k + 1][axis] - vectors[k][axis], 2);
    return std::sqrt(sum);
  };
  const double radius = CellRadius(run.cells, {});
  EXPECT_NEAR(length(0), 0.25 * radius, 1e-5);
  EXPECT_NEAR(length(3), 0.25 * radius / 4, 1e-5);
}

TEST(AddTraceLineTest, WritesAPairAndLiftsThePenBehind) {
  PointLists lists;
  lists.OutlineCount = 12;
  lists.TraceCount = 11;
  int count = 0;
  AddTraceLine(lists, count, 2, {1, 2, 3}, {0, 0, -1}, {1, 1, 1});
  EXPECT_EQ(count, 2);
  EXPECT_EQ(lists.TraceCount, 13);
  EXPECT_EQ(lists.TraceList(0, 12), 0);
  EXPECT_EQ(lists.TraceList(1, 12), 1);
  EXPECT_EQ(lists.TraceList(2, 12), 2);
  EXPECT_EQ(lists.TraceList(2, 13), 0);
  EXPECT_EQ(lists.TraceList(3, 13), 0);
  EXPECT_EQ(lists.TraceList(3, 14), kPenUp);
  AddTraceLine(lists, count, 1, {5, 0, 0}, {1, 0, 0}, {});
  EXPECT_EQ(count, 4);
  EXPECT_EQ(lists.TraceList(3, 14), 0) << "the next line begins there";
  EXPECT_EQ(lists.TraceList(0, 15), 6);
  EXPECT_EQ(lists.TraceList(3, 16), kPenUp);
}

TEST(AddTraceLineTest, EndsAtTenThousandEntriesOfItsOwn) {
  PointLists lists;
  lists.OutlineCount = 600000;
  lists.TraceCount = lists.OutlineCount - 1;
  int count = 9998;
  AddTraceLine(lists, count, 1, {}, {1, 0, 0}, {});
  EXPECT_EQ(count, 10000);
  EXPECT_EQ(lists.TraceCount, 609999);
  AddTraceLine(lists, count, 1, {}, {1, 0, 0}, {});
  EXPECT_EQ(count, 10000);
  EXPECT_EQ(lists.TraceCount, 609999);
}

TEST(AddTraceLineTest, FailsBeyondTheTable) {
  PointLists lists;
  lists.OutlineCount = kListEntries - 4;
  lists.TraceCount = lists.OutlineCount - 1;
  int count = 0;
  AddTraceLine(lists, count, 1, {}, {1, 0, 0}, {});
  EXPECT_EQ(count, 2);
  EXPECT_THROW(AddTraceLine(lists, count, 1, {}, {1, 0, 0}, {}), RuntimeFailure);
  EXPECT_EQ(count, 2);
  EXPECT_EQ(lists.TraceCount, kListEntries - 3);
}

// --- hand-over -------------------------------------------------------------------------------------------------------

TEST_F(DisplayListsTest, ThePlotIsHandedOverForANewNormalisation) {
  run.lists.FirstDraw = 1;
  ASSERT_TRUE(Compute(13, 1));
  EXPECT_EQ(Lists().PenUpMode, 1);
  EXPECT_EQ(Lists().FactorScale, 1.01);
  EXPECT_FALSE(Lists().EarthOn);
  EXPECT_FALSE(Lists().TimePlot);
  EXPECT_EQ(Lists().EventCount, kNoEntry);
  EXPECT_EQ(Lists().IndexPlot, 13);
  EXPECT_EQ(Lists().PlotLoaded, 0);
  EXPECT_EQ(Lists().PlotNormalised, 0);
  EXPECT_EQ(Lists().FirstDraw, 0);
  EXPECT_EQ(Lists().KeepScale, 0);
  EXPECT_FALSE(Lists().rotation.present);
  EXPECT_EQ(Lists().legend.LogScale, 1);
  EXPECT_EQ(Lists().legend.unit, "m-3");
  EXPECT_EQ(effects.pointsSeen, std::vector<int>{kCells + kAxisEntries - 1});
}

TEST_F(DisplayListsTest, ARePlotFillsThemAgainOnTheScaleBefore) {
  ASSERT_TRUE(Compute());
  // As a scene leaves them.
  run.lists.PlotLoaded = 1;
  run.lists.PlotNormalised = 1;
  run.lists.FactorScale = 30;
  run.lists.PointList(1, 3) = 99;
  ASSERT_TRUE(PlotAgain(9));
  EXPECT_EQ(Lists().KeepScale, 1);
  EXPECT_EQ(Lists().PlotLoaded, 0);
  EXPECT_EQ(Lists().PlotNormalised, 0);
  EXPECT_EQ(Lists().FactorScale, 1.01);
  EXPECT_EQ(Lists().IndexPlot, 9);
  EXPECT_NEAR(Point(1, 3), Data(2, 1, 3, 1), 1e-6);
  EXPECT_THAT(Lists().Title, StartsWith("OrvValis  M1  IncidenceOnElem (deg) Scale "));
  EXPECT_EQ(run.plot.PlotTitle, Lists().Title);
  EXPECT_THAT(run.record.CaseLine, HasSubstr(" OrvValis  M1  IncidenceOnElem (deg) Scale "));
  EXPECT_EQ(effects.pointsSeen.size(), 2U);
  ASSERT_TRUE(Compute());
  EXPECT_EQ(Lists().KeepScale, 0);
  EXPECT_THAT(Lists().Title, StartsWith("OrvValis  M2  Density (m-3) Scale "));
}

TEST_F(DisplayListsTest, AFailedPartIsToldAndTheOthersStand) {
  ASSERT_TRUE(Compute());
  ASSERT_THAT(dialogs.boxes, IsEmpty());
  ASSERT_TRUE(PlotAgain(121));
  EXPECT_EQ(dialogs.Count("Subscript out of range"), 1);
  EXPECT_EQ(Point(0, 3), 0);
  EXPECT_NEAR(Point(1, 3), Data(2, 1, 3, 1), 1e-6);
  EXPECT_EQ(Lists().TraceCount, 6 * kCells + 5);
  EXPECT_EQ(Lists().IndexPlot, 121);
}

// A box may let the window paint: it must find the plot before, not half of the next.
TEST_F(DisplayListsTest, NoBoxMeetsHalfFilledLists) {
  class Painting : public ScriptedDialogs {
   public:
    Answer Ask(const std::string& message, const std::string& title, Buttons buttons, Icon icon) override {
      plotsSeen.push_back(context->lists.IndexPlot);
      return ScriptedDialogs::Ask(message, title, buttons, icon);
    }
    RunContext* context = nullptr;
    std::vector<double> plotsSeen;
  } painting;
  ErrorPrompt paintingPrompt(painting);
  RunContext other(paintingPrompt, reader, settings, clock, folder.path().string() + "/");
  painting.context = &other;
  Load();
  other.model = run.model;
  selection.choices = {{13, "", {}}};
  ASSERT_TRUE(a_SpaceApplication(other, selection, effects));
  painting.plotsSeen.clear();
  other.plot.IndexPlotRequest = 121;
  ASSERT_TRUE(a_SpaceApplication(other, selection, effects));
  EXPECT_THAT(painting.plotsSeen, Not(IsEmpty()));
  EXPECT_THAT(painting.plotsSeen, ::testing::Each(13));
  EXPECT_EQ(other.lists.IndexPlot, 121);
}

TEST_F(DisplayListsTest, AModelBeyondTheOutlinesKeepsItsPoints) {
  text.directives = "NotHidden 1";
  text.primitives = {"T5\tThruster thr size 0.05 0.1 cells 1 1",
                     "silver\tPlate rect size 1 1 cells 350 500 R X 180 T 0 0 2"};
  Load();
  ASSERT_TRUE(Run(1));
  EXPECT_EQ(dialogs.Count("Risks of memory overflow for the 3D views."), 1);
  EXPECT_EQ(Lists().NumberPoints, 175001 + kAxisEntries - 1);
  EXPECT_EQ(Lists().OutlineCount, 6 * 174762);
  EXPECT_LT(Lists().TraceCount, kListEntries);
  EXPECT_EQ(Lists().TraceMax, Lists().TraceCount);
  EXPECT_EQ(dialogs.Count("error fautea_SpaceApplicationCellsBordersQater"), 1);
  EXPECT_EQ(Lists().PlotLoaded, 0);
}

// --- title -----------------------------------------------------------------------------------------------------------

TEST_F(DisplayListsTest, AVolumeTellsItsPlasmaInThePlotOfTheDensity) {
  text.primitives.push_back("gold\tVolume cyl size 3 2 2 cells 5 2 T 0 0 1");
  ASSERT_TRUE(Compute(13));
  ASSERT_NE(run.cells.numberPrimWithVolumic, run.model.NumberOfPrimitives);
  ASSERT_THAT(run.record.PlasmaText, Not(IsEmpty()));
  EXPECT_THAT(Lists().Title, EndsWith(run.record.PlasmaText));
  const std::size_t at = Lists().Title.find(run.record.PlasmaText);
  EXPECT_EQ(Lists().Title.find(run.record.PlasmaText, at + 1), std::string::npos) << "told once";
  EXPECT_EQ(run.record.CaseLine.find_first_of("\r\n"), std::string::npos);
  EXPECT_EQ(TraceText(), Windows1252FromUtf8(run.record.CaseLine) + "\r\n");
  PlotAgain(9);
  EXPECT_THAT(Lists().Title, Not(HasSubstr(run.record.PlasmaText)));
  PlotAgain(13);
  EXPECT_THAT(Lists().Title, EndsWith(run.record.PlasmaText));
  // Any full run adds it at its end.
  ASSERT_TRUE(Compute(9));
  EXPECT_THAT(Lists().Title, EndsWith(run.record.PlasmaText));
  EXPECT_EQ(run.plot.PlotTitle, Lists().Title);
}

// --- a turn ----------------------------------------------------------------------------------------------------------

class DisplayTurn : public DisplayListsTest {
 protected:
  // The steps of a turn that the rotation table of a primitive lists.
  static std::string Steps(int count) {
    std::string table = "\tShift 0 Rot% ";
    for (int k = 0; k < count; ++k) {
      table += std::to_string(k * 360 / count) + " " + NumberText(1.0 / count) + (k + 1 < count ? " | " : "");
    }
    return table;
  }
  DisplayTurn() {
    text.directives = "Rotation 0 360 45 Recto 1";
    text.primitives[2] = "gold\tWing rect size 1 0.5 cells 4 3 R X 180 T 0 0.5 2 Automatic Y T 0 0 0.3" + Steps(8);
  }
  const AutoRotation& Turn() const { return run.lists.rotation; }

  // Motions and places of a primitive agree with what the run stored.
  void ExpectFrames(const TurningPrimitive& primitive, int p, int frames) {
    const int cells = run.cells.CountI(p) * run.cells.CountJ(p);
    EXPECT_EQ(primitive.count, cells);
    EXPECT_EQ(primitive.outlineStart, 6 * primitive.start);
    EXPECT_EQ(primitive.outlineEntries, 6 * cells);
    ASSERT_THAT(primitive.positions, SizeIs(static_cast<std::size_t>(frames) + 1));
    ASSERT_THAT(primitive.motions, SizeIs(static_cast<std::size_t>(frames) + 1));
    for (int c = 0; c < cells; ++c) {
      for (int axis = 0; axis < 3; ++axis) {
        EXPECT_EQ(primitive.positions[0][static_cast<std::size_t>(c)][static_cast<std::size_t>(axis)],
                  Point(axis + 1, primitive.start + c));
      }
    }
    for (std::size_t f = 0; f <= static_cast<std::size_t>(frames); ++f) {
      ASSERT_THAT(primitive.positions[f], SizeIs(static_cast<std::size_t>(cells)));
      for (std::size_t c = 0; c < primitive.positions[f].size(); ++c) {
        const Point3 moved = Moved(primitive.motions[f], primitive.positions[0][c]);
        for (std::size_t axis = 0; axis < 3; ++axis) {
          EXPECT_NEAR(moved[axis], primitive.positions[f][c][axis], 1e-5) << "frame " << f << " cell " << c;
        }
      }
    }
  }
};

TEST_F(DisplayTurn, ErosionHasAFrameForEachStep) {
  ASSERT_TRUE(Compute(19));
  ASSERT_TRUE(Turn().present);
  EXPECT_EQ(Turn().AutoRotPrimitive, 3);
  EXPECT_EQ(Turn().frames, 8);
  EXPECT_EQ(Turn().main.start, 17);
  EXPECT_THAT(Turn().extra, IsEmpty());
  ExpectFrames(Turn().main, 3, 8);
  const auto& places = run.stores.AutoRotatedStore;
  for (int f = 1; f <= 8; ++f) {
    for (int i = 1; i <= 4; ++i) {
      for (int j = 1; j <= 3; ++j) {
        const auto c = static_cast<std::size_t>(3 * (i - 1) + j - 1);
        for (int axis = 1; axis <= 3; ++axis) {
          EXPECT_EQ(Turn().main.positions[static_cast<std::size_t>(f)][c][static_cast<std::size_t>(axis - 1)],
                    places(f, i, j, axis, 1));
        }
      }
    }
  }
}

TEST_F(DisplayTurn, ValuesOfTheStepsAreOnTheScaleOfThePlot) {
  ASSERT_TRUE(Compute(19));
  ASSERT_TRUE(Turn().hasValues);
  ASSERT_THAT(Turn().values, SizeIs(9));
  const auto& store = run.stores.RotationCellStore;
  const double min = Lists().legend.ScaleMin;
  const double max = Lists().legend.ScaleMax;
  ASSERT_GT(max, min);
  bool anyErosion = false;
  for (int f = 0; f <= 8; ++f) {
    const auto frame = static_cast<std::size_t>(f);
    float low = 1000;
    float high = 0;
    for (int i = 1; i <= 4; ++i) {
      for (int j = 1; j <= 3; ++j) {
        const auto c = static_cast<std::size_t>(3 * (i - 1) + j - 1);
        const double raw = f == 0 ? Data(3, i, j, 19) : static_cast<double>(store(f, i, j, 0));
        EXPECT_NEAR(Turn().values[frame][c], (raw - min) / (max - min), 1e-5) << f << ' ' << c;
        low = std::min(low, Turn().values[frame][c]);
        high = std::max(high, Turn().values[frame][c]);
        anyErosion = anyErosion || (f > 0 && raw > 0);
        if (f == 0) {
          EXPECT_EQ(Turn().values[0][c], Point(0, Turn().main.start + static_cast<int>(c)));
        }
      }
    }
    EXPECT_EQ(Turn().minimum[frame], low) << f;
    EXPECT_EQ(Turn().maximum[frame], high) << f;
  }
  EXPECT_TRUE(anyErosion);
}

TEST_F(DisplayTurn, StoresOfTheRunStayAsTheyAre) {
  ASSERT_TRUE(Compute(19, 1));
  const auto valueOf = [&](int f, int i, int q) { return run.stores.RotationCellStore(f, i, 2, q); };
  std::vector<float> before;
  for (int f = 0; f <= 8; ++f) {
    for (int q = 0; q <= 20; ++q) before.push_back(valueOf(f, 2, q));
  }
  before.push_back(static_cast<float>(Data(3, 2, 2, 19)));
  PlotAgain(19);
  const std::vector<float> row(Lists().PointList.row(0).begin(), Lists().PointList.row(0).begin() + 100);
  PlotAgain(19);
  EXPECT_TRUE(std::equal(row.begin(), row.end(), Lists().PointList.row(0).begin()));
  std::size_t n = 0;
  for (int f = 0; f <= 8; ++f) {
    for (int q = 0; q <= 20; ++q) EXPECT_EQ(valueOf(f, 2, q), before[n++]);
  }
  EXPECT_EQ(static_cast<float>(Data(3, 2, 2, 19)), before[n]);
}

TEST_F(DisplayTurn, OtherPlotsOfTheRunTurnWithoutValues) {
  ASSERT_TRUE(Compute(19));
  PlotAgain(9);
  EXPECT_TRUE(Turn().present);
  EXPECT_FALSE(Turn().hasValues);
  EXPECT_THAT(Turn().values, IsEmpty());
  ExpectFrames(Turn().main, 3, 8);
  PlotAgain(90);  // not computed by this run
  EXPECT_FALSE(Turn().hasValues);
  PlotAgain(19);
  EXPECT_TRUE(Turn().hasValues);
}

TEST_F(DisplayTurn, RedepositionShowsTheSlotOfThePlot) {
  text.primitives[1] = "silver\tPlate rect size 1 1 cells 3 3 R X 180 T 0 0 2.6";
  text.primitives[2] = "gold\tWing rect size 0.4 0.5 cells 4 3 Automatic X T 0.8 0 1.2" + Steps(8);
  ASSERT_TRUE(Compute(95));
  for (const auto& [plot, slot] : {std::pair{90, 1}, {91, 2}, {95, 6}, {96, 7}, {100, 11}, {101, 12}}) {
    SCOPED_TRACE(plot);
    PlotAgain(plot);
    ASSERT_TRUE(Turn().hasValues);
    const double min = Lists().legend.ScaleMin;
    const double max = Lists().legend.ScaleMax;
    double total = 0;
    for (int f = 0; f <= 8; ++f) {
      for (int i = 1; i <= 4; ++i) {
        for (int j = 1; j <= 3; ++j) {
          const double raw =
              f == 0 ? Data(3, i, j, plot) : static_cast<double>(run.stores.RedepositionStore(f, i, j, slot, 3));
          total += raw;
          const double expected = max == min ? raw : (raw - min) / (max - min);
          EXPECT_NEAR(Turn().values[static_cast<std::size_t>(f)][static_cast<std::size_t>(3 * (i - 1) + j - 1)],
                      expected, 1e-5);
        }
      }
    }
    EXPECT_EQ(total > 0, slot % 5 == 1) << "silver lands on the golden wing";
  }
  PlotAgain(105);
  EXPECT_FALSE(Turn().hasValues);
}

TEST_F(DisplayTurn, CleaningNeedsARunThatCleans) {
  ASSERT_TRUE(Compute(90));
  EXPECT_TRUE(Turn().hasValues);
  PlotAgain(96);
  EXPECT_TRUE(Turn().present);
  EXPECT_FALSE(Turn().hasValues);
}

TEST_F(DisplayTurn, AHeatFluxTurnHasPlacesToo) {
  ASSERT_TRUE(Compute(22));
  ASSERT_TRUE(Turn().present);
  EXPECT_EQ(Turn().frames, 8);
  EXPECT_FALSE(Turn().hasValues);
  ExpectFrames(Turn().main, 3, 8);
  const Point3 first = Turn().main.positions[1][0];
  const Point3 half = Turn().main.positions[5][0];
  EXPECT_NEAR(first[0], -half[0], 1e-5) << "half a turn about Y";
  PlotAgain(19);
  EXPECT_TRUE(Turn().present);
  EXPECT_FALSE(Turn().hasValues);
}

TEST_F(DisplayTurn, NothingIsPresentWithoutATurn) {
  for (const double plot : {13.0, 64.0}) {
    ASSERT_TRUE(Compute(plot));
    EXPECT_FALSE(Turn().present) << plot;
    EXPECT_THAT(Turn().main.positions, IsEmpty());
  }
  // What an earlier run stored is not of this one.
  ASSERT_TRUE(Compute(22));
  ASSERT_TRUE(Compute(13));
  EXPECT_FALSE(Turn().present);
  // Phases that compute nothing.
  Load();
  selection.choices = {{19, "", {}}};
  ASSERT_TRUE(a_SpaceApplication(run, selection, phases));
  EXPECT_FALSE(Turn().present);
}

TEST_F(DisplayTurn, SeveralPrimitivesTurnEachInItsPlace) {
  text.primitives[1] = "silver\tMast cyl 0.2 1 1 cells 6 2 T 0 -1 2 Automatic Y T 0 0 0.3";
  ASSERT_TRUE(Compute(19));
  EXPECT_EQ(Turn().AutoRotPrimitive, 3);
  ASSERT_THAT(Turn().extra, SizeIs(1));
  EXPECT_EQ(Turn().extra[0].start, 1);
  EXPECT_EQ(Turn().main.start, 13);
  ExpectFrames(Turn().extra[0], 2, 8);
  ExpectFrames(Turn().main, 3, 8);
}

// Cells in one row tell no turn about their line: the normals do, and other primitives follow the rotating one.
TEST_F(DisplayTurn, RowsOfCellsTurnWithTheirNormals) {
  text.primitives[1] = "silver\tRow rect size 0.1 1 cells 1 4 Automatic Y T 0 -1 2";
  text.primitives[2] = "gold\tWing rect size 0.2 1 cells 1 4 Automatic Y T 0 0.5 2" + Steps(8);
  ASSERT_TRUE(Compute(19));
  ASSERT_THAT(Turn().extra, SizeIs(1));
  for (std::size_t f = 1; f <= 8; ++f) {
    SCOPED_TRACE(f);
    const double angle = 45.0 * static_cast<double>(f - 1) * std::acos(-1.0) / 180;
    for (const RigidMotion& motion : {Turn().main.motions[f], Turn().extra[0].motions[f]}) {
      // About Y, Z turns towards X.
      EXPECT_NEAR(motion.rotation[0], std::cos(angle), 1e-5);
      EXPECT_NEAR(motion.rotation[2], std::sin(angle), 1e-5);
      EXPECT_NEAR(motion.rotation[4], 1, 1e-5);
      EXPECT_NEAR(motion.rotation[6], -std::sin(angle), 1e-5);
    }
  }
}

TEST_F(DisplayTurn, CellsBeyondTheStoresMoveWithTheOthers) {
  text.directives = "Rotation 0 360 90 Recto 1";
  text.primitives[2] = "gold\tWing rect size 1 0.5 cells 74 2 R X 180 T 0 0.5 2 Automatic Y T 0 0 0.3" + Steps(4);
  ASSERT_TRUE(Compute(19));
  ASSERT_TRUE(Turn().present);
  ExpectFrames(Turn().main, 3, 4);
  const auto& values = Turn().values;
  for (std::size_t f = 1; f <= 4; ++f) {
    for (std::size_t c = 144; c < 148; ++c) EXPECT_EQ(values[f][c], values[0][c]) << "the mean";
  }
}

TEST_F(DisplayTurn, TheTurnFollowsTheShift) {
  ASSERT_TRUE(Compute(19));
  const Point3 before = Turn().main.positions[3][5];
  run.model.directives.MomentOrigin = {1, 1, 2, 3};
  PlotAgain(19);
  const Point3 behind = Turn().main.positions[3][5];
  EXPECT_NEAR(behind[0], before[0] - 1, 1e-5);
  EXPECT_NEAR(behind[1], before[1] - 2, 1e-5);
  EXPECT_NEAR(behind[2], before[2] - 3, 1e-5);
  ExpectFrames(Turn().main, 3, 8);
}

TEST_F(DisplayTurn, TheTitleTellsTheAverageOfATurn) {
  ASSERT_TRUE(Compute(19));
  const std::string average = run.record.SputterText;
  ASSERT_THAT(average, StartsWith("  (Average/Rotations  R "));
  EXPECT_THAT(Lists().Title, EndsWith(average));
  EXPECT_THAT(run.record.CaseLine, HasSubstr(average));
  PlotAgain(9);
  EXPECT_THAT(Lists().Title, Not(HasSubstr("Average/Rotations")));
  PlotAgain(90);
  EXPECT_THAT(Lists().Title, EndsWith(average));
  ASSERT_TRUE(Compute(13));
  EXPECT_THAT(Lists().Title, Not(HasSubstr("Average/Rotations")));
}

}  // namespace
}  // namespace orv::testing
