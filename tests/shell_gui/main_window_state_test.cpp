#include "shell_gui/main_window_fixture.h"

// What must hold while a run goes on, at the end, and for the bars, buttons and keys of the main window.
namespace orv::testing {
namespace {

void LetGrow() {
  QTest::qWait(300);
}

TEST_F(MainWindowTest, TheSampleGrows) {
  window_->show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(window_.get()));
  ASSERT_TRUE(QTest::qWaitFor([&] { return run_->lists.NumberPoints > 0; }, 10000));
  EXPECT_LT(window_->Scene().CURRINDEXI(), run_->lists.NumberPoints);
  EXPECT_TRUE(WholePlotShown());
}

// Ends the event loops of its process for good, so it has one of its own.
using MainWindowEndTest = MainWindowTest;

TEST_F(MainWindowEndTest, ClosingDuringARunEndsIt) {
  bool asked = false;
  WhenOpen("frmToPlot", [&](QDialog& dialog) {
    Press(dialog, "Go Plot");
    asked = true;
  });
  run_->record.CaseText.clear();  // the run asks for its name and waits there
  WhenOpen("InputBox", [&](QDialog&) { window_->close(); });
  window_->show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(window_.get()));
  window_->OpenFile(workbook_);
  EXPECT_TRUE(QTest::qWaitFor([&] { return asked && !window_->Busy(); }, 30000));
  EXPECT_TRUE(QTest::qWaitFor([&] { return !window_->isVisible(); }, 5000));
}

TEST_F(MainWindowTest, ARunKeepsOtherSourcesOut) {
  std::string told;
  WhenOpen("frmToPlot", [&](QDialog& dialog) {
    window_->OpenFile("/nowhere/other.xlsx");
    told = Find<QLabel>("StatusBar2")->text().toStdString();
    EXPECT_FALSE(Find<QPushButton>("Command6")->isEnabled());
    EXPECT_FALSE(Find<QAction>("mnuUpdateExcel")->isEnabled());
    Press(dialog, "Cancel");
  });
  window_->show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(window_.get()));
  QTest::qWait(100);
  window_->OpenFile(workbook_);
  EXPECT_TRUE(QTest::qWaitFor([&] { return !told.empty() && !window_->Busy(); }, 20000));
  EXPECT_EQ(told, "A run is going on.");
  EXPECT_FALSE(run_->record.finished) << "the selection was cancelled";
  EXPECT_TRUE(Find<QPushButton>("Command6")->isEnabled());
}

TEST_F(MainWindowTest, KeysOfAFieldStayInIt) {
  ShowPlot(13);
  auto& camera = window_->View().Control().Camera();
  Menu("mnuFOptions");
  auto* const field = Find<QLineEdit>("Text4(0)");
  window_->activateWindow();
  EXPECT_TRUE(QTest::qWaitForWindowActive(window_.get()));
  field->setFocus();
  const Vec3 place = camera.Position();
  QTest::keyClick(field, Qt::Key_Up);
  QTest::keyClick(field, Qt::Key_PageDown);
  Find<QScrollBar>("HScroll2")->setFocus();
  QTest::keyClick(Find<QScrollBar>("HScroll2"), Qt::Key_I);
  EXPECT_EQ(camera.Position(), place);
  window_->View().setFocus();
  QTest::keyClick(&window_->View(), Qt::Key_Left);
  EXPECT_NE(camera.Position(), place);
}

TEST_F(MainWindowTest, TheBarsMoveThePlot) {
  ShowPlot(13);
  ASSERT_TRUE(WholePlotShown());
  Find<QScrollBar>("HScroll1")->setValue(300);
  EXPECT_NEAR(window_->Scene().CURRINDEXI(), run_->lists.NumberPoints * 0.3, 1);
  EXPECT_TRUE(Find<QLabel>("Text3")->text().startsWith("Redraw")) << Find<QLabel>("Text3")->text().toStdString();
  LetGrow();
  EXPECT_NEAR(window_->Scene().CURRINDEXI(), run_->lists.NumberPoints * 0.3, 1) << "a move of the user freezes";
  Find<QScrollBar>("HScroll4")->setValue(100);
  EXPECT_NEAR(window_->Scene().CURRINDEXMINI(), run_->lists.NumberPoints * 0.1, 1);
  Find<QScrollBar>("HScroll2")->setValue(5);
  EXPECT_EQ(Find<QLabel>("Text2")->text(), "Redraw speed5");
}

TEST_F(MainWindowTest, FrozenStartAndReset) {
  ShowPlot(13);
  ASSERT_TRUE(WholePlotShown());
  Tool("frozenstart");
  EXPECT_EQ(window_->Scene().CURRINDEXI(), -1);
  EXPECT_TRUE(Find<QLabel>("Text3")->text().startsWith("Redraw Start"));
  LetGrow();
  EXPECT_EQ(window_->Scene().CURRINDEXI(), -1);
  Tool("frozenstart");
  EXPECT_TRUE(WholePlotShown());
  Click("Command9");
  window_->View().DrawNow();
  EXPECT_LT(window_->Scene().CURRINDEXI(), run_->lists.NumberPoints) << "Reset starts the growth anew";
  EXPECT_TRUE(WholePlotShown());
}

TEST_F(MainWindowTest, ATurnIsPlayed) {
  ShowPlot(19);
  ASSERT_TRUE(WholePlotShown());
  ASSERT_TRUE(Find<QPushButton>("Command8")->isEnabled());
  EXPECT_EQ(Find<QScrollBar>("HScroll2")->maximum(), 32);
  Click("Command8");
  EXPECT_EQ(Find<QScrollBar>("HScroll2")->maximum(), 10);
  Find<QScrollBar>("HScroll2")->setValue(0);
  EXPECT_TRUE(QTest::qWaitFor([&] { return window_->Scene().Playback().AutoRotFrame() > 2; }, 10000));
  Click("Command8");
  Keep("main_turn.png");
  Click("Command8");
  window_->View().DrawNow();
  EXPECT_EQ(window_->Scene().Playback().AutoRotFrame(), 0);
  EXPECT_EQ(Find<QScrollBar>("HScroll2")->maximum(), 32);
}

TEST_F(MainWindowTest, HelpAndAboutTell) {
  ShowPlot(13);
  std::vector<std::string> texts;
  const auto take = [&](QDialog& box) {
    texts.push_back(box.property("text").toString().toStdString());
    Press(box, "OK");
  };
  WhenOpen("MsgBox", take);
  Menu("mnuHAbout");
  ASSERT_EQ(texts.size(), 1U);
  WhenOpen("MsgBox", [&](QDialog& box) {
    WhenOpen("MsgBox", take);
    take(box);
  });
  Menu("mnuHContents");
  EXPECT_TRUE(QTest::qWaitFor([&] { return texts.size() >= 3; }, 5000));
  EXPECT_EQ(run_->plot.IndexPlot, 13);
}

TEST_F(MainWindowTest, StoredInteractivityIsConfirmed) {
  settings_->Write("Use", "Set30.00", "1");
  settings_->Write("Use", "Set07.00", "1");
  settings_->Write("Use", "Set08.00", "1");
  End();
  Begin();
  std::string text;
  WhenOpen("MsgBox", [&](QDialog& box) {
    text = box.property("text").toString().toStdString();
    Press(box, "Cancel");
  });
  window_->show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(window_.get()));
  EXPECT_TRUE(QTest::qWaitFor([&] { return !text.empty(); }, 5000));
  EXPECT_NE(text.find("Interactive with Excel"), std::string::npos);
  EXPECT_FALSE(Find<QCheckBox>("Check1(7)")->isChecked());
}

TEST_F(MainWindowTest, AWorkbookThatCannotBeReadIsNotRemembered) {
  const std::string broken = folder_.Write("broken.xlsx", "PK\3\4 no workbook").string();
  window_->show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(window_.get()));
  QTest::qWait(100);
  WhenOpen("MsgBox", [](QDialog& box) { Press(box, "OK"); });
  window_->OpenFile(broken);
  EXPECT_TRUE(RecentWorkbooks(*settings_).empty());
}

}  // namespace
}  // namespace orv::testing
