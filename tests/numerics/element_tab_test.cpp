#include "numerics/element_tab.h"

#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <vector>

#include "numerics/text.h"
#include "support/scripted_dialogs.h"

namespace orv {
namespace {

struct ElementTabTest : ::testing::Test {
  testing::ScriptedDialogs dialogs;
  ErrorPrompt prompt{dialogs};
  std::vector<std::string> lines;
  ElementTab tab{[this](const std::string& line) { lines.push_back(line); }, prompt};
};

TEST_F(ElementTabTest, AlignsTextsToTheRightOfTheField) {
  struct Row {
    const char* text;
    const char* expected;
  };
  for (const Row& row :
       {Row{"", "       "}, Row{"abc", "   abc "}, Row{"abcde", " abcde "}, Row{"abcdef", " abcdef"},
        Row{"abcdefg", "abcdefg"}, Row{"abcdefgh", "abcdefg"}, Row{"m²é€", "  m²é€ "}, Row{"²²²²²²²²", "²²²²²²²"}}) {
    SCOPED_TRACE(row.text);
    ElementTab fresh([](const std::string&) {}, prompt);
    fresh(1, row.text, "##0.## ", 5);
    EXPECT_EQ(fresh.line(), row.expected);
  }
  EXPECT_TRUE(dialogs.log.empty());
}

TEST_F(ElementTabTest, PadsNumbersOnTheLeft) {
  struct Row {
    double value;
    const char* format;
    const char* expected;
  };
  for (const Row& row : {Row{1.5, "##0.##", "   1.5"}, Row{0, "##0.##", "    0."}, Row{123.456, "##0.##", "123.46"},
                         Row{1.5, "##0.##   ", "   1.5   "}, Row{-2, "0", "-2"},
                         Row{0.5, "##0.########              ", "         0.5              "}}) {
    SCOPED_TRACE(row.format);
    ElementTab fresh([](const std::string&) {}, prompt);
    fresh(0, "unused", row.format, row.value);
    EXPECT_EQ(fresh.line(), row.expected);
  }
}

TEST_F(ElementTabTest, BuildsALineAndHandsItOver) {
  tab(1, "Head", "0.000  ", 0);
  tab(0, "", "0.000  ", 2);
  tab(-5, "nothing", "0.000  ", 9);
  EXPECT_EQ(tab.line(), "  Head 2.000  ");
  EXPECT_TRUE(lines.empty());
  tab(-1, "", "", 0);
  EXPECT_EQ(lines, std::vector<std::string>{"  Head 2.000  "});
  EXPECT_EQ(tab.line(), "");
  tab(0, "", "0", 7);
  tab(-1, "", "", 0);
  tab(-1, "", "", 0);
  EXPECT_EQ(lines, (std::vector<std::string>{"  Head 2.000  ", "7", ""}));
}

TEST_F(ElementTabTest, ModeMinusFiveDoesNothing) {
  tab(-5, "text", "0.00", 1);
  EXPECT_EQ(tab.line(), "");
  EXPECT_TRUE(lines.empty());
  EXPECT_EQ(tab.lineCount(), 0);
  EXPECT_EQ(tab.columnCount(), 0);
}

TEST_F(ElementTabTest, TellsAFailure) {
  tab(0, "", "0.00", 1);
  tab(0, "", "0.00", std::numeric_limits<double>::infinity());
  ASSERT_EQ(dialogs.log, std::vector<std::string>{"ElementTab fail"});
  ASSERT_EQ(dialogs.boxes.size(), 1U);
  EXPECT_EQ(dialogs.boxes[0].title, "Petite erreur");
  EXPECT_TRUE(StartsWith(dialogs.boxes[0].text, "ElementTab fail\r\n"));
  tab(0, "", "0.00", 2);
  EXPECT_EQ(tab.line(), "1.002.00");
}

TEST_F(ElementTabTest, AbortsFromTheFailure) {
  dialogs.answers = {Answer::Abort};
  EXPECT_THROW(tab(0, "", "0.00", std::numeric_limits<double>::infinity()), ProgramEnd);
}

// Execution goes on behind the statement that failed: the line is cleared although it could not be written.
TEST_F(ElementTabTest, ClearsTheLineAlsoWhenTheFileFails) {
  ElementTab failing([](const std::string&) { Raise(FailureNumber::BadFileName); }, prompt);
  failing(0, "", "0", 1);
  failing(-1, "", "", 0);
  EXPECT_EQ(dialogs.log, std::vector<std::string>{"ElementTab fail"});
  EXPECT_EQ(failing.line(), "");
}

}  // namespace
}  // namespace orv
