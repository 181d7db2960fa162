#include "plume/sputter_yield.h"

#include <cmath>
#include <gtest/gtest.h>
#include <random>

#include "numerics/number_format.h"
#include "reference/plain_sputter_yield.h"
#include "support/scripted_dialogs.h"

namespace orv::testing {
namespace {

using Row = std::array<double, 5>;

const char* const kExtrapolation =
    "Warning : Extrapolation in energy for sputtering Yield: there should be always a max value. HERE we use the "
    "Square "
    "root law";

class SputterYield : public ::testing::Test {
 protected:
  static YieldRecords Rows(const std::vector<Row>& gas1, const std::vector<Row>& gas2) {
    YieldRecords records;
    const auto last = static_cast<std::ptrdiff_t>(std::max({gas1.size(), gas2.size(), std::size_t{1}}));
    records.YieldRows.Size({Bounds{1, 2}, Bounds{0, last}, Bounds{1, 5}});
    int gas = 0;
    for (const auto* rows : {&gas1, &gas2}) {
      ++gas;
      records.YieldRowCount[static_cast<std::size_t>(gas)] = static_cast<int>(rows->size());
      for (std::size_t k = 0; k < rows->size(); ++k) {
        for (std::size_t f = 0; f < 5; ++f) records.YieldRows(gas, k + 1, f + 1) = (*rows)[k][f];
      }
    }
    return records;
  }
  static YieldRecords Curves(const std::array<std::string, 3>& gas1, const std::array<std::string, 3>& gas2) {
    YieldRecords records;
    records.YieldRowCount = {0, -1, -1};
    for (std::size_t f = 0; f < 3; ++f) {
      records.YieldRows(1, 1, f + 1) = gas1[f];
      records.YieldRows(2, 1, f + 1) = gas2[f];
    }
    return records;
  }
  YieldTable Prepare(const YieldRecords& records) { return {records, cache, reader}; }
  // The figures of gas 1 at an energy.
  GasYield At(double E, const std::vector<Row>& rows) {
    YieldTable table = Prepare(Rows(rows, rows));
    YieldAtEnergy at;
    table.AtEnergy(E, at, told);
    return at.gas[1];
  }

  ScriptedDialogs dialogs;
  ErrorPrompt prompt{dialogs};
  CellText reader{prompt, Locale{}};
  TableCache cache;
  bool told = false;
};

const std::vector<Row> kSilver = {{300, 1.5, 2.4, 55, 1.2}, {100, 0.5, 0.9, 50, 0.8}, {500, 2.5, 4.1, 60, 1.6}};

TEST_F(SputterYield, ARowsOwnEnergyGivesThatRow) {
  const GasYield at = At(300, kSilver);
  EXPECT_EQ(at.yieldAtNormal, 1.5);
  EXPECT_EQ(at.yieldAtPeak, 2.4);
  EXPECT_EQ(at.peakAngleDeg, 55);
  EXPECT_EQ(at.bettaEmission, 1.2);
  EXPECT_NEAR(at.exponent, -std::log(2.4 / 1.5) / std::log(std::cos(55 * kPi15 / 180)), 1e-14);
  EXPECT_TRUE(dialogs.boxes.empty());
}

TEST_F(SputterYield, BetweenRowsByRootInverseRootAndEnergy) {
  const GasYield at = At(200, kSilver);
  const double s1 = 10;
  const double s2 = std::sqrt(300.0);
  const double s = std::sqrt(200.0);
  EXPECT_NEAR(at.yieldAtNormal, 0.5 + 1.0 / (s2 + 0.001 - s1) * (s - s1), 1e-14);
  EXPECT_NEAR(at.yieldAtPeak, 0.9 + 1.5 / (s2 + 0.001 - s1) * (s - s1), 1e-14);
  EXPECT_NEAR(at.peakAngleDeg, 50 + 5.0 / (1 / s2 + 1e-06 - 1 / s1) * (1 / s - 1 / s1), 1e-12);
  EXPECT_NEAR(at.bettaEmission, 0.8 + 0.4 / (200.001) * 100, 1e-14);
  EXPECT_NEAR(at.exponent,
              -std::log(at.yieldAtPeak / at.yieldAtNormal) / std::log(std::cos(at.peakAngleDeg * kPi15 / 180)), 1e-13);
}

TEST_F(SputterYield, AboveTheRowsTheRootLawToldOnce) {
  const GasYield at = At(2000, kSilver);
  EXPECT_NEAR(at.yieldAtNormal, 2.5 * 2, 1e-14);
  EXPECT_NEAR(at.yieldAtPeak, 4.1 * 2, 1e-14);
  EXPECT_EQ(at.peakAngleDeg, 60);
  EXPECT_EQ(at.bettaEmission, 1.6);
  EXPECT_NEAR(at.exponent, -std::log(4.1 / 2.5) / std::log(std::cos(60 * kPi15 / 180)), 1e-13);
  ASSERT_EQ(dialogs.boxes.size(), 1U);
  EXPECT_EQ(dialogs.boxes[0].text, kExtrapolation);
  EXPECT_EQ(dialogs.boxes[0].title, "Required to update the sputtering DATABASE");
  EXPECT_EQ(dialogs.boxes[0].icon, Icon::Information);
  At(3000, kSilver);
  EXPECT_EQ(dialogs.boxes.size(), 1U);
}

TEST_F(SputterYield, BelowTheRowsTheSquareLaw) {
  const GasYield at = At(50, kSilver);
  EXPECT_NEAR(at.yieldAtNormal, 0.5 / 4, 1e-15);
  EXPECT_NEAR(at.yieldAtPeak, 0.9 / 4, 1e-15);
  EXPECT_EQ(at.peakAngleDeg, 50);
  EXPECT_EQ(at.bettaEmission, 0.8);
  EXPECT_NEAR(at.exponent, -std::log(0.9 / 0.5) / std::log(std::cos(50 * kPi15 / 180)), 1e-13);
}

TEST_F(SputterYield, NoEnergyGivesNoYield) {
  const GasYield at = At(0, kSilver);
  EXPECT_EQ(at.yieldAtNormal, 0);
  EXPECT_EQ(at.yieldAtPeak, 0);
  EXPECT_EQ(at.exponent, -1);
  YieldTable table = Prepare(Rows(kSilver, kSilver));
  YieldAtEnergy figures;
  table.AtEnergy(0, figures, told);
  for (const double th : {0.0, 30.0, 50.0, 70.0, 90.0}) {
    EXPECT_EQ(SputtYield_at_ion(th, 1, figures, table, 0, prompt), 0) << th;
  }
  EXPECT_TRUE(dialogs.boxes.empty());
}

TEST_F(SputterYield, ARowOfNoEnergyIsNone) {
  const std::vector<Row> rows = {{0, 99, 99, 10, 99}, {100, 0.5, 0.9, 50, 0.8}};
  EXPECT_NEAR(At(50, rows).yieldAtNormal, 0.5 / 4, 1e-15);
  EXPECT_EQ(At(100, rows).yieldAtNormal, 0.5);
}

TEST_F(SputterYield, OfRowsWithOneEnergyTheFirstCounts) {
  const std::vector<Row> rows = {{100, 0.5, 0.9, 50, 0.8}, {100, 5, 9, 40, 8}};
  EXPECT_EQ(At(100, rows).yieldAtNormal, 0.5);
  EXPECT_NEAR(At(50, rows).yieldAtPeak, 0.9 / 4, 1e-15);
}

TEST_F(SputterYield, NoNormalYieldFailsInTheLogarithm) {
  YieldTable table = Prepare(Rows({{100, 0, 0.9, 50, 0.8}}, kSilver));
  YieldAtEnergy at;
  at.gas[1].exponent = 17;
  at.gas[2].yieldAtNormal = 18;
  try {
    table.AtEnergy(100, at, told);
    FAIL();
  } catch (const RuntimeFailure& failure) {
    EXPECT_EQ(failure.number(), FailureNumber::DivisionByZero);
  }
  EXPECT_EQ(at.gas[1].yieldAtPeak, 0.9);
  EXPECT_EQ(at.gas[1].bettaEmission, 0.8);
  EXPECT_EQ(at.gas[1].exponent, 17);       // as it was
  EXPECT_EQ(at.gas[2].yieldAtNormal, 18);  // the stage ended
}

TEST_F(SputterYield, AGasWithoutRowsFails) {
  YieldTable table = Prepare(Rows(kSilver, {}));
  YieldAtEnergy at;
  EXPECT_THROW(table.AtEnergy(100, at, told), RuntimeFailure);
  EXPECT_EQ(at.gas[1].yieldAtNormal, 0.5);
  EXPECT_EQ(at.gas[2].yieldAtNormal, 0);
}

TEST_F(SputterYield, RisesToThePeakAndFallsToZero) {
  YieldTable table = Prepare(Rows(kSilver, {{100, 0.7, 1.0, 40, 0.9}, {900, 7, 10, 45, 0.9}}));
  YieldAtEnergy at;
  table.AtEnergy(300, at, told);
  const auto yield = [&](double th, int gas = 1) { return SputtYield_at_ion(th, gas, at, table, 0, prompt); };
  EXPECT_EQ(yield(0), 1.5);
  EXPECT_NEAR(yield(55), 2.4, 1e-13);
  EXPECT_NEAR(yield(30), 1.5 * std::pow(std::cos(30 * kPi15 / 180), -at.gas[1].exponent), 1e-13);
  EXPECT_GT(yield(30), yield(0));
  EXPECT_NEAR(yield(72.5), 1.2, 1e-13);
  EXPECT_EQ(yield(90), 0);
  EXPECT_NEAR(yield(at.gas[2].peakAngleDeg, 2), at.gas[2].yieldAtPeak, 1e-12);
  EXPECT_TRUE(dialogs.boxes.empty());
}

TEST_F(SputterYield, CheckCasesTakeTheInverseExponent) {
  YieldTable table = Prepare(Rows(kSilver, kSilver));
  YieldAtEnergy at;
  table.AtEnergy(300, at, told);
  const double f = at.gas[1].exponent;
  const double cosine = std::cos(30 * kPi15 / 180);
  const auto yield = [&](double MaiOrigine) { return SputtYield_at_ion(30, 1, at, table, MaiOrigine, prompt); };
  EXPECT_NEAR(yield(1), 1.5 * std::pow(cosine, -1 / f), 1e-14);
  EXPECT_NEAR(yield(3), 1.5 * std::pow(cosine, -1 / f), 1e-14);
  for (const double other : {0.0, 2.0, 4.0}) EXPECT_NEAR(yield(other), 1.5 * std::pow(cosine, -f), 1e-14) << other;
  at.gas[1].exponent = 0;
  EXPECT_THROW(yield(1), RuntimeFailure);
}

TEST_F(SputterYield, AnglesAboveNinetyAreTold) {
  YieldTable table = Prepare(Rows(kSilver, kSilver));
  YieldAtEnergy at;
  table.AtEnergy(300, at, told);
  EXPECT_NEAR(SputtYield_at_ion(91, 1, at, table, 0, prompt), -2.4 / 35, 1e-13);
  ASSERT_EQ(dialogs.boxes.size(), 2U);
  EXPECT_EQ(dialogs.boxes[0].text, "error SputtYield_at_ion If th > 90  ");
  EXPECT_EQ(dialogs.boxes[0].icon, Icon::Critical);
  EXPECT_EQ(dialogs.boxes[1].text, "Do you want to abort? See Hallam if the error cannot be solved ");
  dialogs.boxes.clear();
  at.gas[1].peakAngleDeg = 91;
  EXPECT_GT(SputtYield_at_ion(30, 1, at, table, 0, prompt), 1.5);
  ASSERT_EQ(dialogs.boxes.size(), 2U);
  EXPECT_EQ(dialogs.boxes[0].text, "error SputtYield_at_ion If ThetamaxDeg > 90 ");
  dialogs.answers = {Answer::Abort};
  EXPECT_THROW(SputtYield_at_ion(30, 1, at, table, 0, prompt), ProgramEnd);
}

TEST_F(SputterYield, APeakAtNinetyDegreesHasNoFallBehindIt) {
  YieldTable table = Prepare(Rows({{300, 1.5, 2.4, 90, 1.2}}, kSilver));
  YieldAtEnergy at;
  table.AtEnergy(300, at, told);
  ASSERT_EQ(at.gas[1].peakAngleDeg, 90);
  EXPECT_NEAR(SputtYield_at_ion(90, 1, at, table, 0, prompt), 2.4, 1e-12);
  EXPECT_EQ(SputtYield_at_ion(0, 1, at, table, 0, prompt), 1.5);
  EXPECT_TRUE(dialogs.boxes.empty());
  try {
    SputtYield_at_ion(91, 1, at, table, 0, prompt);
    FAIL();
  } catch (const RuntimeFailure& failure) {
    EXPECT_EQ(failure.number(), FailureNumber::DivisionByZero);
  }
  ASSERT_EQ(dialogs.boxes.size(), 2U);
  EXPECT_EQ(dialogs.boxes[0].text, "error SputtYield_at_ion If th > 90  ");
  EXPECT_EQ(dialogs.boxes[0].icon, Icon::Critical);
  EXPECT_EQ(dialogs.boxes[1].text, "Do you want to abort? See Hallam if the error cannot be solved ");
}

TEST_F(SputterYield, CurvesGiveYieldTimesAngularFactor) {
  YieldTable table = Prepare(
      Curves({"100 0.5|300 1.5|500 2.5", "10 1|50 1.6|90 0", "100 0.8|500 1.6"}, {"100 1|500 3", "10 2", "100 7"}));
  EXPECT_TRUE(table.HasCurves());
  YieldAtEnergy at;
  at.gas[1].yieldAtPeak = 11;
  table.AtEnergy(200, at, told);
  EXPECT_NEAR(at.gas[1].yieldAtNormal, 1, 1e-15);
  EXPECT_NEAR(at.gas[1].bettaEmission, 1, 1e-15);
  EXPECT_EQ(at.gas[1].yieldAtPeak, 11);  // untouched
  EXPECT_NEAR(at.gas[2].yieldAtNormal, 1.5, 1e-15);
  EXPECT_EQ(at.gas[2].bettaEmission, 7);
  EXPECT_NEAR(SputtYield_at_ion(30, 1, at, table, 0, prompt), 1.3, 1e-14);
  EXPECT_NEAR(SputtYield_at_ion(0, 1, at, table, 0, prompt), 1, 1e-14);
  EXPECT_NEAR(SputtYield_at_ion(30, 2, at, table, 0, prompt), 3, 1e-14);
  EXPECT_TRUE(dialogs.boxes.empty());
}

TEST_F(SputterYield, AnAngularCurveHoldsThirtySixPoints) {
  std::string angles;
  for (int k = 1; k <= 36; ++k) angles += std::to_string(k) + " 1|";
  for (const bool tooLong : {false, true}) {
    YieldTable table = Prepare(Curves({"100 2", angles + (tooLong ? "37 1" : ""), "100 1"}, {"100 2", "1 1", "100 1"}));
    YieldAtEnergy at;
    table.AtEnergy(200, at, told);
    if (!tooLong) {
      EXPECT_EQ(SputtYield_at_ion(20, 1, at, table, 0, prompt), 2);
      continue;
    }
    try {
      SputtYield_at_ion(20, 1, at, table, 0, prompt);
      FAIL();
    } catch (const RuntimeFailure& failure) {
      EXPECT_EQ(failure.number(), FailureNumber::SubscriptOutOfRange);
    }
    EXPECT_EQ(SputtYield_at_ion(20, 2, at, table, 0, prompt), 2);
  }
}

TEST_F(SputterYield, AnEnergyCurveThatIsTooLongFailsEveryTime) {
  std::string energies;
  for (int k = 1; k <= 361; ++k) energies += std::to_string(k) + " 1|";
  YieldTable table = Prepare(Curves({energies, "1 1", "100 1"}, {"100 2", "1 1", "100 1"}));
  YieldAtEnergy at;
  for (int k = 0; k < 2; ++k) EXPECT_THROW(table.AtEnergy(200, at, told), RuntimeFailure);
}

TEST_F(SputterYield, CurvesAreReadOnce) {
  int read = 0;
  class Counting : public ScriptedDialogs {
   public:
    explicit Counting(int& count) : count_(count) {}
    void Log(const std::string&) override { ++count_; }

   private:
    int& count_;
  } counting(read);
  ErrorPrompt countingPrompt(counting);
  // The dot is the thousands separator, so every reader that meets one logs a line, once in its life.
  CellText german(countingPrompt, Locale{",", "."});
  TableCache none;
  YieldTable table(Curves({"1.000 2", "1 1", "1 1"}, {"1 2", "1 1", "1 1"}), none, german);
  YieldAtEnergy at;
  EXPECT_EQ(read, 0);
  for (int k = 0; k < 50; ++k) table.AtEnergy(k, at, told);
  EXPECT_EQ(read, 1);
}

TEST_F(SputterYield, AgreesWithThePlainFormBitForBit) {
  std::mt19937 random(11);
  std::uniform_real_distribution<double> share(0, 1);
  std::uniform_int_distribution<int> count(1, 6);
  int compared = 0;
  told = true;
  for (int run = 0; run < 400; ++run) {
    std::array<std::vector<Row>, 2> gases;
    for (auto& rows : gases) {
      for (int k = count(random); k > 0; --k) {
        const double normal = 0.1 + share(random);
        const double energy = share(random) < 0.1 ? 0 : 50 * std::floor(20 * share(random));
        rows.push_back({energy, normal, normal * (1.1 + share(random)), 30 + 40 * share(random), share(random) * 2});
      }
    }
    const YieldRecords records = Rows(gases[0], gases[1]);
    YieldTable table = Prepare(records);
    YieldAtEnergy at;
    reference::PlainYieldAtEnergy plain;
    for (int k = 0; k < 20; ++k) {
      const double E = k % 3 == 0 ? 50 * std::floor(25 * share(random)) : 1200 * share(random);
      bool failed = false;
      bool plainFailed = false;
      try {
        table.AtEnergy(E, at, told);
      } catch (const RuntimeFailure&) {
        failed = true;
      }
      try {
        reference::PlainEnergyStage(E, records, plain, cache, reader);
      } catch (const RuntimeFailure&) {
        plainFailed = true;
      }
      ASSERT_EQ(failed, plainFailed);
      for (int gas = 1; gas <= 2; ++gas) {
        const auto g = static_cast<std::size_t>(gas);
        ASSERT_EQ(at.gas[g].yieldAtNormal, plain.field[g][1]);
        ASSERT_EQ(at.gas[g].yieldAtPeak, plain.field[g][2]);
        ASSERT_EQ(at.gas[g].peakAngleDeg, plain.field[g][3]);
        ASSERT_EQ(at.gas[g].bettaEmission, plain.field[g][4]);
        ASSERT_EQ(at.gas[g].exponent, plain.field[g][5]);
        const double th = 90 * share(random);
        const double MaiOrigine = k % 5;
        if (at.gas[g].exponent == 0) continue;
        ASSERT_EQ(SputtYield_at_ion(th, gas, at, table, MaiOrigine, prompt),
                  reference::PlainYield(th, gas, plain, MaiOrigine, reader));
        ++compared;
      }
    }
  }
  EXPECT_GT(compared, 10000);
}

TEST_F(SputterYield, CurvesAgreeWithThePlainFormBitForBit) {
  std::mt19937 random(12);
  std::uniform_real_distribution<double> share(0, 1);
  const auto curve = [&](double width) {
    std::string text;
    for (int k = 0; k < 8; ++k) {
      text += NumberText(std::floor(width * share(random))) + " " + NumberText(share(random)) + "|";
    }
    return text;
  };
  for (int run = 0; run < 100; ++run) {
    const YieldRecords records = Curves({curve(600), curve(90), curve(600)}, {curve(600), curve(90), curve(600)});
    YieldTable table = Prepare(records);
    YieldAtEnergy at;
    reference::PlainYieldAtEnergy plain;
    for (int k = 0; k < 20; ++k) {
      const double E = std::floor(700 * share(random));
      const double th = std::floor(90 * share(random));
      table.AtEnergy(E, at, told);
      reference::PlainEnergyStage(E, records, plain, cache, reader);
      for (int gas = 1; gas <= 2; ++gas) {
        const auto g = static_cast<std::size_t>(gas);
        ASSERT_EQ(at.gas[g].yieldAtNormal, plain.field[g][1]);
        ASSERT_EQ(at.gas[g].bettaEmission, plain.field[g][4]);
        ASSERT_EQ(SputtYield_at_ion(th, gas, at, table, 0, prompt), reference::PlainYield(th, gas, plain, 0, reader));
      }
    }
  }
}

}  // namespace
}  // namespace orv::testing
