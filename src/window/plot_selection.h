#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "analysis/run_driver.h"
#include "window/control_entry.h"
#include "window/main_state.h"

// The selection of the plot, as "frmToPlot" shows it.
namespace orv {

inline constexpr int kMemorisedPlots = 8;
inline constexpr std::string_view kSelectionTitle = "Selection To Plot";

inline constexpr std::array<ControlEntry, 17> kSelectionControls = {{
    {.name = "Combo2", .kind = ControlKind::List, .caption = "To plot"},
    {.name = "Option1", .index = 0, .kind = ControlKind::Option},
    {.name = "Option1", .index = 1, .kind = ControlKind::Option},
    {.name = "Option1", .index = 2, .kind = ControlKind::Option},
    {.name = "Option1", .index = 3, .kind = ControlKind::Option},
    {.name = "Option1", .index = 4, .kind = ControlKind::Option},
    {.name = "Option1", .index = 5, .kind = ControlKind::Option},
    {.name = "Option1", .index = 6, .kind = ControlKind::Option},
    {.name = "Option1", .index = 7, .kind = ControlKind::Option},
    {.name = "Command10",
     .kind = ControlKind::Button,
     .caption = "Go Plot",
     .tip = "Go further in the process with the selected plot"},
    {.name = "Command1",
     .kind = ControlKind::Button,
     .caption = "Clear options",
     .tip = "delete all memorized plots, with Right click delete also the saved default options"},
    {.name = "Command3", .kind = ControlKind::Button, .caption = "Default options", .tip = "Write all default options"},
    {.name = "Command2", .kind = ControlKind::Button, .caption = "Cancel", .tip = "Do nothing"},
    {.name = "Check1",
     .kind = ControlKind::Check,
     .caption = "Logarithm decimal scale",
     .tip = "Select Log10 scales (with margins for zero or negative values  or  without if True is checked)"},
    {.name = "Check2", .kind = ControlKind::Check, .caption = "Avoid any margins for plotting zero or negative values"},
    {.name = "Text1", .kind = ControlKind::Text},
    {.name = "Label1"},
}};

// The notice beside the directives box, line by line.
inline constexpr std::array<std::string_view, 4> kDirectiveNotice = {
    "Special Features: Levels lines: L  primitive_n",
    "     Compatibility previous releases =15 or <37: C   rel_n",
    "    Geometry :G     Formulations : F  special_n",
    "     or ignore with space",
};

struct PlotItem {
  int number = 0;
  std::string text;  // the number, a blank and the label
};

// What a plot can be shown from without a new run.
struct ComputedPlots {
  double PreviousIndexPlot = 0;
  int RotatingPrimitive = 0;
};

// The number at the head of an item or of a caption; 0 without one.
int PlotNumberOf(const std::string& text);

// What the last run lacks for a plot, as the selection words it; empty when it lacks nothing.
std::string MissingDataInSelection(double plot, const ComputedPlots& computed);

// The choice of a quantity: a list of all, eight memorised buttons, logarithmic options and a box of directives. The
// choice made last wins. All memory lies in section "UseOrv" of the settings.
class ToPlotForm {
 public:
  ToPlotForm(SettingsStore& settings, ErrorPrompt& prompt) : settings_(settings), prompt_(prompt) {}

  // Fills the form for a model. For a re-plot of a finished run `computed` tells what it holds; without it a full run
  // follows, which lacks nothing. A logarithm directive of the model presets the boxes.
  void Open(const std::string& caption, const RunContext& run, const std::optional<ComputedPlots>& computed);
  // Forgets that the form was ever open.
  void Unload() { loaded_ = false; }
  bool Loaded() const { return loaded_; }

  std::string Title() const { return std::string(kSelectionTitle) + caption_; }
  const std::vector<PlotItem>& Items() const { return items_; }
  int ListIndex() const { return listIndex_; }  // -1: no item is chosen
  const std::array<std::string, kMemorisedPlots>& Captions() const { return captions_; }
  int ButtonOn() const { return buttonOn_; }  // -1: none
  bool Check1() const { return check1_; }
  bool Check2() const { return check2_; }
  const std::string& Directives() const { return directives_; }

  // Events of the controls.
  void ChooseItem(int index);
  void ChooseButton(int button);
  void ChangeCheck1(bool on);
  void ChangeCheck2(bool on);
  void ChangeDirectives(const std::string& text);
  void ClearOptions(bool rightButton);
  void DefaultOptions();
  // "Go Plot": takes the choice and tells the main window. The form closes; false when nothing was chosen.
  bool GoPlot(MainState& main);
  void Cancel();

  double IndexPlotRequest() const { return IndexPlotRequest_; }
  double LogScale() const { return check1_ ? (check2_ ? 2 : 1) : 0; }
  std::string PlotOptionText() const;  // at most 64 characters
  int PlotRunState() const { return PlotRunState_; }
  // For the run; request 0 when cancelled.
  PlotChoice Choice() const { return {IndexPlotRequest_, PlotOptionText(), LogScale()}; }

 private:
  void FillItems(const RunContext& run);
  void AddItem(const std::vector<std::string>& labels, int number);
  int ItemOf(int number) const;
  void Keep(const std::string& key, const std::string& value);
  void MemoriseItem(const PlotItem& item);
  void PresetBoxes(const RunContext& run);
  void KeepLogScale();

  SettingsStore& settings_;
  ErrorPrompt& prompt_;
  std::string caption_;
  std::vector<PlotItem> items_;
  int listIndex_ = -1;
  std::array<std::string, kMemorisedPlots> captions_;
  int buttonOn_ = -1;
  bool check1_ = false;
  bool check2_ = false;
  std::string directives_;
  std::optional<ComputedPlots> computed_;
  double IndexPlotRequest_ = 0;
  int PlotRunState_ = 0;
  bool loaded_ = false;
};

}  // namespace orv
