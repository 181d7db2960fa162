#include "analysis/run_driver.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "analysis/run_fixture.h"

namespace orv::testing {
namespace {

using ::testing::ElementsAre;
using Driver = RunFixture;

const char* const kRotating =
    "silver\tWing rect2sides size -1 1 -2 2 1 1 0.05 cells 4 8 T 0 0 2 AutomaticRotation X R Z 90 T 0 0 1";

// --- order -----------------------------------------------------------------------------------------------------------

TEST_F(Driver, PhasesComeInOrder) {
  EXPECT_TRUE(LoadAndRun());
  EXPECT_THAT(phases.Names(), ElementsAre("ClearView", "PotentialTable", "RotPercentTable", "HEATFLUX", "SPUTTERING",
                                          "FillPointLists", "WriteReports"));
  EXPECT_TRUE(run.record.finished);
  EXPECT_TRUE(dialogs.boxes.empty());
}

TEST_F(Driver, EachPhaseFindsWhatTheOthersLeft) {
  LoadAndRun(14);
  for (const auto& m : phases.moments) EXPECT_EQ(m.IndexPlot, 14) << m.phase;
  EXPECT_EQ(phases.Find("ClearView")->distance, 0);
  const auto* geometry = phases.Find("PotentialTable");
  EXPECT_EQ(geometry->distance, 10000);  // built, not yet measured
  EXPECT_EQ(geometry->density, 0);
  const auto* effects = phases.Find("HEATFLUX");
  EXPECT_NEAR(effects->distance, std::sqrt(2 * 0.375 * 0.375 + 4), 1e-12);
  EXPECT_GT(effects->density, 1e12);
  EXPECT_EQ(effects->shadow, 0);
  EXPECT_EQ(phases.Find("FillPointLists")->caseLine, "");
  EXPECT_FALSE(phases.Find("FillPointLists")->traceExists);
  EXPECT_NE(phases.Find("WriteReports")->caseLine, "");
  EXPECT_TRUE(phases.Find("WriteReports")->traceExists);
}

TEST_F(Driver, VolumesBringThePlasmaEffect) {
  text.primitives.push_back("gold\tPlume cyl size 0.5 2 3 cells 8 4 T 5 0 0");
  LoadAndRun();
  EXPECT_GT(run.cells.numberPrimWithVolumic, run.model.NumberOfPrimitives);
  EXPECT_THAT(phases.Names(), ElementsAre("ClearView", "PotentialTable", "RotPercentTable", "HEATFLUX", "SPUTTERING",
                                          "PlasmaEffect", "FillPointLists", "WriteReports"));
}

// --- before the run --------------------------------------------------------------------------------------------------

TEST_F(Driver, AnEmptyDatabaseEndsTheRun) {
  Load();
  run.model.database.DatabaseCells(1, 1) = "";
  EXPECT_FALSE(Run());
  ASSERT_EQ(dialogs.boxes.size(), 1U);
  EXPECT_EQ(dialogs.boxes[0].text, "Comm Excel : Syncho with Excel malfunction. To re do  ");
  EXPECT_EQ(dialogs.boxes[0].title, "Warning");
  EXPECT_EQ(dialogs.boxes[0].buttons, Buttons::Ok);
  EXPECT_TRUE(selection.captions.empty());
  EXPECT_TRUE(phases.moments.empty());
}

TEST_F(Driver, TheSelectionIsAskedWithTheModel) {
  LoadAndRun();
  EXPECT_THAT(selection.captions, ElementsAre(" Model: Orvdata Test model"));
  ASSERT_EQ(selection.labelsSeen.size(), 121U);
  EXPECT_EQ(selection.labelsSeen[13], "Density (m-3)");
  // The thruster's name is no material.
  EXPECT_EQ(selection.labelsSeen[90], "Redeposition silver(m/s)");
  EXPECT_EQ(selection.labelsSeen[91], "Redeposition gold(m/s)");
  EXPECT_EQ(selection.labelsSeen[92], "");
}

TEST_F(Driver, TheChosenPlotIsTaken) {
  LoadAndRun(13);
  EXPECT_EQ(run.plot.IndexPlot, 13);
  EXPECT_EQ(run.plot.IndexPlotRequest, 0);
  EXPECT_EQ(run.plot.PreviousIndexPlot, 13);
  EXPECT_EQ(settings.Read("UseOrv", "LastRun", ""), "13");
  Run(22);
  EXPECT_EQ(run.plot.PreviousIndexPlot, 22);
  EXPECT_EQ(settings.Read("UseOrv", "LastRun", ""), "22");
}

TEST_F(Driver, CancelChangesNothing) {
  Load();
  EXPECT_FALSE(Run(0));
  EXPECT_EQ(settings.Read("UseOrv", "LastRun", "none"), "none");
  EXPECT_TRUE(phases.moments.empty());
  EXPECT_TRUE(dialogs.boxes.empty());
  EXPECT_EQ(run.cells.CellData.primitives(), -1);
  EXPECT_EQ(TraceText(), "");
}

TEST_F(Driver, CancelKeepsTheResultsOfTheRunBefore) {
  LoadAndRun(13);
  const double density = Data(2, 1, 1, 13);
  const std::string caseLine = run.record.CaseLine;
  EXPECT_FALSE(Run(0));
  EXPECT_EQ(run.plot.IndexPlot, 13);
  EXPECT_EQ(Data(2, 1, 1, 13), density);
  EXPECT_EQ(run.record.CaseLine, caseLine);
  // They can still be plotted again.
  phases.moments.clear();
  const std::size_t asked = selection.captions.size();
  EXPECT_TRUE(Replot(14));
  EXPECT_THAT(phases.Names(), ElementsAre("FillPointLists"));
  EXPECT_EQ(selection.captions.size(), asked);
}

// --- options ---------------------------------------------------------------------------------------------------------

TEST_F(Driver, PlotOptions) {
  PlotState plot;
  const auto read = [&](const std::string& option) {
    plot = PlotState{};
    plot.PlotOptionC = 0.5;
    plot.PlotOptionText = option;
    ReadPlotOption(plot, reader);
  };
  for (const char* option : {"L3", "l 3", "L   3 ", "l3x"}) {
    read(option);
    EXPECT_EQ(plot.ListPrimitive, 3) << option;
    EXPECT_EQ(plot.PlotOptionC, 0.5);
    EXPECT_EQ(plot.MaiOrigine, 0);
    EXPECT_EQ(plot.FullListing, 0);
  }
  read("c 15");
  EXPECT_EQ(plot.PlotOptionC, 15);
  EXPECT_EQ(plot.ListPrimitive, 0);
  read("C");
  EXPECT_EQ(plot.PlotOptionC, 0);
  read("F 4");
  EXPECT_EQ(plot.MaiOrigine, 4);
  read("f -4");
  EXPECT_EQ(plot.MaiOrigine, 0);
  for (const char* option : {"G", "g 0", "G 7"}) {
    read(option);
    EXPECT_EQ(plot.FullListing, 1) << option;
  }
  for (const char* option : {"", " ", " L 3", "X 3", "3", "é 3"}) {
    read(option);
    EXPECT_EQ(plot.ListPrimitive, 0) << option;
    EXPECT_EQ(plot.PlotOptionC, 0.5) << option;
    EXPECT_EQ(plot.MaiOrigine, 0) << option;
    EXPECT_EQ(plot.FullListing, 0) << option;
  }
}

TEST_F(Driver, TheCompatibilityNumberComesFromItsSetting) {
  LoadAndRun();
  EXPECT_EQ(run.plot.PlotOptionC, 0);
  EXPECT_NEAR(Data(2, 1, 1, 9), Data(2, 1, 1, 10), 1e-9);
  settings.Write("UseOrv", "PlotOptionC", "15");
  Run();
  EXPECT_EQ(run.plot.PlotOptionC, 15);
  EXPECT_NEAR(Data(2, 1, 1, 9), 180 - Data(2, 1, 1, 10), 1e-9);
  Run(13, "C 40");
  EXPECT_EQ(run.plot.PlotOptionC, 40);
}

TEST_F(Driver, CheckCasesStandInTheTitle) {
  LoadAndRun(13, "F 3");
  EXPECT_EQ(run.plot.MaiOrigine, 3);
  EXPECT_THAT(run.plot.PlotTitle, ::testing::StartsWith("OrvValis MAIORIGINE= 3  M1  Density"));
  EXPECT_THAT(run.record.CaseLine, ::testing::EndsWith(" CHECK case (soft/MAI): 3"));
  Run(13, "F -3");
  EXPECT_EQ(run.plot.MaiOrigine, 0);
  EXPECT_THAT(run.plot.PlotTitle, ::testing::StartsWith("OrvValis  M2  Density"));
  Run(13);
  EXPECT_EQ(run.plot.MaiOrigine, 0);
}

// --- redeposition ----------------------------------------------------------------------------------------------------

TEST_F(Driver, RedepositionTurnsToTheRectoSides) {
  const std::string message =
      "Only the recto sides are considered when redeposition computations are performed. Use the directive \"re\" or "
      "\"recto 1\" for not display this message, see User's Manual";
  Load();
  Run(89.9);
  EXPECT_EQ(run.plot.RedepositionOn, 0);
  EXPECT_TRUE(dialogs.boxes.empty());
  Run(90);
  EXPECT_EQ(run.plot.RedepositionOn, 1);
  EXPECT_EQ(run.plot.CleaningOn, 0);
  EXPECT_EQ(run.model.directives.RectoOnly, 1);
  ASSERT_EQ(dialogs.boxes.size(), 1U);
  EXPECT_EQ(dialogs.boxes[0].text, message);
  EXPECT_EQ(dialogs.boxes[0].title, "Information");
  Run(90);
  EXPECT_EQ(dialogs.boxes.size(), 1U);  // it stays for the next run
  Run(13);
  EXPECT_EQ(run.plot.RedepositionOn, 0);
  EXPECT_EQ(run.model.directives.RectoOnly, 1);
}

TEST_F(Driver, ForcedRectoSidesStayForTheModelsReadLater) {
  LoadAndRun(90);
  LoadAndRun(19);
  EXPECT_EQ(run.model.directives.RectoOnly, 1);
  LoadAndRun(90);
  EXPECT_EQ(dialogs.boxes.size(), 1U) << "told once";
  text.directives = "recto 0";
  LoadAndRun(19);
  EXPECT_EQ(run.model.directives.RectoOnly, 0);
  text.directives = "";
  LoadAndRun(19);
  EXPECT_EQ(run.model.directives.RectoOnly, 0) << "the line has ended it";
  EXPECT_EQ(dialogs.boxes.size(), 1U);
}

TEST_F(Driver, ShadowsOfTheRunBeforeAreTakenOver) {
  LoadAndRun(20);
  const double flag = Data(3, 2, 2, 20);
  const double distance = Data(3, 2, 2, 18);
  ASSERT_GT(flag, 0);
  text.directives = "NotHidden 2";
  text.primitives[1] = "silver\tPlate_1 rect size 1 1 cells 4 4 R X 180 T 50 0 2";  // no longer in the way
  LoadAndRun(20);
  EXPECT_EQ(Data(3, 2, 2, 20), flag);
  EXPECT_EQ(Data(3, 2, 2, 18), distance);
  EXPECT_EQ(run.record.ShadowStatusText, "WARNING: Process with shadow flags from the previous run");
  // Flags of other cells are of no use: they are computed.
  text.primitives[2] = "gold\tPlate_2 rect size 2 2 cells 5 4 R X 180 T 0 0 2.9";
  LoadAndRun(20);
  EXPECT_EQ(Data(3, 2, 2, 20), 0);
}

TEST_F(Driver, CleaningFindsTheRectoSidesForced) {
  LoadAndRun(95);
  EXPECT_EQ(run.plot.RedepositionOn, 1);
  EXPECT_EQ(run.plot.CleaningOn, 1);
  EXPECT_EQ(run.model.directives.RectoOnly, 1);
  EXPECT_EQ(dialogs.boxes.size(), 1U);
  EXPECT_EQ(dialogs.Count("when redeposition computations"), 1);
  Run(94);
  EXPECT_EQ(run.plot.CleaningOn, 0);
}

TEST_F(Driver, TheDirectiveSparesTheMessage) {
  text.directives = "re";
  LoadAndRun(100);
  EXPECT_EQ(run.plot.CleaningOn, 1);
  EXPECT_TRUE(dialogs.boxes.empty());
}

// --- sizes -----------------------------------------------------------------------------------------------------------

TEST_F(Driver, ArraysHoldTheLargestPrimitive) {
  text.primitives.push_back("gold\tWide rect size 1 1 cells 9 2 T 0 0 -5");
  text.primitives.push_back("gold\tTall rect size 1 1 cells 2 11 T 0 0 -5");
  LoadAndRun();
  EXPECT_EQ(run.cells.MaxCellsI, 9);
  EXPECT_EQ(run.cells.MaxCellsJ, 11);
  EXPECT_EQ(run.cells.TotalCells, 1 + 16 + 16 + 18 + 22);
  for (const CellBlock* block : {&run.cells.CellData, &run.cells.CellCorners}) {
    EXPECT_EQ(block->primitives(), 15);
    EXPECT_EQ(block->cellsI(), 9);
    EXPECT_EQ(block->cellsJ(), 11);
    EXPECT_GE(block->quantities(), 20);
  }
  EXPECT_EQ(run.cells.CellData.quantities(), 120);
  EXPECT_EQ(run.cells.BorderCorners.primitives(), 25);
  EXPECT_EQ(run.cells.BorderCorners.strips(), 9);
  EXPECT_EQ(run.PrimitiveNames.size(), 16U);
  EXPECT_EQ(run.PrimitiveNames[5], "Tall");
}

TEST_F(Driver, SmallModelsHaveFiveCellsEachWay) {
  text.primitives = {"T5\tThruster thr size 1 1 cells 1 1", "gold\tPlate rect size 1 1 cells 2 3 T 0 0 5"};
  LoadAndRun();
  EXPECT_EQ(run.cells.MaxCellsI, 5);
  EXPECT_EQ(run.cells.MaxCellsJ, 5);
  EXPECT_EQ(run.cells.TotalCells, 7);
}

TEST_F(Driver, SevenPointsACellMustFitTheView) {
  const std::string warning =
      "Risks of memory overflow for the 3D views. Some parts of the last primitives may be not shown properly";
  text.primitives = {"T5\tThruster thr size 1 1 cells 1 1", "gold\tPlate rect size 1 1 cells 305 491 R X 180 T 0 0 5"};
  text.directives = "NO 1";
  LoadAndRun(1);
  EXPECT_EQ(run.cells.TotalCells, 149756);
  EXPECT_EQ(dialogs.Count(warning), 0);
  text.primitives.push_back("gold\tMore rect size 1 1 cells 5 8 T 0 0 -5");
  LoadAndRun(1);
  EXPECT_EQ(run.cells.TotalCells, 149796);  // 1048572 points
  EXPECT_EQ(dialogs.Count(warning), 0);
  text.primitives.push_back("gold\tOne rect size 1 1 cells 1 1 T 0 0 -5");
  EXPECT_TRUE(LoadAndRun(1));
  ASSERT_EQ(dialogs.boxes.size(), 1U);
  EXPECT_EQ(dialogs.boxes[0].text, warning);
  EXPECT_EQ(dialogs.boxes[0].title, "Warning for Huge model");
}

// --- the thruster ----------------------------------------------------------------------------------------------------

TEST_F(Driver, TheFirstRowOfTypeThrIsTheThruster) {
  text.primitives = {"silver\tthr rect size 1 1 cells 2 2 T 0 0 4", "gold\tB THR size 1 1 cells 1 1 T 0 0 1",
                     "T5\t  C   size", "T5\tD thr size 0.5 0.5 cells 2 3 T 1 2 3", "T4\tE thr size 1 1 cells 1 1"};
  text.primitives.erase(text.primitives.begin() + 2);
  LoadAndRun();
  EXPECT_EQ(run.thruster.ThrusterPrimitive, 3);
  EXPECT_EQ(run.thruster.ThrusterName, "T5");
  EXPECT_EQ(run.thruster.ThrusterArea, Data(3, 0, 0, 1) * Data(3, 0, 0, 2));
  EXPECT_NEAR(run.thruster.frame.ThrusterPosition(1), 1, 1e-15);
  EXPECT_NEAR(run.thruster.frame.ThrusterPosition(2), 2, 1e-15);
  EXPECT_NEAR(run.thruster.frame.ThrusterPosition(3), 3, 1e-15);
  EXPECT_THAT(run.materials.MaterialsUsed, ElementsAre("3", "silver", "gold", "T4"));
}

TEST_F(Driver, ItsFrameIsMadeOfTheNormal) {
  Load();
  Run();
  const ThrusterFrame& frame = run.thruster.frame;
  // axiT = z; axDeclin = z x x = y; AxAzimuth = y x z = x.
  const double expected[3][3] = {{0, 0, 1}, {0, 1, 0}, {1, 0, 0}};
  for (std::size_t axis = 1; axis <= 3; ++axis) {
    EXPECT_NEAR(frame.axiT(axis), expected[0][axis - 1], 1e-15);
    EXPECT_NEAR(frame.axDeclin(axis), expected[1][axis - 1], 1e-15);
    EXPECT_NEAR(frame.AxAzimuth(axis), expected[2][axis - 1], 1e-15);
  }
  EXPECT_EQ(run.thruster.PlumeLimitAngle, 60);
  EXPECT_TRUE(dialogs.boxes.empty());
}

TEST_F(Driver, WithoutAThrusterGeometryIsChecked) {
  text.primitives = {"silver\tPlate_1 rect size 1 1 cells 4 4 R X 90 T 0 0 2",
                     "gold\tPlate_2 THR size 2 2 cells 4 4 R X 180 T 0 0 3"};
  EXPECT_TRUE(LoadAndRun(9));
  ASSERT_GE(dialogs.boxes.size(), 2U);
  EXPECT_EQ(dialogs.boxes[0].text,
            "The model do not have any thrusters, please check the data and restart... The tool continue, but limited "
            "to geometry checks only ");
  EXPECT_EQ(dialogs.boxes[0].title, "Input Data Critical Error");
  EXPECT_EQ(dialogs.boxes[1].text, kAbortText);
  // The source point is the first cell of primitive 1, which so has no solid angle.
  ASSERT_EQ(dialogs.boxes.size(), 3U);
  EXPECT_EQ(dialogs.boxes[2].text, "Division by zero");
  EXPECT_EQ(dialogs.boxes[2].title, "Error aSpaceApplicationAnglesThrusters");
  EXPECT_EQ(Data(1, 1, 1, 8), 0);
  EXPECT_EQ(run.thruster.ThrusterPrimitive, 0);
  EXPECT_EQ(run.thruster.ThrusterName, "");
  EXPECT_EQ(run.thruster.PlumeLimitAngle, 180);
  // The frame is that of primitive 1.
  EXPECT_NEAR(std::abs(run.thruster.frame.axiT(2)), 1, 1e-12);
  EXPECT_GT(Data(2, 1, 1, 8), 0);
  EXPECT_LT(Data(2, 1, 1, 8), 10000);
  EXPECT_EQ(Data(2, 1, 1, 13), 0);
  EXPECT_TRUE(run.record.finished);
  EXPECT_TRUE(phases.Has("WriteReports"));
  dialogs.answers = {Answer::Abort};
  EXPECT_THROW(Run(9), ProgramEnd);
}

TEST_F(Driver, AThrusterOfTheRunBeforeIsForgotten) {
  LoadAndRun();
  text.primitives.erase(text.primitives.begin());
  LoadAndRun();
  EXPECT_EQ(run.thruster.ThrusterPrimitive, 0);
  EXPECT_EQ(Data(1, 1, 1, 13), 0);
  EXPECT_TRUE(run.thruster.ThrusterData(slot::SpeciesCount).isEmpty());
}

// --- the database ----------------------------------------------------------------------------------------------------

TEST_F(Driver, TheDatabaseIsReadForTheModel) {
  LoadAndRun();
  EXPECT_EQ(run.thruster.ThrusterData(slot::SpeciesCount).number(), 2);
  EXPECT_THAT(run.materials.MaterialsUsed, ElementsAre("2", "silver", "gold"));
  EXPECT_EQ(run.materials.NumberOfMaterialsUsed, 2);
  EXPECT_THAT(run.materials.MaterialNames, ElementsAre("", "silver", "gold"));
  EXPECT_EQ(run.materials.MaterialTable(1, 4).number(), 0.85);
  EXPECT_EQ(run.materials.MaterialTable(1, 8).number(), 1);
  EXPECT_EQ(run.ResultLabels[90], "Redeposition silver(m/s)");
  EXPECT_EQ(run.ResultLabels[96], "SputtClean. gold(m/s)");
  // Thruster, gases of the thruster, gases, materials, accommodation, yields.
  EXPECT_THAT(run.rowsUsed.rows(),
              ElementsAre(21, 1, 2, 3, 5, 6, 7, 8, 10, 11, 12, 13, 15, 16, 17, 18, 20, 21, 22, 24, 25, 26));
}

TEST_F(Driver, MissingTablesAreToldAndSurvived) {
  text.database = {"Table      1 T", "head", "T5\t\t1\t2\t3\t4\t5\t60", "", "Table      9 Y", "head"};
  EXPECT_TRUE(LoadAndRun());
  for (const char* number : {"10", "6", "7", "8"}) {
    EXPECT_GE(dialogs.Count("Error in the database: Table " + std::string(number) + " is missing."), 1) << number;
  }
  EXPECT_TRUE(run.record.finished);
}

// --- rotation --------------------------------------------------------------------------------------------------------

TEST_F(Driver, APlotDecidesWhetherThePrimitiveTurns) {
  text.primitives.push_back(kRotating);
  Load();
  struct Case {
    double plot;
    int automatic, sputter;
  };
  for (const Case& c : {Case{13, 0, 0},
                        {18, 0, 0},
                        {19, 0, 4},
                        {20, 0, 0},
                        {21, 0, 0},
                        {22, 4, 0},
                        {28, 4, 0},
                        {29, 0, 0},
                        {35, 0, 0},
                        {36, 4, 0},
                        {56, 4, 0},
                        {57, 0, 0},
                        {63, 0, 0},
                        {64, 4, 0},
                        {81, 4, 0},
                        {82, 0, 0},
                        {90, 0, 4},
                        {104, 0, 4}}) {
    SCOPED_TRACE(c.plot);
    phases.moments.clear();
    EXPECT_TRUE(Run(c.plot));
    EXPECT_EQ(run.plot.AutoRotationPlot, c.automatic != 0);
    EXPECT_EQ(run.plot.SputterRotation, c.sputter != 0);
    EXPECT_EQ(run.plot.AutomaticRotationActive, c.automatic);
    EXPECT_EQ(run.plot.SputterRotationActive, c.sputter);
    EXPECT_EQ(phases.Has("ShowRotationList"), c.sputter != 0);
    EXPECT_EQ(phases.Find("PotentialTable")->RotatingPrimitive, 4);
    EXPECT_EQ(phases.Find("HEATFLUX")->RotatingPrimitive, c.automatic + c.sputter);
    EXPECT_EQ(phases.Find("SPUTTERING")->RotatingPrimitive, c.automatic + c.sputter);
    EXPECT_EQ(run.rotation.RotatingPrimitive, 4);
    EXPECT_EQ(run.rotation.RotatingName, "Wing");
    EXPECT_EQ(run.geometry.rotation.RotatingPrimitive, 4);  // restored for what comes behind
  }
  phases.moments.clear();
  Run(19);
  const auto names = phases.Names();
  EXPECT_THAT(names, ElementsAre("ClearView", "PotentialTable", "RotPercentTable", "ShowRotationList", "HEATFLUX",
                                 "SPUTTERING", "FillPointLists", "WriteReports"));
}

TEST_F(Driver, ARotatingPrimitiveHasNoEffectOnAPlotOfDensity) {
  LoadAndRun(13);
  text.primitives.push_back(kRotating);
  LoadAndRun(13);
  const double with = Data(4, 1, 1, 13);
  text.primitives.back() = "silver\tWing rect2sides size -1 1 -2 2 1 1 0.05 cells 4 8 T 0 0 2 R Z 90 T 0 0 1";
  LoadAndRun(13);
  EXPECT_EQ(Data(4, 1, 1, 13), with);
  EXPECT_EQ(run.rotation.RotatingPrimitive, 0);
  EXPECT_EQ(run.rotation.RotatingName, "");
}

TEST_F(Driver, WithoutARotatingPrimitiveNothingIsActive) {
  Load();
  for (const double plot : {19.0, 22.0}) {
    Run(plot);
    EXPECT_EQ(run.plot.AutomaticRotationActive, 0);
    EXPECT_EQ(run.plot.SputterRotationActive, 0);
    EXPECT_FALSE(phases.Has("ShowRotationList"));
  }
}

TEST_F(Driver, SpectraNeedARotatingPrimitive) {
  text.directives = "Spectrum 2";
  EXPECT_TRUE(LoadAndRun(19));
  ASSERT_EQ(dialogs.boxes.size(), 2U);
  EXPECT_EQ(dialogs.boxes[0].text, "The Spectrum feature works only for a rotating primitive, click on OK.");
  EXPECT_EQ(dialogs.boxes[0].title, "Case not supported");
  EXPECT_EQ(dialogs.boxes[0].buttons, Buttons::Ok);
  EXPECT_EQ(dialogs.boxes[1].text, kAbortText);
  dialogs.answers = {Answer::Abort};
  EXPECT_THROW(Run(19), ProgramEnd);
  dialogs.boxes.clear();
  text.primitives.push_back(kRotating);
  phases.moments.clear();
  EXPECT_TRUE(LoadAndRun(19));
  EXPECT_EQ(dialogs.Count("The Spectrum feature"), 0);
  EXPECT_TRUE(phases.Has("SPUTTERING"));
}

}  // namespace
}  // namespace orv::testing
