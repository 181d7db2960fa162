#include "shell/options_frame.h"

#include <QCheckBox>
#include <QColorDialog>
#include <QFileDialog>
#include <QLabel>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalSpy>
#include <gmock/gmock.h>

#include "forms_support.h"
#include "support/workbook_writer.h"

namespace orv::testing {
namespace {

class OptionsFrameTest : public FormFixture {
 protected:
  OptionsFrameTest() {
    form.Load();
    form.Show();
    frame.Refresh();
    frame.show();
    frame.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&frame));
  }
  std::string Stored(const std::string& key) const { return FormFixture::Stored("Use", key); }
  QLineEdit& Edit(const QString& name) { return Child<QLineEdit>(frame, name); }
  QString ColourText(int k) { return Edit("Text5(" + QString::number(k) + ")").text(); }

  ViewState view;
  OptionsForm form{settings, view, prompt};
  OptionsFrame frame{form};
};

TEST_F(OptionsFrameTest, HoldsEveryControlOfTheTable) {
  EXPECT_EQ(frame.objectName(), "Options");
  for (const ControlEntry& entry : kOptionControls) {
    const QString name = QString::fromStdString(ObjectName(entry));
    auto* control = frame.findChild<QWidget*>(name);
    ASSERT_NE(control, nullptr) << name.toStdString();
    EXPECT_FALSE(control->accessibleName().isEmpty()) << name.toStdString();
    if (!entry.tip.empty()) {
      EXPECT_EQ(control->toolTip(), "<p style=\"white-space:pre-wrap\">" +
                                        QString::fromStdString(std::string(entry.tip)).toHtmlEscaped() + "</p>");
    }
    const auto* button = qobject_cast<QAbstractButton*>(control);
    if (button != nullptr) {
      EXPECT_EQ(QString(button->text()).remove('&').toStdString(), std::string(entry.caption));
    }
  }
  for (int k = 0; k < kOptionFactors; ++k) {
    const auto& label = Child<QLabel>(frame, "Label1(" + QString::number(k) + ")");
    EXPECT_EQ(label.buddy(), &Edit("Text4(" + QString::number(k) + ")"));
  }
  EXPECT_LT(frame.width(), 600) << "no room is kept for the closed parts";
  Screenshot(frame, "options");
}

TEST_F(OptionsFrameTest, ShowsWhatTheFormHolds) {
  EXPECT_TRUE(Child<QCheckBox>(frame, "Check1(8)").isChecked());
  EXPECT_FALSE(Child<QCheckBox>(frame, "Check1(0)").isChecked());
  EXPECT_EQ(Edit("Text4(0)").text(), "1");
  EXPECT_EQ(Edit("Text7").text(), "earthjpg.jpg");
  EXPECT_EQ(Edit("Text9").text(), "MAX");
  EXPECT_EQ(ColourText(17), "70");
  EXPECT_EQ(Child<QScrollBar>(frame, "HScroll3").value(), 64);
  EXPECT_EQ(Child<QLabel>(frame, "Label4").text(), "Satellite size  65");
  form.SetCheck3Caption("REAL_ISO");
  frame.Refresh();
  EXPECT_EQ(Child<QCheckBox>(frame, "Check3").text(), "REAL_ISO");
}

TEST_F(OptionsFrameTest, FieldsAreTakenAtSaveAndClose) {
  QSignalSpy changed(&frame, &OptionsFrame::Changed);
  ClickBox(frame, "Check1(3)");
  Retype(Edit("Text4(0)"), "40");
  EXPECT_TRUE(form.Pending());
  EXPECT_EQ(view.options.Check1[3], 0);
  EXPECT_EQ(changed.count(), 3) << "the box and two figures";
  Click(frame, "Command1");
  EXPECT_EQ(view.options.Check1[3], 1);
  EXPECT_EQ(view.options.ThicknessLinePlot, 15);
  EXPECT_EQ(Edit("Text4(0)").text(), "15") << "clamped";
  EXPECT_EQ(Stored("Set03.00"), "1");
  EXPECT_TRUE(frame.isVisible());
  Retype(Edit("Text4(1)"), "2");
  Click(frame, "Command2");
  EXPECT_EQ(view.options.LengthAxisFactor, 2);
  EXPECT_FALSE(frame.isVisible());
  EXPECT_FALSE(form.Visible());
}

TEST_F(OptionsFrameTest, TheSatelliteFollowsAtOnce) {
  Child<QScrollBar>(frame, "HScroll3").setValue(199);
  EXPECT_EQ(Child<QLabel>(frame, "Label4").text(), "Satellite size  200");
  EXPECT_EQ(view.options.SatelliteSize, 199);
  EXPECT_EQ(Stored("Setstr03.00"), "199");
  for (const char* name : {"Check3", "Check4", "Check5", "Check6"}) ClickBox(frame, name);
  EXPECT_EQ(view.options.SatelliteShown, 1);
  EXPECT_EQ(view.options.PanelsTrackSun, 1);
  EXPECT_TRUE(view.valueColours);
  EXPECT_TRUE(view.satelliteAxes);
  EXPECT_EQ(Stored("Setstr04.00"), "1");
}

TEST_F(OptionsFrameTest, TheKeywordIsInCapitalsWhileItIsTyped) {
  Retype(Edit("Text9"), "sum");
  EXPECT_EQ(Edit("Text9").text(), "SUM");
  QTest::keyClick(&Edit("Text9"), Qt::Key_Home);
  QTest::keyClicks(&Edit("Text9"), "ab");
  EXPECT_EQ(Edit("Text9").text(), "ABSUM") << "the cursor stays";
  EXPECT_EQ(Stored("Setstr02.00"), "absent") << "not with each letter";
  Retype(Edit("Text7"), "blue.png");
  EXPECT_EQ(Stored("Setstr02.00"), "ABSUM") << "the field was left";
  QTest::keyClick(&Edit("Text7"), Qt::Key_Return);
  EXPECT_EQ(Stored("Setstr00.00"), "blue.png");
}

TEST_F(OptionsFrameTest, ADraggedBarIsStoredWhenItIsLetGo) {
  auto& bar = Child<QScrollBar>(frame, "HScroll3");
  bar.setSliderDown(true);
  bar.setSliderPosition(500);
  EXPECT_EQ(view.options.SatelliteSize, 500);
  EXPECT_EQ(Stored("Setstr03.00"), "absent");
  bar.setSliderDown(false);
  EXPECT_EQ(Stored("Setstr03.00"), "500");
}

TEST_F(OptionsFrameTest, TheColourPartGrowsTheFrame) {
  auto& patch = Child<QPushButton>(frame, "Patch(5)");
  EXPECT_FALSE(patch.isVisible());
  const int width = frame.sizeHint().width();
  ClickBox(frame, "Check2");
  EXPECT_TRUE(patch.isVisible());
  EXPECT_TRUE(Edit("Text5(0)").isVisible());
  EXPECT_GT(frame.sizeHint().width(), width);
  frame.adjustSize();
  Screenshot(frame, "options_colours");
  ClickBox(frame, "Check2");
  EXPECT_FALSE(patch.isVisible());
}

TEST_F(OptionsFrameTest, ALowWindowScrolls) {
  ClickBox(frame, "Check2");
  frame.resize(frame.sizeHint().width(), 300);
  QTest::qWait(20);
  EXPECT_EQ(frame.height(), 300);
  auto& close = Child<QPushButton>(frame, "Command2");
  EXPECT_TRUE(close.visibleRegion().isEmpty());
  close.setFocus(Qt::TabFocusReason);
  Child<QScrollArea>(frame, "OptionsArea").ensureWidgetVisible(&close);
  EXPECT_FALSE(close.visibleRegion().isEmpty());
  Screenshot(frame, "options_low");
}

TEST_F(OptionsFrameTest, APatchShowsAndChoosesTheColour) {
  ClickBox(frame, "Check2");
  auto& patch = Child<QPushButton>(frame, "Patch(2)");
  EXPECT_EQ(patch.property("colour").value<QColor>(), QColor(0, 255, 0));
  Retype(Edit("Text5(6)"), "999");
  EXPECT_EQ(patch.property("colour").value<QColor>(), QColor(255, 255, 0)) << "clamped";
  Click(frame, "Patch(2)");
  auto* dialog = qobject_cast<QColorDialog*>(OpenDialog("ColourDialog"));
  ASSERT_NE(dialog, nullptr);
  EXPECT_EQ(dialog->currentColor(), QColor(255, 255, 0));
  dialog->setCurrentColor(QColor(11, 22, 33));
  QMetaObject::invokeMethod(dialog, "accept");
  EXPECT_EQ(ColourText(6), "11");
  EXPECT_EQ(ColourText(7), "22");
  EXPECT_EQ(ColourText(8), "33");
  EXPECT_EQ(patch.property("colour").value<QColor>(), QColor(11, 22, 33));
  EXPECT_EQ(view.options.ColourOfPlotNominal[0], 0) << "taken at Save";
  Click(frame, "Command1");
  EXPECT_EQ(view.options.ColourOfPlotNominal, (std::array<double, 3>{11, 22, 33}));
}

TEST_F(OptionsFrameTest, WhiteAndBack) {
  ClickBox(frame, "Check2");
  ClickBox(frame, "Check7");
  for (int k = 15; k < 18; ++k) EXPECT_EQ(ColourText(k), "255");
  EXPECT_EQ(Stored("Background15"), "10");
  EXPECT_EQ(Child<QPushButton>(frame, "Patch(5)").property("colour").value<QColor>(), QColor(255, 255, 255));
  ClickBox(frame, "Check7");
  EXPECT_EQ(ColourText(15), "10");
  EXPECT_EQ(ColourText(16), "20");
  EXPECT_EQ(ColourText(17), "70");
}

TEST_F(OptionsFrameTest, FactorySettingsAndTheFolder) {
  Retype(Edit("Text6"), "/pictures");
  QTest::keyClick(&Edit("Text6"), Qt::Key_Return);
  EXPECT_EQ(Stored("SetDirBMP"), "/pictures");
  Retype(Edit("Text9"), "SUM");
  ClickBox(frame, "Check1(2)");
  Child<QScrollBar>(frame, "HScroll3").setValue(1000);
  Click(frame, "Command1");
  Click(frame, "Command3");
  EXPECT_EQ(Edit("Text6").text(), "");
  EXPECT_EQ(Edit("Text9").text(), "MAX");
  EXPECT_FALSE(Child<QCheckBox>(frame, "Check1(2)").isChecked());
  EXPECT_EQ(Child<QScrollBar>(frame, "HScroll3").value(), 64);
  EXPECT_EQ(view.options, Options{});
  EXPECT_EQ(Stored("SetDirBMP"), "");
}

TEST_F(OptionsFrameTest, TheFolderIsChosenByADialog) {
  const TemporaryFolder folder;
  Click(frame, "Browse");
  auto* dialog = qobject_cast<QFileDialog*>(OpenDialog("FolderDialog"));
  ASSERT_NE(dialog, nullptr);
  dialog->setDirectory(QString::fromStdString(folder.path().string()));
  dialog->selectFile(QString::fromStdString(folder.path().string()));
  QMetaObject::invokeMethod(dialog, "accept");
  EXPECT_EQ(Edit("Text6").text().toStdString(), folder.path().string());
  EXPECT_EQ(Stored("SetDirBMP"), folder.path().string());
}

TEST_F(OptionsFrameTest, TheLinkHelpOpensAndCloses) {
  auto& text = Child<QLabel>(frame, "Label9");
  EXPECT_FALSE(text.isVisible());
  Click(frame, "Command4");
  EXPECT_TRUE(text.isVisible());
  EXPECT_TRUE(form.HelpShown());
  frame.adjustSize();
  Screenshot(frame, "options_help");
  Click(frame, "Command5");
  EXPECT_FALSE(text.isVisible());
}

TEST_F(OptionsFrameTest, TabWalksAsTheEyeDoes) {
  ClickBox(frame, "Check2");
  auto& first = Child<QCheckBox>(frame, "Check1(0)");
  first.setFocus();
  std::vector<std::string> met;
  for (int k = 0; k < 80; ++k) {
    met.push_back(QApplication::focusWidget()->objectName().toStdString());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    if (QApplication::focusWidget() == &first) break;
  }
  EXPECT_EQ(met.size(), kOptionControls.size() - 1 + kOptionTriples + 1) << "all but the closed help, patches, Browse";
  EXPECT_EQ(met[1], "Check1(1)");
  EXPECT_EQ(met[10], "Check8(0)");
  EXPECT_EQ(met[13], "Text4(0)");
  EXPECT_EQ(met.back(), "Check7");
}

TEST_F(OptionsFrameTest, LegibleOnADarkDesktop) {
  const QPalette before = QApplication::palette();
  QPalette dark(QColor(45, 45, 48), QColor(45, 45, 48));
  QApplication::setPalette(dark);
  ClickBox(frame, "Check2");
  frame.adjustSize();
  QTest::qWait(20);
  const auto& label = Child<QLabel>(frame, "Label1(0)");
  const QColor text = label.palette().color(QPalette::WindowText);
  const QColor ground = label.palette().color(QPalette::Window);
  EXPECT_GT(std::abs(text.lightness() - ground.lightness()), 100);
  Screenshot(frame, "options_dark");
  QApplication::setPalette(before);
}

}  // namespace
}  // namespace orv::testing
