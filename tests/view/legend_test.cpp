#include "view/legend.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>

#include "numerics/text.h"
#include "view/colour_scale.h"
#include "view/recording_control.h"

namespace orv {
namespace {

struct LegendTest : testing::Test {
  LegendTest() {
    lists.legend = {2, 12, 2, 12, 0, 0, "W/m2"};
    lists.Title = "Title";
  }
  std::vector<LegendLabel> Labels() { return LegendLabels(lists, state.ColorStyle); }
  void Draw() { DrawLegend({lists, state, 5, 7}, control); }
  const OverlayText* Overlay(const std::string& part) {
    const auto& texts = control.OverlayTexts();
    const auto found =
        std::find_if(texts.begin(), texts.end(), [&](const OverlayText& t) { return Contains(t.text, part); });
    return found == texts.end() ? nullptr : &*found;
  }

  PointLists lists;
  ViewState state;
  RecordingControl control{800, 700};
};

double ByCharacters(const std::string& text) {
  return static_cast<double>(CharacterCount(text));
}

std::vector<int> LevelsOf(const std::vector<LegendLabel>& labels) {
  std::vector<int> levels;
  for (const LegendLabel& label : labels) levels.push_back(label.level);
  return levels;
}

TEST(LegendPlaces, EndsAreExact) {
  for (const int levels : {26, 32, 64}) {
    EXPECT_EQ(LegendPosition(1, levels), 0);
    EXPECT_EQ(LegendPosition(levels, levels), 1);
    EXPECT_EQ(LegendGrowth(levels, levels), 1);
  }
  EXPECT_DOUBLE_EQ(LegendPosition(2, 32), 1.0 / 31);
  EXPECT_DOUBLE_EQ(LegendGrowth(1, 32), 1 - 31.0 / 96);
}

TEST_F(LegendTest, LabelledLevelsByStyle) {
  state.ColorStyle = 3;
  EXPECT_EQ(LevelsOf(Labels()), (std::vector<int>{1, 3, 9, 15, 21, 27, 32}));
  state.ColorStyle = 6;
  EXPECT_EQ(LevelsOf(Labels()), (std::vector<int>{1, 3, 9, 15, 21, 26}));
  state.ColorStyle = 0;
  EXPECT_EQ(LevelsOf(Labels()), (std::vector<int>{1, 3, 8, 13, 18, 23, 28, 33, 38, 43, 48, 53, 58, 63, 64}));
}

TEST_F(LegendTest, NumbersRunFromEndToEndAndTheTopHasTheUnit) {
  state.ColorStyle = 3;
  const auto labels = Labels();
  EXPECT_EQ(labels.front().Text(), " 2. ");
  EXPECT_EQ(labels[2].Text(), " 4.581 ");  // 2 + 10 * 8 / 31
  EXPECT_EQ(labels.back().Text(), " 12. W/m2");
}

TEST_F(LegendTest, CloseBoundsGetMoreDigits) {
  lists.legend = {1000.1, 1000.9, 1000.1, 1000.9, 0, 0, ""};
  const auto labels = Labels();
  for (std::size_t n = 1; n < labels.size(); ++n) EXPECT_NE(labels[n].number, labels[n - 1].number);
  EXPECT_EQ(Trim(labels.front().number), "1000.1");
  lists.legend = {3, 3, 3, 3, 0, 0, ""};
  EXPECT_EQ(Labels().back().Text(), " 3. ");
}

TEST_F(LegendTest, NormalisedScaleShowsThePhysicalNumberInBrackets) {
  state.ColorStyle = 3;
  lists.legend = {0, 1, 20, 40, 0, 0, "K"};
  EXPECT_EQ(Labels().front().Text(), " 0. (R  20.  )");
  EXPECT_EQ(Labels().back().Text(), " 1. (R  40.  ) K");
  EXPECT_EQ(Labels().front().bracket, "(R  20.  )");
  lists.IndexPlot = 92;
  EXPECT_EQ(Labels().front().Text(), " 0.  (R  20.  )");
  lists.IndexPlot = 95;
  EXPECT_EQ(Labels().front().Text(), " 0. (R  20.  )");
  lists.IndexPlot = 19;
  EXPECT_EQ(Labels().front().Text(), " 0.  (R sputt 20.  ) ");
  EXPECT_EQ(Labels().back().Text(), " 1.  (R sputt 40.  ) K");
}

TEST_F(LegendTest, LogarithmsHaveTheirAntilogarithmBeside) {
  state.ColorStyle = 3;
  lists.legend = {-3, 2, -3, 2, 2, 0, "W/m2"};
  EXPECT_EQ(Labels().front().Text(), " -3. [0.001 W/m2]");
  EXPECT_EQ(Labels().back().Text(), " 2. [100. W/m2]");
  lists.legend.unit = "";
  EXPECT_EQ(Labels().back().Text(), " 2. [100.]");
  lists.legend = {0, 1, 3, 4, 1, 0, "V"};
  EXPECT_EQ(Labels().back().Text(), " 1. (R  4.  ) [10000. V]");
  lists.legend = {0, 400, 0, 400, 1, 0, "V"};
  EXPECT_EQ(Labels().back().Text(), " 400. ") << "no number has this logarithm";
}

TEST_F(LegendTest, FirstLabelTellsOfValuesWithoutALogarithm) {
  lists.legend = {-3, 2, -3, 2, 1, 1, ""};
  EXPECT_EQ(Labels().front().note, " (i.e. =0 or <0)");
  EXPECT_EQ(Labels().front().Text(), " -3.  (i.e. =0 or <0) [0.001]");
  EXPECT_EQ(Labels()[1].note, "");
  lists.legend.LogScale = 2;
  EXPECT_EQ(Labels().front().note, " (or  =0  or <0)");
  lists.legend.HasNonPositive = 0;
  EXPECT_EQ(Labels().front().note, "");
  lists.legend.LogScale = 0;
  lists.legend.HasNonPositive = 1;
  EXPECT_EQ(Labels().front().note, "");
}

TEST(TitleLines, BreakAtReturnsAndBlanks) {
  using Lines = std::vector<std::string>;
  EXPECT_EQ(TitleLines("one", 3, 10, ByCharacters), (Lines{"one"}));
  EXPECT_EQ(TitleLines("", 3, 10, ByCharacters), (Lines{""}));
  EXPECT_EQ(TitleLines("one\rtwo\r\nthree", 3, 10, ByCharacters), (Lines{"one", "two", "three"}));
  EXPECT_EQ(TitleLines("one\rtwo\rthree\rfour", 3, 10, ByCharacters), (Lines{"one", "two", "three four"}));
  EXPECT_EQ(TitleLines("alpha beta gamma delta", 3, 11, ByCharacters), (Lines{"alpha beta", "gamma delta"}));
  EXPECT_EQ(TitleLines("alpha beta gamma delta epsilon zeta eta", 3, 11, ByCharacters),
            (Lines{"alpha beta", "gamma delta", "epsilon..."}));
  EXPECT_EQ(TitleLines("alpha beta\rgamma", 1, 40, ByCharacters), (Lines{"alpha beta gamma"}));
  EXPECT_EQ(TitleLines("alpha beta gamma", 1, 9, ByCharacters), (Lines{"alpha..."}));
}

TEST(TitleLines, WordsWiderThanTheViewAreCut) {
  using Lines = std::vector<std::string>;
  EXPECT_EQ(TitleLines("éééééééé", 3, 5, ByCharacters), (Lines{"ééééé", "ééé"}));
  EXPECT_EQ(TitleLines("abcdefghijklmnopqrstuvw", 3, 5, ByCharacters), (Lines{"abcde", "fghij", "kl..."}));
  EXPECT_EQ(TitleLines("abc", 3, 0, ByCharacters).size(), 3U) << "no room at all ends nevertheless";
  EXPECT_EQ(TitleLines("abc def", 3, -5, ByCharacters).size(), 3U);
}

TEST(ReadableColours, OnlyPoorContrastIsMixed) {
  const Rgba white{1, 1, 1, 1};
  const Rgba black{0, 0, 0, 1};
  EXPECT_EQ(ReadableColour({1, 1, 0, 1}, black, white), (Rgba{1, 1, 0, 1}));
  const Rgba blue = ReadableColour({0, 0, 1, 1}, black, white);
  EXPECT_GT(blue.red, 0);
  EXPECT_LT(blue.red, 0.5F);
  EXPECT_EQ(blue.blue, 1);
  const Rgba yellow = ReadableColour({1, 1, 0, 1}, white, black);
  EXPECT_LT(yellow.red, 1);
  EXPECT_EQ(yellow.red, yellow.green);
  EXPECT_EQ(ReadableColour({0.5F, 0.5F, 0.5F, 1}, {0.5F, 0.5F, 0.5F, 1}, {0.5F, 0.5F, 0.5F, 1}),
            (Rgba{0.5F, 0.5F, 0.5F, 1}));
}

TEST_F(LegendTest, SquaresRunFromTheTopDown) {
  state.ColorStyle = 3;
  Draw();
  const auto& squares = control.OverlaySquares();
  ASSERT_EQ(squares.size(), 32U);
  EXPECT_EQ(squares.front().line, 31 * 8 + 28);
  EXPECT_EQ(squares.back().line, 28);
  for (std::size_t k = 0; k < squares.size(); ++k) {
    EXPECT_EQ(squares[k].column, 8);
    EXPECT_EQ(squares[k].width, 8);
    EXPECT_EQ(squares[k].height, 4);
    EXPECT_EQ(squares[k].colour, (ColourScale{3, 0}.Of(LegendPosition(static_cast<int>(k) + 1, 32), 0, 1)));
  }
}

TEST_F(LegendTest, TitleStandsTopLeftAndTheLegendBelow) {
  state.ColorStyle = 3;
  lists.Title = "first\rsecond\rthird";
  Draw();
  const auto& texts = control.OverlayTexts();
  ASSERT_GE(texts.size(), 3U);
  for (std::size_t n = 0; n < 3; ++n) {
    EXPECT_EQ(texts[n].column, 3);
    EXPECT_EQ(texts[n].line, 3 + 20 * static_cast<double>(n));
    EXPECT_EQ(texts[n].points, 7);
    EXPECT_EQ(texts[n].colour, (Rgba{1, 1, 1, 1}));
  }
  EXPECT_EQ(control.OverlaySquares().back().line, 68);
}

TEST_F(LegendTest, TitleIsDarkOnALightBackground) {
  state.options.ColourOfBackGround = {255, 255, 255};
  Draw();
  EXPECT_EQ(control.OverlayTexts().front().colour, (Rgba{0, 0, 0, 1}));
}

TEST_F(LegendTest, LabelsStandBesideTheirSquares) {
  state.ColorStyle = 3;
  Draw();
  const OverlayText* top = Overlay("12. W/m2");
  const OverlayText* bottom = Overlay(" 2. ");
  ASSERT_NE(top, nullptr);
  ASSERT_NE(bottom, nullptr);
  for (const OverlayText* label : {top, bottom}) {
    EXPECT_EQ(label->column, 21);
    EXPECT_EQ(label->points, 7);
  }
  EXPECT_LE(std::abs(top->line - 28), 4);
  EXPECT_EQ(bottom->line - top->line, 31 * 8);
}

TEST_F(LegendTest, FontSizeReturns) {
  Draw();
  control.StatusPrint("afterwards", 0, 0);
  EXPECT_EQ(control.OverlayTexts().back().points, 10);
}

TEST_F(LegendTest, ScaleModesTellWhatIsShown) {
  state.ColorStyle = 3;
  struct Row {
    double mode;
    bool squares, scene, points;
  };
  for (const Row& row : {Row{0, true, false, false}, Row{1, true, true, true}, Row{2, false, true, false},
                         Row{3, false, false, true}, Row{4, false, true, true}, Row{5, false, false, false}}) {
    SCOPED_TRACE(row.mode);
    state.ScaleMode = row.mode;
    control.ForgetRecords();
    Draw();
    EXPECT_EQ(control.OverlaySquares().size(), row.squares ? 32U : 0U);
    EXPECT_EQ(control.OverlayTexts().size(), row.squares ? 8U : 1U);
    EXPECT_EQ(control.SceneTexts().size(), row.scene ? 18U : 0U);
    RecordingGl gl;
    DrawScaleOnAxes(gl, state, lists, 5);
    EXPECT_EQ(gl.Count(GlOperation::DrawVertices), row.points ? 1U : 0U);
  }
}

TEST_F(LegendTest, TitleIsOneLineWhenTheScaleIsOnTheAxes) {
  lists.Title = "first\rsecond";
  state.ScaleMode = 3;
  Draw();
  ASSERT_EQ(control.OverlayTexts().size(), 1U);
  EXPECT_EQ(control.OverlayTexts()[0].text, "first second");
}

TEST_F(LegendTest, SceneLabelsStandOnTheAxesInReversedChannels) {
  state.ColorStyle = 3;
  state.ScaleMode = 2;
  state.options.LengthAxisFactor = 2;
  Draw();
  const auto& texts = control.SceneTexts();
  ASSERT_EQ(texts.size(), 18U);
  const double length = 10;
  const auto place = [](const SceneText& t) { return Vec3{t.x, t.y, t.z}; };
  EXPECT_EQ(place(texts[15]), (Vec3{length, 0, 0}));
  EXPECT_EQ(place(texts[16]), (Vec3{0, length, 0}));
  EXPECT_EQ(place(texts[17]), (Vec3{0, 0, length}));
  EXPECT_DOUBLE_EQ(texts[0].x, length * (1 - 31.0 / 96));
  EXPECT_EQ(texts[17].text, " 12. W/m2");
  EXPECT_EQ(texts[17].size, 0.25);
  EXPECT_EQ(texts[17].font, 7);
  // Level 15 is green, which has the contrast and stays; its red and blue change places.
  const Rgba level = ColourScale{3, 0}.Of(LegendPosition(15, 32), 0, 1);
  EXPECT_EQ(texts[6].colour, (Rgba{level.blue, level.green, level.red, 1}));
  EXPECT_NE(level.red, level.blue);
}

TEST_F(LegendTest, ScaleOnTheAxesIsOneBatch) {
  state.ColorStyle = 6;
  state.ScaleMode = 4;
  state.options.ThicknessLinePlot = 2;
  state.options.LengthAxisFactor = 0;
  RecordingGl gl;
  DrawScaleOnAxes(gl, state, lists, 5);
  const auto points = gl.PrimitivesOf(GL_POINTS);
  ASSERT_EQ(points.size(), 1U);
  EXPECT_EQ(points[0].state.pointSize, 10);
  ASSERT_EQ(points[0].vertices.size(), 26U * 3);
  EXPECT_FLOAT_EQ(points[0].vertices[75].position.x, 5.5F);
  EXPECT_FLOAT_EQ(points[0].vertices[76].position.y, 5.5F);
  EXPECT_FLOAT_EQ(points[0].vertices[77].position.z, 5.5F);
  EXPECT_FLOAT_EQ(points[0].vertices[0].position.x, 5.5F * (1 - 25.0F / 78));
  const auto bytes = ColourScale{6, 0}.Bytes(1, 0, 1);
  EXPECT_NEAR(points[0].vertices[75].colour.green * 255, bytes[1], 0.01);
}

TEST_F(LegendTest, LowViewKeepsBothEnds) {
  RecordingControl low{300, 200};
  DrawLegend({lists, state, 5, 7}, low);
  double lowest = 0;
  for (const OverlaySquare& square : low.OverlaySquares()) lowest = std::max(lowest, square.line + square.height);
  EXPECT_EQ(low.OverlaySquares().size(), 64U);
  EXPECT_LE(lowest, 200);
  EXPECT_TRUE(low.HasOverlayText(" 2. "));
  EXPECT_TRUE(low.HasOverlayText(" 12. W/m2"));
  std::vector<double> rows;
  for (const OverlayText& text : low.OverlayTexts()) {
    if (text.column == 21) rows.push_back(text.line);
  }
  std::sort(rows.begin(), rows.end());
  for (std::size_t n = 1; n < rows.size(); ++n) EXPECT_GE(rows[n] - rows[n - 1], 7.99);
}

TEST_F(LegendTest, ZeroOfALogPlotIsGreyInTheLegendToo) {
  state.ColorStyle = 3;
  lists.legend.LogScale = 1;
  Draw();
  EXPECT_EQ(control.OverlaySquares().front().colour, (Rgba{0.75F, 0.75F, 0.75F, 1}));
}

TEST_F(LegendTest, LongTitleStaysInsideTheView) {
  RecordingControl narrow{160, 700};
  for (int n = 0; n < 40; ++n) lists.Title += " words";
  DrawLegend({lists, state, 5, 7}, narrow);
  narrow.FontSize(7);
  int lines = 0;
  for (const OverlayText& text : narrow.OverlayTexts()) {
    if (text.column != 3) continue;
    ++lines;
    EXPECT_LE(narrow.StatusWidth(text.text), 154);
  }
  EXPECT_EQ(lines, 3);
  EXPECT_TRUE(Contains(narrow.OverlayTexts()[2].text, "..."));
}

}  // namespace
}  // namespace orv
