#pragma once

#include <string>

#include "model/database.h"
#include "model/directives.h"
#include "numerics/vectors.h"

namespace orv {

// Where the thruster stands: its source point, the plume axis and the two transverse axes, all unit vectors.
struct ThrusterFrame {
  Vector3 ThrusterPosition;
  Vector3 axiT{0, 0, 1};
  Vector3 AxAzimuth;
  Vector3 axDeclin;
};

// Slots of ThrusterData. 10 to 24 hold columns 3 to 17 of the thruster's row in Table 1, 25 onward the points of the
// density, energy and ion-ratio tables of a thruster given by tables.
namespace slot {
inline constexpr int indexfinThrusterXepDens = -6;
inline constexpr int indexfinThrusterEnergy = -5;
inline constexpr int indexfinThrusterDensity = -4;
inline constexpr int indexfinThruster = -3;
inline constexpr int SecondGas = -2;
inline constexpr int FirstGas = -1;
inline constexpr int SpeciesCount = 1;
inline constexpr int Charge1 = 2;
inline constexpr int DensityRatio1 = 3;
inline constexpr int MolarMass = 4;
inline constexpr int CurrentFraction1 = 5;
inline constexpr int Charge2 = 6;
inline constexpr int DensityRatio2 = 7;
inline constexpr int MolarMass2 = 8;
inline constexpr int CurrentFraction2 = 9;
inline constexpr int FirstParameter = 10;  // column 3 of Table 1
inline constexpr int LastParameter = 24;   // column 17
inline constexpr int First = -10;
inline constexpr int Last = 300;
}  // namespace slot

// Bounds of ThrusterData, all empty.
ThrusterVector EmptyThrusterData();

// The thruster of a run.
struct ThrusterState {
  int ThrusterPrimitive = 0;  // 0: the model has none
  std::string ThrusterName;
  double ThrusterArea = 0;  // m2
  ThrusterFrame frame;
  ThrusterVector ThrusterData = EmptyThrusterData();
  double PlumeLimitAngle = 180;  // degrees
};

inline constexpr int kThrusterModelTables = 1000;
inline constexpr const char* kContactTitle = "Contact support@orvvalis.example";

// Fills ThrusterData from Tables 1, 10 and 6 and adds every row read to `rowsUsed`. Failures go through the common
// block of "a_SpaceApplicationthrusterData"; a missing table or name is told by the table locate.
void aSpaceApplicationthrusterData(const Database& database, const std::string& ThrusterName,
                                   const PhysicalConstants& constants, ThrusterVector& ThrusterData,
                                   DatabaseRowsUsed& rowsUsed, CellText& reader);

}  // namespace orv
