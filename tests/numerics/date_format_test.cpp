#include "numerics/date_format.h"

#include <gtest/gtest.h>
#include <limits>

namespace orv {
namespace {

TEST(FormatDay, WritesTheLabelOfTimePlots) {
  EXPECT_EQ(FormatDay(37701, " dd  MMM yyyy hh:mm "), " 21  Mar 2003 00:00 ");
  EXPECT_EQ(FormatDay(37701.75, " dd  MMM yyyy hh:mm "), " 21  Mar 2003 18:00 ");
  EXPECT_EQ(FormatDay(37701.25 + 7.0 / 1440, " dd  MMM yyyy hh:mm "), " 21  Mar 2003 06:07 ");
}

TEST(FormatDay, KnowsEachToken) {
  const double day = 45356 + (3 * 3600 + 4 * 60 + 5) / 86400.0;  // 2024-03-05 03:04:05
  EXPECT_EQ(FormatDay(day, "yyyy yy MMMM MMM MM M dd d hh h ss s"), "2024 24 March Mar 03 3 05 5 03 3 05 5");
  EXPECT_EQ(FormatDay(day, "yyyy/MM/dd hh:mm:ss"), "2024/03/05 03:04:05");
  EXPECT_EQ(FormatDay(day, "h:m:s"), "3:4:5");
  EXPECT_EQ(FormatDay(day, "hhmm"), "0304");
}

TEST(FormatDay, TakesSmallMForTheMonthUnlessHoursStandBefore) {
  EXPECT_EQ(FormatDay(37701.5, "dd/mm/yyyy"), "21/03/2003");
  EXPECT_EQ(FormatDay(37701.5, "hh dd mm"), "12 21 03");
  EXPECT_EQ(FormatDay(37701.5, "hh MM"), "12 03");
  EXPECT_EQ(FormatDay(37701.5, "hh mmm"), "12 Mar");
}

TEST(FormatDay, CopiesWhatIsNoToken) {
  EXPECT_EQ(FormatDay(0, ""), "");
  EXPECT_EQ(FormatDay(0, " - : / \xC3\xA9 12 "), " - : / \xC3\xA9 12 ");
  EXPECT_EQ(FormatDay(0, "yyyyy"), "189999");  // a token of four and one of one
}

struct DayRow {
  double day;
  const char* text;
};

TEST(FormatDay, CountsFromTheLastDaysOf1899) {
  for (const DayRow& row :
       {DayRow{0, "1899-12-30 00:00:00"}, DayRow{1, "1899-12-31 00:00:00"}, DayRow{2, "1900-01-01 00:00:00"},
        DayRow{60, "1900-02-28 00:00:00"}, DayRow{61, "1900-03-01 00:00:00"}, DayRow{36525, "1999-12-31 00:00:00"},
        DayRow{36585, "2000-02-29 00:00:00"}, DayRow{73109, "2100-02-28 00:00:00"},
        DayRow{73110, "2100-03-01 00:00:00"}, DayRow{-1, "1899-12-29 00:00:00"}, DayRow{-1.25, "1899-12-29 06:00:00"},
        DayRow{-0.25, "1899-12-30 06:00:00"}, DayRow{kFirstDay, "0100-01-01 00:00:00"},
        DayRow{kLastDay, "9999-12-31 00:00:00"}}) {
    SCOPED_TRACE(row.day);
    EXPECT_EQ(FormatDay(row.day, "yyyy-MM-dd hh:mm:ss"), row.text);
  }
}

TEST(FormatDay, RoundsToTheSecondAndCarries) {
  EXPECT_EQ(FormatDay(37701 + 0.49 / 86400, "dd hh:mm:ss"), "21 00:00:00");
  EXPECT_EQ(FormatDay(37701 + 0.51 / 86400, "dd hh:mm:ss"), "21 00:00:01");
  EXPECT_EQ(FormatDay(37701.9999999, "dd hh:mm:ss"), "22 00:00:00");
}

TEST(FormatDay, HoldsItsBounds) {
  for (const double day : {kFirstDay - 1, kLastDay + 1, kLastDay + 0.9999999, 1e300, -1e300,
                           std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()}) {
    SCOPED_TRACE(day);
    EXPECT_FALSE(DateOfDay(day));
    EXPECT_EQ(FormatDay(day, "yyyy"), "");
  }
}

TEST(FormatDate, LeavesOutAMonthThatIsNone) {
  CivilTime time;
  time.month = 13;
  EXPECT_EQ(FormatDate(time, "[MMM][MM]"), "[][]");
}

TEST(DateOfDay, MeetsEveryDayOfFourCenturiesOnce) {
  CivilTime before = *DateOfDay(0);
  for (int day = 1; day < 146097; ++day) {
    const CivilTime date = *DateOfDay(day);
    const bool nextDay = date.year == before.year && date.month == before.month && date.day == before.day + 1;
    const bool nextMonth = date.day == 1 && before.day >= 28 &&
                           (date.month == before.month + 1 || (date.month == 1 && before.month == 12));
    ASSERT_TRUE(nextDay || nextMonth) << day;
    before = date;
  }
}

}  // namespace
}  // namespace orv
