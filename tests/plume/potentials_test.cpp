#include "plume/potentials.h"

#include <cmath>
#include <gtest/gtest.h>
#include <memory>

#include "plume/effect_model.h"

namespace orv::testing {
namespace {

// A thruster, and a primitive of 3 x 2 cells whose row holds the text in column 3.
std::unique_ptr<EffectModel> WithText(const std::string& text,
                                      const std::string& spec = "P rect size 1 1 cells 3 2 T 0 0 1") {
  auto model = std::make_unique<EffectModel>(
      std::vector<std::array<std::string, 2>>{{"HT", "T thr size 0.01 0.01 cells 1 1"}, {"silver", spec}});
  model->table(2, 3) = text;
  model->Build();
  return model;
}

void Read(EffectModel& model) {
  PotentialTable(model.table, model.count, 3, model.cells, model.reader);
}

struct TableCase {
  const char* text;
  double volts[3][2];  // by i, j
};

TEST(Potentials, TheThreeTableFormsWalkTheCellsInTheirOrder) {
  const TableCase cases[] = {
      {"Vtable 1 10 | 2 20 | 3 30 | 1 40 | 2 50 | 3 60", {{10, 40}, {20, 50}, {30, 60}}},
      {"V 1 10 | 2 20 | 3 30 | 1 40 | 2 50 | 3 60", {{10, 40}, {20, 50}, {30, 60}}},
      {"  vtablesym 3 10 | 2 20 | 1 30 | 3 40 | 2 50 | 1 60", {{60, 30}, {50, 20}, {40, 10}}},
      {"VtableSymMajor 3 10 | 2 20 | 1 30 | 3 40 | 2 50 | 1 60", {{30, 60}, {20, 50}, {10, 40}}},
  };
  for (const TableCase& c : cases) {
    SCOPED_TRACE(c.text);
    const auto owner = WithText(c.text);
    EffectModel& model = *owner;
    Read(model);
    EXPECT_EQ(model.Q(2, 0, 0, 63), 1);
    EXPECT_EQ(model.Q(1, 0, 0, 63), 0);
    for (int i = 1; i <= 3; ++i) {
      for (int j = 1; j <= 2; ++j) EXPECT_EQ(model.Q(2, i, j, 63), c.volts[i - 1][j - 1]) << i << " " << j;
    }
    EXPECT_TRUE(model.dialogs.boxes.empty());
  }
}

TEST(Potentials, MismatchesAreToldAndTheValuesStoredAllTheSame) {
  const std::pair<const char*, const char*> cases[] = {
      {"Vtable 1 10 | 9 20 | 3 30 | 1 40 | 2 50 | 3 60", "faute xx7 "},
      {"VtableSym 3 10 | 9 20 | 1 30 | 3 40 | 2 50 | 1 60", "faute xx8 "},
      {"VtableSymMajor 3 10 | 9 20 | 1 30 | 3 40 | 2 50 | 1 60", "faute xx9 "}};
  for (const auto& [text, label] : cases) {
    SCOPED_TRACE(text);
    const auto owner = WithText(text);
    EffectModel& model = *owner;
    Read(model);
    ASSERT_EQ(model.dialogs.log.size(), 1U);
    EXPECT_EQ(model.dialogs.log[0], label);
    EXPECT_NE(model.Q(2, 2, 1, 63) + model.Q(2, 2, 2, 63), 0);
  }
}

TEST(Potentials, ATableOfAnotherLengthIsTold) {
  const auto owner = WithText("Vtable 1 10 | 2 20 | 3 30");
  EffectModel& model = *owner;
  Read(model);
  EXPECT_EQ(model.dialogs.log.back(), "faute xx6 ");
  EXPECT_EQ(model.dialogs.log.size(), 4U) << "and one mismatch for each missing row";
  EXPECT_EQ(model.Q(2, 3, 1, 63), 30);
  EXPECT_EQ(model.Q(2, 1, 2, 63), 0);
}

// Rows that would all be right, were there cells for them.
std::string Rows(int count, int NI) {
  std::string text = "Vtable ";
  for (int row = 0; row < count; ++row) text += std::to_string(row % NI + 1) + " " + std::to_string(10 + row) + "|";
  return text;
}

TEST(Potentials, RowsBeyondTheCellsAreToldAndLeftOut) {
  struct Case {
    int NI, NJ, rows;
  };
  for (const Case& c : {Case{20, 20, 400}, Case{20, 20, 401}, Case{20, 20, 2000}, Case{3, 2, 7}, Case{3, 2, 500}}) {
    SCOPED_TRACE(::testing::Message() << c.NI << " x " << c.NJ << ", " << c.rows << " rows");
    const auto owner = WithText(
        Rows(c.rows, c.NI), "P rect size 1 1 cells " + std::to_string(c.NI) + " " + std::to_string(c.NJ) + " T 0 0 1");
    EffectModel& model = *owner;
    Read(model);
    const std::vector<std::string> expected(c.rows == c.NI * c.NJ ? 0 : 1, "faute xx6 ");
    EXPECT_EQ(model.dialogs.log, expected);
    EXPECT_EQ(model.dialogs.boxes.size(), expected.size()) << "no failure beside it";
    EXPECT_EQ(model.Q(2, 0, 0, 63), 1);
    for (int j = 1; j <= c.NJ; ++j) {
      for (int i = 1; i <= c.NI; ++i) EXPECT_EQ(model.Q(2, i, j, 63), 10 + (j - 1) * c.NI + i - 1) << i << " " << j;
    }
  }
}

TEST(Potentials, TheCellLeavesItsRow) {
  EffectModel model({{"HT", "T thr size 0.01 0.01 cells 1 1"}, {"silver", "P rect size 1 1 cells 1 1 T 0 0 1"}});
  model.table(2, 3) = "V 1 5";
  model.table(2, 4) = "note";
  model.table(2, 6) = "Rot% 0 1";
  model.Build();
  Read(model);
  EXPECT_EQ(model.table(2, 3), "Rot% 0 1");
  EXPECT_EQ(model.table(2, 4), "note");
  EXPECT_EQ(model.table(2, 6), "");
  EXPECT_EQ(model.Q(2, 1, 1, 63), 5);
}

TEST(Potentials, TheFunctionFollowsItsLaws) {
  // Along i angles 0, 90, 180, 270, 360; along j 0, 180, 360.
  const auto owner = WithText("PotentialFuntion 10 110 COS 1 SlopeDownUp 0", "C cyl size 0.5 1 1 cells 5 3 T 0 0 1");
  EffectModel& model = *owner;
  Read(model);
  EXPECT_TRUE(model.dialogs.boxes.empty());
  for (int i = 1; i <= 5; ++i) {
    for (int j = 1; j <= 3; ++j) {
      const double fi = (std::cos((i - 1) * 90 * 3.14159265358979 / 180) + 1) / 2;
      const double fj = j == 2 ? 0 : 1;
      EXPECT_NEAR(model.Q(2, i, j, 63), 10 + fi * fj * 100, 1e-12) << i << " " << j;
    }
  }
}

TEST(Potentials, TheRisingSlopeAndTheMultiplier) {
  const auto owner = WithText("PotentialFuntion 0 1 sin 2 slopedownup 1", "C cyl size 0.5 1 1 cells 5 5 T 0 0 1");
  EffectModel& model = *owner;
  Read(model);
  for (int i = 1; i <= 5; ++i) {
    for (int j = 1; j <= 5; ++j) {
      const double fi = (std::cos(2 * (i - 1) * 90 * 3.14159265358979 / 180) + 1) / 2;
      const double fj = 1 - std::abs(j - 3) / 2.0;
      EXPECT_NEAR(model.Q(2, i, j, 63), fi * fj, 1e-12) << i << " " << j;
    }
  }
}

TEST(Potentials, OneCellInADirectionIsARunTimeFailure) {
  const auto owner = WithText("PotentialFuntion 0 100 COS 1 COS 1", "P rect size 1 1 cells 1 2 T 0 0 1");
  EffectModel& model = *owner;
  Read(model);
  ASSERT_FALSE(model.dialogs.boxes.empty());
  EXPECT_EQ(model.dialogs.boxes[0].text, "Overflow") << "0 / 0";
  EXPECT_EQ(model.dialogs.boxes[0].title, "Error fautePotentialTable");
}

TEST(Potentials, APrimitiveWithoutAGridHasNoAnglesForALaw) {
  const std::pair<const char*, std::vector<std::string>> cases[] = {
      {"PotentialFuntion 0 100 COS 1", {"faute x10 "}},
      {"PotentialFuntion 0 100 COS 1 SlopeDownUp 0", {"faute x11 ", "faute x10 "}}};  // the log has its last line first
  for (const auto& [text, labels] : cases) {
    SCOPED_TRACE(text);
    EffectModel model({{"HT", "T thr size 0.01 0.01 cells 3 3"}, {"silver", "P rect size 1 1 cells 3 3 T 0 0 1"}});
    model.Build();
    model.table(2, 3) = text;
    Read(model);
    EXPECT_TRUE(model.dialogs.log.empty()) << "a plate has its own";
    model.table(1, 3) = text;
    Read(model);
    EXPECT_EQ(model.dialogs.log, labels);
    EXPECT_EQ(model.dialogs.boxes.size(), labels.size());
    for (const ScriptedDialogs::Box& box : model.dialogs.boxes) EXPECT_EQ(box.title, "Petite erreur");
    EXPECT_NEAR(model.Q(1, 1, 1, 63), 100, 1e-12) << "the law holds all the same";
    EXPECT_NEAR(model.Q(1, 2, 1, 63), 0, 1e-12);
  }
}

TEST(Potentials, AFaultyParameterListIsTold) {
  const auto owner = WithText("PotentialFuntion 5");
  EffectModel& model = *owner;
  Read(model);
  EXPECT_EQ(model.dialogs.log.back(), "faute xx9 ");
}

}  // namespace
}  // namespace orv::testing
