#include "model/primitive_spec.h"

#include <array>

#include "numerics/number_format.h"
#include "numerics/text.h"

namespace orv {
namespace {

// The text before the first blank; `text` becomes the trimmed rest. Without a blank the whole text is the word.
std::string TakeWord(std::string& text) {
  const std::size_t blank = text.find(' ');
  std::string word = text.substr(0, blank);
  text = blank == std::string::npos ? "" : Trim(std::string_view(text).substr(blank + 1));
  return word;
}

void DropThrough(std::string& text, std::string_view word) {
  const std::size_t position = text.find(word);
  if (position != std::string::npos) text = Trim(std::string_view(text).substr(position + word.size()));
}

template <class... Words>
bool IsOneOf(const std::string& type, Words... words) {
  return ((type == words) || ...);
}

// The numbers of a type, into the fields that its generator reads.
void ReadNumbersOfType(std::string& text, CellText& reader, PrimitiveSpec& s) {
  auto& extra = s.ExtraNumbers;
  if (s.Type == "RECTORIENTED") {
    std::vector<double*> targets;
    for (int k = 1; k <= 12; ++k) targets.push_back(&extra(k));
    reader.Extract12(text, targets);
  } else if (IsOneOf(s.Type, "CYLSHAPEX6B", "CYLSCREENX6B")) {
    std::vector<double*> targets = {&s.Size1, &s.Size2, &s.Size3};
    for (int k = -1; k <= 5; ++k) targets.push_back(&extra(k));
    reader.Extract10(text, targets);
  } else if (IsOneOf(s.Type, "THR", "RECT")) {
    reader.Extract2(text, s.Size1, s.Size2);
  } else if (s.Type == "RECTFREE") {
    reader.Extract4(text, s.Free1, s.Free2, s.Free3, s.Free4);
  } else if (s.Type == "RECT2SIDES") {
    reader.Extract7(text, {&s.Free1, &s.Free2, &s.Free3, &s.Free4, &extra(1), &extra(2), &extra(3)});
  } else if (IsOneOf(s.Type, "ELLI", "CON2", "CYLELLIPSE")) {
    reader.Extract4(text, s.Size1, s.Size2, s.Size3, extra(1));
  } else if (s.Type == "CYLFREE") {
    reader.Extract5(text, s.Free1, s.Free2, s.Free3, s.Free4, s.Size3);
  } else {
    reader.Extract3(text, s.Size1, s.Size2, s.Size3);
  }
}

}  // namespace

void ParsePrimitive(const TextTable& ModelCells, int row, int SpecColumn, std::vector<std::string>& PrimitiveNames,
                    CellText& reader, PrimitiveSpec& spec) {
  std::string text = Trim(ModelCells(row, SpecColumn));
  if (text.find(' ') == std::string::npos) Raise(FailureNumber::InvalidProcedureCall);
  if (static_cast<std::size_t>(row) >= PrimitiveNames.size()) Raise(FailureNumber::SubscriptOutOfRange);
  spec = PrimitiveSpec{};
  PrimitiveNames[static_cast<std::size_t>(row)] = TakeWord(text);
  text = LowerCase(text);
  spec.Type = UpperTrim(TakeWord(text));
  DropThrough(text, "size");
  ReadNumbersOfType(text, reader, spec);
  DropThrough(text, "cells");
  reader.Extract2(text, spec.Nx, spec.Ny);
  spec.Tail = text;
}

std::string PrimitiveTypeAsTyped(const TextTable& ModelCells, int row, int SpecColumn) {
  std::string text = Trim(ModelCells(row, SpecColumn));
  TakeWord(text);
  return TakeWord(text);
}

std::string PrimitiveType(const TextTable& ModelCells, int row, int SpecColumn) {
  return UpperTrim(PrimitiveTypeAsTyped(ModelCells, row, SpecColumn));
}

void ReadAutomaticRotation(std::string& tail, AutomaticRotation& rotation) {
  rotation.RotationKeyword = "A";
  // The letter A is off already, so the long spellings begin with their second letter; after the bare letter the
  // blanks are off too and the word at the head is the axis or the optional "r".
  const std::string head = UpperCase(tail.substr(0, tail.find(' ')));
  if (head == "UTOMATICROTATION" || head == "UTOMATIC") {
    rotation.RotationKeyword = head == "UTOMATIC" ? "Automatic" : "AutomaticRotation";
    TakeWord(tail);
  }
  if (UpperCase(tail.substr(0, tail.find(' '))) == "R") TakeWord(tail);
  rotation.RotationAxisLetter = UpperTrim(TakeWord(tail));
  rotation.RotationTailLength = static_cast<double>(CharacterCount(tail));
}

std::string RewriteTailForRotation(const std::string& tail, const AutomaticRotation& rotation,
                                   const std::string& specification, const std::string& name, ErrorPrompt& prompt,
                                   const Locale& locale) {
  const std::string angle =
      TextForAnyLocale(ReplaceAll(FormatNumber(rotation.RotationAngle, "#0.##"), ",", "."), locale);
  if (rotation.RotationTailLength == 0) {
    return "R " + rotation.RotationAxisLetter + " " + angle + " " + tail;
  }
  if (rotation.RotationTailLength == 1) return tail;
  const std::size_t keyword = UpperCase(tail).find(UpperCase(rotation.RotationKeyword));
  if (keyword == std::string::npos) return tail;
  const std::string head = tail.substr(0, keyword);
  std::string rest = Trim(std::string_view(tail).substr(keyword + rotation.RotationKeyword.size()));
  if (UpperCase(rest.substr(0, rest.find(' '))) == "R") TakeWord(rest);
  const std::string axis = UpperCase(TakeWord(rest));
  const std::string first = UpperCase(rest.substr(0, 1));
  if (first != "T" && first != "R") {
    prompt.dialogs().Ask(specification + " PB at:" +
                             "Automatic rotation specification not compliant , see user manual... Primitive " + name,
                         "", Buttons::Ok, Icon::Warning);
    prompt("Automatic rotation specification not compliant");
    prompt("Automatic rotation specification not compliant ");
  }
  return head + "    R " + LeftCharacters(axis, 1) + " " + angle + "      " + rest;
}

}  // namespace orv
