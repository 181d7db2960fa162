#pragma once

#include <span>
#include <string>

#include "numerics/failure.h"
#include "window/control_entry.h"

// Reading of the tables from which forms are built.
namespace orv {

// The entry of a control; failure 5 without one.
inline const ControlEntry& EntryOf(std::span<const ControlEntry> table, std::string_view name, int index = kSingle) {
  for (const ControlEntry& entry : table) {
    if (entry.name == name && entry.index == index) return entry;
  }
  Raise(FailureNumber::InvalidProcedureCall);
}

// A caption with its key marked: the first place of the letter; unchanged where it does not occur.
inline std::string WithKey(std::string_view caption, char letter) {
  std::string marked(caption);
  const std::size_t place = marked.find(letter);
  if (place != std::string::npos) marked.insert(place, "&");
  return marked;
}

}  // namespace orv
