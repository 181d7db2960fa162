#include "window/toolbar.h"

#include <algorithm>

#include "numerics/text.h"

namespace orv {
namespace {

constexpr const char* kFirstMode = "pan";
constexpr int kLastMode = 12;  // the states above act once or have a switch of their own

}  // namespace

int AxisOfKey(int code) {
  switch (code) {
    case 88:
    case 120:
      return 1;
    case 89:
    case 121:
      return 2;
    case 90:
    case 122:
      return 3;
    default:
      return 0;
  }
}

const ToolEntry* FindTool(std::string_view key) {
  const auto found = std::find_if(kTools.begin(), kTools.end(), [&](const ToolEntry& tool) { return tool.key == key; });
  return found == kTools.end() ? nullptr : &*found;
}

int Toolbar::MarkedState() const {
  const ToolEntry* const tool = FindTool(marked_);
  return tool == nullptr ? kNoState : tool->EditState;
}

ToolAction Toolbar::ToggleTrackball() {
  animate_ = !animate_;
  return animate_ ? ToolAction::TrackballOn : ToolAction::TrackballOff;
}

ToolClick Toolbar::Toolbar1MYButtonClick(const std::string& key, const ToolKeys& keys) {
  if (marked_.empty()) marked_ = kFirstMode;
  const int heldAxis = AxisOfKey(keys.heldKey);
  const std::string wanted = heldAxis == 0 ? LowerCase(key) : "valisxyz";
  ToolClick click;
  const ToolEntry* const tool = FindTool(wanted);
  if (tool == nullptr) {
    click.EditStateAfter = MarkedState();
    return click;
  }
  click.EditState = tool->EditState;
  if (click.EditState != kNoState && click.EditState <= kLastMode) {
    click.action = ToolAction::Mode;
    marked_ = wanted;
  } else if (wanted == "zminus" || wanted == "zplus") {
    click.action = ToolAction::Step;
    click.refreshDirectory = true;
  } else if (wanted == "lightback") {
    click.action = ToolAction::Step;
  } else if (wanted == "stop") {
    click.action = ToggleTrackball();
  } else if (wanted == "frozenstart") {
    click.action = ToolAction::FrozenStart;
    click.EditState = kNoState;  // the two presses set it themselves
  } else if (wanted == "valisxyz") {
    click.action = ToolAction::CameraSet;
    click.camera = keys.modifier ? "isonewPlus" : "isonew";
    click.axis = heldAxis == 0 ? 2 : heldAxis;
    click.SPECaxeVertical = heldAxis == 0 ? 0 : 1;
  } else if (wanted == "valisxy") {
    click.action = ToolAction::CameraSet;
    click.camera = keys.modifier ? "projinverse" : "proj";
  } else if (wanted == "imagespot") {
    click.action = ToolAction::SaveImage;
  } else {
    click.action = ToolAction::MovieFrames;
    movie_ = !movie_;
  }
  click.EditStateAfter = MarkedState();
  return click;
}

}  // namespace orv
