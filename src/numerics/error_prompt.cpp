#include "numerics/error_prompt.h"

#include <algorithm>

#include "numerics/text.h"

namespace orv {
namespace {

const char* const kPetiteErreur =
    "Une petite erreur s'est produite, erreur d'arrondi ou avertissement de norme nulle, ..."
    ". Si cela perdure, il faudrait modifier les données..."
    "   Tapez *Abandonner* pour stopper l'exectution, *Répéter* pour faire une pause  *Ignorer* pour continuer et "
    "terminer l'exécution du programme.";

bool FirstLetterIs(const std::string& reply, char letter) {
  return !reply.empty() && reply.front() == letter;
}

}  // namespace

void ErrorPrompt::operator()(const std::string& text) {
  dialogs_.Log(text);
  if (StartsWith(text, "_")) return;
  const std::string body = text + "\r\n" + kPetiteErreur;
  switch (dialogs_.Ask(body, "Petite erreur", Buttons::AbortRetryIgnore, Icon::Warning)) {
    case Answer::Abort:
      throw ProgramEnd{};
    case Answer::Retry:
      dialogs_.Pause("Corrigez vos données! Cliquer ensuite sur Continuer ...", "CORRECTION");
      return;
    case Answer::Ignore:
      return;
    default:
      AskByInputBox(text, body);
  }
}

void ErrorPrompt::AskByInputBox(const std::string& text, const std::string& body) {
  const std::string reply = dialogs_.Input(body, text + " Avertissement", previousReply_);
  previousReply_ = reply;
  if (reply.empty()) return;
  if (FirstLetterIs(reply, 's')) throw ProgramEnd{};
  if (FirstLetterIs(reply, 'o')) return;
  const std::string again =
      dialogs_.Input("Vous voulez réellement abandonner", "Re-Avertissement", "oui, pour Abandonner");
  if (FirstLetterIs(again, 'o')) throw ProgramEnd{};
}

void ErrorPrompt::AbortQuestion() {
  const Answer answer = dialogs_.Ask("Do you want to abort? See Hallam if the error cannot be solved ", "",
                                     Buttons::AbortRetryIgnore, Icon::Question);
  if (answer == Answer::Abort) throw ProgramEnd{};
}

void FailureBlock::Report(const RuntimeFailure& failure) {
  const int number = static_cast<int>(failure.number());
  if (std::find(labels_.silent.begin(), labels_.silent.end(), number) != labels_.silent.end()) return;
  if (silenced_) return;
  if (Contains(LowerCase(failure.description()), "ubsc")) {
    if (labels_.subscriptIsPrompt) {
      prompt_(labels_.subscriptText);
    } else {
      prompt_.dialogs().Tell(labels_.subscriptText, labels_.title);
    }
  }
  const Answer answer =
      prompt_.dialogs().Ask(failure.description(), labels_.title, Buttons::AbortRetryIgnore, Icon::Critical);
  if (answer == Answer::Ignore) silenced_ = true;
  if (answer == Answer::Abort) throw ProgramEnd{};
}

}  // namespace orv
