#include "shell/qt_dialogs.h"

#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <gmock/gmock.h>

#include "gui_support.h"
#include "numerics/error_prompt.h"
#include "numerics/time_left.h"
#include "shell/frm_warning.h"

namespace orv {
namespace {

using testing::OpenDialog;
using testing::Press;
using testing::WhenOpen;

class QtDialogsTest : public ::testing::Test {
 protected:
  void SetUp() override {
    window.resize(300, 200);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
  }

  QWidget window;
  frmWarning warning;
  QtDialogs dialogs{&window, warning};
};

struct BoxCase {
  Buttons buttons;
  const char* caption;
  Answer answer;
};

TEST_F(QtDialogsTest, EachButtonIsAnAnswer) {
  const BoxCase cases[] = {{Buttons::Ok, "OK", Answer::Ok},
                           {Buttons::OkCancel, "OK", Answer::Ok},
                           {Buttons::OkCancel, "Cancel", Answer::Cancel},
                           {Buttons::AbortRetryIgnore, "Abort", Answer::Abort},
                           {Buttons::AbortRetryIgnore, "Retry", Answer::Retry},
                           {Buttons::AbortRetryIgnore, "Ignore", Answer::Ignore},
                           {Buttons::RetryCancel, "Retry", Answer::Retry},
                           {Buttons::RetryCancel, "Cancel", Answer::Cancel},
                           {Buttons::YesNo, "Yes", Answer::Yes},
                           {Buttons::YesNo, "No", Answer::No}};
  for (const BoxCase& one : cases) {
    WhenOpen("MsgBox", [&](QDialog& box) { Press(box, one.caption); });
    EXPECT_EQ(dialogs.Ask("text", "title", one.buttons, Icon::Warning), one.answer) << one.caption;
  }
}

TEST_F(QtDialogsTest, ABoxShowsItsTextTitleAndIcon) {
  const std::pair<Icon, QMessageBox::Icon> icons[] = {{Icon::None, QMessageBox::NoIcon},
                                                      {Icon::Information, QMessageBox::Information},
                                                      {Icon::Question, QMessageBox::Question},
                                                      {Icon::Warning, QMessageBox::Warning},
                                                      {Icon::Critical, QMessageBox::Critical}};
  for (const auto& [icon, shown] : icons) {
    QString text;
    QString title;
    QMessageBox::Icon seen{};
    int buttons = 0;
    WhenOpen("MsgBox", [&](QDialog& dialog) {
      auto& box = dynamic_cast<QMessageBox&>(dialog);
      text = box.text();
      title = box.windowTitle();
      seen = box.icon();
      buttons = static_cast<int>(box.buttons().size());
      Press(box, "OK");
    });
    dialogs.Ask("Corrigez <b>vos</b> données!\r\nligne", "Petite erreur", Buttons::Ok, icon);
    EXPECT_EQ(text, QString::fromUtf8("Corrigez <b>vos</b> données!\nligne"));
    EXPECT_EQ(title, "Petite erreur");
    EXPECT_EQ(seen, shown);
    EXPECT_EQ(buttons, 1);
  }
}

TEST_F(QtDialogsTest, ALongTextIsCutAndStandsWholeInTheDetails) {
  std::string text;
  for (int line = 0; line < 200; ++line) text += "line " + std::to_string(line) + "\r\n";
  WhenOpen("MsgBox", [&](QDialog& dialog) {
    auto& box = dynamic_cast<QMessageBox&>(dialog);
    EXPECT_LT(box.text().count('\n'), 40);
    EXPECT_TRUE(box.detailedText().contains("line 199"));
    EXPECT_LT(box.height(), 1000);
    Press(box, "OK");
  });
  EXPECT_EQ(dialogs.Ask(text, "", Buttons::Ok, Icon::None), Answer::Ok);
}

TEST_F(QtDialogsTest, EscapeNeverAbandons) {
  const std::pair<Buttons, Answer> cases[] = {{Buttons::Ok, Answer::Ok},
                                              {Buttons::OkCancel, Answer::Cancel},
                                              {Buttons::RetryCancel, Answer::Cancel},
                                              {Buttons::AbortRetryIgnore, Answer::None},
                                              {Buttons::YesNo, Answer::None}};
  for (const auto& [buttons, answer] : cases) {
    WhenOpen("MsgBox", [](QDialog& box) { QTest::keyClick(&box, Qt::Key_Escape); });
    EXPECT_EQ(dialogs.Ask("text", "", buttons, Icon::None), answer);
    WhenOpen("MsgBox", [](QDialog& box) { box.close(); });
    EXPECT_EQ(dialogs.Ask("text", "", buttons, Icon::None), answer);
  }
}

TEST_F(QtDialogsTest, TheInputBoxGivesItsText) {
  WhenOpen("InputBox", [](QDialog& box) {
    EXPECT_EQ(box.windowTitle(), "Re-Avertissement");
    EXPECT_EQ(box.findChild<QLabel*>("Label1")->text(), QString::fromUtf8("Vous voulez réellement abandonner"));
    EXPECT_EQ(box.findChild<QLineEdit*>("Text1")->text(), "oui, pour Abandonner");
    QTest::keyClicks(box.findChild<QLineEdit*>("Text1"), "non");
    Press(box, "OK");
  });
  EXPECT_EQ(dialogs.Input("Vous voulez réellement abandonner", "Re-Avertissement", "oui, pour Abandonner"), "non");
}

TEST_F(QtDialogsTest, TheInputBoxThatIsCancelledGivesNothing) {
  WhenOpen("InputBox", [](QDialog& box) { Press(box, "Cancel"); });
  EXPECT_EQ(dialogs.Input("prompt", "title", "initial"), "");
  WhenOpen("InputBox", [](QDialog& box) { QTest::keyClick(&box, Qt::Key_Escape); });
  EXPECT_EQ(dialogs.Input("prompt", "title", "initial"), "");
  WhenOpen("InputBox", [](QDialog& box) { QTest::keyClick(&box, Qt::Key_Return); });
  EXPECT_EQ(dialogs.Input("prompt", "title", "initial"), "initial");
}

TEST_F(QtDialogsTest, ThePauseLetsTheWindowWorkUntilContinuer) {
  int ticks = 0;
  QTimer work;
  QObject::connect(&work, &QTimer::timeout, &work, [&] { ++ticks; });
  work.start(5);
  bool modal = true;
  WhenOpen("CORRECTION", [&](QDialog& box) {
    modal = box.isModal() || QApplication::activeModalWidget() != nullptr;
    EXPECT_EQ(box.windowTitle(), "CORRECTION");
    EXPECT_EQ(box.findChild<QLabel*>("Label1")->text(),
              QString::fromUtf8("Corrigez vos données! Cliquer ensuite sur Continuer ..."));
    EXPECT_TRUE(dialogs.Waiting());
    QTest::qWait(60);
    Press(box, "Continuer");
  });
  dialogs.Pause("Corrigez vos données! Cliquer ensuite sur Continuer ...", "CORRECTION");
  EXPECT_FALSE(modal);
  EXPECT_GT(ticks, 3);
  EXPECT_FALSE(dialogs.Waiting());
  EXPECT_EQ(OpenDialog("CORRECTION"), nullptr);
}

TEST_F(QtDialogsTest, ClosingTheCorrectionGoesOn) {
  WhenOpen("CORRECTION", [](QDialog& box) { box.close(); });
  dialogs.Pause("text", "CORRECTION");
  SUCCEED() << "the pause ended";
  EXPECT_FALSE(dialogs.Waiting());
}

TEST_F(QtDialogsTest, TheErrorPromptGoesThroughItsWindows) {
  ErrorPrompt prompt(dialogs);
  WhenOpen("MsgBox", [](QDialog& box) {
    EXPECT_EQ(box.windowTitle(), "Petite erreur");
    Press(box, "Retry");
  });
  WhenOpen("CORRECTION", [](QDialog& box) { Press(box, "Continuer"); });
  prompt("Atn2faute");
  EXPECT_EQ(warning.Text(), "Atn2faute\r\n");
  WhenOpen("MsgBox", [](QDialog& box) { Press(box, "Abort"); });
  EXPECT_THROW(prompt("faute x12 "), ProgramEnd);
  prompt("_x");
  EXPECT_EQ(warning.Text(), "_x\r\nfaute x12 \r\nAtn2faute\r\n");
}

TEST_F(QtDialogsTest, LogsAndStatusAreTold) {
  std::vector<QString> logs;
  std::vector<QString> states;
  QObject::connect(&dialogs, &QtDialogs::Logged, &window, [&](const QString& text) { logs.push_back(text); });
  QObject::connect(&dialogs, &QtDialogs::StatusChanged, &window, [&](const QString& text) { states.push_back(text); });
  dialogs.Log("faute x12");
  dialogs.Status("Re-Plots");
  EXPECT_THAT(logs, ::testing::ElementsAre("faute x12"));
  EXPECT_THAT(states, ::testing::ElementsAre("Re-Plots"));
  EXPECT_EQ(warning.Newest(), "faute x12");
  EXPECT_TRUE(dialogs.Attended());
}

TEST_F(QtDialogsTest, ProgressLetsEventsThrough) {
  int longest = 0;
  QElapsedTimer since;
  QTimer work;
  QObject::connect(&work, &QTimer::timeout, &work, [&] {
    longest = std::max(longest, static_cast<int>(since.elapsed()));
    since.restart();
  });
  std::vector<double> shares;
  QString text;
  QObject::connect(&dialogs, &QtDialogs::ProgressChanged, &window, [&](const QString& phase, double share) {
    text = phase;
    shares.push_back(share);
  });
  work.start(1);
  since.start();
  QElapsedTimer run;
  run.start();
  int calls = 0;
  while (run.elapsed() < 400) {
    dialogs.Progress("heat flux", static_cast<double>(run.elapsed()) / 1000);
    ++calls;
  }
  dialogs.Progress("heat flux", 1);
  EXPECT_LE(longest, 50);
  EXPECT_GT(calls, 100);
  EXPECT_GT(shares.size(), 5U);
  EXPECT_LT(shares.size(), 40U);
  EXPECT_EQ(shares.back(), 1);
  EXPECT_EQ(text, "heat flux");
}

TEST_F(QtDialogsTest, AClosedWindowEndsTheRun) {
  QTimer::singleShot(30, &window, [&] { dialogs.RequestEnd(); });
  const auto run = [&] {
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < 4000) dialogs.Progress("phase", 0.5);
  };
  EXPECT_THROW(run(), ProgramEnd);
  EXPECT_TRUE(dialogs.EndRequested());
  EXPECT_THROW(dialogs.Ask("text", "", Buttons::Ok, Icon::None), ProgramEnd);
  EXPECT_THROW(dialogs.Input("text", "", ""), ProgramEnd);
  EXPECT_THROW(dialogs.Pause("text", ""), ProgramEnd);
  dialogs.WithdrawEnd();
  EXPECT_NO_THROW(dialogs.Progress("phase", 1));
}

TEST_F(QtDialogsTest, AClosedWindowEndsWhatIsOpen) {
  const auto endWhenOpen = [&](const char* name) { WhenOpen(name, [&](QDialog&) { dialogs.RequestEnd(); }); };
  endWhenOpen("MsgBox");
  EXPECT_THROW(dialogs.Ask("text", "", Buttons::AbortRetryIgnore, Icon::None), ProgramEnd);
  dialogs.WithdrawEnd();
  endWhenOpen("InputBox");
  EXPECT_THROW(dialogs.Input("text", "", "x"), ProgramEnd);
  dialogs.WithdrawEnd();
  endWhenOpen("CORRECTION");
  EXPECT_THROW(dialogs.Pause("text", "CORRECTION"), ProgramEnd);
}

TEST(TimeLeftTest, ThePaceOfThePhaseTellsTheTime) {
  TimeLeft left;
  const std::chrono::steady_clock::time_point start{};
  const auto after = [&](double seconds) {
    return start +
           std::chrono::duration_cast<std::chrono::steady_clock::duration>(std::chrono::duration<double>(seconds));
  };
  EXPECT_EQ(left("a", 0, after(0)), "");
  EXPECT_EQ(left("a", 0.1, after(0.9)), "");
  EXPECT_EQ(left("a", 0.25, after(10)), ", about 30 s left");
  EXPECT_EQ(left("b", 0.25, after(11)), "") << "a phase of its own";
  EXPECT_EQ(left("b", 0.25, after(20)), "") << "it stands still";
  EXPECT_EQ(left("b", 0.26, after(21)), ", about 12 min left");
  EXPECT_EQ(left("b", 0.99999, after(25)), ", about 1 s left");
}

}  // namespace
}  // namespace orv
