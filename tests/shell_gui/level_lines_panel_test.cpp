#include "shell/level_lines_panel.h"

#include <QAction>
#include <QClipboard>
#include <QMainWindow>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdlib>
#include <gtest/gtest.h>

#include "gui_support.h"
#include "support/level_fields.h"

namespace orv {
namespace {

using testing::ConeField;
using testing::FieldOnPlate;
using testing::PictureName;

class LevelLinesPanelTest : public ::testing::Test {
 protected:
  LevelLinesPanelTest() {
    panel_ = new LevelLinesPanel(&window_);
    window_.addDockWidget(Qt::RightDockWidgetArea, panel_);
    window_.resize(900, 500);
    window_.show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&window_));
  }

  // Whether a pixel of the panel's plot has nearly the colour.
  bool Shows(const QColor& colour) {
    const QImage image = panel_->View().grab().toImage();
    for (int y = 0; y < image.height(); ++y) {
      for (int x = 0; x < image.width(); ++x) {
        const QColor seen = image.pixelColor(x, y);
        const int away = std::max({std::abs(seen.red() - colour.red()), std::abs(seen.green() - colour.green()),
                                   std::abs(seen.blue() - colour.blue())});
        if (away < 60) return true;
      }
    }
    return false;
  }

  QMainWindow window_;
  LevelLinesPanel* panel_ = nullptr;
  QTemporaryDir folder_;
};

TEST_F(LevelLinesPanelTest, ShowsAPlotAndResizesIt) {
  EXPECT_EQ(panel_->objectName(), "LevelLinesPanel");
  EXPECT_FALSE(Shows(Qt::red));
  EXPECT_EQ(panel_->ShowPlot(FieldOnPlate(ConeField, 61, 45)), "");
  EXPECT_TRUE(panel_->isVisible());
  EXPECT_EQ(panel_->windowTitle(), "Level lines: Density (m-3)");
  EXPECT_TRUE(Shows(Qt::red));
  panel_->grab().save(QString::fromStdString(PictureName("level_lines_panel.png")));

  panel_->setFloating(true);
  panel_->resize(900, 700);
  ASSERT_TRUE(testing::WaitFor([&] { return panel_->View().width() > 800; }));
  const QImage large = panel_->View().grab().toImage();
  EXPECT_EQ(large.width(), qRound(panel_->View().width() * large.devicePixelRatio()));
  EXPECT_TRUE(Shows(Qt::red));
  panel_->grab().save(QString::fromStdString(PictureName("level_lines_floating.png")));
}

TEST_F(LevelLinesPanelTest, TellsWhyThereAreNoLines) {
  EXPECT_EQ(panel_->ShowPlot(FieldOnPlate([](double, double) { return 1.0; })), "Error in Contour Levels");
  EXPECT_TRUE(panel_->isVisible());
  EXPECT_FALSE(Shows(Qt::red));
  EXPECT_TRUE(Shows(Qt::black));  // the frame stays
}

TEST_F(LevelLinesPanelTest, SavesItsImage) {
  EXPECT_EQ(panel_->SaveImage("x.png"), "There are no level lines to save.");
  (void)panel_->ShowPlot(FieldOnPlate(ConeField));
  const std::string stem = folder_.filePath("plot").toStdString();
  EXPECT_EQ(panel_->SaveImage(stem + ".svg"), "");
  EXPECT_EQ(panel_->SaveImage(stem), "");
  EXPECT_TRUE(QFile::exists(folder_.filePath("plot.svg")));
  const QImage image(folder_.filePath("plot.png"));
  EXPECT_EQ(image.width(), qRound(panel_->View().width() * panel_->devicePixelRatioF()));
  EXPECT_NE(panel_->SaveImage(folder_.filePath("none/plot.png").toStdString()), "");
}

TEST_F(LevelLinesPanelTest, CopiesItsImage) {
  (void)panel_->ShowPlot(FieldOnPlate(ConeField));
  ASSERT_EQ(panel_->View().actions().size(), 2);
  panel_->View().actions().at(1)->trigger();
  EXPECT_EQ(QGuiApplication::clipboard()->image().size(), panel_->View().Picture().size());
}

TEST_F(LevelLinesPanelTest, ClearingHidesIt) {
  (void)panel_->ShowPlot(FieldOnPlate(ConeField));
  panel_->ClearPlot();
  EXPECT_FALSE(panel_->isVisible());
  EXPECT_FALSE(panel_->View().HasPlot());
  EXPECT_FALSE(Shows(Qt::red));
}

}  // namespace
}  // namespace orv
