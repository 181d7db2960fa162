#pragma once

#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "numerics/failure.h"
#include "support/scripted_dialogs.h"
#include "support/view_model.h"
#include "view/class_gl.h"
#include "view/recording_control.h"

// A scene on a recording control, for tests of what it draws.
namespace orv::testing {

class HandClock : public Clock {
 public:
  CivilTime Local() const override { return {}; }
  double Seconds() const override { return now; }
  double now = 0;
};

// Also keeps the fonts asked for and how many calls of OpenGL stood before each text; fails at a text on demand.
class WatchingControl : public RecordingControl {
 public:
  struct Font {
    std::string name;
    bool bold = false;
    bool italic = false;
    double size = 0;
    FontHandle handle = 0;
  };
  struct TextPlace {
    std::string text;
    std::size_t callsBefore = 0;
  };

  // Without fonts nothing in a record depends on the machine.
  WatchingControl()
      : RecordingControl(640, 480, 1, [](const std::string&, bool, bool) { return std::optional<FontFile>(); }) {}

  FontHandle FontSet(const std::string& name, bool bold, bool italic, double size) override {
    const FontHandle handle = RecordingControl::FontSet(name, bold, italic, size);
    fonts.push_back({name, bold, italic, size, handle});
    return handle;
  }
  void Text3D(FontHandle font, const std::string& text, double x, double y, double z, double size,
              const Rgba& colour) override {
    Note(text);
    RecordingControl::Text3D(font, text, x, y, z, size, colour);
  }
  void StatusPrint(const std::string& text, double column, double line) override {
    Note(text);
    RecordingControl::StatusPrint(text, column, line);
  }

  std::vector<Font> fonts;
  std::vector<TextPlace> places;
  std::string failingText;  // a text that begins with it raises
  FailureNumber failure = FailureNumber::DivisionByZero;

 private:
  void Note(const std::string& text) {
    if (!failingText.empty() && text.starts_with(failingText)) Raise(failure);
    places.push_back({text, Recording().Calls().size()});
  }
};

struct RecordedScene {
  explicit RecordedScene(std::function<bool(PointLists&)> loadSample = {}, SceneBodies* bodies = nullptr)
      : scene(std::make_unique<ClassGl>(control, lists, view, prompt, clock, std::move(loadSample), bodies)) {}

  // The scene begins and paints once.
  void Start() {
    control.Attach(*scene);
    Paint();
  }
  void Paint() {
    control.places.clear();
    control.PaintAnew(*scene);
    for (const std::string& error : control.Recording().Errors()) ADD_FAILURE() << error;
  }
  // The lists hold another plot.
  void NewPlot() {
    lists.PlotLoaded = 0;
    Paint();
  }

  void AddPoint(double time, double x, double y, double z, float pen = 0) {
    const int i = ++lists.NumberPoints;
    lists.PointList(0, i) = static_cast<float>(time);
    lists.PointList(1, i) = static_cast<float>(x);
    lists.PointList(2, i) = static_cast<float>(y);
    lists.PointList(3, i) = static_cast<float>(z);
    lists.PointList(4, i) = pen;
  }
  void AddEvent(double time, double state) {
    const int i = ++lists.EventCount;
    lists.EventList(0, i) = static_cast<float>(time);
    lists.EventList(1, i) = static_cast<float>(state);
  }
  void AddValue(double time, double value) {
    const int i = ++lists.ValueCount;
    lists.ValueTable(0, i) = static_cast<float>(time);
    lists.ValueTable(1, i) = static_cast<float>(value);
    lists.FindValueRange();
  }
  // A unit square in the plane of x and y with its centre at x, counter-clockwise as seen from +z.
  void AddSquare(double value, double x) {
    AddPoint(value, x, 0, 0, kPenUp);
    const double corners[5][2] = {{-0.5, -0.5}, {0.5, -0.5}, {0.5, 0.5}, {-0.5, 0.5}, {-0.5, -0.5}};
    for (const auto& corner : corners) AddTrace(x + corner[0], corner[1], 0, 0);
    AddTrace(0, 0, 0, kPenUp);
    lists.OutlineCount = lists.TraceCount + 1;
    lists.PenUpMode = 1;
    lists.FactorScale = 1.01;
    lists.Title = "OrvValis  M13";
    lists.IndexPlot = 13;
    lists.FindPlotValues();
  }
  void AddTrace(double x, double y, double z, float pen) {
    const int i = ++lists.TraceCount;
    lists.TraceList(0, i) = static_cast<float>(x);
    lists.TraceList(1, i) = static_cast<float>(y);
    lists.TraceList(2, i) = static_cast<float>(z);
    lists.TraceList(3, i) = pen;
    lists.TraceMax = i;
  }

  // What the list of the plot drew in the last paint, of one kind of primitive.
  std::vector<DrawnPrimitive> Drawn(GLenum primitive) {
    std::vector<DrawnPrimitive> found;
    for (const DrawnPrimitive& drawn : control.Recording().PrimitivesIn(scene->Plot().PlotList())) {
      if (drawn.primitive == primitive) found.push_back(drawn);
    }
    return found;
  }
  std::size_t CallsOf(GLuint list) {
    std::size_t count = 0;
    for (const GlCall& call : control.Recording().Calls()) {
      if (call.operation == GlOperation::CallList && call.names[0] == list) ++count;
    }
    return count;
  }
  const SceneText* TextOf(const std::string& text) const {
    for (const SceneText& drawn : control.SceneTexts()) {
      if (drawn.text == text) return &drawn;
    }
    return nullptr;
  }
  // Ticks of the timer up to and including the one that works, which is every fifth.
  bool WorkingTick(const TimerWork& work = {}) {
    bool changed = false;
    for (int tick = 0; tick < 5; ++tick) changed = scene->TheUpdateTimer_ThatTime(work) || changed;
    return changed;
  }

  ScriptedDialogs dialogs;
  ErrorPrompt prompt{dialogs};
  HandClock clock;
  PointLists lists;
  ViewState view;
  WatchingControl control;
  std::unique_ptr<ClassGl> scene;
};

// A colour as the whole numbers 0 .. 255 that a vertex carries.
inline std::array<int, 4> Bytes(const Rgba& colour) {
  const auto part = [](float value) { return static_cast<int>(std::lround(value * 255)); };
  return {part(colour.red), part(colour.green), part(colour.blue), part(colour.alpha)};
}

}  // namespace orv::testing
