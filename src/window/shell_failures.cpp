#include "window/shell_failures.h"

#include <algorithm>
#include <array>

namespace orv {

bool IsSilentInShell(const RuntimeFailure& failure) {
  constexpr std::array<int, 7> kSilent = {53, 52, 5, 75, 9, 94, 6};
  return std::find(kSilent.begin(), kSilent.end(), static_cast<int>(failure.number())) != kSilent.end();
}

bool RunRoutine(ErrorPrompt& prompt, const std::string& routine, const std::function<void()>& body) {
  try {
    body();
    return true;
  } catch (const RuntimeFailure& failure) {
    if (IsSilentInShell(failure)) return false;
    prompt.dialogs().Log(routine + ": " + failure.description());
    prompt.dialogs().Tell("error Sub " + routine + " ", "", Icon::Critical);
    prompt.AbortQuestion();
    return false;
  }
}

void KeepSetting(SettingsStore& store, ErrorPrompt& prompt, std::string_view section, const std::string& key,
                 const std::string& value) {
  try {
    store.Write(std::string(section), key, value);
  } catch (const RuntimeFailure& failure) {
    prompt("_The setting " + key + " could not be stored: " + failure.description());
  }
}

}  // namespace orv
