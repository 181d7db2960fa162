#include <algorithm>
#include <chrono>
#include <gmock/gmock.h>

#include "system/program_run.h"

namespace orv::testing {
namespace {

namespace fs = std::filesystem;

// How each workbook of examples/broken is told: with questions ignored, and with the first one answered by Abort.
struct Broken {
  const char* name;
  int code;
  int abortCode;
  std::vector<const char*> messages;
};

const std::vector<Broken>& BrokenWorkbooks() {
  static const std::vector<Broken> kBooks = {
      {"missing_keyword",
       3,
       3,
       {"Keyword not found in the current Excel sheet: ", "missing_keyword.xlsx\\Model",
        "The keyword Orvdata is not on the sheet \"Model\" of the workbook \"missing_keyword.xlsx\"."}},
      {"missing_tables",
       0,
       1,
       {"Error in the database: Table 10 is missing. The user is asked to check the conformance to the Database "
        "specification carrefuly",
        "Error in the database: Table 6 is missing.", "Error in the database: Table 7 is missing.",
        "Error in the database: Table 8 is missing.",
        "Database wrong: material not found. Note in case of 2 materials, please separate with a pipe | aluminium"}},
      {"empty_database", 3, 1, {"holds no database: nothing was computed.", "empty_database.xlsx"}},
      {"row_without_numbers",
       0,
       1,
       {"Input data in Excel sheet not correct: line ==>", "<== !   Please read user manual   "}},
      {"unknown_type", 0, 1, {"CUBOID this specification is not allowed. See Hallam "}},
      {"text_for_numbers", 0, 1, {"Overflow"}},
      {"no_thruster", 0, 1, {"The model do not have any thrusters, please check the data and restart..."}},
      {"columns_300", 0, 1, {"ERROR: last column shall be less than 255 ie iv"}},
      {"zip_bomb", 3, 3, {"zip_bomb.xlsx"}},
      {"truncated", 3, 3, {"truncated.xlsx"}},
  };
  return kBooks;
}

class BrokenTest : public ProgramTest, public ::testing::WithParamInterface<std::size_t> {
 protected:
  const Broken& Book() const { return BrokenWorkbooks()[GetParam()]; }
  std::string Name() const { return Example("broken/" + std::string(Book().name) + ".xlsx"); }
};

TEST_P(BrokenTest, IsToldAndEnds) {
  EXPECT_EQ(Run(Name(), {"--on-question", "ignore"}), Book().code) << err;
  for (const char* message : Book().messages) EXPECT_TRUE(ErrHas(message)) << message << "\nis not in\n" << err;
  EXPECT_EQ(out.empty(), Book().code != 0);
  if (Book().code != 0) {
    EXPECT_TRUE(ErrHas("orvvalis: "));
  }
}

TEST_P(BrokenTest, AbortEndsAtTheFirstQuestion) {
  EXPECT_EQ(Run(Name(), {"--on-question", "abort"}), Book().abortCode) << err;
  EXPECT_EQ(out, "");
  EXPECT_EQ(ReadWhole(File("set/OrvTraceResults.txt")), "");
}

TEST_P(BrokenTest, APersonIsAsked) {
  // The input ends at once, then in the middle of the questions.
  EXPECT_EQ(Run(Name(), {"--on-question", "ask"}), Book().code);
  EXPECT_EQ(Run(Name(), {"--on-question", "ask"}, "i\nc\n"), Book().code);
}

TEST_P(BrokenTest, ItsExportsAreValid) {
  const int code = Run(Name(), {"--export", File("a.csv"), "--export", File("a.json"), "--export", File("a.vtp")});
  EXPECT_EQ(code, Book().code);
  EXPECT_EQ(fs::exists(File("a.csv")), code == 0);
  if (code != 0) return;
  for (const auto& row : ReadCsv(ReadWhole(File("a.csv")))) EXPECT_EQ(row.size(), 129U);
  EXPECT_NO_THROW(Json("a.json"));
}

INSTANTIATE_TEST_SUITE_P(Examples, BrokenTest, ::testing::Range(std::size_t{0}, BrokenWorkbooks().size()),
                         [](const auto& book) { return std::string(BrokenWorkbooks()[book.param].name); });

TEST(BrokenExamples, AreAllKnownHere) {
  for (const auto& entry : fs::directory_iterator(std::string(ORV_SOURCE_DIR) + "/examples/broken")) {
    if (entry.path().extension() != ".xlsx") continue;
    const std::string stem = entry.path().stem().string();
    EXPECT_TRUE(std::any_of(BrokenWorkbooks().begin(), BrokenWorkbooks().end(), [&](const Broken& book) {
      return stem == book.name;
    })) << stem;
  }
}

// --- absurd models as text files -------------------------------------------------------------------------------------

class AbsurdTest : public ProgramTest {
 protected:
  void ExpectEnd(int expected, const std::string& label) {
    const auto begin = std::chrono::steady_clock::now();
    const int code =
        Run(Write(text), {"--export", File("a.json"), "--export", File("a.csv"), "--export", File("a.vtp")});
    EXPECT_EQ(code, expected) << label << "\n" << err.substr(0, 2000);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(60)) << label;
    if (code == 0) {
      EXPECT_NO_THROW(Json("a.json")) << label;
    }
  }
};

TEST_F(AbsurdTest, CellsWithoutEndAreRefused) {
  for (const char* cells : {"1000000000 1", "1 1e9", "1e9 1e9", "-1e9 -1e9", "30000 30000", "1e300 1e300"}) {
    text.primitives[1] = std::string("silver\tPlate rect size 1 1 cells ") + cells + " R X 180 T 0 0 2";
    ExpectEnd(3, cells);
    EXPECT_TRUE(ErrHas("more than this program can hold"));
    EXPECT_TRUE(ErrHas("Plate rect"));
  }
}

TEST_F(AbsurdTest, OneRowWithManyCellsAndNoneEnds) {
  for (const char* cells : {"3e9 0", "0 3e9", "-1 1e10", "1e308 0"}) {
    text.primitives = {std::string("T5\tThruster thr size 1 1 cells ") + cells};
    const int code = Run(Write(text));
    EXPECT_THAT(code, ::testing::AnyOf(0, 3)) << cells;
    EXPECT_FALSE(err.empty());
  }
}

TEST_F(AbsurdTest, OddCountsRun) {
  for (const char* cells : {"0 0", "-4 -4", "-4 4", "0 4", "2.5 2.5", "nan nan", "inf -inf", "x y", "1e999 1", ""}) {
    text.primitives[1] = std::string("silver\tPlate rect size 1 1 cells ") + cells;
    ExpectEnd(0, cells);
  }
}

TEST_F(AbsurdTest, AModelWithoutRowsRuns) {
  text.primitives.clear();
  ExpectEnd(0, "no rows");
  EXPECT_TRUE(ErrHas("The model do not have any thrusters"));
}

TEST_F(AbsurdTest, ManyRowsRun) {
  for (int k = 0; k < 5000; ++k) {
    text.primitives.push_back("gold\tP" + std::to_string(k) + " rect size 0.1 0.1 cells 1 1 T " +
                              std::to_string(k % 70) + " " + std::to_string(k / 70) + " 5");
  }
  ExpectEnd(0, "5000 rows");
  EXPECT_TRUE(OutHas("Primitives  5003"));
}

TEST_F(AbsurdTest, LongTextsRun) {
  std::string tail;
  while (tail.size() < 30000) tail += " T 0.001 0 0 R X 1";
  text.primitives[1] = "silver\tPlate rect size 1 1 cells 4 4" + tail;
  ExpectEnd(0, "a long placement");
  text.primitives[1] = "silver\t" + std::string(30000, 'x') + " rect size 1 1 cells 4 4 T 0 0 2";
  ExpectEnd(0, "a long name");
  text.primitives[1] = std::string(30000, 'm') + "\tPlate rect size 1 1 cells 4 4 T 0 0 2";
  text.title = std::string(30000, 't');
  text.directives = "T " + std::string(30000, '9');
  ExpectEnd(0, "a long title");
  text.directives.clear();
  for (int k = 0; k < 6000; ++k) text.directives += "TA " + std::to_string(k + 1) + " ";
  ExpectEnd(0, "many directives");
}

TEST_F(AbsurdTest, HugeTablesInCellsRun) {
  std::string pairs;
  for (int k = 1; k <= 10000; ++k) pairs += (k == 1 ? "" : "|") + std::to_string(k) + " 1";
  text.database[2] = "T5\t\t3.79\t230\t" + pairs + "\t\t\t60\t\t\t" + pairs + "\t" + pairs + "\t\t\t\t90\t1000";
  text.database.back() = "Xe+\tsilver\t\t\t\t\t\t" + pairs + "\t" + pairs + "\t" + pairs;
  ExpectEnd(0, "10000 pairs");
  EXPECT_TRUE(ErrHas("Error fautea_SpaceApplicationthrusterData"));
  EXPECT_TRUE(ErrHas("Subscript out of range"));
}

TEST_F(AbsurdTest, WordsForNumbersRun) {
  text.database[2] = "T5\tnan\tnan\tinf\t-inf\tx\ty\tz\t1e999\t-\t+\t.\t,\te5\t1e\t\t\tmodel";
  text.database[11] = "Xe+\t\tcharge\tmass";
  ExpectEnd(0, "words");
  for (const char* model : {"-1", "2.5", "7", "1e300", "-1e300", "1000.5"}) {
    text.database[2] = std::string("T5\t\t3.79\t230\t1\t1\t1\t60\t\t\t\t\t\t\t\t\t") + model;
    ExpectEnd(0, model);
    EXPECT_TRUE(ErrHas("Model type not existing."));
  }
}

TEST_F(AbsurdTest, ADatabaseOfManyRowsIsTold) {
  for (int k = 0; k < 5000; ++k) text.database.push_back("Xe+\tsilver\t100\t0.5\t0.8\t45\t1");
  ExpectEnd(0, "5000 yields");
  EXPECT_TRUE(ErrHas("DATABASE Table 9 size shall be updated to support more than 1000 lines. Ask Maravo to Update"));
}

}  // namespace
}  // namespace orv::testing
