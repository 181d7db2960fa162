#pragma once

#include <functional>
#include <string>

#include "analysis/run_context.h"
#include "view/level_line_plot.h"

namespace orv {

// Hands the level lines that the plot option of a finished run asks for to `plot`, which answers with what the plot
// says; to be called after each run and re-plot. What is wrong goes to the status line and the log: the frame of the
// plot stays. False when nothing was drawn, because none are asked for or the primitive does not exist.
bool DrawLevelLines(RunContext& run, const std::function<std::string(const LevelLineInput&)>& plot);

// Tells why level lines are missing; an empty text tells nothing.
void TellLevelLineFault(UserDialogs& dialogs, const std::string& text);

// How a file of level lines is drawn.
struct LevelLineFile {
  std::string name;  // .png or .svg
  int width = 1280;  // pixels
  int height = 960;
  double pixelRatio = 1;  // texts and lines grow with it
};

// Whether a name ends in one of the forms that can be written.
bool IsLevelLineFile(const std::string& name);

// Plots level lines and writes them as a picture. `errorText` takes what the plot says. The result is empty, or says in
// a sentence with the file's name why there is no file.
[[nodiscard]] std::string WriteLevelLines(const LevelLineInput& input, const LevelLineFile& file,
                                          std::string& errorText);

}  // namespace orv
