#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "analysis/run_fixture.h"
#include "numerics/text.h"

// How a run ends: title, report text, trace file, re-plots, failures, and models that no one can hold.
namespace orv::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::StartsWith;
using DriverEnd = RunFixture;

TEST_F(DriverEnd, TheViewIsPrepared) {
  LoadAndRun();
  EXPECT_THAT(run.plot.PlotTitle, StartsWith("OrvValis  M1  Density (m-3) Scale "));
  EXPECT_EQ(run.plot.FactorScale, 1.01);
  EXPECT_TRUE(run.plot.PenUpMode);
}

TEST_F(DriverEnd, TheCaseLineTellsTheRun) {
  LoadAndRun();
  const std::string file = "/models/OrvTest modelplot13 20310405 060708_.xls";
  EXPECT_EQ(run.record.PlotReportFile, file);
  EXPECT_THAT(run.record.CaseLine,
              StartsWith("2031/04/05 06:07:08 " + run.plot.PlotTitle + " Case .... Model:Test model Database:"));
  EXPECT_THAT(run.record.CaseLine,
              HasSubstr(" OutputFiles: " + ReplaceAll(file, " ", kHardBlank) + "  ProcessDuration:"));
  EXPECT_EQ(run.record.CaseLine.find("CHECK case"), std::string::npos);
}

TEST_F(DriverEnd, DurationIsInSeconds) {
  class Slow : public Clock {
   public:
    CivilTime Local() const override { return {2031, 4, 5, 6, 7, 8}; }
    double Seconds() const override { return 100.5; }
  } slow;
  RunContext late(prompt, reader, settings, slow, folder.path().string() + "/");
  Load();
  late.model = run.model;
  late.model.StartTime = 98;
  EXPECT_TRUE(a_SpaceApplication(late, selection, phases));
  EXPECT_THAT(late.record.CaseLine, EndsWith("  ProcessDuration:2.5 "));
}

TEST_F(DriverEnd, TheCaseIsAskedOnce) {
  dialogs.replies = {"", "My case"};
  LoadAndRun();
  ASSERT_EQ(dialogs.inputs.size(), 1U);
  EXPECT_EQ(dialogs.inputs[0].prompt, "Computation case at 2031/04/05 06:07:08");
  EXPECT_EQ(dialogs.inputs[0].title, "Input string  LAST CHANCE for the TRACEABILITY");
  EXPECT_EQ(dialogs.inputs[0].initial, "Case ....");
  EXPECT_EQ(run.record.CaseText, "");
  Run();
  EXPECT_EQ(run.record.CaseText, "My case");
  Run();
  EXPECT_EQ(dialogs.inputs.size(), 2U);
}

TEST_F(DriverEnd, TheCaseLineHeadsTheTraceFile) {
  LoadAndRun();
  const std::string first = Windows1252FromUtf8(run.record.CaseLine);
  EXPECT_EQ(TraceText(), first + "\r\n");
  EXPECT_EQ(run.record.TraceFile, run.OutputFolder + "OrvTraceResults.txt");
  Run(20);
  const std::string second = Windows1252FromUtf8(run.record.CaseLine);
  EXPECT_NE(first, second);
  EXPECT_EQ(TraceText(), second + "\r\n" + first + "\r\n");
}

TEST_F(DriverEnd, SilentModeWritesNoReport) {
  text.directives = "Silent";
  LoadAndRun();
  EXPECT_FALSE(phases.Has("WriteReports"));
  EXPECT_THAT(run.record.CaseLine, HasSubstr(" OutputFiles: NoBecauseSilentMode  ProcessDuration:"));
  EXPECT_EQ(TraceText(), Windows1252FromUtf8(run.record.CaseLine) + "\r\n");
  text.directives = "Silent 2";
  phases.moments.clear();
  LoadAndRun();
  EXPECT_TRUE(phases.Has("WriteReports"));
}

TEST_F(DriverEnd, TheHeatFluxScaleIsMended) {
  for (const char* bad : {"0", "-1", "", "abc"}) {
    settings.Write("UseOrv", "HeatFluxScale", bad);
    LoadAndRun();
    EXPECT_EQ(settings.Read("UseOrv", "HeatFluxScale", ""), "0.1") << bad;
  }
  settings.Write("UseOrv", "HeatFluxScale", "2.5");
  LoadAndRun();
  EXPECT_EQ(settings.Read("UseOrv", "HeatFluxScale", ""), "2.5");
}

TEST_F(DriverEnd, TheButtonTellsTheModel) {
  LoadAndRun();
  EXPECT_EQ(run.record.PlotButtonTip, "Model: \"Test model\" Click here to re-Plot");
}

// --- plotting again --------------------------------------------------------------------------------------------------

TEST_F(DriverEnd, ARePlotShowsTheKeptData) {
  LoadAndRun(13);
  const double density = Data(2, 1, 1, 13);
  const std::string trace = TraceText();
  phases.moments.clear();
  EXPECT_TRUE(Replot(9));
  EXPECT_THAT(phases.Names(), ElementsAre("FillPointLists"));
  EXPECT_EQ(phases.moments[0].IndexPlot, 9);
  EXPECT_EQ(run.plot.IndexPlot, 9);
  EXPECT_EQ(run.plot.IndexPlotRequest, 0);
  EXPECT_EQ(run.plot.PreviousIndexPlot, 13);
  EXPECT_EQ(Data(2, 1, 1, 13), density);
  EXPECT_EQ(selection.captions.size(), 1U);
  EXPECT_EQ(settings.Read("UseOrv", "LastRun", ""), "13");
  EXPECT_EQ(TraceText(), trace);  // a line is composed, none is printed
  EXPECT_THAT(run.record.CaseLine, HasSubstr("Model:Test model"));
}

TEST_F(DriverEnd, TheRequestStandsWhileTheListsAreFilled) {
  LoadAndRun(13);
  class Watch : public RunPhases {
   public:
    void FillPointLists(RunContext& context) override { request = context.plot.IndexPlotRequest; }
    double request = -1;
  } watch;
  run.plot.IndexPlotRequest = 9;
  a_SpaceApplication(run, selection, watch);
  EXPECT_EQ(watch.request, 9);
  EXPECT_EQ(run.plot.IndexPlotRequest, 0);
}

TEST_F(DriverEnd, WithoutAFinishedRunARePlotIsAFullRun) {
  Load();
  selection.choices = {{14, "", {}}};
  EXPECT_TRUE(Replot(9));
  EXPECT_EQ(selection.captions.size(), 1U);
  EXPECT_EQ(run.plot.IndexPlot, 14);
  EXPECT_EQ(phases.Names().front(), "ClearView");
}

TEST_F(DriverEnd, AnAbortedRunCannotBePlottedAgain) {
  LoadAndRun();
  text.primitives.erase(text.primitives.begin());
  dialogs.answers = {Answer::Abort};
  EXPECT_THROW(LoadAndRun(), ProgramEnd);
  EXPECT_FALSE(run.record.finished);
}

// --- failures --------------------------------------------------------------------------------------------------------

class FailingPhase : public RunFixture, public ::testing::WithParamInterface<const char*> {};

TEST_P(FailingPhase, IsSurvivedAndTold) {
  text.primitives.push_back("silver\tWing rect2sides size -1 1 -2 2 1 1 0.05 cells 4 8 AutomaticRotation X R Z 90");
  text.primitives.push_back("gold\tPlume cyl size 0.5 2 3 cells 8 4 T 5 0 0");
  Load();
  phases.failing = GetParam();
  bool done = false;
  ASSERT_NO_THROW(done = Run(19));
  EXPECT_TRUE(done);
  EXPECT_TRUE(phases.Has(GetParam()));
  EXPECT_TRUE(phases.Has("WriteReports"));
  ASSERT_EQ(dialogs.boxes.size(), 1U);
  EXPECT_EQ(dialogs.boxes[0].text, "Overflow");
  EXPECT_EQ(dialogs.boxes[0].title, "Error aSpaceApplication");
  EXPECT_EQ(dialogs.boxes[0].buttons, Buttons::AbortRetryIgnore);
  dialogs.answers = {Answer::Abort};
  EXPECT_THROW(Run(19), ProgramEnd);
}

INSTANTIATE_TEST_SUITE_P(Driver, FailingPhase,
                         ::testing::Values("ClearView", "PotentialTable", "RotPercentTable", "ShowRotationList",
                                           "HEATFLUX", "SPUTTERING", "PlasmaEffect", "FillPointLists", "WriteReports"));

TEST_F(DriverEnd, SettingsThatCannotBeWrittenAreNoObstacle) {
  class ReadOnly : public MemorySettings {
   public:
    void Write(const std::string&, const std::string&, const std::string&) override {
      Raise(FailureNumber::PathFileAccessError);
    }
  } readOnly;
  RunContext other(prompt, reader, readOnly, clock, folder.path().string() + "/");
  Load();
  other.model = run.model;
  EXPECT_TRUE(a_SpaceApplication(other, selection, phases));
  EXPECT_TRUE(dialogs.boxes.empty());
}

TEST_F(DriverEnd, ATraceFolderThatIsMissingIsSurvived) {
  run.OutputFolder = folder.path().string() + "/missing/";
  EXPECT_TRUE(LoadAndRun());
  EXPECT_TRUE(run.record.finished);
}

// --- absurd models ---------------------------------------------------------------------------------------------------

class Absurd : public RunFixture {
 protected:
  // The run ends, by itself or refused as too large; anything else is a fault.
  std::string Outcome(const std::string& row) {
    text.primitives = {"T5\tThruster thr size 1 1 cells 1 1", "gold\t" + row};
    if (alone) text.primitives.erase(text.primitives.begin());
    Load();
    try {
      Run();
    } catch (const ModelTooLarge& refusal) {
      return refusal.message;
    } catch (const RuntimeFailure& failure) {
      return "FAILURE " + failure.description();
    }
    return "done";
  }

  bool alone = false;  // without the thruster's row
};

TEST_F(Absurd, TooManyCellsAreRefused) {
  for (const char* cells : {"1000000000 1000000000", "1e9 1", "1 1e9", "20000 20000", "1e200 1e200", "-1e9 -1e9",
                            "1e308 1e308", "50000 1000"}) {
    EXPECT_THAT(Outcome(std::string("Plate rect size 1 1 cells ") + cells),
                HasSubstr("more than this program can hold"))
        << cells;
  }
}

TEST_F(Absurd, ManyCellsOneWayAndNoneTheOtherEndToo) {
  for (const char* cells :
       {"3e9 0", "0 3e9", "1e308 0", "-1 1e10", "1e10 -1", "3000000000 1e-9", "1e9 0", "0 1e9", "1e8 0", "-3 2e9"}) {
    for (const bool only : {false, true}) {
      alone = only;
      EXPECT_THAT(Outcome(std::string("Plate rect size 1 1 cells ") + cells),
                  ::testing::AnyOf("done", HasSubstr("more than this program can hold")))
          << cells << (only ? ", the only row" : "");
    }
  }
}

TEST_F(Absurd, SmallAndOddCountsRun) {
  for (const char* cells :
       {"0 0", "-4 -4", "-1 3", "0 3", "2.5 3.5", "0.4 0.4", "nan nan", "inf inf", "1e999 1", "x y", "", "1", "4"}) {
    EXPECT_EQ(Outcome(std::string("Plate rect size 1 1 cells ") + cells), "done") << cells;
  }
}

TEST_F(Absurd, OddSpecificationsRun) {
  for (const char* row : {"Plate",
                          "Plate rect",
                          "Plate rect size",
                          "rect rect rect rect",
                          "Plate size cells 3 3",
                          "P rect size nan inf cells 3 3",
                          "P rect size 1e308 1e308 cells 3 3",
                          "P rect size -1 -1 cells 3 3",
                          "P cyl size 1 1 1e9 cells 3 3",
                          "P cyl size 1 1 -5 cells 3 3",
                          "P sph size 0 0 0 cells 3 3",
                          "P rect size 1 1 cells 3 3 T",
                          "P rect size 1 1 cells 3 3 R",
                          "P rect size 1 1 cells 3 3 R Q 5",
                          "P rect size 1 1 cells 3 3 A",
                          "P rect size 1 1 cells 3 3 Z 4 5",
                          "P rect size 1 1 cells 3 3 T 1e308 1e308 1e308",
                          "P cylshape44 size 1 1 1 cells 3 3",
                          "P cylshapex6b size 1 1 1 1 1 1 1 1 1 1 cells 3 3",
                          "P rectOriented size 0 0 0 0 0 0 0 0 0 0 0 0 cells 3 3"}) {
    EXPECT_EQ(Outcome(row), "done") << row;
  }
}

TEST_F(Absurd, ALongSpecificationRuns) {
  std::string tail;
  while (tail.size() < 30000) tail += " T 0.001 0 0 R X 1";
  EXPECT_EQ(Outcome("Plate rect size 1 1 cells 3 3" + tail), "done");
  EXPECT_EQ(Outcome("Plate rect size 1 1 cells 3 3 " + std::string(30000, 'T')), "done");
  EXPECT_EQ(Outcome(std::string(30000, 'x')), "done");
  EXPECT_EQ(Outcome("P " + std::string(30000, '9') + " rect size 1 1 cells 3 3"), "done");
}

TEST_F(Absurd, NoRowsAtAllRun) {
  text.primitives.clear();
  EXPECT_TRUE(LoadAndRun());
  EXPECT_EQ(run.model.NumberOfPrimitives, 0);
  EXPECT_EQ(dialogs.Count("The model do not have any thrusters"), 1);
  EXPECT_TRUE(run.record.finished);
}

TEST_F(Absurd, FiveThousandRowsRun) {
  text.primitives = {"T5\tThruster thr size 1 1 cells 1 1"};
  for (int k = 0; k < 5000; ++k) {
    text.primitives.push_back("gold\tP" + std::to_string(k) + " rect size 0.1 0.1 cells 1 1 T " +
                              std::to_string(k % 70) + " " + std::to_string(k / 70) + " 5");
  }
  EXPECT_TRUE(LoadAndRun());
  EXPECT_EQ(run.model.NumberOfPrimitives, 5001);
  EXPECT_TRUE(dialogs.boxes.empty());
}

TEST_F(Absurd, HugeTablesInCellsRun) {
  std::string pairs;
  for (int k = 1; k <= 10000; ++k) pairs += (k == 1 ? "" : "|") + std::to_string(k) + " 1";
  text.database[2] = "T5\t\t3.79\t230\t" + pairs + "\t\t\t60\t\t\t" + pairs + "\t" + pairs + "\t\t\t\t90\t1000";
  EXPECT_TRUE(LoadAndRun());
  EXPECT_GE(dialogs.Count("Error fautea_SpaceApplicationthrusterData "), 1);
  EXPECT_EQ(dialogs.Count("Subscript out of range"), 1);
}

TEST_F(Absurd, AThrusterOfWordsRuns) {
  text.database[2] = "T5\tnan\tnan\tinf\t-inf\tx\ty\tz\t1e999\t-\t+\t.\t,\te5\t1e\t\t\tmodel";
  text.database[11] = "Xe+\t\tcharge\tmass";
  text.database[12] = "Xe++\t\tnan\tinf";
  EXPECT_TRUE(LoadAndRun());
  EXPECT_TRUE(run.record.finished);
}

}  // namespace
}  // namespace orv::testing
