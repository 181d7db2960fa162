#include "shell/glx_widget.h"

#include <QLabel>
#include <QMainWindow>
#include <QMenuBar>
#include <QWheelEvent>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <gmock/gmock.h>
#include <utility>

#include "gui_support.h"
#include "sheet_scene.h"
#include "shell/frm_warning.h"
#include "shell/qt_dialogs.h"
#include "shell/tool_icons.h"
#include "view/capture.h"
#include "view/class_gl.h"
#include "view/offscreen_control.h"

namespace orv {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using testing::WaitFor;

constexpr int kWidth = 480;
constexpr int kHeight = 360;

// A scene of plain squares; `inDraw` runs once within a paint, before the square is drawn.
class Squares : public GlEvents {
 public:
  explicit Squares(glxCtl& control) : control_(control) {}
  void init() override { ++inits; }
  void InitGL() override { control_.Gl().ClearColor({0, 0, 1, 1}); }
  void Reshape(int width, int height, int& result) override {
    sizes.emplace_back(width, height);
    result = -1;
  }
  void Draw() override {
    ++draws;
    if (const auto act = std::exchange(inDraw, nullptr)) act();
  }
  void DrawGDI() override {
    control_.ForeColor({1, 1, 1, 1});
    control_.StatusSquare(10, 20, 30, 40);
  }
  void Painted() override {}

  int inits = 0;
  int draws = 0;
  std::vector<std::pair<int, int>> sizes;
  std::function<void()> inDraw;

 private:
  glxCtl& control_;
};

class Recorder : public ViewListener {
 public:
  void MouseDown(int button, int shift, double x, double y) override { Add("down", button, shift, x, y); }
  void MouseMove(int button, int shift, double x, double y) override { Add("move", button, shift, x, y); }
  void MouseUp(int button, int shift, double x, double y) override { Add("up", button, shift, x, y); }
  void DblClick(int button, int shift, double x, double y) override { Add("double", button, shift, x, y); }
  void Wheel(double notches, int shift, double x, double y) override { Add("wheel " + Short(notches), 0, shift, x, y); }
  void KeyDown(int& keyCode, int shift) override {
    seen.push_back("key " + std::to_string(keyCode) + " shift " + std::to_string(shift));
    if (keyCode == taken) keyCode = 0;
  }
  void KeyUp(int& keyCode, int) override { seen.push_back("released " + std::to_string(keyCode)); }
  void KeyPress(int& ascii) override { seen.push_back("ascii " + std::to_string(ascii)); }
  void ProgramEnded() override { ended = true; }

  std::vector<std::string> seen;
  int taken = -1;
  bool ended = false;

 private:
  static std::string Short(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%g", value);
    return text;
  }
  void Add(const std::string& what, int button, int shift, double x, double y) {
    seen.push_back(what + " " + std::to_string(button) + " " + std::to_string(shift) + " at " + Short(x) + "," +
                   Short(y));
  }
};

std::array<int, 3> PixelOf(const Image& image, int x, int y) {
  const std::uint8_t* pixel = &image.rgb[static_cast<std::size_t>((y * image.width + x) * 3)];
  return {pixel[0], pixel[1], pixel[2]};
}

constexpr std::array<int, 3> kBlue{0, 0, 255};
constexpr std::array<int, 3> kWhite{255, 255, 255};

class GlxWidgetTest : public ::testing::Test {
 protected:
  void SetUp() override {
    widget.resize(kWidth, kHeight);
    widget.SetEvents(&scene);
    widget.SetListener(&listener);
  }
  bool Show() {
    widget.show();
    return QTest::qWaitForWindowExposed(&widget) && WaitFor([&] { return scene.draws > 0; });
  }
  int Pixels(int logical) const { return static_cast<int>(std::lround(logical * widget.devicePixelRatioF())); }

  glxWidget widget;
  Squares scene{widget.Control()};
  Recorder listener;
};

TEST(PrepareOpenGlTest, TheSystemOfTheTestsOffersTheOpenGlOfTheView) {
  EXPECT_EQ(MissingOpenGl(), "");
  EXPECT_EQ(QSurfaceFormat::defaultFormat().profile(), QSurfaceFormat::CompatibilityProfile);
}

TEST_F(GlxWidgetTest, ItDrawsItsScene) {
  ASSERT_TRUE(Show());
  EXPECT_EQ(widget.Missing(), "");
  EXPECT_EQ(scene.inits, 1);
  EXPECT_EQ(widget.Control().Width(), Pixels(kWidth));
  EXPECT_EQ(widget.Control().Height(), Pixels(kHeight));
  EXPECT_DOUBLE_EQ(widget.Control().DeviceRatio(), widget.devicePixelRatioF());
  const Image picture = widget.Picture();
  ASSERT_EQ(picture.width, Pixels(kWidth));
  ASSERT_EQ(picture.height, Pixels(kHeight));
  EXPECT_EQ(PixelOf(picture, Pixels(5), Pixels(5)), kBlue);
  EXPECT_EQ(PixelOf(picture, Pixels(12), Pixels(22)), kWhite);
  EXPECT_EQ(PixelOf(picture, Pixels(38), Pixels(58)), kWhite);
  EXPECT_EQ(PixelOf(picture, Pixels(42), Pixels(62)), kBlue);
}

TEST_F(GlxWidgetTest, WhatTheWindowShowsIsThePicture) {
  ASSERT_TRUE(Show());
  const QImage shown = widget.grab().toImage();
  EXPECT_EQ(shown.pixelColor(Pixels(12), Pixels(22)), QColor(255, 255, 255));
  EXPECT_EQ(shown.pixelColor(Pixels(42), Pixels(62)), QColor(0, 0, 255));
}

TEST_F(GlxWidgetTest, APaintIsDrawnOnceForSeveralWishes) {
  ASSERT_TRUE(Show());
  QTest::qWait(50);
  const int before = scene.draws;
  for (int i = 0; i < 10; ++i) widget.Control().Redraw();
  ASSERT_TRUE(WaitFor([&] { return scene.draws > before; }));
  QTest::qWait(100);
  EXPECT_EQ(scene.draws, before + 1);
}

TEST_F(GlxWidgetTest, ANewSizeReshapesAndDraws) {
  ASSERT_TRUE(Show());
  scene.sizes.clear();
  widget.resize(300, 200);
  ASSERT_TRUE(WaitFor([&] { return widget.Control().Width() == Pixels(300); }));
  const Image picture = widget.Picture();
  EXPECT_EQ(scene.sizes.back(), std::pair(Pixels(300), Pixels(200)));
  EXPECT_EQ(picture.width, Pixels(300));
  EXPECT_EQ(PixelOf(picture, Pixels(12), Pixels(22)), kWhite);
  EXPECT_EQ(PixelOf(picture, Pixels(295), Pixels(195)), kBlue);
}

TEST_F(GlxWidgetTest, AViewThatWasNeverShownHasAPicture) {
  const Image picture = widget.Picture();
  ASSERT_EQ(picture.width, Pixels(kWidth));
  EXPECT_EQ(PixelOf(picture, Pixels(12), Pixels(22)), kWhite);
}

TEST_F(GlxWidgetTest, TheViewMovesIntoAnotherWindow) {
  ASSERT_TRUE(Show());
  auto window = std::make_unique<QMainWindow>();
  auto owned = std::make_unique<glxWidget>();
  Squares other(owned->Control());
  owned->SetEvents(&other);
  owned->resize(200, 150);
  owned->show();
  ASSERT_TRUE(WaitFor([&] { return other.draws > 0; }));
  glxWidget* view = owned.release();
  window->setCentralWidget(view);
  window->resize(300, 250);
  window->show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(window.get()));
  const Image picture = view->Picture();
  EXPECT_EQ(PixelOf(picture, Pixels(12), Pixels(22)), kWhite);
  EXPECT_EQ(other.inits, 1);
}

TEST_F(GlxWidgetTest, WhileHeldTheLastPictureStays) {
  ASSERT_TRUE(Show());
  QTest::qWait(50);
  widget.Hold(true);
  const int before = scene.draws;
  widget.Control().Redraw();
  widget.resize(kWidth / 2, kHeight / 2);
  QTest::qWait(150);
  EXPECT_EQ(scene.draws, before);
  const QImage shown = widget.grab().toImage();
  EXPECT_EQ(shown.pixelColor(Pixels(kWidth / 4), Pixels(kHeight / 4)), QColor(0, 0, 255));
  EXPECT_EQ(shown.pixelColor(Pixels(12), Pixels(20)), QColor(255, 255, 255)) << "half the size";
  widget.Hold(false);
  EXPECT_TRUE(WaitFor([&] { return scene.draws > before; }));
}

TEST_F(GlxWidgetTest, AQuestionThatArisesInAPaintIsAskedAndThePaintGoesOn) {
  frmWarning warning;
  QtDialogs dialogs(&widget, warning);
  ASSERT_TRUE(Show());
  Answer answer = Answer::None;
  scene.inDraw = [&] { answer = dialogs.Ask("error Reset", "", Buttons::AbortRetryIgnore, Icon::Question); };
  testing::WhenOpen("MsgBox", [&](QDialog& box) {
    widget.Control().Redraw();  // must not begin a second paint within the first
    QTest::qWait(60);
    testing::Press(box, "Ignore");
  });
  const int before = scene.draws;
  widget.Control().Redraw();
  ASSERT_TRUE(WaitFor([&] { return answer == Answer::Ignore; }));
  ASSERT_TRUE(WaitFor([&] { return scene.draws >= before + 2; })) << "the wish of the meantime";
  const Image picture = widget.Picture();
  EXPECT_EQ(PixelOf(picture, Pixels(12), Pixels(22)), kWhite);
  EXPECT_EQ(PixelOf(picture, Pixels(42), Pixels(62)), kBlue);
  EXPECT_FALSE(listener.ended);
}

TEST_F(GlxWidgetTest, AbandoningInAPaintReachesTheListener) {
  ASSERT_TRUE(Show());
  scene.inDraw = [&] { throw ProgramEnd{}; };
  widget.Control().Redraw();
  EXPECT_TRUE(WaitFor([&] { return listener.ended; }));
}

TEST_F(GlxWidgetTest, MouseEventsComeInDevicePixelsWithTheirKeys) {
  ASSERT_TRUE(Show());
  QTest::mousePress(&widget, Qt::LeftButton, Qt::NoModifier, QPoint(20, 30));
  QTest::mouseRelease(&widget, Qt::LeftButton, Qt::ShiftModifier, QPoint(40, 60));
  QTest::mousePress(&widget, Qt::RightButton, Qt::ControlModifier | Qt::AltModifier, QPoint(40, 60));
  QTest::mouseRelease(&widget, Qt::RightButton, Qt::NoModifier, QPoint(40, 60));
  QTest::mouseDClick(&widget, Qt::MiddleButton, Qt::NoModifier, QPoint(10, 10));
  const auto at = [&](int x, int y) { return std::to_string(Pixels(x)) + "," + std::to_string(Pixels(y)); };
  std::vector<std::string> clicks;
  for (const std::string& event : listener.seen) {
    if (event.rfind("move", 0) != 0) clicks.push_back(event);
  }
  EXPECT_THAT(clicks, ElementsAre("down 1 0 at " + at(20, 30), "up 1 1 at " + at(40, 60), "down 2 6 at " + at(40, 60),
                                  "up 2 0 at " + at(40, 60), "double 4 0 at " + at(10, 10)));
}

TEST_F(GlxWidgetTest, MovesTellEveryButtonThatIsDown) {
  ASSERT_TRUE(Show());
  QMouseEvent move(QEvent::MouseMove, QPointF(7, 8), QPointF(7, 8), Qt::NoButton, Qt::LeftButton | Qt::RightButton,
                   Qt::ShiftModifier);
  QApplication::sendEvent(&widget, &move);
  ASSERT_FALSE(listener.seen.empty());
  EXPECT_EQ(listener.seen.back(), "move 3 1 at " + std::to_string(Pixels(7)) + "," + std::to_string(Pixels(8)));
}

TEST_F(GlxWidgetTest, TheWheelTellsNotches) {
  ASSERT_TRUE(Show());
  const auto turn = [&](const QPoint& pixels, const QPoint& angle) {
    QWheelEvent event(QPointF(5, 6), QPointF(5, 6), pixels, angle, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase,
                      false);
    QApplication::sendEvent(&widget, &event);
  };
  turn({}, {0, 240});
  turn({}, {0, -60});
  turn({0, 20}, {});
  const std::string at = " 0 0 at " + std::to_string(Pixels(5)) + "," + std::to_string(Pixels(6));
  EXPECT_THAT(listener.seen, ElementsAre("wheel 2" + at, "wheel -0.5" + at, "wheel 0.5" + at));
}

TEST_F(GlxWidgetTest, KeysHaveTheirClassicNumbers) {
  ASSERT_TRUE(Show());
  QTest::keyPress(&widget, Qt::Key_Left);
  QTest::keyPress(&widget, Qt::Key_PageDown, Qt::ShiftModifier);
  QTest::keyPress(&widget, Qt::Key_Z);
  QTest::keyRelease(&widget, Qt::Key_Z);
  QTest::keyPress(&widget, Qt::Key_F7);
  EXPECT_THAT(listener.seen, ElementsAre("key 37 shift 0", "key 16 shift 1", "key 34 shift 1", "key 90 shift 0",
                                         "ascii 122", "released 90"));
}

TEST_F(GlxWidgetTest, LettersThatCallAMenuTypeNothing) {
  ASSERT_TRUE(Show());
  for (const auto modifier : {Qt::AltModifier, Qt::ControlModifier, Qt::MetaModifier}) {
    QTest::keyPress(&widget, Qt::Key_X, modifier);
  }
  QTest::keyPress(&widget, Qt::Key_X, Qt::ShiftModifier);
  EXPECT_EQ(std::count_if(listener.seen.begin(), listener.seen.end(),
                          [](const std::string& event) { return event.starts_with("ascii"); }),
            1);
}

TEST_F(GlxWidgetTest, AKeyThatIsTakenGoesNoFurther) {
  QWidget window;
  auto* view = new glxWidget(&window);
  view->SetListener(&listener);
  class KeyCounter : public QObject {
   public:
    bool eventFilter(QObject*, QEvent* event) override {
      if (event->type() == QEvent::KeyPress) ++count;
      return false;
    }
    int count = 0;
  } counter;
  window.installEventFilter(&counter);
  listener.taken = 73;
  QTest::keyPress(view, Qt::Key_I);
  EXPECT_THAT(listener.seen, ElementsAre("key 73 shift 0"));
  EXPECT_EQ(counter.count, 0);
  QTest::keyPress(view, Qt::Key_J);
  EXPECT_EQ(counter.count, 1);
}

TEST_F(GlxWidgetTest, ThePointerFollowsTheScene) {
  ASSERT_TRUE(Show());
  widget.Control().Cursor(11);
  EXPECT_EQ(widget.cursor().shape(), Qt::WaitCursor);
  for (int number = kFirstCursorPicture; number <= kLastCursorPicture; ++number) {
    widget.Control().Cursor(number);
    EXPECT_EQ(widget.cursor().shape(), Qt::BitmapCursor) << number;
  }
  widget.Control().Cursor(0);
  EXPECT_EQ(widget.cursor().shape(), Qt::ArrowCursor);
}

TEST_F(GlxWidgetTest, TheFrameBufferIsSavedBetweenPaints) {
  ASSERT_TRUE(Show());
  const std::filesystem::path folder = std::filesystem::temp_directory_path() / "orv_glx_widget_test";
  std::filesystem::create_directories(folder);
  const std::string file = (folder / "saved.bmp").string();
  ASSERT_TRUE(SaveFrameBuffer(widget.Control(), file, {0, 0, Pixels(kWidth), Pixels(kHeight)}));
  const QImage saved(QString::fromStdString(file));
  std::filesystem::remove_all(folder);
  ASSERT_EQ(saved.size(), QSize(Pixels(kWidth), Pixels(kHeight)));
  EXPECT_EQ(saved.pixelColor(Pixels(12), Pixels(22)), QColor(255, 255, 255));
  EXPECT_EQ(saved.pixelColor(Pixels(42), Pixels(62)), QColor(0, 0, 255));
}

TEST(GlxPlaceTest, WithoutOpenGlANoticeStandsInTheWindow) {
  QMainWindow window;
  auto* place = new GlxPlace("no OpenGL context could be made", &window);
  window.setCentralWidget(place);
  window.resize(400, 300);
  window.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
  auto* notice = place->findChild<QLabel*>("glxCtl1Notice");
  ASSERT_NE(notice, nullptr);
  EXPECT_TRUE(notice->isVisible());
  EXPECT_THAT(notice->text().toStdString(), HasSubstr("cannot be shown: no OpenGL context could be made."));
  EXPECT_FALSE(place->View().isVisible());
  EXPECT_EQ(place->findChild<QOpenGLWidget*>(), nullptr);
  Squares scene(place->View().Control());
  place->View().SetEvents(&scene);
  QTest::qWait(50);
  EXPECT_EQ(scene.draws, 0);
}

// Also run on systems made to lack OpenGL, or its compatibility profile.
TEST(GlxPlaceTest, TheWindowComesUpWithAndWithoutOpenGl) {
  const bool without = std::getenv("ORV_WITHOUT_OPENGL") != nullptr;
  EXPECT_EQ(MissingOpenGl().empty(), !without) << MissingOpenGl();
  QMainWindow window;
  window.menuBar()->addMenu("&File");
  auto* place = new GlxPlace(&window);
  window.setCentralWidget(place);
  window.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
  EXPECT_EQ(window.findChild<glxWidget*>("glxCtl1"), without ? nullptr : &place->View());
  EXPECT_EQ(place->View().isVisible(), !without);
  EXPECT_EQ(window.findChild<QLabel*>("glxCtl1Notice") != nullptr, without);
}

// The scene itself, beside its picture without a window.
TEST(GlxSceneTest, TheWindowShowsThePictureThatIsDrawnWithoutIt) {
  glxWidget widget;
  widget.resize(kWidth, kHeight);
  SheetScene shown(widget.Control());
  widget.SetEvents(&shown.scene);
  widget.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&widget));
  QTest::qWait(200);
  widget.Control().Redraw();
  const Image actual = widget.Picture();
  const double ratio = widget.devicePixelRatioF();

  OffscreenWish wish;
  wish.width = static_cast<int>(kWidth * ratio);
  wish.height = static_cast<int>(kHeight * ratio);
  wish.deviceRatio = ratio;
  OffscreenControl::Made made = OffscreenControl::Make(wish);
  ASSERT_NE(made.control, nullptr) << made.message;
  SheetScene drawn(*made.control);
  made.control->Attach(drawn.scene);
  made.control->Paint(drawn.scene);
  made.control->Paint(drawn.scene);
  const Image expected = made.control->Picture();
  testing::AsQImage(actual).save(QString::fromStdString(testing::PictureName("view_window.png")));
  testing::AsQImage(expected).save(QString::fromStdString(testing::PictureName("view_offscreen.png")));

  ASSERT_EQ(actual.width, expected.width);
  ASSERT_EQ(actual.height, expected.height);
  std::size_t different = 0;
  std::size_t coloured = 0;
  for (std::size_t i = 0; i < actual.rgb.size(); ++i) {
    if (std::abs(actual.rgb[i] - expected.rgb[i]) > 24) ++different;
    if (expected.rgb[i] > 100) ++coloured;
  }
  EXPECT_GT(coloured, actual.rgb.size() / 50) << "there is something to compare";
  EXPECT_LT(different, actual.rgb.size() / 100);
}

}  // namespace
}  // namespace orv
