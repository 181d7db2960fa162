#pragma once

#include <algorithm>
#include <chrono>
#include <cmath>
#include <string>

namespace orv {

// The time that a phase still takes, from its pace so far.
class TimeLeft {
 public:
  // ", about 12 s left" or ", about 3 min left"; empty in the first second of a phase and where its share stands still.
  std::string operator()(const std::string& phase, double share, std::chrono::steady_clock::time_point now) {
    if (phase != phase_ || share < lastShare_) {
      phase_ = phase;
      begin_ = now;
      firstShare_ = share;
    }
    lastShare_ = share;
    const double elapsed = std::chrono::duration<double>(now - begin_).count();
    if (elapsed < 1 || !(share > firstShare_)) return {};
    const double left = std::max(1.0, elapsed * (1 - share) / (share - firstShare_));
    if (left < kLongestInSeconds) return ", about " + std::to_string(std::lround(left)) + " s left";
    return ", about " + std::to_string(std::lround(left / 60)) + " min left";
  }

 private:
  static constexpr double kLongestInSeconds = 100;

  std::string phase_;
  double firstShare_ = 0;
  double lastShare_ = 0;
  std::chrono::steady_clock::time_point begin_;
};

}  // namespace orv
