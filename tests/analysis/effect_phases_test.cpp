#include "analysis/effect_phases.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "analysis/report_fixture.h"

namespace orv::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::SizeIs;

class EffectPhasesTest : public ReportFixture {
 protected:
  bool RunEffects(double plot) {
    Load();
    run.model.WorkbookFolder = Folder();
    selection.choices = {{plot, "", {}}};
    return a_SpaceApplication(run, selection, effects);
  }
  // A thruster whose density, energy and share of ions are tables of so many angles.
  void UseTables(int points) {
    std::string pairs;
    for (int k = 0; k < points; ++k) {
      if (k > 0) pairs += "|";
      pairs += std::to_string(3 * k) + " " + std::to_string(100 - 2 * k);
    }
    text.database[2] = "T5\t\t3.79\t230\t" + pairs + "\t\t\t60\t\t\t" + pairs + "\t" + pairs + "\t\t\t\t90\t1000";
    text.AddAllYields();
  }
  std::string SpectrumFile() const {
    for (const std::string& file : run.record.files) {
      if (Contains(file, "OrvSpectrum")) return file;
    }
    return {};
  }

  EffectPhases effects;
};

// --- steps of a turn -------------------------------------------------------------------------------------------------

TEST_F(EffectPhasesTest, StepsOfATurnComeFromTheFirstTwoAngles) {
  struct Row {
    const char* table;
    int steps;
    bool anomaly;
  };
  for (const Row& row : {Row{"", 36, false},  // the default table
                         Row{"\tRot% 0 0.25 | 90 0.25 | 180 0.25 | 270 0.25", 4, false},
                         Row{"\tRot% 0 0.25 | 90 0.25 | 180 0.5", 4, true},     // three rows of irregular steps
                         Row{"\tShift 5 Rot% 180 0.5 | 270 0.5", 2, false}}) {  // counted from the first angle
    SCOPED_TRACE(row.table);
    text.primitives.resize(3);
    text.primitives.push_back(std::string(kTurningWing) + row.table);
    dialogs.log.clear();
    ASSERT_TRUE(RunEffects(13));
    EXPECT_EQ(run.rotation.tables.RotationSteps, row.steps);
    const auto told = std::count_if(dialogs.log.begin(), dialogs.log.end(), [](const std::string& line) {
      return Contains(line, " Anomaly in number of rotations ");
    });
    EXPECT_EQ(told, row.anomaly ? 1 : 0);
  }
}

TEST_F(EffectPhasesTest, TwoEqualAnglesGiveNoSteps) {
  text.primitives.push_back(std::string(kTurningWing) + "\tRot% 0 0.5 | 0 0.5");
  ASSERT_TRUE(RunEffects(13));
  EXPECT_EQ(run.rotation.tables.RotationSteps, 0);
  EXPECT_GE(dialogs.Count("Division by zero"), 1);
}

// --- spectrum --------------------------------------------------------------------------------------------------------

TEST_F(EffectPhasesTest, ASpectrumHasEighteenBandsAtMost) {
  text.directives = "Rotation 0 360 180 Spectrum 2";
  UseTables(24);
  text.primitives.push_back(std::string(kTurningWing) + "\tRot% 0 0.5 | 180 0.5");
  ASSERT_TRUE(RunEffects(19));
  const std::vector<std::string> lines = LinesOf(SpectrumFile());
  ASSERT_THAT(lines, SizeIs(1 + 18));
  // From the widest band inwards.
  EXPECT_THAT(lines[1], HasSubstr("66"));
  EXPECT_EQ(ColumnsOf(lines[18])[0], "18");
  EXPECT_EQ(ColumnsOf(lines[18])[1], "15.");
}

TEST_F(EffectPhasesTest, ASpectrumEndsWhereNoBandIsLeft) {
  text.directives = "Rotation 0 360 180 Spectrum 2";
  UseTables(5);
  text.primitives.push_back(std::string(kTurningWing) + "\tRot% 0 0.5 | 180 0.5");
  ASSERT_TRUE(RunEffects(19));
  std::vector<std::string> angles;
  for (const std::string& line : LinesOf(SpectrumFile())) angles.push_back(ColumnsOf(line)[1]);
  EXPECT_THAT(angles, ElementsAre("Angle_(deg)", "9.", "6.", "3.", "0.", "-1.", "-1."));
}

TEST_F(EffectPhasesTest, AnAnalyticThrusterHasNoSpectrum) {
  text.directives = "Rotation 0 360 180 Spectrum 2";
  text.AddAllYields();
  text.primitives.push_back(std::string(kTurningWing) + "\tRot% 0 0.5 | 180 0.5");
  ASSERT_TRUE(RunEffects(19));
  EXPECT_GE(dialogs.Count("Spectrum limit"), 1);
  EXPECT_THAT(LinesOf(SpectrumFile()), SizeIs(1 + 1));
}

TEST_F(EffectPhasesTest, ASilentSpectrumLeavesNoFile) {
  text.directives = "Rotation 0 360 180 Spectrum 2 Silent";
  UseTables(5);
  text.primitives.push_back(std::string(kTurningWing) + "\tRot% 0 0.5 | 180 0.5");
  ASSERT_TRUE(RunEffects(19));
  EXPECT_NE(run.record.SputterText, "");
  EXPECT_TRUE(run.record.files.empty());
}

}  // namespace
}  // namespace orv::testing
