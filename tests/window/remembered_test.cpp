#include "window/remembered.h"

#include <gmock/gmock.h>

#include "window/shell_failures.h"
#include "window/window_fixture.h"

namespace orv::testing {
namespace {

using ::testing::ElementsAre;
using Remembered = WindowFixture;

TEST_F(Remembered, TheComboShowsTheNewestFirst) {
  RememberSpecification(settings, "=MAX(A1:B2)");
  RememberSpecification(settings, "=MAX(A1:C3)");
  SpecificationList list(settings, prompt);
  EXPECT_EQ(list.Combo1_GotFocusRoutine(), "");
  list.Combo1_InitList(21);
  EXPECT_THAT(list.Items(), ElementsAre("=MAX(A1:C3)", "=MAX(A1:B2)"));
  EXPECT_EQ(list.Combo1_GotFocusRoutine(), "=MAX(A1:C3)");
  list.Choose(1);
  EXPECT_EQ(list.Combo1_GotFocusRoutine(), "=MAX(A1:B2)");
  for (const int place : {-1, 2}) list.Choose(place);
  EXPECT_EQ(list.Current(), 1);
  list.Combo1_InitList(1);
  EXPECT_THAT(list.Items(), ElementsAre("=MAX(A1:C3)"));
  list.Combo1_InitList(-1);
  EXPECT_TRUE(list.Items().empty());
  EXPECT_EQ(list.Current(), -1);
}

TEST_F(Remembered, EnterTakesASpecification) {
  SpecificationList list(settings, prompt);
  list.Combo1_InitList(21);
  list.Enter(" =MAX(A1:B2) ");
  EXPECT_EQ(list.SpecEntered(), 1);
  EXPECT_EQ(list.SpecText(), "=MAX(A1:B2)");
  list.Enter("=MAX(A1:C3)");
  list.Enter("=MAX(A1:B2)");
  EXPECT_THAT(list.Items(), ElementsAre("=MAX(A1:B2)", "=MAX(A1:C3)")) << "once each";
  EXPECT_EQ(settings.Of("Use", "SpecsMax00.00"), "=MAX(A1:B2)");
  EXPECT_EQ(settings.Of("Use", "SpecsMax01.00"), "=MAX(A1:C3)");
  list.Enter("   ");
  EXPECT_EQ(list.SpecEntered(), 0);
  EXPECT_EQ(list.Items().size(), 2U);
  list.Enter("=MAX(A1:B2)");
  list.Forget();
  EXPECT_EQ(list.SpecEntered(), 0);
  EXPECT_EQ(list.SpecText(), "");
}

TEST_F(Remembered, TheComboHoldsTwentyOne) {
  SpecificationList list(settings, prompt);
  list.Combo1_InitList(21);
  for (int k = 1; k <= 30; ++k) list.Enter("=MAX(A1:B" + std::to_string(k) + ")");
  EXPECT_EQ(list.Items().size(), 21U);
  EXPECT_EQ(list.Items().front(), "=MAX(A1:B30)");
  EXPECT_EQ(list.Items(), RememberedSpecifications(settings));
}

TEST_F(Remembered, ASpecificationHoldsWithoutAStore) {
  SpecificationList list(settings, prompt);
  settings.refuse = true;
  list.Enter("=MAX(A1:B2)");
  EXPECT_EQ(list.SpecText(), "=MAX(A1:B2)");
  EXPECT_THAT(list.Items(), ElementsAre("=MAX(A1:B2)"));
  EXPECT_THAT(dialogs.log, ElementsAre("_The specification could not be stored: Path/File access error"));
}

TEST_F(Remembered, WorkbooksAreEightNewestFirst) {
  EXPECT_TRUE(RecentWorkbooks(settings).empty());
  for (int k = 1; k <= 10; ++k) RememberWorkbook(settings, prompt, "/w/" + std::to_string(k) + " a.xlsx");
  RememberWorkbook(settings, prompt, "/w/5 a.xlsx");
  RememberWorkbook(settings, prompt, "");
  RememberWorkbook(settings, prompt, "two\nlines.ods");
  EXPECT_THAT(RecentWorkbooks(settings), ElementsAre("/w/5 a.xlsx", "/w/10 a.xlsx", "/w/9 a.xlsx", "/w/8 a.xlsx",
                                                     "/w/7 a.xlsx", "/w/6 a.xlsx", "/w/4 a.xlsx", "/w/3 a.xlsx"));
  ForgetWorkbook(settings, prompt, "/w/10 a.xlsx");
  EXPECT_EQ(RecentWorkbooks(settings).size(), 7U);
  EXPECT_EQ(RecentWorkbooks(settings)[1], "/w/9 a.xlsx");
  ASSERT_NE(FindSetting("Use", "RecentWorkbooks"), nullptr);
}

TEST_F(Remembered, ADamagedListOfWorkbooksIsRead) {
  settings.Write("Use", "RecentWorkbooks", "\n\na\n\nb\n");
  EXPECT_THAT(RecentWorkbooks(settings), ElementsAre("a", "b"));
}

TEST(PowerPoint, NamesItsFileByTheSecond) {
  EXPECT_EQ(PowerPointFileName({2031, 4, 5, 6, 7, 8}), "PowerPoint20310405_22028.txt");
  EXPECT_EQ(PowerPointFileName({2031, 12, 31, 23, 59, 59}), "PowerPoint20311231_86399.txt");
  EXPECT_EQ(PowerPointCommand("/a b/orvvalis", "/c/d.txt"), "\"/a b/orvvalis\" \"/c/d.txt\"");
}

// --- failures
// ----------------------------------------------------------------------------------------------------------

TEST_F(Remembered, AFailedMenuRoutineAsksWhetherToAbort) {
  EXPECT_TRUE(RunRoutine(prompt, "mnuFPrint_Click", [] {}));
  EXPECT_TRUE(dialogs.boxes.empty());
  EXPECT_FALSE(RunRoutine(prompt, "mnuFPrint_Click", [] { Raise(FailureNumber::TypeMismatch); }));
  ASSERT_EQ(dialogs.boxes.size(), 2U);
  EXPECT_EQ(dialogs.boxes[0].text, "error Sub mnuFPrint_Click ");
  EXPECT_EQ(dialogs.boxes[1].text, "Do you want to abort? See Hallam if the error cannot be solved ");
  EXPECT_EQ(dialogs.boxes[1].buttons, Buttons::AbortRetryIgnore);
  dialogs.answers = {Answer::Abort};
  EXPECT_THROW(RunRoutine(prompt, "mnuFPrint_Click", [] { Raise(FailureNumber::PermissionDenied); }), ProgramEnd);
}

TEST_F(Remembered, TheShortListOfFailuresPassesWithoutAWord) {
  for (const int number : {53, 52, 5, 75, 9, 94, 6}) {
    EXPECT_FALSE(RunRoutine(prompt, "r", [&] { Raise(static_cast<FailureNumber>(number), "told to nobody"); }));
  }
  EXPECT_TRUE(dialogs.boxes.empty());
  EXPECT_THROW(RunRoutine(prompt, "r", [] { throw ProgramEnd{}; }), ProgramEnd) << "an abort answer passes through";
}

}  // namespace
}  // namespace orv::testing
