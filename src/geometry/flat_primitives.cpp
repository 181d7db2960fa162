#include "geometry/flat_primitives.h"

#include <cmath>

#include "numerics/number_format.h"

namespace orv {
namespace {

void BuildPlate(GeometryCall& call, double code, double xmin, double xmax, double ymin, double ymax) {
  GeometryVariables& v = call.v;
  const int k = call.k;
  v.Lx = xmax - xmin;
  v.Ly = ymax - ymin;
  call.block([&] { v.dx = Divide(v.Lx, v.n); });
  call.block([&] { v.dy = Divide(v.Ly, v.m); });
  call.SetHeader(k, 1, v.n);
  call.SetHeader(k, 2, v.m);
  call.SetHeader(k, 3, call.spec.Size3);
  call.SetHeader(k, 4, -v.dx);
  call.SetHeader(k, 5, v.dy);
  call.SetHeader(k, 6, xmax - v.dx / 2);
  call.SetHeader(k, 7, ymin + v.dy / 2);
  call.SetHeader(k, 8, 1);
  call.SetHeader(k, 9, 1);
  call.SetHeader(k, 10, code);

  CellWriter writer(call.cells, call.block, k);
  CellShape cell;
  for (int i = 1; i <= Cells::LoopCount(v.n); ++i) {
    for (int j = 1; j <= Cells::LoopCount(v.m); ++j) {
      cell.centre = {xmax - v.dx / 2 - (i - 1) * v.dx, ymin + v.dy / 2 + (j - 1) * v.dy, 0};
      cell.area = v.dx * v.dy;
      cell.normal = {0, 0, 1};
      cell.SetFlatCorners({v.dx / 2, 0, 0}, {0, v.dy / 2, 0});
      writer.Write(i, j, cell);
    }
  }
  SetStrips(call, k, 1, v.n, v.m);
}

// Columns of the matrix of an oriented plate: edges, their normals, and the sides squared up in the plane.
int Edge(int corner) {
  return corner;
}
int Normal(int corner) {
  return 4 + corner;
}
int Squared(int corner) {
  return 8 + corner;
}

double CornerElement(const PrimitiveSpec& spec, int corner, int axis) {
  return spec.ExtraNumbers(3 * (corner - 1) + axis);
}

// The corner whose angle is nearest to a right angle; the lowest number of equals.
int SquarestCorner(GeometryCall& call) {
  ColumnMatrix& columns = call.v.columns;
  double deviation[5] = {};
  for (int t = 1; t <= 4; ++t) {
    const int next = t == 4 ? 1 : t + 1;
    call.block([&] { MatColumnCrossUnit(columns, Edge(t), Edge(next), Normal(t), call.prompt); });
    call.block([&] { MatColumnCrossUnit(columns, Normal(t), Edge(t), Squared(t), call.prompt); });
    const double length = MatColumnNorm(columns, Edge(next), call.prompt);
    Vector3 difference;
    for (int axis = 1; axis <= 3; ++axis) {
      columns(axis, Squared(t)) *= length;
      difference(static_cast<std::size_t>(axis)) = columns(axis, Squared(t)) - columns(axis, Edge(next));
    }
    deviation[t] = normseule(difference, call.prompt);
  }
  int best = 1;
  for (int t = 2; t <= 4; ++t) {
    if (deviation[t] < deviation[best]) best = t;
  }
  return best;
}

Vector3 ColumnOf(const ColumnMatrix& columns, int column) {
  return {columns(1, column), columns(2, column), columns(3, column)};
}

// A two-sided plate: limits, growth ratios r along i and s along j, gap along Z.
struct TwoSides {
  double xmin, xmax, ymin, ymax, r, s, gap;
  double facesJ;  // cells of a face along j
  double rows;    // of all faces
  double sign;    // of the first face's normal
  double ni, nr;  // columns behind and up to the middle
  double code;
};

TwoSides ReadTwoSides(GeometryCall& call) {
  const GeometryVariables& v = call.v;
  const PrimitiveSpec& spec = call.spec;
  TwoSides p{};
  p.xmin = spec.Free1;
  p.xmax = spec.Free2;
  p.ymin = spec.Free3;
  p.ymax = spec.Free4;
  p.r = spec.ExtraNumbers(1);
  p.s = spec.ExtraNumbers(2);
  p.gap = spec.ExtraNumbers(3);
  p.facesJ = v.m;
  p.rows = v.m;
  p.sign = 1;
  p.code = 16;
  if (p.gap != 0) {
    p.facesJ = Int(v.m / 2);
    p.rows = 2 * p.facesJ;
    p.sign = Sgn(-p.gap);
    p.code = p.sign < 0 ? 15.5 : 15;
  }
  p.ni = Int(v.n / 2);
  p.nr = v.n - p.ni;
  return p;
}

// The first width and height, so that the geometric progressions fill the sides.
void WeighTwoSides(GeometryCall& call, const TwoSides& p) {
  GeometryVariables& v = call.v;
  v.Lx = p.xmax - p.xmin;
  v.Ly = p.ymax - p.ymin;
  call.block(
      [&] { v.sumI = p.r == 1 ? v.n : Divide(1 - Power(p.r, p.ni), 1 - p.r) + Divide(1 - Power(p.r, p.nr), 1 - p.r); });
  call.block([&] { v.w0 = Divide(v.Lx, v.sumI); });
  call.block([&] { v.sumJ = p.s == 1 ? p.facesJ : Divide(1 - Power(p.s, p.facesJ), 1 - p.s); });
  call.block([&] { v.h0 = Divide(v.Ly, v.sumJ); });
}

void HeadTwoSides(GeometryCall& call, const TwoSides& p) {
  const GeometryVariables& v = call.v;
  const int k = call.k;
  call.SetHeader(k, 1, v.n);
  call.SetHeader(k, 2, p.rows);
  call.SetHeader(k, 3, call.spec.Size3);
  call.SetHeader(k, 4, -v.w0);
  call.SetHeader(k, 5, v.h0);
  call.block([&] { call.cells.CellData(k, 0, 0, 6) = p.xmax - v.w0 * Power(p.r, p.nr) / 2; });
  call.SetHeader(k, 7, p.ymin + v.h0 / 2);
  call.SetHeader(k, 8, 1);
  call.SetHeader(k, 9, 1);
  call.SetHeader(k, 10, p.code);
}

// One column of cells, of width v.w around X; returns the sum of their heights.
double BuildTwoSidesColumn(GeometryCall& call, const TwoSides& p, CellWriter& writer, int i, double x) {
  GeometryVariables& v = call.v;
  LocalTable& local = call.state.Rect2SidesLocalTable;
  double edge = p.ymin;
  double sum = 0;
  CellShape cell;
  for (int j = 1; j <= Cells::LoopCount(p.rows); ++j) {
    call.block([&] { v.h = v.h0 * Power(p.s, j - 1); });
    double normalZ = p.sign;
    double z = 0;
    if (p.code != 16 && j > p.facesJ) {
      call.block([&] { v.h = v.h0 * Power(p.s, j - p.facesJ - 1); });
      normalZ = -p.sign;
      z = p.gap;
      if (j == p.facesJ + 1) edge = p.ymin;
    }
    cell.centre = {x, edge + v.h / 2, z};
    edge = edge + v.h;
    sum += v.h;
    cell.area = v.w * v.h;
    cell.normal = {0, 0, normalZ};
    cell.SetFlatCorners({v.w / 2, 0, 0}, {0, v.h / 2, 0});
    writer.Write(i, j, cell);
    local.Set(call.k, i, j, 1, cell.centre(1));
    local.Set(call.k, i, j, 2, cell.centre(2));
  }
  return sum;
}

void CheckHeight(GeometryCall& call, const TwoSides& p, double sum) {
  constexpr double kCoherence = 1e-08;
  if (p.code == 16 && std::abs(sum - call.v.Ly) > kCoherence) {
    call.Tell(" Problem coherence, see hallam", "Difficult problem");
    call.prompt.AbortQuestion();
  }
  if (Int(p.code) == 15 && std::abs(sum - 2 * call.v.Ly) > kCoherence) {
    call.prompt.dialogs().Tell("Problem coherence, see hallam", "Difficult problem", Icon::Warning);
    call.prompt.AbortQuestion();
  }
}

void CheckWidth(GeometryCall& call, double sum) {
  if (std::abs(sum - call.v.Lx) > 1e-08) {
    call.Tell("Problem coherence, see hallam");
    call.prompt.AbortQuestion();
  }
}

// One strip a face, in rows as they were read: a half row is rounded by the array.
void SetFaceStrips(GeometryCall& call, const TwoSides& p) {
  const double n = call.v.n;
  const double m = call.v.m;
  const int k = call.k;
  const int strips = p.code == 16 ? 1 : 2;
  CellBlock& corners = call.cells.CellCorners;
  BorderBlock& border = call.cells.BorderCorners;
  call.block([&] { border(k, 0, 0) = strips; });
  for (int s = 1; s <= strips; ++s) {
    const double first = s == 1 ? 1 : m / 2 + 1;
    const double last = s == 1 && strips == 2 ? m / 2 : m;
    for (int axis = 1; axis <= 3; ++axis) {
      call.block([&] { border(k, s, axis) = corners(k, n, first, axis); });
      call.block([&] { border(k, s, 3 + axis) = corners(k, 1, first, 3 + axis); });
      call.block([&] { border(k, s, 6 + axis) = corners(k, 1, last, 6 + axis); });
      call.block([&] { border(k, s, 9 + axis) = corners(k, n, last, 9 + axis); });
    }
  }
}

}  // namespace

void BuildRect(GeometryCall& call, double code) {
  const double Lx = call.spec.Size1;
  const double Ly = call.spec.Size2;
  BuildPlate(call, code, -Lx / 2, Lx / 2, -Ly / 2, Ly / 2);
}

void BuildRectFree(GeometryCall& call, double code) {
  const PrimitiveSpec& spec = call.spec;
  BuildPlate(call, code, spec.Free1, spec.Free2, spec.Free3, spec.Free4);
}

void BuildRectOriented(GeometryCall& call, double code) {
  GeometryVariables& v = call.v;
  const int k = call.k;
  for (int t = 1; t <= 4; ++t) {
    const int next = t == 4 ? 1 : t + 1;
    for (int axis = 1; axis <= 3; ++axis) {
      v.columns(axis, Edge(t)) = CornerElement(call.spec, next, axis) - CornerElement(call.spec, t, axis);
    }
  }
  const int t = SquarestCorner(call);
  const Vector3 O(CornerElement(call.spec, t, 1), CornerElement(call.spec, t, 2), CornerElement(call.spec, t, 3));
  const Vector3 A = ColumnOf(v.columns, Edge(t));
  const Vector3 B = ColumnOf(v.columns, Squared(t));
  v.Lx = normseule(A, call.prompt);
  v.Ly = normseule(B, call.prompt);
  call.block([&] { v.dx = Divide(v.Lx, v.n); });
  call.block([&] { v.dy = Divide(v.Ly, v.m); });
  call.SetHeader(k, 1, v.n);
  call.SetHeader(k, 2, v.m);
  call.SetHeader(k, 3, 0);
  call.SetHeader(k, 4, -v.dx);
  call.SetHeader(k, 5, v.dy);
  call.SetHeader(k, 6, -v.dx / 2);
  call.SetHeader(k, 7, v.dy / 2);
  call.SetHeader(k, 8, 1);
  call.SetHeader(k, 9, 1);
  call.SetHeader(k, 10, code);

  Vector3 halfA;
  Vector3 halfB;
  for (std::size_t axis = 1; axis <= 3; ++axis) {
    call.block([&] { halfA(axis) = Divide(A(axis) * v.dx, 2 * v.Lx); });
    call.block([&] { halfB(axis) = Divide(B(axis) * v.dy, 2 * v.Ly); });
  }
  CellWriter writer(call.cells, call.block, k);
  CellShape cell;
  cell.normal = ColumnOf(v.columns, Normal(t));
  for (int i = 1; i <= Cells::LoopCount(v.n); ++i) {
    for (int j = 1; j <= Cells::LoopCount(v.m); ++j) {
      call.block([&] { v.f = Divide(-v.dx / 2 - (i - 1) * v.dx, v.Lx); });
      call.block([&] { v.g = Divide(v.dy / 2 + (j - 1) * v.dy, v.Ly); });
      for (std::size_t axis = 1; axis <= 3; ++axis) {
        cell.centre(axis) = O(axis) + A(axis) * (1 + v.f) + B(axis) * v.g;
      }
      cell.area = v.dx * v.dy;
      cell.SetFlatCorners(halfA, halfB);
      writer.Write(i, j, cell);
    }
  }
  SetStrips(call, k, 1, v.n, v.m);
}

void BuildRect2Sides(GeometryCall& call, double /*code*/) {
  GeometryVariables& v = call.v;
  const TwoSides p = ReadTwoSides(call);
  WeighTwoSides(call, p);
  HeadTwoSides(call, p);
  call.state.Rect2SidesLocalTable.Reserve(call.k, Cells::LoopCount(v.n), Cells::LoopCount(p.rows));

  CellWriter writer(call.cells, call.block, call.k);
  double edge = p.xmax;
  double sum = 0;
  for (int i = 1; i <= Cells::LoopCount(v.n); ++i) {
    call.block([&] { v.w = v.w0 * Power(p.r, i <= p.nr ? i - 1 : v.n - i); });
    const double x = edge - v.w / 2;
    edge = edge - v.w;
    sum += v.w;
    CheckHeight(call, p, BuildTwoSidesColumn(call, p, writer, i, x));
  }
  CheckWidth(call, sum);
  SetFaceStrips(call, p);
}

}  // namespace orv
