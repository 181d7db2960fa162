#include <QListView>

#include "shell_gui/main_window_fixture.h"

// A day's work from start to start, with pictures of each step.
namespace orv::testing {
namespace {

class MainWindowSessionTest : public MainWindowTest {
 protected:
  // In the selection: a click in the list, then "Go Plot".
  static void Choose(QDialog& dialog, const QString& plot, const char* picture) {
    auto* const list = dialog.findChild<QListView*>("List1");
    const QAbstractItemModel& rows = *list->model();
    for (int row = 0; row < rows.rowCount(); ++row) {
      const QModelIndex index = rows.index(row, 0);
      if (!index.data().toString().startsWith(plot + " ")) continue;
      list->scrollTo(index);
      QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualRect(index).center());
    }
    QTest::qWait(60);
    dialog.grab().save(QString::fromStdString(PictureName(picture)));
    Press(dialog, "Go Plot");
  }
  void Drag(Qt::MouseButton button, QPoint from, QPoint to) {
    QWidget* const view = &window_->View();
    QTest::mousePress(view, button, {}, from);
    for (int step = 1; step <= 10; ++step) QTest::mouseMove(view, from + (to - from) * step / 10);
    QTest::mouseRelease(view, button, {}, to);
  }
  int FilesNamed(const std::string& start, const std::string& end) const {
    int files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder_.path())) {
      const std::string name = entry.path().filename().string();
      files += name.starts_with(start) && name.ends_with(end) ? 1 : 0;
    }
    return files;
  }
  // The cell under the first place that has one.
  std::string PickSomewhere() {
    const QSize size = window_->View().size();
    for (int k = 0; k < 400; ++k) {
      const QPoint place(size.width() * (3 + k % 20) / 26, size.height() * (3 + k / 20) / 26);
      QTest::mouseClick(&window_->View(), Qt::LeftButton, {}, place);
      const std::string told = Find<QLabel>("StatusBar2")->text().toStdString();
      if (told.starts_with("Primitive")) return told;
    }
    return {};
  }
  template <class Widget>
  static Widget& Part(const char* window, const char* name) {
    for (QWidget* widget : QApplication::topLevelWidgets()) {
      if (widget->objectName() != window) continue;
      if (auto* part = widget->findChild<Widget*>(name)) return *part;
    }
    throw std::runtime_error(std::string("no ") + name);
  }
  // The window's end has ended the loops of events; the next start needs them.
  static void AllowLoops() {
    QTimer::singleShot(0, qApp, [] { QCoreApplication::quit(); });
    QApplication::exec();
  }

 public:
  void StartWithTheExample();
  void WatchItGrow();
  void ChangeColours();
  void ReplotFromTheStatusBar();
  void TurnZoomAndPick();
  void SaveAnImageAndFiveFrames();
  void ChangeOptions();
  void CloseAndStartAgain();
};

void MainWindowSessionTest::StartWithTheExample() {
  WhenOpen("frmToPlot", [](QDialog& dialog) { Choose(dialog, "13", "session_01_selection.png"); });
  window_->OpenFile(workbook_, true);
  window_->show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(window_.get()));
  ASSERT_TRUE(QTest::qWaitFor([&] { return run_->record.finished && !window_->Busy(); }, 60000));
  EXPECT_EQ(run_->plot.IndexPlot, 13);
  EXPECT_TRUE(Find<QMenu>("mnuFile")->menuAction()->isVisible());
}

void MainWindowSessionTest::WatchItGrow() {
  ASSERT_TRUE(QTest::qWaitFor([&] { return run_->lists.PlotLoaded == 1; }, 10000));
  const int early = window_->Scene().CURRINDEXI();
  EXPECT_LT(early, run_->lists.NumberPoints);
  EXPECT_TRUE(QTest::qWaitFor([&] { return window_->Scene().CURRINDEXI() > early; }, 5000));
  QTest::qWait(1000);
  Keep("session_02_grows.png");
  ASSERT_TRUE(WholePlotShown());
  Keep("session_03_grown.png");
}

void MainWindowSessionTest::ChangeColours() {
  const Image before = window_->View().Picture();
  Click("Command7");
  EXPECT_EQ(window_->Scene().View().ColorStyle, 1);
  const Image coloured = window_->View().Picture();
  EXPECT_NE(coloured, before);
  Click("Command7", Qt::ShiftModifier);
  EXPECT_EQ(window_->Scene().View().ScaleMode, 1);
  EXPECT_NE(window_->View().Picture(), coloured);
  Keep("session_04_colours.png");
}

void MainWindowSessionTest::ReplotFromTheStatusBar() {
  WhenOpen("frmToPlot", [](QDialog& dialog) { Choose(dialog, "9", "session_05_selection.png"); });
  Click("StatusBar1");
  ASSERT_TRUE(QTest::qWaitFor([&] { return run_->plot.IndexPlot == 9 && !window_->Busy(); }, 20000));
  EXPECT_EQ(run_->plot.PreviousIndexPlot, 13) << "nothing was computed again";
  ASSERT_TRUE(WholePlotShown());
  Keep("session_06_replot.png");
  Click("StatusBar1");
  EXPECT_TRUE(QTest::qWaitFor([&] { return run_->plot.IndexPlot == 13; }, 20000)) << "the memorised plot before";
  Click("StatusBar1");
  EXPECT_TRUE(QTest::qWaitFor([&] { return run_->plot.IndexPlot == 9; }, 20000));
  ASSERT_TRUE(WholePlotShown());
}

void MainWindowSessionTest::TurnZoomAndPick() {
  const Image before = window_->View().Picture();
  Tool("select");
  EXPECT_TRUE(Find<QToolButton>("select")->isChecked());
  Drag(Qt::RightButton, {250, 200}, {340, 240});
  QTest::mouseClick(&window_->View(), Qt::LeftButton, {}, QPoint(5, 5));  // stops a spin
  const Image turned = window_->View().Picture();
  EXPECT_NE(turned, before);
  Keep("session_07_turned.png");

  Tool("zoom");
  const auto width = [&] {
    const OrthoWindow& edges = window_->View().Control().Camera().Window();
    return edges.right - edges.left;
  };
  const double whole = width();
  Drag(Qt::LeftButton, {250, 260}, {250, 200});
  EXPECT_LT(width(), whole) << "an upward drag enlarges";
  Keep("session_08_zoomed.png");

  Tool("select");
  const std::string told = PickSomewhere();
  EXPECT_NE(told.find("i = "), std::string::npos) << told;
  EXPECT_NE(told.find(" = ", told.find("j = ") + 4), std::string::npos) << "the value: " << told;
  Keep("session_09_picked.png");
}

void MainWindowSessionTest::SaveAnImageAndFiveFrames() {
  Tool("imagespot");
  EXPECT_EQ(FilesNamed("Valis", ".bmp"), 1) << "beside the workbook";
  EXPECT_TRUE(Find<QLabel>("StatusBar2")->text().startsWith("Saved "));
  Menu("mnuFSave");
  EXPECT_EQ(FilesNamed("ImageOrvValisSaved", ".bmp"), 1);

  const QString redraw = Find<QLabel>("Text3")->text();
  Tool("movieframes");
  Part<QScrollBar>("frmVideo", "HScroll1").setValue(5);
  Part<QScrollBar>("frmVideo", "HScroll2").setValue(1);
  auto& start = Part<QPushButton>("frmVideo", "Command1");
  EXPECT_TRUE(start.isVisible());
  QTest::mouseClick(&start, Qt::LeftButton);
  EXPECT_TRUE(QTest::qWaitFor([&] { return Find<QLabel>("Text3")->text().contains(" / 5 Frames"); }, 5000));
  start.window()->grab().save(QString::fromStdString(PictureName("session_10_movie.png")));
  EXPECT_TRUE(QTest::qWaitFor([&] { return Find<QLabel>("Text3")->text() == redraw; }, 20000)) << "the movie is over";
  EXPECT_EQ(FilesNamed("Valis", ".bmp"), 6) << "five frames and the image";
  start.window()->close();
}

void MainWindowSessionTest::ChangeOptions() {
  Menu("mnuFOptions");
  auto* const box = Find<QCheckBox>("Check1(3)");
  QTest::mouseClick(box, Qt::LeftButton, {}, QPoint(8, box->height() / 2));
  auto* const thickness = Find<QLineEdit>("Text4(0)");
  thickness->selectAll();
  QTest::keyClicks(thickness, "3");
  auto* const extended = Find<QCheckBox>("Check2");
  QTest::mouseClick(extended, Qt::LeftButton, {}, QPoint(8, extended->height() / 2));
  auto* const red = Find<QLineEdit>("Text5(15)");
  red->selectAll();
  QTest::keyClicks(red, "90");
  QTest::mouseClick(ButtonOf(*window_, "Save"), Qt::LeftButton);
  EXPECT_EQ(window_->Scene().View().options.ThicknessLinePlot, 3);
  Keep("session_11_options.png");
  QTest::mouseClick(ButtonOf(*window_, "Close"), Qt::LeftButton);
  EXPECT_FALSE(box->isVisible());
  Keep("session_12_with_options.png");
}

void MainWindowSessionTest::CloseAndStartAgain() {
  window_->close();
  EXPECT_FALSE(window_->isVisible());
  AllowLoops();
  End();
  Begin();
  window_->show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(window_.get()));
  Menu("mnuFOptions");
  EXPECT_TRUE(Find<QCheckBox>("Check1(3)")->isChecked());
  EXPECT_EQ(Find<QLineEdit>("Text4(0)")->text(), "3");
  EXPECT_EQ(Find<QLineEdit>("Text5(15)")->text(), "90");
  EXPECT_EQ(window_->Scene().View().options.Check1[3], 1);
  Keep("session_13_again.png");
  EXPECT_EQ(settings_->Read("UseOrv", "PlotsUsedLastSelected", ""), "9");
  EXPECT_TRUE(settings_->Read("UseOrv", "PlotsUsed0", "").starts_with("13 "));
  EXPECT_TRUE(settings_->Read("UseOrv", "PlotsUsed1", "").starts_with("9 "));
  EXPECT_EQ(RecentWorkbooks(*settings_).front(), workbook_);
}

TEST_F(MainWindowSessionTest, FromStartToStart) {
  for (const auto step : {&MainWindowSessionTest::StartWithTheExample, &MainWindowSessionTest::WatchItGrow,
                          &MainWindowSessionTest::ChangeColours, &MainWindowSessionTest::ReplotFromTheStatusBar,
                          &MainWindowSessionTest::TurnZoomAndPick, &MainWindowSessionTest::SaveAnImageAndFiveFrames,
                          &MainWindowSessionTest::ChangeOptions, &MainWindowSessionTest::CloseAndStartAgain}) {
    (this->*step)();
    if (HasFatalFailure()) return;
  }
}

}  // namespace
}  // namespace orv::testing
