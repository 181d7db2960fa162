#pragma once

#include <array>
#include <string>
#include <string_view>

#include "numerics/error_prompt.h"
#include "numerics/settings.h"
#include "view/view_state.h"
#include "window/options_table.h"

namespace orv {

// The options frame: its fields as texts and boxes, and their way to the record of options, the view and the settings.
// The record takes most fields at "Save" and "Close" only; those with a key of their own are stored at each change.
class OptionsForm {
 public:
  OptionsForm(SettingsStore& settings, ViewState& view, ErrorPrompt& prompt);

  // At the start: the stored options and texts into the fields and the view. Those of a new user stay as on the form,
  // and nothing is stored. Satellite size, satellite and panels come from their own keys where they are stored.
  void Load();
  // Copies the record into the fields.
  void OptionAffecteUser();

  // A field's text, "0" or "1" of a box. Failure 5 for a control that is not in the table.
  const std::string& Value(std::string_view name, int index = kSingle) const;
  bool Ticked(std::string_view name, int index = kSingle) const { return Value(name, index) == "1"; }
  // A change by the user: stores the key of the control and does what it does at once.
  void Change(std::string_view name, int index, const std::string& text);
  void Change(std::string_view name, const std::string& text) { Change(name, kSingle, text); }
  // A change that others follow, as a letter of a text: acts as Change, but is stored by StoreTyped, "Save" and
  // "Close".
  void Type(std::string_view name, int index, const std::string& text);
  void StoreTyped();

  void Command1();  // "Save"
  void Command2();  // "Close"
  void Command3();  // "Factory Settings"
  void Command4() { helpShown_ = true; }
  void Command5() { helpShown_ = false; }

  void Show() { visible_ = true; }
  bool Visible() const { return visible_; }
  bool HelpShown() const { return helpShown_; }
  // The part with the colours is shown too.
  bool Extended() const { return Ticked("Check2"); }
  // Fields were changed since the record took them.
  bool Pending() const;
  // The mark of the menu "&Interactive", and a click on it.
  bool InteractiveMark() const { return Ticked("Check1", 7); }
  void mnuOinteractive_Click();
  // Interactivity off, in the field and in the record, without storing it.
  void ForbidInteractive();

  // The axis of the values of a range plot, 1 .. 3 for x, y, z, whose box Check8 is ticked; 0: none. The plot tells it,
  // a click on one of the boxes chooses another.
  int ValueAxis() const;
  void ShowValueAxis(int axis);

  std::string SatelliteLabel() const;  // beside HScroll3
  // Caption of Check3: what key I last wrote there.
  std::string Check3Caption() const { return check3Caption_; }
  void SetCheck3Caption(const std::string& caption) { check3Caption_ = caption; }
  std::string MainKeyword() const { return Value("Text9"); }
  std::string ImageDirectory() const { return Value("Text6"); }

  // The background that lightback and "white" exchange with white; it is stored.
  void KeepBackground(const std::array<double, 3>& colour);
  std::array<double, 3> StoredBackground() const;
  // Copies the background alone into its fields.
  void ShowBackground();

 private:
  std::size_t Place(std::string_view name, int index) const;
  std::string& Field(std::string_view name, int index = kSingle) { return values_[Place(name, index)]; }
  void Set(std::string_view name, int index, const std::string& text);
  void Keep(std::string_view key, const std::string& value);
  void Apply();
  Options Record() const;
  void ShowRecord(const Options& record);
  double NumberOf(std::string_view name, int index) const;
  void ChangeWhite(bool white);
  void TakeLoneFields();

  SettingsStore& settings_;
  ViewState& view_;
  ErrorPrompt& prompt_;
  Options defaults_;
  std::array<std::string, kOptionControls.size()> values_;
  std::array<bool, kOptionControls.size()> typed_{};  // not stored yet
  std::string check3Caption_;
  bool visible_ = false;
  bool helpShown_ = false;
};

}  // namespace orv
