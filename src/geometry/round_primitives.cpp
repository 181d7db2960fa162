#include "geometry/round_primitives.h"

#include "numerics/number_format.h"

namespace orv {
namespace {

constexpr double kRounding = 1e-07;

std::vector<ColumnAngles> AnglesOfColumns(double da, int count) {
  std::vector<ColumnAngles> angles;
  angles.reserve(static_cast<std::size_t>(count));
  for (int i = 1; i <= count; ++i) angles.emplace_back(da, i);
  return angles;
}

Vector3 Minus(const Vector3& a, const Vector3& b) {
  Vector3 difference;
  vCombine(a, 1, b, -1, difference);
  return difference;
}

// Normal of the cell from two sides; a zero product leaves it as it was.
void SetNormal(CellShape& cell, const Vector3& a, const Vector3& b) {
  Vector3 cross;
  double length = 0;
  vcross(a, b, cross);
  vUnit(cross, cell.normal, length);
}

// Warns, once a call, when the normal does not stand upright on the line to corner 1.
void CheckNormal(GeometryCall& call, const CellShape& cell, double limit, const char* label) {
  GeometryVariables& v = call.v;
  const Vector3 side = Minus(cell.corners[0], cell.centre);
  call.block([&] { v.cosine = Divide(vDot(side, cell.normal), vNorm(side) * vNorm(cell.normal)); });
  if (std::abs(v.cosine) <= limit) return;
  ++call.roundingCounter;
  if (call.roundingCounter >= 2) return;
  const Answer answer = call.prompt.dialogs().Ask(
      "small error rounding in Geometry, see hallam " + NumberText(v.cosine) + "  that should be very small or null",
      "Error rounding", Buttons::OkCancel, Icon::Warning);
  if (answer == Answer::Cancel) call.prompt(label);
}

// The area of cell (1, j), given to all cells of the row.
void SetRowArea(CellWriter& writer, const CellShape& first, int j, int countI) {
  const double area = first.AreaOfCorners();
  for (int i = 1; i <= countI; ++i) writer.SetQuantity(i, j, 4, area);
}

// Keeps the largest shift of a cell's centre, summed over the axes.
void NoteCentreShift(GeometryState& state, const Vector3& provisional, const Vector3& centre) {
  double shift = 0;
  for (std::size_t axis = 1; axis <= 3; ++axis) shift += std::abs(centre(axis) - provisional(axis));
  if (shift > state.LargestCentreShift) state.LargestCentreShift = shift;
}

void SetRoundHeader(GeometryCall& call, double column3, double column5, double column6, double column7, double code) {
  const int k = call.k;
  call.SetHeader(k, 1, call.v.n);
  call.SetHeader(k, 2, call.v.m);
  call.SetHeader(k, 3, column3);
  call.SetHeader(k, 4, Deg(call.v.da, call.prompt));
  call.SetHeader(k, 5, column5);
  call.SetHeader(k, 6, column6);
  call.SetHeader(k, 7, column7);
  call.SetHeader(k, 8, 2);
  call.SetHeader(k, 9, 4);
  call.SetHeader(k, 10, code);
}

// Semi-axes of the ellipsoid, and its height cut to what it has.
double ReadEllipsoid(GeometryCall& call) {
  GeometryVariables& v = call.v;
  const PrimitiveSpec& spec = call.spec;
  const double R = spec.Size1;
  double H = spec.Size2;
  if (spec.Type == "PAR") {
    v.semiPole = 4 * H;
    call.block([&] {
      const double q = Divide(H, v.semiPole) - 1;
      v.semiEquator = Root(Divide(R * R, 1 - q * q));
    });
  } else {
    v.semiEquator = R;
    v.semiPole = spec.Type == "ELLI" ? spec.ExtraNumbers(1) : R;
  }
  const std::string warning = "warning : Sphere or ellipsoid not well defined,";
  if (H > 2 * v.semiPole) {
    H = 2 * v.semiPole;
    call.prompt.dialogs().Tell(warning + " Height truncated to the maximum", "WARNING", Icon::Warning);
    call.prompt(warning);
  }
  if (H < -2 * v.semiPole) {
    H = -2 * v.semiPole;
    call.prompt.dialogs().Tell(warning + " Height truncated to the minimum negative", "WARNING", Icon::Warning);
    call.prompt(warning);
  }
  return H;
}

// Radius of the ellipsoid at one height, taken once a row. Where it has none, each coordinate that needs it is a
// failing statement and stays as it was.
class EllipsoidRadius {
 public:
  EllipsoidRadius(const GeometryVariables& v, double z) : v_(v), z_(z) {
    if (v.semiPole == 0) return;
    const double q = z / v.semiPole - 1;
    known_ = std::isfinite(q) && 1 - q * q >= 0;
    if (known_) radius_ = Plain();
  }

  // target = factor * radius.
  void Scale(FailureBlock& block, double factor, double& target) const {
    if (known_) {
      target = factor * radius_;
    } else {
      block([&] { target = factor * Plain(); });
    }
  }

 private:
  double Plain() const {
    const double q = Divide(z_, v_.semiPole) - 1;
    return v_.semiEquator * Root(1 - q * q);
  }

  const GeometryVariables& v_;
  double z_;
  bool known_ = false;
  double radius_ = 0;
};

// Rounding below the lowest point is no height below it.
double Upright(double z) {
  return std::abs(z) < 1e-06 ? std::abs(z) : z;
}

// The primitives of a cylinder's shells bear the name of the first and a number.
void NameShell(GeometryCall& call, const std::string& name, int shell) {
  call.block([&] {
    const std::size_t index = static_cast<std::size_t>(call.k) + static_cast<std::size_t>(shell);
    if (index >= call.names.size()) Raise(FailureNumber::SubscriptOutOfRange);
    call.names[index] = name + "__" + FormatNumber(shell + 1, "#");
  });
}

// One shell of a cylinder in primitive k + shell.
void BuildShell(GeometryCall& call, int shell, double turn, double ratio, double w, double code) {
  GeometryVariables& v = call.v;
  const int primitive = call.k + shell;
  call.block([&] { v.da = Divide(2 * kPi * turn, v.n); });
  call.block([&] { v.dz = Divide(call.spec.Size2, v.m); });
  const double radius = w / 2 + ((call.shells - 1) - shell) * w;
  call.SetHeader(primitive, 1, v.n);
  call.SetHeader(primitive, 2, v.m);
  SetCylinderHeader(call, primitive, radius, w, code);
  CellWriter writer(call.cells, call.block, primitive);
  for (int i = 1; i <= Cells::LoopCount(v.n); ++i) {
    const CylinderColumn column{ColumnAngles(v.da, i), radius, ratio, 0};
    for (int j = 1; j <= Cells::LoopCount(v.m); ++j) {
      CellShape cell = writer.Read(i, j);
      SetCylinderCell(call, column, v.dz / 2 + (j - 1) * v.dz, cell);
      writer.Write(i, j, cell);
    }
  }
}

}  // namespace

void BuildCone(GeometryCall& call, double code) {
  GeometryVariables& v = call.v;
  const PrimitiveSpec& spec = call.spec;
  const double R = spec.Size1;
  const double P = spec.Size3 > 1 ? 1 : spec.Size3;
  double H = spec.Size2;
  double r0 = 0;
  if (spec.Type == "CON2") r0 = R - std::tan(kPi / 180 * spec.ExtraNumbers(1)) * H;
  if (spec.Type == "DISC") {
    r0 = H;
    H = 0.001;
  }
  call.block([&] { v.da = Divide(2 * kPi * P, v.n); });
  call.block([&] { v.dz = Divide(H, v.m); });
  call.block([&] { v.slope = Divide(R - r0, H); });
  const double dr = v.dz * v.slope;
  SetRoundHeader(call, P, dr, Deg(v.da / 2, call.prompt), (v.dz / 2) * v.slope + r0, code);

  const int countI = Cells::LoopCount(v.n);
  const std::vector<ColumnAngles> angles = AnglesOfColumns(v.da, countI);
  CellWriter writer(call.cells, call.block, call.k);
  for (int j = 1; j <= Cells::LoopCount(v.m); ++j) {
    const double z = v.dz / 2 + (j - 1) * v.dz;
    const double z1 = z - v.dz / 2;
    const double z2 = z + v.dz / 2;
    const double r = z * v.slope + r0;
    const double r1 = z1 * v.slope + r0;
    const double r2 = z2 * v.slope + r0;
    CellShape first;
    for (int i = 1; i <= countI; ++i) {
      const ColumnAngles& a = angles[static_cast<std::size_t>(i - 1)];
      CellShape cell = writer.Read(i, j);
      const Vector3 provisional(a.cosMid * r, a.sinMid * r, z);
      cell.corners = {Vector3(a.cosFirst * r1, a.sinFirst * r1, z1), Vector3(a.cosLast * r1, a.sinLast * r1, z1),
                      Vector3(a.cosLast * r2, a.sinLast * r2, z2), Vector3(a.cosFirst * r2, a.sinFirst * r2, z2)};
      cell.centre = cell.MeanOfCorners();
      NoteCentreShift(call.state, provisional, cell.centre);
      SetNormal(cell, Minus(cell.corners[1], cell.centre), Minus(cell.corners[3], cell.centre));
      writer.Write(i, j, cell);
      CheckNormal(call, cell, kRounding * 100000, "faute x12 ");
      if (i == 1) first = cell;
    }
    SetRowArea(writer, first, j, countI);
  }
  SetStrips(call, call.k, v.n, v.n, v.m);
}

void BuildEllipsoid(GeometryCall& call, double code) {
  GeometryVariables& v = call.v;
  const double P = call.spec.Size3 > 1 ? 1 : call.spec.Size3;
  call.block([&] { v.da = Divide(2 * kPi * P, v.n); });
  const double H = ReadEllipsoid(call);
  call.block([&] { v.dz = Divide(H, v.m); });
  SetRoundHeader(call, P, v.dz, v.semiEquator, v.semiPole, code);

  const int countI = Cells::LoopCount(v.n);
  const std::vector<ColumnAngles> angles = AnglesOfColumns(v.da, countI);
  CellWriter writer(call.cells, call.block, call.k);
  for (int j = 1; j <= Cells::LoopCount(v.m); ++j) {
    const double z = v.dz / 2 + (j - 1) * v.dz;
    const double z1 = z - v.dz / 2;
    const double z2 = z + v.dz / 2;
    const EllipsoidRadius lower(v, Upright(z1));
    const EllipsoidRadius upper(v, Upright(z2));
    CellShape first;
    for (int i = 1; i <= countI; ++i) {
      const ColumnAngles& a = angles[static_cast<std::size_t>(i - 1)];
      CellShape cell = writer.Read(i, j);
      const auto setCorner = [&](std::size_t c, const EllipsoidRadius& radius, double cosine, double sine, double zc) {
        radius.Scale(call.block, cosine, cell.corners[c](1));
        radius.Scale(call.block, sine, cell.corners[c](2));
        cell.corners[c](3) = zc;
      };
      setCorner(0, lower, a.cosFirst, a.sinFirst, z1);
      setCorner(1, lower, a.cosLast, a.sinLast, z1);
      setCorner(2, upper, a.cosLast, a.sinLast, z2);
      setCorner(3, upper, a.cosFirst, a.sinFirst, z2);
      cell.centre = cell.MeanOfCorners();
      // At the lowest point corners 1 and 2 are one and their side has no length: the normal of the top corners stays.
      SetNormal(cell, cell.corners[3], cell.corners[2]);
      SetNormal(cell, Minus(cell.corners[0], cell.corners[1]), Minus(cell.corners[2], cell.corners[1]));
      writer.Write(i, j, cell);
      CheckNormal(call, cell, kRounding * 10, "faute x13 ");
      if (i == 1) first = cell;
    }
    SetRowArea(writer, first, j, countI);
  }
  SetStrips(call, call.k, v.n, v.n, v.m);
}

void BuildThruster(GeometryCall& call, double /*code*/) {
  GeometryVariables& v = call.v;
  const int k = call.k;
  const double R = call.spec.Size1;
  const double H = call.spec.Size2;
  call.SetHeader(k, 1, v.n);
  call.SetHeader(k, 2, v.m);
  call.SetHeader(k, 3, 1);
  CellWriter writer(call.cells, call.block, k);
  const int countI = Cells::LoopCount(v.n);
  const int countJ = Cells::LoopCount(v.m);
  if (countI > 0 && countJ > 0) {
    v.da = 2 * kPi / v.n;
    v.dz = H / v.m;
  }
  for (int i = 1; i <= countI; ++i) {
    const double a = (i - 1) * v.da;
    const double cosine = std::cos(a);
    const double sine = std::sin(a);
    for (int j = 1; j <= countJ; ++j) {
      CellShape cell = writer.Read(i, j);
      const double z = (j - 1) * v.dz;
      call.block([&] { cell.centre(1) = Divide(cosine * R * z, H); });
      call.block([&] { cell.centre(2) = Divide(sine * R * z, H); });
      cell.centre(3) = z;
      call.block([&] {
        const double spread = Divide(v.da * R * v.dz, H);
        cell.area = Divide(v.da * R * z, H) * Root(v.dz * v.dz + spread * spread);
      });
      cell.normal = {0, 0, 1};
      cell.distance = 0;
      cell.corners[0] = cell.centre;
      cell.corners[1] = cell.normal;
      writer.Write(i, j, cell);
    }
  }
  writer.SetQuantity(1, 1, 1, 0);
  writer.SetQuantity(1, 1, 2, 0);
  SetStrips(call, k, v.n, v.n, v.m);
}

void SetCylinderHeader(GeometryCall& call, int primitive, double radius, double w, double code) {
  const GeometryVariables& v = call.v;
  call.SetHeader(primitive, 4, Deg(v.da, call.prompt));
  if (call.input.PlotOptionC > 39) {
    call.SetHeader(primitive, 5, v.dz);
    call.SetHeader(primitive, 23, radius);
  } else {
    call.SetHeader(primitive, 5, w);
  }
  call.SetHeader(primitive, 6, Deg(v.da / 2, call.prompt));
  call.SetHeader(primitive, 7, v.dz / 2);
  call.SetHeader(primitive, 8, 2);
  call.SetHeader(primitive, 9, 1);
  call.SetHeader(primitive, 10, code);
}

void SetCylinderCell(GeometryCall& call, const CylinderColumn& column, double z, CellShape& cell) {
  const GeometryVariables& v = call.v;
  const ColumnAngles& a = column.angles;
  const double radius = column.radius;
  const double ratio = column.ratio;
  const double axisX = column.axisX;
  const bool onCircle = CellsOnCircle(call);
  cell.centre = {a.cosMid * radius + axisX, ratio * a.sinMid * radius, z};
  cell.area = onCircle ? v.da * radius * v.dz : 2 * std::sin(v.da / 2) * radius * v.dz;
  // The circle's normal at the same parameter, also for an ellipse.
  call.block([&] { cell.normal(1) = Divide(cell.centre(1), radius); });
  call.block([&] { cell.normal(2) = Divide(cell.centre(2), radius * ratio); });
  cell.normal(3) = 0;
  cell.distance = kFarDistance;
  const double x1 = a.cosFirst * radius + axisX;
  const double x2 = a.cosLast * radius + axisX;
  const double y1 = ratio * a.sinFirst * radius;
  const double y2 = ratio * a.sinLast * radius;
  const double z1 = z - v.dz / 2;
  const double z2 = z + v.dz / 2;
  cell.corners = {Vector3(x1, y1, z1), Vector3(x2, y2, z1), Vector3(x2, y2, z2), Vector3(x1, y1, z2)};
  if (!onCircle) cell.centre = cell.MeanOfCorners();
}

void BuildCylinder(GeometryCall& call, double code) {
  const GeometryVariables& v = call.v;
  const PrimitiveSpec& spec = call.spec;
  const int k = call.k;
  const double R = spec.Size1;
  const double ratio = spec.Type == "CYLELLIPSE" ? spec.ExtraNumbers(1) : 1;
  double turn = spec.Size3;
  double shells = 1;
  if (spec.Size3 > 1) {
    shells = Int(spec.Size3);
    turn = spec.Size3 - shells;
    if (turn == 0) turn = 1;
    call.SetHeader(k, 3, shells);
  }
  if (shells > 10) shells = 10;
  const double w = shells > 1 ? R / shells : 2 * R;
  call.shells = static_cast<int>(shells);
  call.state.VolumicSlices = call.shells;
  if (shells > 1 && k != call.input.NumberOfPrimitives) {
    call.Tell("error If cellrVolume > 1 Then If i <> numberPrimWithVolumic::::  this shall be the last primitive");
    call.prompt.AbortQuestion();
  }
  const std::string name =
      static_cast<std::size_t>(k) < call.names.size() ? call.names[static_cast<std::size_t>(k)] : "";
  for (int shell = 0; shell < call.shells; ++shell) {
    if (call.shells > 1) NameShell(call, name, shell);
    BuildShell(call, shell, turn, ratio, w, code);
  }
  SetStrips(call, k, v.n, v.n, v.m);
}

}  // namespace orv
