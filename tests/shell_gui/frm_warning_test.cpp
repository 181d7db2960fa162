#include "shell/frm_warning.h"

#include <QClipboard>
#include <gmock/gmock.h>

#include "gui_support.h"
#include "shell/form_parts.h"

namespace orv {
namespace {

class FrmWarningTest : public ::testing::Test {
 protected:
  QString Shown() { return window.findChild<QPlainTextEdit*>("Text1")->toPlainText(); }
  QString Note() { return window.findChild<QLabel*>("Label1")->text(); }
  void Click(const char* name) { QTest::mouseClick(window.findChild<QPushButton*>(name), Qt::LeftButton); }

  frmWarning window;
};

TEST_F(FrmWarningTest, TheNewestMessageStandsFirst) {
  EXPECT_EQ(window.State(), "");
  window.Add("first");
  window.Add("second\r\nwith a line");
  EXPECT_EQ(window.Text(), "second\r\nwith a line\r\nfirst\r\n");
  window.Add("third");
  EXPECT_EQ(window.Text(), "third\r\nsecond\r\nwith a line\r\nfirst\r\n");
  EXPECT_EQ(window.Newest(), "third");
}

TEST_F(FrmWarningTest, AnOpenWindowTakesNewMessages) {
  window.Add("before");
  window.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
  EXPECT_EQ(window.State(), "Shown");
  EXPECT_EQ(Shown(), "before\n");
  window.Add("faute");
  EXPECT_TRUE(testing::WaitFor([&] { return Shown() == "faute\nbefore\n"; }));
  EXPECT_EQ(Note(), "2 messages");
  window.grab().save(QString::fromStdString(testing::PictureName("frmWarning.png")));
  window.close();
  EXPECT_EQ(window.State(), "");
  EXPECT_EQ(window.Text(), "faute\r\nbefore\r\n") << "messages are kept";
}

TEST_F(FrmWarningTest, SearchGoesRound) {
  for (const char* text : {"alpha faute", "beta", "gamma faute"}) window.Add(text);
  window.show();
  auto* search = window.findChild<QLineEdit*>("Text2");
  QTest::keyClicks(search, "faute");
  EXPECT_EQ(Note(), "Line 1");
  Click("Command1");
  EXPECT_EQ(Note(), "Line 3");
  Click("Command1");
  EXPECT_EQ(Note(), "Line 1");
  Click("Command2");
  EXPECT_EQ(Note(), "Line 3");
  QTest::keyClicks(search, "x");
  EXPECT_EQ(Note(), "\"fautex\" was not found");
}

TEST_F(FrmWarningTest, CopyTakesTheSelectionOrAll) {
  window.Add("one");
  window.Add("two");
  window.show();
  Click("Command3");
  EXPECT_EQ(QGuiApplication::clipboard()->text(), "two\none\n");
  auto* text = window.findChild<QPlainTextEdit*>("Text1");
  ASSERT_TRUE(text->find("one"));
  Click("Command3");
  EXPECT_EQ(QGuiApplication::clipboard()->text(), "one");
}

TEST_F(FrmWarningTest, ClearRemovesAll) {
  window.Add("one");
  window.show();
  window.Add("two");
  Click("Command4");
  QTest::qWait(150);
  EXPECT_EQ(window.Text(), "");
  EXPECT_EQ(window.Newest(), "");
  EXPECT_EQ(Note(), "0 messages");
}

TEST_F(FrmWarningTest, TheOldestLinesGo) {
  for (int i = 0; i < kMostWarningLines + 500; ++i) window.Add("message " + std::to_string(i));
  const QStringList lines = window.Text().split("\r\n");
  EXPECT_LE(lines.size(), kMostWarningLines + 1);
  EXPECT_GE(lines.size(), kMostWarningLines - 1);
  EXPECT_EQ(lines.front(), "message " + QString::number(kMostWarningLines + 499));
}

TEST(FormPartsTest, ControlsAreFoundByTheirNames) {
  QWidget form;
  MakeCheck(&form, ArrayName("Check1", 3), "no Plot Axis", "a tip < b");
  auto* bar = MakeScroll(&form, "HScroll1", 0, 1000, 1000, "Redraw  feature");
  MakeLabel(&form, "Label1", "&Redraw speed", bar);
  const auto* check = form.findChild<QCheckBox*>("Check1(3)");
  ASSERT_NE(check, nullptr);
  EXPECT_EQ(check->text(), "no Plot Axis");
  EXPECT_EQ(check->toolTip(), "<p style=\"white-space:pre-wrap\">a tip &lt; b</p>");
  EXPECT_EQ(check->accessibleName(), "no Plot Axis");
  EXPECT_EQ(bar->accessibleName(), "Redraw speed");
  EXPECT_EQ(bar->value(), 1000);
}

}  // namespace
}  // namespace orv
