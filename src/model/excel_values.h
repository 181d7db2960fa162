#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "model/automation.h"
#include "numerics/failure.h"

// What a running Excel answers, in the terms of this system.
namespace orv {

// The text of a cell's value: numbers with 15 digits and the separator, TRUE and FALSE, errors as the sheet shows them
// (#DIV/0!); empty for nothing and for an object.
std::string ValueText(const AutomationValue& value, const std::string& decimalSeparator);

// Appends a rectangle of values, or a single one: cells separated by tabs, every row ended by CR LF, a tab or line
// break inside a cell as a blank.
void AppendRangeText(std::string& out, const AutomationValue& values, const std::string& decimalSeparator);

// The answer as what is expected of it: failure 13 for a value of another kind, 91 for an object that is not there.
double AnswerNumber(const AutomationValue& value);
int AnswerCount(const AutomationValue& value);
std::string AnswerText(const AutomationValue& value);
AutomationReference AnswerObject(const AutomationValue& value);

// The text for a search that takes ? and * for any characters, such that it finds `part` itself.
std::string SearchPattern(std::string_view part);

// The failure that stands for the result code of a call to another program. `source` and `description` are what the
// program says of it, as far as it does: a code of its own (0 for none) and a sentence.
// Its own numbers are kept (1004, 9, 50290), so are -2147417848 and -2147023170 for a program that went away during
// the call. A program that takes no calls for the moment is 50290, one that is not running 429.
RuntimeFailure FailureOfCall(std::int32_t result, std::int32_t source = 0, std::string description = {});

}  // namespace orv
