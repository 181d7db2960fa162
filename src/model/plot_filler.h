#pragma once

#include <span>
#include <string>
#include <string_view>

#include "model/plot_reading.h"
#include "numerics/user_dialogs.h"

namespace orv {

// Passes everything on but the boxes behind the first: a file with a million bad numbers is told once.
class FirstBoxOnly : public UserDialogs {
 public:
  explicit FirstBoxOnly(UserDialogs& dialogs) : dialogs_(dialogs) {}
  Answer Ask(const std::string& text, const std::string& title, Buttons buttons, Icon icon) override;
  std::string Input(const std::string& prompt, const std::string& title, const std::string& initial) override;
  void Pause(const std::string& text, const std::string& title) override { dialogs_.Pause(text, title); }
  void Log(const std::string& text) override { dialogs_.Log(text); }
  void Status(const std::string& text) override { dialogs_.Status(text); }
  void Progress(const std::string& phase, double share) override { dialogs_.Progress(phase, share); }
  bool Attended() const override { return dialogs_.Attended(); }
  long boxes() const { return boxes_; }

 private:
  UserDialogs& dialogs_;
  long boxes_ = 0;
};

// Turns the lines of a plot file into the lists, whatever the lines come from: Begin, a line each, Finish. The counts
// of the lists are set by Finish alone, so that a paint in between shows nothing half done.
class PlotFiller {
 public:
  PlotFiller(PointLists& lists, CellText& reader);

  // Empties the lists and takes the header.
  void Begin(const PlotHeader& header, PlotReading& reading, std::string_view MainKeyword);
  // One line behind the header; `lineNumber` is its place in the file, for what is told about it.
  void AddLine(std::string_view line, long long lineNumber);
  // Sets counts, extremes and switches and hands the lists over.
  void Finish(PlotReading& reading);

  // What was amiss, each kind once; `name` is the file's.
  void Tell(const std::string& name);

 private:
  double Number(std::string_view field);
  float Single(double value);
  float EventState(std::string_view field);
  void AddPoint(bool penUp);
  void AddTrace(int fieldCount, bool penUp);
  static void AddPair(ListTable& table, int& last, float first, float second);
  void StepProgress();

  void FinishPoints();
  void FinishTrace();
  void FinishPanels();
  void FinishValues();

  PointLists& lists_;
  UserDialogs& dialogs_;
  FirstBoxOnly boxes_;
  ErrorPrompt prompt_;
  CellText reader_;       // with the separators of the locale
  CellText pointReader_;  // the point is never a thousands separator
  bool pointIsThousands_;

  PlotRanges ranges_;
  PlotSwitches switches_;
  bool rangesKnown_ = false;
  double scale_ = 1;
  PlotFields fields_{};
  long long lineNumber_ = 0;
  long long lines_ = 0;
  int lastPoint_ = kNoEntry;
  int lastTrace_ = kNoEntry;
  int lastEvent_ = kNoEntry;
  int lastPanel1_ = kNoEntry;
  int lastPanel2_ = kNoEntry;
  bool traceHasVertex_ = false;
  bool hasValue_ = false;
  bool hasMore_ = false;  // fields behind the value hold something
  long long progressStep_ = 0;
  int progressCount_ = 0;

  LineNote wide_;        // more fields than are used
  LineNote outOfRange_;  // numbers too large
  LineNote beyond_;      // no room left
};

}  // namespace orv
