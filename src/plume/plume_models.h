#pragma once

#include "geometry/cell_data.h"
#include "plume/thruster_angles.h"
#include "plume/thruster_data.h"

namespace orv {

struct PlumeInput {
  int numberPrimWithVolumic = 0;
  int ThrusterPrimitive = 0;
  int OnePrimitive = 0;           // 0: all
  int SpectrumBand = -1;          // -1: the full plume
  const OneCell* cell = nullptr;  // only this cell
};

struct PlumeResult {
  double PlumeLimitAngle = 180;  // degrees
  double SpectrumAngle = -1;     // degrees; -1 without a band
};

// Evaluates the thruster's plume at the centre of every cell, from its distance and its angle off the plume axis
// (quantities 8 and 10): density (1/m3), current densities (A/m2 per A, A/m2), ion energy (eV) and velocity (m/s) into
// quantities 13 to 17, 33, 34, 61. Outside the plume 13 to 17 become 0. Failures go through the common block, where a
// statement that fails leaves its variable as the cell before left it.
void aSpaceApplicationThrusterPLUME(Cells& cells, const ThrusterVector& ThrusterData,
                                    const PhysicalConstants& constants, const PlumeInput& input, PlumeResult& result,
                                    ErrorPrompt& prompt);

}  // namespace orv
