#include "numerics/terminal_dialogs.h"

#include <algorithm>
#include <cmath>

#include "numerics/text.h"

namespace orv {
namespace {

struct Choice {
  Answer answer;
  const char* word;
};

std::vector<Choice> ChoicesOf(Buttons buttons) {
  switch (buttons) {
    case Buttons::Ok:
      return {{Answer::Ok, "OK"}};
    case Buttons::OkCancel:
      return {{Answer::Ok, "OK"}, {Answer::Cancel, "Cancel"}};
    case Buttons::AbortRetryIgnore:
      return {{Answer::Abort, "Abort"}, {Answer::Retry, "Retry"}, {Answer::Ignore, "Ignore"}};
    case Buttons::RetryCancel:
      return {{Answer::Retry, "Retry"}, {Answer::Cancel, "Cancel"}};
    case Buttons::YesNo:
      return {{Answer::Yes, "Yes"}, {Answer::No, "No"}};
  }
  return {};
}

const char* WordOf(Answer answer) {
  switch (answer) {
    case Answer::Ok:
      return "OK";
    case Answer::Cancel:
      return "Cancel";
    case Answer::Abort:
      return "Abort";
    case Answer::Retry:
      return "Retry";
    case Answer::Ignore:
      return "Ignore";
    case Answer::Yes:
      return "Yes";
    case Answer::No:
      return "No";
    case Answer::None:
      break;
  }
  return "";
}

const char* Heading(Icon icon) {
  switch (icon) {
    case Icon::Critical:
      return "Error";
    case Icon::Warning:
      return "Warning";
    case Icon::Question:
      return "Question";
    default:
      return "Note";
  }
}

// A box's text may hold its own line breaks; on a terminal they are plain line feeds. Control characters of a
// workbook's text must not reach the terminal.
std::string Lines(const std::string& text) {
  std::string out = ReplaceAll(ReplaceAll(text, "\r\n", "\n"), "\r", "\n");
  for (std::size_t k = 0; k < out.size(); ++k) {
    const auto byte = static_cast<unsigned char>(out[k]);
    const bool highControl = byte == 0xC2 && k + 1 < out.size() && static_cast<unsigned char>(out[k + 1]) < 0xA0;
    if ((byte < 0x20 && out[k] != '\n') || byte == 0x7F || highControl) out[k] = ' ';
    if (highControl) out[k + 1] = ' ';
  }
  return ReplaceAll(out, "\n", "\n    ");
}

}  // namespace

void TerminalDialogs::EndProgress() {
  if (progressShown_) out_ << "\r\x1b[K" << std::flush;
  progressShown_ = false;
}

void TerminalDialogs::Print(const std::string& title, const std::string& text, Icon icon) {
  EndProgress();
  out_ << Heading(icon);
  if (!Trim(title).empty()) out_ << " [" << Lines(Trim(title)) << "]";
  out_ << ": " << Lines(text) << '\n';
}

Answer TerminalDialogs::ByPolicy(Buttons buttons) const {
  switch (buttons) {
    case Buttons::AbortRetryIgnore:
      return options_.policy == QuestionPolicy::Abort ? Answer::Abort : Answer::Ignore;
    case Buttons::RetryCancel:
      return Answer::Cancel;
    case Buttons::YesNo:
      return Answer::No;
    default:
      return Answer::Ok;
  }
}

Answer TerminalDialogs::FromTerminal(Buttons buttons) {
  const std::vector<Choice> choices = ChoicesOf(buttons);
  if (choices.size() == 1) return choices.front().answer;
  for (;;) {
    out_ << "  ";
    for (const Choice& choice : choices) out_ << (&choice == &choices.front() ? "" : " / ") << choice.word;
    out_ << " ? " << std::flush;
    std::string line;
    if (!std::getline(in_, line)) {
      out_ << '\n';
      return ByPolicy(buttons);
    }
    const std::string reply = UpperCase(Trim(line));
    for (const Choice& choice : choices) {
      if (!reply.empty() && StartsWith(UpperCase(choice.word), reply)) return choice.answer;
    }
    out_ << "  Please type one of the words, or its first letter.\n";
  }
}

Answer TerminalDialogs::Ask(const std::string& text, const std::string& title, Buttons buttons, Icon icon) {
  Print(title, text, icon);
  const Answer answer = Attended() ? FromTerminal(buttons) : ByPolicy(buttons);
  if (buttons != Buttons::Ok && !Attended()) out_ << "    -> " << WordOf(answer) << '\n';
  messages_.push_back({"question", title, text, WordOf(answer)});
  return answer;
}

std::string TerminalDialogs::Input(const std::string& prompt, const std::string& title, const std::string& initial) {
  std::string reply = initial;
  Print(title, prompt, Icon::Question);
  if (Attended()) {
    out_ << "  [" << Lines(initial) << "] " << std::flush;
    std::string line;
    if (!std::getline(in_, line)) {
      reply.clear();  // the end of the input cancels
    } else if (!line.empty()) {
      reply = line;
    }
  } else {
    out_ << "    -> " << Lines(initial) << '\n';
  }
  messages_.push_back({"input", title, prompt, reply});
  return reply;
}

void TerminalDialogs::Pause(const std::string& text, const std::string& title) {
  Print(title, text, Icon::Information);
  messages_.push_back({"pause", title, text, ""});
  if (!Attended()) return;
  out_ << "  Press Enter to go on. " << std::flush;
  std::string line;
  std::getline(in_, line);
}

void TerminalDialogs::Log(const std::string& text) {
  messages_.push_back({"log", "", text, ""});
  if (options_.quiet) return;
  EndProgress();
  out_ << "Log: " << Lines(StartsWith(text, "_") ? Trim(text.substr(1)) : text) << '\n';
}

void TerminalDialogs::Status(const std::string& text) {
  messages_.push_back({"status", "", text, ""});
  if (options_.quiet || Trim(text).empty()) return;
  EndProgress();
  out_ << Lines(Trim(text)) << '\n';
}

void TerminalDialogs::Progress(const std::string& phase, double share) {
  if (options_.quiet || !options_.progressLine) return;
  const int percent = static_cast<int>(std::lround(std::clamp(share, 0.0, 1.0) * 100));
  out_ << "\r\x1b[K" << percent << " %  " << phase << timeLeft_(phase, share, std::chrono::steady_clock::now())
       << std::flush;
  progressShown_ = true;
}

}  // namespace orv
