#include "numerics/terminal_dialogs.h"

#include <chrono>
#include <gtest/gtest.h>
#include <regex>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "numerics/error_prompt.h"
#include "numerics/text.h"

namespace orv {
namespace {

struct Terminal {
  explicit Terminal(QuestionPolicy policy, const std::string& typed = "", bool quiet = false, bool line = false)
      : in(typed), dialogs(in, out, {policy, quiet, line}) {}
  std::string Rest() {
    std::string rest;
    std::getline(in, rest, '\0');
    return rest;
  }
  std::istringstream in;
  std::ostringstream out;
  TerminalDialogs dialogs;
};

TEST(TerminalDialogs, AnswersByPolicyUnattended) {
  struct Row {
    const char* name;
    Buttons buttons;
    Answer ignore;
    Answer abort;
  };
  for (const Row& row :
       {Row{"OK", Buttons::Ok, Answer::Ok, Answer::Ok}, Row{"OK/Cancel", Buttons::OkCancel, Answer::Ok, Answer::Ok},
        Row{"Abort/Retry/Ignore", Buttons::AbortRetryIgnore, Answer::Ignore, Answer::Abort},
        Row{"Retry/Cancel", Buttons::RetryCancel, Answer::Cancel, Answer::Cancel}}) {
    SCOPED_TRACE(row.name);
    Terminal ignoring(QuestionPolicy::Ignore, "retry\nretry\n");
    EXPECT_EQ(ignoring.dialogs.Ask("text", "title", row.buttons, Icon::Question), row.ignore);
    EXPECT_EQ(ignoring.Rest(), "retry\nretry\n") << "nothing is read unattended";
    Terminal aborting(QuestionPolicy::Abort);
    EXPECT_EQ(aborting.dialogs.Ask("text", "title", row.buttons, Icon::Question), row.abort);
  }
}

TEST(TerminalDialogs, GivesTheDefaultOfAnInputBoxUnattended) {
  for (const QuestionPolicy policy : {QuestionPolicy::Ignore, QuestionPolicy::Abort}) {
    Terminal terminal(policy, "typed\n");
    EXPECT_EQ(terminal.dialogs.Input("prompt", "title", "Case ...."), "Case ....");
    EXPECT_EQ(terminal.dialogs.Input("prompt", "title", ""), "");
    EXPECT_EQ(terminal.Rest(), "typed\n");
    EXPECT_FALSE(terminal.dialogs.Attended());
  }
}

TEST(TerminalDialogs, TakesTheAnswerOfAPerson) {
  struct Row {
    Buttons buttons;
    const char* typed;
    Answer expected;
  };
  for (const Row& row :
       {Row{Buttons::AbortRetryIgnore, "Abort", Answer::Abort}, Row{Buttons::AbortRetryIgnore, "r", Answer::Retry},
        Row{Buttons::AbortRetryIgnore, " IGNORE ", Answer::Ignore}, Row{Buttons::RetryCancel, "retry", Answer::Retry},
        Row{Buttons::RetryCancel, "C", Answer::Cancel}, Row{Buttons::OkCancel, "ok", Answer::Ok},
        Row{Buttons::OkCancel, "cancel", Answer::Cancel}, Row{Buttons::YesNo, "y", Answer::Yes},
        Row{Buttons::YesNo, "no", Answer::No}}) {
    SCOPED_TRACE(row.typed);
    Terminal terminal(QuestionPolicy::Ask, std::string(row.typed) + "\nrest");
    EXPECT_TRUE(terminal.dialogs.Attended());
    EXPECT_EQ(terminal.dialogs.Ask("text", "title", row.buttons, Icon::None), row.expected);
    EXPECT_EQ(terminal.Rest(), "rest");
  }
}

TEST(TerminalDialogs, AsksAgainForAWordItDoesNotKnow) {
  Terminal terminal(QuestionPolicy::Ask, "\nwhat\nabandon\nretry\n");
  EXPECT_EQ(terminal.dialogs.Ask("text", "", Buttons::AbortRetryIgnore, Icon::Warning), Answer::Retry);
  ASSERT_EQ(terminal.dialogs.messages().size(), 1U);
  EXPECT_EQ(terminal.dialogs.messages()[0].answer, "Retry");
}

TEST(TerminalDialogs, AnswersByPolicyWhenTheInputEnds) {
  Terminal terminal(QuestionPolicy::Ask, "what");
  EXPECT_EQ(terminal.dialogs.Ask("text", "", Buttons::AbortRetryIgnore, Icon::Warning), Answer::Ignore);
  EXPECT_EQ(terminal.dialogs.Ask("text", "", Buttons::RetryCancel, Icon::Warning), Answer::Cancel);
  EXPECT_EQ(terminal.dialogs.Ask("text", "", Buttons::OkCancel, Icon::Warning), Answer::Ok);
  EXPECT_EQ(terminal.dialogs.Input("prompt", "", "default"), "") << "cancelled";
  terminal.dialogs.Pause("pause", "");
}

TEST(TerminalDialogs, DoesNotWaitForAnOkBox) {
  Terminal terminal(QuestionPolicy::Ask, "next\n");
  EXPECT_EQ(terminal.dialogs.Ask("text", "", Buttons::Ok, Icon::Information), Answer::Ok);
  EXPECT_EQ(terminal.Rest(), "next\n");
}

TEST(TerminalDialogs, ReadsALineOfInput) {
  Terminal terminal(QuestionPolicy::Ask, "my case\n\n");
  EXPECT_EQ(terminal.dialogs.Input("prompt", "title", "default"), "my case");
  EXPECT_EQ(terminal.dialogs.Input("prompt", "title", "default"), "default");
}

TEST(TerminalDialogs, PausesUntilEnter) {
  Terminal attended(QuestionPolicy::Ask, "\nnext\n");
  attended.dialogs.Pause("Corrigez", "CORRECTION");
  EXPECT_EQ(attended.Rest(), "next\n");
  Terminal unattended(QuestionPolicy::Ignore, "\nnext\n");
  unattended.dialogs.Pause("Corrigez", "CORRECTION");
  EXPECT_EQ(unattended.Rest(), "\nnext\n");
}

TEST(TerminalDialogs, PrintsTextAndTitle) {
  Terminal terminal(QuestionPolicy::Ignore);
  terminal.dialogs.Ask("Spectrum computations only", "Warning for special case", Buttons::OkCancel, Icon::Warning);
  EXPECT_TRUE(Contains(terminal.out.str(), "Spectrum computations only"));
  EXPECT_TRUE(Contains(terminal.out.str(), "Warning for special case"));
}

TEST(TerminalDialogs, KeepsEveryMessageInOrder) {
  Terminal terminal(QuestionPolicy::Ignore, "", true);
  terminal.dialogs.Log("_first");
  terminal.dialogs.Status("second");
  terminal.dialogs.Ask("third", "T", Buttons::AbortRetryIgnore, Icon::Critical);
  terminal.dialogs.Input("fourth", "U", "x");
  terminal.dialogs.Pause("fifth", "V");
  const auto& messages = terminal.dialogs.messages();
  ASSERT_EQ(messages.size(), 5U);
  EXPECT_EQ(messages[0].kind, "log");
  EXPECT_EQ(messages[0].text, "_first");
  EXPECT_EQ(messages[1].kind, "status");
  EXPECT_EQ(messages[2].kind, "question");
  EXPECT_EQ(messages[2].title, "T");
  EXPECT_EQ(messages[2].answer, "Ignore");
  EXPECT_EQ(messages[3].kind, "input");
  EXPECT_EQ(messages[3].answer, "x");
  EXPECT_EQ(messages[4].kind, "pause");
}

TEST(TerminalDialogs, QuietSilencesStatusLogAndProgressButNoQuestion) {
  Terminal terminal(QuestionPolicy::Ignore, "", true, true);
  terminal.dialogs.Log("_log");
  terminal.dialogs.Status("status");
  terminal.dialogs.Progress("phase", 0.5);
  EXPECT_EQ(terminal.out.str(), "");
  terminal.dialogs.Ask("question", "", Buttons::Ok, Icon::None);
  EXPECT_TRUE(Contains(terminal.out.str(), "question"));
}

TEST(TerminalDialogs, DrawsProgressOnATerminalOnly) {
  Terminal file(QuestionPolicy::Ignore);
  file.dialogs.Progress("phase", 0.5);
  EXPECT_EQ(file.out.str(), "");
  Terminal terminal(QuestionPolicy::Ignore, "", false, true);
  for (const double share : {0.5, -1.0, 7.0}) terminal.dialogs.Progress("phase", share);
  EXPECT_TRUE(Contains(terminal.out.str(), "50 %"));
  EXPECT_TRUE(Contains(terminal.out.str(), "\x1b[K0 %"));
  EXPECT_TRUE(Contains(terminal.out.str(), "100 %"));
}

// A workbook's text must not command the terminal, whether by the short or the long form of an escape.
TEST(TerminalDialogs, LetsNoControlCharacterThrough) {
  const std::string hostile =
      "a\x1b]0;owned\x07"
      "b\x7f"
      "c\xC2\x9B"
      "31md\re\r\nf\x08";
  for (const QuestionPolicy policy : {QuestionPolicy::Ask, QuestionPolicy::Ignore}) {
    Terminal terminal(policy);
    terminal.dialogs.Ask(hostile, hostile, Buttons::Ok, Icon::None);
    terminal.dialogs.Log(hostile);
    terminal.dialogs.Status(hostile);
    terminal.dialogs.Pause(hostile, hostile);
    terminal.dialogs.Input(hostile, hostile, hostile);
    const std::string printed = terminal.out.str();
    for (const char c : {'\x1b', '\x07', '\x7f', '\r', '\x08'}) {
      EXPECT_EQ(printed.find(c), std::string::npos) << static_cast<int>(c);
    }
    EXPECT_FALSE(Contains(printed, "\xC2\x9B"));
  }
}

TEST(TerminalDialogs, ServesTheErrorPrompt) {
  Terminal terminal(QuestionPolicy::Ask, "retry\n\nabort\n");
  ErrorPrompt prompt(terminal.dialogs);
  prompt("faute x12 ");
  EXPECT_THROW(prompt("faute x14 "), ProgramEnd);
  Terminal unattended(QuestionPolicy::Ignore);
  ErrorPrompt ignoring(unattended.dialogs);
  EXPECT_NO_THROW(ignoring("faute"));
  Terminal strict(QuestionPolicy::Abort);
  ErrorPrompt aborting(strict.dialogs);
  EXPECT_THROW(aborting("faute"), ProgramEnd);
}

TEST(TerminalDialogs, TellsTheTimeLeftOnceThePaceIsKnown) {
  std::istringstream in;
  std::ostringstream out;
  TerminalDialogs::Options options;
  options.progressLine = true;
  TerminalDialogs dialogs(in, out, options);
  dialogs.Progress("long work", 0);
  EXPECT_EQ(out.str().find("left"), std::string::npos);
  std::this_thread::sleep_for(std::chrono::milliseconds(1050));
  dialogs.Progress("long work", 0.5);
  // How long the pause really took is the machine's; that an estimate stands there is ours.
  EXPECT_TRUE(std::regex_search(out.str(), std::regex("50 %  long work, about [1-9][0-9]* s left"))) << out.str();
  dialogs.Progress("other work", 0.6);
  EXPECT_EQ(out.str().find("other work, about"), std::string::npos);
}

}  // namespace
}  // namespace orv
