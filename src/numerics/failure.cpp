#include "numerics/failure.h"

#include <utility>

namespace orv {

std::string Describe(FailureNumber number) {
  switch (number) {
    case FailureNumber::InvalidProcedureCall:
      return "Invalid procedure call or argument";
    case FailureNumber::Overflow:
      return "Overflow";
    case FailureNumber::SubscriptOutOfRange:
      return "Subscript out of range";
    case FailureNumber::DivisionByZero:
      return "Division by zero";
    case FailureNumber::TypeMismatch:
      return "Type mismatch";
    case FailureNumber::BadFileName:
      return "Bad file name or number";
    case FailureNumber::FileNotFound:
      return "File not found";
    case FailureNumber::FileAlreadyOpen:
      return "File already open";
    case FailureNumber::InputPastEndOfFile:
      return "Input past end of file";
    case FailureNumber::PermissionDenied:
      return "Permission denied";
    case FailureNumber::PathFileAccessError:
      return "Path/File access error";
    case FailureNumber::PathNotFound:
      return "Path not found";
    case FailureNumber::ObjectVariableNotSet:
      return "Object variable or With block variable not set";
    case FailureNumber::ObjectRequired:
      return "Object required";
    case FailureNumber::CannotCreateObject:
      return "ActiveX component can't create object";
    case FailureNumber::NamedArgumentNotFound:
      return "Named argument not found";
    case FailureNumber::ApplicationDefined:
      return "Application-defined or object-defined error";
    case FailureNumber::SpreadsheetBusy:
      return "The spreadsheet is busy";
  }
  return "Unknown failure";
}

void Raise(FailureNumber number) {
  throw RuntimeFailure(number);
}

void Raise(FailureNumber number, std::string description) {
  throw RuntimeFailure(number, std::move(description));
}

}  // namespace orv
