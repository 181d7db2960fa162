#include "view/view_state.h"

namespace orv {

Rgba OptionColour(const std::array<double, 3>& colour, float alpha) {
  const auto part = [&](std::size_t i) { return static_cast<float>(colour[i] / 256); };
  return {part(0), part(1), part(2), alpha};
}

Rgba ViewState::Background() const {
  return OptionColour(options.ColourOfBackGround);
}

Rgba ViewState::TextColour() const {
  const Rgba back = Background();
  const bool dark = 0.299F * back.red + 0.587F * back.green + 0.114F * back.blue < 0.5F;
  return dark ? Rgba{1, 1, 1, 1} : Rgba{0, 0, 0, 1};
}

double AxisLength(double RRMAXAXES, const Options& options) {
  return RRMAXAXES * (options.LengthAxisFactor == 0 ? 1.1 : options.LengthAxisFactor);
}

}  // namespace orv
