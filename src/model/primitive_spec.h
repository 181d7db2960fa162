#pragma once

#include <string>
#include <vector>

#include "model/cell_text.h"
#include "numerics/array.h"

namespace orv {

// The model table: row 0 .. NumberOfPrimitives + 10, column 1 .. 11; row r holds primitive r.
using TextTable = Array<std::string, 2>;

inline constexpr int kSpecColumn = 2;

// One line of the model table, cut: UserName Type [size] numbers [cells] Nx Ny [placement ...]
struct PrimitiveSpec {
  std::string Type;  // upper-cased and trimmed
  double Size1 = 0, Size2 = 0, Size3 = 0;
  double Free1 = 0, Free2 = 0, Free3 = 0, Free4 = 0;
  double Nx = 0, Ny = 0;
  std::string Tail;  // the placement commands, lower-cased
  Array<double, 1> ExtraNumbers{{Bounds{-1, 12}}};
};

// Cuts the specification of a row and stores the primitive's name. A line with too few numbers is told by the number
// reader and goes on with zeros. Failure 5 for a line without a blank behind the name, before anything is changed.
void ParsePrimitive(const TextTable& ModelCells, int row, int SpecColumn, std::vector<std::string>& PrimitiveNames,
                    CellText& text, PrimitiveSpec& spec);

// The upper-cased type word of a row; empty when there is none.
std::string PrimitiveType(const TextTable& ModelCells, int row, int SpecColumn);

// The second word of a row in the case in which it was typed.
std::string PrimitiveTypeAsTyped(const TextTable& ModelCells, int row, int SpecColumn);

// How the tail of a specification asks for automatic rotation, and how it is rewritten for one rotation step.
struct AutomaticRotation {
  int RotatingPrimitive = 0;          // 0: none
  std::string RotationAxisLetter;     // the axis word, upper-cased
  double RotationAngle = 0;           // degrees
  double RotationTailLength = 0;      // length of the text behind the axis word
  std::string RotationKeyword = "A";  // "A", "Automatic" or "AutomaticRotation"
};

// Reads the "A" command, whose letter has been taken off the tail already; the axis word is taken too.
void ReadAutomaticRotation(std::string& tail, AutomaticRotation& rotation);

// The tail with the rotation by RotationAngle put in: in front of everything when nothing stood behind the axis,
// otherwise where the keyword stands. `specification` and `name` appear in the message about a tail that does not
// comply. The angle is written as a reader of `locale` takes it.
std::string RewriteTailForRotation(const std::string& tail, const AutomaticRotation& rotation,
                                   const std::string& specification, const std::string& name, ErrorPrompt& prompt,
                                   const Locale& locale);

}  // namespace orv
