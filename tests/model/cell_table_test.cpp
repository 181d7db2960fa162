#include "model/cell_table.h"

#include <algorithm>
#include <chrono>
#include <gtest/gtest.h>
#include <random>

#include "numerics/text.h"
#include "support/scripted_dialogs.h"

namespace orv::testing {
namespace {

const char* const kAbortText = "Do you want to abort? See Hallam if the error cannot be solved ";

class CellTable : public ::testing::Test {
 protected:
  // The slots that a cell's pairs fill behind `start`, by index.
  std::vector<std::pair<int, double>> Slots(const std::string& cell, int start = 0) {
    std::vector<std::pair<int, double>> slots;
    ReadTableFromTableXYInCell(
        cell, start, [&](int index, double value) { slots.emplace_back(index, value); }, end, count, reader);
    return slots;
  }
  std::vector<double> Values(const std::string& cell) {
    std::vector<double> values;
    for (const auto& [index, value] : Slots(cell)) values.push_back(value);
    return values;
  }
  XYTable Table(const std::vector<std::pair<double, double>>& rows) {
    XYTable table;
    for (const auto& [x, y] : rows) table.Add(x, y);
    return table;
  }

  ScriptedDialogs dialogs;
  ErrorPrompt prompt{dialogs};
  CellText reader{prompt, Locale{}};
  int end = -1;
  int count = -1;
};

using Row = std::vector<double>;

TEST_F(CellTable, ReadsPairsInOrder) {
  EXPECT_EQ(Values("0 1.2|10 1.1|45 0.3"), (Row{0, 1.2, 10, 1.1, 45, 0.3}));
  EXPECT_EQ(end, 6);
  EXPECT_EQ(count, 3);
}

TEST_F(CellTable, AllSeparatorsAreEqual) {
  EXPECT_EQ(Values("1 2;3 4%5 6$7 8@9 10|11 12"), (Row{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}));
  EXPECT_EQ(count, 6);
}

TEST_F(CellTable, HardBlanksAreBlanks) {
  EXPECT_EQ(Values("\xC2\xA0"
                   "1\xC2\xA0"
                   "2|3 \xC2\xA0 4\xC2\xA0"),
            (Row{1, 2, 3, 4}));
}

TEST_F(CellTable, EmptyTextsHaveNoPairs) {
  for (const char* text : {"", " ", "    ", "\xC2\xA0"}) {
    EXPECT_TRUE(Values(text).empty()) << text;
    EXPECT_EQ(count, 0);
    EXPECT_EQ(end, 0);
  }
  EXPECT_TRUE(dialogs.boxes.empty());
}

TEST_F(CellTable, TrailingSeparatorAddsNothing) {
  EXPECT_EQ(Values("1 2|3 4|"), (Row{1, 2, 3, 4}));
  EXPECT_EQ(Values("1 2|3 4| "), (Row{1, 2, 3, 4}));
  EXPECT_EQ(count, 2);
}

TEST_F(CellTable, ManyBlanksBetweenNumbersAreFine) {
  EXPECT_EQ(Values("   0    1.2   |     10      1.1  |45     0.3   "), (Row{0, 1.2, 10, 1.1, 45, 0.3}));
}

TEST_F(CellTable, LoneXAtTheEndIsDropped) {
  EXPECT_EQ(Values("1 2|3"), (Row{1, 2}));
  EXPECT_EQ(count, 1);
  EXPECT_TRUE(Values("7").empty());
  EXPECT_EQ(count, 0);
  EXPECT_TRUE(dialogs.boxes.empty());
}

TEST_F(CellTable, AnXRunsToItsBlankEvenOverASeparator) {
  EXPECT_EQ(Values("5|10 2"), (Row{5, 2}));
  EXPECT_EQ(Values("1 2||3 4"), (Row{1, 2, 0, 4}));
}

TEST_F(CellTable, AYRunsToItsSeparatorEvenOverBlanks) {
  EXPECT_EQ(Values("1 2 3|4 5"), (Row{1, 23, 4, 5}));
  EXPECT_EQ(Values("1 |2 3"), (Row{1, 0, 2, 3}));
}

TEST_F(CellTable, NumbersAreReadAsInAnyCell) {
  EXPECT_EQ(Values("0,5 1,25|1e2 -3.5E-1|abc 4x"), (Row{0.5, 1.25, 100, -0.35, 0, 4}));
}

TEST_F(CellTable, SlotsFollowTheStartIndex) {
  const auto slots = Slots("0 1.5|10 2.5", 24);
  ASSERT_EQ(slots.size(), 4U);
  EXPECT_EQ(slots[0], (std::pair{25, 0.0}));
  EXPECT_EQ(slots[1], (std::pair{26, 1.5}));
  EXPECT_EQ(slots[2], (std::pair{27, 10.0}));
  EXPECT_EQ(slots[3], (std::pair{28, 2.5}));
  EXPECT_EQ(end, 28);
  EXPECT_EQ(count, 2);
  Slots("", 28);
  EXPECT_EQ(end, 28);
  EXPECT_EQ(count, 0);
}

TEST_F(CellTable, AFullStoreEndsTheReading) {
  std::vector<double> stored;
  const auto store = [&](int index, double value) {
    if (index > 3) Raise(FailureNumber::SubscriptOutOfRange);
    stored.push_back(value);
  };
  try {
    ReadTableFromTableXYInCell("1 2|3 4|5 6", 0, store, end, count, reader);
    FAIL() << "no failure";
  } catch (const RuntimeFailure& failure) {
    EXPECT_EQ(failure.number(), FailureNumber::SubscriptOutOfRange);
  }
  EXPECT_EQ(stored, (Row{1, 2, 3}));
}

std::string Pairs(int count) {
  std::string cell;
  for (int k = 1; k <= count; ++k) cell += (k == 1 ? "" : "|") + std::to_string(k) + " " + std::to_string(2 * k);
  return cell;
}

TEST_F(CellTable, TableFormHasRowsFromOne) {
  XYTable table;
  count = 0;
  ReadTable("0 1.2|10 1.1|45 0.3", table, count, reader);
  ASSERT_EQ(table.count(), 3);
  EXPECT_EQ(count, 3);
  EXPECT_EQ(table.x(1), 0);
  EXPECT_EQ(table.y(1), 1.2);
  EXPECT_EQ(table.x(3), 45);
  EXPECT_EQ(table.y(3), 0.3);
}

TEST_F(CellTable, TableFormHolds360Pairs) {
  XYTable table;
  count = 0;
  ReadTable(Pairs(360), table, count, reader);
  ASSERT_EQ(table.count(), 360);
  EXPECT_EQ(table.y(360), 720);
  count = 0;
  EXPECT_THROW(ReadTable(Pairs(361), table, count, reader), RuntimeFailure);
}

TEST_F(CellTable, TableFormGrowsWithTheCountGiven) {
  XYTable table;
  count = 800;
  ReadTable(Pairs(400), table, count, reader);
  EXPECT_EQ(table.count(), 400);
  EXPECT_EQ(count, 400);
  count = 800;
  EXPECT_THROW(ReadTable(Pairs(401), table, count, reader), RuntimeFailure);
}

TEST_F(CellTable, TenThousandPairsFailAtOnce) {
  const std::string cell = Pairs(10000);
  XYTable table;
  count = 0;
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_THROW(ReadTable(cell, table, count, reader), RuntimeFailure);
  EXPECT_THROW(TableCache().Get(cell, reader), RuntimeFailure);
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(5));
}

// --- the cache: a number that is too large brings a box whenever its cell is parsed ----------------------------------

class Cache : public CellTable {
 protected:
  // Looks a cell up; returns how often it was parsed.
  int Parses(const std::string& name) {
    const std::size_t before = dialogs.boxes.size();
    const XYTable& table = cache.Get("1e999 1|2 " + name, reader);
    EXPECT_EQ(table.count(), 2);
    EXPECT_EQ(table.x(1), 0);
    EXPECT_EQ(table.y(2), std::stod(name));
    return static_cast<int>(dialogs.boxes.size() - before);
  }
  TableCache cache;
};

TEST_F(Cache, ATextInItIsNotParsedAgain) {
  for (const char* name : {"1", "2", "3", "4", "5"}) EXPECT_EQ(Parses(name), 1) << name;
  for (int turn = 0; turn < 3; ++turn) {
    for (const char* name : {"1", "2", "3", "4", "5"}) EXPECT_EQ(Parses(name), 0) << name;
  }
  ASSERT_FALSE(dialogs.boxes.empty());
  EXPECT_EQ(dialogs.boxes[0].text, "Overflow");
  EXPECT_EQ(dialogs.boxes[0].title, "ERROR n° 6");
}

TEST_F(Cache, TheSixthTextTakesTheOldestSlot) {
  for (const char* name : {"1", "2", "3", "4", "5", "6"}) EXPECT_EQ(Parses(name), 1) << name;
  for (const char* name : {"2", "3", "4", "5", "6"}) EXPECT_EQ(Parses(name), 0) << name;
  EXPECT_EQ(Parses("1"), 1);
}

TEST_F(Cache, TheVictimAdvancesOnHitsToo) {
  for (const char* name : {"1", "2", "3", "4", "5"}) Parses(name);
  EXPECT_EQ(Parses("1"), 0);
  EXPECT_EQ(Parses("6"), 1);  // in the slot of "2"
  EXPECT_EQ(Parses("1"), 0);
  EXPECT_EQ(Parses("2"), 1);  // in the slot of "4"
  EXPECT_EQ(Parses("3"), 0);
  EXPECT_EQ(Parses("5"), 0);
  EXPECT_EQ(Parses("6"), 0);
  EXPECT_EQ(Parses("4"), 1);
}

TEST_F(Cache, AnEmptyTextIsAnEmptyTable) {
  EXPECT_EQ(cache.Get("", reader).count(), 0);
  EXPECT_EQ(cache.Get("1 2", reader).count(), 1);
  EXPECT_EQ(cache.Get("", reader).count(), 0);
}

// --- interpolation ---------------------------------------------------------------------------------------------------

TEST_F(CellTable, LinearBetweenTwoRowsAndFlatBeyond) {
  const XYTable table = Table({{10, 1}, {20, 3}, {40, 2}});
  EXPECT_DOUBLE_EQ(Interpolate(table, 15, prompt), 2);
  EXPECT_DOUBLE_EQ(Interpolate(table, 30, prompt), 2.5);
  EXPECT_EQ(Interpolate(table, 5, prompt), 1);
  EXPECT_EQ(Interpolate(table, -5, prompt), 1);
  EXPECT_EQ(Interpolate(table, 41, prompt), 2);
  for (int row = 1; row <= 3; ++row) EXPECT_EQ(Interpolate(table, table.x(row), prompt), table.y(row));
  EXPECT_TRUE(dialogs.boxes.empty());
}

TEST_F(CellTable, OneRowIsAConstant) {
  const XYTable table = Table({{10, 7}});
  for (const double x : {-1.0, 0.0, 10.0, 99.0}) EXPECT_EQ(Interpolate(table, x, prompt), 7) << x;
}

TEST_F(CellTable, ATableThatStartsAtZeroHasAStepFirst) {
  const XYTable table = Table({{0, 9}, {10, 1}, {20, 3}});
  EXPECT_EQ(Interpolate(table, 0, prompt), 1);
  EXPECT_EQ(Interpolate(table, 1e-9, prompt), 1);
  EXPECT_EQ(Interpolate(table, 5, prompt), 1);
  EXPECT_EQ(Interpolate(table, 10, prompt), 1);
  EXPECT_DOUBLE_EQ(Interpolate(table, 15, prompt), 2);
  // Below 0 the row at 0 is skipped as an upper neighbour, too.
  EXPECT_EQ(Interpolate(table, -5, prompt), 1);
  EXPECT_TRUE(dialogs.boxes.empty());
}

TEST_F(CellTable, ZeroInTheMiddleIsNoNeighbour) {
  const XYTable table = Table({{-10, 1}, {0, 5}, {10, 3}});
  EXPECT_EQ(Interpolate(table, 5, prompt), 3);
  EXPECT_DOUBLE_EQ(Interpolate(table, -5, prompt), 1.5);  // the row at 0 is given up for the one at 10
}

TEST_F(CellTable, RowsNeedNoOrder) {
  const XYTable table = Table({{40, 2}, {10, 1}, {20, 3}});
  EXPECT_DOUBLE_EQ(Interpolate(table, 15, prompt), 2);
  EXPECT_DOUBLE_EQ(Interpolate(table, 30, prompt), 2.5);
  EXPECT_EQ(Interpolate(table, 5, prompt), 1);
  EXPECT_EQ(Interpolate(table, 50, prompt), 2);
}

TEST_F(CellTable, ShuffledTablesGiveTheSortedLine) {
  std::mt19937 random(7);
  std::uniform_real_distribution<double> value(0.1, 100);
  for (int turn = 0; turn < 200; ++turn) {
    std::vector<std::pair<double, double>> rows(12);
    for (auto& [x, y] : rows) x = value(random), y = value(random);
    const XYTable table = Table(rows);
    std::sort(rows.begin(), rows.end());
    const double x = value(random);
    double expected = 0;
    if (x <= rows.front().first) {
      expected = rows.front().second;
    } else if (x >= rows.back().first) {
      expected = rows.back().second;
    } else {
      std::size_t k = 0;
      while (rows[k + 1].first < x) ++k;
      const double share = (x - rows[k].first) / (rows[k + 1].first - rows[k].first);
      expected = rows[k].second * (1 - share) + rows[k + 1].second * share;
    }
    EXPECT_NEAR(Interpolate(table, x, prompt), expected, 1e-11 * expected) << "x " << x << " turn " << turn;
  }
}

TEST_F(CellTable, OfEqualXTheFirstRowStays) {
  const XYTable table = Table({{10, 0}, {20, 10}, {20, 30}, {30, 50}});
  EXPECT_EQ(Interpolate(table, 20, prompt), 10);
  EXPECT_DOUBLE_EQ(Interpolate(table, 15, prompt), 5);
  EXPECT_DOUBLE_EQ(Interpolate(table, 25, prompt), 30);
}

TEST_F(CellTable, NoRowAtAllIsTold) {
  const XYTable table;
  Interpolate(table, 5, prompt);
  ASSERT_EQ(dialogs.boxes.size(), 2U);
  EXPECT_EQ(dialogs.boxes[0].text, "Warning Interpolation This should never occur Except big wrong database");
  EXPECT_EQ(dialogs.boxes[0].icon, Icon::Critical);
  EXPECT_EQ(dialogs.boxes[0].buttons, Buttons::Ok);
  EXPECT_EQ(dialogs.boxes[1].text, kAbortText);
  EXPECT_EQ(dialogs.boxes[1].buttons, Buttons::AbortRetryIgnore);
  dialogs.answers = {Answer::Abort};
  EXPECT_THROW(Interpolate(table, 5, prompt), ProgramEnd);
}

TEST_F(CellTable, OnlyARowAtZeroIsToldAndGivesItsY) {
  EXPECT_EQ(Interpolate(Table({{0, 4}}), 0, prompt), 4);
  EXPECT_EQ(dialogs.Count("Warning Interpolation"), 1);
  EXPECT_EQ(dialogs.Count(kAbortText), 1);
}

// --- names -----------------------------------------------------------------------------------------------------------

TEST_F(CellTable, TwoNamesAreCutAtTheFirstSeparator) {
  std::string first;
  std::string second;
  for (const char* cell : {"silicon|polyimide", " silicon ; polyimide ", "silicon%polyimide", "silicon$polyimide",
                           "silicon@polyimide", "silicon\xC2\xA0|\xC2\xA0polyimide"}) {
    SplitTwoNames(cell, first, second);
    EXPECT_EQ(first, "silicon") << cell;
    EXPECT_EQ(second, "polyimide") << cell;
  }
  SplitTwoNames("  one name ", first, second);
  EXPECT_EQ(first, "one name");
  EXPECT_EQ(second, "");
  SplitTwoNames("a|b;c", first, second);
  EXPECT_EQ(first, "a");
  EXPECT_EQ(second, "b|c");
}

TEST_F(CellTable, MaterialsAreFoundInAnyCase) {
  const std::vector<std::string> names = {"", "Silver", "ALUMINIUM", "silver", "verre é"};
  EXPECT_EQ(FindMaterial(names, "silver", prompt), 1);
  EXPECT_EQ(FindMaterial(names, "SILVER", prompt), 1);
  EXPECT_EQ(FindMaterial(names, "aluminium", prompt), 2);
  EXPECT_EQ(FindMaterial(names, "VERRE É", prompt), 4);
  EXPECT_TRUE(dialogs.boxes.empty());
}

TEST_F(CellTable, AMissingMaterialIsTold) {
  EXPECT_EQ(FindMaterial({"", "silver"}, "gold", prompt), -1);
  ASSERT_EQ(dialogs.boxes.size(), 2U);
  EXPECT_EQ(dialogs.boxes[0].text,
            "Database wrong: material not found. Note in case of 2 materials, please separate with a pipe | gold");
  EXPECT_EQ(dialogs.boxes[0].buttons, Buttons::Ok);
  EXPECT_EQ(dialogs.boxes[1].text, kAbortText);
  dialogs.answers = {Answer::Abort};
  EXPECT_THROW(FindMaterial({"", "silver"}, "gold", prompt), ProgramEnd);
}

}  // namespace
}  // namespace orv::testing
