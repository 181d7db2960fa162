#pragma once

#include <array>
#include <string>
#include <string_view>

namespace orv {

inline constexpr int kNoState = 0;

struct ToolEntry {
  std::string_view key;
  std::string_view tip;
  int EditState = kNoState;
  bool button = true;  // stands on the toolbar; others are keys without one
};

inline constexpr std::array<ToolEntry, 21> kTools = {{
    {"select", "Move with left button, Orient with right", 1},
    {"pan", "Pan with Left button, Try the Right button !", 8},
    {"zoom", "Zoom with Left button, Try the Right button !", 6},
    {"zminus", "Zoom out", 13},
    {"zplus", "Zoom in", 14},
    {"lightback", "Change the background color.", 15},
    {"stop",
     "Enable or disable the automatic rotation  motion given by the left click.  Use first the left click to stop.",
     16},
    {"frozenstart", "To stop the Redraw", 17},
    {"valisxyz", "Fix the orientation ISO  (try with Control or Alt or Shift key)"},
    {"valisxy", "Various orientations (backward with Control or Alt or Shift key)"},
    {"imagespot", "Save Image with timestamp in the directory (see options) "},
    {"movieframes", "Save Movie Frames with timestamp in the directory (see options) "},
    {"dolly", "", 7, false},
    {"orbit", "", 9, false},
    {"pitch", "", 10, false},
    {"yaw", "", 11, false},
    {"roll", "", 12, false},
    {"move", "", 2, false},
    {"rotate", "", 3, false},
    {"scale", "", 5, false},
    {"arcrotate", "", 4, false},
}};

// The entry of a key, or nullptr.
const ToolEntry* FindTool(std::string_view key);

// The vertical axis of a held X, Y or Z, as capital or small letter; 0 for other keys.
int AxisOfKey(int code);

enum class ToolAction {
  None,
  Mode,         // EditState stays as the mode of dragging
  Step,         // EditState acts once: zoom out, zoom in, background
  TrackballOn,  // EditState 16, then the trackball
  TrackballOff,
  FrozenStart,  // first or second press
  CameraSet,
  SaveImage,   // mnuFSaveAs
  MovieFrames  // mnuFMovieSaveAs
};

struct ToolClick {
  ToolAction action = ToolAction::None;
  int EditState = kNoState;  // to set before the action, 0: none
  std::string camera;        // arguments of CameraSet
  int axis = 2;
  int SPECaxeVertical = 0;
  bool refreshDirectory = false;  // the settings folder is looked up again
  int EditStateAfter = kNoState;  // state of the marked mode, set again behind the action
};

// The keys held and the modifiers at a click.
struct ToolKeys {
  int heldKey = 0;        // code of a letter key held down, 0: none
  bool modifier = false;  // Control, Alt or Shift
};

// The toolbar: which mode is marked, and what a click on a key does.
class Toolbar {
 public:
  ToolClick Toolbar1MYButtonClick(const std::string& key, const ToolKeys& keys = {});

  // The key of the marked mode, empty before the first click.
  const std::string& Marked() const { return marked_; }
  int MarkedState() const;
  void ttbarpressed(const std::string& key) { marked_ = key; }
  void ttbarUnpressed() { marked_.clear(); }

  // Whether the trackball turns the view; it does at the start.
  bool Animate() const { return animate_; }
  // A double click on the view does what "stop" does.
  ToolAction ToggleTrackball();
  // Whether movie frames were asked for; the menu toggles it too.
  bool MovieFlag() const { return movie_; }
  void SetMovieFlag(bool on) { movie_ = on; }

 private:
  std::string marked_;
  bool animate_ = true;
  bool movie_ = false;
};

}  // namespace orv
