#include "model/database.h"

#include <gtest/gtest.h>

#include "support/database_text.h"
#include "support/scripted_dialogs.h"

namespace orv::testing {
namespace {

const char* const kAbortText = "Do you want to abort? See Hallam if the error cannot be solved ";
const char* const kCritical = "Critical potential error";

class DatabaseTest : public ::testing::Test {
 protected:
  TableLocation Locate(const std::vector<std::string>& rows, int number, const std::string& name = "") {
    return LocateTable(DatabaseOf(rows), number, name, prompt);
  }
  void ExpectCritical(const std::string& text) {
    ASSERT_EQ(dialogs.boxes.size(), 2U);
    EXPECT_EQ(dialogs.boxes[0].text, text);
    EXPECT_EQ(dialogs.boxes[0].title, kCritical);
    EXPECT_EQ(dialogs.boxes[0].buttons, Buttons::Ok);
    EXPECT_EQ(dialogs.boxes[0].icon, Icon::Critical);
    EXPECT_EQ(dialogs.boxes[1].text, kAbortText);
    EXPECT_EQ(dialogs.boxes[1].buttons, Buttons::AbortRetryIgnore);
  }

  ScriptedDialogs dialogs;
  ErrorPrompt prompt{dialogs};
  CellText reader{prompt, Locale{}};
};

// --- locating a table ------------------------------------------------------------------------------------------------

TEST_F(DatabaseTest, ATableRunsToTheNextEmptyCell) {
  const TableLocation t = Locate({"", "Table      7 Materials", "head", "silver", "gold", "", "lead"}, 7);
  EXPECT_EQ(t.titleNext, 3);
  EXPECT_EQ(t.first, 4);
  EXPECT_EQ(t.last, 5);
  EXPECT_TRUE(dialogs.boxes.empty());
}

TEST_F(DatabaseTest, ATableRunsToTheNextTitle) {
  const TableLocation t = Locate({"Table 7 m", "head", "silver", "gold", "Table 8 a", "head", "x"}, 7);
  EXPECT_EQ(t.first, 3);
  EXPECT_EQ(t.last, 4);
}

TEST_F(DatabaseTest, AnyCellThatBeginsWithTableEndsIt) {
  EXPECT_EQ(Locate({"Table 7 m", "head", "silver", "Tablets", "gold"}, 7).last, 3);
  EXPECT_EQ(Locate({"Table 7 m", "head", "silver", "A Table", "gold"}, 7).last, 5);
  EXPECT_EQ(Locate({"Table 7 m", "head", "silver", "table 8 ", "gold"}, 7).last, 5);
}

TEST_F(DatabaseTest, AHardBlankIsAnEmptyCell) {
  EXPECT_EQ(Locate({"Table 7 m", "head", "silver", "\xC2\xA0", "gold"}, 7).last, 3);
}

TEST_F(DatabaseTest, WithoutAnEndATableRunsToTheLastRow) {
  EXPECT_EQ(Locate({"Table 7 m", "head", "silver", "gold"}, 7).last, 4);
}

TEST_F(DatabaseTest, AnEmptyTableHasNoRows) {
  const TableLocation t = Locate({"Table 7 m", "head", "", "Table 8 a"}, 7);
  EXPECT_EQ(t.first, 3);
  EXPECT_EQ(t.last, 2);
}

TEST_F(DatabaseTest, TheNumberStandsBetweenTwoBlanks) {
  EXPECT_EQ(Locate({"Table 10 gases", "Table 1 thrusters"}, 1).titleNext, 3);
  EXPECT_EQ(Locate({"Table 1 thrusters", "Table 10 gases"}, 10).titleNext, 3);
  EXPECT_EQ(Locate({"Table 1: thrusters", "Table 1", "Table 1thrusters", "Table 1 thrusters"}, 1).titleNext, 5);
  EXPECT_EQ(Locate({"Database, Table of thrusters 1 and more"}, 1).titleNext, 2);
  EXPECT_TRUE(dialogs.boxes.empty());
}

TEST_F(DatabaseTest, TheFirstTitleCounts) {
  EXPECT_EQ(Locate({"Table 1 first", "head", "a", "", "Table 1 second", "head"}, 1).first, 3);
}

TEST_F(DatabaseTest, TheWordIsComparedInItsCase) {
  EXPECT_EQ(Locate({"TABLE 1 x", "table 1 x", "Table 1 x"}, 1).titleNext, 4);
}

TEST_F(DatabaseTest, AMissingTableIsTold) {
  EXPECT_EQ(Locate({"Table 1 thrusters"}, 7).first, 0);
  ExpectCritical(
      "Error in the database: Table 7 is missing. The user is asked to check the conformance to the Database "
      "specification carrefuly");
  dialogs.answers = {Answer::Abort};
  EXPECT_THROW(Locate({"Table 1 thrusters"}, 7), ProgramEnd);
}

TEST_F(DatabaseTest, ANameIsFoundFromTheTitleDown) {
  const std::vector<std::string> rows = {"T5", "Table 1 thrusters", "name", "T4", "T5", "T5", ""};
  const TableLocation t = Locate(rows, 1, "T5");
  EXPECT_EQ(t.first, 5);
  EXPECT_EQ(t.titleNext, 3);
  EXPECT_EQ(Locate(rows, 1, "name").first, 3);
}

TEST_F(DatabaseTest, ANameIsComparedExactly) {
  const std::vector<std::string> rows = {"Table 1 t", "head", "t5", "T5 b", "  T5 "};
  EXPECT_EQ(Locate(rows, 1, "T5").first, 5);
}

TEST_F(DatabaseTest, ANameOfALaterTableIsFoundThere) {
  const std::vector<std::string> rows = {"Table 1 t", "head", "T4", "", "Table 6 gases", "head", "T5"};
  EXPECT_EQ(Locate(rows, 1, "T5").first, 7);
  EXPECT_TRUE(dialogs.boxes.empty());
}

TEST_F(DatabaseTest, AMissingNameIsTold) {
  Locate({"T5", "Table 1 t", "head", "T4"}, 1, "T5");
  ExpectCritical(
      "Error in the database: Thruster name \"T5\" is missing. The user is asked to check the conformance to the "
      "Database specification carrefuly");
  dialogs.answers = {Answer::Abort};
  EXPECT_THROW(Locate({"Table 1 t", "head", "T4"}, 1, "T5"), ProgramEnd);
}

TEST_F(DatabaseTest, AFailureInsideIsTold) {
  Database database = DatabaseOf({"Table 1 t", "head"});
  database.NumberOfDatabaseRows = 9;
  LocateTable(database, 7, "", prompt);
  ASSERT_GE(dialogs.boxes.size(), 2U);
  EXPECT_EQ(dialogs.boxes[0].text,
            "Error in the database: the user is asked to check the conformance to the Database specification "
            "carrefuly");
  EXPECT_EQ(dialogs.boxes[0].title, kCritical);
  EXPECT_EQ(dialogs.boxes[1].text, kAbortText);
}

// --- the list of rows ------------------------------------------------------------------------------------------------

TEST(DatabaseRows, CountsInElementZero) {
  DatabaseRowsUsed rows;
  EXPECT_EQ(rows.count(), 0);
  rows.Add(7);
  rows.Add(7);
  rows.Add(3);
  EXPECT_EQ(rows.rows(), (std::vector<int>{3, 7, 7, 3}));
  rows.Clear();
  EXPECT_EQ(rows.rows(), (std::vector<int>{0}));
}

TEST(DatabaseRows, HoldsTwoHundred) {
  DatabaseRowsUsed rows;
  for (int row = 1; row <= 200; ++row) rows.Add(row);
  EXPECT_THROW(rows.Add(201), RuntimeFailure);
  EXPECT_EQ(rows.count(), 200);
  rows.Grow(4 * 40 + 100);
  for (int row = 201; row <= 260; ++row) rows.Add(row);
  EXPECT_THROW(rows.Add(261), RuntimeFailure);
}

// --- materials in use ------------------------------------------------------------------------------------------------

TextTable ModelOf(const std::vector<std::string>& names) {
  TextTable table;
  const auto count = static_cast<std::ptrdiff_t>(names.size());
  table.Size({Bounds{0, count + 10}, Bounds{1, 11}});
  for (std::ptrdiff_t row = 1; row <= count; ++row) table(row, 1) = names[static_cast<std::size_t>(row - 1)];
  return table;
}

TEST(CollectMaterials, DistinctInOrderOfMeeting) {
  int count = -1;
  const std::vector<std::string> names = {"silver", "T5", " gold ", "silver|lead", "lead ; silver", "gold"};
  const auto list = CollectMaterialsUsed(ModelOf(names), 6, 2, 1, count);
  EXPECT_EQ(list, (std::vector<std::string>{"3", "silver", "gold", "lead"}));
  EXPECT_EQ(count, 3);
}

TEST(CollectMaterials, ComparesExactText) {
  int count = -1;
  const auto list = CollectMaterialsUsed(ModelOf({"Silver", "silver", "SILVER"}), 3, 0, 1, count);
  EXPECT_EQ(list, (std::vector<std::string>{"3", "Silver", "silver", "SILVER"}));
}

TEST(CollectMaterials, OnlyTheRowsAsked) {
  int count = -1;
  EXPECT_EQ(CollectMaterialsUsed(ModelOf({"a", "b", "c"}), 2, 0, 1, count), (std::vector<std::string>{"2", "a", "b"}));
  EXPECT_EQ(CollectMaterialsUsed(ModelOf({"T5"}), 1, 1, 1, count), (std::vector<std::string>{"0"}));
  EXPECT_EQ(count, 0);
}

// --- reading the materials -------------------------------------------------------------------------------------------

class MaterialsTest : public DatabaseTest {
 protected:
  MaterialsTest() {
    thruster.Size({Bounds{-10, 300}});
    thruster(-1) = std::string("Xe+");
    thruster(-2) = std::string("Xe++");
  }

  // Tables 7, 8 and 9 with these data rows.
  void Read(const std::vector<std::string>& rows7, const std::vector<std::string>& rows8,
            const std::vector<std::string>& rows9) {
    std::vector<std::string> rows = {"Table      7 Materials", "head"};
    rows.insert(rows.end(), rows7.begin(), rows7.end());
    first8 = static_cast<int>(rows.size()) + 4;
    rows.insert(rows.end(), {"", "Table      8 Accommodation", "head"});
    rows.insert(rows.end(), rows8.begin(), rows8.end());
    first9 = static_cast<int>(rows.size()) + 4;
    rows.insert(rows.end(), {"", "Table      9 Yields", "head"});
    rows.insert(rows.end(), rows9.begin(), rows9.end());
    const Database database = DatabaseOf(rows);
    const TableLocation t7 = LocateTable(database, 7, "", prompt);
    const TableLocation t8 = LocateTable(database, 8, "", prompt);
    const TableLocation t9 = LocateTable(database, 9, "", prompt);
    rowsUsed.Clear();
    aSpaceApplicationDataBaseMATERIALS(database, t7, t8, t9, thruster, materials, rowsUsed, reader);
  }
  double Number(int material, int slot) { return materials.MaterialTable(material, slot).number(); }
  std::string Text(int material, int slot) { return materials.MaterialTable(material, slot).text(); }
  bool Empty(int material, int slot) { return materials.MaterialTable(material, slot).isEmpty(); }

  ThrusterVector thruster;
  Materials materials;
  DatabaseRowsUsed rowsUsed;
  int first8 = 0;
  int first9 = 0;
  const std::vector<std::string> two = {"silver\t10490\t107.87\tsource", "gold\t19300\t196.97"};
};

TEST_F(MaterialsTest, Table7GivesNamesAndSlots1To3) {
  materials.MaterialsUsed = {"1", "gold"};
  Read({"silver\t10490\t107.87", "gold\t19 300\t196,97"}, {}, {});
  EXPECT_EQ(materials.NumberOfMaterials, 2);
  EXPECT_EQ(materials.MaterialNames, (std::vector<std::string>{"", "silver", "gold"}));
  EXPECT_EQ(Number(1, 1), 1);
  EXPECT_EQ(Number(1, 2), 10490);
  EXPECT_EQ(Number(1, 3), 107.87);
  EXPECT_EQ(Number(2, 1), 2);
  EXPECT_EQ(Number(2, 2), 19300);
  EXPECT_EQ(Number(2, 3), 196.97);
  for (int slot = 4; slot <= 80; ++slot) EXPECT_TRUE(Empty(1, slot)) << slot;
  EXPECT_EQ(materials.MaterialTable.bounds(1).upper, 80);
  EXPECT_TRUE(dialogs.boxes.empty());
}

TEST_F(MaterialsTest, Table8GivesSlots4To7OfEachGas) {
  Read(two,
       {"Xe+\tgold\t0.85\t0.9\t0.7\tY", "Xe++\tgold\t0.5\t0.6\t0.4\tN", "Xe+\tSILVER\t0.1\t0.2\t0.3\t y",
        "Xe++\tSilver\t0.15\t0.25\t0.35\tn"},
       {});
  const double gold1[4] = {0.85, 0.9, 0.7, 1};
  const double gold2[4] = {0.5, 0.6, 0.4, 0};
  const double silver1[4] = {0.1, 0.2, 0.3, 1};
  const double silver2[4] = {0.15, 0.25, 0.35, 0};
  for (int k = 0; k < 4; ++k) {
    EXPECT_EQ(Number(2, 4 + k), gold1[k]);
    EXPECT_EQ(Number(2, 44 + k), gold2[k]);
    EXPECT_EQ(Number(1, 4 + k), silver1[k]);
    EXPECT_EQ(Number(1, 44 + k), silver2[k]);
  }
  EXPECT_FALSE(Empty(1, 47));
  EXPECT_TRUE(dialogs.boxes.empty());
}

TEST_F(MaterialsTest, AFlagThatIsNeitherYNorNTakesTheFieldBefore) {
  Read(two, {"Xe+\tsilver\t0.1\t0.2\t0.7\tmaybe", "Xe+\tgold\t0.1\t0.2\t0.6\t"}, {});
  EXPECT_EQ(Number(1, 7), 0.7);
  EXPECT_EQ(Number(2, 7), 0.6);
}

TEST_F(MaterialsTest, AnUnknownGasIsStoredWhereTheRowBeforeWas) {
  Read(two,
       {"Ar+\tsilver\t0.1\t0.2\t0.3\tY", "Xe++\tsilver\t0.5\t0.6\t0.4\tY", "Ar+\tsilver\t0.7\t0.8\t0.9\tN",
        "Ar+\tgold\t0.15\t0.25\t0.35\tN"},
       {});
  EXPECT_EQ(Number(1, 4), 0.1);  // the offset starts at the first gas
  EXPECT_EQ(Number(1, 7), 1);
  EXPECT_EQ(Number(1, 44), 0.7);  // overwritten
  EXPECT_EQ(Number(1, 45), 0.8);
  EXPECT_EQ(Number(1, 46), 0.9);
  EXPECT_EQ(Number(1, 47), 0);
  EXPECT_EQ(Number(2, 44), 0.15);
  EXPECT_TRUE(Empty(2, 4));
  EXPECT_TRUE(dialogs.boxes.empty());  // the messages about gases never come
}

TEST_F(MaterialsTest, TheOffsetStartsAnewForTable9) {
  Read(
      two, {"Xe++\tsilver\t0.5\t0.6\t0.4\tY"},
      {"Ar+\tsilver\t100\t0.5\t0.8\t45\t1", "Xe++\tsilver\t200\t0.6\t0.9\t50\t1.5", "Ar+\tsilver\t300\t0.7\t1\t55\t2"});
  EXPECT_EQ(Number(1, 8), 1);
  EXPECT_EQ(Number(1, 9), 100);
  EXPECT_EQ(Number(1, 48), 2);
  EXPECT_EQ(Number(1, 49), 200);
  EXPECT_EQ(Number(1, 54), 300);
  EXPECT_TRUE(dialogs.boxes.empty());
}

TEST_F(MaterialsTest, WithoutASecondGasItsRowsKeepTheOffset) {
  thruster(-2) = GeneralValue();
  Read(two, {"Xe+\tsilver\t0.1\t0.2\t0.3\tY", "Xe++\tsilver\t0.5\t0.6\t0.4\tN"}, {});
  EXPECT_EQ(Number(1, 4), 0.5);
  EXPECT_EQ(Number(1, 7), 0);
  EXPECT_TRUE(Empty(1, 44));
}

TEST_F(MaterialsTest, Table9CountsItsRecords) {
  std::vector<std::string> rows;
  for (int k = 1; k <= 6; ++k) {
    const std::string n = std::to_string(k);
    rows.push_back("Xe+\tgold\t" + n + "00\t" + n + "\t" + n + ".5\t4" + n + "\t1." + n);
  }
  Read(two, {}, rows);
  EXPECT_EQ(Number(2, 8), 6);
  for (int k = 1; k <= 6; ++k) {
    const int slot = 9 + 5 * (k - 1);
    EXPECT_EQ(Number(2, slot), 100 * k);
    EXPECT_EQ(Number(2, slot + 1), k);
    EXPECT_EQ(Number(2, slot + 2), k + 0.5);
    EXPECT_EQ(Number(2, slot + 3), 40 + k);
    EXPECT_NEAR(Number(2, slot + 4), 1 + k / 10.0, 1e-15);
  }
  for (int slot = 39; slot <= 80; ++slot) EXPECT_TRUE(Empty(2, slot)) << slot;
  for (int slot = 8; slot <= 80; ++slot) EXPECT_TRUE(Empty(1, slot)) << slot;
}

TEST_F(MaterialsTest, SevenAndEightRowsOfTheFirstGasRunIntoTheSecond) {
  std::vector<std::string> rows;
  for (int k = 1; k <= 8; ++k) {
    const std::string n = std::to_string(k);
    rows.push_back("Xe+\tsilver\t" + n + "01\t" + n + "02\t" + n + "03\t" + n + "04\t" + n + "05");
  }
  Read(two, {"Xe++\tsilver\t0.5\t0.6\t0.4\tY"}, rows);
  EXPECT_EQ(Number(1, 8), 8);
  for (int k = 1; k <= 8; ++k) {
    for (int field = 1; field <= 5; ++field) EXPECT_EQ(Number(1, 8 + 5 * (k - 1) + field), 100 * k + field);
  }
  EXPECT_EQ(Number(1, 48), 805);  // the second gas's count
  EXPECT_TRUE(dialogs.boxes.empty());
}

TEST_F(MaterialsTest, TheSeventhRowOfTheSecondGasRunsPastTheTable) {
  dialogs.answers = {Answer::Retry, Answer::Ignore};
  std::vector<std::string> rows;
  for (int k = 1; k <= 7; ++k) rows.push_back("Xe++\tsilver\t" + std::to_string(k) + "01\t2\t3\t4\t5");
  Read({"silver\t1\t2"}, {}, rows);
  EXPECT_EQ(Number(1, 48), 7);
  EXPECT_EQ(Number(1, 49), 101);
  EXPECT_EQ(Number(1, 74), 601);
  EXPECT_EQ(Number(1, 79), 701);
  EXPECT_EQ(Number(1, 80), 2);
  EXPECT_EQ(dialogs.Count("Error fautea_SpaceApplicationDataBaseMATERIALS "), 2) << "of three fields";
  ASSERT_GE(dialogs.boxes.size(), 2U);
  EXPECT_EQ(dialogs.boxes[0].text, "Error fautea_SpaceApplicationDataBaseMATERIALS ");
  EXPECT_EQ(dialogs.boxes[1].text, "Subscript out of range");
  EXPECT_EQ(dialogs.boxes[1].title, "Error fautea_SpaceApplicationDataBaseMATERIALS");
  EXPECT_EQ(dialogs.boxes[1].buttons, Buttons::AbortRetryIgnore);
  EXPECT_EQ(dialogs.Count("Subscript out of range"), 2);
}

TEST_F(MaterialsTest, TablesInCellsTakeTheFirstRecord) {
  Read(two, {},
       {"Xe+\tgold\t100\t0.5\t0.8\t45\t1",
        "Xe+\tgold\t200\t0.6\t0.9\t50\t2\t 50 0.02|100 0.06 \t0 1|40 1.5\t50 1|9 2\tx",
        "Xe+\tgold\t300\t0.7\t1\t55\t3"});
  EXPECT_EQ(Number(2, 8), -1);
  EXPECT_EQ(Text(2, 9), "50 0.02|100 0.06");
  EXPECT_EQ(Text(2, 10), "0 1|40 1.5");
  EXPECT_EQ(Text(2, 11), "50 1|9 2");
  EXPECT_EQ(Text(2, 12), "x");
  EXPECT_EQ(Number(2, 13), 1);    // of the first record
  EXPECT_EQ(Number(2, 14), 200);  // the second record was stored before the texts came
  EXPECT_EQ(Number(2, 18), 2);
  EXPECT_TRUE(Empty(2, 19));  // once in use, no further record is stored
}

TEST_F(MaterialsTest, LaterTablesInCellsReplaceEarlierOnes) {
  Read(two, {},
       {"Xe++\tgold\t\t\t\t\t\t1 1\t2 2\t3 3\t4", "Xe++\tgold\t1\t2\t3\t4\t5", "Xe++\tgold\t\t\t\t\t\t5 5\t6 6"});
  EXPECT_EQ(Number(2, 48), -1);
  EXPECT_EQ(Text(2, 49), "5 5");
  EXPECT_EQ(Text(2, 50), "6 6");
  EXPECT_EQ(Text(2, 51), "");
  EXPECT_EQ(Text(2, 52), "");
}

TEST_F(MaterialsTest, AMaterialMissingFromTable7IsTold) {
  Read(two, {"Xe+\tlead\t0.1\t0.2\t0.3\tY", "Xe+\tgold\t0.4\t0.5\t0.6\tY"}, {});
  ASSERT_GE(dialogs.boxes.size(), 4U);
  EXPECT_EQ(dialogs.boxes[0].text,
            "Database wrong: material not found. Note in case of 2 materials, please separate with a pipe | lead");
  EXPECT_EQ(dialogs.boxes[1].text, kAbortText);
  EXPECT_EQ(dialogs.boxes[2].text, "Error fautea_SpaceApplicationDataBaseMATERIALS ");
  EXPECT_EQ(dialogs.boxes[3].text, "Subscript out of range");
  EXPECT_EQ(Number(2, 4), 0.4);
  for (int slot = 4; slot <= 7; ++slot) EXPECT_TRUE(Empty(1, slot));
}

TEST_F(MaterialsTest, AbortAtAMissingMaterialEndsTheProgram) {
  dialogs.answers = {Answer::Abort};
  EXPECT_THROW(Read(two, {}, {"Xe+\tlead\t1\t2\t3\t4\t5"}), ProgramEnd);
}

TEST_F(MaterialsTest, TheRowsOfUsedMaterialsAreListed) {
  materials.MaterialsUsed = {"1", "gold"};
  Read(two, {"Xe+\tsilver\t1\t1\t1\tY", "Xe+\tgold\t1\t1\t1\tY", "Ar+\tgold\t1\t1\t1\tY"},
       {"Xe+\tgold\t1\t1\t1\t1\t1", "Xe+\tsilver\t1\t1\t1\t1\t1", "Xe+\tgold\t1\t1\t1\t1\t1"});
  EXPECT_EQ(rowsUsed.rows(), (std::vector<int>{11, 1, 2, 4, first8 - 2, first8 - 1, first8 + 1, first8 + 2, first9 - 2,
                                               first9 - 1, first9, first9 + 2}));
}

TEST_F(MaterialsTest, UsedMaterialsAreComparedByExactText) {
  materials.MaterialsUsed = {"2", "GOLD", "Silver"};
  Read(two, {"Xe+\tGOLD\t0.3\t1\t1\tY", "Xe+\tgold\t0.4\t1\t1\tY"}, {});
  EXPECT_EQ(rowsUsed.rows(), (std::vector<int>{7, 1, 2, first8 - 2, first8 - 1, first8, first9 - 2, first9 - 1}));
  EXPECT_EQ(Number(2, 4), 0.4);
}

TEST_F(MaterialsTest, RowsAreAddedToThoseOfTheThruster) {
  materials.MaterialsUsed = {"0"};
  DatabaseRowsUsed before;
  const Database database = DatabaseOf({"Table 7 m", "head", "silver"});
  before.Add(40);
  const TableLocation t7 = LocateTable(database, 7, "", prompt);
  aSpaceApplicationDataBaseMATERIALS(database, t7, t7, TableLocation{}, thruster, materials, before, reader);
  ASSERT_GE(before.count(), 3);
  EXPECT_EQ(before.rows()[1], 40);
  EXPECT_EQ(before.rows()[2], 1);
  EXPECT_EQ(before.rows()[3], 2);
}

TEST_F(MaterialsTest, AFullListOfRowsIsTold) {
  std::vector<std::string> rows;
  for (int k = 0; k < 250; ++k) rows.push_back("Xe+\tgold\t1\t2\t3\t4\t5");
  materials.MaterialsUsed = {"1", "gold"};
  Read(two, {}, {rows.begin(), rows.begin() + 6});
  EXPECT_TRUE(dialogs.boxes.empty());
  Read(two, rows, {});
  EXPECT_EQ(rowsUsed.count(), 200);
  EXPECT_GT(dialogs.Count("Error fautea_SpaceApplicationDataBaseMATERIALS "), 0);
  EXPECT_EQ(Number(2, 4), 1);
}

TEST_F(MaterialsTest, WithoutTable7NothingIsStored) {
  const Database database = DatabaseOf({"Table 8 a", "head", "Xe+\tgold\t1\t2\t3\tY"});
  const TableLocation t8 = LocateTable(database, 8, "", prompt);
  aSpaceApplicationDataBaseMATERIALS(database, TableLocation{}, t8, TableLocation{}, thruster, materials, rowsUsed,
                                     reader);
  EXPECT_EQ(materials.NumberOfMaterials, 0);
  EXPECT_EQ(dialogs.Count("Database wrong: material not found."), 1);
}

TEST_F(MaterialsTest, FiveThousandRowsEnd) {
  std::vector<std::string> rows;
  for (int k = 0; k < 5000; ++k) rows.push_back("Xe+\tgold\tnan\tinf\t1e999\t-\t5");
  Read(two, {}, rows);
  EXPECT_EQ(Number(2, 8), 5000);
}

}  // namespace
}  // namespace orv::testing
