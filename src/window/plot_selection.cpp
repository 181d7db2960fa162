#include "window/plot_selection.h"

#include <algorithm>
#include <charconv>

#include "analysis/result_labels.h"
#include "numerics/number_format.h"
#include "numerics/text.h"
#include "window/shell_failures.h"

namespace orv {
namespace {

constexpr int kLastListed = 89;
constexpr int kRedeposition = 90;
constexpr int kCleaning = 95;
constexpr int kMaterialsWithoutModel = 5;
constexpr std::size_t kOptionCharacters = 64;
constexpr std::array<int, kMemorisedPlots> kDefaultPlots = {8, 9, 10, 13, 15, 70, 19, 22};

std::string ButtonKey(const char* key, int button) {
  return key + std::to_string(button);
}
std::string PlotsUsed(int button) {
  return ButtonKey("PlotsUsed", button);
}
std::string PlotsUsedDefault(int button) {
  return ButtonKey("PlotsUsedDefault", button);
}

// 0 for a text that does not begin with a number, or with one too large.
int LeadingInteger(const std::string& text) {
  int number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

// How many materials the list holds; -1 when it is no list of materials.
int MaterialCount(const std::vector<std::string>& used) {
  if (used.empty()) return -1;
  const int count = LeadingInteger(used[0]);
  return count >= 0 && static_cast<std::size_t>(count) < used.size() ? count : -1;
}

}  // namespace

int PlotNumberOf(const std::string& text) {
  const int number = LeadingInteger(text);
  return number > 0 && number <= kQuantities ? number : 0;
}

std::string MissingDataInSelection(double plot, const ComputedPlots& computed) {
  const double before = computed.PreviousIndexPlot;
  if (plot >= kCleaning && before < kCleaning) return "NO DATA: cleaning process not performed ";
  if (plot >= kRedeposition && before < kRedeposition) return "NO DATA: redeposition process not performed ";
  if (computed.RotatingPrimitive != 0 && plot == 19 && !IsSputterRotationPlot(before)) {
    return "autorotation NOT performed. To compute autorotation please use UpdateExcel and select plot 19 or plot>=90";
  }
  return {};
}

void ToPlotForm::Open(const std::string& caption, const RunContext& run, const std::optional<ComputedPlots>& computed) {
  caption_ = caption;
  computed_ = computed;
  IndexPlotRequest_ = 0;
  buttonOn_ = -1;
  FillItems(run);
  for (int button = 0; button < kMemorisedPlots; ++button) {
    captions_[static_cast<std::size_t>(button)] = settings_.Read(std::string(kSectionUseOrv), PlotsUsed(button), "");
  }
  directives_ = ReadSetting(settings_, kSectionUseOrv, "PlotsUsedDirective");
  listIndex_ = ItemOf(PlotNumberOf(ReadSetting(settings_, kSectionUseOrv, "PlotsUsedLastSelected")));
  PresetBoxes(run);
  loaded_ = true;
}

void ToPlotForm::FillItems(const RunContext& run) {
  items_.clear();
  const std::vector<std::string>& used = run.materials.MaterialsUsed;
  int materials = MaterialCount(used);
  if (materials < 0) {
    prompt_("Loss of initialization in ListMATERIALused()");
    materials = 0;
  }
  std::vector<std::string> labels;
  FillResultLabels(materials == 0 ? std::vector<std::string>{"0"} : used, labels, prompt_);
  for (int number = 1; number <= kLastListed; ++number) {
    if (!LabelOf(labels, number).empty()) AddItem(labels, number);
  }
  const int rows = materials == 0 ? kMaterialsWithoutModel : materials;
  for (int k = 1; k <= rows; ++k) {
    for (const int block : {89, 94, 99}) AddItem(labels, block + k);
  }
}

// More than five materials run on into the next block; a number is listed once.
void ToPlotForm::AddItem(const std::vector<std::string>& labels, int number) {
  if (ItemOf(number) >= 0 || number > kQuantities) return;
  items_.push_back({number, std::to_string(number) + " " + ReplaceAll(LabelOf(labels, number), "Tbl", "")});
}

int ToPlotForm::ItemOf(int number) const {
  const auto found = std::find_if(items_.begin(), items_.end(), [&](const PlotItem& i) { return i.number == number; });
  return found == items_.end() ? -1 : static_cast<int>(found - items_.begin());
}

void ToPlotForm::PresetBoxes(const RunContext& run) {
  double scale = LeadingInteger(ReadSetting(settings_, kSectionUseOrv, "PlotsUsedLog10"));
  if (run.model.directives.LogScale != 0) scale = computed_ ? run.plot.LogScale : run.model.directives.LogScale;
  check1_ = scale >= 1;
  check2_ = scale >= 2;
}

void ToPlotForm::Keep(const std::string& key, const std::string& value) {
  KeepSetting(settings_, prompt_, kSectionUseOrv, key, value);
}

void ToPlotForm::ChooseItem(int index) {
  if (index < 0 || static_cast<std::size_t>(index) >= items_.size()) return;
  listIndex_ = index;
  buttonOn_ = -1;
  const PlotItem& item = items_[static_cast<std::size_t>(index)];
  IndexPlotRequest_ = item.number;
  MemoriseItem(item);
}

// The first free button takes the item unless one shows it already; when all are taken none changes.
void ToPlotForm::MemoriseItem(const PlotItem& item) {
  const auto shows = [&](const std::string& caption) { return PlotNumberOf(caption) == item.number; };
  if (std::any_of(captions_.begin(), captions_.end(), shows)) return;
  const auto free = std::find(captions_.begin(), captions_.end(), "");
  if (free == captions_.end()) return;
  *free = item.text;
  Keep(PlotsUsed(static_cast<int>(free - captions_.begin())), item.text);
}

void ToPlotForm::ChooseButton(int button) {
  if (button < 0 || button >= kMemorisedPlots) return;
  const int number = PlotNumberOf(captions_[static_cast<std::size_t>(button)]);
  if (number == 0) return;
  buttonOn_ = button;
  IndexPlotRequest_ = number;
  listIndex_ = ItemOf(number);
}

void ToPlotForm::KeepLogScale() {
  Keep("PlotsUsedLog10", NumberText(LogScale()));
}

void ToPlotForm::ChangeCheck1(bool on) {
  check1_ = on;
  KeepLogScale();
}

void ToPlotForm::ChangeCheck2(bool on) {
  check2_ = on;
  if (on) check1_ = true;
  KeepLogScale();
}

void ToPlotForm::ChangeDirectives(const std::string& text) {
  directives_ = text;
  Keep("PlotsUsedDirective", text);
}

std::string ToPlotForm::PlotOptionText() const {
  return LeftCharacters(directives_, kOptionCharacters);
}

void ToPlotForm::ClearOptions(bool rightButton) {
  for (int button = 0; button < kMemorisedPlots; ++button) {
    captions_[static_cast<std::size_t>(button)].clear();
    Keep(PlotsUsed(button), "");
    if (rightButton) Keep(PlotsUsedDefault(button), "");
  }
  buttonOn_ = -1;
  if (listIndex_ < 0) IndexPlotRequest_ = 0;
}

void ToPlotForm::DefaultOptions() {
  for (int button = 0; button < kMemorisedPlots; ++button) {
    std::string& caption = captions_[static_cast<std::size_t>(button)];
    caption = settings_.Read(std::string(kSectionUseOrv), PlotsUsedDefault(button), "");
    if (!caption.empty()) continue;
    const int item = ItemOf(kDefaultPlots[static_cast<std::size_t>(button)]);
    if (item < 0) continue;
    caption = items_[static_cast<std::size_t>(item)].text;
    Keep(PlotsUsedDefault(button), caption);
  }
}

bool ToPlotForm::GoPlot(MainState& main) {
  if (listIndex_ < 0 && buttonOn_ >= 0) {
    ChooseButton(buttonOn_);
  } else {
    ChooseItem(listIndex_);
  }
  main.command8Tip = "Mean data only";
  if (!(IndexPlotRequest_ > 0)) return false;
  const bool redeposition = IndexPlotRequest_ >= kRedeposition;
  main.panelTip = redeposition ? "RECTO" : "";
  PlotRunState_ = redeposition ? 2 : 1;
  if (computed_) {
    const std::string missing = MissingDataInSelection(IndexPlotRequest_, *computed_);
    if (!missing.empty()) {
      main.panel = missing;
      PlotRunState_ = 1;
    }
  }
  Keep("PlotsUsedLastSelected", NumberText(IndexPlotRequest_));
  return true;
}

void ToPlotForm::Cancel() {
  IndexPlotRequest_ = 0;
}

}  // namespace orv
