#include "view/event_colouring.h"

#include <algorithm>
#include <cmath>

namespace orv {
namespace {

std::vector<double> Column(const ListTable& table, int row, int last) {
  const auto values = table.row(row).first(static_cast<std::size_t>(last) + 1);
  return {values.begin(), values.end()};
}

std::vector<double> RunningMaximum(const std::vector<double>& values) {
  std::vector<double> result = values;
  for (std::size_t i = 1; i < result.size(); ++i) result[i] = std::max(result[i], result[i - 1]);
  return result;
}

// Entries before the first one beyond a time.
std::size_t CountUpTo(const std::vector<double>& reached, double time) {
  return static_cast<std::size_t>(std::upper_bound(reached.begin(), reached.end(), time) - reached.begin());
}

}  // namespace

EventStates::EventStates(const PointLists& lists)
    : twoState_(lists.EventTwoState == 1),
      times_(Column(lists.EventList, 0, lists.EventCount)),
      states_(Column(lists.EventList, 1, lists.EventCount)),
      reached_(RunningMaximum(times_)) {
  if (!twoState_ || times_.empty()) return;
  // The pairs of beginning and end are counted from the event before the first point.
  const std::size_t before = CountUpTo(reached_, lists.PointList.row(0)[0]);
  firstPair_ = before == 0 ? 0 : before - 1;
  for (std::size_t end = firstPair_ + 1; end < times_.size(); end += 2) endsReached_.push_back(times_[end]);
  endsReached_ = RunningMaximum(endsReached_);
}

double EventStates::At(double time) const {
  if (times_.empty()) return 0;
  if (twoState_) return InPairs(time);
  const std::size_t count = CountUpTo(reached_, time);
  return count == 0 ? 0 : states_[count - 1];
}

double EventStates::InPairs(double time) const {
  const auto pair = std::lower_bound(endsReached_.begin(), endsReached_.end(), time);
  if (pair == endsReached_.end()) return 0;
  const std::size_t beginning = firstPair_ + 2 * static_cast<std::size_t>(pair - endsReached_.begin());
  return time >= times_[beginning] ? 1 : 0;
}

bool EventStates::IsolatedDot(double state) {
  return state != std::floor(state);
}

ValueCurve::ValueCurve(const PointLists& lists)
    : times_(Column(lists.ValueTable, 0, lists.ValueCount)),
      values_(Column(lists.ValueTable, 1, lists.ValueCount)),
      reached_(RunningMaximum(times_)) {}

bool ValueCurve::At(double time, double& value) const {
  const std::size_t count = CountUpTo(reached_, time);
  if (count == 0) return false;
  const std::size_t before = count - 1;
  if (count == times_.size()) {
    if (time != times_[before]) return false;
    value = values_[before];
    return true;
  }
  const double width = times_[count] - times_[before];
  const double share = width > 0 ? (time - times_[before]) / width : 0;
  value = values_[before] + share * (values_[count] - values_[before]);
  return true;
}

}  // namespace orv
