#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "model/cell_text.h"
#include "numerics/array.h"

namespace orv {

// The directive line of the model: keywords recognised by their first two letters, numbers behind them.
struct Directives {
  std::array<double, 4> MomentOrigin{2, 0, 0, 0};                // element 0 is a mark, 1 to 3 the point in metres
  double RotationFrom = 0, RotationTo = 360, RotationStep = 10;  // degrees
  double NotHidden = 0;
  double Twall = 300;                // kelvin
  std::vector<double> TableList{0};  // element 0 = count
  double LogScale = 0;
  double RectoOnly = 0;
  double SpectrumMode = -1;
  double SilentMode = 0;
  double Haccuracy = 0;
  double MomentWC = 0;
};

// The physical constants that the accuracy directive selects.
struct PhysicalConstants {
  double ElementaryCharge = 1.6e-19;         // C
  double AvogadroNumber = 6.023e+23;         // 1/mol
  double BoltzmannConstant = 1.3806505e-23;  // J/K
};

struct DirectiveEntry {
  std::string_view name;
  std::string_view prefix;
  std::string_view meaning;  // for the manual
};

inline constexpr std::array<DirectiveEntry, 11> kDirectives = {{
    {"T", "T ", "point about which the translated moments are taken, x y z in metres"},
    {"Rotation", "RO", "first angle, last angle and step of the automatic rotation in degrees"},
    {"NotHidden", "NO", "1: no shadows; 2: shadows of the run before"},
    {"Twall", "TW", "wall temperature in kelvin"},
    {"Table", "TA", "numbers of the primitives listed in the running table"},
    {"Log", "LO", "logarithmic scale"},
    {"Recto", "RE", "1: only the recto sides erode"},
    {"Spectrum", "SP", "spectrum computations only"},
    {"Silent", "SI", "1: no result files"},
    {"Haccuracy", "HA", "1: physical constants with more digits"},
    {"MomentWC", "MO", "kept with the run"},
}};

inline constexpr std::size_t kMaxTableList = 100;

// Reads the line. A prefix is found anywhere, also inside another word; `captured` receives a text for each prefix that
// was found inside a word that does not begin with it, for the log.
Directives ParseDirectives(const std::string& DirectiveLine, CellText& reader, std::vector<std::string>& captured);

PhysicalConstants ConstantsOf(const Directives& directives);

}  // namespace orv
