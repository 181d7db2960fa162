#pragma once

#include <string>
#include <vector>

#include "analysis/run_phases.h"

namespace orv {

// The phases of a run that compute and report: potentials, rotation table, heat flux and forces, sputtering with its
// spectrum mode, the plasma effect, the result files. A window adds its own of the display.
class EffectPhases : public RunPhases {
 public:
  void PotentialTable(RunContext& run) override;
  void RotPercentTable(RunContext& run) override;
  void aSpaceApplicationEffectHEATFLUX(RunContext& run) override;
  void aSpaceApplicationEffectSPUTTERING(RunContext& run) override;
  void PlasmaEffect(RunContext& run) override;
  void WriteReports(RunContext& run) override;

 private:
  void RunSpectrum(RunContext& run);

  std::vector<std::string> potentialTexts_;  // taken off the model rows, by primitive; the report puts them back
};

}  // namespace orv
