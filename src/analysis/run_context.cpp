#include "analysis/run_context.h"

namespace orv {

EffectContext RunContext::Effects() {
  const double scale = reader.ReadPointNumber(ReadSetting(settings, kSectionUseOrv, "HeatFluxScale"));
  return {model.ModelCells,
          model.NumberOfPrimitives,
          model.directives,
          model.constants,
          plot.IndexPlot,
          plot.PlotOptionC,
          plot.MaiOrigine,
          plot.RedepositionOn,
          plot.CleaningOn,
          plot.AutomaticRotationActive,
          plot.SputterRotationActive,
          scale > 0 ? scale : 0.1,
          cells,
          geometry,
          PrimitiveNames,
          ResultLabels,
          thruster,
          materials,
          rayTracing,
          rotation.tables,
          stores,
          tables,
          reader};
}

}  // namespace orv
