#include "window/plot_selection.h"

#include <gmock/gmock.h>

#include "numerics/text.h"
#include "window/window_fixture.h"

namespace orv::testing {
namespace {

using ::testing::ElementsAre;

class Selection : public WindowFixture {
 protected:
  void Open(std::optional<ComputedPlots> computed = {}) { form.Open(" Model: m", run, computed); }
  std::string ItemText(int number) const {
    for (const PlotItem& item : form.Items()) {
      if (item.number == number) return item.text;
    }
    return "absent";
  }
  int Chosen() const {
    return form.ListIndex() < 0 ? 0 : form.Items()[static_cast<std::size_t>(form.ListIndex())].number;
  }
  const std::string& Caption(int k) const { return form.Captions()[static_cast<std::size_t>(k)]; }
  std::string Stored(const std::string& key) const { return settings.Of("UseOrv", key); }
};

// --- opening ---------------------------------------------------------------------------------------------------------

TEST_F(Selection, TheFirstOpeningSelectsPlot13) {
  EXPECT_FALSE(form.Loaded());
  Open();
  EXPECT_TRUE(form.Loaded());
  EXPECT_EQ(form.Title(), "Selection To Plot Model: m");
  EXPECT_EQ(Chosen(), 13);
  EXPECT_EQ(form.ButtonOn(), -1);
  EXPECT_EQ(form.LogScale(), 0);
  EXPECT_EQ(form.PlotOptionText(), "");
  EXPECT_THAT(form.Captions(), ::testing::Each(""));
  EXPECT_EQ(form.IndexPlotRequest(), 0) << "the preselection is no click";
  EXPECT_EQ(settings.writes, 0);
}

TEST_F(Selection, ListsEveryLabelledQuantity) {
  Open();
  EXPECT_EQ(form.Items().front().text, "1 X (m)");
  EXPECT_EQ(ItemText(13), "13 Density (m-3)");
  EXPECT_EQ(ItemText(81), "81 MzTpos (N.m)");
  EXPECT_EQ(ItemText(32), "absent");
  EXPECT_EQ(ItemText(58), "absent");
}

TEST_F(Selection, ListsFiveMaterialsWithoutAny) {
  Open();
  std::vector<int> numbers;
  for (const PlotItem& item : form.Items()) {
    if (item.number >= 90) numbers.push_back(item.number);
  }
  EXPECT_THAT(numbers, ElementsAre(90, 95, 100, 91, 96, 101, 92, 97, 102, 93, 98, 103, 94, 99, 104));
  EXPECT_EQ(ItemText(90), "90 Redeposition (m/s)");
  EXPECT_EQ(ItemText(97), "97 SputteringCleaning (m/s)");
  EXPECT_EQ(ItemText(104), "104 NetRedeposition (m/s)");
}

TEST_F(Selection, ListsTheMaterialsOfTheModel) {
  run.materials.MaterialsUsed = {"2", "goldTbl", "silver"};
  Open();
  EXPECT_EQ(ItemText(90), "90 Redeposition gold(m/s)");
  EXPECT_EQ(ItemText(96), "96 SputtClean. silver(m/s)");
  EXPECT_EQ(ItemText(101), "101 NetRedep. silver(m/s)");
  EXPECT_EQ(ItemText(92), "absent");
  EXPECT_TRUE(dialogs.boxes.empty());
}

TEST_F(Selection, ListsANumberOnceWithMoreThanFiveMaterials) {
  run.materials.MaterialsUsed = {"6", "a", "b", "c", "d", "e", "f"};
  Open();
  std::vector<int> numbers;
  for (const PlotItem& item : form.Items()) numbers.push_back(item.number);
  std::sort(numbers.begin(), numbers.end());
  EXPECT_EQ(std::adjacent_find(numbers.begin(), numbers.end()), numbers.end());
  EXPECT_EQ(ItemText(95), "95 Redeposition f(m/s)");
}

TEST_F(Selection, TellsOfALostListOfMaterials) {
  for (const std::vector<std::string>& lost :
       {std::vector<std::string>{}, std::vector<std::string>{"3", "gold"}, std::vector<std::string>{"-1"}}) {
    dialogs.boxes.clear();
    dialogs.log.clear();
    run.materials.MaterialsUsed = lost;
    Open();
    ASSERT_EQ(dialogs.boxes.size(), 1U);
    EXPECT_EQ(dialogs.boxes[0].title, "Petite erreur");
    EXPECT_THAT(dialogs.log, ElementsAre("Loss of initialization in ListMATERIALused()"));
    EXPECT_EQ(ItemText(90), "90 Redeposition (m/s)");
  }
}

TEST_F(Selection, ReadsWhatIsMemorised) {
  settings.Write("UseOrv", "PlotsUsed0", "9 IncidenceOnElem (deg)");
  settings.Write("UseOrv", "PlotsUsed7", "22 Heatflux (W/m2)");
  settings.Write("UseOrv", "PlotsUsedDirective", "L 3");
  settings.Write("UseOrv", "PlotsUsedLastSelected", "19");
  settings.Write("UseOrv", "PlotsUsedLog10", "2");
  Open();
  EXPECT_EQ(Caption(0), "9 IncidenceOnElem (deg)");
  EXPECT_EQ(Caption(1), "");
  EXPECT_EQ(Caption(7), "22 Heatflux (W/m2)");
  EXPECT_EQ(form.Directives(), "L 3");
  EXPECT_EQ(form.PlotOptionText(), "L 3");
  EXPECT_EQ(Chosen(), 19);
  EXPECT_TRUE(form.Check1());
  EXPECT_TRUE(form.Check2());
  EXPECT_EQ(form.LogScale(), 2);
}

TEST_F(Selection, ChoosesNothingWhenTheLastPlotIsNotListed) {
  for (const char* stored : {"94", "58", "", "abc", "-3", "99999999999"}) {
    SCOPED_TRACE(stored);
    run.materials.MaterialsUsed = {"1", "gold"};
    settings.Write("UseOrv", "PlotsUsedLastSelected", stored);
    Open();
    EXPECT_EQ(form.ListIndex(), -1);
    EXPECT_FALSE(form.GoPlot(main));
    EXPECT_EQ(form.Choice().IndexPlotRequest, 0);
    EXPECT_EQ(Stored("PlotsUsedLastSelected"), stored);
  }
}

TEST_F(Selection, ADirectiveOfTheModelPresetsTheBoxesForThatRun) {
  settings.Write("UseOrv", "PlotsUsedLog10", "0");
  run.model.directives.LogScale = 1;
  Open();
  EXPECT_TRUE(form.Check1());
  EXPECT_FALSE(form.Check2());
  EXPECT_EQ(form.Choice().LogScale, 1);
  EXPECT_EQ(Stored("PlotsUsedLog10"), "0");
  form.ChangeCheck1(false);
  EXPECT_EQ(form.Choice().LogScale, 0) << "the boxes win";
  run.model.directives.LogScale = 2;
  Open();
  EXPECT_EQ(form.LogScale(), 2);
  // A re-plot of that run starts with the scale in force.
  run.plot.LogScale = 1;
  Open(ComputedPlots{13, 0});
  EXPECT_EQ(form.LogScale(), 1);
}

// --- choosing --------------------------------------------------------------------------------------------------------

TEST_F(Selection, TheListFillsTheButtonsInOrder) {
  Open();
  ChooseNumber(9);
  EXPECT_EQ(form.IndexPlotRequest(), 9);
  ChooseNumber(13);
  EXPECT_EQ(Caption(0), "9 IncidenceOnElem (deg)");
  EXPECT_EQ(Caption(1), "13 Density (m-3)");
  EXPECT_EQ(Caption(2), "");
  EXPECT_EQ(Stored("PlotsUsed0"), "9 IncidenceOnElem (deg)");
  EXPECT_EQ(Stored("PlotsUsed1"), "13 Density (m-3)");
  EXPECT_EQ(Stored("PlotsUsed2"), "absent");
}

TEST_F(Selection, APlotThatHasAButtonAddsNothing) {
  Open();
  ChooseNumber(9);
  ChooseNumber(13);
  const int writes = settings.writes;
  ChooseNumber(9);
  ChooseNumber(13);
  EXPECT_EQ(settings.writes, writes);
  EXPECT_EQ(Caption(2), "");
  EXPECT_EQ(form.IndexPlotRequest(), 13);
}

TEST_F(Selection, APlotThatHasAButtonBehindAFreeOneAddsNothing) {
  settings.Write("UseOrv", "PlotsUsed5", "13 Density (m-3)");
  Open();
  ChooseNumber(13);
  EXPECT_EQ(Caption(0), "");
  ChooseNumber(9);
  EXPECT_EQ(Caption(0), "9 IncidenceOnElem (deg)");
}

TEST_F(Selection, FullButtonsStay) {
  Open();
  for (const int number : {1, 2, 3, 4, 5, 6, 7, 8}) ChooseNumber(number);
  const auto before = form.Captions();
  ChooseNumber(22);
  EXPECT_EQ(form.Captions(), before);
  EXPECT_EQ(form.IndexPlotRequest(), 22);
}

TEST_F(Selection, TheLastChoiceWins) {
  settings.Write("UseOrv", "PlotsUsed2", "22 Heatflux (W/m2)");
  Open();
  ChooseNumber(9);
  form.ChooseButton(2);
  EXPECT_EQ(form.ButtonOn(), 2);
  EXPECT_EQ(Chosen(), 22) << "the button selects its item";
  ASSERT_TRUE(form.GoPlot(main));
  EXPECT_EQ(form.IndexPlotRequest(), 22);
  Open();
  form.ChooseButton(2);
  ChooseNumber(9);
  EXPECT_EQ(form.ButtonOn(), -1);
  ASSERT_TRUE(form.GoPlot(main));
  EXPECT_EQ(form.IndexPlotRequest(), 9);
}

TEST_F(Selection, AButtonWithoutItsItemIsFiredByGoPlot) {
  settings.Write("UseOrv", "PlotsUsed0", "94 Redeposition old(m/s)");
  run.materials.MaterialsUsed = {"1", "gold"};
  Open();
  form.ChooseButton(0);
  EXPECT_EQ(form.ListIndex(), -1);
  ASSERT_TRUE(form.GoPlot(main));
  EXPECT_EQ(form.IndexPlotRequest(), 94);
}

TEST_F(Selection, AnEmptyButtonAndAFalsePlaceChooseNothing) {
  Open();
  ChooseNumber(9);
  for (const int button : {3, -1, 8}) form.ChooseButton(button);
  for (const int item : {-1, 100000}) form.ChooseItem(item);
  EXPECT_EQ(form.ButtonOn(), -1);
  EXPECT_EQ(form.IndexPlotRequest(), 9);
}

// --- boxes -----------------------------------------------------------------------------------------------------------

TEST_F(Selection, TheLogarithmBoxes) {
  Open();
  form.ChangeCheck1(true);
  EXPECT_EQ(form.LogScale(), 1);
  EXPECT_EQ(Stored("PlotsUsedLog10"), "1");
  form.ChangeCheck2(true);
  EXPECT_EQ(form.LogScale(), 2);
  EXPECT_EQ(Stored("PlotsUsedLog10"), "2");
  form.ChangeCheck2(false);
  EXPECT_TRUE(form.Check1());
  EXPECT_EQ(Stored("PlotsUsedLog10"), "1");
  form.ChangeCheck1(false);
  EXPECT_EQ(form.LogScale(), 0);
  EXPECT_EQ(Stored("PlotsUsedLog10"), "0");
  form.ChangeCheck2(true);
  EXPECT_TRUE(form.Check1()) << "forced on";
  form.ChangeCheck1(false);
  EXPECT_EQ(form.LogScale(), 0);
  form.ChangeCheck2(false);
  EXPECT_FALSE(form.Check1()) << "left at 0";
  form.ChangeCheck2(true);
  form.ChangeCheck1(false);
  form.ChangeCheck1(true);
  EXPECT_EQ(form.LogScale(), 2);
}

TEST_F(Selection, DirectivesAreSavedWholeAndCutForTheRun) {
  Open();
  const std::string accented = "\xC3\xA9";
  std::string text = "L 3 ";
  for (int k = 0; k < 80; ++k) text += accented;
  form.ChangeDirectives(text);
  EXPECT_EQ(Stored("PlotsUsedDirective"), text);
  EXPECT_EQ(CharacterCount(form.PlotOptionText()), 64U);
  EXPECT_TRUE(StartsWith(text, form.PlotOptionText()));
  EXPECT_EQ(form.Choice().PlotOptionText, form.PlotOptionText());
  form.ChangeDirectives("");
  EXPECT_EQ(Stored("PlotsUsedDirective"), "");
  EXPECT_EQ(form.PlotOptionText(), "");
}

// --- clear and default options
// -----------------------------------------------------------------------------------------

TEST_F(Selection, ClearOptionsEmptiesTheButtons) {
  Open();
  form.DefaultOptions();
  ChooseNumber(9);
  form.ChooseButton(1);
  form.ClearOptions(false);
  EXPECT_THAT(form.Captions(), ::testing::Each(""));
  EXPECT_EQ(form.ButtonOn(), -1);
  for (int k = 0; k < 8; ++k) {
    EXPECT_EQ(Stored("PlotsUsed" + std::to_string(k)), "");
    EXPECT_NE(Stored("PlotsUsedDefault" + std::to_string(k)), "") << "the defaults stay";
  }
  EXPECT_EQ(form.IndexPlotRequest(), 9) << "the item is still chosen";
}

TEST_F(Selection, ClearOptionsWithTheRightButtonEmptiesTheDefaultsToo) {
  Open();
  form.DefaultOptions();
  form.ClearOptions(true);
  for (int k = 0; k < 8; ++k) {
    EXPECT_EQ(Stored("PlotsUsed" + std::to_string(k)), "");
    EXPECT_EQ(Stored("PlotsUsedDefault" + std::to_string(k)), "");
  }
}

TEST_F(Selection, ClearOptionsTakesBackAChoiceThatOnlyAButtonShowed) {
  settings.Write("UseOrv", "PlotsUsed0", "94 Redeposition old(m/s)");
  run.materials.MaterialsUsed = {"1", "gold"};
  Open();
  form.ChooseButton(0);
  form.ClearOptions(false);
  EXPECT_FALSE(form.GoPlot(main));
}

TEST_F(Selection, DefaultOptionsShowTheStandardPlots) {
  Open();
  form.DefaultOptions();
  std::vector<int> numbers;
  for (const std::string& caption : form.Captions()) numbers.push_back(PlotNumberOf(caption));
  EXPECT_THAT(numbers, ElementsAre(8, 9, 10, 13, 15, 70, 19, 22));
  EXPECT_EQ(Stored("PlotsUsedDefault0"), "8 DistanceThrToElem (m)");
  EXPECT_EQ(Stored("PlotsUsedDefault7"), "22 Heatflux (W/m2)");
}

TEST_F(Selection, DefaultOptionsPreferTheSavedOnes) {
  settings.Write("UseOrv", "PlotsUsedDefault2", "24 Fy (N)");
  Open();
  form.DefaultOptions();
  EXPECT_EQ(Caption(1), "9 IncidenceOnElem (deg)");
  EXPECT_EQ(Caption(2), "24 Fy (N)");
  EXPECT_EQ(Stored("PlotsUsedDefault2"), "24 Fy (N)");
}

// --- go and cancel
// -----------------------------------------------------------------------------------------------------

TEST_F(Selection, GoPlotTakesThePreselectedItem) {
  Open();
  EXPECT_TRUE(form.GoPlot(main));
  EXPECT_EQ(form.Choice().IndexPlotRequest, 13);
  EXPECT_EQ(Caption(0), "13 Density (m-3)");
  EXPECT_EQ(Stored("PlotsUsedLastSelected"), "13");
  EXPECT_EQ(main.command8Tip, "Mean data only");
  EXPECT_EQ(main.panelTip, "");
  EXPECT_EQ(form.PlotRunState(), 1);
}

TEST_F(Selection, GoPlotTellsOfRectoFromPlot90) {
  Open();
  ChooseNumber(90);
  EXPECT_TRUE(form.GoPlot(main));
  EXPECT_EQ(main.panelTip, "RECTO");
  EXPECT_EQ(form.PlotRunState(), 2);
  EXPECT_EQ(main.panel, "Re-Plots") << "a full run lacks nothing";
  ChooseNumber(89 - 8);
  EXPECT_TRUE(form.GoPlot(main));
  EXPECT_EQ(main.panelTip, "");
  EXPECT_EQ(form.PlotRunState(), 1);
}

TEST_F(Selection, GoPlotTellsWhatTheLastRunLacks) {
  struct Row {
    double before;
    int rotating;
    int plot;
    const char* message;
    int state;
  };
  const std::string rotation =
      "autorotation NOT performed. To compute autorotation please use UpdateExcel and select plot 19 or plot>=90";
  for (const Row& row : {Row{13, 0, 90, "NO DATA: redeposition process not performed ", 1},
                         Row{89, 0, 94, "NO DATA: redeposition process not performed ", 1},
                         Row{94, 0, 95, "NO DATA: cleaning process not performed ", 1},
                         Row{13, 0, 104, "NO DATA: cleaning process not performed ", 1},
                         Row{13, 2, 19, rotation.c_str(), 1}, Row{13, 0, 19, "Re-Plots", 1},
                         Row{19, 2, 19, "Re-Plots", 1}, Row{90, 2, 19, "Re-Plots", 1}, Row{90, 0, 91, "Re-Plots", 2},
                         Row{95, 0, 100, "Re-Plots", 2}, Row{95, 0, 90, "Re-Plots", 2}, Row{13, 0, 9, "Re-Plots", 1}}) {
    SCOPED_TRACE(std::to_string(row.before) + " then " + std::to_string(row.plot));
    main = MainState{};
    Open(ComputedPlots{row.before, row.rotating});
    ChooseNumber(row.plot);
    EXPECT_TRUE(form.GoPlot(main));
    EXPECT_EQ(main.panel, row.message);
    EXPECT_EQ(form.PlotRunState(), row.state);
    EXPECT_EQ(form.IndexPlotRequest(), row.plot);
  }
}

TEST_F(Selection, CancelAsksForNothing) {
  Open();
  ChooseNumber(9);
  form.Cancel();
  EXPECT_EQ(form.Choice().IndexPlotRequest, 0);
  EXPECT_EQ(Stored("PlotsUsedLastSelected"), "absent");
  Open();
  EXPECT_EQ(Caption(0), "9 IncidenceOnElem (deg)") << "what the list filled stays";
}

TEST_F(Selection, SurvivesAStoreThatCannotBeWritten) {
  Open();
  settings.refuse = true;
  ChooseNumber(9);
  form.ChangeDirectives("G");
  form.ChangeCheck2(true);
  EXPECT_TRUE(form.GoPlot(main));
  EXPECT_EQ(form.Choice().IndexPlotRequest, 9);
  EXPECT_EQ(form.Choice().LogScale, 2);
  EXPECT_TRUE(dialogs.boxes.empty());
  ASSERT_FALSE(dialogs.log.empty());
  EXPECT_EQ(dialogs.log.back(), "_The setting PlotsUsed0 could not be stored: Path/File access error");
}

TEST(SelectionControls, BearTheirTexts) {
  const auto find = [](std::string_view name) {
    for (const ControlEntry& entry : kSelectionControls) {
      if (entry.name == name) return entry;
    }
    return ControlEntry{};
  };
  EXPECT_EQ(find("Combo2").caption, "To plot");
  EXPECT_EQ(find("Command10").caption, "Go Plot");
  EXPECT_EQ(find("Command10").tip, "Go further in the process with the selected plot");
  EXPECT_EQ(find("Command1").caption, "Clear options");
  EXPECT_EQ(find("Command1").tip, "delete all memorized plots, with Right click delete also the saved default options");
  EXPECT_EQ(find("Command3").caption, "Default options");
  EXPECT_EQ(find("Command3").tip, "Write all default options");
  EXPECT_EQ(find("Command2").caption, "Cancel");
  EXPECT_EQ(find("Command2").tip, "Do nothing");
  EXPECT_EQ(find("Check1").caption, "Logarithm decimal scale");
  EXPECT_EQ(find("Check1").tip,
            "Select Log10 scales (with margins for zero or negative values  or  without if True is checked)");
  EXPECT_EQ(find("Check2").caption, "Avoid any margins for plotting zero or negative values");
  EXPECT_EQ(kDirectiveNotice[0], "Special Features: Levels lines: L  primitive_n");
  EXPECT_EQ(kDirectiveNotice[1], "     Compatibility previous releases =15 or <37: C   rel_n");
  EXPECT_EQ(kDirectiveNotice[2], "    Geometry :G     Formulations : F  special_n");
  EXPECT_EQ(kDirectiveNotice[3], "     or ignore with space");
  EXPECT_EQ(ObjectName(kSelectionControls[3]), "Option1(2)");
  EXPECT_EQ(ObjectName(find("Combo2")), "Combo2");
}

}  // namespace
}  // namespace orv::testing
