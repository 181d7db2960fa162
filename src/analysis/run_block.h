#pragma once

#include <functional>
#include <string>

#include "numerics/error_prompt.h"

namespace orv {

// The failure block of the run driver: it passes more file failures in silence than the common one, and a file in use
// (failure 70) is asked about with a Retry that runs the statement again.
class RunBlock {
 public:
  // `ignored`: whether the user chose Ignore before in this run; all blocks of a run share it.
  RunBlock(ErrorPrompt& prompt, bool& ignored, std::string file1, std::string file2)
      : prompt_(prompt),
        ignored_(ignored),
        file1_(std::move(file1)),
        file2_(std::move(file2)),
        block_(prompt, {"Error fautea_SpaceApplication ",
                        "Error aSpaceApplication",
                        false,
                        {5, 52, 53, 55, 75, 91, 448, 1004, 50290}}) {}

  // The two files that a failure 70 may mean.
  void setFiles(std::string file1, std::string file2) {
    file1_ = std::move(file1);
    file2_ = std::move(file2);
  }

  // True when the statement ran to its end.
  template <class Statement>
  bool operator()(Statement&& statement) {
    for (;;) {
      try {
        statement();
        return true;
      } catch (const RuntimeFailure& failure) {
        if (failure.number() == FailureNumber::PermissionDenied) {
          if (AskAboutFile()) continue;
          return false;
        }
        block_.setSilenced(ignored_);
        block_.Report(failure);
        ignored_ = block_.Silenced();
        return false;
      }
    }
  }

 private:
  bool AskAboutFile() {
    const Answer answer =
        prompt_.dialogs().Ask("Error file " + file1_ + "  or   " + file2_ + " is maybe open, please close it and Retry",
                              "", Buttons::AbortRetryIgnore, Icon::Warning);
    if (answer == Answer::Abort) throw ProgramEnd{};
    return answer == Answer::Retry;
  }

  ErrorPrompt& prompt_;
  bool& ignored_;
  std::string file1_;
  std::string file2_;
  FailureBlock block_;
};

}  // namespace orv
