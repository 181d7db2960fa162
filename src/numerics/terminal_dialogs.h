#pragma once

#include <chrono>
#include <functional>
#include <istream>
#include <ostream>
#include <string>
#include <vector>

#include "numerics/time_left.h"
#include "numerics/user_dialogs.h"

namespace orv {

// What happens with a question: a person at the terminal answers it, or a policy does.
enum class QuestionPolicy { Ask, Ignore, Abort };

// UserDialogs on a terminal. Every text is printed to the error stream and kept in order. Unattended, the answers are
// Ignore, OK, Cancel for Retry/Cancel boxes, No, and the initial text of an input box; the policy Abort answers Abort
// where that button exists. Retry is never given unattended.
class TerminalDialogs : public UserDialogs {
 public:
  struct Options {
    QuestionPolicy policy = QuestionPolicy::Ignore;
    bool quiet = false;         // no status, progress and log lines
    bool progressLine = false;  // the error stream is a terminal that a line may be redrawn on
  };

  TerminalDialogs(std::istream& in, std::ostream& out, Options options) : in_(in), out_(out), options_(options) {}

  Answer Ask(const std::string& text, const std::string& title, Buttons buttons, Icon icon) override;
  std::string Input(const std::string& prompt, const std::string& title, const std::string& initial) override;
  void Pause(const std::string& text, const std::string& title) override;
  void Log(const std::string& text) override;
  void Status(const std::string& text) override;
  void Progress(const std::string& phase, double share) override;
  bool Attended() const override { return options_.policy == QuestionPolicy::Ask; }

  // Removes the progress line, if one stands on the terminal.
  void EndProgress();

  struct Message {
    std::string kind;  // "question", "input", "pause", "log", "status"
    std::string title;
    std::string text;
    std::string answer;
  };
  // Every message shown, in order.
  const std::vector<Message>& messages() const { return messages_; }

 private:
  void Print(const std::string& title, const std::string& text, Icon icon);
  Answer ByPolicy(Buttons buttons) const;
  Answer FromTerminal(Buttons buttons);

  std::istream& in_;
  std::ostream& out_;
  Options options_;
  std::vector<Message> messages_;
  bool progressShown_ = false;
  // Of the phase whose progress is shown, for the estimate of the time left.
  TimeLeft timeLeft_;
};

}  // namespace orv
