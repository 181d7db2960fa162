#include "window/running_spreadsheet.h"

#include <gtest/gtest.h>

#include "support/failure_in.h"
#include "support/fake_excel.h"

namespace orv {
namespace {

using testing::FailureIn;

TEST(RunningSpreadsheet, ExcelIsShownAndEndedThroughItsLink) {
  testing::FakeExcel fake;
  fake.visible = false;
  ExcelLink link(Locale{}, fake.Source());
  LinkedExcel excel(link);
  EXPECT_EQ(FailureIn([&] { excel.Visible(); }), 91) << "not attached";
  link.Attach();
  EXPECT_FALSE(excel.Visible());
  excel.SetVisible(true);
  EXPECT_TRUE(excel.Visible());
  EXPECT_TRUE(fake.visible);
  excel.Quit();
  EXPECT_EQ(fake.quits, 1);
}

#ifndef _WIN32
TEST(RunningSpreadsheet, IsCalcBehindItsDoor) {
  const RunningSpreadsheet running = OpenRunningSpreadsheet("nobody-opens-this", Locale{});
  ASSERT_TRUE(running.sheet);
  EXPECT_FALSE(running.excel) << "an office is never ended";
  EXPECT_EQ(FailureIn([&] { running.sheet->Attach(); }), 429);
  EXPECT_EQ(FailureIn([] { OpenRunningSpreadsheet("no; door", Locale{}); }), 5);
  EXPECT_EQ(NoSpreadsheetText("2002"),
            "There is no running Calc that can be reached. Open its door by the command\n  "
            "soffice \"--accept=socket,host=127.0.0.1,port=2002;urp;\"");
}
#endif

}  // namespace
}  // namespace orv
