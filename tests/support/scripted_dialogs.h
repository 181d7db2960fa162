#pragma once

#include <deque>
#include <string>
#include <utility>
#include <vector>

#include "numerics/user_dialogs.h"

namespace orv::testing {

// UserDialogs for tests: keeps every text and replays answers. When the answers run out the default of the box comes:
// Ignore, Ok, Cancel for Retry/Cancel, and the initial text of an input box.
class ScriptedDialogs : public UserDialogs {
 public:
  struct Box {
    std::string text;
    std::string title;
    Buttons buttons = Buttons::Ok;
    Icon icon = Icon::None;
  };

  Answer Ask(const std::string& text, const std::string& title, Buttons buttons, Icon icon) override {
    boxes.push_back({text, title, buttons, icon});
    if (buttons != Buttons::Ok && !answers.empty()) {
      const Answer answer = answers.front();
      answers.pop_front();
      return answer;
    }
    switch (buttons) {
      case Buttons::AbortRetryIgnore:
        return Answer::Ignore;
      case Buttons::RetryCancel:
        return Answer::Cancel;
      case Buttons::YesNo:
        return Answer::No;
      default:
        return Answer::Ok;
    }
  }
  std::string Input(const std::string& prompt, const std::string& title, const std::string& initial) override {
    inputs.push_back({prompt, title, initial});
    if (replies.empty()) return initial;
    std::string reply = replies.front();
    replies.pop_front();
    return reply;
  }
  void Pause(const std::string& text, const std::string& title) override { pauses.emplace_back(text, title); }
  void Log(const std::string& text) override { log.insert(log.begin(), text); }
  void Status(const std::string& text) override { statuses.push_back(text); }
  void Progress(const std::string& phase, double) override { phases.push_back(phase); }
  bool Attended() const override { return attended; }

  // How many boxes hold the text.
  int Count(const std::string& part) const {
    int count = 0;
    for (const Box& box : boxes) count += box.text.find(part) != std::string::npos ? 1 : 0;
    return count;
  }

  struct InputBox {
    std::string prompt;
    std::string title;
    std::string initial;
  };
  std::deque<Answer> answers;       // for boxes with a choice, in order
  std::deque<std::string> replies;  // for input boxes, in order
  std::vector<Box> boxes;
  std::vector<InputBox> inputs;
  std::vector<std::pair<std::string, std::string>> pauses;
  std::vector<std::string> log;
  std::vector<std::string> statuses;
  std::vector<std::string> phases;
  bool attended = true;
};

}  // namespace orv::testing
