#pragma once

#include <span>
#include <vector>

#include "view/colour_scale.h"
#include "view/event_colouring.h"
#include "view/gl_api.h"
#include "view/outline_pass.h"
#include "view/point_lists.h"

namespace orv {

using ByteColour = std::array<std::uint8_t, 4>;

ByteColour ToBytes(const Rgba& colour);

// The points of a plot: dots with PenUpMode, else a line with the colours of its events, or of its values, or with a
// comb of value bars.
class PointPass {
 public:
  struct Look {
    Rgba nominal;
    Rgba event;
    ColourScale scale;
    bool valueColours = false;
    double valueGain = 0;  // scene units for a unit of value
    double valueBase = 0;
    WideLine wide;
  };

  // Takes what depends on the plot alone.
  void Take(const PointLists& lists);
  void SetLook(const Look& look);

  // Colours of all entries by their value, for dots and outlines.
  void ColourByValue(const PointLists& lists);
  std::span<const ByteColour> Colours() const { return colours_; }

  // Draws the entries first .. last in their order, backwards when first > last. `more`: the line runs on to the next.
  void Emit(const PointLists& lists, GlApi& gl, int first, int last, bool more) const;

  // State and value at a time.
  const EventStates& Events() const { return events_; }
  const ValueCurve& Values() const { return values_; }

 private:
  class Strip;
  struct Rows;
  enum Kind : std::uint8_t { kPlain = 0, kEvent = 1, kIsolated = 2, kLifted = 4 };
  void EmitDots(const PointLists& lists, GlApi& gl, int first, int last) const;
  void EmitEntry(const PointLists& lists, const Rows& rows, Strip& strip, std::size_t i) const;
  void LeadOn(const PointLists& lists, const Rows& rows, Strip& strip, int next, int step) const;
  const ByteColour& PlainColour(std::size_t i) const { return (kinds_[i] & kEvent) != 0 ? event_ : nominal_; }

  EventStates events_;
  ValueCurve values_;
  std::vector<std::uint8_t> kinds_;  // of the entries of a line
  Look look_;
  ByteColour nominal_{};
  ByteColour event_{};
  std::vector<ByteColour> colours_;
};

}  // namespace orv
