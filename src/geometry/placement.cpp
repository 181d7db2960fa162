#include "geometry/placement.h"

#include <array>
#include <cmath>

#include "numerics/angles.h"
#include "numerics/text.h"

namespace orv {
namespace {

// The first character, upper-cased, taken off the text with the blanks behind it.
std::string TakeLetter(std::string& text) {
  const std::string letter = LeftCharacters(text, 1);
  text = Trim(std::string_view(text).substr(letter.size()));
  return UpperCase(letter);
}

// The word at the head, taken off.
std::string TakeAxisWord(std::string& text) {
  const std::size_t blank = text.find(' ');
  std::string word = UpperCase(text.substr(0, blank));
  text = blank == std::string::npos ? "" : Trim(std::string_view(text).substr(blank + 1));
  return word;
}

void Rotation(GeometryCall& call, int primitive, std::string& tail, const std::string& wholeTail) {
  const std::string word = TakeAxisWord(tail);
  char axis = word.empty() ? ' ' : word.front();
  if (axis != 'X' && axis != 'Y' && axis != 'Z') {
    axis = 'Y';
    call.Tell("Error Rotation with no correct axis name in imput data : " + wholeTail + " axe Y taken by default",
              "Information missing");
    call.prompt.AbortQuestion();
  }
  double angle = 0;
  call.reader.Extract1(tail, angle);
  RotatePrimitive(call, primitive, axis, angle);
}

void Translation(GeometryCall& call, int primitive, std::string& tail) {
  double dx = 0;
  double dy = 0;
  double dz = 0;
  call.reader.Extract3(tail, dx, dy, dz);
  TranslatePrimitive(call, primitive, dx, dy, dz);
}

void EnterAutomaticRotation(GeometryCall& call, std::string& tail) {
  call.state.AddRotated(call.k);
  ReadAutomaticRotation(tail, call.state.rotation);
  call.state.rotation.RotatingPrimitive = call.k;
}

void WrongLetter(GeometryCall& call, const std::string& letter) {
  const Answer answer =
      call.prompt.dialogs().Ask(call.specification + " PB at:" + letter +
                                    " this specification of rotation translation is not allowed here. See Hallam ",
                                "", Buttons::AbortRetryIgnore, Icon::Warning);
  if (answer == Answer::Abort) throw ProgramEnd{};
}

}  // namespace

void TranslatePrimitive(GeometryCall& call, int primitive, double dx, double dy, double dz) {
  const CellGrid grid = call.Grid(primitive);
  const std::array<double, 3> shift = {dx, dy, dz};
  for (int axis = 1; axis <= 3; ++axis) {
    const double d = shift[static_cast<std::size_t>(axis - 1)];
    const auto add = [d](int, int, double& element) { element = element + d; };
    OnEachElement(call.block, call.cells.CellData, grid, axis, add);
    for (int corner = 0; corner < 4; ++corner) {
      OnEachElement(call.block, call.cells.CellCorners, grid, 3 * corner + axis, add);
    }
  }
}

void RotatePrimitive(GeometryCall& call, int primitive, char axis, double angle) {
  const CellGrid grid = call.Grid(primitive);
  const int a = axis == 'Z' ? 1 : (axis == 'X' ? 2 : 3);
  const int b = axis == 'Z' ? 2 : (axis == 'X' ? 3 : 1);
  const double c = std::cos(DegToRad(-angle));
  const double s = std::sin(DegToRad(-angle));
  const auto turn = [c, s](int, int, double& first, double& second) {
    const double old = first;
    first = old * c + second * s;
    second = -old * s + second * c;
  };
  OnEachPair(call.block, call.cells.CellData, grid, a, b, turn);
  for (int corner = 0; corner < 4; ++corner) {
    OnEachPair(call.block, call.cells.CellCorners, grid, 3 * corner + a, 3 * corner + b, turn);
  }
  OnEachPair(call.block, call.cells.CellData, grid, a + 4, b + 4, turn);
}

void WalkTail(GeometryCall& call, int primitive, std::string& tail) {
  tail = Trim(tail);
  const std::string wholeTail = tail;
  while (!tail.empty()) {
    const std::string letter = TakeLetter(tail);
    if (letter == "T") {
      Translation(call, primitive, tail);
    } else if (letter == "R") {
      Rotation(call, primitive, tail, wholeTail);
    } else if (letter == "A") {
      EnterAutomaticRotation(call, tail);
    } else {
      WrongLetter(call, letter);
    }
  }
}

}  // namespace orv
