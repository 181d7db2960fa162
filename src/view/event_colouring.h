#pragma once

#include <vector>

#include "view/point_lists.h"

namespace orv {

// The state of a plot at a time, from the list of events. It depends on the time alone, whichever way the plot is
// drawn.
class EventStates {
 public:
  EventStates() = default;
  explicit EventStates(const PointLists& lists);

  bool empty() const { return times_.empty(); }
  // 1 in an event, 0 outside, any other number for a level.
  double At(double time) const;

  // States above this are drawn in the colour of events.
  static constexpr double kInEvent = 0.1;
  // A level with a fraction marks a point that is shown as a dot of its own.
  static bool IsolatedDot(double state);

 private:
  double InPairs(double time) const;

  bool twoState_ = true;
  std::vector<double> times_;  // as given
  std::vector<double> states_;
  std::vector<double> reached_;  // largest time up to an entry: the walk stops at the first one beyond a time
  std::size_t firstPair_ = 0;
  std::vector<double> endsReached_;  // the same for the ends of the pairs
};

// Values along a trace by time.
class ValueCurve {
 public:
  ValueCurve() = default;
  explicit ValueCurve(const PointLists& lists);

  bool empty() const { return times_.empty(); }
  // The value between the two entries around a time, linear between them. False outside the table.
  bool At(double time, double& value) const;

 private:
  std::vector<double> times_;
  std::vector<double> values_;
  std::vector<double> reached_;
};

}  // namespace orv
