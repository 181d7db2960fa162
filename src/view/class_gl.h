#pragma once

#include <functional>
#include <string>

#include "numerics/environment.h"
#include "numerics/error_prompt.h"
#include "view/axes.h"
#include "view/camera_set.h"
#include "view/dynamic_plot.h"
#include "view/gl_control.h"
#include "view/scene_scale.h"
#include "view/turn_playback.h"
#include "view/view_state.h"

namespace orv {

class ClassGl;

// Bodies round an orbit plot, each drawn in its place of a paint.
class SceneBodies {
 public:
  virtual ~SceneBodies() = default;
  virtual void DrawSatellite(ClassGl&) {}
  virtual void SetSunLight(ClassGl&) {}
  virtual void DrawEarth(ClassGl&) {}
  virtual void DrawMoon(ClassGl&) {}
  // A step of the timer in a plot that runs; true when they turned.
  virtual bool TimerStep(ClassGl&) { return false; }
  // What was made with another context is gone.
  virtual void NewContext() {}
};

// What the timer of the view also drives.
struct TimerWork {
  std::function<bool()> linkBusy;     // the spreadsheet link shows a dialog
  std::function<void()> watch;        // one pass of the spreadsheet watch
  std::function<bool()> watchWanted;  // a pass is wanted without the option Interactive
  std::function<bool()> movie;        // the next movie frame, if it is due; true when one was saved
  std::function<bool()> spin;         // one step of the trackball's spin, at every tick; true when it turned
};

inline constexpr int kRunning = 0;  // RedrawState
inline constexpr int kFrozen = 1;
inline constexpr int kJustMoved = 2;

// The scene: the one object behind the view. It reads the point lists and draws them on its control.
class ClassGl : public GlEvents {
 public:
  // `loadSample` fills empty lists when the first paint finds no plot at all; false: there is none.
  ClassGl(glxCtl& control, PointLists& lists, ViewState& view, ErrorPrompt& prompt, const Clock& clock,
          std::function<bool(PointLists&)> loadSample = {}, SceneBodies* bodies = nullptr);
  ~ClassGl() override;
  ClassGl(const ClassGl&) = delete;
  ClassGl& operator=(const ClassGl&) = delete;

  void init() override;
  void InitGL() override;
  void Reshape(int width, int height, int& result) override;
  void Draw() override;
  void DrawGDI() override;
  void Painted() override;

  // Normalises the lists and sets the plot to its start.
  void Reset();
  void CameraSet(const std::string& commande, int axeVerticalIn, int SPECaxeVertical);

  // The end and the start of the plot moved by the user; `previous` takes the index before.
  void ChangeCURRINDEXI(int NewValue, int& previous);
  void ChangeCURRINDEXMINI(int NewValue, int& previous);
  void ChangeSTEPPT(int NewValue);

  // One tick of the timer of the view; true when the view has changed and wants a paint.
  bool TheUpdateTimer_ThatTime(const TimerWork& work = {});

  // Shows or hides the vectors behind the outlines.
  void ShowVectors(bool shown);

  int CURRINDEXI() const { return currIndexI_; }
  int CURRINDEXMINI() const { return currIndexMini_; }
  int RedrawState() const { return redrawState_; }
  void SetRedrawState(int state) { redrawState_ = state; }
  int RollingIndex() const { return rollingIndex_; }
  // Rises with each plot that is taken in.
  long PlotNumber() const { return plotNumber_; }
  float RRMAXAXES() const { return scale_.RRMAXAXES; }
  const SceneScale& Scale() const { return scale_; }
  const DynamicPlot& Plot() const { return plot_; }
  const TurnPlayback& Playback() const { return playback_; }
  CameraCycle& Cameras() { return cameras_; }
  CameraSituation Situation() const;
  glxCtl& Control() { return control_; }
  PointLists& Lists() { return lists_; }
  ViewState& View() { return view_; }
  FontHandle LabelFont() const { return labelFont_; }

 private:
  void LoadPlot();
  void ClearInNewColour();
  void DrawLabels();
  Vec3 TowardsCamera() const;
  void DrawPlot();
  void DrawEarthAndMoon();
  void Guarded(const std::function<void()>& drawing);
  void SetFirstLight(double unit);
  double OptionOr(double option, double standard) const { return option == 0 ? standard : option; }

  glxCtl& control_;
  PointLists& lists_;
  ViewState& view_;
  ErrorPrompt& prompt_;
  const Clock& clock_;
  std::function<bool(PointLists&)> loadSample_;
  SceneBodies noBodies_;
  SceneBodies& bodies_;

  SceneScale scale_;
  DynamicPlot plot_;
  TurnPlayback playback_;
  CameraCycle cameras_;
  SceneAxes axes_;

  int currIndexI_ = 0;
  int currIndexMini_ = 0;
  int rollingIndex_ = 0;
  long plotNumber_ = 0;
  int redrawState_ = kRunning;
  int tickTen_ = 1;
  int tickFive_ = 1;
  bool sampleTried_ = false;
  bool cameraSetOnce_ = false;  // "Done one time"
  bool cameraSetForPlot_ = false;
  FontHandle logoFont_ = 0;
  FontHandle labelFont_ = 0;
  FontHandle smallFont_ = 0;
  FontHandle largeFont_ = 0;
  bool maravoFont_ = false;
  Rgba background_;
};

}  // namespace orv
