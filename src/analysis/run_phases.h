#pragma once

#include "analysis/run_context.h"

namespace orv {

// The phases of a run that act on its results and on the display: one operation each, called in its place by the
// driver. A client that has nothing to add for a phase leaves it as it is.
class RunPhases {
 public:
  virtual ~RunPhases() = default;

  virtual void ClearView(RunContext&) {}         // before anything is computed
  virtual void PotentialTable(RunContext&) {}    // potentials of the primitives, behind the geometry
  virtual void RotPercentTable(RunContext&) {}   // angles and weights of the automatic rotation
  virtual void ShowRotationList(RunContext&) {}  // with sputter plots of a rotating primitive
  virtual void aSpaceApplicationEffectHEATFLUX(RunContext&) {}
  virtual void aSpaceApplicationEffectSPUTTERING(RunContext&) {}  // spectrum mode included
  virtual void PlasmaEffect(RunContext&) {}                       // for the added shells of a plasma volume
  virtual void FillPointLists(RunContext&) {}                     // point lists of the view
  virtual void WriteReports(RunContext&) {}                       // unless silent
};

}  // namespace orv
