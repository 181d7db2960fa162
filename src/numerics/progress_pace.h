#pragma once

#include <chrono>
#include <string>

#include "numerics/user_dialogs.h"

namespace orv {

// Reports the progress of long work at most 20 times a second.
class ProgressPace {
 public:
  explicit ProgressPace(UserDialogs& dialogs) : dialogs_(dialogs) {}

  // A cancellation by the user leaves from here.
  void operator()(const std::string& phase, double share) {
    const auto now = std::chrono::steady_clock::now();
    if (told_ && now - last_ < std::chrono::milliseconds(50)) return;
    told_ = true;
    last_ = now;
    dialogs_.Progress(phase, share);
  }

 private:
  UserDialogs& dialogs_;
  std::chrono::steady_clock::time_point last_;
  bool told_ = false;
};

}  // namespace orv
