#include "plume/thruster_data.h"

#include <cmath>
#include <gtest/gtest.h>

#include "support/database_text.h"
#include "support/scripted_dialogs.h"

namespace orv::testing {
namespace {

const char* const kAbortText = "Do you want to abort? See Hallam if the error cannot be solved ";
const char* const kSubscript = "Error fautea_SpaceApplicationthrusterData ";

// Tables 1, 10 and 6, one under the other, with the rows of a test.
struct ThrusterTables {
  std::vector<std::string> table1 = {"T5\tremark\t3\t4\t5\t6\t7\t8\t9\t10\t11\t12\t13\t14\t15\t16\t0"};
  std::vector<std::string> table10 = {"T5\tXe+\t0.9", "T5\tXe++\t0.1"};
  std::vector<std::string> table6 = {"Xe+\tunused\t1\t131.3", "Xe++\tunused\t2\t132.3"};
  std::vector<std::string> behind;

  Database Make() const {
    std::vector<std::string> rows = {"Table      1 Thrusters", "head"};
    const auto add = [&](const std::vector<std::string>& more) { rows.insert(rows.end(), more.begin(), more.end()); };
    add(table1);
    add({"", "Table      10 Gases of each thruster", "head"});
    add(table10);
    add({"", "Table      6 Gases", "head"});
    add(table6);
    add({""});
    add(behind);
    return DatabaseOf(rows);
  }
};

class ThrusterDataTest : public ::testing::Test {
 protected:
  void Read(const std::string& name = "T5") {
    database = tables.Make();
    data = EmptyThrusterData();
    rowsUsed.Clear();
    aSpaceApplicationthrusterData(database, name, constants, data, rowsUsed, reader);
  }
  double Number(int slot) { return data(slot).number(); }
  std::string Text(int slot) { return data(slot).text(); }

  ThrusterTables tables;
  PhysicalConstants constants;
  ScriptedDialogs dialogs;
  ErrorPrompt prompt{dialogs};
  CellText reader{prompt, Locale{}};
  Database database;
  ThrusterVector data;
  DatabaseRowsUsed rowsUsed;
};

TEST_F(ThrusterDataTest, TwoSpeciesFillTheirSlots) {
  Read();
  EXPECT_EQ(data.bounds(0).lower, -10);
  EXPECT_EQ(data.bounds(0).upper, 300);
  EXPECT_EQ(Number(-6), 0);
  EXPECT_EQ(Number(-5), 0);
  EXPECT_EQ(Number(-4), 0);
  EXPECT_EQ(Number(-3), 24);
  EXPECT_EQ(Text(-2), "Xe++");
  EXPECT_EQ(Text(-1), "Xe+");
  EXPECT_EQ(Number(1), 2);
  EXPECT_EQ(Number(2), 1);
  EXPECT_EQ(Number(3), 0.9);
  EXPECT_EQ(Number(4), 131.3);
  EXPECT_EQ(Number(6), 2);
  EXPECT_EQ(Number(7), 0.1);
  EXPECT_EQ(Number(8), 132.3);
  for (int slot = 10; slot <= 23; ++slot) EXPECT_EQ(Number(slot), slot - 7) << slot;
  EXPECT_EQ(Number(24), 0);
  EXPECT_TRUE(dialogs.boxes.empty());
}

TEST_F(ThrusterDataTest, ColumnsGoThroughTheNumberReader) {
  tables.table1 = {"T5\tnot read\t3,5\t 1 230 \tabc\t1e2\t\t90\t-0.012\t+126.1\t1,234.5\t5x\t\t\t\t\t2"};
  Read();
  const double expected[15] = {3.5, 1230, 0, 100, 0, 90, -0.012, 126.1, 1234.5, 5, 0, 0, 0, 0, 2};
  for (int k = 0; k < 15; ++k) EXPECT_EQ(Number(10 + k), expected[k]) << "C" << k + 3;
}

// Shares of two ions of charges 1 and 2: 0.9 / (0.9 + 0.1 * 2^1.5).
TEST_F(ThrusterDataTest, SharesFollowDensityAndCharge) {
  Read();
  const double share = 0.9 / (0.9 + 0.1 * 2.8284271247461903);
  EXPECT_NEAR(Number(5), share, 1e-12);
  EXPECT_NEAR(Number(9), 1 - share, 1e-12);
  EXPECT_NEAR(Number(5), 0.760879, 5e-7);
}

TEST_F(ThrusterDataTest, SharesAgainstThePlainFormula) {
  tables.table10 = {"T5\tA\t0.37", "T5\tB\t1.21"};
  tables.table6 = {"A\t\t1.5\t40", "B\t\t3\t80"};
  for (const double digits : {0.0, 1.0}) {
    Directives directives;
    directives.Haccuracy = digits;
    constants = ConstantsOf(directives);
    Read();
    const double e = digits == 1 ? 1.60218e-19 : 1.6e-19;
    const double M = 40.0 / 1000 / (digits == 1 ? 6.02214e+23 : 6.023e+23);
    const double w1 = 0.37 * std::pow(e * 1.5, 1.5) / std::sqrt(M);
    const double w2 = 1.21 * std::pow(e * 3, 1.5) / std::sqrt(M);
    EXPECT_NEAR(Number(5), w1 / (w1 + w2), 1e-12);
    EXPECT_NEAR(Number(9), w2 / (w1 + w2), 1e-12);
  }
  EXPECT_TRUE(dialogs.boxes.empty());
}

TEST_F(ThrusterDataTest, AThrusterWithoutMassKeepsItsShares) {
  tables.table6 = {"Xe+\t\t1\t", "Xe++\t\t2\t"};
  Read();
  EXPECT_EQ(Number(5), 1);
  EXPECT_EQ(Number(9), 0);
  EXPECT_EQ(Number(-3), 24);
}

TEST_F(ThrusterDataTest, RowsUsedAreThoseRead) {
  tables.behind = {"T5\tHe+\t0.3"};
  Read();
  const int t1 = RowOf(database, "Table      1 ");
  const int t10 = RowOf(database, "Table      10 ");
  const int t6 = RowOf(database, "Table      6 ");
  EXPECT_EQ(rowsUsed.rows(),
            (std::vector<int>{11, t1, t1 + 1, t1 + 2, t10, t10 + 1, t10 + 2, t10 + 3, t6, t6 + 1, t6 + 2, t6 + 3}));
}

TEST_F(ThrusterDataTest, TheNamedRowsAreTakenNotTheFirst) {
  tables.table1.insert(tables.table1.begin(), "T4\t\t9\t9\t9\t9\t9\t9\t9\t9\t9\t9\t9\t9\t9\t9\t9");
  tables.table10 = {"T4\tKr+\t0.5", "T5\tXe+\t0.9", "T4\tKr++\t0.5", "T5\tXe++\t0.1"};
  tables.table6 = {"Kr+\t\t1\t83", "Xe++\t\t2\t132.3", "Xe+\t\t1\t131.3"};
  Read();
  EXPECT_EQ(Number(10), 3);
  EXPECT_EQ(Text(-1), "Xe+");
  EXPECT_EQ(Text(-2), "Xe++");
  EXPECT_EQ(Number(4), 131.3);
  EXPECT_EQ(Number(8), 132.3);
  EXPECT_TRUE(dialogs.boxes.empty());
}

TEST_F(ThrusterDataTest, OneSpeciesIsToldTwice) {
  tables.table10 = {"T5\tXe+\t0.9"};
  Read();
  EXPECT_EQ(Number(1), 1);
  EXPECT_EQ(Number(5), 1);
  EXPECT_EQ(Number(9), 0);
  EXPECT_TRUE(data(6).isEmpty());
  EXPECT_EQ(Number(6), 0);
  EXPECT_TRUE(data(-2).isEmpty());
  ASSERT_GE(dialogs.boxes.size(), 2U);
  EXPECT_EQ(dialogs.boxes[0].text,
            "Thruster without double chage not existing. If you need a new Model please contact Maravo.");
  EXPECT_EQ(dialogs.boxes[0].title.substr(0, 8), "Contact ");
  EXPECT_GT(dialogs.boxes[0].title.size(), 8U);
  EXPECT_EQ(dialogs.boxes[0].icon, Icon::Information);
  EXPECT_EQ(dialogs.boxes[0].buttons, Buttons::Ok);
  EXPECT_EQ(dialogs.boxes[1].text.substr(0, 12), "faute x17 \r\n");
  EXPECT_EQ(dialogs.boxes[1].title, "Petite erreur");
  ASSERT_EQ(dialogs.log.size(), 1U);
  EXPECT_EQ(dialogs.log[0], "faute x17 ");
  EXPECT_EQ(dialogs.Count("the lowest charge shall be written first CHARGE1=1"), 1);  // the missing one reads as 0
  EXPECT_EQ(Number(-3), 24);
}

TEST_F(ThrusterDataTest, AThirdRowOfTheNameIsIgnored) {
  tables.table10 = {"T5\tXe+\t0.9", "T5\tXe++\t0.1", "T5\tXe+++\t0.7"};
  Read();
  EXPECT_EQ(Number(1), 2);
  EXPECT_EQ(Text(-2), "Xe++");
  EXPECT_EQ(Number(7), 0.1);
}

TEST_F(ThrusterDataTest, ARowBehindTheTableCountsAsTheSecond) {
  tables.table10 = {"T5\tXe+\t0.9"};
  tables.behind = {"Table 7 Materials", "head", "T5\tXe++\t0.25"};
  Read();
  EXPECT_EQ(Number(1), 2);
  EXPECT_EQ(Text(-2), "Xe++");
  EXPECT_EQ(Number(7), 0.25);
  EXPECT_EQ(rowsUsed.rows()[7], RowOf(database, "T5\tXe++"));
  EXPECT_TRUE(dialogs.boxes.empty());
}

TEST_F(ThrusterDataTest, TheSecondRowIsComparedExactly) {
  tables.table10 = {"T5\tXe+\t0.9", "t5\tXe++\t0.1", "T5 b\tXe++\t0.1"};
  Read();
  EXPECT_EQ(Number(1), 1);
}

TEST_F(ThrusterDataTest, TheLowestChargeComesFirst) {
  tables.table6 = {"Xe+\t\t2\t131.3", "Xe++\t\t1\t131.3"};
  Read();
  ASSERT_EQ(dialogs.boxes.size(), 2U);
  EXPECT_EQ(dialogs.boxes[0].text,
            "Error in database: the lowest charge shall be written first CHARGE1=2    CHARGE2=1");
  EXPECT_EQ(dialogs.boxes[0].title, "Error Critical, see Hallam");
  EXPECT_EQ(dialogs.boxes[0].icon, Icon::Critical);
  EXPECT_EQ(dialogs.boxes[1].text, kAbortText);
  EXPECT_EQ(dialogs.boxes[1].buttons, Buttons::AbortRetryIgnore);
  EXPECT_EQ(Number(2), 2);
  EXPECT_EQ(Number(6), 1);
  dialogs.answers = {Answer::Abort};
  EXPECT_THROW(Read(), ProgramEnd);
  dialogs.answers = {Answer::Retry};
  EXPECT_NO_THROW(Read());
}

TEST_F(ThrusterDataTest, EqualChargesAreFine) {
  tables.table6 = {"Xe+\t\t1\t131.3", "Xe++\t\t1\t131.3"};
  Read();
  EXPECT_TRUE(dialogs.boxes.empty());
  EXPECT_NEAR(Number(5), 0.9, 1e-12);
}

TEST_F(ThrusterDataTest, MissingNamesAreTold) {
  Read("T6");
  EXPECT_EQ(dialogs.Count("Error in the database: Thruster name \"T6\" is missing. The user is asked to check the "
                          "conformance to the Database specification carrefuly"),
            2);
  tables.table10[0] = "T5\tNe+\t0.9";
  dialogs.boxes.clear();
  Read();
  EXPECT_EQ(dialogs.Count("Error in the database: Thruster name \"Ne+\" is missing."), 1);
  EXPECT_EQ(dialogs.boxes[0].title, "Critical potential error");
  dialogs.answers = {Answer::Abort};
  EXPECT_THROW(Read(), ProgramEnd);
}

TEST_F(ThrusterDataTest, MissingTablesAreTold) {
  const Database empty = DatabaseOf({"nothing"});
  data = EmptyThrusterData();
  aSpaceApplicationthrusterData(empty, "T5", constants, data, rowsUsed, reader);
  for (const char* number : {"1", "10", "6"}) {
    EXPECT_EQ(dialogs.Count("Error in the database: Table " + std::string(number) + " is missing."), 1) << number;
  }
  EXPECT_EQ(Number(-3), 24);
}

// --- a thruster given by tables --------------------------------------------------------------------------------------

class TableThruster : public ThrusterDataTest {
 protected:
  void ReadTables(const std::string& density, const std::string& energy, const std::string& ratio,
                  const std::string& model = "1000") {
    tables.table1 = {"T5\tr\t3\t4\t" + density + "\t6\t7\t8\t9\t10\t" + energy + "\t" + ratio + "\t13\t14\t15\t16\t" +
                     model};
    Read();
  }
};

TEST_F(TableThruster, PointsFollowTheParameters) {
  ReadTables(" 0 1.5|10 1.25|90 0.1 ", "5 300|60 150", "1 0.9");
  EXPECT_EQ(Number(-4), 30);
  EXPECT_EQ(Number(-5), 34);
  EXPECT_EQ(Number(-6), 36);
  const double expected[12] = {0, 1.5, 10, 1.25, 90, 0.1, 5, 300, 60, 150, 1, 0.9};
  for (int k = 0; k < 12; ++k) EXPECT_EQ(Number(25 + k), expected[k]) << 25 + k;
  EXPECT_TRUE(data(37).isEmpty());
  EXPECT_EQ(Number(24), 1000);
  EXPECT_TRUE(dialogs.boxes.empty());
}

TEST_F(TableThruster, EmptyRatioHasNoPoints) {
  ReadTables("0 1|90 0.1", "5 300", "");
  EXPECT_EQ(Number(-4), 28);
  EXPECT_EQ(Number(-5), 30);
  EXPECT_EQ(Number(-6), 30);
  EXPECT_EQ(Number(19), 0);
}

TEST_F(TableThruster, TextsAreAlsoReadAsNumbers) {
  ReadTables("20 1|90 0.1", "300 5", "1 0.9|60 0.8");
  EXPECT_EQ(Number(12), 201);  // blanks go first: "201|900.1"
  EXPECT_EQ(Number(18), 3005);
  EXPECT_EQ(Number(19), 10.9);
}

TEST_F(TableThruster, OtherModelsReadNoTables) {
  for (const char* model : {"0", "1", "2", "3", "100", "7"}) {
    ReadTables("0 1|90 0.1", "5 300", "1 0.9", model);
    EXPECT_EQ(Number(-4), 0) << model;
    EXPECT_EQ(Number(-5), 0) << model;
    EXPECT_EQ(Number(-6), 0) << model;
    EXPECT_TRUE(data(25).isEmpty()) << model;
  }
}

std::string Pairs(int count) {
  std::string cell;
  for (int k = 1; k <= count; ++k) cell += (k == 1 ? "" : "|") + std::to_string(k) + " 1";
  return cell;
}

TEST_F(TableThruster, TheLastSlotIs300) {
  ReadTables(Pairs(136), "5 300", "");
  EXPECT_EQ(Number(-4), 296);
  EXPECT_EQ(Number(-5), 298);
  EXPECT_TRUE(dialogs.boxes.empty());
  ReadTables(Pairs(138), "", "");
  EXPECT_EQ(Number(-4), 300);
  EXPECT_EQ(Number(299), 138);
  EXPECT_TRUE(dialogs.boxes.empty());
}

TEST_F(TableThruster, TooLongATableIsTold) {
  ReadTables(Pairs(139), "5 300", "");
  ASSERT_GE(dialogs.boxes.size(), 2U);
  EXPECT_EQ(dialogs.boxes[0].text, kSubscript);
  EXPECT_EQ(dialogs.boxes[0].icon, Icon::Information);
  EXPECT_EQ(dialogs.boxes[1].text, "Subscript out of range");
  EXPECT_EQ(dialogs.boxes[1].title, "Error fautea_SpaceApplicationthrusterData");
  EXPECT_EQ(dialogs.boxes[1].buttons, Buttons::AbortRetryIgnore);
  EXPECT_EQ(Number(300), 1);
  dialogs.answers = {Answer::Abort};
  EXPECT_THROW(ReadTables(Pairs(139), "", ""), ProgramEnd);
}

TEST_F(TableThruster, TenThousandPairsEnd) {
  ReadTables(Pairs(10000), Pairs(10000), Pairs(10000));
  EXPECT_GE(dialogs.Count(kSubscript), 1);
  EXPECT_EQ(dialogs.Count("Subscript out of range"), 1);
  EXPECT_EQ(Number(-3), 24);
  EXPECT_EQ(Number(-4), 300);
  EXPECT_EQ(Number(24), 1000) << "the curves behind a long one must not overwrite the parameters";
  EXPECT_EQ(Number(1), 2);
}

}  // namespace
}  // namespace orv::testing
