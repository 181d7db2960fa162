#include "window/options_form.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "numerics/number_format.h"
#include "numerics/text.h"
#include "window/shell_failures.h"

namespace orv {
namespace {

constexpr int kInteractiveBox = 7;
constexpr int kMoonBox = 8;
constexpr int kRecordBoxes = 7;  // Check1(0) to Check1(6)
constexpr int kBackground = 15;  // first Text5 of the background
constexpr double kMoonGain = 9;
constexpr std::array<double, 3> kWhite = {kLargestColour, kLargestColour, kLargestColour};
constexpr std::array<const char*, 3> kBackgroundKeys = {"Background15", "Background16", "Background17"};

// The six colours in the order of their fields.
template <class Record>
auto ColoursOf(Record& record) {
  return std::array{&record.ColourOfAxisLabels, &record.ColourOfAxis,   &record.ColourOfPlotNominal,
                    &record.ColourOfPlotEvents, &record.ColourOfSphere, &record.ColourOfBackGround};
}

template <class Record>
auto FactorsOf(Record& record) {
  return std::array{&record.ThicknessLinePlot, &record.LengthAxisFactor, &record.ThicknessLineAxis,
                    &record.PositionFactor};
}

std::string BoxText(bool on) {
  return on ? "1" : "0";
}

// A number as typed, with a dot or a comma; 0 for anything else.
double TypedNumber(const std::string& text) {
  const std::string plain = Trim(ReplaceAll(text, ",", "."));
  double number = 0;
  std::from_chars(plain.data(), plain.data() + plain.size(), number);
  return std::isfinite(number) ? number : 0;
}

// Boxes and scroll bars hold whole numbers within their bounds, whatever a store says; the keyword is in capitals.
std::string Admitted(const ControlEntry& entry, const std::string& text) {
  if (entry.name == "Text9") return UpperCase(Trim(text));
  if (entry.kind != ControlKind::Check && entry.kind != ControlKind::Scroll) return text;
  return NumberText(CInt(std::clamp(TypedNumber(text), entry.minimum, entry.maximum)));
}

}  // namespace

OptionsForm::OptionsForm(SettingsStore& settings, ViewState& view, ErrorPrompt& prompt)
    : settings_(settings), view_(view), prompt_(prompt) {
  for (std::size_t place = 0; place < kOptionControls.size(); ++place) values_[place] = kOptionControls[place].initial;
  check3Caption_ = kOptionControls[Place("Check3", kSingle)].caption;
  defaults_ = Record();
}

std::size_t OptionsForm::Place(std::string_view name, int index) const {
  const auto found = std::find_if(kOptionControls.begin(), kOptionControls.end(),
                                  [&](const ControlEntry& e) { return e.name == name && e.index == index; });
  if (found == kOptionControls.end()) Raise(FailureNumber::InvalidProcedureCall);
  return static_cast<std::size_t>(found - kOptionControls.begin());
}

const std::string& OptionsForm::Value(std::string_view name, int index) const {
  return values_[Place(name, index)];
}

double OptionsForm::NumberOf(std::string_view name, int index) const {
  const std::size_t place = Place(name, index);
  const ControlEntry& entry = kOptionControls[place];
  return std::clamp(TypedNumber(values_[place]), entry.minimum, entry.maximum);
}

void OptionsForm::Keep(std::string_view key, const std::string& value) {
  KeepSetting(settings_, prompt_, kSectionUse, std::string(key), value);
}

void OptionsForm::Load() {
  view_.options = defaults_;
  const bool stored = LoadOptions(settings_, view_.options);
  if (stored) ShowRecord(view_.options);
  for (std::size_t place = 0; place < kOptionControls.size(); ++place) {
    const ControlEntry& entry = kOptionControls[place];
    if (entry.key.empty()) continue;
    const std::string text = settings_.Read(std::string(kSectionUse), std::string(entry.key), values_[place]);
    values_[place] = Admitted(entry, text);
  }
  TakeLoneFields();
}

void OptionsForm::OptionAffecteUser() {
  ShowRecord(view_.options);
}

void OptionsForm::ShowRecord(const Options& record) {
  for (int box = 0; box < kRecordBoxes; ++box) {
    Field("Check1", box) = BoxText(record.Check1[static_cast<std::size_t>(box)] != 0);
  }
  Field("Check1", kInteractiveBox) = BoxText(record.Interactive != 0);
  Field("Check1", kMoonBox) = BoxText(record.MoonFactor > 1);
  const auto factors = FactorsOf(record);
  for (int k = 0; k < kOptionFactors; ++k) Field("Text4", k) = NumberText(*factors[static_cast<std::size_t>(k)]);
  const auto colours = ColoursOf(record);
  for (int k = 0; k < kOptionColours; ++k) {
    const auto c = static_cast<std::size_t>(k);
    Field("Text5", k) = NumberText((*colours[c / 3])[c % 3]);
  }
  Field("Check7") = BoxText(record.ColourOfBackGround == kWhite);
  Set("HScroll3", kSingle, NumberText(record.SatelliteSize));
  Set("Check3", kSingle, BoxText(record.SatelliteShown != 0));
  Set("Check4", kSingle, BoxText(record.PanelsTrackSun != 0));
}

// A field as the program sets it: nothing is stored.
void OptionsForm::Set(std::string_view name, int index, const std::string& text) {
  const std::size_t place = Place(name, index);
  values_[place] = Admitted(kOptionControls[place], text);
}

void OptionsForm::Change(std::string_view name, int index, const std::string& text) {
  Type(name, index, text);
  StoreTyped();
}

void OptionsForm::StoreTyped() {
  for (std::size_t place = 0; place < kOptionControls.size(); ++place) {
    if (typed_[place]) Keep(kOptionControls[place].key, values_[place]);
    typed_[place] = false;
  }
}

void OptionsForm::Type(std::string_view name, int index, const std::string& text) {
  const std::size_t place = Place(name, index);
  const ControlEntry& entry = kOptionControls[place];
  const std::string value = Admitted(entry, text);
  if (value == values_[place]) return;
  values_[place] = value;
  typed_[place] = !entry.key.empty();
  if (name == "Check7") ChangeWhite(value == "1");
  if (name == "Check8") ShowValueAxis(index + 1);
  if (name == "Check1" && index == kInteractiveBox) view_.options.Interactive = value == "1" ? 1 : 0;
  TakeLoneFields();
}

// Fields that the view follows at once.
void OptionsForm::TakeLoneFields() {
  view_.valueColours = Ticked("Check5");
  view_.satelliteAxes = Ticked("Check6");
  view_.options.SatelliteSize = NumberOf("HScroll3", kSingle);
  view_.options.SatelliteShown = Ticked("Check3") ? 1 : 0;
  view_.options.PanelsTrackSun = Ticked("Check4") ? 1 : 0;
  view_.earthTexture = Value("Text7");
  view_.moonTexture = Value("Text8");
}

// A background that is white already is not the one to come back to.
void OptionsForm::ChangeWhite(bool white) {
  const bool keep = Record().ColourOfBackGround != kWhite;
  for (int part = 0; part < 3; ++part) {
    const char* const key = kBackgroundKeys[static_cast<std::size_t>(part)];
    std::string& field = Field("Text5", kBackground + part);
    if (white) {
      if (keep) Keep(key, field);
      field = NumberText(kLargestColour);
    } else {
      field = ReadSetting(settings_, kSectionUse, key);
    }
  }
}

void OptionsForm::KeepBackground(const std::array<double, 3>& colour) {
  for (std::size_t part = 0; part < 3; ++part) Keep(kBackgroundKeys[part], NumberText(colour[part]));
}

void OptionsForm::ShowBackground() {
  const std::array<double, 3>& colour = view_.options.ColourOfBackGround;
  for (int part = 0; part < 3; ++part) {
    Field("Text5", kBackground + part) = NumberText(colour[static_cast<std::size_t>(part)]);
  }
  Field("Check7") = BoxText(colour == kWhite);
}

std::array<double, 3> OptionsForm::StoredBackground() const {
  std::array<double, 3> colour{};
  for (std::size_t part = 0; part < 3; ++part) {
    const double value = TypedNumber(ReadSetting(settings_, kSectionUse, kBackgroundKeys[part]));
    colour[part] = std::clamp(value, 0.0, kLargestColour);
  }
  return colour;
}

Options OptionsForm::Record() const {
  Options record;
  for (int box = 0; box < kRecordBoxes; ++box) {
    record.Check1[static_cast<std::size_t>(box)] = Ticked("Check1", box) ? 1 : 0;
  }
  const auto factors = FactorsOf(record);
  for (int k = 0; k < kOptionFactors; ++k) *factors[static_cast<std::size_t>(k)] = NumberOf("Text4", k);
  const auto colours = ColoursOf(record);
  for (int k = 0; k < kOptionColours; ++k) {
    const auto c = static_cast<std::size_t>(k);
    (*colours[c / 3])[c % 3] = NumberOf("Text5", k);
  }
  record.MoonFactor = (Ticked("Check1", kMoonBox) ? 1 : 0) * kMoonGain + 1;
  record.Interactive = Ticked("Check1", kInteractiveBox) ? 1 : 0;
  record.SatelliteSize = NumberOf("HScroll3", kSingle);
  record.SatelliteShown = Ticked("Check3") ? 1 : 0;
  record.PanelsTrackSun = Ticked("Check4") ? 1 : 0;
  return record;
}

bool OptionsForm::Pending() const {
  return !(Record() == view_.options);
}

// The record takes the fields; those show what it took.
void OptionsForm::Apply() {
  view_.options = Record();
  OptionAffecteUser();
}

void OptionsForm::Command1() {
  StoreTyped();
  Apply();
  try {
    SaveOptions(settings_, view_.options);
  } catch (const RuntimeFailure& failure) {
    prompt_("_The options could not be stored: " + failure.description());
  }
  Keep("SetDirBMP", Value("Text6"));
}

void OptionsForm::Command2() {
  StoreTyped();
  Apply();
  visible_ = false;
}

void OptionsForm::Command3() {
  view_.options = defaults_;
  Change("HScroll3", NumberText(defaults_.SatelliteSize));
  Change("Check3", BoxText(defaults_.SatelliteShown != 0));
  Change("Check4", BoxText(defaults_.PanelsTrackSun != 0));
  OptionAffecteUser();
  Change("Text6", "");
  Change("Text9", "MAX");
  Command1();
}

void OptionsForm::mnuOinteractive_Click() {
  Change("Check1", kInteractiveBox, BoxText(!InteractiveMark()));
}

void OptionsForm::ForbidInteractive() {
  Field("Check1", kInteractiveBox) = "0";
  view_.options.Interactive = 0;
}

int OptionsForm::ValueAxis() const {
  for (int axis = 1; axis <= kOptionAxes; ++axis) {
    if (Ticked("Check8", axis - 1)) return axis;
  }
  return 0;
}

void OptionsForm::ShowValueAxis(int axis) {
  for (int box = 0; box < kOptionAxes; ++box) Field("Check8", box) = BoxText(box + 1 == axis);
}

std::string OptionsForm::SatelliteLabel() const {
  return "Satellite size  " + NumberText(NumberOf("HScroll3", kSingle) + 1);
}

}  // namespace orv
