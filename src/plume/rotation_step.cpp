#include "plume/rotation_step.h"

#include "geometry/ray_tracing.h"
#include "plume/plume_models.h"
#include "plume/thruster_angles.h"

namespace orv {
namespace {

AnglesInput AnglesOf(const EffectContext& context) {
  AnglesInput input;
  input.NumberOfPrimitives = context.NumberOfPrimitives;
  input.numberPrimWithVolumic = context.cells.numberPrimWithVolumic;
  input.ThrusterPrimitive = context.thruster.ThrusterPrimitive;
  input.PlotOptionC = context.PlotOptionC;
  return input;
}

void RenewPlume(EffectContext& context, const PlumeInput& input, double* spectrumAngle) {
  PlumeResult result;
  aSpaceApplicationThrusterPLUME(context.cells, context.thruster.ThrusterData, context.constants, input, result,
                                 context.prompt());
  if (spectrumAngle != nullptr) *spectrumAngle = result.SpectrumAngle;
}

}  // namespace

void RenewRotationStep(EffectContext& context, double angleDeg, StepScope scope, int spectrumBand,
                       double* spectrumAngle) {
  const int rotating = context.geometry.rotation.RotatingPrimitive;
  context.geometry.rotation.RotationAngle = angleDeg;
  const GeometryInput geometry{context.ModelCells, context.NumberOfPrimitives, context.PlotOptionC};
  a_SpaceApplicationGeometry(geometry, context.PrimitiveNames, context.cells, context.geometry, context.reader);

  const bool rotatingOnly = scope == StepScope::RotatingPrimitive;
  AnglesInput angles = AnglesOf(context);
  angles.OnePrimitive = rotatingOnly ? rotating : 0;
  aSpaceApplicationAnglesThrusters(context.cells, context.thruster.frame, angles, context.prompt());

  if (rotatingOnly && context.thruster.ThrusterPrimitive != 0) {
    PlumeInput plume;
    plume.ThrusterPrimitive = context.thruster.ThrusterPrimitive;
    plume.OnePrimitive = rotating;
    plume.SpectrumBand = spectrumBand;
    RenewPlume(context, plume, spectrumAngle);
  }

  RayTracingInput rays;
  rays.NumberOfPrimitives = context.NumberOfPrimitives;
  rays.numberPrimWithVolumic = context.cells.numberPrimWithVolumic;
  rays.ThrusterPrimitive = context.thruster.ThrusterPrimitive;
  rays.OnlyPrimitive = rotatingOnly ? rotating : 0;
  rays.PlumeLimitAngle = context.thruster.PlumeLimitAngle;
  rays.NotHidden = context.directives.NotHidden;
  RayTracingReport report;
  a_SpaceApplicationRayTrac(context.cells, rays, context.rayTracing, report, context.prompt());
}

void RenewCell(EffectContext& context, int primitive, int i, int j) {
  const OneCell cell{primitive, i, j};
  AnglesInput angles = AnglesOf(context);
  angles.cell = &cell;
  aSpaceApplicationAnglesThrusters(context.cells, context.thruster.frame, angles, context.prompt());
  if (context.thruster.ThrusterPrimitive == 0) return;
  PlumeInput plume;
  plume.ThrusterPrimitive = context.thruster.ThrusterPrimitive;
  plume.cell = &cell;
  RenewPlume(context, plume, nullptr);
}

}  // namespace orv
