#include <QDockWidget>
#include <QHelpEvent>
#include <QLayout>
#include <QRegularExpression>
#include <QStatusBar>
#include <QToolTip>
#include <algorithm>

#include "shell_gui/main_window_fixture.h"

// What the main window and its selection say.
namespace orv::testing {
namespace {

// Presses a button of every box that opens while it lives, and keeps their texts.
class BoxAnswers {
 public:
  BoxAnswers() {
    timer_.setInterval(10);
    QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] {
      QDialog* const box = OpenDialog("MsgBox");
      if (box == nullptr) return;
      texts.push_back(box->property("text").toString().toStdString());
      for (const char* const button : {"Ignore", "Cancel", "OK"}) {
        if (ButtonOf(*box, button) == nullptr) continue;
        Press(*box, button);
        return;
      }
    });
    timer_.start();
  }
  bool Holds(const std::string& part) const {
    return std::any_of(texts.begin(), texts.end(),
                       [&](const std::string& text) { return text.find(part) != std::string::npos; });
  }

  std::vector<std::string> texts;

 private:
  QTimer timer_;
};

class MainWindowMessagesTest : public MainWindowTest {
 protected:
  void ShowSample() {
    window_->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(window_.get()));
    ASSERT_TRUE(WholePlotShown());
  }
  static void ChooseIn(QDialog& dialog, int plot) {
    auto* const combo = dialog.findChild<QComboBox*>("Combo2");
    const int item = combo->findText(QString::number(plot) + " ", Qt::MatchStartsWith);
    combo->setCurrentIndex(item);
    Q_EMIT combo->activated(item);
  }
  // A re-plot that the selection was opened for; returns what the panel said as the selection closed.
  std::string Choose(int plot, bool clear = false) {
    std::string said;
    WhenOpen("frmToPlot", [&, plot, clear](QDialog& dialog) {
      if (clear) Press(dialog, "Clear options");
      ChooseIn(dialog, plot);
      Press(dialog, "Go Plot");
      said = window_->State().panel;
    });
    Click("StatusBar1", Qt::ShiftModifier);
    EXPECT_TRUE(QTest::qWaitFor([&] { return run_->plot.IndexPlot == plot && !window_->Busy(); }, 20000));
    return said;
  }
};

TEST_F(MainWindowMessagesTest, APlotWithoutItsDataIsToldAndShown) {
  ShowPlot(13);
  EXPECT_EQ(Choose(92), "NO DATA: redeposition process not performed ");
  EXPECT_EQ(Panel(), "NO DATA: redeposition process not performed");
  EXPECT_EQ(Choose(97), "NO DATA: cleaning process not performed ");
  EXPECT_EQ(Panel(), "NO DATA: Cleaning process not performed");
  const std::string rotation =
      "autorotation NOT performed. To compute autorotation please use UpdateExcel and select plot 19 or plot>=90";
  EXPECT_EQ(Choose(19), rotation);
  EXPECT_EQ(Panel(), rotation);
  EXPECT_FALSE(Find<QPushButton>("Command8")->isEnabled());
  Choose(9);
  EXPECT_TRUE(Panel().starts_with("Model: \"")) << Panel();
  EXPECT_TRUE(Panel().ends_with("\" Click here to re-Plot")) << Panel();
}

TEST_F(MainWindowMessagesTest, TheWalkTellsOfThePlotsItPassesOver) {
  ShowPlot(13);
  Choose(92, true);  // it is the one plot that is memorised
  std::string said;
  WhenOpen("frmToPlot", [&](QDialog& dialog) {
    said = Panel();
    Press(dialog, "Cancel");
  });
  Click("StatusBar1");
  EXPECT_EQ(said, "NO DATA for this plot, process not performed");
}

TEST_F(MainWindowMessagesTest, AWorkbookWithoutADatabaseLeavesWhatIsShown) {
  ShowPlot(13);
  const std::string id = run_->model.ModelId;
  const std::filesystem::path file = folder_.path() / "bare.txt";
  std::ofstream(file) << "\n\n\tOrvdata Bare\n\tgold\tA rect 1 1 2 2\n\n";
  const BoxAnswers boxes;
  window_->OpenFile(file.string());
  ASSERT_TRUE(QTest::qWaitFor([&] { return !window_->Busy(); }, 10000));
  EXPECT_TRUE(boxes.Holds("The sheet \"bare\" of the workbook \"bare.txt\" holds no database: nothing was computed."));
  EXPECT_EQ(run_->model.ModelId, id);
  EXPECT_TRUE(run_->record.finished);
  EXPECT_EQ(window_->Source().File(), workbook_);
}

TEST_F(MainWindowMessagesTest, ARunLeavesNoPlotFileForPresentations) {
  ShowPlot(13);
  const BoxAnswers boxes;
  Menu("mnuFRunPowerPoint");
  EXPECT_TRUE(boxes.Holds("There is no text file to copy."));
}

TEST_F(MainWindowMessagesTest, LostMaterialsAreToldWhenTheSelectionOpens) {
  ShowPlot(13);
  run_->materials.MaterialsUsed.clear();
  const BoxAnswers boxes;
  Choose(9);
  EXPECT_TRUE(boxes.Holds("Loss of initialization in ListMATERIALused()"));
}

TEST_F(MainWindowMessagesTest, ThePanelTellsTheSidesOfARun) {
  ShowPlot(13);
  for (const char* const side :
       {"RECTO side", "VERSO side", "Recto&Verso sides", "Recto&Verso dots", "R&V dots&borders"}) {
    Click("StatusBar1", Qt::ControlModifier);
    EXPECT_EQ(Panel(), side);
  }
}

TEST_F(MainWindowMessagesTest, CtrlBeforeAFinishedRunReadsThePlotAnew) {
  ShowSample();
  const long plot = window_->Scene().PlotNumber();
  Click("StatusBar1", Qt::ControlModifier);
  EXPECT_TRUE(QTest::qWaitFor([&] { return window_->Scene().PlotNumber() > plot; }, 10000));
  EXPECT_EQ(window_->Scene().View().SidesMode, 1);
  EXPECT_EQ(Panel(), "Re-Plots");
}

TEST_F(MainWindowMessagesTest, ANewWorkbookStartsWithItsOwnFirstClick) {
  ShowPlot(13);
  Choose(9);
  EXPECT_EQ(window_->Scene().View().SidesMode, 2);
  WhenOpen("frmToPlot", [](QDialog& dialog) {
    ChooseIn(dialog, 13);
    Press(dialog, "Go Plot");
  });
  window_->OpenFile(workbook_);
  ASSERT_TRUE(QTest::qWaitFor([&] { return run_->plot.IndexPlot == 13 && !window_->Busy(); }, 60000));
  EXPECT_EQ(window_->Scene().View().SidesMode, 1);
  bool shown = false;
  WhenOpen("frmToPlot", [&](QDialog& dialog) {
    shown = true;
    Press(dialog, "Cancel");
  });
  Click("StatusBar1");
  EXPECT_TRUE(shown) << "the first click";
}

TEST_F(MainWindowMessagesTest, ContentsRestoresOptionsAndRepeatsWhatIsShown) {
  ShowSample();
  Menu("mnuFOptions");
  auto* const thickness = Find<QLineEdit>("Text4(0)");
  const QString before = thickness->text();
  thickness->setText("7");
  Q_EMIT thickness->textEdited("7");
  const BoxAnswers boxes;
  const long plot = window_->Scene().PlotNumber();
  Menu("mnuHContents");
  ASSERT_EQ(boxes.texts.size(), 2U);
  EXPECT_TRUE(boxes.texts[0].starts_with("OrvData\n"));
  for (const char* const part :
       {"Double Click in the plot window to disable or enable the automatic rotation given while moving the mouse with "
        "the right button down!  etc.",
        "Move the cursors labelled Redraw Start and Redraw Speed in order to watch dynamically the plot increasing. ",
        "Note : if Excel is not already open, the program sent a message to open it"}) {
    EXPECT_NE(boxes.texts[1].find(part), std::string::npos) << part;
  }
  EXPECT_EQ(thickness->text(), before) << "what was typed is taken back";
  EXPECT_TRUE(QTest::qWaitFor([&] { return window_->Scene().PlotNumber() > plot; }, 5000)) << "the sample once more";
  EXPECT_TRUE(WholePlotShown());
}

TEST_F(MainWindowMessagesTest, ContentsRepeatsThePlotOfARun) {
  ShowPlot(13);
  Choose(92);
  const BoxAnswers boxes;
  const long plot = window_->Scene().PlotNumber();
  Menu("mnuHContents");
  EXPECT_TRUE(QTest::qWaitFor([&] { return window_->Scene().PlotNumber() > plot && !window_->Busy(); }, 10000));
  EXPECT_EQ(run_->plot.IndexPlot, 92);
  EXPECT_EQ(Panel(), "NO DATA: redeposition process not performed");
}

TEST_F(MainWindowMessagesTest, AboutTellsTheRelease) {
  ShowSample();
  const BoxAnswers boxes;
  Menu("mnuHAbout");
  ASSERT_EQ(boxes.texts.size(), 1U);
  const QString release = QString::fromStdString(boxes.texts[0]).section("Release ", 1);
  EXPECT_TRUE(QRegularExpression("^0\\d\\d\\.0\\d\\d\\.\\d{4}$").match(release).hasMatch()) << release.toStdString();
}

TEST_F(MainWindowMessagesTest, TheFirstActivationSetsItsControls) {
  auto* const demo = Find<QPushButton>("Command6");
  EXPECT_EQ(demo->text(), "Run Demo");
  EXPECT_EQ(Find<QLineEdit>("Text12")->text(), "This is a memo for the warnings");
  ShowSample();
  EXPECT_EQ(demo->text(), "");
  EXPECT_FALSE(demo->icon().isNull());
  EXPECT_EQ(demo->accessibleName(), "Run Demo");
  EXPECT_GE(Find<QComboBox>("Combo1")->width(), 390);
  dialogs_->Log("first line\nsecond line");
  EXPECT_EQ(Find<QLineEdit>("Text12")->text(), "first line second line");
}

TEST_F(MainWindowMessagesTest, TheFirstWindowFitsTheScreen) {
  EXPECT_EQ(FirstWindowSize({1920, 1080}), QSize(1180, 860));
  for (const QSize& screen : {QSize(1366, 768), QSize(800, 600)}) {
    const QSize size = FirstWindowSize(screen);
    EXPECT_LT(size.width(), screen.width());
    EXPECT_LT(size.height(), screen.height()) << "the title needs some, too";
  }
}

TEST_F(MainWindowMessagesTest, ANarrowStatusBarLeavesOutButTellsAll) {
  window_->resize(800, 700);
  ShowSample();
  auto* const panel = Find<StatusPanel>("StatusBar1");
  auto* const told = static_cast<ElidedLabel*>(Find<QLabel>("StatusBar2"));
  const QRect place = panel->geometry();
  EXPECT_GE(Find<QLineEdit>("Text12")->width(), 80);
  panel->setText("Model: \"A name that is longer than the narrow panel can show it\" Click here to re-Plot");
  told->setText("Primitive 18 South_wing, i = 9, j = 6: Density 1.234E+12 and more of it");
  window_->grab().save(QString::fromStdString(PictureName("main_narrow_status.png")));
  window_->statusBar()->layout()->activate();
  EXPECT_EQ(panel->geometry(), place) << "no click misses it";
  EXPECT_TRUE(panel->Shown().startsWith("Model: \"A name"));
  EXPECT_TRUE(panel->Shown().endsWith("\" Click here to re-Plot")) << panel->Shown().toStdString();
  EXPECT_TRUE(told->Shown().startsWith("Primitive 18 South_wing")) << told->Shown().toStdString();
  EXPECT_NE(told->Shown(), told->text());
  QHelpEvent ask(QEvent::ToolTip, told->rect().center(), told->mapToGlobal(told->rect().center()));
  QCoreApplication::sendEvent(told, &ask);
  EXPECT_TRUE(QToolTip::text().contains("1.234E+12 and more of it")) << QToolTip::text().toStdString();
  QToolTip::hideText();
  panel->setText("RECTO side");
  window_->statusBar()->layout()->activate();
  EXPECT_EQ(panel->geometry(), place);
  EXPECT_EQ(panel->Shown(), "RECTO side");
}

TEST_F(MainWindowMessagesTest, TheManualThatIsNotThereIsTold) {
  ShowSample();
  const BoxAnswers boxes;
  Menu("mnuHManual");
  EXPECT_EQ(boxes.texts, std::vector<std::string>{"The manual is not beside the program."});
}

TEST_F(MainWindowMessagesTest, ThePanelOfLevelLinesStaysAwayUntilThereAreSome) {
  ShowSample();
  const auto panel = [&] { return window_->findChild<QDockWidget*>(); };
  ASSERT_NE(panel(), nullptr);
  panel()->show();
  settings_->Write("ToolBars", "User", window_->saveState().toBase64().toStdString());
  End();
  Begin();
  ShowSample();
  EXPECT_FALSE(panel()->isVisible());
}

TEST_F(MainWindowMessagesTest, DemoIsAWordAndNoSpecification) {
  ShowSample();
  auto* const combo = Find<QComboBox>("Combo1");
  for (const char* const text : {"=MAX(A1:C3)", "Demo"}) {
    const BoxAnswers boxes;
    combo->lineEdit()->selectAll();
    QTest::keyClicks(combo, text);
    QTest::keyClick(combo, Qt::Key_Return);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !window_->Busy(); }, 10000));
  }
  EXPECT_EQ(window_->Source().Source(), PlotSource::Demo);
  ASSERT_EQ(combo->count(), 1);
  EXPECT_EQ(combo->itemText(0), "=MAX(A1:C3)");
}

TEST_F(MainWindowMessagesTest, TheBoxOfSpecificationsTakesItsChoiceBack) {
  settings_->Write("Use", "SpecsMax00.00", "=MAX(A1:C3)");
  ShowSample();
  auto* const combo = Find<QComboBox>("Combo1");
  window_->activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(window_.get()));
  ASSERT_EQ(combo->currentText(), "=MAX(A1:C3)");
  combo->setEditText("=MAX(half");
  window_->View().setFocus();
  combo->setFocus();
  EXPECT_EQ(combo->currentText(), "=MAX(A1:C3)");
}

TEST_F(MainWindowMessagesTest, AnAxisKeyIsHeldWithAModifierInAnyOrder) {
  ShowSample();
  window_->activateWindow();
  window_->View().setFocus();
  auto& camera = window_->View().Control().Camera();
  QWidget* const view = &window_->View();
  for (const bool modifierFirst : {true, false}) {
    Menu("mnuVVTop");
    for (const Qt::Key key :
         modifierFirst ? std::array{Qt::Key_Shift, Qt::Key_X} : std::array{Qt::Key_X, Qt::Key_Shift})
      QTest::keyPress(view, key);
    QTest::mouseClick(Find<QToolButton>("pan"), Qt::LeftButton);
    EXPECT_NE(camera.Position(), (Vec3{0, 0, 100})) << "pan has become a view; modifier first: " << modifierFirst;
    QTest::keyRelease(view, Qt::Key_Shift);
    Menu("mnuVVTop");
    QTest::mouseClick(Find<QToolButton>("pan"), Qt::LeftButton);
    EXPECT_NE(camera.Position(), (Vec3{0, 0, 100})) << "X is still held";
    QTest::keyRelease(view, Qt::Key_X);
    Menu("mnuVVTop");
    QTest::mouseClick(Find<QToolButton>("pan"), Qt::LeftButton);
    EXPECT_EQ(camera.Position(), (Vec3{0, 0, 100}));
  }
}

TEST_F(MainWindowMessagesTest, AMovieGoesOnWhileARunIsAtWork) {
  ShowSample();
  auto* const directory = Find<QLineEdit>("Text6");
  directory->setText(QString::fromStdString(folder_.path().string()));
  Q_EMIT directory->textEdited(directory->text());
  Menu("mnuFMovieSaveAs");
  QWidget* video = nullptr;
  for (QWidget* widget : QApplication::topLevelWidgets()) {
    if (widget->objectName() == "frmVideo") video = widget;
  }
  ASSERT_NE(video, nullptr);
  video->findChild<QScrollBar*>("HScroll2")->setValue(0);
  const auto frames = [&] {
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder_.path())) {
      if (entry.path().filename().string().starts_with("Valis")) ++count;
    }
    return count;
  };
  int before = 0;
  int after = 0;
  WhenOpen("frmToPlot", [&](QDialog& dialog) {
    EXPECT_TRUE(window_->Busy());
    QTest::mouseClick(video->findChild<QPushButton*>("Command1"), Qt::LeftButton);
    before = frames();
    QTest::qWait(700);
    after = frames();
    Press(dialog, "Cancel");
  });
  window_->OpenFile(workbook_);
  EXPECT_GE(after, before + 2) << "frames of the picture that stands meanwhile";
  video->close();
}

}  // namespace
}  // namespace orv::testing
