#pragma once

#include <string>
#include <utility>
#include <vector>

#include "numerics/failure.h"
#include "numerics/user_dialogs.h"

namespace orv {

// How the numeric code reports small failures: the text is logged, and unless it begins with "_" the user is asked.
// One object a session, since the reply of the last input box is the default of the next.
class ErrorPrompt {
 public:
  explicit ErrorPrompt(UserDialogs& dialogs) : dialogs_(dialogs) {}
  ErrorPrompt(const ErrorPrompt&) = delete;
  ErrorPrompt& operator=(const ErrorPrompt&) = delete;

  // Returns, or throws ProgramEnd when the user abandons.
  void operator()(const std::string& text);

  // "Do you want to abort? ..."; throws ProgramEnd on Abort, returns on any other answer.
  void AbortQuestion();

  UserDialogs& dialogs() { return dialogs_; }

 private:
  void AskByInputBox(const std::string& text, const std::string& body);

  UserDialogs& dialogs_;
  std::string previousReply_;
};

// What a routine says when one of its statements fails.
struct FailureLabels {
  std::string subscriptText;       // box shown when the description holds "ubsc"
  std::string title;               // title of the box with the description
  bool subscriptIsPrompt = false;  // the subscript text goes through ErrorPrompt instead of a box
  std::vector<int> silent = {53, 52, 5, 50290, 91, 448, 75, 1004};

  // "error faute" + routine and "Error faute" + routine.
  static FailureLabels Of(const std::string& routine) { return {"error faute" + routine, "Error faute" + routine}; }
};

// The common failure block of one call of a large routine. A statement that can fail is run as
//     block([&] { velocity = Divide(a, b); });
// and assigns last, so its target keeps its old value when it fails; execution goes on behind it. Only RuntimeFailure
// is taken: an abort answer, a cancellation and exhausted memory pass through.
class FailureBlock {
 public:
  FailureBlock(ErrorPrompt& prompt, FailureLabels labels) : prompt_(prompt), labels_(std::move(labels)) {}

  // True when the statement ran to its end.
  template <class Statement>
  bool operator()(Statement&& statement) {
    try {
      std::forward<Statement>(statement)();
      return true;
    } catch (const RuntimeFailure& failure) {
      Report(failure);
      return false;
    }
  }

  // The condition of an If: when it fails, execution resumes at the next statement, which is the Then branch.
  template <class Test>
  bool Condition(Test&& test) {
    try {
      return std::forward<Test>(test)();
    } catch (const RuntimeFailure& failure) {
      Report(failure);
      return true;
    }
  }

  // Tells the failure as the block prescribes.
  void Report(const RuntimeFailure& failure);

  // Whether the user chose Ignore in this call.
  bool Silenced() const { return silenced_; }
  void setSilenced(bool silenced) { silenced_ = silenced; }

 private:
  ErrorPrompt& prompt_;
  FailureLabels labels_;
  bool silenced_ = false;
};

}  // namespace orv
