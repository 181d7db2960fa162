#pragma once

#include <string>

#include "model/automation.h"

namespace orv {

// The program of that name that runs in the user's session, by Windows' automation; failure 429 when there is none, or
// when it is not installed. Nothing is started. Everything reached from it belongs to the thread of this call. Defined
// on Windows alone.
AutomationReference RunningApplication(const std::string& program);

}  // namespace orv
