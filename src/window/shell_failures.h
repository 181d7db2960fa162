#pragma once

#include <functional>
#include <string>

#include "numerics/error_prompt.h"
#include "numerics/settings.h"

namespace orv {

// Failures that the routines of the windows pass over: 53, 52, 5, 75, 9, 94, 6.
bool IsSilentInShell(const RuntimeFailure& failure);

// One event routine of a menu or button. A failure ends it; unless it is one of the silent ones the user reads
// "error Sub " + routine and gets the abort question. Returns whether the routine ran to its end.
bool RunRoutine(ErrorPrompt& prompt, const std::string& routine, const std::function<void()>& body);

// Writes one choice of the user. A store that cannot be written is logged; the choice then lasts for this session.
void KeepSetting(SettingsStore& store, ErrorPrompt& prompt, std::string_view section, const std::string& key,
                 const std::string& value);

}  // namespace orv
