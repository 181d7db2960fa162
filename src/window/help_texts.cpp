#include "window/help_texts.h"

#include "numerics/number_format.h"

namespace orv {
namespace {

const char* const kSyntaxHelp =
    "OrvData\n"
    "\n"
    "Write the keyword OrvData in a cell. The directives stand to its right, the primitives below it, one a row: the "
    "name of the material or thruster under the keyword, the specification beside it.\n"
    "\n"
    "UserName Type [size] numbers [cells] Nx Ny [placement ...]\n"
    "\n"
    "Example:  MyBeam cyl size 1  3.5    5 cells 32   32  T -2   0  -0.8\n"
    "\n"
    "Types and the count of their numbers:\n"
    "thr, rect : 2\n"
    "par, sph, con, cyl, disc, cylshape, cylscreen : 3, also with b, X6, 4, 4b or 44 behind the last two\n"
    "elli, con2, cylellipse, rectfree : 4\n"
    "cylfree : 5\n"
    "rect2sides : 7\n"
    "cylshapeX6b, cylscreenX6b : 10\n"
    "rectOriented : 12, four corners\n"
    "\n"
    "Placement, in the order in which it is done:\n"
    "T x y z : translation in metres\n"
    "R axis angle : rotation about X, Y or Z in degrees\n"
    "A axis, Automatic axis or AutomaticRotation axis : the primitive turns about this axis";

const char* const kUseHelp =
    "Double Click in the plot window to disable or enable the automatic rotation given while moving the mouse with the "
    "right button down!  etc.\n"
    "\n"
    "Move the cursors labelled Redraw Start and Redraw Speed in order to watch dynamically the plot increasing. \n"
    "\n"
    "Note : if Excel is not already open, the program sent a message to open it";

const char* const kLinkHelp =
    "The plot is read from the cell that is selected in the worksheet: the keyword OrvData for a model, or a "
    "specification such as =MAX(A2:C60) for a range.\n"
    "\n"
    "With Interactive ticked the plot is read again when another cell is selected. Without it, UpdateExcel reads it "
    "once. Save your worksheet before.";

}  // namespace

std::array<std::string, 2> HelpContents() {
  return {kSyntaxHelp, kUseHelp};
}

std::string LinkHelp() {
  return kLinkHelp;
}

std::string ReleaseText(const CivilTime& fileDate) {
  return FormatNumber(fileDate.day, "000") + "." + FormatNumber(fileDate.month, "000") + "." +
         FormatNumber(fileDate.year, "000");
}

std::string AboutText(const CivilTime& fileDate) {
  return "OrvValis\n\nRelease " + ReleaseText(fileDate);
}

}  // namespace orv
