#include "numerics/error_prompt.h"

#include <gtest/gtest.h>
#include <new>
#include <stdexcept>
#include <string>

#include "support/scripted_dialogs.h"

namespace orv {
namespace {

using testing::ScriptedDialogs;

const char* const kBody =
    "Une petite erreur s'est produite, erreur d'arrondi ou avertissement de norme nulle, ..."
    ". Si cela perdure, il faudrait modifier les données..."
    "   Tapez *Abandonner* pour stopper l'exectution, *Répéter* pour faire une pause  *Ignorer* pour continuer et "
    "terminer l'exécution du programme.";

struct Prompting : ::testing::Test {
  ScriptedDialogs dialogs;
  ErrorPrompt prompt{dialogs};
};

using ErrorPromptTest = Prompting;
using FailureBlockTest = Prompting;

TEST_F(ErrorPromptTest, LogsATextWithALeadingUnderscoreOnly) {
  prompt("_x");
  EXPECT_EQ(dialogs.log, std::vector<std::string>{"_x"});
  EXPECT_TRUE(dialogs.boxes.empty());
  EXPECT_TRUE(dialogs.inputs.empty());
}

TEST_F(ErrorPromptTest, LogsTheNewestFirst) {
  prompt("_one");
  prompt("two");
  prompt("_three");
  EXPECT_EQ(dialogs.log, (std::vector<std::string>{"_three", "two", "_one"}));
}

TEST_F(ErrorPromptTest, AsksInFrench) {
  prompt("Atn2faute");
  ASSERT_EQ(dialogs.boxes.size(), 1U);
  EXPECT_EQ(dialogs.boxes[0].text, std::string("Atn2faute\r\n") + kBody);
  EXPECT_EQ(dialogs.boxes[0].title, "Petite erreur");
  EXPECT_EQ(dialogs.boxes[0].buttons, Buttons::AbortRetryIgnore);
  EXPECT_EQ(dialogs.boxes[0].icon, Icon::Warning);
  EXPECT_TRUE(dialogs.inputs.empty());
}

TEST_F(ErrorPromptTest, ShowsABlankFirstLineForAnEmptyText) {
  prompt("");
  ASSERT_EQ(dialogs.boxes.size(), 1U);
  EXPECT_EQ(dialogs.boxes[0].text, std::string("\r\n") + kBody);
  EXPECT_EQ(dialogs.log, std::vector<std::string>{""});
}

TEST_F(ErrorPromptTest, EndsTheProgramOnAbort) {
  dialogs.answers = {Answer::Abort};
  EXPECT_THROW(prompt("x"), ProgramEnd);
  EXPECT_EQ(dialogs.log.size(), 1U);
}

TEST_F(ErrorPromptTest, PausesOnRetry) {
  dialogs.answers = {Answer::Retry};
  prompt("x");
  ASSERT_EQ(dialogs.pauses.size(), 1U);
  EXPECT_EQ(dialogs.pauses[0].first, "Corrigez vos données! Cliquer ensuite sur Continuer ...");
  EXPECT_EQ(dialogs.pauses[0].second, "CORRECTION");
  EXPECT_TRUE(dialogs.inputs.empty());
}

TEST_F(ErrorPromptTest, AsksByInputBoxOnAnyOtherAnswer) {
  for (const Answer answer : {Answer::None, Answer::Ok, Answer::Cancel, Answer::Yes, Answer::No}) {
    SCOPED_TRACE(static_cast<int>(answer));
    ScriptedDialogs other;
    ErrorPrompt fresh(other);
    other.answers = {answer};
    other.replies = {""};
    fresh("x");
    ASSERT_EQ(other.inputs.size(), 1U);
    EXPECT_EQ(other.inputs[0].prompt, std::string("x\r\n") + kBody);
    EXPECT_TRUE(other.inputs[0].title.ends_with(" Avertissement")) << other.inputs[0].title;
    EXPECT_EQ(other.inputs[0].initial, "");
  }
}

TEST_F(ErrorPromptTest, TakesTheReplyByItsFirstLetter) {
  struct Row {
    const char* reply;
    const char* second;  // reply to the second question; nullptr: there must be none
    bool ends;
  };
  for (const Row& row :
       {Row{"", nullptr, false}, Row{"oui, c'est noté!", nullptr, false}, Row{"o", nullptr, false},
        Row{"s", nullptr, true}, Row{"stop", nullptr, true}, Row{"non", "oui, pour Abandonner", true},
        Row{"x", "o", true}, Row{"x", "non", false}, Row{"x", "", false}, Row{"x", "s", false}, Row{" o", "", false}}) {
    SCOPED_TRACE(std::string("reply [") + row.reply + "] then [" + (row.second == nullptr ? "-" : row.second) + "]");
    ScriptedDialogs other;
    ErrorPrompt fresh(other);
    other.answers = {Answer::None};
    other.replies = {row.reply};
    if (row.second != nullptr) other.replies.emplace_back(row.second);
    bool ended = false;
    try {
      fresh("x");
    } catch (const ProgramEnd&) {
      ended = true;
    }
    EXPECT_EQ(ended, row.ends);
    ASSERT_EQ(other.inputs.size(), row.second == nullptr ? 1U : 2U);
    if (row.second == nullptr) continue;
    EXPECT_EQ(other.inputs[1].prompt, "Vous voulez réellement abandonner");
    EXPECT_EQ(other.inputs[1].title, "Re-Avertissement");
    EXPECT_EQ(other.inputs[1].initial, "oui, pour Abandonner");
  }
}

TEST_F(ErrorPromptTest, OffersThePreviousReplyAgain) {
  dialogs.answers = {Answer::None, Answer::None};
  dialogs.replies = {"oui, c'est noté!", "o"};
  prompt("x");
  prompt("y");
  ASSERT_EQ(dialogs.inputs.size(), 2U);
  EXPECT_EQ(dialogs.inputs[0].initial, "");
  EXPECT_EQ(dialogs.inputs[1].initial, "oui, c'est noté!");
}

TEST_F(ErrorPromptTest, AbortQuestionEndsOnAbortAlone) {
  for (const Answer answer : {Answer::Retry, Answer::Ignore, Answer::None, Answer::Cancel, Answer::Ok}) {
    SCOPED_TRACE(static_cast<int>(answer));
    dialogs.answers = {answer};
    EXPECT_NO_THROW(prompt.AbortQuestion());
  }
  dialogs.answers = {Answer::Abort};
  EXPECT_THROW(prompt.AbortQuestion(), ProgramEnd);
  EXPECT_EQ(dialogs.boxes.back().text, "Do you want to abort? See Hallam if the error cannot be solved ");
  EXPECT_EQ(dialogs.boxes.back().buttons, Buttons::AbortRetryIgnore);
  EXPECT_TRUE(dialogs.log.empty());
}

TEST_F(FailureBlockTest, GoesOnSilentlyWithTheListedNumbers) {
  FailureBlock block(prompt, FailureLabels::Of("R"));
  for (const int number : {53, 52, 5, 50290, 91, 448, 75, 1004}) {
    SCOPED_TRACE(number);
    EXPECT_FALSE(block([&] { Raise(static_cast<FailureNumber>(number)); }));
  }
  // Even a description that names a subscript says nothing then.
  EXPECT_FALSE(block([] { Raise(FailureNumber::BadFileName, "Subscript"); }));
  EXPECT_TRUE(dialogs.boxes.empty());
  EXPECT_FALSE(block.Silenced());
}

TEST_F(FailureBlockTest, ShowsOtherNumbers) {
  for (const FailureNumber number :
       {FailureNumber::Overflow, FailureNumber::DivisionByZero, FailureNumber::TypeMismatch,
        FailureNumber::FileAlreadyOpen, FailureNumber::InputPastEndOfFile, FailureNumber::PermissionDenied,
        FailureNumber::PathNotFound, FailureNumber::ObjectRequired, FailureNumber::CannotCreateObject}) {
    SCOPED_TRACE(static_cast<int>(number));
    ScriptedDialogs other;
    ErrorPrompt fresh(other);
    FailureBlock block(fresh, FailureLabels::Of("aRoutine"));
    EXPECT_FALSE(block([&] { Raise(number); }));
    ASSERT_EQ(other.boxes.size(), 1U);
    EXPECT_EQ(other.boxes[0].text, Describe(number));
    EXPECT_EQ(other.boxes[0].title, "Error fauteaRoutine");
    EXPECT_EQ(other.boxes[0].buttons, Buttons::AbortRetryIgnore);
    EXPECT_TRUE(other.log.empty());
  }
}

TEST_F(FailureBlockTest, ShowsTheLabelOfASubscriptFirst) {
  FailureBlock block(prompt, FailureLabels::Of("aRoutine"));
  block([] { Raise(FailureNumber::SubscriptOutOfRange); });
  ASSERT_EQ(dialogs.boxes.size(), 2U);
  EXPECT_EQ(dialogs.boxes[0].text, "error fauteaRoutine");
  EXPECT_EQ(dialogs.boxes[0].buttons, Buttons::Ok);
  EXPECT_EQ(dialogs.boxes[1].text, "Subscript out of range");
}

TEST_F(FailureBlockTest, KnowsASubscriptByItsDescriptionInAnyCase) {
  FailureBlock block(prompt, FailureLabels::Of("R"));
  block([] { Raise(FailureNumber::TypeMismatch, "BAD SUBSCRIPT"); });
  EXPECT_EQ(dialogs.Count("error fauteR"), 1);
}

TEST_F(FailureBlockTest, IgnoreStopsFurtherBoxesOfThisCallOnly) {
  FailureBlock block(prompt, FailureLabels::Of("R"));
  dialogs.answers = {Answer::Ignore};
  block([] { Raise(FailureNumber::Overflow); });
  EXPECT_TRUE(block.Silenced());
  block([] { Raise(FailureNumber::DivisionByZero); });
  block([] { Raise(FailureNumber::Overflow); });
  EXPECT_EQ(dialogs.boxes.size(), 1U);

  FailureBlock nextCall(prompt, FailureLabels::Of("R"));
  nextCall([] { Raise(FailureNumber::Overflow); });
  EXPECT_EQ(dialogs.boxes.size(), 2U);
}

TEST_F(FailureBlockTest, RetryGoesOnAndAsksAgain) {
  FailureBlock block(prompt, FailureLabels::Of("R"));
  int runs = 0;
  dialogs.answers = {Answer::Retry, Answer::Retry};
  for (int k = 0; k < 2; ++k) {
    block([&] {
      ++runs;
      Raise(FailureNumber::Overflow);
    });
  }
  EXPECT_EQ(runs, 2);
  EXPECT_EQ(dialogs.boxes.size(), 2U);
  EXPECT_FALSE(block.Silenced());
}

TEST_F(FailureBlockTest, AbortEndsTheProgram) {
  FailureBlock block(prompt, FailureLabels::Of("R"));
  dialogs.answers = {Answer::Abort};
  EXPECT_THROW(block([] { Raise(FailureNumber::Overflow); }), ProgramEnd);
  EXPECT_FALSE(block.Silenced());
}

TEST_F(FailureBlockTest, KeepsTheTargetOfAFailedStatement) {
  FailureBlock block(prompt, FailureLabels::Of("R"));
  double velocity = 7;
  EXPECT_FALSE(block([&] { velocity = Divide(1, 0); }));
  EXPECT_EQ(velocity, 7);
  EXPECT_TRUE(block([&] { velocity = Divide(1, 2); }));
  EXPECT_EQ(velocity, 0.5);
}

TEST_F(FailureBlockTest, AFailedConditionResumesInTheThenBranch) {
  FailureBlock block(prompt, FailureLabels::Of("R"));
  EXPECT_TRUE(block.Condition([] { return true; }));
  EXPECT_FALSE(block.Condition([] { return false; }));
  EXPECT_TRUE(dialogs.boxes.empty());
  EXPECT_TRUE(block.Condition([] { return Divide(1, 0) < 0; }));
  EXPECT_EQ(dialogs.boxes.size(), 1U);
}

TEST_F(FailureBlockTest, LetsEverythingElsePass) {
  FailureBlock block(prompt, FailureLabels::Of("R"));
  EXPECT_THROW(block([] { throw ProgramEnd{}; }), ProgramEnd);
  EXPECT_THROW(block([] { throw std::bad_alloc(); }), std::bad_alloc);
  EXPECT_THROW(block([] { throw std::runtime_error("cancelled"); }), std::runtime_error);
  EXPECT_TRUE(dialogs.boxes.empty());
}

TEST_F(FailureBlockTest, TellsASubscriptThroughThePromptWhereAsked) {
  FailureLabels labels = FailureLabels::Of("R");
  labels.subscriptText = "_label";
  labels.subscriptIsPrompt = true;
  FailureBlock block(prompt, labels);
  block([] { Raise(FailureNumber::SubscriptOutOfRange); });
  EXPECT_EQ(dialogs.log, std::vector<std::string>{"_label"});
  EXPECT_EQ(dialogs.boxes.size(), 1U);
}

}  // namespace
}  // namespace orv
