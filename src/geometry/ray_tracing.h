#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <vector>

#include "geometry/cell_data.h"
#include "numerics/error_prompt.h"
#include "numerics/vectors.h"

namespace orv {

// Lives as long as the program, across runs.
struct RayTracingState {
  bool computedOnce = false;
};

struct RayTracingInput {
  int NumberOfPrimitives = 0;     // obstacles
  int numberPrimWithVolumic = 0;  // tested primitives when OnlyPrimitive is 0
  int ThrusterPrimitive = 0;      // 0: the rays leave from the model's origin
  int OnlyPrimitive = 0;          // the single primitive whose cells are tested, 0 for all
  double PlumeLimitAngle = 180;   // degrees
  double NotHidden = 0;           // directive: 0 shadow, 1 no shadow, 2 flags of the previous run
};

struct RayTracingReport {
  std::string ShadowStatusText;   // keeps the caller's text when the mode writes none
  std::size_t raysCast = 0;       // cells within the limit angle
  std::size_t cellsBeyond = 0;    // cells outside it
  std::size_t cellsShadowed = 0;  // rays that a strip stops
};

// 1 if the ray from the origin hits the triangle a + u b + v c with 0 < t < 1, else 0; a is a corner minus the origin,
// b and c two sides, t the ray parameter: 1 for a ray parallel to the plane. When the ray passes exactly through the
// side c, t is the hit point times the ray instead, not divided by its square. A number that is none is no hit.
int RayTriangleHit(const Vector3& ray, const Vector3& a, const Vector3& b, const Vector3& c, double& t);

// 1 if the ray hits the quadrilateral, split along corner 1 to corner 3, else 0; t is the parameter of the last
// triangle tested.
int RayQuadHit(const Vector3& ray, const Vector3& origin, const Vector3& corner1, const Vector3& corner2,
               const Vector3& corner3, const Vector3& corner4, double& t);

// The order in which obstacles are tried: element q is the primitive at place q, 1 .. n, from the strip counts of
// primitives 1 .. n (element 0 of both is unused). Flat primitives come first; the last place holds the latest
// primitive that reached the largest count so far.
std::vector<int> PrimitiveOrder(std::span<const double> strips);

// Shadow flag (quantity 20) and shadow distance (18, metres) of the tested cells: a ray from the thruster to each cell
// centre within PlumeLimitAngle is tried against the strips of all primitives but the thruster. Flag 0: free, 0.5:
// outside the limit angle, else obstacle + code / 1000, code = strip, or strip + 0.111 for a strip ending in 0. The
// obstacle is the first in the order of a search that begins at the last hit, not the nearest. Needs quantities 1 to 3,
// 8 and 10. The thruster's own cells are left alone, except that NotHidden 1 marks them free. Failure 9 for a strip or
// cell outside the arrays, told once for each primitive; what lies outside is left out.
void a_SpaceApplicationRayTrac(Cells& cells, const RayTracingInput& input, RayTracingState& state,
                               RayTracingReport& report, ErrorPrompt& prompt);

}  // namespace orv
