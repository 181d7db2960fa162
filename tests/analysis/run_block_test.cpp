#include "analysis/run_block.h"

#include <gtest/gtest.h>

#include "support/scripted_dialogs.h"

namespace orv::testing {
namespace {

class RunBlockTest : public ::testing::Test {
 protected:
  bool Fail(FailureNumber number) {
    return block([&] { Raise(number); });
  }
  ScriptedDialogs dialogs;
  ErrorPrompt prompt{dialogs};
  bool ignored = false;
  RunBlock block{prompt, ignored, "first.xls", "second.txt"};
};

TEST_F(RunBlockTest, AStatementThatRunsIsLeftAlone) {
  int value = 0;
  EXPECT_TRUE(block([&] { value = 7; }));
  EXPECT_EQ(value, 7);
  EXPECT_TRUE(dialogs.boxes.empty());
}

TEST_F(RunBlockTest, NineFailuresGoOnWithoutAWord) {
  for (const int number : {5, 52, 53, 55, 75, 91, 448, 1004, 50290}) {
    int value = 1;
    EXPECT_FALSE(block([&] {
      Raise(static_cast<FailureNumber>(number));
      value = 2;
    }));
    EXPECT_EQ(value, 1);
  }
  EXPECT_TRUE(dialogs.boxes.empty());
  EXPECT_TRUE(dialogs.log.empty());
}

TEST_F(RunBlockTest, OtherFailuresAreTold) {
  for (const int number : {6, 11, 13, 62, 76, 424, 429}) {
    dialogs.boxes.clear();
    dialogs.answers = {Answer::Retry};
    EXPECT_FALSE(Fail(static_cast<FailureNumber>(number)));
    ASSERT_EQ(dialogs.boxes.size(), 1U) << number;
    EXPECT_EQ(dialogs.boxes[0].text, Describe(static_cast<FailureNumber>(number)));
    EXPECT_EQ(dialogs.boxes[0].title, "Error aSpaceApplication");
    EXPECT_EQ(dialogs.boxes[0].buttons, Buttons::AbortRetryIgnore);
  }
}

TEST_F(RunBlockTest, ASubscriptIsToldFirst) {
  Fail(FailureNumber::SubscriptOutOfRange);
  ASSERT_EQ(dialogs.boxes.size(), 2U);
  EXPECT_EQ(dialogs.boxes[0].text, "Error fautea_SpaceApplication ");
  EXPECT_EQ(dialogs.boxes[0].buttons, Buttons::Ok);
  EXPECT_EQ(dialogs.boxes[1].text, "Subscript out of range");
  EXPECT_EQ(dialogs.boxes[1].title, "Error aSpaceApplication");
  EXPECT_FALSE(block([&] { Raise(FailureNumber::Overflow, "a SUBScription"); }));
  EXPECT_EQ(dialogs.boxes.size(), 2U) << "ignored: no further box";
  ignored = false;
  EXPECT_FALSE(block([&] { Raise(FailureNumber::Overflow, "a SUBScription"); }));
  EXPECT_EQ(dialogs.Count("Error fautea_SpaceApplication "), 2);
}

TEST_F(RunBlockTest, IgnoreIsRememberedForTheRun) {
  dialogs.answers = {Answer::Retry, Answer::Ignore};
  Fail(FailureNumber::Overflow);
  Fail(FailureNumber::Overflow);
  EXPECT_EQ(dialogs.boxes.size(), 2U);
  Fail(FailureNumber::DivisionByZero);
  Fail(FailureNumber::Overflow);
  EXPECT_EQ(dialogs.boxes.size(), 2U);
  RunBlock sameRun(prompt, ignored, "", "");
  sameRun([] { Raise(FailureNumber::Overflow); });
  EXPECT_EQ(dialogs.boxes.size(), 2U);
  bool nextIgnored = false;
  RunBlock nextRun(prompt, nextIgnored, "", "");
  nextRun([] { Raise(FailureNumber::Overflow); });
  EXPECT_EQ(dialogs.boxes.size(), 3U);
}

TEST_F(RunBlockTest, AbortEndsTheProgram) {
  dialogs.answers = {Answer::Abort};
  EXPECT_THROW(Fail(FailureNumber::Overflow), ProgramEnd);
  dialogs.answers = {Answer::Abort};
  EXPECT_THROW(Fail(FailureNumber::PermissionDenied), ProgramEnd);
}

TEST_F(RunBlockTest, AFileInUseIsAskedAbout) {
  dialogs.answers = {Answer::Ignore};
  EXPECT_FALSE(Fail(FailureNumber::PermissionDenied));
  ASSERT_EQ(dialogs.boxes.size(), 1U);
  EXPECT_EQ(dialogs.boxes[0].text, "Error file first.xls  or   second.txt is maybe open, please close it and Retry");
  EXPECT_EQ(dialogs.boxes[0].buttons, Buttons::AbortRetryIgnore);
  block.setFiles("third.xls", "fourth.txt");
  Fail(FailureNumber::PermissionDenied);
  EXPECT_EQ(dialogs.boxes[1].text, "Error file third.xls  or   fourth.txt is maybe open, please close it and Retry");
}

TEST_F(RunBlockTest, RetryRunsTheStatementAgain) {
  dialogs.answers = {Answer::Retry, Answer::Retry};
  int runs = 0;
  EXPECT_TRUE(block([&] {
    if (++runs < 3) Raise(FailureNumber::PermissionDenied);
  }));
  EXPECT_EQ(runs, 3);
  EXPECT_EQ(dialogs.boxes.size(), 2U);
}

TEST_F(RunBlockTest, IgnoreOfAFileDoesNotSilenceOtherFailures) {
  Fail(FailureNumber::PermissionDenied);
  Fail(FailureNumber::PermissionDenied);
  EXPECT_EQ(dialogs.boxes.size(), 2U);
  Fail(FailureNumber::Overflow);
  EXPECT_EQ(dialogs.Count("Overflow"), 1);
}

TEST_F(RunBlockTest, OtherExceptionsPassThrough) {
  EXPECT_THROW(block([] { throw ProgramEnd{}; }), ProgramEnd);
  EXPECT_THROW(block([] { throw std::bad_alloc(); }), std::bad_alloc);
}

}  // namespace
}  // namespace orv::testing
