#pragma once

#include <QFrame>
#include <array>

#include "window/options_form.h"

class QGridLayout;
class QLabel;
class QPushButton;
class QVBoxLayout;

namespace orv {

inline constexpr int kOptionTriples = kOptionColours / 3;

// The options: every control of the table, and beside each colour a patch that opens a colour dialog.
class OptionsFrame : public QFrame {
  Q_OBJECT

 public:
  explicit OptionsFrame(OptionsForm& form, QWidget* parent = nullptr);

  // Copies the form into the controls.
  void Refresh();
  // What the colours and the text about the link take beside the options; 0 while both are closed.
  int ExtensionWidth() const;
  // What the screen leaves: a wider frame scrolls.
  void SetWidest(int width);

 Q_SIGNALS:
  // After each change by the user and each button; the form may then be invisible.
  void Changed();

 private:
  class Area;

  void MakeControls();
  QWidget* MakeControl(const ControlEntry& entry);
  QWidget* BuildBoxes();
  QWidget* BuildFactors();
  QWidget* BuildSatellite();
  QWidget* BuildNames();
  QWidget* BuildColours();
  QWidget* BuildHelp();
  void BuildButtons(QVBoxLayout& column);
  void OrderTabs();

  QWidget* Of(std::string_view name, int index = kSingle) const;
  void Change(const ControlEntry& entry, const std::string& text);
  void Type(const ControlEntry& entry, const std::string& text);
  void Press(std::string_view name);
  void ShowControl(const ControlEntry& entry, QWidget* control);
  void TakeRoom();
  void ShowPatches();
  void ChooseColour(int triple);
  void ChooseFolder();
  QColor ColourOf(int triple) const;

  OptionsForm& form_;
  std::array<QWidget*, kOptionControls.size()> controls_{};
  std::array<QPushButton*, kOptionTriples> patches_{};
  QPushButton* browse_ = nullptr;
  Area* area_ = nullptr;
  QWidget* colours_ = nullptr;
  QWidget* help_ = nullptr;
  QVBoxLayout* extension_ = nullptr;  // holds both
  QLabel* satelliteLabel_ = nullptr;
};

}  // namespace orv
