#include "reference/plain_plot.h"

#include <cstdlib>
#include <functional>
#include <gtest/gtest.h>

#include "support/scripted_dialogs.h"
#include "support/view_model.h"
#include "view/dynamic_plot.h"
#include "view/offscreen_control.h"

// The plot as it ships, made of chunks and vertex arrays, against one glBegin loop over the same lists, on the system's
// OpenGL.
namespace orv {
namespace {

constexpr int kWidth = 240;
constexpr int kHeight = 200;

// A paint that does one thing.
class Painter : public GlEvents {
 public:
  explicit Painter(std::function<void()> draw) : draw_(std::move(draw)) {}
  void init() override {}
  void InitGL() override {}
  void Reshape(int, int, int&) override {}
  void Draw() override { draw_(); }
  void DrawGDI() override {}
  void Painted() override {}

 private:
  std::function<void()> draw_;
};

class PlainPlotTest : public ::testing::Test {
 protected:
  void SetUp() override {
    made_ = OffscreenControl::Make({kWidth, kHeight, 1, 1});
    ASSERT_TRUE(made_.control) << made_.message;
    made_.control->Camera().SetPosition({40, -70, 60});
    made_.control->Camera().SetUp({0, 0, 1});
    made_.control->SceneRange(1.5);
  }

  Image Paint(const std::function<void()>& draw) {
    Painter painter([&] {
      GlApi& gl = made_.control->Gl();
      gl.Enable(GL_DEPTH_TEST);
      gl.Disable(GL_LIGHTING);
      gl.Enable(GL_BLEND);
      gl.BlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
      draw();
    });
    made_.control->Paint(painter);
    return made_.control->Picture();
  }

  // Draws the plot both ways and compares every pixel.
  void Compare(int first, int last, const std::string& what) {
    lists_.TraceMax =
        static_cast<int>(static_cast<double>(last) / std::max(1, lists_.NumberPoints) * lists_.TraceCount);
    const DynamicPlot::Input input{lists_, view_, scale_, last, first};
    const Image shipped = Paint([&] { plot_.Draw(made_.control->Gl(), input); });
    const GLuint list = glGenLists(1);
    reference::PlainRebuild(list, lists_, view_, first, last, plot_.DrawForward() == 0);
    const Image plain = Paint([&] { glCallList(list); });
    glDeleteLists(list, 1);
    int different = 0;
    int drawn = 0;
    for (std::size_t i = 0; i < plain.rgb.size(); ++i) {
      if (std::abs(static_cast<int>(plain.rgb[i]) - static_cast<int>(shipped.rgb[i])) > 1) ++different;
      if (plain.rgb[i] != plain.rgb[0]) ++drawn;
    }
    EXPECT_EQ(different, 0) << what << ", entries " << first << " to " << last;
    if (last - first > 100) {
      EXPECT_GT(drawn, 0) << what << ", entries " << first << " to " << last;
    }
  }

  OffscreenControl::Made made_;
  PointLists lists_;
  ViewState view_;
  SceneScale scale_;
  DynamicPlot plot_;
};

TEST_F(PlainPlotTest, OutlinesInEveryMode) {
  FillSheet(lists_, 40, 30);
  for (int mode = 0; mode < kSidesModes; ++mode) {
    view_.SidesMode = mode;
    for (const int last : {0, 17, 511, 512, 513, 1024, 1199}) {
      Compare(0, last, "sides " + std::to_string(mode));
      if (HasFailure()) return;
    }
  }
}

TEST_F(PlainPlotTest, EveryColourStyle) {
  FillSheet(lists_, 40, 30);
  view_.SidesMode = kBothSides;
  for (int style = 0; style < kColorStyles; ++style) {
    view_.ColorStyle = style;
    Compare(0, 1199, "style " + std::to_string(style));
  }
  lists_.legend.LogScale = 1;
  plot_.Renew();
  view_.ColorStyle = 2;
  Compare(0, 1199, "logarithmic");
}

TEST_F(PlainPlotTest, LinesAcrossChunksInBothDirections) {
  FillCurve(lists_, 9000, 7);
  for (const int last : {1, 2047, 2048, 2049, 4096, 6143, 6144, 8999}) {
    for (int repeat = 0; repeat < 2; ++repeat) {
      plot_.Renew();
      Compare(0, last, "line");
      Compare(std::min(last, 1000), last, "line with a start");
    }
    if (HasFailure()) return;
  }
}

TEST_F(PlainPlotTest, LinesThatBreak) {
  FillCurve(lists_, 6000, 3);
  for (const int lifted : {5, 2047, 2048, 2049, 4095, 4096, 5999}) lists_.PointList(4, lifted) = kPenUp;
  plot_.Renew();
  for (int repeat = 0; repeat < 2; ++repeat) {
    Compare(0, 5999, "broken line");
    plot_.Renew();
  }
}

TEST_F(PlainPlotTest, TheWholeTable) {
  FillCurve(lists_, kListEntries);
  Compare(0, kListEntries - 1, "2^20 entries");
  Compare(0, 600000, "a part of 2^20 entries");
}

}  // namespace
}  // namespace orv
