// In place of offscreen_control.cpp on systems without EGL.
#include "view/offscreen_control.h"

namespace orv {

class OffscreenControl::Context {};

// NOLINTNEXTLINE(performance-unnecessary-value-param): the other form keeps the fonts.
OffscreenControl::Made OffscreenControl::Make(const OffscreenWish&, FontFinder) {
  return {nullptr, "No picture can be drawn: this system offers no EGL to draw without a window."};
}

OffscreenControl::~OffscreenControl() = default;

bool OffscreenControl::MakeCurrent() {
  return false;
}

int OffscreenControl::Samples() const {
  return 1;
}

Image OffscreenControl::Picture() {
  return {};
}

}  // namespace orv
