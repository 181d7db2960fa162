#pragma once

#include <string>

namespace orv {

enum class Buttons { Ok, OkCancel, AbortRetryIgnore, RetryCancel, YesNo };
enum class Icon { None, Information, Question, Warning, Critical };

// None: the box was left without an answer (closed, or the input ended).
enum class Answer { None = 0, Ok = 1, Cancel = 2, Abort = 3, Retry = 4, Ignore = 5, Yes = 6, No = 7 };

// The one way in which the system speaks to its user. Message boxes, a terminal or a script of answers stand behind.
class UserDialogs {
 public:
  virtual ~UserDialogs() = default;

  // Shows a text with buttons and waits for the answer.
  virtual Answer Ask(const std::string& text, const std::string& title, Buttons buttons, Icon icon) = 0;

  // Asks for one line of text; an empty result means cancelled.
  virtual std::string Input(const std::string& prompt, const std::string& title, const std::string& initial) = 0;

  // Shows a text and waits until the user has mended his data and goes on.
  virtual void Pause(const std::string& text, const std::string& title) = 0;

  // Adds a text to the warning window, newest first; nothing is asked.
  virtual void Log(const std::string& text) = 0;

  // The status line.
  virtual void Status(const std::string& text) = 0;

  // Share of the work done, 0 to 1, and the name of the phase.
  virtual void Progress(const std::string& phase, double share) = 0;

  // Whether a person answers. Without one the answers come from a policy.
  virtual bool Attended() const = 0;

  void Tell(const std::string& text, const std::string& title, Icon icon = Icon::Information) {
    Ask(text, title, Buttons::Ok, icon);
  }
};

}  // namespace orv
