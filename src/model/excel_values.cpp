#include "model/excel_values.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "model/sheet_grid.h"
#include "model/workbook_contents.h"

namespace orv {
namespace {

struct ErrorText {
  std::int32_t code;
  const char* text;
};
constexpr std::array<ErrorText, 14> kErrorTexts = {{{2000, "#NULL!"},
                                                    {2007, "#DIV/0!"},
                                                    {2015, "#VALUE!"},
                                                    {2023, "#REF!"},
                                                    {2029, "#NAME?"},
                                                    {2036, "#NUM!"},
                                                    {2042, "#N/A"},
                                                    {2043, "#GETTING_DATA"},
                                                    {2045, "#SPILL!"},
                                                    {2046, "#CONNECT!"},
                                                    {2047, "#BLOCKED!"},
                                                    {2048, "#UNKNOWN!"},
                                                    {2049, "#FIELD!"},
                                                    {2050, "#CALC!"}}};

std::string ErrorTextOf(AutomationError error) {
  const std::int32_t code = error.code & 0xFFFF;
  const auto found =
      std::find_if(kErrorTexts.begin(), kErrorTexts.end(), [&](const ErrorText& known) { return known.code == code; });
  return found == kErrorTexts.end() ? "#VALUE!" : found->text;
}

void AppendCell(std::string& out, const AutomationValue& value, const std::string& decimalSeparator) {
  if (const auto* text = std::get_if<std::string>(&value)) {
    AppendAsOneLine(out, *text);
  } else {
    out.append(ValueText(value, decimalSeparator));
  }
}

constexpr std::int32_t Code(std::uint32_t bits) {
  return static_cast<std::int32_t>(bits);
}

constexpr FailureNumber kDisconnected{Code(0x80010108)};
constexpr FailureNumber kCallFailed{Code(0x800706BE)};
constexpr FailureNumber kNoSuchMember{438};
constexpr FailureNumber kAutomationError{440};
constexpr FailureNumber kOutOfMemory{7};

struct KnownResult {
  std::int32_t result;
  FailureNumber number;
};
constexpr std::array<KnownResult, 26> kKnownResults = {{
    {Code(0x800401E3), FailureNumber::CannotCreateObject},     // the program is not running
    {Code(0x800401F3), FailureNumber::CannotCreateObject},     // nor installed
    {Code(0x80040154), FailureNumber::CannotCreateObject},     // class not registered
    {Code(0x80080005), FailureNumber::CannotCreateObject},     // its server does not answer
    {Code(0x80010001), FailureNumber::SpreadsheetBusy},        // call rejected
    {Code(0x8001010A), FailureNumber::SpreadsheetBusy},        // retry later
    {Code(0x80010108), kDisconnected},                         // the object was cut off
    {Code(0x800401FD), kDisconnected},                         // not connected
    {Code(0x80010007), kDisconnected},                         // the program died
    {Code(0x80010012), kDisconnected},                         // before it took the call
    {Code(0x800706BE), kCallFailed},                           // the call broke off
    {Code(0x800706BF), kCallFailed},                           // before it began
    {Code(0x800706BA), kCallFailed},                           // no one at the other end
    {Code(0x80020003), kNoSuchMember},                         // member not found
    {Code(0x80020006), kNoSuchMember},                         // unknown name
    {Code(0x80004002), kNoSuchMember},                         // no such interface
    {Code(0x80020004), FailureNumber::NamedArgumentNotFound},  // parameter not found
    {Code(0x80020005), FailureNumber::TypeMismatch},
    {Code(0x80020008), FailureNumber::TypeMismatch},  // a variable of a bad type
    {Code(0x8002000A), FailureNumber::Overflow},      // out of the range of its type
    {Code(0x8002000B), FailureNumber::SubscriptOutOfRange},
    {Code(0x80070005), FailureNumber::PermissionDenied},
    {Code(0x80070057), FailureNumber::InvalidProcedureCall},
    {Code(0x8007000E), kOutOfMemory},
    {Code(0x80004003), FailureNumber::ObjectVariableNotSet},  // a null pointer
    {Code(0x80020009), kAutomationError},                     // failed without saying more
}};

constexpr std::uint32_t kControlFacility = 0x800A0000;  // with the classic numbers in its lower half

FailureNumber NumberOfResult(std::int32_t result) {
  if (result > 0 && result <= 0xFFFF) return FailureNumber{result};
  if ((static_cast<std::uint32_t>(result) & 0xFFFF0000U) == kControlFacility) return FailureNumber{result & 0xFFFF};
  const auto found = std::find_if(kKnownResults.begin(), kKnownResults.end(),
                                  [&](const KnownResult& known) { return known.result == result; });
  return found == kKnownResults.end() ? FailureNumber{result} : found->number;
}

std::string DescribeCall(FailureNumber number) {
  if (number == kNoSuchMember) return "Object doesn't support this property or method";
  if (number == kOutOfMemory) return "Out of memory";
  if (number == kDisconnected) return "Automation error: the object was disconnected from its clients";
  if (number == kCallFailed) return "Automation error: the remote procedure call failed";
  const bool known = static_cast<int>(number) > 0 && number != kAutomationError;
  return known ? Describe(number) : "Automation error";
}

}  // namespace

std::string ValueText(const AutomationValue& value, const std::string& decimalSeparator) {
  if (const auto* text = std::get_if<std::string>(&value)) return *text;
  if (const auto* logical = std::get_if<bool>(&value)) return *logical ? "TRUE" : "FALSE";
  if (const auto* error = std::get_if<AutomationError>(&value)) return ErrorTextOf(*error);
  const auto* number = std::get_if<double>(&value);
  return number == nullptr ? std::string() : LocalNumberText(*number, decimalSeparator);
}

void AppendRangeText(std::string& out, const AutomationValue& values, const std::string& decimalSeparator) {
  const auto* table = std::get_if<std::shared_ptr<const AutomationTable>>(&values);
  if (table == nullptr) {
    AppendCell(out, values, decimalSeparator);
    out.append("\r\n");
    return;
  }
  const std::size_t columns = (*table)->columns;
  for (std::size_t row = 0; row < (*table)->rows; ++row) {
    for (std::size_t column = 0; column < columns; ++column) {
      if (column > 0) out.push_back('\t');
      AppendCell(out, (*table)->values[row * columns + column], decimalSeparator);
    }
    out.append("\r\n");
  }
}

double AnswerNumber(const AutomationValue& value) {
  const auto* number = std::get_if<double>(&value);
  if (number == nullptr) Raise(FailureNumber::TypeMismatch);
  return *number;
}

int AnswerCount(const AutomationValue& value) {
  const double number = AnswerNumber(value);
  if (!(std::fabs(number) <= 1e9)) Raise(FailureNumber::Overflow);
  return static_cast<int>(std::lround(number));
}

std::string AnswerText(const AutomationValue& value) {
  const auto* text = std::get_if<std::string>(&value);
  if (text == nullptr) Raise(FailureNumber::TypeMismatch);
  return *text;
}

AutomationReference AnswerObject(const AutomationValue& value) {
  if (const auto* object = std::get_if<AutomationReference>(&value)) return *object;
  if (std::holds_alternative<std::monostate>(value)) Raise(FailureNumber::ObjectVariableNotSet);
  Raise(FailureNumber::ObjectRequired);
}

std::string SearchPattern(std::string_view part) {
  std::string pattern;
  for (const char c : part) {
    if (c == '~' || c == '*' || c == '?') pattern.push_back('~');
    pattern.push_back(c);
  }
  return pattern;
}

RuntimeFailure FailureOfCall(std::int32_t result, std::int32_t source, std::string description) {
  const FailureNumber number = NumberOfResult(source != 0 ? source : result);
  if (description.empty()) description = DescribeCall(number);
  return {number, std::move(description)};
}

}  // namespace orv
