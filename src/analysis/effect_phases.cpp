#include "analysis/effect_phases.h"

#include <algorithm>

#include "analysis/report.h"
#include "analysis/run_block.h"
#include "analysis/sputter_tables.h"
#include "model/rotation_table.h"
#include "numerics/number_format.h"
#include "plume/heat_flux.h"
#include "plume/potentials.h"
#include "plume/radio_link.h"
#include "plume/sputtering.h"

namespace orv {
namespace {

constexpr int kFirstFreeColumn = 3;
constexpr int kSpectrumBands = 18;

}  // namespace

void EffectPhases::PotentialTable(RunContext& run) {
  potentialTexts_ =
      orv::PotentialTable(run.model.ModelCells, run.model.NumberOfPrimitives, kFirstFreeColumn, run.cells, run.reader);
}

void EffectPhases::RotPercentTable(RunContext& run) {
  auto& table = run.rotation.tables.RotPercentTable;
  run.rotation.tableColumn = kFirstFreeColumn;
  RunBlock block(run.prompt, run.record.ignoreFailures, "", "");
  block([&] {
    ReadRotPercentTable(run.model.ModelCells, run.model.NumberOfPrimitives, run.rotation.RotatingPrimitive,
                        run.rotation.tableColumn, table, run.reader);
  });
  // One step for the whole turn, from the first two rows.
  double steps = 0;
  block([&] { steps = CInt(Divide(360 - table(1, 1), table(2, 1) - table(1, 1))); });
  run.rotation.tables.RotationSteps = static_cast<int>(std::clamp(steps, 0.0, 100000.0));
  if (table(-1, 2) != steps) run.prompt(" Anomaly in number of rotations ");
  EffectContext effects = run.Effects();
  SizeSputterStores(effects);
}

void EffectPhases::aSpaceApplicationEffectHEATFLUX(RunContext& run) {
  EffectContext effects = run.Effects();
  SizeHeatFluxStores(effects);
  orv::aSpaceApplicationEffectHEATFLUX(effects);
}

void EffectPhases::aSpaceApplicationEffectSPUTTERING(RunContext& run) {
  run.record.SputterText.clear();
  if (run.model.directives.SpectrumMode != -1) {
    RunSpectrum(run);
    return;
  }
  EffectContext effects = run.Effects();
  SputterOutput output;
  orv::aSpaceApplicationEffectSPUTTERING(effects, {}, output);
  run.record.SputterText = output.summary;
}

// One run of the effect for each angular band of the plume, until a band repeats.
void EffectPhases::RunSpectrum(RunContext& run) {
  SpectrumTable table;
  table.Open(run);
  SputterOutput output;
  double previousAngle = -1;
  for (int band = 1; band <= kSpectrumBands; ++band) {
    run.dialogs().Progress("spectrum, band " + std::to_string(band), static_cast<double>(band - 1) / kSpectrumBands);
    EffectContext effects = run.Effects();
    orv::aSpaceApplicationEffectSPUTTERING(effects, {band}, output);
    table.Line(band, output.SpectrumAngle, output.smallestAverage, output.largestAverage, output.summary);
    if (output.SpectrumAngle == previousAngle) break;
    previousAngle = output.SpectrumAngle;
  }
  table.Close();
  run.record.SputterText = output.summary;
}

void EffectPhases::PlasmaEffect(RunContext& run) {
  run.record.plasma =
      orv::PlasmaEffect(run.cells, run.PrimitiveNames, run.thruster.ThrusterPrimitive, run.model.NumberOfPrimitives + 1,
                        run.cells.numberPrimWithVolumic, run.record.PlasmaText, run.prompt);
}

void EffectPhases::WriteReports(RunContext& run) {
  orv::WriteReports(run, potentialTexts_);
}

}  // namespace orv
