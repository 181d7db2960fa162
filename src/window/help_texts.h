#pragma once

#include <array>
#include <string>

#include "numerics/environment.h"

namespace orv {

// The two boxes of "&Contents": how a model is written, and how the window is used.
std::array<std::string, 2> HelpContents();

// The text about the link between plot and worksheet, beside the options.
std::string LinkHelp();

// The release: day, month and year of the program file, three digits and more each.
std::string ReleaseText(const CivilTime& fileDate);

// The box of "&About".
std::string AboutText(const CivilTime& fileDate);

}  // namespace orv
