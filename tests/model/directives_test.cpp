#include "model/directives.h"

#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "numerics/text.h"
#include "support/scripted_dialogs.h"

namespace orv {
namespace {

struct Parsing {
  explicit Parsing(const std::string& line) : directives(ParseDirectives(line, reader, captured)) {}
  testing::ScriptedDialogs dialogs;
  ErrorPrompt prompt{dialogs};
  CellText reader{prompt, Locale{}};
  std::vector<std::string> captured;
  Directives directives;
};

TEST(Directives, HaveTheirDefaults) {
  for (const char* line : {"", "   ", "x", "T"}) {
    SCOPED_TRACE(line);
    const Parsing parsing(line);
    const Directives& d = parsing.directives;
    EXPECT_EQ(d.MomentOrigin, (std::array<double, 4>{2, 0, 0, 0}));
    EXPECT_EQ(d.RotationFrom, 0);
    EXPECT_EQ(d.RotationTo, 360);
    EXPECT_EQ(d.RotationStep, 10);
    EXPECT_EQ(d.NotHidden, 0);
    EXPECT_EQ(d.Twall, 300);
    EXPECT_EQ(d.TableList, std::vector<double>{0});
    EXPECT_EQ(d.LogScale, 0);
    EXPECT_EQ(d.RectoOnly, 0);
    EXPECT_EQ(d.SpectrumMode, -1);
    EXPECT_EQ(d.SilentMode, 0);
    EXPECT_EQ(d.Haccuracy, 0);
    EXPECT_EQ(d.MomentWC, 0);
    EXPECT_TRUE(parsing.dialogs.boxes.empty());
  }
}

struct Switch {
  const char* word;
  double Directives::*value;
};
const Switch kSwitches[] = {{"NotHidden", &Directives::NotHidden},   {"Twall", &Directives::Twall},
                            {"Log", &Directives::LogScale},          {"Recto", &Directives::RectoOnly},
                            {"Spectrum", &Directives::SpectrumMode}, {"Haccuracy", &Directives::Haccuracy},
                            {"MomentWC", &Directives::MomentWC}};

TEST(Directives, OfOneNumber) {
  struct Row {
    const char* behind;
    double expected;
  };
  for (const Switch& one : kSwitches) {
    for (const Row& row : {Row{"", 1}, Row{" 1", 1}, Row{" 2", 2}, Row{" 0", 0}, Row{" 0.0", 0}, Row{"   7.5", 7.5},
                           Row{" -1", -1}, Row{" 0x", 0}, Row{" 5 0", 5}, Row{" 0 5", 0}, Row{" &", 1}}) {
      const std::string line = one.word + std::string(row.behind);
      SCOPED_TRACE(line);
      EXPECT_EQ(Parsing(line).directives.*one.value, row.expected);
    }
  }
  EXPECT_EQ(Parsing("Si 1").directives.SilentMode, 1);
  EXPECT_EQ(Parsing("Silent").directives.SilentMode, 1);
  EXPECT_EQ(Parsing("Si 0").directives.SilentMode, 0);
}

TEST(Directives, AreKnownByTwoLettersInAnyCase) {
  for (const char* line : {"re", "recto", "RECTO", "Re 1", "rEgardless 1", "x recto", "log 0 re 1"}) {
    SCOPED_TRACE(line);
    EXPECT_EQ(Parsing(line).directives.RectoOnly, 1);
  }
  EXPECT_EQ(Parsing("r 1").directives.RectoOnly, 0);
  EXPECT_EQ(Parsing("recto5").directives.RectoOnly, 1) << "the word is skipped to its end";
}

TEST(Directives, StandInAnyOrder) {
  const Parsing parsing("Haccuracy 1 Log 2 NotHidden T 1 -2 3.5 Twall 350 Recto 0");
  EXPECT_EQ(parsing.directives.Haccuracy, 1);
  EXPECT_EQ(parsing.directives.LogScale, 2);
  EXPECT_EQ(parsing.directives.Twall, 350);
  EXPECT_EQ(parsing.directives.RectoOnly, 0);
  EXPECT_EQ(parsing.directives.NotHidden, 1);
  EXPECT_EQ(parsing.directives.MomentOrigin, (std::array<double, 4>{2, 1, -2, 3.5}));
}

TEST(Directives, TheFirstOccurrenceCounts) {
  EXPECT_EQ(Parsing("Log 3 Log 4").directives.LogScale, 3);
}

TEST(Directives, ThePointOfTheMoments) {
  const Parsing parsing("T 0.5 1e1 -3 Log 1");
  EXPECT_EQ(parsing.directives.MomentOrigin, (std::array<double, 4>{2, 0.5, 10, -3}));
  EXPECT_TRUE(parsing.dialogs.boxes.empty());
  const Parsing tooFew("t 1 2");
  EXPECT_EQ(tooFew.directives.MomentOrigin, (std::array<double, 4>{2, 1, 2, 0}));
  EXPECT_EQ(
      tooFew.dialogs.Count("Input data in Excel sheet not correct: line ==>1 2<== !   Please read user manual   "), 1);
}

TEST(Directives, TheRotation) {
  const Parsing parsing("Rotation 10 350 20");
  EXPECT_EQ(parsing.directives.RotationFrom, 10);
  EXPECT_EQ(parsing.directives.RotationTo, 350);
  EXPECT_EQ(parsing.directives.RotationStep, 20);
  // The word holds the letters of the table list too.
  EXPECT_EQ(parsing.directives.TableList, (std::vector<double>{3, 10, 350, 20}));
  EXPECT_TRUE(parsing.dialogs.boxes.empty());
  EXPECT_EQ(Parsing("Ro 10 350 20").directives.TableList, std::vector<double>{0});
  const Parsing bare("Ro");
  EXPECT_EQ(bare.directives.RotationTo, 0) << "present, so its numbers are read";
  EXPECT_EQ(bare.dialogs.Count("Input data in Excel sheet not correct: line ==><== !"), 1);
}

TEST(Directives, TheTableList) {
  struct Row {
    const char* line;
    std::vector<double> list;
  };
  for (const Row& row : {Row{"Table 1 3 5", {3, 1, 3, 5}}, Row{"Table 4 Log 1", {1, 4}}, Row{"Table", {0}},
                         Row{"Table 0 4", {0}}, Row{"Table 2 0 4", {1, 2}}, Row{"ta 7", {1, 7}},
                         Row{"Table 1,2;3", {2, 1.2, 3}}, Row{"Table 1, 2, 3", {3, 1, 2, 3}}}) {
    SCOPED_TRACE(row.line);
    EXPECT_EQ(Parsing(row.line).directives.TableList, row.list);
  }
}

TEST(Directives, TheTableListHasAtMost100Numbers) {
  for (const int count : {99, 100, 101, 1000}) {
    SCOPED_TRACE(count);
    std::string line = "Table";
    for (int k = 1; k <= count; ++k) line += " " + std::to_string(k);
    const Parsing parsing(line);
    const std::size_t kept = static_cast<std::size_t>(std::min(count, 100));
    ASSERT_EQ(parsing.directives.TableList.size(), kept + 1);
    EXPECT_EQ(parsing.directives.TableList[0], static_cast<double>(kept));
    EXPECT_EQ(parsing.directives.TableList[kept], static_cast<double>(kept));
  }
}

// As many as a cell can hold.
TEST(Directives, ALongTableListIsNoFailure) {
  std::string line = "Table";
  for (int k = 0; k < 16000; ++k) line += " 7";
  std::size_t size = 0;
  EXPECT_NO_THROW(size = Parsing(line).directives.TableList.size());
  EXPECT_EQ(size, 101U);
}

TEST(Directives, AreFoundInsideOtherWords) {
  struct Row {
    const char* line;
    std::function<double(const Directives&)> value;
    double expected;
  };
  const auto recto = [](const Directives& d) { return d.RectoOnly; };
  const auto twall = [](const Directives& d) { return d.Twall; };
  const auto hidden = [](const Directives& d) { return d.NotHidden; };
  const auto moment = [](const Directives& d) { return d.MomentOrigin[1]; };
  for (const Row& row :
       {Row{"Area 5 Recto 1", recto, 5}, Row{"Fire Recto 0", recto, 1}, Row{"Fire 0 Recto 1", recto, 0},
        Row{"MomentWC 1", twall, 1}, Row{"MomentWC 5 Twall 300", twall, 5}, Row{"unknown 3 NotHidden 1", hidden, 3},
        Row{"Silent 4 5 6", moment, 4}, Row{"Test 4 5 6", moment, 4}}) {
    SCOPED_TRACE(row.line);
    const Parsing parsing(row.line);
    EXPECT_EQ(row.value(parsing.directives), row.expected);
    EXPECT_FALSE(parsing.captured.empty());
    for (const std::string& text : parsing.captured) EXPECT_TRUE(StartsWith(text, "_")) << "logged only: " << text;
  }
}

TEST(Directives, TheRealWordBeforeAnInnerOneCounts) {
  const Parsing parsing("Twall 310 MomentWC 1");
  EXPECT_EQ(parsing.directives.Twall, 310);
  EXPECT_EQ(parsing.directives.MomentWC, 1);
  EXPECT_TRUE(parsing.captured.empty());
}

// A keyword at the end of the line looks for its "0" in the text of the directive handled before it.
TEST(Directives, ABareKeywordDependsOnTheOneBefore) {
  struct Row {
    const char* line;
    double Directives::*value;
    double expected;
  };
  for (const Row& row :
       {Row{"NotHidden 0 Recto", &Directives::RectoOnly, 0}, Row{"NotHidden 1 Recto", &Directives::RectoOnly, 1},
        Row{"Log 0 Recto", &Directives::RectoOnly, 0}, Row{"Ro 0 360 10 Recto", &Directives::RectoOnly, 0},
        Row{"Ro 10 360 10 Recto", &Directives::RectoOnly, 1}, Row{"T 0 0 0 Log", &Directives::LogScale, 0},
        Row{"Table 0 Log", &Directives::LogScale, 0}, Row{"Table 1 Log", &Directives::LogScale, 1},
        // "Haccuracy" is handled behind "Recto", so its zero comes too late
        Row{"Haccuracy 0 Recto", &Directives::RectoOnly, 1}, Row{"Recto 0 Haccuracy", &Directives::Haccuracy, 0},
        Row{"NotHidden 0 Log 1 Recto", &Directives::RectoOnly, 1}, Row{"Recto", &Directives::RectoOnly, 1}}) {
    SCOPED_TRACE(row.line);
    EXPECT_EQ(Parsing(row.line).directives.*row.value, row.expected);
  }
}

TEST(Directives, SelectTheConstants) {
  struct Row {
    double accuracy;
    double charge;
    double avogadro;
  };
  for (const Row& row : {Row{0, 1.6e-19, 6.023e+23}, Row{1, 1.60218e-19, 6.02214e+23}, Row{2, 1.6e-19, 6.023e+23}}) {
    SCOPED_TRACE(row.accuracy);
    Directives directives;
    directives.Haccuracy = row.accuracy;
    const PhysicalConstants constants = ConstantsOf(directives);
    EXPECT_EQ(constants.ElementaryCharge, row.charge);
    EXPECT_EQ(constants.AvogadroNumber, row.avogadro);
    EXPECT_EQ(constants.BoltzmannConstant, 1.3806505e-23);
  }
}

TEST(Directives, SurviveAnyLine) {
  const std::string many(30000, 'T');
  for (const std::string& line :
       {many, "T " + many, std::string(30000, ' ') + "re", std::string("RORORO NONO TWTW"), std::string("re\xFF\xFE 1"),
        std::string("re 1e999"), std::string("Table 1e999 2"), std::string("re\t1"), std::string("T T T T T T")}) {
    SCOPED_TRACE(line.substr(0, 20));
    EXPECT_NO_THROW(Parsing{line});
  }
}

}  // namespace
}  // namespace orv
