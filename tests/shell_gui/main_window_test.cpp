#include "shell_gui/main_window_fixture.h"

namespace orv::testing {
namespace {

TEST_F(MainWindowTest, StartsWithTheSample) {
  window_->show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(window_.get()));
  EXPECT_TRUE(QTest::qWaitFor([&] { return run_->lists.NumberPoints > 0; }, 10000));
  EXPECT_EQ(Panel(), "Re-Plots");
  EXPECT_EQ(Find<QWidget>("Command7")->toolTip().isEmpty(), false);
  EXPECT_FALSE(Find<QWidget>("Command8")->isEnabled());
  EXPECT_EQ(Find<QLabel>("StatusBar2")->text(), "") << "nothing is being done";
  Keep("main_sample.png");
}

TEST_F(MainWindowTest, AModelIsComputedAndGrows) {
  ShowPlot(13);
  EXPECT_EQ(run_->plot.IndexPlot, 13);
  EXPECT_NE(Panel().find("Click here to re-Plot"), std::string::npos) << Panel();
  ASSERT_TRUE(WholePlotShown());
  EXPECT_EQ(run_->lists.TraceMax, run_->lists.TraceCount);
  Keep("main_density.png");
  const Image whole = window_->View().Picture();
  Click("Command7");
  EXPECT_EQ(Find<QPushButton>("Command7")->text(), "1");
  EXPECT_NE(window_->View().Picture(), whole) << "another colour style";
  Click("Command7", Qt::ShiftModifier);
  EXPECT_EQ(Find<QPushButton>("Command7")->text().isEmpty(), false);
}

TEST_F(MainWindowTest, ReplotsFromTheStatusBar) {
  ShowPlot(13);
  ASSERT_TRUE(WholePlotShown());
  // The first click opens the selection; the list fills its buttons, which later clicks walk.
  WhenOpen("frmToPlot", [](QDialog& dialog) {
    auto* const combo = dialog.findChild<QComboBox*>("Combo2");
    const int item = combo->findText("9 ", Qt::MatchStartsWith);
    combo->setCurrentIndex(item);
    Q_EMIT combo->activated(item);
    Press(dialog, "Go Plot");
  });
  Click("StatusBar1", Qt::ShiftModifier);
  EXPECT_TRUE(QTest::qWaitFor([&] { return run_->plot.IndexPlot == 9; }, 10000));
  Click("StatusBar1");
  EXPECT_TRUE(QTest::qWaitFor([&] { return run_->plot.IndexPlot == 13; }, 10000));
  EXPECT_EQ(run_->plot.PreviousIndexPlot, 13);
  const std::string before = Panel();
  Click("StatusBar1", Qt::ControlModifier);
  EXPECT_EQ(run_->plot.IndexPlot, 13) << "Ctrl steps the sides alone";
}

TEST_F(MainWindowTest, CellsArePickedByAClick) {
  ShowPlot(13);
  ASSERT_TRUE(WholePlotShown());
  Click("StatusBar1", Qt::ControlModifier);  // sides with faces
  window_->View().DrawNow();
  const QSize size = window_->View().size();
  auto* const told = Find<QLabel>("StatusBar2");
  bool found = false;
  for (int x = 1; x < 12 && !found; ++x) {
    for (int y = 1; y < 12 && !found; ++y) {
      QTest::mouseClick(&window_->View(), Qt::LeftButton, {}, QPoint(size.width() * x / 12, size.height() * y / 12));
      found = !told->text().isEmpty();
    }
  }
  EXPECT_TRUE(found);
  EXPECT_TRUE(told->text().contains("Density")) << told->text().toStdString();
}

TEST_F(MainWindowTest, TheViewTurnsZoomsAndPans) {
  ShowPlot(13);
  ASSERT_TRUE(WholePlotShown());
  auto& camera = window_->View().Control().Camera();
  const OrthoWindow before = camera.Window();
  Tool("zplus");
  EXPECT_LT(camera.Window().right - camera.Window().left, before.right - before.left);
  Tool("zminus");
  EXPECT_NEAR(camera.Window().right - camera.Window().left, before.right - before.left, 1e-6);
  const Vec3 place = camera.Position();
  Tool("valisxy");
  EXPECT_NE(camera.Position(), place);
  Tool("pan");
  const Vec3 target = camera.LookAt();
  QWidget& view = window_->View();
  QTest::mousePress(&view, Qt::LeftButton, {}, QPoint(200, 200));
  QTest::mouseMove(&view, QPoint(260, 230));
  QTest::mouseMove(&view, QPoint(300, 240));
  QTest::mouseRelease(&view, Qt::LeftButton, {}, QPoint(300, 240));
  EXPECT_NE(camera.LookAt(), target);
  Menu("mnuVReset");
  EXPECT_EQ(camera.LookAt(), (Vec3{0, 0, 0}));
  Menu("mnuVVTop");
  EXPECT_GT(camera.Position()[2], 0);
}

TEST_F(MainWindowTest, ImagesAndMovieFramesAreSaved) {
  ShowPlot(13);
  ASSERT_TRUE(WholePlotShown());
  const std::filesystem::path images = folder_.path() / "images";
  std::filesystem::create_directories(images);
  Menu("mnuFOptions");
  auto* const directory = Find<QLineEdit>("Text6");
  directory->setText(QString::fromStdString(images.string()));
  Q_EMIT directory->textEdited(directory->text());
  Q_EMIT directory->editingFinished();
  Keep("main_options.png");
  Menu("mnuFSave");
  EXPECT_TRUE(std::filesystem::exists(images / "ImageOrvValisSaved.bmp"));
  Menu("mnuFMovieSaveAs");
  QWidget* video = nullptr;
  for (QWidget* widget : QApplication::topLevelWidgets()) {
    if (widget->objectName() == "frmVideo") video = widget;
  }
  ASSERT_NE(video, nullptr);
  video->findChild<QScrollBar*>("HScroll1")->setValue(5);
  video->findChild<QScrollBar*>("HScroll2")->setValue(0);
  QTest::mouseClick(video->findChild<QPushButton*>("Command1"), Qt::LeftButton);
  EXPECT_TRUE(QTest::qWaitFor(
      [&] {
        int frames = 0;
        for (const auto& entry : std::filesystem::directory_iterator(images)) {
          if (entry.path().filename().string().starts_with("Valis")) ++frames;
        }
        return frames == 5;
      },
      20000));
}

TEST_F(MainWindowTest, OptionsComeBackAfterARestart) {
  window_->show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(window_.get()));
  Menu("mnuFOptions");
  auto* const box = Find<QCheckBox>("Check1(3)");
  QTest::mouseClick(box, Qt::LeftButton, {}, QPoint(8, box->height() / 2));
  EXPECT_TRUE(box->isChecked());
  QTest::mouseClick(ButtonOf(*window_, "Save"), Qt::LeftButton);
  End();
  Begin();
  window_->show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(window_.get()));
  EXPECT_TRUE(Find<QCheckBox>("Check1(3)")->isChecked());
}

TEST_F(MainWindowTest, WhatIsNoWorkbookIsTold) {
  const std::string broken = folder_.Write("broken.xlsx", "PK\3\4 this is no workbook").string();
  window_->show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(window_.get()));
  QTest::qWait(200);
  std::string text;
  WhenOpen("MsgBox", [&](QDialog& box) {
    text = box.property("text").toString().toStdString();
    Press(box, "OK");
  });
  window_->OpenFile(broken);
  EXPECT_NE(text.find("broken.xlsx"), std::string::npos) << text;
  EXPECT_FALSE(window_->Busy());
}

TEST_F(MainWindowTest, APlotFileHidesTheMenus) {
  std::string plot = "From: \tbook.xls\tSheet1\t=MAX(A2:D40)\t1\t\tDate 2026/01/01 00:00:00\r\n";
  for (int i = 0; i < 39; ++i)
    plot += std::to_string(i) + "\t" + std::to_string(i * i) + "\t" + std::to_string(9 - i) + "\t0\r\n";
  window_->OpenFile(folder_.Write("plot.txt", plot).string(), true);
  window_->show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(window_.get()));
  EXPECT_TRUE(QTest::qWaitFor([&] { return run_->lists.Title == "book.xls/Sheet1"; }, 10000));
  EXPECT_FALSE(Find<QMenu>("mnuFile")->menuAction()->isVisible());
}

}  // namespace
}  // namespace orv::testing
